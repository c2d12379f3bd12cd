#include <tools/usbdesc/text_reader.h>

#include <algorithm>
#include <optional>
#include <string>

#include <tools/usbdesc/characters.h>

namespace usb_support::usbdesc {
namespace {

constexpr std::string_view kIncomplete = "(incomplete)";
constexpr std::string_view kPunctuation = ",{};";

std::string Hex(std::size_t value) {
  constexpr std::string_view kDigits = "0123456789ABCDEF";
  std::string text;
  do {
    text.insert(text.begin(), kDigits[value % 16]);
    value /= 16;
  } while (value != 0);
  return text + 'h';
}

std::string Message(std::size_t line, std::size_t column, std::string_view found,
                    std::string_view expected) {
  return "line " + std::to_string(line) + ", column " + std::to_string(column) + ": found " +
         std::string(found) + ", expected " + std::string(expected);
}

// The value of a text of nothing but digits; nothing when it is another text or beyond 65,535.
std::optional<std::size_t> Number(std::string_view digits, int base) {
  std::size_t value = 0;
  for (char const c : digits) {
    int const digit = HexDigit(c);
    if (digit < 0 || digit >= base) {
      return std::nullopt;
    }
    value = value * static_cast<std::size_t>(base) + static_cast<std::size_t>(digit);
    if (value > 0xFFFF) {
      return std::nullopt;
    }
  }
  return digits.empty() ? std::nullopt : std::optional(value);
}

std::optional<std::size_t> HexPair(std::string_view word) {
  return word.size() == 2 ? Number(word, 16) : std::nullopt;
}

bool HasHexPrefix(std::string_view word) {
  return word.starts_with("0x") || word.starts_with("0X");
}

// A number of a C byte array. One that begins with 0 would be octal in C, so it is not one.
std::optional<std::size_t> ArrayNumber(std::string_view word) {
  std::optional<std::size_t> number;
  if (HasHexPrefix(word)) {
    number = Number(word.substr(2), 16);
  } else if (word == "0" || !word.starts_with('0')) {
    number = Number(word, 10);
  }
  return number && *number <= 0xFF ? number : std::nullopt;
}

// What the listing puts before a descriptor.
std::optional<std::size_t> ListingOffset(std::string_view word) {
  return word.ends_with("h:") ? Number(word.substr(0, word.size() - 2), 16) : std::nullopt;
}

// What the source-code form puts there: "/* ", four columns, "h */".
std::optional<std::size_t> CommentOffset(std::string_view comment) {
  constexpr std::string_view kOpen = "/* ";
  constexpr std::string_view kClose = "h */";
  if (comment.size() != kOpen.size() + 4 + kClose.size() || !comment.starts_with(kOpen) ||
      !comment.ends_with(kClose)) {
    return std::nullopt;
  }
  std::string_view columns = comment.substr(kOpen.size(), 4);
  columns.remove_prefix(std::min(columns.find_first_not_of(' '), columns.size()));
  return Number(columns, 16);
}

// What is between white space, comments and punctuation, or one punctuation character, or the
// offset of the source-code form. Empty at the end of the text.
struct Word {
  std::string_view text;
  std::size_t at = 0;
  bool startsLine = false;
};

[[noreturn]] void Fail(std::string_view text, Word const& word, std::string_view expected) {
  std::size_t line = 1;
  std::size_t column = 1;
  for (std::size_t at = 0; at < word.at; ++at) {
    bool const isPairOfLineEnds = text[at] == '\r' && text.substr(at + 1).starts_with('\n');
    if (IsLineEnd(text[at]) && !isPairOfLineEnds) {
      ++line;
      column = 1;
    } else if ((static_cast<unsigned char>(text[at]) & 0xC0) != 0x80) {
      ++column;
    }
  }
  constexpr std::size_t kShown = 24;
  std::string found = "the end of the text";
  if (!word.text.empty() && !IsPrintable(word.text.front())) {
    found = "byte " + Hex(static_cast<unsigned char>(word.text.front()));
  } else if (!word.text.empty()) {
    found = '"' + std::string(word.text.substr(0, kShown)) + '"' +
            (word.text.size() > kShown ? "..." : "");
  }
  throw TextError(line, column, found, expected);
}

class Scanner {
 public:
  explicit Scanner(std::string_view text) : text_(text) {}

