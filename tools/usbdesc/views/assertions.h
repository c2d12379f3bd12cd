// Runs the structural checks over a device and logs each broken rule as an assertion.
#pragma once

#include <string>

#include <tools/usbdesc/device.h>

namespace usb_support::usbdesc {

/// How many checks were made, and what came of them.
struct AssertionCount {
  unsigned checked = 0;
  unsigned failed = 0;
  /// Not made: a rule about lengths was broken, so the content means nothing.
  unsigned leftOut = 0;
};

/// Checks every configuration and BOS of a device and, when it has configurations, the device
/// itself. A broken rule is logged as "(USB 3.2: 9.6.3) message", once for each thing that
/// breaks it, with a line "//   name, configuration 1: ..." for each place, which is shown where the
/// message is.
AssertionCount AssertDevice(ShownDevice const& device);

/// False when there was nothing to check.
bool HasChecks(AssertionCount const& count) noexcept;

/// "// 22 checks, 1 failed, 3 left out", or "// nothing to check"; what is 0 is left out, but
/// for the failures.
std::string Summarise(AssertionCount const& count);

}  // namespace usb_support::usbdesc
