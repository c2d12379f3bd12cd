#include <tools/usbdesc/log_text.h>

#include <string>

#include <gtest/gtest.h>

namespace usb_support::usbdesc {
namespace {

std::string Text(std::string_view text, std::size_t columns) {
  return Wrapped(Line(text), columns).Text();
}

TEST(Wrapped, GoesOnBelowAtASpace) {
  EXPECT_EQ(Text("  one two three four five six", 20), "  one two three four\n      five six");
  EXPECT_EQ(Text("short\n  one two three four five six\nshort", 20),
            "short\n  one two three four\n      five six\nshort");
}

TEST(Wrapped, CutsWhatHasNoSpace) {
  EXPECT_EQ(Text("0123456789012345678901234567890123456789", 20),
            "01234567890123456789\n    0123456789012345\n    6789");
}

TEST(Wrapped, CountsCharactersAndKeepsThemWhole) {
  std::string const e = "\xC3\xA9";
  std::string twenty;
  for (int i = 0; i < 20; ++i) {
    twenty += e;
  }
  EXPECT_EQ(Text(twenty, 20), twenty);
  EXPECT_EQ(Text(twenty + e, 20), twenty + "\n    " + e);
}

TEST(Wrapped, LeavesALineThatFits) {
  EXPECT_EQ(Text("01234567890123456789", 20), "01234567890123456789");
  EXPECT_EQ(Text("one two three four five six", 0), "one two three four five six");
  EXPECT_EQ(Text("one two three four five six", 5), "one two three four five six");
  EXPECT_EQ(Text("", 20), "");
}

TEST(Wrapped, KeepsThePieces) {
  Line line;
  line.Add("0001h  ", Piece::kOffset).Add("one two three four", Piece::kLabel).Add(" five");
  Line const wrapped = Wrapped(line, 20);
  EXPECT_EQ(wrapped.Text(), "0001h  one two three\n    four five");
  std::string pieces;
  std::size_t at = 0;
  for (Line::Span const& span : wrapped.Spans()) {
    pieces += std::to_string(static_cast<int>(span.piece)) + "[" +
              wrapped.Text().substr(at, span.end - at) + "]";
    at = span.end;
  }
  EXPECT_EQ(pieces, "2[0001h  ]3[one two three]0[\n    ]3[four]0[ five]");
}

}  // namespace
}  // namespace usb_support::usbdesc
