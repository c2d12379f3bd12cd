// Runs the structural checks over the device under test and logs each broken rule as an assertion.
#pragma once

#include <string>

namespace usb_support::usbdesc {

/// How many checks were made, and what came of them.
struct AssertionCount {
  unsigned checked = 0;
  unsigned failed = 0;
  unsigned leftOut =
      0;  ///< not made: a rule about lengths was broken, so the content means nothing
};

/// Checks every configuration and BOS of the device under test and the device itself. A broken rule
/// is logged as "(USB 3.2: 9.6.3) message", once for each thing that breaks it, with a line
/// "//   name, configuration 1: …" for each place.
AssertionCount AssertDevice(std::string const& name);

/// "// 22 checks, 1 failed, 3 left out"; what is 0 is not said, but for the failures.
std::string Summarise(AssertionCount const& count);

}  // namespace usb_support::usbdesc
