// The inputs of a command that shows devices: files, standard input and the built-in fake device.
#pragma once

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/device.h>
#include <tools/usbdesc/input.h>

namespace usb_support::usbdesc {

/// The file name that means standard input.
inline constexpr char kStandardInput[] = "-";

struct InputOptions {
  std::vector<std::string> files;
  bool fake = false;  ///< the built-in device is the first of the inputs
  InputKind kind = InputKind::kRecognise;
  bool vendor = false;  ///< show the vendor's name of every device
};

/// Adds INPUT, --fake, --input and --vendor to a command.
std::shared_ptr<InputOptions const> AddInputOptions(Options& parser);

/// What was read from one input.
struct Input {
  std::string name;             ///< fit to be shown
  CDescriptorRange run;         ///< valid as long as the input is shown
  std::vector<Device> devices;  ///< at least one
};

/// Sets up the suite as a test program does, and then shows every input in order: `showInput` shows
/// it as a whole, `showDevice` shows each of its devices and returns an exit status; either may be
/// null. After that come the vendor's names and a line that sums up the input. The worst exit
/// status; an input that cannot be read is a line on the standard error. Throws UsageError when
/// no input is given, or when the log file is one of the files to read.
int ShowInputs(Console const& console, InputOptions const& options,
               std::function<void(Input const&)> const& showInput,
               std::function<int(Device const&)> const& showDevice);

/// Sets up the suite and hands every input to `take` in order, without writing about it. The worst
/// exit status; failures are as with ShowInputs.
int ReadInputs(Console const& console, InputOptions const& options,
               std::function<int(Input const&)> const& take);

}  // namespace usb_support::usbdesc
