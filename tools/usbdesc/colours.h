// Colours of the output: escape codes that are put into the text of the log on its way to standard
// output. The text itself stays as it is; without the codes it is what the log file gets.
#pragma once

#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include <standalone_suite/suite_runtime/log.h>
#include <standalone_suite/suite_runtime/log_sinks.h>

namespace usb_support::usbdesc {

/// The answers that --color takes.
enum class ColourChoice {
  kAuto,  ///< when the stream is a terminal that knows colours and NO_COLOR is unset or empty
  kAlways,
  kNever,
};

/// Whether output on the stream is to be coloured. A terminal is made ready for it.
bool WantsColours(std::FILE* stream, ColourChoice choice);

/// Lines of a dump, a tree or a summary with their offsets, labels and marks of what is not valid
/// in colour. What the colours are taken from is the text alone.
std::string Coloured(std::string_view text);

/// Shows the log on an open stream, in colour.
class ColourSink final : public standalone::LogSink {
 public:
  /// Requires: the stream is open for writing and outlives the sink.
  explicit ColourSink(std::FILE* stream);

  void Take(standalone::LogCall const& call) override;

 private:
  standalone::ConsoleSink plain_;
};

/// The sink that shows the log on the stream as the choice says.
std::shared_ptr<standalone::LogSink> MakeOutputSink(std::FILE* stream, ColourChoice choice);

}  // namespace usb_support::usbdesc
