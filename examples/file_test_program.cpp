// A test program for a device with one configuration that was captured in a file: it checks three
// rules of the USB standard, logs each that is broken, and ends with status 1 when one is.
//
//   file_test_program DEVICE     hexadecimal bytes with # comments, as in examples/captures
#include <cstddef>
#include <cstdio>
#include <exception>
#include <memory>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <usb_support/usb_support.h>

#include "hex_file.h"

namespace {

// One table of rule numbers and one of messages, with the same index.
enum Rule : unsigned { kLengthRule, kTotalLengthRule, kInterfaceCountRule };

constexpr TQAssertionNumbers kNumbers[] = {
    {{"USB 2.0", "9", "5"}},
    {{"USB 2.0", "9", "6", "3"}},
    {{"USB 2.0", "9", "6", "3"}},
};

constexpr char const* kMessages[] = {
    "A descriptor is shorter or longer than its bLength.",
    "wTotalLength differs from the bytes that the configuration has.",
    "bNumInterfaces differs from the interfaces that the configuration has.",
};

// Logs the rule when it is broken.
bool Check(Rule rule, bool isKept) {
  if (!isKept) {
    LogAssert(TEST_STATUS_FAILURE, rule, kNumbers, kMessages);
  }
  return isKept;
}

bool TestConfiguration(CConfigDescriptorSet& configuration) {
  // The device may have sent anything: its fields are read through ReadRecord.
  auto const header =
      usb_support::ReadRecord<TQ_USB_CONFIGURATION_DESCRIPTOR>(configuration.begin());
  bool isGood = Check(kLengthRule, configuration.Valid());
  isGood &= Check(kTotalLengthRule, header.wTotalLength == configuration.Length());
  isGood &=
      Check(kInterfaceCountRule, header.bNumInterfaces == configuration.GetInterfaceList()->size());
  return isGood;
}

bool Run(char const* file) {
  DescriptorBytes const bytes = ReadHexFile(file);
  CDescriptorRange const all = usb_support::RangeOver(bytes);
  CDescriptorRangeIterator const found = all.FindFirst(usb_support::kConfigurationType);
  if (found == all.end()) {
    PrintErrorDetail(RC_TRANSFER_INSUFFICIENT_DATA, TEST_STATUS_FAILURE);
    return false;
  }
  auto const offset = static_cast<std::size_t>(found - all.begin());
  CConfigDescriptorSet configuration(0);
  configuration.SetDescriptor(bytes.data() + offset,
                              static_cast<unsigned short>(bytes.size() - offset));
  TQHelper_LogDescriptor(configuration, "Configuration");
  return TestConfiguration(configuration);
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 2) {
    std::fputs("Usage: file_test_program DEVICE\n", stderr);
    return 2;
  }
  namespace suite = usb_support::standalone;
  suite::AddLogSink(std::make_shared<suite::ConsoleSink>(stdout));
  CDevice device;
  CTestServices services;
  UsbTqPointers pointers{&services, &device};
  InitUsbHelper(&pointers);
  try {
    return Run(argv[1]) ? 0 : 1;
  } catch (std::exception const& error) {
    std::fprintf(stderr, "file_test_program: %s\n", error.what());
  }
  return 2;
}
