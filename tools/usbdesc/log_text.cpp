#include <tools/usbdesc/log_text.h>

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

}  // namespace

std::string Counted(std::size_t count, char const* name) {
  return std::to_string(count) + ' ' + name + (count == 1 ? "" : "s");
}

std::string HexText(unsigned value, int digits) {
  CSimpleBuffer text;
  Format(text, kDefaultIndentation, "0x%0*X", digits, value);
  return text.Contents();
}

void LogPlain(std::string_view text) {
  LogWrite(CAppState::Log(), TEST_STATUS_PLAIN, AsItIs(text));
}

void LogTitle(std::string_view title) {
  CFormatInfo const look(TQColor{0, 0, 255, 255}, TEXT_STRENGTH_BOLD);
  LogWrite(CAppState::Log(), TEST_STATUS_PLAIN, look, "\n// " + AsItIs(title) + ":");
}

void LogDump(CDescriptorRange const& run, std::string_view title, bool asCode) {
  if (asCode) {
    TQHelper_LogDescriptor(run, AsItIs(title).c_str());
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