  Word Next() {
    while (at_ < text_.size()) {
      if (IsWhiteSpace(text_[at_])) {
        startsLine_ = startsLine_ || IsLineEnd(text_[at_]);
        ++at_;
      } else if (IsLineComment(at_)) {
        SkipLine();
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

  void SkipLine() { at_ = std::min(text_.find_first_of("\r\n", at_), text_.size()); }

 private:
  bool IsLineComment(std::size_t at) const {
    return text_[at] == '#' || text_.substr(at, 2) == "//";
  }
  bool IsBlockComment(std::size_t at) const { return text_.substr(at, 2) == "/*"; }
  bool IsWordOfItsOwn(std::size_t at) const {
    return !IsPrintable(text_[at]) || kPunctuation.find(text_[at]) != std::string_view::npos;
  }

  Word TakeBlockComment() {
    std::size_t const end = text_.find("*/", at_ + 2);
    if (end == std::string_view::npos) {
      Fail(text_, Take(2), "\"*/\" after it");
    }
    return Take(end + 2 - at_);
  }

  std::size_t WordLength() const {
    std::size_t end = at_ + 1;
    while (!IsWordOfItsOwn(at_) && end < text_.size() && !IsWhiteSpace(text_[end]) &&
           !IsWordOfItsOwn(end) && !IsLineComment(end) && !IsBlockComment(end)) {
      ++end;
    }
    return end - at_;
  }

  Word Take(std::size_t length) {
    Word const word{text_.substr(at_, length), at_, startsLine_};
    at_ += length;
    startsLine_ = false;
    return word;
  }

  std::string_view text_;
  std::size_t at_ = 0;
  bool startsLine_ = true;
};

class Reader {
 public:
  explicit Reader(std::string_view text) : text_(text), scanner_(text) {}

  Bytes Read() {
    switch (FormOfText()) {
      case Form::kHexadecimal:
        ReadHexadecimal();
        break;
      case Form::kNumbers:
        ReadNumbers(false);
        break;
      case Form::kArray:
        SkipDeclaration();
        ReadNumbers(true);
        ReadEndOfArray();
        break;
    }
    return bytes_;
  }

 private:
  enum class Form {
    kHexadecimal,  // with or without offsets and labels
    kNumbers,      // of a C byte array without braces
    kArray,
  };

  Form FormOfText() const {
    Scanner ahead = scanner_;
    Word const first = NextOf(ahead);
    if (first.text == "{") {
      return Form::kArray;
    }
    if (HasHexPrefix(first.text)) {
      return Form::kNumbers;
    }
    // Nothing is looked for in the labels of a listing.
    if (first.text.empty() || ListingOffset(first.text)) {
      return Form::kHexadecimal;
    }
    Word word = NextOf(ahead);
    if (word.text == ",") {
      return Form::kNumbers;
    }
    bool const isByte = HexPair(first.text) || Number(first.text, 10);
    while (!isByte && !word.text.empty() && word.text != "{") {
      word = NextOf(ahead);
    }
    return word.text == "{" && !isByte ? Form::kArray : Form::kHexadecimal;
  }

  void ReadHexadecimal() {
    bool hasOffset = false;
    bool hasBytes = false;
    for (Word word = Next(); !word.text.empty(); word = Next()) {
      if (word.startsLine) {
        hasOffset = false;
        hasBytes = false;
      }
      if (std::optional<std::size_t> const offset = ListingOffset(word.text)) {
        CheckOffset(word, *offset);
        hasOffset = true;
      } else if (word.text == ":" && hasOffset) {
        scanner_.SkipLine();
      } else if (word.text == kIncomplete && hasBytes) {
        complete_ = true;
      } else {
        AddHexPair(word);
        hasBytes = true;
      }
    }
  }

  void SkipDeclaration() {
    std::string_view last = "=";
    Word word = Next();
    for (; word.text != "{"; word = Next()) {
      if (word.text == ";" || word.text == "}") {
        Fail(word, "the declaration of one array");
      }
      last = word.text;
    }
    if (!last.ends_with('=') && !last.ends_with(']')) {
      Fail(word, R"("=" or "]" before it)");
    }
  }

  // Up to the end of the text or, with a brace to be closed, up to that brace.
  void ReadNumbers(bool inBraces) {
    bool mayBeNumber = true;
    for (Word word = Next(); word.text != (inBraces ? "}" : ""); word = Next()) {
      if (!mayBeNumber) {
        if (word.text != ",") {
          Fail(word, inBraces ? R"("," or "}")" : R"(",")");
        }
        mayBeNumber = true;
      } else if (word.startsLine && IsIncompleteLine(word)) {
        ReadIncompleteLine(word);
      } else {
        Add(word, ArrayNumber(word.text),
            std::string("0x00 to 0xFF or 0 to 255 without leading zeros") +
                (inBraces ? R"( or "}")" : ""));
        mayBeNumber = false;
      }
    }
  }

