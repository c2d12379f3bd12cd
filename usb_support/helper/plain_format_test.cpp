#include <usb_support/helper/plain_format.h>

#include <cstdarg>
#include <cstddef>
#include <cstring>
#include <limits>
#include <memory>
#include <optional>
#include <string>

#include <gtest/gtest.h>

namespace usb_support {
namespace {

// Prints into exactly `room` characters on the heap.
std::optional<std::string> PrintedInto(std::size_t room, char const* format, ...) {
  auto const text = std::make_unique<char[]>(room);
  std::va_list arguments;
  va_start(arguments, format);
  std::size_t const length = PrintPlain(text.get(), room, format, arguments);
  va_end(arguments);
  if (length == kNotPlain) {
    return std::nullopt;
  }
  EXPECT_EQ(std::strlen(text.get()), length);
  return std::string(text.get(), length);
}

template <typename... Args>
std::optional<std::string> Printed(char const* format, Args... args) {
  return PrintedInto(512, format, args...);
}

TEST(PlainFormat, PrintsWhatMessagesAreMadeOf) {
  EXPECT_EQ(Printed(""), "");
  EXPECT_EQ(Printed("text"), "text");
  EXPECT_EQ(Printed("%%"), "%");
  EXPECT_EQ(Printed("<%s>", "text"), "<text>");
  EXPECT_EQ(Printed("%s%s", "", "x"), "x");
  EXPECT_EQ(Printed("%u %u", 0u, std::numeric_limits<unsigned>::max()), "0 4294967295");
  EXPECT_EQ(Printed("%d %d %d", 0, -1, std::numeric_limits<int>::max()), "0 -1 2147483647");
  EXPECT_EQ(Printed("%d", std::numeric_limits<int>::min()), "-2147483648");
  EXPECT_EQ(Printed("%x %x %x", 0u, 0x1234567u, 0xFEDCBA98u), "0 1234567 fedcba98");
  EXPECT_EQ(Printed("%X %X", 0x1234567u, 0xFEDCBA98u), "1234567 FEDCBA98");
}

TEST(PlainFormat, FillsUpToTheWidth) {
  EXPECT_EQ(Printed("%3u|%1u|%2u", 7u, 42u, 42u), "  7|42|42");
  EXPECT_EQ(Printed("%03u|%02X|%04x", 7u, 0xAu, 0xBCu), "007|0A|00bc");
  EXPECT_EQ(Printed("%4d|%04d|%2d|%02d", -7, -7, -7, -7), "  -7|-007|-7|-7");
  EXPECT_EQ(Printed("%3d|%03d|%4d", -42, -42, -42), "-42|-42| -42");
  EXPECT_EQ(Printed("%5s|%1s", "ab", "ab"), "   ab|ab");
  EXPECT_EQ(Printed("%*u|%0*X|%*s", 3, 1u, 4, 0xABu, 2, "x"), "  1|00AB| x");
  EXPECT_EQ(Printed("%0u|%*u", 5u, 0, 6u), "5|6");
  EXPECT_EQ(Printed("%99u", 1u), std::string(98, ' ') + "1");
  EXPECT_EQ(Printed("%0*d", 99, -1), "-" + std::string(97, '0') + "1");
}

TEST(PlainFormat, LeavesEverythingElseToTheCLibrary) {
  EXPECT_EQ(Printed("%100u", 1u), std::nullopt);
  EXPECT_EQ(Printed("%*u", 100, 1u), std::nullopt);
  EXPECT_EQ(Printed("%*u", -1, 1u), std::nullopt);
  EXPECT_EQ(Printed("%4294967297u", 1u), std::nullopt);
  EXPECT_EQ(Printed("%-3u", 1u), std::nullopt);
  EXPECT_EQ(Printed("%+d", 1), std::nullopt);
  EXPECT_EQ(Printed("%#x", 1u), std::nullopt);
  EXPECT_EQ(Printed("%.3s", "abc"), std::nullopt);
  EXPECT_EQ(Printed("%03s", "abc"), std::nullopt);
  EXPECT_EQ(Printed("%s", static_cast<char const*>(nullptr)), std::nullopt);
  EXPECT_EQ(Printed("%c", 'x'), std::nullopt);
  EXPECT_EQ(Printed("%lu", 1ul), std::nullopt);
  EXPECT_EQ(Printed("%5%"), std::nullopt);
  EXPECT_EQ(Printed("%0%"), std::nullopt);
  EXPECT_EQ(Printed("text%"), std::nullopt);
}

// Takes exactly the characters that it needs, and nothing in less.
template <typename... Args>
void ExpectNeeds(std::size_t room, char const* format, Args... args) {
  SCOPED_TRACE(format);
  EXPECT_NE(PrintedInto(room, format, args...), std::nullopt);
  for (std::size_t less = 1; less < room; ++less) {
    EXPECT_EQ(PrintedInto(less, format, args...), std::nullopt) << less;
  }
}

TEST(PlainFormat, WritesNothingBehindTheRoom) {
  ExpectNeeds(1, "");
  ExpectNeeds(5, "text");
  ExpectNeeds(5, "%s", "text");
  ExpectNeeds(7, "<%s>", "text");
  ExpectNeeds(2, "%%");
  ExpectNeeds(4, "%u", 123u);
  ExpectNeeds(5, "%d", -123);
  ExpectNeeds(6, "%5d", -123);
  ExpectNeeds(6, "%05d", -123);
  ExpectNeeds(6, "%5s", "x");
  ExpectNeeds(8, "%u text%s", 12u, "");
}

}  // namespace
}  // namespace usb_support
