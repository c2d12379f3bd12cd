#include <standalone_suite/suite_runtime/showable.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <standalone_suite/suite_runtime/utf8.h>

namespace usb_support::standalone {
namespace {

std::string ShowableLines(std::string_view text) {
  std::string output = "before ";
  AppendShowableLines(output, text);
  return output.substr(7);
}

std::string Encoded(char32_t point) {
  std::string text;
  auto const append = [&text](char32_t byte) { text += static_cast<char>(byte); };
  if (point < 0x80) {
    append(point);
  } else if (point < 0x800) {
    append(0xC0 | point >> 6);
    append(0x80 | (point & 0x3F));
  } else if (point < 0x10000) {
    append(0xE0 | point >> 12);
    append(0x80 | (point >> 6 & 0x3F));
    append(0x80 | (point & 0x3F));
  } else {
    append(0xF0 | point >> 18);
    append(0x80 | (point >> 12 & 0x3F));
    append(0x80 | (point >> 6 & 0x3F));
    append(0x80 | (point & 0x3F));
  }
  return text;
}

struct Case {
  std::string_view text;
  std::string_view shown;
  std::string_view shownLines;
};

constexpr Case kCases[] = {
    {"", "", ""},
    {"a b~.bin", "a b~.bin", "a b~.bin"},
    {R"(C:\new\x1B 100%s)", R"(C:\new\x1B 100%s)", R"(C:\new\x1B 100%s)"},
    {"a\nb\r\nc\td", R"(a\x0Ab\x0D\x0Ac\x09d)", "a\nb\r\nc\td"},
    {"a\rb\r", R"(a\x0Db\x0D)", R"(a\x0Db\x0D)"},
    {"\x1B[2Jgone\a", R"(\x1B[2Jgone\x07)", R"(\x1B[2Jgone\x07)"},
    {std::string_view("\0\x7F", 2), R"(\x00\x7F)", R"(\x00\x7F)"},
    {"\v\f\b", R"(\x0B\x0C\x08)", R"(\x0B\x0C\x08)"},
    {"\xC2\x9B[2J", R"(\u009B[2J)", R"(\u009B[2J)"},
    {"\x9B[2J", R"(\x9B[2J)", R"(\x9B[2J)"},
    {"gr\xC3\xB6\xC3\x9F", "gr\xC3\xB6\xC3\x9F", "gr\xC3\xB6\xC3\x9F"},
    {"\xE6\x97\xA5 \xF0\x9F\x98\x80", "\xE6\x97\xA5 \xF0\x9F\x98\x80",
     "\xE6\x97\xA5 \xF0\x9F\x98\x80"},
    {"b\xE9z", R"(b\xE9z)", R"(b\xE9z)"},
    {"x\xE2\x82", R"(x\xE2\x82)", R"(x\xE2\x82)"},
    {"a\xE2\x80\xAE"
     "b",
     R"(a\u202Eb)", R"(a\u202Eb)"},
};

TEST(Showable, ShowsWhatATerminalWouldObey) {
  for (Case const& one : kCases) {
    EXPECT_EQ(Showable(one.text), one.shown);
  }
}

TEST(ShowableLines, KeepTabsAndLineEnds) {
  for (Case const& one : kCases) {
    EXPECT_EQ(ShowableLines(one.text), one.shownLines);
  }
}

TEST(Showable, ReplacesControlsAndSeparators) {
  std::vector<char32_t> expected;
  for (auto const& [first, last] : {std::pair<char32_t, char32_t>{0, 0x1F},
                                    {0x7F, 0x9F},
                                    {0x2028, 0x2029},
                                    {0x202A, 0x202E},
                                    {0x2066, 0x2069}}) {
    for (char32_t point = first; point <= last; ++point) {
      expected.push_back(point);
    }
  }
  std::vector<char32_t> replaced;
  std::vector<char32_t> replacedInLines;
  for (char32_t point = 0; point <= 0x10FFFF; ++point) {
    if (point >= 0xD800 && point <= 0xDFFF) {
      continue;
    }
    std::string const text = Encoded(point);
    if (Showable(text) != text) {
      replaced.push_back(point);
    }
    if (ShowableLines(text) != text) {
      replacedInLines.push_back(point);
    }
  }
  EXPECT_EQ(replaced, expected);
  std::erase(expected, U'\t');
  std::erase(expected, U'\n');
  EXPECT_EQ(replacedInLines, expected);
}

}  // namespace
}  // namespace usb_support::standalone
