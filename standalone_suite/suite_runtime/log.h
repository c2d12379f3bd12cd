// The log of TQLogger and FlushOutput: sinks receive everything that is written.
//
// A program adds the sinks that it needs (log_sinks.h has some). Until it does, the log goes to
// standard error, through a ConsoleSink; RemoveAllLogSinks() removes that one too. The log shares
// the ownership of its sinks. Any thread may write and may add or remove sinks: one call at a time
// is passed to the sinks, in the order in which they were added, and on the writer's thread.
// Writing itself allocates nothing.
//
// A sink may throw: the other sinks still get the call, and then the first exception is passed to
// the writer. A sink must not write to the log or change its sinks while it receives a call; that
// throws std::logic_error.
//
// When the process ends, the log releases its sinks; anything written after that is lost. On
// Windows this happens after the program's own static objects have been destroyed.
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

/// One call as the writer made it; members that the operation does not have are zero, null or
/// empty. It is valid only while the sink receives it.
struct LogCall {
  LogOperation operation = LogOperation::kDoWrite;  ///< which call it is
  LOG_TYPE type{};                                  ///< of DoWrite: the kind of line
  ELogLevel level = LOG_LEVEL_0;                    ///< of DoWrite
  CFormatInfo const* format = nullptr;              ///< null: the default look of the log type
  std::string_view text;                            ///< a null text is empty
  int channel = 0;                                  ///< of the calls that print
  bool wait = false;                                ///< of FlushOutput
  /// The number of IncrStackDepth calls on this thread since the thread's last write. A flush
  /// neither has nor resets the count.
  unsigned stackDepth = 0;
};

/// Receives everything that is written to the log.
class SUITE_RUNTIME_API LogSink {
 public:
  LogSink() = default;
  LogSink(LogSink const&) = delete;
  LogSink& operator=(LogSink const&) = delete;
  virtual ~LogSink();

  /// Receives one call. The log makes these calls one at a time.
  virtual void Take(LogCall const& call) = 0;
};

/// Adds a sink; no effect when it is already there. Throws std::invalid_argument for null.
SUITE_RUNTIME_API void AddLogSink(std::shared_ptr<LogSink> sink);

/// Removes a sink; no effect when it is not there. When it returns, the sink receives no more
/// calls.
SUITE_RUNTIME_API void RemoveLogSink(std::shared_ptr<LogSink> const& sink);

/// Removes all sinks.
SUITE_RUNTIME_API void RemoveAllLogSinks();

/// Sets the verbosity of the run, which is 3 until this is called. Lines above it are still passed
/// to the sinks; each sink decides what it shows.
SUITE_RUNTIME_API void SetLogVerbosity(ELogLevel verbosity);

/// The verbosity of the run, the same as CAppState::TQLogVerbosityLevel().
SUITE_RUNTIME_API ELogLevel LogVerbosity();

}  // namespace usb_support::standalone
