#include <tools/usbdesc/suite_run.h>

#include <algorithm>
#include <memory>
#include <string>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/showable.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace usb_support::usbdesc {
namespace {

// The log file may have other names than a source, and standard input has none here.
void CheckLogFile(std::optional<std::string> const& logFile,
                  std::vector<std::optional<FileIdentity>> const& sources) {
  std::optional<FileIdentity> const log = logFile ? IdentityOf(PathOf(*logFile)) : std::nullopt;
  if (log && std::find(sources.begin(), sources.end(), log) != sources.end()) {
    throw UsageError(*logFile + ": the log file is one of the files to read");
  }
}

}  // namespace

SuiteRun::SuiteRun(Console const& console,
                   std::vector<std::optional<FileIdentity>> const& sources) {
  CheckLogFile(console.logFile, sources);
  standalone::AddLogSink(std::make_shared<OutputSink>(
      console.out, WantsColours(console.out, console.colour), TerminalColumns(console.out)));
  if (console.logFile) {
    standalone::AddLogSink(std::make_shared<standalone::FileSink>(PathOf(*console.logFile)));
  }
  standalone::SetLogVerbosity(console.verbosity);
  run_.emplace();
}

SuiteRun::Cleanup::~Cleanup() {
  CAppState::Helper(nullptr);
  standalone::RemoveAllLogSinks();
}

void Report(std::FILE* err, std::string_view message) {
  std::fprintf(err, "usbdesc: %s\n", standalone::Showable(message).c_str());
}

}  // namespace usb_support::usbdesc
