// Judges a device that was captured by the rules of the standards, and logs each broken rule with
// its section: judge_a_device FILE
#include <cstdio>
#include <exception>

#include <usb_devices/devices.h>
#include <usb_rules/assert_rules.h>
#include <usb_support/usb_support.h>

using namespace usb_support;

// The bytes of an answer; a real test program has them in its sets.
CDescriptorRange AnswerOf(usb_devices::Device const& device, std::uint8_t type) {
  auto const bytes = device.Bytes(usb_devices::Request::Descriptor(type));
  return bytes ? RangeOver(*bytes) : CDescriptorRange();
}

int main(int argc, char** argv) try {
  if (argc != 2) {
    std::fputs("Usage: judge_a_device FILE\n", stderr);
    return 2;
  }
  usb_devices::Device const device = usb_devices::ReadInput(argv[1]).devices.at(0);
  TestRun const run;
  usb_rules::RuleCounts const counts =
      usb_rules::AssertRules({AnswerOf(device, kDeviceType), AnswerOf(device, kConfigurationType),
                              AnswerOf(device, kBosType)});
  std::printf("%zu rules kept, %zu broken\n", counts.passed, counts.failed);
  return counts.IsGood() ? 0 : 1;
} catch (std::exception const& error) {
  std::fprintf(stderr, "judge_a_device: %s\n", error.what());
  return 2;
}
