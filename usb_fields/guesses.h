// Descriptors in interfaces whose class does not say that they have them. Not for other use.
#pragma once

#include <cstdint>

#include <usb_fields/byte_view.h>
#include <usb_fields/context.h>

namespace usb_fields::detail {

/// A CDC header: 5 bytes, subtype 0, a release that CDC has had (CDC 1.2, 5.2.3.1).
constexpr bool IsCdcHeader(ByteView bytes) noexcept {
  std::uint64_t const release = bytes.Number(3, 2);
  return bytes.At(0) == 5 && bytes.At(1) == 0x24 && bytes.At(2) == 0 &&
         (release == 0x0100 || release == 0x0101 || release == 0x0110 || release == 0x0120);
}

/// True in interfaces that are known to have CDC descriptors after a CDC header: vendor-specific
/// ones, and those of RNDIS. A CDC data interface may have any without one.
constexpr bool MayHaveCdc(Context const& context, ByteView bytes) noexcept {
  if (!context.hasInterface || bytes.At(1) != 0x24) {
    return false;
  }
  std::uint32_t const triple = static_cast<std::uint32_t>(context.interfaceClass) << 16 |
                               static_cast<std::uint32_t>(context.interfaceSubclass) << 8 |
                               context.interfaceProtocol;
  if (context.interfaceClass == 0x0A) {
    return true;
  }
  bool const isKnown =
      context.interfaceClass == 0xFF || triple == 0xE0'01'03 || triple == 0xEF'04'01;
  return isKnown && (context.cdc == CdcGuess::kYes ||
                     (context.cdc == CdcGuess::kNotSeen && IsCdcHeader(bytes)));
}

/// A HID descriptor in a physical (05h, as HID 1.0 drafts had it) or vendor-specific interface: its
/// length fits its count, and its first class descriptor is a report descriptor (HID 1.11, 6.2.1).
constexpr bool MayBeHid(Context const& context, ByteView bytes) noexcept {
  bool const isKnown =
      context.hasInterface && (context.interfaceClass == 0x05 || context.interfaceClass == 0xFF);
  return isKnown && bytes.At(1) == 0x21 && bytes.At(5) != 0 && bytes.At(0) == 6 + 3 * bytes.At(5) &&
         bytes.At(6) == 0x22;
}

}  // namespace usb_fields::detail
