// Reads all descriptors of a device, one control transfer after the other. The caller makes the
// transfers: with libusb, with a test program's own code, or on a simulated device.
//
// The device is asked for the device descriptor, each configuration, the qualifier and the
// configurations of the other speed, the BOS with the Microsoft OS 2.0 set and the WebUSB URL that
// it announces, the hub descriptor of a hub, HID report descriptors and, in every language, the
// strings that the device, configuration, interface and interface association descriptors name and
// the MAC address of an Ethernet function. Last, a device of USB 2.0 or later is asked for the
// Microsoft OS 1.0 string and, when it is valid, for the extended compat ID. Nothing is set or
// changed.
//
// A configuration, a BOS and an extended compat ID are read twice: first the header, then as many
// bytes as it announces. When the two reads disagree, the longer answer is kept, with a note.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <usb_devices/bytes.h>
#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// The result of one control transfer.
struct ControlTransfer {
  usb_devices::Outcome outcome = usb_devices::Outcome::kFailed;
  usb_devices::Bytes bytes;  ///< empty unless answered
  std::string note;          ///< why it failed, for people
  bool isGone = false;       ///< no further transfer can succeed: the device is unplugged
};

/// Makes one control transfer that reads at most `length` bytes.
using ControlRead = std::function<ControlTransfer(Request const& request, std::uint16_t length)>;

/// How to reach a device.
struct ControlPipe {
  std::string name;  ///< for the sources of the answers
  ControlRead read;
  /// Whether requests to interfaces are allowed. The operating system allows them only to the owner
  /// of an interface.
  bool asksInterfaces = false;
};

/// Adds the answers of the device to `device`; its existing answers are kept. After eight
/// failures, or when the device is gone, the rest is recorded as failed without a transfer. Throws
/// what `pipe.read` throws.
USB_DEVICES_API void ReadThrough(ControlPipe const& pipe, DeviceBuilder& device);

}  // namespace usb_devices
