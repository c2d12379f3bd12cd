#include <standalone_suite/suite_runtime/log_sinks.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <ostream>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <standalone_suite/platform/host.h>
#include <standalone_suite/suite_runtime/hex_digits.h>
#include <standalone_suite/suite_runtime/showable.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace usb_support::standalone {
namespace {

bool IsShown(LogCall const& call) {
  return call.operation != LogOperation::kDoWrite || CAppState::IsLogVerbosityLevel(call.level);
}

bool EndsLine(LogCall const& call) {
  return call.operation != LogOperation::kDoWritePrintOnly;
}

[[noreturn]] void Fail(std::string what, int error) {
  if (error != 0) {
    what += ": " + std::generic_category().message(error);
  }
  throw std::runtime_error(what);
}

bool WantsColour(std::FILE* stream, ColourPolicy policy) {
  switch (policy) {
    case ColourPolicy::kNever:
      return false;
    case ColourPolicy::kAlways:
      if (IsTerminal(stream)) {
        EnableAnsiColours(stream);
      }
      return true;
    case ColourPolicy::kAuto:
      break;
  }
  return EnvironmentVariable("NO_COLOR").empty() && IsTerminal(stream) && EnableAnsiColours(stream);
}

void AppendColourPart(std::string& output, std::uint32_t part) {
  output += std::to_string(std::min<std::uint32_t>(part, 255));
}

// Appends the escape sequence that switches on a line's look; returns false and appends nothing for
// the plain look.
bool AppendLook(std::string& output, LogCall const& call) {
  TQLogger const& log = CAppState::Log();
  CFormatInfo const format = call.format != nullptr
                                 ? *call.format
                                 : log.GetDefaultFormat(static_cast<TEST_STATUS>(call.type));
  if (format == log.GetDefaultFormat(TEST_STATUS_PLAIN)) {
    return false;
  }
  TQColor const color = format.Color();
  output += format.Strength() >= TEXT_STRENGTH_BOLD ? "\x1b[1;38;2;" : "\x1b[38;2;";
  AppendColourPart(output, color.red);
  output += ';';
  AppendColourPart(output, color.green);
  output += ';';
  AppendColourPart(output, color.blue);
  output += 'm';
  return true;
}

char const* NameOf(LogOperation operation) {
  switch (operation) {
    case LogOperation::kDoWrite:
      return "DoWrite";
    case LogOperation::kDoWritePrintOnly:
      return "DoWritePrintOnly";
    case LogOperation::kDoWritePrintLnOnly:
      return "DoWritePrintLnOnly";
    case LogOperation::kFlushOutput:
      return "FlushOutput";
  }
  return "?";
}

void PrintHex(std::ostream& out, std::uint32_t value) {
  std::string digits = "0x";
  AppendHex(digits, value, 8);
  out << digits;
}

void PrintFormat(std::ostream& out, std::optional<CFormatInfo> const& format) {
  if (!format) {
    out << "default format";
    return;
  }
  TQColor const color = format->Color();
  out << "format (" << color.red << ' ' << color.green << ' ' << color.blue << ' ' << color.alpha
      << ", " << static_cast<std::uint32_t>(format->Strength()) << ')';
}

}  // namespace

ConsoleSink::ConsoleSink(std::FILE* stream, ColourPolicy policy)
    : stream_(stream),
      coloured_(WantsColour(stream, policy)) {
}

void ConsoleSink::Take(LogCall const& call) {
  if (call.operation == LogOperation::kFlushOutput) {
    errno = 0;
    if (std::fflush(stream_) != 0) {
      Fail("The log's stream cannot be flushed", errno);
    }
  } else if (IsShown(call)) {
    Print(call);
  }
}

void ConsoleSink::Print(LogCall const& call) {
  // One write per call, so that a line is not mixed with the output of other programs.
  output_.clear();
  bool const hasLook =
      coloured_ && call.operation == LogOperation::kDoWrite && AppendLook(output_, call);
  AppendShowableLines(output_, call.text);
  if (hasLook) {
    output_ += "\x1b[0m";
  }
  if (EndsLine(call)) {
    output_ += '\n';
  }
  errno = 0;
  if (std::fwrite(output_.data(), 1, output_.size(), stream_) != output_.size()) {
    Fail("The log's stream cannot be written", errno);
  }
}

FileSink::FileSink(std::filesystem::path const& file) {
  std::u8string const name = file.u8string();
  name_.assign(name.begin(), name.end());
  errno = 0;
  out_.open(file, std::ios::binary | std::ios::trunc);
  Check("the log file cannot be opened");
}

void FileSink::Take(LogCall const& call) {
  // An error that was reported must not hide the next one.
  out_.clear();
  errno = 0;
  if (call.operation == LogOperation::kFlushOutput) {
    out_.flush();
  } else if (IsShown(call)) {
    out_.write(call.text.data(), static_cast<std::streamsize>(call.text.size()));
    if (EndsLine(call)) {
      out_.put('\n');
    }
  }
  Check("the log file cannot be written");
}

void FileSink::Check(char const* what) {
  if (!out_) {
    Fail(name_ + ": " + what, errno);
  }
}

std::ostream& operator<<(std::ostream& out, RecordedCall const& call) {
  out << NameOf(call.operation) << '(';
  switch (call.operation) {
    case LogOperation::kDoWrite:
      out << "type ";
      PrintHex(out, call.type);
      out << ", level " << static_cast<unsigned>(call.level) << ", ";
      PrintFormat(out, call.format);
      break;
    case LogOperation::kFlushOutput:
      return out << "wait " << (call.wait ? "true" : "false") << ')';
    default:
      out << "channel " << call.channel;
      break;
  }
  return out << ", \"" << call.text << "\", stack depth " << call.stackDepth << ')';
}

void RecordingSink::Take(LogCall const& call) {
  RecordedCall recorded;
  recorded.operation = call.operation;
  recorded.type = call.type;
  recorded.level = call.level;
  if (call.format != nullptr) {
    recorded.format = *call.format;
  }
  recorded.text = call.text;
  recorded.channel = call.channel;
  recorded.wait = call.wait;
  recorded.stackDepth = call.stackDepth;
  std::lock_guard const guard(lock_);
  calls_.push_back(std::move(recorded));
}

std::vector<RecordedCall> RecordingSink::Calls() const {
  std::lock_guard const guard(lock_);
  return calls_;
}

std::vector<RecordedCall> RecordingSink::Take() {
  std::lock_guard const guard(lock_);
  return std::exchange(calls_, {});
}

void RecordingSink::Clear() {
  std::lock_guard const guard(lock_);
  calls_.clear();
}

}  // namespace usb_support::standalone
