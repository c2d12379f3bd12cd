#include <usb_devices/text_scanner.h>

namespace usb_devices::detail {

std::size_t LineOf(std::string_view text, std::size_t at) {
  std::size_t line = 1;
  for (std::size_t i = 0; i < at; ++i) {
    bool const isPairOfLineEnds = text[i] == '\r' && text.substr(i + 1).starts_with('\n');
    line += IsLineEnd(text[i]) && !isPairOfLineEnds ? 1u : 0u;
  }
  return line;
}

void Fail(NamedText const& text, Word const& word, std::string_view expected) {
  std::size_t column = 1;
  for (std::size_t at = word.at; at != 0 && !IsLineEnd(text.text[at - 1]); --at) {
    column += (static_cast<unsigned char>(text.text[at - 1]) & 0xC0) != 0x80 ? 1u : 0u;
  }
  constexpr std::size_t kShown = 24;
  std::string found = "the end of the text";
  if (!word.text.empty() && !IsPrintable(word.text.front())) {
    found = IsLineEnd(word.text.front())
                ? "the end of the line"
                : "byte " + Hexadecimal(static_cast<unsigned char>(word.text.front())) + 'h';
  } else if (!word.text.empty()) {
    found = '"' + std::string(word.text.substr(0, kShown)) + '"' +
            (word.text.size() > kShown ? "..." : "");
  }
  throw TextError(text.name, LineOf(text.text, word.at), column, found, expected);
}

std::optional<std::size_t> CommentOffset(std::string_view comment) {
  constexpr std::string_view kOpen = "/* ";
  constexpr std::string_view kClose = "h */";
  if (comment.size() < kOpen.size() + 4 + kClose.size() || !comment.starts_with(kOpen) ||
      !comment.ends_with(kClose)) {
    return std::nullopt;
  }
  comment.remove_prefix(kOpen.size());
  comment.remove_suffix(kClose.size());
  comment.remove_prefix(std::min(comment.find_first_not_of(' '), comment.size()));
  return NumberOf(comment, 16, 0xFFFFFF);
}

bool IsTitle(std::string_view comment) {
  return comment.starts_with("//") &&
         (comment.ends_with(':') || comment.starts_with("// request "));
}

Word Scanner::Next() {
  while (at_ < text_.size()) {
    if (IsWhiteSpace(text_[at_])) {
      startsLine_ = startsLine_ || IsLineEnd(text_[at_]);
      ++at_;
    } else if (IsLineComment(at_)) {
      std::size_t const end = std::min(text_.find_first_of("\r\n", at_), text_.size());
      std::string_view comment = text_.substr(at_, end - at_);
      comment = comment.substr(0, comment.find_last_not_of(" \t") + 1);
      if (startsLine_ && IsTitle(comment)) {
        return Take(comment.size());
      }
      at_ = end;
    } else if (IsBlockComment(at_)) {
      Word const comment = TakeBlockComment();
      if (comment.startsLine && CommentOffset(comment.text)) {
        return comment;
      }
    } else {
      return Take(WordLength());
    }
  }
  return Take(0);
}

Word Scanner::TakeBlockComment() {
  std::size_t const end = text_.find("*/", at_ + 2);
  if (end == std::string_view::npos) {
    Fail(source_, Take(2), "\"*/\" after it");
  }
  return Take(end + 2 - at_);
}

std::size_t Scanner::WordLength() const {
  std::size_t end = at_ + 1;
  while (!IsWordOfItsOwn(at_) && end < text_.size() && !IsWhiteSpace(text_[end]) &&
         !IsWordOfItsOwn(end) && !IsLineComment(end) && !IsBlockComment(end)) {
    ++end;
  }
  return end - at_;
}

Word Scanner::Take(std::size_t length) {
  Word const word{text_.substr(at_, length), at_, startsLine_};
  at_ += length;
  startsLine_ = false;
  return word;
}

}  // namespace usb_devices::detail
