#include <usb_support/log/log_descriptor.h>

#include <string>

#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/text/formatting.h>

void TQHelper_LogDescriptor(CDescriptorRange const& range, char const* title) {
  TQLogger& logger = CAppState::Log();
  CDescriptorRange::Text const text = range.OutputString(true);
  if (*title != '\0') {
    CFormatInfo const look(TQColor{0, 0, 255, 255}, TEXT_STRENGTH_BOLD);
    usb_support::LogWrite(logger, TEST_STATUS_PLAIN, look,
                          std::string("\n// ").append(title).append(":"));
  }
  usb_support::LogWrite(logger, TEST_STATUS_PLAIN, *text);
}
