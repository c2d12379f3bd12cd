// The entry of one fuzzer; the build chooses which target it runs.
#include <cstddef>
#include <cstdint>

#include <fuzz/targets.h>

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  usb_support::fuzz::USB_SUPPORT_FUZZ_TARGET(usb_support::fuzz::Input(data, size));
  return 0;
}
