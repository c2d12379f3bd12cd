// What a JSON text holds, worked out a second time. Nothing here uses the library or its parser.
//
// The texts are those of RFC 8259, and what the library's files may be beyond it: a byte order mark
// may be first, a zero byte ends the text, "\u" may name the second half of a surrogate pair
// alone, and well-formed UTF-8 is asked for only where `checksUtf8` is true.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace usb_support::model {

struct Json {
  enum class Kind { kNull, kBoolean, kNumber, kText, kArray, kObject };

  Kind kind = Kind::kNull;
  bool boolean = false;
  std::string text;  ///< of a text its content, of a number its digits
  std::vector<std::string> keys;
  std::vector<Json> values;  ///< elements, or members beside their keys
};

class JsonText {
 public:
  JsonText(std::string_view text, bool checksUtf8, std::size_t deepest)
      : rest_(text.substr(0, text.find('\0'))),
        checksUtf8_(checksUtf8),
        deepest_(deepest) {
    if (rest_.starts_with("\xEF\xBB\xBF")) {
      rest_.remove_prefix(3);
    }
    isJson_ = Value(root_, 0) && (SkipSpace(), rest_.empty());
  }

  bool IsJson() const { return isJson_; }

  /// True when the text is well-formed up to a place that lies deeper than allowed.
  bool IsTooDeep() const { return isTooDeep_; }

  /// True when a number was seen that may lie beyond the range of a double, which a parser may
  /// refuse.
  bool HasHugeNumber() const { return hasHugeNumber_; }

  /// What was read, up to the fault if there is one.
  Json const& Root() const { return root_; }

 private:
  void SkipSpace() {
    rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\n"), rest_.size()));
  }

  bool Take(std::string_view word) {
    bool const isThere = rest_.starts_with(word);
    rest_.remove_prefix(isThere ? word.size() : 0);
    return isThere;
  }

  bool Value(Json& value, std::size_t depth) {
    SkipSpace();
    if (rest_.empty()) {
      return false;
    }
    switch (rest_.front()) {
      case 'n':
        return Take("null");
      case 't':
      case 'f':
        value.kind = Json::Kind::kBoolean;
        value.boolean = rest_.front() == 't';
        return Take("true") || Take("false");
      case '"':
        value.kind = Json::Kind::kText;
        return Text(value.text);
      case '[':
      case '{':
        if (depth == deepest_) {
          isTooDeep_ = true;
          return false;
        }
        return Container(value, depth + 1);
      default:
        value.kind = Json::Kind::kNumber;
        return Number(value.text);
    }
  }

  bool Container(Json& value, std::size_t depth) {
    bool const isObject = rest_.front() == '{';
    std::string_view const close = isObject ? "}" : "]";
    value.kind = isObject ? Json::Kind::kObject : Json::Kind::kArray;
    rest_.remove_prefix(1);
    SkipSpace();
    if (Take(close)) {
      return true;
    }
    do {
      if (isObject) {
        SkipSpace();
        std::string key;
        if (!rest_.starts_with('"') || !Text(key)) {
          return false;
        }
        value.keys.push_back(key);
        SkipSpace();
        if (!Take(":")) {
          return false;
        }
      }
      if (!Value(value.values.emplace_back(), depth)) {
        return false;
      }
      SkipSpace();
    } while (Take(","));
    return Take(close);
  }

  std::size_t Digits(std::string& number) {
    std::size_t const count = std::min(rest_.find_first_not_of("0123456789"), rest_.size());
    number += rest_.substr(0, count);
    rest_.remove_prefix(count);
    return count;
  }

  bool Number(std::string& number) {
    number = Take("-") ? "-" : "";
    if (rest_.starts_with('0')) {
      Take("0");
      number += '0';
    } else if (Digits(number) == 0) {
      return false;
    }
    hasHugeNumber_ = hasHugeNumber_ || number.size() > 300;
    if (Take(".")) {
      number += '.';
      if (Digits(number) == 0) {
        return false;
      }
    }
    if (Take("e") || Take("E")) {
      number += 'e';
      bool const isNegative = rest_.starts_with('-');
      if (Take("-") || Take("+")) {
        number += '#';
      }
      std::size_t const digits = Digits(number);
      hasHugeNumber_ = hasHugeNumber_ || (!isNegative && digits > 1);
      return digits != 0;
    }
    return true;
  }

