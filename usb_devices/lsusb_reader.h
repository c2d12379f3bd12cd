// Reads the listings that "lsusb -v" of usbutils writes, back into bytes.
//
// A listing has most fields of a descriptor by name and value, in the order of their bytes. A
// descriptor is complete when its listed fields have as many bytes as its bLength states.
// Otherwise, or when a value cannot be read, the descriptor is refused with a note, and so is the
// configuration or BOS that it is part of; the other ones of the device stay. A configuration or
// BOS is also refused when its descriptors do not have as many bytes as its wTotalLength states.
//
// A listing does not show the language of its strings, so strings are not read. HID report
// descriptors are read from their items.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// The contents of a listing.
struct LsusbReading {
  std::vector<Device> devices;     ///< named by bus and address: "1.2"
  std::vector<std::string> notes;  ///< the refused descriptors, with the line and the reason
};

/// True when a line is the first of a listing.
USB_DEVICES_API bool LooksLikeLsusb(std::string_view line) noexcept;

/// The devices of a listing, with at least one answer each; messages call the listing `name`.
/// Throws ReadError when there is none.
USB_DEVICES_API LsusbReading ReadLsusb(std::string_view text, std::string const& name = {});

}  // namespace usb_devices
