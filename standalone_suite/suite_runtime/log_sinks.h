// The sinks that come with the log: a console or any open stream, a file, and a record for tests.
//
// The console and the file show a line (DoWrite) only when its level is at most the verbosity of
// the run; pieces of output (DoWritePrintOnly, DoWritePrintLnOnly) have no level and are always
// shown. Lines and PrintLn pieces are followed by a line end; other pieces are not. A failure to
// write throws std::runtime_error, which is passed to the caller that wrote to the log. Streams
// buffer: a failure may appear only at the flush.
#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iosfwd>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

#include <standalone_suite/suite_runtime/log.h>
#include <usb_support/platform/export.h>

namespace usb_support::standalone {

#if defined(_MSC_VER)
#pragma warning(push)
#pragma warning(disable : 4251)  // library and program share one standard library
#endif

/// When a console sink colours its lines.
enum class ColourPolicy {
  kAuto,  ///< when the stream is a terminal and the environment variable NO_COLOR is unset or empty
  kNever,   ///< never
  kAlways,  ///< always
};

/// Shows the log on an open stream such as stdout. With colour, a line has the look that it was
/// written with, or the default look of its log type, as 24-bit ANSI colour and bold; a line with
/// the plain look, and a piece of output, is not changed. Terminal control sequences are shown as
/// text (showable.h), because a log quotes names and data from outside. The caller keeps owning the
/// stream.
class SUITE_RUNTIME_API ConsoleSink final : public LogSink {
 public:
  /// Requires: the stream is open for writing and outlives the sink.
  explicit ConsoleSink(std::FILE* stream, ColourPolicy policy = ColourPolicy::kAuto);

  void Take(LogCall const& call) override;

 private:
  void Print(LogCall const& call);

  std::FILE* stream_;
  bool coloured_;
  std::string output_;
};

/// Writes the log to a file: without colour, the text's bytes as they are, and "\n" as the line end
/// on every system. The file is closed when the sink is destroyed; a program that must know whether
/// everything was written calls FlushOutput first.
class SUITE_RUNTIME_API FileSink final : public LogSink {
 public:
  /// Creates the file, or empties an existing one. Throws std::runtime_error with the file's name
  /// when that fails.
  explicit FileSink(std::filesystem::path const& file);

  void Take(LogCall const& call) override;

 private:
  void Check(char const* what);

  std::string name_;
  std::ofstream out_;
};

/// One call to the log, as it was made, with its own copies.
struct RecordedCall {
  LogOperation operation = LogOperation::kDoWrite;  ///< as in LogCall
  LOG_TYPE type{};                                  ///< as in LogCall
  ELogLevel level = LOG_LEVEL_0;                    ///< as in LogCall
  std::optional<CFormatInfo> format{};              ///< nothing when the call had a null format
  std::string text{};                               ///< a copy; a null text is empty
  int channel = 0;                                  ///< as in LogCall
  bool wait = false;                                ///< as in LogCall
  unsigned stackDepth = 0;                          ///< as in LogCall

  friend bool operator==(RecordedCall const&, RecordedCall const&) = default;
};

/// Writes the call for a test's output, for example
/// `DoWrite(type 0x80000000, level 1, default format, "text", stack depth 1)`.
SUITE_RUNTIME_API std::ostream& operator<<(std::ostream& out, RecordedCall const& call);

/// Keeps every call of any level. Any thread may read the record.
class SUITE_RUNTIME_API RecordingSink final : public LogSink {
 public:
  void Take(LogCall const& call) override;

  /// A copy of the calls so far, in order.
  std::vector<RecordedCall> Calls() const;

  /// The calls so far, in order; empties the record.
  std::vector<RecordedCall> Take();

  /// Forgets the calls so far.
  void Clear();

 private:
  mutable std::mutex lock_;
  std::vector<RecordedCall> calls_;
};

#if defined(_MSC_VER)
#pragma warning(pop)
#endif

}  // namespace usb_support::standalone
