// The suite around a command, set up the way a test program does it: log sinks, verbosity, helper
// and debug capabilities.
#pragma once

#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/platform.h>
#include <usb_support/helper/test_run.h>

namespace usb_support::usbdesc {

/// Its end takes out of the suite what it has put in, and log sinks of others too.
class SuiteRun {
 public:
  /// `sources` is what the command will read. Throws UsageError when the log file is one of them:
  /// it is emptied here. Throws std::runtime_error when the log file cannot be made.
  SuiteRun(Console const& console, std::vector<std::optional<FileIdentity>> const& sources);

 private:
  // Ends last, also when the constructor throws.
  struct Cleanup {
    ~Cleanup();
  };

  Cleanup cleanup_;
  std::optional<TestRun> run_;
};

/// Writes "usbdesc: message" as one line to the standard error.
void Report(std::FILE* err, std::string_view message);

}  // namespace usb_support::usbdesc
