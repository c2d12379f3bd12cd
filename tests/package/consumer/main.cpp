#include <cstdio>

#include <usb_support/usb_support.h>

int main() try {
  unsigned char const bytes[] = {9, 4, 0, 0, 2, 3, 1, 1, 0};
  CDescriptorRange const range = usb_support::RangeOver(bytes);
  std::printf(
      "%d.%d.%d.%d\n%s\n", GetVersionMajor(), GetVersionMinor(), GetVersionPatch(),
      GetVersionTweak(),
      CUsbHelper::GenerateDescriptorLabel(range[0], nullptr, TQE_USB_DEVICE_SPEED_UNKNOWN).c_str());
  usb_support::Raise(TEST_STATUS_FAILURE, "%u bytes", range.Length());
} catch (TQRunTimeException const& exception) {
  std::printf("%s\n", exception.what());
}
