// The status of every operation: a 32-bit value whose top bits distinguish success, warning and
// failure.
//
// Bit 31 set: failed; the failure is named by bits 0 to 23, and its text depends on those alone.
// Bit 31 clear: succeeded, with a warning when bit 30 is set. Bits 12 to 15 group the failures:
// 0 general, 1 operation, access, log and registry, 2 host interface, 3 endpoint and transfer
// set-up, 4 transfer results, 5 system waits, 6 handshakes, 7 host controller and enumeration,
// 8 internal errors and procedures.
#pragma once

#include <cstdint>

/// Status of an operation. Any 32-bit value may occur; these are the ones that have a text.
enum RETURN_CODE : std::uint32_t {
  RC_SUCCESS = 0x00000000,
  RC_SUCCESS_WITH_WARNING = 0x40000000,
#define USB_SUPPORT_FAILURE(name, code, text) name = code,
#include <usb_support/status/failures.inc>
};

namespace usb_support {

/// True when bit 31 is set: the operation failed.
constexpr bool Failed(RETURN_CODE code) noexcept {
  return (code & 0x80000000u) != 0;
}

}  // namespace usb_support
