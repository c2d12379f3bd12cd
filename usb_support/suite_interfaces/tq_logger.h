// The suite's log, as the library writes it. Any thread may write.
#pragma once

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/suite_interfaces/log_level.h>
#include <usb_support/suite_interfaces/test_status.h>

/// The one logger of the application, reached through CAppState::Log().
class SUITE_RUNTIME_API TQLogger {
 public:
  TQLogger() = default;
  TQLogger(TQLogger const&) = delete;
  TQLogger& operator=(TQLogger const&) = delete;

  /// Announces that one more of the caller's frames belongs to a library, so that the next line is
  /// attributed to the test program. The next write on this thread uses up the count.
  void IncrStackDepth();

  /// The level of a line written with `status`, unless the caller chooses another.
  ELogLevel GetDefaultLogVerbosity(TEST_STATUS status) const;

  /// The look of a line written with `status`, unless the caller chooses another.
  CFormatInfo GetDefaultFormat(TEST_STATUS status) const;

  /// Writes one line. A null format means the default look of that log type. `text` is copied.
  void DoWrite(LOG_TYPE type, ELogLevel level, CFormatInfo const* format, char const* text);

  /// Writes a piece of output as it is, without a line end and without the usual decoration.
  void DoWritePrintOnly(int channel, char const* text);

  /// The same, followed by a line end.
  void DoWritePrintLnOnly(int channel, char const* text);
};

/// Writes out what the log has buffered. With `wait` it returns when that is done.
SUITE_RUNTIME_API void FlushOutput(bool wait);
