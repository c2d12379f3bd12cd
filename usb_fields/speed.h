// The speed at which a device was read, when nothing but its descriptors is known.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/context.h>
#include <usb_fields/export.h>

namespace usb_fields {

struct SpeedGuess {
  Speed speed = Speed::kUnknown;  ///< kUnknown when the descriptors fit several speeds
  std::string_view reason = {};   ///< as in "bcdUSB is less than 0200h"; a constant
  Speed readAs =
      Speed::kUnknown;  ///< the speed as which to read the fields, if `speed` is unknown too
};

/// The speed that the device descriptor and the configurations in `runs` show; configurations of
/// the other speed do not count. Where they contradict each other, what is unique to a speed
/// decides. `readAs` is never kUnknown.
USB_FIELDS_API SpeedGuess GuessSpeed(std::span<std::span<std::uint8_t const> const> runs) noexcept;

}  // namespace usb_fields
