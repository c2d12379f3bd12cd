// One line for each descriptor, with its most important values:
//
//   Configuration 1: 4 interfaces, bus-powered, 500 mA
//   Endpoint 81h IN: isochronous, asynchronous, 3 x 1020 bytes every 125 us (24.48 MB/s)
//   Video Streaming, uncompressed frame 1: 640 x 480, 5 to 30 frames a second
//
// Nothing here throws or allocates, and nothing outside the bytes is read. Any thread may call
// these functions.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/context.h>
#include <usb_fields/export.h>

namespace usb_fields {

/// A buffer of this size holds every summary.
inline constexpr std::size_t kMostSummary = 512;

/// The line for the descriptor at the start of `bytes`, in `buffer`. The bytes after it are only
/// used to find the companion of an endpoint. For a descriptor that is cut, the line is only its
/// name.
USB_FIELDS_API std::string_view SummaryOf(std::span<std::uint8_t const> bytes,
                                          Context const& context, std::span<char> buffer) noexcept;

}  // namespace usb_fields
