#include <standalone_suite/suite_runtime/showable.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include <standalone_suite/suite_runtime/hex_digits.h>
#include <standalone_suite/suite_runtime/utf8.h>

namespace usb_support::standalone {
namespace {

bool IsPlain(char c) {
  return c >= ' ' && c <= '~';
}

// Whether the text starts with a tab or a line end. A carriage return alone would overwrite a line
// that is already shown.
bool StartsWithTabOrLineEnd(std::string_view text) {
  return text.front() == '\t' || text.front() == '\n' || text.starts_with("\r\n");
}

// The code point of a well-formed character of two bytes or more.
std::uint32_t CodePointOf(std::string_view character) {
  std::uint32_t point = static_cast<unsigned char>(character[0]) & (0x7FU >> character.size());
  for (char const c : character.substr(1)) {
    point = point << 6U | (static_cast<unsigned char>(c) & 0x3FU);
  }
  return point;
}

bool IsHarmful(std::uint32_t point) {
  return point <= 0x9F || (point >= 0x2028 && point <= 0x202E) ||
         (point >= 0x2066 && point <= 0x2069);
}

void Append(std::string& output, std::string_view text, bool keepsLines) {
  while (!text.empty()) {
    auto const plain =
        static_cast<std::size_t>(std::ranges::find_if_not(text, IsPlain) - text.begin());
    if (plain != 0) {
      output += text.substr(0, plain);
      text.remove_prefix(plain);
      continue;
    }
    std::size_t length = Utf8Length(text);
    if (keepsLines && StartsWithTabOrLineEnd(text)) {
      output += text.front();
      length = 1;
    } else if (length < 2 || length > text.size()) {
      length = 1;
      output += "\\x";
      AppendHex(output, static_cast<unsigned char>(text.front()), 2);
    } else if (std::uint32_t const point = CodePointOf(text.substr(0, length)); IsHarmful(point)) {
      output += "\\u";
      AppendHex(output, point, 4);
    } else {
      output += text.substr(0, length);
    }
    text.remove_prefix(length);
  }
}

}  // namespace

std::string Showable(std::string_view text) {
  std::string output;
  Append(output, text, false);
  return output;
}

void AppendShowableLines(std::string& output, std::string_view text) {
  Append(output, text, true);
}

}  // namespace usb_support::standalone
