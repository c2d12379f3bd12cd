// Recognises a CDC header, even in an interface of another class. Internal to the library.
#pragma once

#include <cstdint>

#include <usb_fields/byte_view.h>

namespace usb_fields::detail {

/// True for a CDC header: 5 bytes, subtype 0, an existing release of CDC (CDC 1.2, 5.2.3.1).
constexpr bool IsCdcHeader(ByteView bytes) noexcept {
  std::uint64_t const release = bytes.Number(3, 2);
  return bytes.At(0) == 5 && bytes.At(1) == 0x24 && bytes.At(2) == 0 &&
         (release == 0x0100 || release == 0x0101 || release == 0x0110 || release == 0x0120);
}

}  // namespace usb_fields::detail
