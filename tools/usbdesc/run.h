// The program usbdesc: takes the descriptors of USB devices from files and writes what a command
// (commands.h) makes of them to standard output, through the suite's log.
//
// It sets up the suite the way a test program does: log, helper, debug capabilities. At the end of
// the run all but the verbosity is taken down again, log sinks of others included, so it may run
// more than once, on one thread at a time.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include <tools/usbdesc/commands.h>

namespace usb_support::usbdesc {

/// Runs the program with its arguments (without its name) and standard streams; the exit status.
/// What goes wrong is a line on `err`. Throws std::bad_alloc when not even that line can be made.
int Run(std::vector<std::string> const& arguments, std::FILE* in, std::FILE* out, std::FILE* err);

}  // namespace usb_support::usbdesc
