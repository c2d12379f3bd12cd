// A device as a tree of lines, two spaces a level:
//
//   Device: bcdUSB 0x0200, idVendor 0x1209, idProduct 0x0002
//   Configuration 1: 59 bytes
//     Function 1 of 2
//       Interface: Num=0, Alt=0 (HID)
//         1 class-specific descriptor (0x21), 9 bytes
//         Interrupt Endpoint: Address=0x81 (IN), wMaxPacketSize=8 (0x0008), bInterval=10 (0x0A)
//
// Configurations, interface associations, interfaces, endpoints, their companions and device
// capabilities have a line of their own with their label; all others are counted. Every byte of
// the device is under some line: what cannot be read, or belongs to nothing, has one too.
#pragma once

#include <tools/usbdesc/device.h>

namespace usb_support::usbdesc {

/// Logs the tree; nothing for a device without descriptors.
void LogTree(ShownDevice const& device);

}  // namespace usb_support::usbdesc
