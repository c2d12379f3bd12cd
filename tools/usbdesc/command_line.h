// The command line of usbdesc.
#pragma once

#include <string>
#include <vector>

#include <tools/usbdesc/commands.h>

namespace usb_support::usbdesc {

/// The request of the command line.
struct CommandLine {
  /// Not empty: print only this text (help, version, a manual page or a completion).
  std::string reply{};
  Action action{};    ///< what the command does
  Console console{};  ///< the options of every command; without streams
};

/// Reads the arguments. Throws UsageError, with the nearest known word for one that is unknown.
CommandLine ParseCommandLine(std::vector<std::string> const& arguments);

}  // namespace usb_support::usbdesc
