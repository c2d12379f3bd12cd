// Reads the listings that "lsusb -v" of usbutils writes, back into bytes.
//
// A listing has most fields of a descriptor by name and value, in the order of their bytes. A
// descriptor whose listed fields are as many bytes as its bLength is whole. Where they are not, or
// where a value cannot be read, the descriptor is refused with a note, and so is the configuration
// or BOS that it is part of: the other ones of the device stay. So does a configuration or BOS
// whose descriptors are not as many bytes as its wTotalLength.
//
// A listing does not show the language of its strings, so there are none in what is read. HID
// report descriptors are read from their items.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// What a listing gave.
struct LsusbReading {
  std::vector<Device> devices;     ///< named by bus and address: "1.2"
  std::vector<std::string> notes;  ///< what is refused, with the line and the reason
};

/// True when a line is the first of a listing.
USB_DEVICES_API bool LooksLikeLsusb(std::string_view line) noexcept;

/// The devices of a listing, with at least one answer each; `name` names it in messages. Throws
/// ReadError when there is none.
USB_DEVICES_API LsusbReading ReadLsusb(std::string_view text, std::string const& name = {});

}  // namespace usb_devices