  bool Text(std::string& text) {
    rest_.remove_prefix(1);
    while (!rest_.empty() && rest_.front() != '"') {
      auto const byte = static_cast<unsigned char>(rest_.front());
      if (byte < 0x20) {
        return false;
      }
      if (byte == '\\') {
        rest_.remove_prefix(1);
        if (!Escape(text)) {
          return false;
        }
        continue;
      }
      std::size_t const length = checksUtf8_ ? Utf8Length() : 1;
      if (length == 0) {
        return false;
      }
      text += rest_.substr(0, length);
      rest_.remove_prefix(length);
    }
    return Take("\"");
  }

  bool Escape(std::string& text) {
    constexpr std::string_view kNames = "\"\\/bfnrt";
    constexpr std::string_view kValues = "\"\\/\b\f\n\r\t";
    if (rest_.empty()) {
      return false;
    }
    char const name = rest_.front();
    rest_.remove_prefix(1);
    if (std::size_t const at = kNames.find(name); at != std::string_view::npos) {
      text += kValues[at];
      return true;
    }
    std::optional<std::uint32_t> code = name == 'u' ? FourDigits() : std::nullopt;
    if (!code) {
      return false;
    }
    if (*code >= 0xD800 && *code <= 0xDBFF) {
      std::optional<std::uint32_t> const second = Take("\\u") ? FourDigits() : std::nullopt;
      if (!second || *second < 0xDC00 || *second > 0xDFFF) {
        return false;
      }
      code = 0x10000 + (*code - 0xD800) * 0x400 + (*second - 0xDC00);
    }
    AddUtf8(text, *code);
    return true;
  }

  std::optional<std::uint32_t> FourDigits() {
    std::uint32_t value = 0;
    for (int i = 0; i < 4; ++i) {
      constexpr std::string_view kDigits = "0123456789abcdefABCDEF";
      std::size_t const digit = rest_.empty() ? kDigits.npos : kDigits.find(rest_.front());
      if (digit == kDigits.npos) {
        return std::nullopt;
      }
      value = value * 16 + static_cast<std::uint32_t>(digit < 16 ? digit : digit - 6);
      rest_.remove_prefix(1);
    }
    return value;
  }

  static void AddUtf8(std::string& text, std::uint32_t code) {
    auto const add = [&text](std::uint32_t byte) { text += static_cast<char>(byte); };
    if (code < 0x80) {
      add(code);
    } else if (code < 0x800) {
      add(0xC0 | code >> 6);
      add(0x80 | (code & 0x3F));
    } else if (code < 0x10000) {
      add(0xE0 | code >> 12);
      add(0x80 | (code >> 6 & 0x3F));
      add(0x80 | (code & 0x3F));
    } else {
      add(0xF0 | code >> 18);
      add(0x80 | (code >> 12 & 0x3F));
      add(0x80 | (code >> 6 & 0x3F));
      add(0x80 | (code & 0x3F));
    }
  }

  // Of the character in front; 0 when it is not well-formed.
  std::size_t Utf8Length() const {
    auto const at = [this](std::size_t i) -> std::uint32_t {
      return i < rest_.size() ? static_cast<unsigned char>(rest_[i]) : 0u;
    };
    std::size_t const length = at(0) < 0x80 ? 1 : at(0) < 0xE0 ? 2 : at(0) < 0xF0 ? 3 : 4;
    std::uint32_t code = length == 1 ? at(0) : at(0) & (0xFFu >> (length + 1));
    for (std::size_t i = 1; i < length; ++i) {
      if ((at(i) & 0xC0) != 0x80) {
        return 0;
      }
      code = code << 6 | (at(i) & 0x3F);
    }
    constexpr std::uint32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    bool const isRight = code >= kLeast[length] && code <= 0x10FFFF &&
                         (code < 0xD800 || code > 0xDFFF) && (at(0) < 0x80 || at(0) >= 0xC2) &&
                         at(0) < 0xF5;
    return isRight ? length : 0;
  }

  std::string_view rest_;
  bool checksUtf8_;
  std::size_t deepest_;
  bool isJson_ = false;
  bool isTooDeep_ = false;
  bool hasHugeNumber_ = false;
  Json root_;
};

}  // namespace usb_support::model
