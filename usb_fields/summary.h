// One line about a descriptor, with what people look for first:
//
//   Configuration 1: 4 interfaces, bus-powered, 500 mA
//   Endpoint 81h IN: isochronous, asynchronous, 3 x 1020 bytes every 125 us (24.48 MB/s)
//   Video Streaming, uncompressed frame 1: 640 x 480, 5 to 30 frames a second
//
// Nothing here throws or allocates, and no read leaves the bytes. Any thread may call.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/context.h>
#include <usb_fields/export.h>

namespace usb_fields {

/// A buffer of this size holds every summary.
inline constexpr std::size_t kMostSummary = 512;

/// The line for the descriptor at the start of `bytes`, in `buffer`. What comes after it is looked
/// at for the companion of an endpoint. A descriptor that is cut is named only.
USB_FIELDS_API std::string_view SummaryOf(std::span<std::uint8_t const> bytes,
                                          Context const& context, std::span<char> buffer) noexcept;

/// The speed at which a device was asked, as far as its device descriptor and configurations tell
/// it, one after the other in `run`. kUnknown where they fit several.
USB_FIELDS_API Speed SpeedOf(std::span<std::uint8_t const> run) noexcept;

}  // namespace usb_fields
