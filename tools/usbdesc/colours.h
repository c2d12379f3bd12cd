// Writes the log to standard output, with colours: escape codes that are inserted into the text.
// The text itself is not changed; without the codes it is the same as in the log file.
#pragma once

#include <cstddef>
#include <cstdio>
#include <string>
#include <string_view>

#include <standalone_suite/suite_runtime/log.h>

namespace usb_support::usbdesc {

/// The values of --color.
enum class ColourChoice {
  kAuto,  ///< when the stream is a terminal with colours and NO_COLOR is unset or empty
  kAlways,
  kNever,
};

/// True when output on the stream is coloured. Prepares a terminal for colours.
bool WantsColours(std::FILE* stream, ColourChoice choice);

/// Shows the log on standard output, or on another stream. A line of the program is coloured by its
/// pieces (log_text.h), any other line by its log type. Terminal control sequences are shown as
/// text (showable.h); the colours are the only escape codes. Throws std::runtime_error when the
/// stream cannot be written, at once or at the flush.
class OutputSink final : public standalone::LogSink {
 public:
  /// Lines of the program have at most `columns` characters; 0: no limit.
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

/// Throws an error that standard output cannot be written, with the reason from errno if there is
/// one.
[[noreturn]] void FailOutput();

/// Writes a text to a stream as it is. Throws std::runtime_error when it cannot be written.
void Print(std::string const& text, std::FILE* out);

}  // namespace usb_support::usbdesc
