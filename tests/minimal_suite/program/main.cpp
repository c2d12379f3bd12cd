// Uses every operation of the library that calls the suite.
#include <cstdio>

#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/usb_support.h>

int main() {
  try {
    UsbHelper();
  } catch (TQRunTimeException const& exception) {
    std::printf("%s\n", exception.what());
  }
  std::printf("helper: %d\n", UsbHelperCreated());

  CDevice device;
  CTestServices services;
  UsbTqPointers pointers{&services, &device};
  InitUsbHelper(&pointers);
  std::printf("pointers valid: %d\n", UsbHelper().ValidatePointers(true, TEST_STATUS_FAILURE));

  unsigned char const bytes[] = {9, 4, 0, 0, 1, 8, 6, 0x50, 0, 7, 5, 0x81, 2, 0, 2, 0, 0, 1};
  TQHelper_LogDescriptor(usb_support::RangeOver(bytes), "Minimal");

  TQAssertionNumbers const numbers[] = {{"TD", "9", "1", nullptr}};
  char const* const messages[] = {"100% wrong"};
  LogAssert(TEST_STATUS_FAILURE, 0, numbers, messages);
  PrintErrorDetail(RC_STALL_ERROR, TEST_STATUS_INFORMATION);

  CUsbHelper::OutputProgressMarker(0, 1, "read", 7);
  UsbHelper().StallExpectedDiagnostic(RC_STALL_ERROR, TEST_STATUS_INFORMATION);
  GetStatusDetail(static_cast<RETURN_CODE>(0x80004003), nullptr);

  CUSBDebugCapabilities::SetupUsbDebugCapabilities();
  std::printf("flags:");
  for (unsigned char type : {1, 2, 3, 15, 0x29, 0xFF}) {
    std::printf(" %d", DebugCapNeedFakeDescriptor(type));
  }
  std::printf(" %d\n", DebugCapNoUsb());
  CUSBDebugCapabilities::CleanupUsbDebugCapabilities();

  std::printf("custom descriptor: %d\n", UseCustomConfigDescriptor());
  std::printf("in binary: %d\n", IsBinaryCustomConfigDescriptorFile());
  SuperMUTTControlTransferDelay();

  char name[16] = "unchanged";
  RETURN_CODE const found = GetVendorName(0x1D6B, name, sizeof name);
  std::printf("vendor: %08X %s\n", static_cast<unsigned>(found), name);

  CDriverEvent event(TQE_EVENT_TYPE_DEFAULT);
  event.SetEvent();
  std::printf("event: %08X\n", static_cast<unsigned>(event.WaitOnEvent(0)));

  try {
    usb_support::Raise(TEST_STATUS_INTERNAL_ERROR, "%s %u", "raised", 1u);
  } catch (TQException const& exception) {
    std::printf("%s, status %08X\n", exception.what(), static_cast<unsigned>(exception.Status()));
  }
  CAppState::Helper(nullptr);
}
