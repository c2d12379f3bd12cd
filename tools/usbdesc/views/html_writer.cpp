#include <tools/usbdesc/views/html_writer.h>

#include <charconv>
#include <cstdint>

#include <standalone_suite/suite_runtime/utf8.h>

namespace usb_support::usbdesc {
namespace {

constexpr std::string_view kReplacement = "\xEF\xBF\xBD";

std::string_view EscapeOf(char c) noexcept {
  switch (c) {
    case '&':
      return "&amp;";
    case '<':
      return "&lt;";
    case '>':
      return "&gt;";
    case '"':
      return "&quot;";
    case '\'':
      return "&#39;";
    default:
      return {};
  }
}

// Whether HTML allows a character (HTML, 13.2.3.5): no controls, no noncharacters.
bool IsAllowed(std::string_view character) noexcept {
  auto const byte = [character](std::size_t at) -> std::uint32_t {
    return at < character.size() ? static_cast<unsigned char>(character[at]) : 0u;
  };
  if (character.size() == 1) {
    return byte(0) >= 0x20 && byte(0) != 0x7F;
  }
  std::uint32_t code = byte(0) & (0xFFu >> (character.size() + 1));
  for (std::size_t i = 1; i < character.size(); ++i) {
    code = code << 6 | (byte(i) & 0x3F);
  }
  return code >= 0xA0 && (code & 0xFFFE) != 0xFFFE && !(code >= 0xFDD0 && code <= 0xFDEF);
}

// The bytes at the start of a text that stay as they are.
std::size_t PlainLength(std::string_view text) noexcept {
  std::size_t length = 0;
  while (length < text.size() && text[length] >= ' ' && text[length] <= '~' &&
         EscapeOf(text[length]).empty()) {
    ++length;
  }
  return length;
}

}  // namespace

HtmlWriter& HtmlWriter::Text(std::string_view text) {
  while (!text.empty()) {
    std::size_t const plain = PlainLength(text);
    html_.append(text.substr(0, plain));
    text.remove_prefix(plain);
    if (text.empty()) {
      break;
    }
    std::string_view const escape = EscapeOf(text.front());
    std::size_t const length = standalone::Utf8Length(text);
    bool const isWhole = length != 0 && length <= text.size();
    std::string_view const character = text.substr(0, isWhole ? length : 1);
    if (!escape.empty()) {
      html_.append(escape);
    } else {
      html_.append(isWhole && IsAllowed(character) ? character : kReplacement);
    }
    text.remove_prefix(character.size());
  }
  return *this;
}

HtmlWriter& HtmlWriter::Number(std::size_t number) {
  char digits[24];
  auto const end = std::to_chars(std::begin(digits), std::end(digits), number).ptr;
  html_.append(digits, static_cast<std::size_t>(end - digits));
  return *this;
}

HtmlWriter& HtmlWriter::Element(std::string_view name, std::string_view attributes,
                                std::string_view text) {
  Markup("<").Markup(name).Markup(attributes).Markup(">").Text(text);
  return Markup("</").Markup(name).Markup(">");
}

}  // namespace usb_support::usbdesc
