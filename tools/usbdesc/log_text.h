// The lines that the program writes to the suite's log; each piece of a line knows its meaning.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include <usb_support/suite_interfaces/test_status.h>

namespace usb_support::usbdesc {

/// The meaning of a piece of a line, which determines its colour (colours.h).
enum class Piece {
  kPlain,  ///< text of the program, bytes, names from outside
  kTitle,
  kOffset,
  kLabel,
  kFault,  ///< a fault
  kNote,   ///< something that needs attention
};

/// A text of one or more lines, made of pieces.
class Line {
 public:
  struct Span {
    std::size_t end;  ///< where the piece ends; it begins where the one before ends
    Piece piece;
  };

  Line() = default;
  explicit Line(std::string_view text, Piece piece = Piece::kPlain) { Add(text, piece); }

  Line& Add(std::string_view text, Piece piece = Piece::kPlain);

  std::string const& Text() const noexcept { return text_; }
  std::vector<Span> const& Spans() const noexcept { return spans_; }

 private:
  std::string text_;
  std::vector<Span> spans_;
};

/// The text with lines of at most `columns` characters: a longer one continues on the next line,
/// further indented, broken at a space if there is one. Too few columns count as no limit.
Line Wrapped(Line const& line, std::size_t columns);

/// Writes a line in the look of plain lines, at the verbosity of lines of `status`.
void Log(Line const& line, TEST_STATUS status = TEST_STATUS_PLAIN);
void LogPlain(std::string_view text, TEST_STATUS status = TEST_STATUS_PLAIN);

/// Writes "// title", bold, after an empty line. The title may contain a name from outside.
void LogHeading(std::string_view title);

/// Writes "// title:" in the same way.
void LogTitle(std::string_view title);

/// The line that the program writes at this moment, for a sink that shows its pieces; null while a
/// line of the library is written. Its text is the text of the log call.
Line const* LineBeingLogged() noexcept;

/// "1 byte", "2 bytes".
std::string Counted(std::size_t count, char const* name);

/// Hexadecimal digits, at least `digits` of them, capital letters.
std::string Hex(std::size_t value, int digits = 1);

/// "0x" and two, or with `digits` 4 four, hexadecimal digits.
std::string HexText(unsigned value, int digits = 2);

/// "offset 1Bh", counted from the start of the file.
std::string OffsetText(std::size_t offset);

/// "offset 1Bh (9h in the configuration)": a place in the file, and in a set of that name that
/// starts at `start`; without the brackets when both are the same.
std::string OffsetText(std::size_t start, std::size_t inSet, std::string_view set);

}  // namespace usb_support::usbdesc
