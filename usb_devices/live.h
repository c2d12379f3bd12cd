// Devices that are plugged into this machine.
//
// Reading claims no interface, detaches no driver and changes nothing on a device. The kernel
// allows requests to an interface only to the interface's owner, so HID report descriptors come
// from Linux sysfs; on other systems they are recorded as failed. Without permission to open a
// device, the library reads what sysfs shows to everyone: the device descriptor, the
// configurations, the HID report descriptors and, with newer kernels, the BOS. Everything else is
// then recorded as failed, and a note gives the udev rule that grants the permission.
//
// When the library was built without libusb 1.0, ListLiveDevices and ReadLive throw ReadError.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// A device that is plugged in. No request was sent to it.
struct LiveDevice {
  std::string name;  ///< "usb:1-7": bus and ports; a root hub is "usb:1-0"
  unsigned bus = 0;
  unsigned address = 0;       ///< on the bus; changes each time the device is plugged in
  std::uint16_t vendor = 0;   ///< idVendor
  std::uint16_t product = 0;  ///< idProduct
  usb_devices::Speed speed = usb_devices::Speed::kUnknown;
};

/// The result of reading devices.
struct LiveReading {
  std::vector<Device> devices;     ///< with the names of LiveDevice
  std::vector<std::string> notes;  ///< what could not be read, and what to do about it
};

/// True when this build can read devices that are plugged in.
USB_DEVICES_API bool CanReadLive() noexcept;

/// True when a name begins with "usb:".
USB_DEVICES_API bool IsLiveName(std::string_view name) noexcept;

/// The devices that are plugged in, in the order of bus and ports. Throws ReadError.
USB_DEVICES_API std::vector<LiveDevice> ListLiveDevices();

/// Reads the device with this name ("usb:1-7") or all devices of one product ("usb:046d:0825",
/// hexadecimal). The time limit for each answer is one second. Throws ReadError.
USB_DEVICES_API LiveReading ReadLive(std::string const& name);

}  // namespace usb_devices
