// A device in a folder: the layout that docs/devices.md describes, or a device's folder in Linux
// sysfs.
#pragma once

#include <string>
#include <vector>

#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// The device in a folder; it has the name of the folder. Only regular files that belong to the
/// layout are read; any other "*.bin" file is refused. Throws ReadError.
USB_DEVICES_API Device ReadFolder(std::string const& name);

/// Writes a device into a folder, so that ReadFolder returns the same answers and speed. Creates
/// the folder if it is missing. Throws ReadError when the folder is not empty or cannot be written.
USB_DEVICES_API void WriteFolder(Device const& device, std::string const& name);

}  // namespace usb_devices
