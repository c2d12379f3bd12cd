// A device in a folder: the layout that docs/devices.md describes, or a folder of Linux' sysfs.
#pragma once

#include <string>
#include <vector>

#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// The device in a folder, named as the folder is. Only regular files are read, and of those only
/// the ones of the layout; a file "*.bin" that the layout does not have is refused.
/// Throws ReadError.
USB_DEVICES_API Device ReadFolder(std::string const& name);

/// Writes a device into a folder, which is made when it is missing, so that ReadFolder gives the
/// same answers and the same speed. Throws ReadError when the folder holds something already, or
/// cannot be written.
USB_DEVICES_API void WriteFolder(Device const& device, std::string const& name);

}  // namespace usb_devices
