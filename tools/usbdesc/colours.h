// The log on its way to standard output, and its colours: escape codes that are put into the text.
// The text itself stays as it is; without the codes it is what the log file gets.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

#include <standalone_suite/suite_runtime/log.h>

namespace usb_support::usbdesc {

/// The answers that --color takes.
enum class ColourChoice {
  kAuto,  ///< when the stream is a terminal that knows colours and NO_COLOR is unset or empty
  kAlways,
  kNever,
};

/// Whether output on the stream is to be coloured. A terminal is made ready for it.
bool WantsColours(std::FILE* stream, ColourChoice choice);

/// Shows the log on standard output, or on a stream in its place. A line of the program is coloured
/// by its pieces (log_text.h), any other line by its log type. What a terminal would take for a
/// command is shown in place of it (showable.h); the colours are the only escape codes. Throws
/// std::runtime_error when the stream cannot be written, then and at the flush.
class OutputSink final : public standalone::LogSink {
 public:
  /// Lines of the program have at most `columns` characters; 0: as many as they have.
  /// Requires: the stream is open for writing and outlives the sink.
  OutputSink(std::FILE* stream, bool isColoured, std::size_t columns = 0)
      : stream_(stream),
        isColoured_(isColoured),
        columns_(columns) {}

  void Take(standalone::LogCall const& call) override;

 private:
  std::FILE* stream_;
  bool isColoured_;
  std::size_t columns_;
};

/// Throws that standard output cannot be written, and why when errno knows it.
[[noreturn]] void FailOutput();

/// Writes a text to a stream as it is. Throws std::runtime_error when it cannot be written.
void Print(std::string const& text, std::FILE* out);

}  // namespace usb_support::usbdesc
