// Judges a device that was captured in a file by the rules of the standards, and logs each broken
// rule with its section: judge_a_device FILE
#include <cstdio>

#include <usb_rules/assert_rules.h>
#include <usb_support/usb_support.h>

#include "hex_file.h"

using namespace usb_support;

// The device under test. A real one sends the request to its driver.
class CapturedDevice final : public DescriptorDevice {
 public:
  RETURN_CODE GetDescriptor(std::uint8_t type, std::uint8_t index, std::uint16_t length,
                            std::vector<unsigned char>& answer) override {
    return AnswerFrom(RangeOver(capture), type, index, length, answer);
  }

  DescriptorBytes capture;
};

int main(int argc, char** argv) {
  CapturedDevice device;
  device.capture = argc > 1 ? ReadHexFile(argv[1]) : DescriptorBytes();
  TestRun const run(device);
  TQ_USB_DEVICE_DESCRIPTOR descriptor;
  DeviceConfiguration configuration(device);
  if (Failed(device.ReadDeviceDescriptor(descriptor)) || Failed(configuration.Read())) {
    return 2;
  }
  usb_rules::RuleCounts const counts =
      usb_rules::AssertRules({CDescriptorRange(&descriptor, sizeof descriptor), configuration});
  std::printf("%zu rules kept, %zu broken\n", counts.passed, counts.failed);
  return counts.IsGood() ? 0 : 1;
}
