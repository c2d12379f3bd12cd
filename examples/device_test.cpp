// Tests a device that was captured, or the built-in fake one: device_test [FILE]
#include <standalone_suite/suite_runtime/settings.h>
#include <usb_devices/devices.h>
#include <usb_support/usb_support.h>

using namespace usb_support;

// The device under test. A real one sends the request to its driver.
struct CapturedDevice final : DescriptorDevice {
  RETURN_CODE GetDescriptor(std::uint8_t type, std::uint8_t index, std::uint16_t length,
                            std::vector<unsigned char>& answer) override {
    auto const bytes = capture.Bytes(usb_devices::Request::Descriptor(type, index));
    return AnswerFrom(bytes ? RangeOver(*bytes) : CDescriptorRange(), type, 0, length, answer);
  }
  usb_devices::Device capture;
};
constexpr Rule kLengths{{{"USB 2.0", "9", "5"}}, "A descriptor has not the bytes of its bLength."};
constexpr Rule kTotal{{{"USB 2.0", "9", "6", "3"}}, "wTotalLength is not what is there."};
constexpr Rule kCount{{{"USB 2.0", "9", "6", "3"}}, "bNumInterfaces is not what is there."};

int main(int argc, char** argv) try {
  CapturedDevice device;
  device.capture = argc > 1 ? usb_devices::ReadInput(argv[1]).devices.at(0) : usb_devices::Device();
  standalone::SetSetting("NoUsbInteraction", argc == 1);
  TestRun const run(device);
  DeviceConfiguration configuration(device);
  if (RETURN_CODE const result = configuration.Read(); Failed(result)) {
    return PrintErrorDetail(result, TEST_STATUS_FAILURE) ? 1 : 2;
  }
  TQHelper_LogDescriptor(configuration, "Configuration");
  auto const header = Descriptor(configuration).As<TQ_USB_CONFIGURATION_DESCRIPTOR>();
  bool good = Check(kLengths, configuration.Valid());
  good &= Check(kTotal, header.wTotalLength == configuration.Length());
  good &= Check(kCount, header.bNumInterfaces == configuration.GetInterfaceList()->size());
  return good ? 0 : 1;
} catch (std::exception const& error) {
  std::fprintf(stderr, "device_test: %s\n", error.what());
  return 2;
}
