// The command line of usbdesc.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/input.h>
#include <usb_support/suite_interfaces/log_level.h>

namespace usb_support::usbdesc {

/// The file name that stands for standard input.
inline constexpr char kStandardInput[] = "-";

struct Options {
  std::vector<std::string> files;
  bool fake = false;  ///< the built-in device is one of the inputs
  InputKind kind = InputKind::kRecognise;
  bool asCode = false;
  bool functions = false;     ///< dump every function of every configuration
  bool interfaces = false;    ///< dump every interface of every configuration
  bool capabilities = false;  ///< dump every capability of every BOS
  bool tree = false;
  bool assertions = false;
  bool vendor = false;
  ELogLevel verbosity = LOG_LEVEL_3;
  std::optional<std::string> logFile;
  std::optional<std::string> settingsFile;
  std::vector<std::pair<std::string, std::string>> settings;
  ColourChoice colour = ColourChoice::kAuto;

  /// Not empty: the command line asks for this text (help, version, a manual page or a completion)
  /// and nothing else.
  std::string reply;
};

/// What is wrong with a command line, in one line.
class UsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// Reads the arguments. Raises UsageError.
Options ParseOptions(std::vector<std::string> const& arguments);

}  // namespace usb_support::usbdesc
