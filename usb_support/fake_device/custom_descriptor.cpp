#include <usb_support/fake_device/custom_descriptor.h>

#include <cstdint>

#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/system.h>

namespace {

bool IsOn(char const* key) {
  constexpr int kDecimal = 10;
  unsigned long long value = 0;
  return CAppState::AppSettings().GetAppSetting(key, value, SCOPE_DEFAULT, kDecimal) &&
         static_cast<std::uint32_t>(value) != 0;
}

}  // namespace

bool UseCustomConfigDescriptor() {
  return IsOn("UseCustomDescriptor");
}

bool IsBinaryCustomConfigDescriptorFile() {
  return UseCustomConfigDescriptor() && IsOn("CustomDescriptorBinary");
}

void SuperMUTTControlTransferDelay() {
  SleepMicroSec(1);
}
