#include <tools/usbdesc/log_text.h>

#include <span>

#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/tq_logger.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

// In a text that is passed through, "%%" would become "%".
std::string AsItIs(std::string_view text) {
  std::string doubled;
  for (char const c : text) {
    doubled.append(c == '%' ? 2 : 1, c);
  }
  return doubled;
}

std::string Hex(std::size_t value, int digits = 1) {
  std::string text;
  for (; value != 0 || digits > 0; value >>= 4U, --digits) {
    text.insert(text.begin(), "0123456789ABCDEF"[value & 0xFU]);
  }
  return text;
}

// The library's code form ends with bare hexadecimal digits where a run is cut short; no compiler
// takes those.
void LogCode(CDescriptorRange const& run, std::string_view title) {
  RunDiagnosis const diagnosis = DiagnoseRun(run);
  if (diagnosis.reason == RunEnd::kComplete) {
    TQHelper_LogDescriptor(run, AsItIs(title).c_str());
    return;
  }
  if (diagnosis.offset == 0) {
    LogTitle(title);
  } else {
    TQHelper_LogDescriptor(CDescriptorRange(run.Bytes(), diagnosis.offset), AsItIs(title).c_str());
  }
  std::string const offset = Hex(diagnosis.offset);
  std::string line = "/* " + std::string(4 - offset.size(), ' ') + offset + "h */ ";
  CDescriptorRange const rest(run.Bytes() + diagnosis.offset, diagnosis.bytesLeft);
  for (unsigned char const byte : std::span(rest.Bytes(), rest.Length())) {
    line += ' ' + HexText(byte) + ',';
  }
  LogPlain(line + " // (incomplete)");
}

}  // namespace

std::string Counted(std::size_t count, char const* name) {
  return std::to_string(count) + ' ' + name + (count == 1 ? "" : "s");
}

std::string HexText(unsigned value, int digits) {
  return "0x" + Hex(value, digits);
}

std::string OffsetText(std::size_t offset) {
  return "offset " + Hex(offset) + "h";
}

std::string OffsetText(std::size_t start, std::size_t inSet, std::string_view set) {
  std::string text = OffsetText(start + inSet);
  if (start != 0) {
    text.append(" (").append(Hex(inSet)).append("h in the ").append(set).append(")");
  }
  return text;
}

void LogPlain(std::string_view text, TEST_STATUS status) {
  TQLogger& log = CAppState::Log();
  LogWrite(log, TEST_STATUS_PLAIN, log.GetDefaultLogVerbosity(status), AsItIs(text));
}

void LogHeading(std::string_view title) {
  TQLogger& log = CAppState::Log();
  CFormatInfo const look(TQColor{0, 0, 255, 255}, TEXT_STRENGTH_BOLD);
  LogWrite(log, TEST_STATUS_PLAIN, log.GetDefaultLogVerbosity(TEST_STATUS_PLAIN), look,
           "\n// " + AsItIs(title));
}

void LogTitle(std::string_view title) {
  LogHeading(std::string(title) + ":");
}

void LogDump(CDescriptorRange const& run, std::string_view title, bool asCode) {
  if (asCode) {
    LogCode(run, title);
    return;
  }
  CDescriptorRange::Text const text = run.OutputString(false);
  LogTitle(title);
  LogWrite(CAppState::Log(), TEST_STATUS_PLAIN, *text);
}

std::string NameOf(CapturedConfiguration const& configuration) {
  return std::string(configuration.OtherSpeed() ? "other-speed " : "") + "configuration " +
         std::to_string(configuration.Header().bConfigurationValue);
}

}  // namespace usb_support::usbdesc
