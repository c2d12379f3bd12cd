// The program usbdesc: reads the descriptors of USB devices and writes the output of a command
// (commands.h) to standard output, through the suite's log.
//
// It sets up the suite the way a test program does: log, helper, debug capabilities. At the end of
// the run everything except the verbosity is removed again, including log sinks of other code, so
// it may run more than once, on one thread at a time.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include <tools/usbdesc/commands.h>

namespace usb_support::usbdesc {

/// Runs the program with its arguments (without its name) and standard streams; returns the exit
/// status. An error is a line on `err`. Throws std::bad_alloc when there is no memory even for that
/// line.
int Run(std::vector<std::string> const& arguments, std::FILE* in, std::FILE* out, std::FILE* err);

}  // namespace usb_support::usbdesc
