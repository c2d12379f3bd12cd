// Writes devices as text that text_reader.h reads.
#pragma once

#include <string>

#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// A listing of all answers: a line for the device, a line for each request, and a line for each
/// descriptor with its offset. Contains the complete device.
USB_DEVICES_API std::string WriteListing(Device const& device);

/// The same as comments and numbers of a C array.
USB_DEVICES_API std::string WriteCode(Device const& device);

/// The text after "// " before a device and before an answer in a listing: "device 1.7, speed
/// high:", "request 80 06 00 01 00 00, device:", "request 80 06 00 0F 00 00, BOS: stalled".
USB_DEVICES_API std::string TitleOf(Device const& device);
USB_DEVICES_API std::string TitleOf(Answer const& answer);

/// The line for the device and those for requests without bytes; empty when there is nothing to
/// state.
USB_DEVICES_API std::string WriteOutcomes(Device const& device);

}  // namespace usb_devices
