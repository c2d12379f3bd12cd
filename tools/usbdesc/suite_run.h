// Sets up the suite for a command as a test program does: log sinks, verbosity, helper and debug
// capabilities.
#pragma once

#include <cstdio>
#include <optional>
#include <string_view>
#include <vector>

#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/platform.h>
#include <usb_support/helper/test_run.h>

namespace usb_support::usbdesc {

/// The destructor removes everything that the constructor added to the suite, and also log sinks of
/// other code.
class SuiteRun {
 public:
  /// `sources` are the files that the command will read. Throws UsageError when the log file is one
  /// of them: it is emptied here. Throws std::runtime_error when the log file cannot be made.
  SuiteRun(Console const& console, std::vector<std::optional<FileIdentity>> const& sources);

 private:
  // Destroyed last, even when the constructor throws.
  struct Cleanup {
    ~Cleanup();
  };

  Cleanup cleanup_;
  std::optional<TestRun> run_;
};

/// Writes "usbdesc: message" as one line to the standard error.
void Report(std::FILE* err, std::string_view message);

}  // namespace usb_support::usbdesc
