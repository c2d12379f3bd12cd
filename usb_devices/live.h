// Devices that are plugged into this machine.
//
// Reading claims no interface, detaches no driver and changes nothing on a device. The kernel
// answers requests to an interface for the interface's owner only, so HID report descriptors come
// from Linux' sysfs; elsewhere they are recorded as failed. Without permission to open a device
// there is what sysfs shows to everyone: the device descriptor, the configurations, the BOS of
// newer kernels and HID reports. All else is recorded as failed then, and a note tells the udev
// rule to add.
//
// Needs libusb 1.0 when the library is built.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// A device that is plugged in, without having been asked for anything.
struct LiveDevice {
  std::string name;  ///< "usb:1-7": bus and ports; a root hub is "usb:1-0"
  unsigned bus = 0;
  unsigned address = 0;       ///< on the bus; another one after each plugging in
  std::uint16_t vendor = 0;   ///< idVendor
  std::uint16_t product = 0;  ///< idProduct
  usb_devices::Speed speed = usb_devices::Speed::kUnknown;
};

/// What reading devices gave.
struct LiveReading {
  std::vector<Device> devices;     ///< named as LiveDevice is
  std::vector<std::string> notes;  ///< what could not be read, and what to do about it
};

/// Whether this build reads devices that are plugged in.
USB_DEVICES_API bool CanReadLive() noexcept;

/// True when a name begins with "usb:".
USB_DEVICES_API bool IsLiveName(std::string_view name) noexcept;

/// The devices that are plugged in, by bus and ports. Throws ReadError.
USB_DEVICES_API std::vector<LiveDevice> ListLiveDevices();

/// Reads the device of a name, "usb:1-7", or all of one product, "usb:046d:0825" (hexadecimal). A
/// device has a second for each answer.
/// Throws ReadError.
USB_DEVICES_API LiveReading ReadLive(std::string const& name);

}  // namespace usb_devices
