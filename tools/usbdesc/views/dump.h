// The dumps: of a whole input, and of the functions, interfaces and capabilities of a device.
#pragma once

#include <string_view>

#include <tools/usbdesc/device.h>

namespace usb_support::usbdesc {

/// Logs a title and the dump of a range: a listing, or the body of a C byte array, in which the
/// bytes that form no whole descriptor are numbers of the array, too.
void LogDump(CDescriptorRange const& run, std::string_view title, bool asCode);

/// The same for an input. If it is not one run, every device and every request has a line that
/// usb_devices reads back.
void LogDump(ShownInput const& input, bool asCode);

/// Logs every function of every configuration, each as a dump with a title such as "name,
/// configuration 1, function 2 of 3, from offset 34h"; a dump counts its own offsets from there.
void LogFunctions(ShownDevice const& device, bool asCode);

/// The same for interfaces: "name, configuration 1, interface 0 (1 of 2), from offset 1Bh", by
/// bInterfaceNumber.
void LogInterfaces(ShownDevice const& device, bool asCode);

/// The same for the device capabilities of every BOS: "name, BOS, capability 1 of 4 (type 0x02),
/// from offset 5h".
void LogCapabilities(ShownDevice const& device, bool asCode);

/// The functions of a configuration, in order.
std::vector<CDescriptorRange> FunctionsOf(Part const& configuration);

}  // namespace usb_support::usbdesc
