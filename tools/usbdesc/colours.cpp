#include <tools/usbdesc/colours.h>

#include <algorithm>
#include <cerrno>
#include <cstdint>
#include <stdexcept>
#include <system_error>
#include <utility>

#include <standalone_suite/suite_runtime/showable.h>
#include <tools/usbdesc/platform.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/log_level.h>
#include <usb_support/suite_interfaces/test_status.h>

namespace usb_support::usbdesc {
namespace {

// The eight old colours: a terminal shows them in shades that suit its background.
constexpr std::string_view kTitle = "\x1b[1m";    // bold
constexpr std::string_view kOffset = "\x1b[36m";  // cyan
constexpr std::string_view kLabel = "\x1b[32m";   // green
constexpr std::string_view kBad = "\x1b[31m";     // red
constexpr std::string_view kNote = "\x1b[33m";    // yellow
constexpr std::string_view kReset = "\x1b[0m";

// The log types whose lines are red; others that are not plain are yellow.
constexpr std::uint32_t kBadBits =
    std::uint32_t{TEST_STATUS_FAILURE} | std::uint32_t{TEST_STATUS_INTERNAL_ERROR};

constexpr std::string_view kHexDigits = "0123456789ABCDEF";

void Append(std::string& output, std::string_view look, std::string_view text) {
  if (text.empty()) {
    return;
  }
  output.append(look).append(text).append(kReset);
}

// How many characters of the line are an offset: "  12h:" in a listing, "/*   12h */" in code.
std::size_t OffsetLength(std::string_view line) {
  bool const isCode = line.starts_with("/*");
  std::string_view const end = isCode ? "h */" : "h:";
  std::size_t const first = line.find_first_not_of(' ', isCode ? 2 : 0);
  std::size_t const behind = line.find_first_not_of(kHexDigits, first);
  bool const isOffset =
      behind != std::string_view::npos && behind > first && line.substr(behind).starts_with(end);
  return isOffset ? behind + end.size() : 0;
}

// Where the offset of a cut descriptor begins, which stands behind the last label of a dump.
std::size_t TailOffset(std::string_view line) {
  std::size_t begin = std::string_view::npos;
  if (line.ends_with("h */  ")) {
    begin = line.rfind("/*");
  } else if (line.ends_with("h:  ")) {
    std::size_t const beforeDigits = line.find_last_not_of(kHexDigits, line.size() - 5);
    begin = line.find_last_not_of(' ', beforeDigits) + 1;
  }
  bool const isOffset = begin < line.size() && OffsetLength(line.substr(begin)) != 0;
  return isOffset ? begin : line.size();
}

// A line of a dump, behind its offset.
void AppendBytesAndLabel(std::string& output, std::string_view rest, bool isCode) {
  std::string_view const mark = isCode ? " // " : " : ";
  std::size_t const found = rest.find(mark);
  if (found == std::string_view::npos) {
    output.append(rest);
    return;
  }
  std::size_t const label = found + mark.size();
  std::size_t const tail = std::max(label, TailOffset(rest));
  output.append(rest.substr(0, label));
  Append(output, kLabel, rest.substr(label, tail - label));
  Append(output, kOffset, rest.substr(tail));
}

// Where a line that is no descriptor says what is wrong. Only three forms of line do: the tail of a
// dump, a summary, which begins with a number, and a line of the tree.
std::size_t BadPart(std::string_view line) {
  if (!line.starts_with("//") && line.ends_with("(incomplete)")) {
    return line.rfind('(');
  }
  if (line.starts_with("// ") && line.find_first_of("0123456789") == 3) {
    return std::min({line.find(" lengths bad: "), line.find(" wTotalLength wrong: "),
                     line.find(" nothing to check")});
  }
  if (std::size_t const first = line.find_first_not_of(' ');
      first != 0 && first != std::string_view::npos &&
      line.substr(first).starts_with("lengths bad: ")) {
    return first;
  }
  return std::string_view::npos;
}

void AppendLine(std::string& output, std::string_view line) {
  if (std::size_t const length = OffsetLength(line); length != 0) {
    Append(output, kOffset, line.substr(0, length));
    AppendBytesAndLabel(output, line.substr(length), line.starts_with("/*"));
    return;
  }
  std::size_t const bad = std::min(BadPart(line), line.size());
  output.append(line.substr(0, bad));
  Append(output, kBad, line.substr(bad));
}

std::string_view LookOf(standalone::LogCall const& call) {
  if (call.type == LogTypeOf(TEST_STATUS_PLAIN)) {
    bool const isBold = call.format != nullptr && call.format->Strength() >= TEXT_STRENGTH_BOLD;
    return isBold ? kTitle : std::string_view();
  }
  bool const isBad = (static_cast<std::uint32_t>(call.type) & kBadBits) != 0;
  return isBad ? kBad : kNote;
}

}  // namespace

bool WantsColours(std::FILE* stream, ColourChoice choice) {
  switch (choice) {
    case ColourChoice::kNever:
      return false;
    case ColourChoice::kAlways:
      EnableEscapeCodes(stream);
      return true;
    case ColourChoice::kAuto:
      break;
  }
  return EnvironmentVariable("NO_COLOR").empty() && EnvironmentVariable("TERM") != "dumb" &&
         IsTerminal(stream) && EnableEscapeCodes(stream);
}

std::string Coloured(std::string_view text) {
  std::string output;
  while (true) {
    std::size_t const end = text.find('\n');
    AppendLine(output, text.substr(0, end));
    if (end == std::string_view::npos) {
      return output;
    }
    output += '\n';
    text.remove_prefix(end + 1);
  }
}

void FailOutput() {
  int const error = errno;
  std::string message = "standard output cannot be written";
  if (error != 0) {
    message += ": " + std::generic_category().message(error);
  }
  throw std::runtime_error(message);
}

void OutputSink::Take(standalone::LogCall const& call) {
  errno = 0;
  if (call.operation == standalone::LogOperation::kFlushOutput) {
    if (std::fflush(stream_) != 0) {
      FailOutput();
    }
    return;
  }
  bool const isLine = call.operation == standalone::LogOperation::kDoWrite;
  if (isLine && !CAppState::IsLogVerbosityLevel(call.level)) {
    return;
  }
  std::string text;
  standalone::AppendShowableLines(text, call.text);
  if (isColoured_) {
    std::string_view const look = LookOf(call);
    std::string const plain = std::exchange(text, {});
    if (look.empty()) {
      text = Coloured(plain);
    } else {
      Append(text, look, plain);
    }
  }
  if (call.operation != standalone::LogOperation::kDoWritePrintOnly) {
    text += '\n';
  }
  if (std::fwrite(text.data(), 1, text.size(), stream_) != text.size()) {
    FailOutput();
  }
}

}  // namespace usb_support::usbdesc
