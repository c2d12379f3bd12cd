// The log behind TQLogger and FlushOutput: sinks take what is written.
//
// A program adds the sinks that it wants (log_sinks.h has some). Until it does, what is written
// goes to standard error, through a ConsoleSink; RemoveAllLogSinks() ends that too. The log shares
// the ownership of its sinks. Any thread may write and may add or remove sinks: one call at a time
// is handed to the sinks, in the order in which they were added, and on the writer's thread.
// Writing itself allocates nothing.
//
// A sink may throw: the other sinks still get the call, and then the first exception passes to the
// writer. A sink must not write to the log or change its sinks while it takes a call; that throws
// std::logic_error.
//
// When the process ends, the log lets go of its sinks; what is written after that goes nowhere. On
// Windows this happens after the program's own static objects have ended.
#pragma once

#include <memory>
#include <string_view>

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/suite_interfaces/log_level.h>

namespace usb_support::standalone {

/// The calls that the log takes.
enum class LogOperation {
  kDoWrite,             ///< TQLogger::DoWrite
  kDoWritePrintOnly,    ///< TQLogger::DoWritePrintOnly
  kDoWritePrintLnOnly,  ///< TQLogger::DoWritePrintLnOnly
  kFlushOutput,         ///< FlushOutput
};

/// One call as the writer made it; what the operation does not have is zero, null or empty. It is
/// valid only while the sink takes it.
struct LogCall {
  LogOperation operation = LogOperation::kDoWrite;  ///< which call it is
  LOG_TYPE type{};                                  ///< of DoWrite: the kind of line
  ELogLevel level = LOG_LEVEL_0;                    ///< of DoWrite
  CFormatInfo const* format = nullptr;              ///< null: the default look of the log type
  std::string_view text;                            ///< a null text is empty
  int channel = 0;                                  ///< of the calls that print
  bool wait = false;                                ///< of FlushOutput
  /// How often IncrStackDepth was called on this thread since the thread's last write. A flush
  /// neither has nor resets the count.
  unsigned stackDepth = 0;
};

/// Takes what is written to the log.
class SUITE_RUNTIME_API LogSink {
 public:
  LogSink() = default;
  LogSink(LogSink const&) = delete;
  LogSink& operator=(LogSink const&) = delete;
  virtual ~LogSink();

  /// Takes one call. The log makes these calls one at a time.
  virtual void Take(LogCall const& call) = 0;
};

/// Adds a sink; no effect when it is already there. Throws std::invalid_argument for null.
SUITE_RUNTIME_API void AddLogSink(std::shared_ptr<LogSink> sink);

/// Removes a sink; no effect when it is not there. When it returns, the sink takes no more calls.
SUITE_RUNTIME_API void RemoveLogSink(std::shared_ptr<LogSink> const& sink);

/// Removes all sinks.
SUITE_RUNTIME_API void RemoveAllLogSinks();

/// Sets the verbosity of the run, which is 3 until this is called. Lines above it are still handed
/// to the sinks; each sink decides what it shows.
SUITE_RUNTIME_API void SetLogVerbosity(ELogLevel verbosity);

/// The verbosity of the run, the same as CAppState::TQLogVerbosityLevel().
SUITE_RUNTIME_API ELogLevel LogVerbosity();

}  // namespace usb_support::standalone
