// Splits a text into words. Internal to the library.
#pragma once

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

#include <usb_devices/characters.h>
#include <usb_devices/text_forms.h>

namespace usb_devices::detail {

/// A text with its name for messages, without its byte order mark.
struct NamedText {
  std::string_view text;
  std::string const& name;
};

/// The text between white space, comments and punctuation, or one punctuation character, or a
/// comment that has a meaning. Empty at the end of the text.
struct Word {
  std::string_view text;
  std::size_t at = 0;
  bool startsLine = false;
};

/// The number of the line that a place is in, from 1.
std::size_t LineOf(std::string_view text, std::size_t at);

/// Throws the TextError for a word that should be something else.
[[noreturn]] void Fail(NamedText const& text, Word const& word, std::string_view expected);

/// The offset in a comment of the source-code form: "/*", columns, "h */".
std::optional<std::size_t> CommentOffset(std::string_view comment);

/// True for a line comment that can be a title: it begins with "//" and ends in ":", or is a
/// request.
bool IsTitle(std::string_view comment);

class Scanner {
 public:
  Scanner(NamedText const& text, std::string_view punctuation)
      : source_(text),
        text_(text.text),
        punctuation_(punctuation) {}

  /// The next word; a comment only when it is a title or an offset, at the start of a line.
  Word Next();

  void SkipLine() { at_ = std::min(text_.find_first_of("\r\n", at_), text_.size()); }

 private:
  bool IsLineComment(std::size_t at) const {
    return text_[at] == '#' || text_.substr(at, 2) == "//";
  }
  bool IsBlockComment(std::size_t at) const { return text_.substr(at, 2) == "/*"; }
  bool IsWordOfItsOwn(std::size_t at) const {
    return !IsPrintable(text_[at]) || punctuation_.find(text_[at]) != std::string_view::npos;
  }
  Word TakeBlockComment();
  std::size_t WordLength() const;
  Word Take(std::size_t length);

  NamedText source_;
  std::string_view text_;
  std::string_view punctuation_;
  std::size_t at_ = 0;
  bool startsLine_ = true;
};

}  // namespace usb_devices::detail
