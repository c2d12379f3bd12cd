// The commands of the program. A command is a source file in commands/ with the function that
// defines it, and a row of the table below; nothing else refers to it.
#pragma once

#include <cstdio>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>

#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/options.h>
#include <usb_support/suite_interfaces/log_level.h>

namespace usb_support::usbdesc {

/// Exit statuses.
inline constexpr int kExitGood = 0;      ///< every input is good, and no rule is broken
inline constexpr int kExitFaulty = 1;    ///< an input is faulty, differs, or has nothing to check
inline constexpr int kExitUnusable = 2;  ///< bad usage, or something could not be read or written

/// The standard streams, and the options that every command has.
struct Console {
  std::FILE* in = nullptr;
  std::FILE* out = nullptr;
  std::FILE* err = nullptr;
  ELogLevel verbosity = LOG_LEVEL_3;
  std::optional<std::string> logFile{};
  ColourChoice colour = ColourChoice::kAuto;
};

/// A fault of a command line, described in one line.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Runs a command; returns the exit status. Throws exceptions that derive from std::exception.
using Action = std::function<int(Console const& console)>;

/// Adds a command's own options to its command line; the action reads them after the command line
/// has been read.
using Define = Action(Options& parser);

Define DefineCheck;
Define DefineDecode;
Define DefineDiff;
Define DefineDump;
Define DefineList;
Define DefineRules;
Define DefineSave;
Define DefineTree;

struct Command {
  char const* name;
  char const* help;  ///< one line, without a full stop
  Define* define;
};

/// In the order of the help. The first is the one that runs when the first word is not a command.
inline constexpr Command kCommands[] = {
    {"dump", "List the descriptors with their offsets and labels", DefineDump},
    {"decode", "Show what every field of the descriptors means", DefineDecode},
    {"tree", "Show which descriptor belongs to which", DefineTree},
    {"diff", "Show what differs between two devices", DefineDiff},
    {"check", "Judge the descriptors by the rules of the USB standards", DefineCheck},
    {"rules", "Show the rules that check applies", DefineRules},
    {"list",
     "List the devices of inputs, or the devices that are plugged in, by the names to read them",
     DefineList},
    {"save", "Save a device, INPUT, in the folder or file that is the second argument", DefineSave},
};

}  // namespace usb_support::usbdesc
