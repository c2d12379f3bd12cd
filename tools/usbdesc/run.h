// The program usbdesc: takes the descriptors of USB devices from files and writes them, labelled
// and judged, to standard output through the suite's log.
//
// It sets up the suite the way a test program does: log, settings, helper with test services and a
// device under test, debug capabilities. At the end of the run all but the verbosity is taken down
// again, log sinks of others included, so it may run more than once, on one thread at a time.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace usb_support::usbdesc {

/// Exit statuses.
inline constexpr int kExitGood = 0;      ///< every input is good, and no assertion failed
inline constexpr int kExitFaulty = 1;    ///< some input is faulty, or there was nothing to check
inline constexpr int kExitUnusable = 2;  ///< bad usage, or something could not be read or written

/// Runs the program with its arguments (without its name) and standard streams; the exit status.
/// What goes wrong is a line on `err`. Throws std::bad_alloc when not even that line can be made.
int Run(std::vector<std::string> const& arguments, std::FILE* in, std::FILE* out, std::FILE* err);

}  // namespace usb_support::usbdesc
