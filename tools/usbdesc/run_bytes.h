// The bytes of a run of descriptors, and why an input has none.
#pragma once

#include <cstddef>
#include <stdexcept>
#include <vector>

namespace usb_support::usbdesc {

using Bytes = std::vector<unsigned char>;

/// The longest run that a range can span.
inline constexpr std::size_t kMaxRunSize = 65535;

inline constexpr char kRunTooLong[] = "holds more than 65,535 bytes, which no range can span";

/// Why an input gives no run, in one line that does not name the input.
class InputError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

}  // namespace usb_support::usbdesc
