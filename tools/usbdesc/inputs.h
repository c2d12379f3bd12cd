// The inputs of a command that shows devices: everything that usb_devices reads, standard input and
// the built-in fake device.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/device.h>
#include <usb_fields/context.h>

namespace usb_support::usbdesc {

/// The file name that means standard input.
inline constexpr char kStandardInput[] = "-";

struct InputOptions {
  std::vector<std::string> files;
  bool fake = false;    ///< the built-in device is the first of the inputs
  std::string form;     ///< the form of the files, as usb_devices names it; empty: by their content
  bool vendor = false;  ///< show the vendor's name of every device
};

/// Adds INPUT, --fake, --input and --vendor to a command.
std::shared_ptr<InputOptions const> AddInputOptions(Options& parser);

/// Adds --speed: that of the devices, in place of what their source and descriptors tell.
void AddSpeedOption(Options& parser, usb_fields::Speed& speed);

/// Adds --input alone.
void AddFormOption(Options& parser, InputOptions& options);

/// Sets up the suite as a test program does, and then shows every input in order: `showInput` shows
/// it as a whole, `showDevice` shows each of its devices and returns an exit status; either may be
/// null. After that come the vendors' names and a summary line; after the last of several inputs
/// comes a line with the totals. Returns the worst exit status; an input that cannot be read gives
/// a line on standard error. Throws UsageError when no input is given, or when the log file is one
/// of the files to read or in a folder to read.
int ShowInputs(Console const& console, InputOptions const& options,
               std::function<void(ShownInput const&)> const& showInput,
               std::function<int(ShownDevice const&)> const& showDevice);

/// Receives the name of an input that cannot be read, and the reason.
using UnreadInput = std::function<void(std::string const& name, std::string const& reason)>;

/// Sets up the suite and passes every input to `take` in order, without writing about it; notes
/// about an input are lines on standard error. After the last one `finish` gets the number of
/// inputs that could not be read. `unread` gets each of these in its turn, besides the line on
/// standard error. Returns the worst exit status; failures are as with ShowInputs.
int ReadInputs(Console const& console, InputOptions const& options,
               std::function<int(Input const&)> const& take,
               std::function<void(std::size_t unread)> const& finish = nullptr,
               UnreadInput const& unread = nullptr);

/// Writes one JSON document to standard output, {"usbdesc": 1, "inputs": [...]}, with the result of
/// `write` for each input that can be read, and of UnreadJson for the others. Returns the worst of
/// the status of ReadInputs and those of `statusOf`.
int WriteJsonInputs(Console const& console, InputOptions const& options,
                    std::function<std::string(Input const&)> const& write,
                    std::function<int(Input const&)> const& statusOf);

/// The JSON object of an input that cannot be read.
std::string UnreadJson(std::string_view name, std::string_view reason);

}  // namespace usb_support::usbdesc
