// The speed at which a device was read, when nothing but its descriptors is known.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/context.h>
#include <usb_fields/export.h>

namespace usb_fields {

/// A speed and what shows it, as in "an endpoint has a high-speed packet size". The text lives as
/// long as the program.
struct SpeedGuess {
  Speed speed = Speed::kUnknown;
  std::string_view reason = {};
  bool mayBeLow = false;  ///< with kFull: the descriptors fit low speed as well
};

/// The speed that the device descriptor and the configurations in `runs` show; configurations of
/// the other speed do not count. Where they contradict each other, what is unique to a speed
/// decides. kUnknown when they fit several speeds, except for full and low speed: see mayBeLow.
USB_FIELDS_API SpeedGuess GuessSpeed(std::span<std::span<std::uint8_t const> const> runs) noexcept;

}  // namespace usb_fields
