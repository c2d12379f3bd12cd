#include <usb_support/log/log_descriptor.h>

#include <string>

#include <usb_support/labels/dump_form.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>

void TQHelper_LogDescriptor(CDescriptorRange const& range, char const* title) {
  TQLogger& logger = CAppState::Log();
  CDescriptorRange::Text const text = range.OutputString(true);
  if (*title != '\0') {
    usb_support::LogWrite(logger, TEST_STATUS_PLAIN, usb_support::kDumpTitleLook,
                          std::string("\n// ").append(title).append(":"));
  }
  usb_support::LogWrite(logger, TEST_STATUS_PLAIN, *text);
}
