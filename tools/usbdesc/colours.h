// The log on its way to standard output, and its colours: escape codes that are put into the text.
// The text itself stays as it is; without the codes it is what the log file gets.
#pragma once

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

/// Lines of a dump, a tree or a summary with their offsets, labels and marks of what is wrong in
/// colour. What the colours are taken from is the text alone: a line that holds a name from outside
/// begins with "//" and never as a summary does.
std::string Coloured(std::string_view text);

/// Shows the log on standard output, or on a stream in its place. What a terminal would take for a
/// command is shown in place of it (showable.h); the colours are the only escape codes. Throws
/// std::runtime_error when the stream cannot be written, then and at the flush.
class OutputSink final : public standalone::LogSink {
 public:
  /// Requires: the stream is open for writing and outlives the sink.
  OutputSink(std::FILE* stream, bool isColoured) : stream_(stream), isColoured_(isColoured) {}

  void Take(standalone::LogCall const& call) override;

 private:
  std::FILE* stream_;
  bool isColoured_;
};

/// Says that standard output cannot be written, and why when errno knows it.
[[noreturn]] void FailOutput();

}  // namespace usb_support::usbdesc
