// The bus speed of a device, as the suite encodes it.
#pragma once

#include <cstdint>

/// Bus speed of a device. The enumerators are the values that usb_support uses.
enum TQE_USB_DEVICE_SPEED : std::uint8_t {
  TQE_USB_DEVICE_SPEED_SUPER = 3,       ///< SuperSpeed; the speed of the built-in fake device
  TQE_USB_DEVICE_SPEED_UNKNOWN = 0xFF,  ///< no speed known
};
