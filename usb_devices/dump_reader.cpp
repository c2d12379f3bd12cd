#include <usb_devices/dump_reader.h>

#include <algorithm>
#include <optional>
#include <string>

#include <usb_devices/read_error.h>
#include <usb_devices/runs.h>

namespace usb_devices::detail {
namespace {

constexpr std::string_view kSpaces = " \t";
constexpr std::size_t kHalfLine = 8;

bool IsHexDigit(char c) {
  return HexDigit(c) >= 0;
}

// The form of the lines in a program's dump.
struct DumpStyle {
  std::size_t leastDigits;  // of an offset
  std::size_t mostDigits;
  TextForm form;
  bool hasColon;           // after the offset
  bool hasBars;            // "|" around the characters
  bool canHaveCharacters;  // beside the bytes
};

constexpr DumpStyle kStyles[] = {
    {8, 8, TextForm::kXxd, true, false, true},
    {8, 8, TextForm::kHexdump, false, true, true},
    {6, 7, TextForm::kOd, false, false, false},
    {4, 6, TextForm::kWireshark, false, false, true},
};

DumpStyle const& StyleOf(TextForm form) {
  return *std::find_if(std::begin(kStyles), std::end(kStyles),
                       [form](DumpStyle const& style) { return style.form == form; });
}

std::size_t CountDigits(std::string_view text) {
  return static_cast<std::size_t>(std::find_if_not(text.begin(), text.end(), IsHexDigit) -
                                  text.begin());
}

std::size_t CountSpaces(std::string_view text) {
  return std::min(text.find_first_not_of(kSpaces), text.size());
}

class DumpReader {
 public:
  DumpReader(NamedText const& text, TextForm form) : source_(text), style_(StyleOf(form)) {}

  std::vector<TextRun> Read() {
    std::string_view const text = source_.text;
    for (std::size_t at = 0; at < text.size(); ++lineNumber_) {
      std::size_t const end = std::min(text.find_first_of("\r\n", at), text.size());
      line_ = text.substr(at, end - at);
      lineAt_ = at;
      place_ = 0;
      ReadLine();
      at = end + (text.substr(end, 2) == "\r\n" ? 2 : 1);
    }
    if (isRepeating_) {
      FailAtEnd("the offset after the repeated lines");
    }
    EndRun();
    return std::move(runs_);
  }

 private:
  void ReadLine() {
    std::string_view const start = line_.substr(CountSpaces(line_));
    if (start.empty() || start.starts_with('#') || start.starts_with("//")) {
      return;
    }
    if (line_.substr(0, line_.find_last_not_of(kSpaces) + 1) == "*") {
      if (lastLine_.empty()) {
        FailHere("a line of bytes before the one that repeats it");
      }
      isRepeating_ = true;
      return;
    }
    ReadOffset();
    Bytes const bytes = ReadBytes();
    if (bytes.empty()) {
      EndRun();  // the offset alone ends a dump
      return;
    }
    CheckCharacters(bytes);
    Append(bytes);
    lastLine_ = bytes;
  }

  void ReadOffset() {
    std::size_t const digits = CountDigits(line_);
    bool const fits = digits >= style_.leastDigits && digits <= style_.mostDigits;
    // od writes seven digits when they are octal.
    bool const isOctal = style_.form == TextForm::kOd && digits == 7;
    std::optional<std::uint64_t> const offset =
        fits ? NumberOf(line_.substr(0, digits), isOctal ? 8 : 16, 0xFFFFFFFF) : std::nullopt;
    if (!offset) {
      FailHere("an offset of " + std::to_string(style_.leastDigits) +
               (style_.leastDigits == style_.mostDigits
                    ? ""
                    : " to " + std::to_string(style_.mostDigits)) +
               " digits at the start of the line");
    }
    Repeat(*offset);
    if (*offset == 0 && !run_.bytes.empty()) {
      EndRun();
    }
    if (*offset != run_.bytes.size()) {
      FailHere("the offset " + Hexadecimal(run_.bytes.size()) +
               "h (in digits of the dump), or 0 at the start of another run");
    }
    if (run_.bytes.empty()) {
      run_.line = lineNumber_;
    }
    place_ = digits;
    if (style_.hasColon && line_.substr(place_, 1) != ":") {
      FailHere("\":\" after the offset");
    }
    place_ += style_.hasColon ? 1 : 0;
    if (place_ < line_.size() && CountSpaces(line_.substr(place_)) == 0) {
      FailHere("a space after the offset");
    }
  }

  // "*" before an offset means lines that are equal to the one before it.
  void Repeat(std::uint64_t offset) {
    if (!isRepeating_) {
      return;
    }
    isRepeating_ = false;
    std::size_t const size = run_.bytes.size();
    if (offset <= size || offset > kMaxRunSize || (offset - size) % lastLine_.size() != 0) {
      FailHere("an offset that is whole lines after " + Hexadecimal(size) + "h, at most 1 MiB");
    }
    while (run_.bytes.size() < offset) {
      Append(lastLine_);
    }
  }

