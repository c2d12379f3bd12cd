// The dumps of sub-ranges: functions and interfaces of configurations, capabilities of a BOS.
#pragma once

#include <string>

namespace usb_support::usbdesc {

/// Logs every function of every configuration of the device under test, each as a dump with a title
/// such as "name, configuration 1, function 2 of 3, from offset 34h"; a dump counts its own offsets
/// from there.
void LogFunctions(std::string const& name, bool asCode);

/// The same for interfaces: "name, configuration 1, interface 0 (1 of 2), from offset 1Bh", by bInterfaceNumber.
void LogInterfaces(std::string const& name, bool asCode);

/// The same for the device capabilities of every BOS: "name, BOS, capability 1 of 4 (type 0x02), from
/// offset 5h".
void LogCapabilities(std::string const& name, bool asCode);

}  // namespace usb_support::usbdesc