  void ReadEndOfArray() {
    Word word = Next();
    if (word.text == ";") {
      word = Next();
    }
    if (!word.text.empty()) {
      Fail(word, "the end of the text, which holds one array");
    }
  }

  bool IsIncompleteLine(Word const& first) const {
    std::size_t const lineEnd = text_.find_first_of("\r\n", first.at);
    Scanner ahead = scanner_;
    std::string_view last;
    for (Word word = first; !word.text.empty() && word.at < lineEnd; word = ahead.Next()) {
      last = word.text;
    }
    return last == kIncomplete;
  }

  void ReadIncompleteLine(Word word) {
    for (; word.text != kIncomplete; word = Next()) {
      AddHexPair(word);
    }
    complete_ = true;
  }

  void AddHexPair(Word const& word) {
    Add(word, HexPair(word.text), "a byte of two hexadecimal digits");
  }

  void Add(Word const& word, std::optional<std::size_t> byte, std::string_view expected) {
    if (complete_) {
      Fail(word, "the end of the run after \"(incomplete)\"");
    }
    if (!byte) {
      Fail(word, expected);
    }
    if (bytes_.size() == kMaxRunSize) {
      throw InputError(kRunTooLong);
    }
    bytes_.push_back(static_cast<unsigned char>(*byte));
  }

  void CheckOffset(Word const& word, std::size_t offset) const {
    if (offset != bytes_.size()) {
      Fail(word, "the offset " + Hex(bytes_.size()) + ", as a text holds one run");
    }
  }

  Word Next() {
    Word word = scanner_.Next();
    while (std::optional<std::size_t> const offset = CommentOffset(word.text)) {
      CheckOffset(word, *offset);
      word = scanner_.Next();
    }
    return word;
  }

  static Word NextOf(Scanner& scanner) {
    Word word = scanner.Next();
    while (CommentOffset(word.text)) {
      word = scanner.Next();
    }
    return word;
  }

  [[noreturn]] void Fail(Word const& word, std::string_view expected) const {
    usbdesc::Fail(text_, word, expected);
  }

  std::string_view text_;
  Scanner scanner_;
  Bytes bytes_;
  bool complete_ = false;
};

}  // namespace

TextError::TextError(std::size_t line, std::size_t column, std::string_view found,
                     std::string_view expected)
    : InputError(Message(line, column, found, expected)),
      line_(line),
      column_(column) {
}

Bytes ReadText(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  return Reader(text).Read();
}

}  // namespace usb_support::usbdesc
