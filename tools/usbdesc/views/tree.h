// A device as a tree of lines, indented by two spaces per level:
//
//   Device 1209:0002: USB 2.00, class by interface, release 1.00
//   Configuration 1: 2 interfaces, bus-powered, remote wakeup, 100 mA, 59 bytes
//     Function 1 of 2: HID (Human Interface Device), Boot Interface Subclass, Keyboard
//       Interface 0: HID (Human Interface Device), Boot Interface Subclass, Keyboard, 1 endpoint
//         HID 1.11: report descriptor of 63 bytes
//
// Every descriptor has a line, below the descriptor that it belongs to. Every byte of the device
// belongs to a line: bytes that cannot be read as descriptors have a line of their own.
#pragma once

#include <tools/usbdesc/device.h>

namespace usb_support::usbdesc {

/// Logs the tree; nothing for a device without descriptors.
void LogTree(ShownDevice const& device);

}  // namespace usb_support::usbdesc