  // The bytes of a line; moves the place after them.
  Bytes ReadBytes() {
    Bytes bytes;
    hasMiddle_ = false;
    for (;;) {
      std::string_view const rest = line_.substr(place_);
      std::size_t const spaces = CountSpaces(rest);
      if (spaces == rest.size() || (style_.hasBars && rest[spaces] == '|')) {
        return bytes;
      }
      // There is one space between bytes; hexdump and earlier versions of Wireshark have two in the
      // middle; the characters are farther away.
      bool const isMiddle = style_.form == TextForm::kWireshark && bytes.size() == kHalfLine &&
                            spaces == 2 && CountDigits(rest.substr(spaces)) == 2;
      hasMiddle_ = hasMiddle_ || isMiddle;
      if (!isMiddle && !bytes.empty() && !style_.hasBars && style_.canHaveCharacters &&
          spaces >= 2) {
        return bytes;
      }
      place_ += spaces;
      ReadGroup(bytes);
    }
  }

  void ReadGroup(Bytes& bytes) {
    std::size_t const digits = CountDigits(line_.substr(place_));
    bool const isGroup = digits != 0 && digits % 2 == 0 && (style_.hasColon || digits == 2);
    std::size_t const end = place_ + digits;
    if (!isGroup || (end < line_.size() && CountSpaces(line_.substr(end)) == 0)) {
      FailHere(style_.hasColon ? "bytes of two hexadecimal digits each"
                               : "a byte of two hexadecimal digits");
    }
    for (; place_ < end; place_ += 2) {
      bytes.push_back(
          static_cast<std::uint8_t>(HexDigit(line_[place_]) << 4 | HexDigit(line_[place_ + 1])));
    }
  }

  // The text beside the bytes must be their characters.
  void CheckCharacters(Bytes const& bytes) {
    std::string shown;
    for (std::uint8_t const byte : bytes) {
      char const c = static_cast<char>(byte);
      shown += hasMiddle_ && shown.size() == kHalfLine ? " " : "";
      shown += IsPrintable(c) ? c : '.';
    }
    std::string_view rest = line_.substr(place_);
    bool const isBare = CountSpaces(rest) == rest.size() && (!hasCharacters_ || !*hasCharacters_);
    bool const isFirst = !hasCharacters_;
    if (isFirst) {
      hasCharacters_ = style_.hasBars || CountSpaces(rest) != rest.size();
    }
    if (isBare && !style_.hasBars) {
      return;
    }
    std::size_t const spaces = CountSpaces(rest);
    if (!*hasCharacters_) {
      place_ += spaces;
      FailHere("the end of the line, as the lines before have no characters");
    }
    if (style_.hasBars ? rest.substr(spaces) != '|' + shown + '|' : !EndsWith(rest, shown)) {
      place_ += spaces;
      FailHere("the characters of the bytes, \"" + shown + '"');
    }
  }

  // True when the rest of a line is spaces and the characters. The characters may begin or end with
  // spaces, and a mail program may have cut off the last ones.
  static bool EndsWith(std::string_view rest, std::string shown) {
    shown.erase(shown.find_last_not_of(' ') + 1);
    rest = rest.substr(0, rest.find_last_not_of(kSpaces) + 1);
    return rest.ends_with(shown) &&
           rest.substr(0, rest.size() - shown.size()).find_first_not_of(kSpaces) ==
               std::string_view::npos;
  }

  void Append(Bytes const& bytes) {
    if (run_.bytes.size() + bytes.size() > kMaxRunSize) {
      throw ReadError(source_.name,
                      "line " + std::to_string(lineNumber_) + ": a run of more than 1 MiB");
    }
    run_.bytes.insert(run_.bytes.end(), bytes.begin(), bytes.end());
  }

  void EndRun() {
    if (!run_.bytes.empty()) {
      runs_.push_back(std::move(run_));
    }
    run_ = {};
    lastLine_.clear();
  }

  [[noreturn]] void FailHere(std::string const& expected) const {
    std::string_view found = line_.substr(place_);
    found = found.substr(0, found.find_first_of(kSpaces));
    if (found.empty()) {
      found = source_.text.substr(lineAt_ + place_, 1);
    }
    Fail(source_, {found, lineAt_ + place_}, expected);
  }
  [[noreturn]] void FailAtEnd(std::string_view expected) const {
    Fail(source_, {{}, source_.text.size()}, expected);
  }

  NamedText source_;
  DumpStyle const& style_;
  std::vector<TextRun> runs_;
  TextRun run_;
  Bytes lastLine_;
  std::optional<bool> hasCharacters_;
  bool isRepeating_ = false;
  bool hasMiddle_ = false;  // two spaces between the halves of the line, one between the characters
  std::string_view line_;
  std::size_t lineAt_ = 0;
  std::size_t place_ = 0;
  std::uint64_t lineNumber_ = 1;
};

}  // namespace

std::optional<TextForm> RecogniseDump(std::string_view line) {
  std::size_t const digits = CountDigits(line);
  std::string_view const rest = line.substr(digits);
  if (digits == 8 && rest.starts_with(": ")) {
    return TextForm::kXxd;
  }
  if (digits == 8 && rest.starts_with("  ")) {
    return TextForm::kHexdump;
  }
  if (digits >= 4 && digits <= 6 && rest.starts_with("  ")) {
    return TextForm::kWireshark;
  }
  std::size_t const next = CountDigits(rest.substr(std::min<std::size_t>(1, rest.size())));
  bool const isZero = line.find_first_not_of('0') == digits;
  if ((digits == 6 || digits == 7) && isZero && rest.starts_with(' ') && next == 2) {
    return TextForm::kOd;
  }
  return std::nullopt;
}

std::vector<TextRun> ReadDump(NamedText const& text, TextForm form) {
  return DumpReader(text, form).Read();
}

}  // namespace usb_devices::detail
