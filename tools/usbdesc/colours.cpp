#include <tools/usbdesc/colours.h>

#include <cerrno>
#include <cstdint>
#include <stdexcept>
#include <system_error>

#include <standalone_suite/platform/host.h>
#include <standalone_suite/suite_runtime/showable.h>
#include <tools/usbdesc/log_text.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/log_level.h>
#include <usb_support/suite_interfaces/test_status.h>

namespace usb_support::usbdesc {
namespace {

// The eight standard colours: a terminal shows them in shades that suit its background.
constexpr std::string_view kTitle = "\x1b[1m";    // bold
constexpr std::string_view kOffset = "\x1b[36m";  // cyan
constexpr std::string_view kLabel = "\x1b[32m";   // green
constexpr std::string_view kBad = "\x1b[31m";     // red
constexpr std::string_view kNote = "\x1b[33m";    // yellow
constexpr std::string_view kReset = "\x1b[0m";

// The log types whose lines are red; others that are not plain are yellow.
constexpr std::uint32_t kBadBits =
    std::uint32_t{TEST_STATUS_FAILURE} | std::uint32_t{TEST_STATUS_INTERNAL_ERROR};

// Appends a text with its looks. The content of a piece cannot change the look of another.
void Append(std::string& output, std::string_view look, std::string_view text) {
  output.append(look);
  standalone::AppendShowableLines(output, text);
  output.append(look.empty() ? "" : kReset);
}

std::string_view LookOf(Piece piece) {
  switch (piece) {
    case Piece::kTitle:
      return kTitle;
    case Piece::kOffset:
      return kOffset;
    case Piece::kLabel:
      return kLabel;
    case Piece::kFault:
      return kBad;
    case Piece::kNote:
      return kNote;
    case Piece::kPlain:
      break;
  }
  return {};
}

void AppendPieces(std::string& output, Line const& line) {
  std::string_view const text = line.Text();
  std::size_t at = 0;
  for (Line::Span const& span : line.Spans()) {
    Append(output, LookOf(span.piece), text.substr(at, span.end - at));
    at = span.end;
  }
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
  bool const isTerminal = standalone::IsTerminal(stream);
  if (choice == ColourChoice::kNever) {
    return false;
  }
  if (choice == ColourChoice::kAlways) {
    static_cast<void>(isTerminal && standalone::EnableAnsiColours(stream));
    return true;
  }
  return isTerminal && standalone::EnvironmentVariable("NO_COLOR").empty() &&
         standalone::EnvironmentVariable("TERM") != "dumb" && standalone::EnableAnsiColours(stream);
}

void FailOutput() {
  int const error = errno;
  std::string message = "standard output cannot be written";
  if (error != 0) {
    message += ": " + std::generic_category().message(error);
  }
  throw std::runtime_error(message);
}

void Print(std::string const& text, std::FILE* out) {
  errno = 0;
  if (std::fputs(text.c_str(), out) < 0 || std::fflush(out) != 0) {
    FailOutput();
  }
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
  if (Line const* const line = LineBeingLogged(); line != nullptr) {
    Line const wrapped = Wrapped(*line, columns_);
    if (isColoured_) {
      AppendPieces(text, wrapped);
    } else {
      Append(text, {}, wrapped.Text());
    }
  } else {
    Append(text, isColoured_ ? LookOf(call) : std::string_view(), call.text);
  }
  if (call.operation != standalone::LogOperation::kDoWritePrintOnly) {
    text += '\n';
  }
  if (std::fwrite(text.data(), 1, text.size(), stream_) != text.size()) {
    FailOutput();
  }
}

}  // namespace usb_support::usbdesc
