// The meaning of the bits of an endpoint descriptor and of its companion.
//
// The functions take records, so they cannot fail; reserved values are returned as they are.
#pragma once

#include <cstdint>

#include <usb_support/descriptors/further_records.h>
#include <usb_support/descriptors/records.h>

namespace usb_support {

/// bmAttributes, bits 1..0 (USB 2.0, table 9-13).
enum class TransferType : std::uint8_t { kControl, kIsochronous, kBulk, kInterrupt };

/// The endpoint's transfer type.
inline TransferType TransferTypeOf(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) noexcept {
  return static_cast<TransferType>(endpoint.bmAttributes & 3u);
}

/// True for an IN endpoint: bit 7 of the address.
inline bool IsIn(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) noexcept {
  return (endpoint.bEndpointAddress & 0x80u) != 0;
}

/// The endpoint's number, 0 to 15: bits 3..0 of the address.
inline unsigned EndpointNumber(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) noexcept {
  return endpoint.bEndpointAddress & 0x0Fu;
}

/// The maximum number of bytes in a packet, 0 to 2047: bits 10..0 of wMaxPacketSize (USB 2.0,
/// 9.6.6).
inline unsigned MaxPacketBytes(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) noexcept {
  return endpoint.wMaxPacketSize & 0x07FFu;
}

/// Transactions in a microframe, 1 to 3; 4 for the reserved value: bits 12..11 of wMaxPacketSize,
/// plus 1. More than 1 has a meaning only for periodic endpoints at high speed (USB 2.0, 9.6.6).
inline unsigned TransactionsPerMicroframe(TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint) noexcept {
  return 1u + ((endpoint.wMaxPacketSize >> 11) & 3u);
}

/// The maximum number of packets in a burst: bMaxBurst plus 1; 1 to 16, other values are reserved
/// (USB 3.2, 9.6.7).
inline unsigned MaxBurstPackets(SuperSpeedEndpointCompanionDescriptor const& companion) noexcept {
  return 1u + companion.bMaxBurst;
}

/// For a bulk endpoint: the maximum number of streams, 0 for none, otherwise 2^n (USB 3.2, 9.6.7; n
/// above 16 is reserved and still gives 2^n).
inline std::uint32_t MaxStreams(SuperSpeedEndpointCompanionDescriptor const& companion) noexcept {
  unsigned const exponent = companion.bmAttributes & 0x1Fu;
  return exponent == 0 ? 0 : std::uint32_t{1} << exponent;
}

/// For an isochronous endpoint: true when a SuperSpeedPlus isochronous companion follows, which
/// then gives the bytes per interval (bit 7, USB 3.2, 9.6.7).
inline bool HasSuperSpeedPlusCompanion(
    SuperSpeedEndpointCompanionDescriptor const& companion) noexcept {
  return (companion.bmAttributes & 0x80u) != 0;
}

/// For an isochronous endpoint without that companion: bursts in a service interval, 1 to 3; 4 for
/// the reserved value: Mult, bits 1..0, plus 1 (USB 3.2, 9.6.7).
inline unsigned BurstsPerInterval(SuperSpeedEndpointCompanionDescriptor const& companion) noexcept {
  return 1u + (companion.bmAttributes & 3u);
}

}  // namespace usb_support
