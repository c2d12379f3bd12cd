// Reads all that a device tells about itself, one control transfer after the other. The transfers
// are the caller's: libusb's, a test program's own, or those of a simulated device.
//
// Asked for are the device descriptor, each configuration, the qualifier and the configurations of
// the other speed, the BOS with the Microsoft OS 2.0 set and the WebUSB URL that it announces, the
// hub descriptor of a hub, HID report descriptors, and the strings that the device, configuration,
// interface and interface association descriptors name, and the MAC address of an Ethernet
// function, in every language. The last question, to devices of USB 2.0 and later only, is the
// Microsoft OS 1.0 string; where it is one, the extended compat ID follows. Nothing is set or changed.
//
// A configuration, a BOS and an extended compat ID are read twice: their header, then as much as it
// announces. When the two reads do not agree, the longer answer is kept, with a note.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

#include <usb_devices/bytes.h>
#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// What became of one control transfer.
struct ControlTransfer {
  usb_devices::Outcome outcome = usb_devices::Outcome::kFailed;
  usb_devices::Bytes bytes;  ///< none unless answered
  std::string note;          ///< why it failed, for people
  bool isGone = false;       ///< no further transfer can succeed: the device was unplugged
};

/// Makes one control transfer that reads at most `length` bytes.
using ControlRead = std::function<ControlTransfer(Request const& request, std::uint16_t length)>;

/// How to reach a device.
struct ControlPipe {
  std::string name;  ///< for the sources of the answers
  ControlRead read;
  /// Whether interfaces may be asked. The operating system lets only the owner of an interface.
  bool asksInterfaces = false;
};

/// Adds what the device answers to `device`; an answer that it has already stays. After eight
/// failures, or when the device is gone, the rest is recorded as failed without being asked for.
/// Throws what `pipe.read` throws.
USB_DEVICES_API void ReadThrough(ControlPipe const& pipe, DeviceBuilder& device);

}  // namespace usb_devices
