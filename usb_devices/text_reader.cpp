#include <usb_devices/text_reader.h>

#include <algorithm>
#include <array>
#include <utility>

#include <usb_devices/dump_reader.h>
#include <usb_devices/lsusb_reader.h>
#include <usb_devices/runs.h>
#include <usb_devices/text_scanner.h>

namespace usb_devices {
namespace {

using detail::CommentOffset;
using detail::IsTitle;
using detail::NamedText;
using detail::Scanner;
using detail::Word;

constexpr std::string_view kIncomplete = "(incomplete)";
constexpr std::string_view kPunctuation = ",{};";
constexpr std::string_view kPythonPunctuation = ",[]()=;";
constexpr std::string_view kHexPairExpected = "a byte of two hexadecimal digits";

std::optional<std::uint8_t> HexPair(std::string_view word) {
  std::optional<std::uint64_t> const number =
      word.size() == 2 ? NumberOf(word, 16, 0xFF) : std::nullopt;
  return number ? std::optional(static_cast<std::uint8_t>(*number)) : std::nullopt;
}

bool HasHexPrefix(std::string_view word) {
  return word.starts_with("0x") || word.starts_with("0X");
}

// A number of an array. One that begins with 0 would be octal in C, so it is not taken.
std::optional<std::uint8_t> ArrayNumber(std::string_view word) {
  std::optional<std::uint64_t> number;
  if (HasHexPrefix(word)) {
    number = NumberOf(word.substr(2), 16, 0xFF);
  } else if (word == "0" || !word.starts_with('0')) {
    number = NumberOf(word, 10, 0xFF);
  }
  return number ? std::optional(static_cast<std::uint8_t>(*number)) : std::nullopt;
}

// The text before a descriptor in a listing.
std::optional<std::size_t> ListingOffset(std::string_view word) {
  return word.ends_with("h:") ? NumberOf(word.substr(0, word.size() - 2), 16, 0xFFFFFF)
                              : std::nullopt;
}

bool IsColonWord(std::string_view word) {
  return word.size() >= 5 && word[2] == ':' && HexPair(word.substr(0, 2)) &&
         HexPair(word.substr(3, 2));
}

bool IsQuote(char c) {
  return c == '"' || c == '\'';
}

std::string_view WithoutByteOrderMark(std::string_view text) {
  if (text.starts_with(kByteOrderMark)) {
    text.remove_prefix(kByteOrderMark.size());
  }
  return text;
}

// The next word that is not a comment of any kind.
Word NextOf(Scanner& scanner) {
  Word word = scanner.Next();
  while (CommentOffset(word.text) || IsTitle(word.text)) {
    word = scanner.Next();
  }
  return word;
}

Word NextButTitles(Scanner& scanner) {
  Word word = scanner.Next();
  while (IsTitle(word.text)) {
    word = scanner.Next();
  }
  return word;
}

// The first line with more than a comment.
std::string_view FirstLine(std::string_view text) {
  while (!text.empty()) {
    std::string_view line = text.substr(0, text.find_first_of("\r\n"));
    std::string_view const start =
        line.substr(std::min(line.find_first_not_of(" \t"), line.size()));
    if (!start.empty() && !start.starts_with('#') && !start.starts_with("//")) {
      return line;
    }
    text.remove_prefix(std::min(line.size() + 1, text.size()));
  }
  return {};
}

// The form of a text that does not begin with bytes. Text in quotes is ignored.
TextForm FormAfterDeclaration(std::string_view text, Scanner ahead) {
  for (Word word = NextOf(ahead); !word.text.empty(); word = NextOf(ahead)) {
    if (word.text == "{") {
      return TextForm::kArrays;
    }
    if (word.text.find_first_of("'\"\\") != std::string_view::npos) {
      return TextForm::kEscapes;
    }
  }
  return text.find('[') == std::string_view::npos ? TextForm::kHexadecimal : TextForm::kPython;
}

class Reader {
 public:
  Reader(NamedText const& text, TextForm form)
      : text_(text),
        scanner_(text, form == TextForm::kPython ? kPythonPunctuation : kPunctuation) {}

  std::vector<TextRun> Read(TextForm form) {
    switch (form) {
      case TextForm::kHexadecimal:
      case TextForm::kListing:
        ReadHexadecimal(form == TextForm::kListing);
        break;
      case TextForm::kStream:
        ReadStreamOfDigits();
        break;
      case TextForm::kColons:
        ReadColons();
        break;
      case TextForm::kPrefixes:
        ReadPrefixes();
        break;
      case TextForm::kEscapes:
        ReadEscapes();
        break;
      case TextForm::kCode:
        ReadNumbers({});
        break;
      case TextForm::kArrays:
        ReadArrays();
        break;
      case TextForm::kPython:
        ReadLists();
        break;
      default:
        break;
    }
    EndRun();
    return std::move(runs_);
  }

 private:
  void ReadHexadecimal(bool needsOffset) {
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
        isComplete_ = true;
      } else if (needsOffset && Size() == 0 && !hasOffset && !hasBytes && !hasSeenOffset_) {
        Fail(word, R"(an offset such as "0h:")");
      } else {
        Add(word, HexPair(word.text), kHexPairExpected);
        hasBytes = true;
      }
    }
  }

  void ReadStreamOfDigits() {
    for (Word word = Next(); !word.text.empty(); word = Next()) {
      for (std::size_t at = 0; at < word.text.size(); at += 2) {
        AddPart(word, at, 2, kHexPairExpected);
      }
    }
  }

  void ReadColons() {
    for (Word word = Next(); !word.text.empty(); word = Next()) {
      // A line may end in a colon, and the next one continues it.
      for (std::size_t at = 0; at < word.text.size(); at += 3) {
        AddPart(word, at, 2, kHexPairExpected);
        if (at + 2 < word.text.size() && word.text[at + 2] != ':') {
          Fail({word.text.substr(at + 2), word.at + at + 2}, R"(":" or a space)");
        }
      }
    }
  }

  void ReadPrefixes() {
    for (Word word = Next(); !word.text.empty(); word = Next()) {
      Add(word, HasHexPrefix(word.text) ? ArrayNumber(word.text) : std::nullopt, "0x00 to 0xFF");
    }
  }

  // One array or several, or numbers without braces.
  void ReadArrays() {
    Scanner ahead = scanner_;
    Word word = NextOf(ahead);
    while (!word.text.empty() && word.text != "{") {
      word = NextOf(ahead);
    }
    if (word.text.empty()) {
      ReadNumbers({});
      return;
    }
    bool isFirst = true;
    for (word = Next(); !word.text.empty(); word = Next()) {
      if (word.text == "{" && !isFirst) {
        Fail(word, "the end of the text or the declaration of another array");
      }
      if (SkipDeclaration(word, isFirst)) {
        EndRun();
        ReadNumbers("}");
        SkipEndOfArray();
      }
      isFirst = false;
    }
  }

  // Moves to the brace of an array. Returns false after the number that xxd -i writes after an
  // array: "unsigned int name_len = 18;".
  bool SkipDeclaration(Word word, bool isFirst) {
    std::string_view last = "=";
    std::string_view beforeLast;
    for (; word.text != "{"; word = Next()) {
      if (word.text == ";" && beforeLast == "=" && !isFirst) {
        if (NumberOf(last, 10, kMaxRunSize) != Size()) {
          Fail(word, std::to_string(Size()) + ", the length of the array, before it");
        }
        return false;
      }
      if (word.text == ";" || word.text == "}" || word.text.empty()) {
        Fail(word, "the declaration of an array");
      }
      beforeLast = last;
      last = word.text;
    }
    if (!last.ends_with('=') && !last.ends_with(']')) {
      Fail(word, R"("=" or "]" before it)");
    }
    return true;
  }

  // Up to the end of the text or, if there is one, up to the closing word.
  void ReadNumbers(std::string_view close) {
    bool mayBeNumber = true;
    std::string const orClose = close.empty() ? "" : " or \"" + std::string(close) + '"';
    for (Word word = Next(); word.text != close; word = Next()) {
      if (!mayBeNumber) {
        if (word.text != ",") {
          Fail(word, "\",\"" + orClose);
        }
        mayBeNumber = true;
      } else if (word.startsLine && IsIncompleteLine(word)) {
        ReadIncompleteLine(word);
      } else {
        Add(word, ArrayNumber(word.text),
            "0x00 to 0xFF or 0 to 255 without leading zeros" + orClose);
        mayBeNumber = false;
      }
    }
  }

  void SkipEndOfArray() {
    Scanner ahead = scanner_;
    if (NextOf(ahead).text == ";") {
      Next();
    }
  }

  // name = [1, 2], bytes([1, 2]), [1, 2]; several of them.
  void ReadLists() {
    for (Word word = Next(); !word.text.empty(); word = Next()) {
      for (; word.text != "["; word = Next()) {
        if (word.text.empty() || word.text == "]" || word.text == ",") {
          Fail(word, R"("[" of a list)");
        }
      }
      EndRun();
      ReadNumbers("]");
      Scanner ahead = scanner_;
      for (Word after = NextOf(ahead); after.text == ")" || after.text == ";" || after.text == ",";
           after = NextOf(ahead)) {
        Next();
      }
    }
  }

  bool IsIncompleteLine(Word const& first) const {
    std::size_t const lineEnd = text_.text.find_first_of("\r\n", first.at);
    Scanner ahead = scanner_;
    std::string_view last;
    for (Word word = first; !word.text.empty() && word.at < lineEnd; word = ahead.Next()) {
      last = word.text;
    }
    return last == kIncomplete;
  }

  void ReadIncompleteLine(Word word) {
    for (; word.text != kIncomplete; word = Next()) {
      Add(word, HexPair(word.text), kHexPairExpected);
    }
    isComplete_ = true;
  }

  // Texts with escapes: in quotes together with other characters, or outside quotes alone.
  void ReadEscapes() {
    std::string_view const text = text_.text;
    std::size_t at = SkipToQuote();
    while (at < text.size()) {
      if (IsQuote(text[at])) {
        at = ReadQuoted(at);
      } else if (text.substr(at, 2) == "\\x") {
        at = AddEscape(at);
      } else if (text[at] == '#' || text.substr(at, 2) == "//") {
        at = std::min(text.find_first_of("\r\n", at), text.size());
      } else if (IsWhiteSpace(text[at]) || text[at] == ';' || text[at] == ')' ||
                 IsContinuation(at) || IsBytesPrefix(at)) {
        ++at;
      } else {
        FailAt(at, R"("\x", a quote or the end of the text)");
      }
    }
  }

  // Moves to the first quote or escape, past the declaration.
  std::size_t SkipToQuote() {
    std::string_view last;
    for (Word word = Next(); !word.text.empty(); word = Next()) {
      std::size_t place = word.text.find_first_of("'\"\\");
      if (place != std::string_view::npos) {
        place -= place != 0 && IsBytesPrefix(word.at + place - 1) ? 1u : 0u;
        std::string_view const before = place == 0 ? last : word.text.substr(0, place);
        if (!before.empty() && !before.ends_with('=') && !before.ends_with('(')) {
          FailAt(word.at + place, R"("=" or "(" before it)");
        }
        return word.at + place;
      }
      last = word.text;
    }
    if (!last.empty()) {
      FailAt(text_.text.size(), R"("\x" or a quote)");
    }
    return text_.text.size();
  }

  bool IsContinuation(std::size_t at) const {
    return text_.text[at] == '\\' && at + 1 < text_.text.size() && IsLineEnd(text_.text[at + 1]);
  }
  bool IsBytesPrefix(std::size_t at) const {
    return (text_.text[at] == 'b' || text_.text[at] == 'B') && at + 1 < text_.text.size() &&
           IsQuote(text_.text[at + 1]);
  }

  // The place after the closing quote.
  std::size_t ReadQuoted(std::size_t at) {
    char const quote = text_.text[at++];
    while (at < text_.text.size() && text_.text[at] != quote) {
      if (text_.text[at] == '\\') {
        at = AddEscape(at);
      } else if (IsPrintable(text_.text[at])) {
        AddByte({text_.text.substr(at, 1), at}, static_cast<std::uint8_t>(text_.text[at]));
        ++at;
      } else {
        FailAt(at, std::string("the closing ") + quote);
      }
    }
    if (at == text_.text.size()) {
      FailAt(at, std::string("the closing ") + quote);
    }
    return at + 1;
  }

  std::size_t AddEscape(std::size_t at) {
    constexpr std::string_view kNames = "nrt0abfv\\'\"";
    constexpr std::string_view kValues("\n\r\t\0\a\b\f\v\\'\"", kNames.size());
    Word const word{text_.text.substr(at, 4), at};
    if (word.text.substr(0, 2) == "\\x") {
      Add(word, HexPair(word.text.substr(2)), R"("\x" with two hexadecimal digits)");
      return at + 4;
    }
    std::size_t const which =
        word.text.size() < 2 ? std::string_view::npos : kNames.find(word.text[1]);
    if (which == std::string_view::npos) {
      Fail(word, R"("\x" with two hexadecimal digits)");
    }
    AddByte(word, static_cast<std::uint8_t>(kValues[which]));
    return at + 2;
  }

  void AddPart(Word const& word, std::size_t at, std::size_t size, std::string_view expected) {
    std::string_view const part = word.text.substr(at, size);
    if (std::optional<std::uint8_t> const byte = HexPair(part)) {
      AddByte(word, *byte);
    } else {
      Fail({word.text.substr(at), word.at + at}, expected);
    }
  }

  void Add(Word const& word, std::optional<std::uint8_t> byte, std::string_view expected) {
    if (isComplete_) {
      Fail(word, R"x(the end of the run after "(incomplete)")x");
    }
    if (!byte) {
      Fail(word, expected);
    }
    AddByte(word, *byte);
  }

  void AddByte(Word const& word, std::uint8_t byte) {
    OpenRun(word);
    if (run_->outcome != Outcome::kAnswered) {
      Fail(word, "no bytes, as the request was not answered");
    }
    if (run_->bytes.size() == (run_->request ? kMaxAnswerSize : kMaxRunSize)) {
      throw ReadError(text_.name, "line " + std::to_string(LineAt(word.at)) +
                                      (run_->request ? ": an answer of more than 65,535 bytes"
                                                     : ": a run of more than 1 MiB"));
    }
    run_->bytes.push_back(byte);
  }

  void CheckOffset(Word const& word, std::size_t offset) {
    if (offset == 0 && word.startsLine && Size() != 0) {
      EndRun();
    }
    if (offset != Size()) {
      Fail(word, "the offset " + Hexadecimal(Size()) + "h, or 0h at the start of another run");
    }
    hasSeenOffset_ = true;
  }

  std::size_t Size() const { return run_ ? run_->bytes.size() : 0; }

  void OpenRun(Word const& word) {
    if (!run_) {
      run_.emplace();
      run_->line = LineAt(word.at);
      run_->title = std::exchange(title_, {});
    }
  }

  void EndRun() {
    if (run_) {
      runs_.push_back(*std::exchange(run_, std::nullopt));
    }
    isComplete_ = false;
  }

  // The next word; checks offsets and takes titles before it.
  Word Next() {
    for (;;) {
      Word const word = scanner_.Next();
      if (std::optional<std::size_t> const offset = CommentOffset(word.text)) {
        CheckOffset(word, *offset);
      } else if (IsTitle(word.text)) {
        TakeTitle(word);
      } else {
        return word;
      }
    }
  }

  void TakeTitle(Word const& word) {
    constexpr std::string_view kRequest = "// request ";
    constexpr std::string_view kDevice = "// device ";
    constexpr std::string_view kSpeed = ", speed ";
    std::string_view const text = word.text;
    if (text.starts_with(kRequest) && HexPair(text.substr(kRequest.size(), 2))) {
      BeginRequest(word, text.substr(kRequest.size()));
      return;
    }
    std::size_t const speedAt = text.rfind(kSpeed);
    if (text.starts_with(kDevice) && speedAt != std::string_view::npos && text.ends_with(':')) {
      std::size_t const nameAt = std::min(kDevice.size(), speedAt);
      std::string_view const speed = text.substr(speedAt + kSpeed.size());
      if (std::optional<Speed> const known = SpeedOf(speed.substr(0, speed.size() - 1))) {
        EndRun();
        TextRun& begin = runs_.emplace_back();
        begin.line = LineAt(word.at);
        begin.title = text.substr(nameAt, speedAt - nameAt);
        begin.beginsDevice = known;
        return;
      }
    }
    std::size_t const from = std::min(text.find_first_not_of("/ "), text.size());
    title_ = text.substr(from, text.size() - from - (text.ends_with(':') ? 1u : 0u));
  }

  // "80 06 00 01 00 00, device:", or with ": stalled" or ": failed, WHY".
  void BeginRequest(Word const& word, std::string_view text) {
    constexpr std::size_t kSetupLength = 6 * 3 - 1;
    std::array<std::uint8_t, 6> setup{};
    for (std::size_t i = 0; i < setup.size(); ++i) {
      std::optional<std::uint8_t> const byte =
          HexPair(text.substr(std::min(3 * i, text.size()), 2));
      if (!byte || (i != 0 && text[3 * i - 1] != ' ')) {
        Fail(word, R"(six bytes of two hexadecimal digits after "request")");
      }
      setup[i] = *byte;
    }
    std::size_t const colon = text.find(':');
    if (colon == std::string_view::npos || text.size() == kSetupLength ||
        (text[kSetupLength] != ',' && text[kSetupLength] != ':')) {
      Fail(word, R"(", NAME:" after the six bytes of the request)");
    }
    EndRun();
    run_.emplace();
    run_->line = LineAt(word.at);
    run_->request =
        Request{setup[0], setup[1], static_cast<std::uint16_t>(setup[2] | setup[3] << 8),
                static_cast<std::uint16_t>(setup[4] | setup[5] << 8)};
    std::string_view outcome = text.substr(colon + 1);
    if (outcome.empty()) {
      return;
    }
    std::size_t const comma = outcome.find(',');
    if (comma != std::string_view::npos) {
      std::string_view const note = outcome.substr(comma + 1);
      run_->note = note.substr(std::min(note.find_first_not_of(' '), note.size()));
    }
    outcome = outcome.substr(0, comma);
    if (outcome != " stalled" && outcome != " failed") {
      Fail(word, R"(nothing, "stalled" or "failed" after the request)");
    }
    run_->outcome = outcome == " stalled" ? Outcome::kStalled : Outcome::kFailed;
  }

  // Places are requested in order, so the text is scanned once.
  std::uint64_t LineAt(std::size_t at) {
    line_ += detail::LineOf(text_.text.substr(lineAt_), at - lineAt_) - 1;
    lineAt_ = at;
    return line_;
  }

  [[noreturn]] void Fail(Word const& word, std::string_view expected) const {
    detail::Fail(text_, word, expected);
  }
  [[noreturn]] void FailAt(std::size_t at, std::string_view expected) const {
    Fail({text_.text.substr(at, 1), at}, expected);
  }

  NamedText text_;
  Scanner scanner_;
  std::vector<TextRun> runs_;
  std::optional<TextRun> run_;
  std::string title_;
  bool isComplete_ = false;
  bool hasSeenOffset_ = false;
  std::size_t lineAt_ = 0;
  std::uint64_t line_ = 1;
};

// Collects the devices of a text.
class Collector {
 public:
  explicit Collector(std::string const& name) : name_(name) {}

  void Add(TextRun const& run, bool isOneInput) {
    if (run.beginsDevice) {
      Flush();
      device_.SetName(run.title);
      device_.SetSpeed(*run.beginsDevice);
      isBegun_ = true;
    } else if (run.request) {
      AddAnswer(run);
    } else if (isOneInput) {
      AddArray(run);
    } else {
      Flush();
      for (Device& device : DevicesOf(run.bytes, SourceOf(run))) {
        devices_.push_back(std::move(device));
      }
    }
  }

  std::vector<Device> Take() {
    Flush();
    return std::move(devices_);
  }

 private:
  Source SourceOf(TextRun const& run) const { return {name_, 0, run.line, 0}; }

  void AddAnswer(TextRun const& run) {
    if (!device_.Add({*run.request, run.outcome, run.bytes, SourceOf(run), run.note})) {
      throw ReadError(name_, "line " + std::to_string(run.line) + ": a second answer for " +
                                 NameOf(*run.request) + " of one device");
    }
    isBegun_ = true;
  }

  // The arrays of one text belong to one device until the next device descriptor.
  void AddArray(TextRun const& run) {
    for (Part const& part : SplitRun(run.bytes)) {
      if (part.type == kDeviceType && !device_.IsEmpty()) {
        Flush();
      }
      Source source = SourceOf(run);
      source.offset = part.offset;
      AddRun(device_, part.bytes, source);
      isBegun_ = true;
    }
  }

  void Flush() {
    if (isBegun_) {
      devices_.push_back(device_.Build());
    }
    isBegun_ = false;
  }

  std::string const& name_;
  DeviceBuilder device_;
  bool isBegun_ = false;
  std::vector<Device> devices_;
};

TextForm Recognise(std::string_view text) {
  text = WithoutByteOrderMark(text);
  if (std::optional<TextForm> const dump = detail::RecogniseDump(FirstLine(text))) {
    return *dump;
  }
  if (LooksLikeLsusb(FirstLine(text))) {
    return TextForm::kLsusb;
  }
  std::string const name;
  Scanner ahead({text, name}, kPunctuation);
  Word const first = NextButTitles(ahead);
  if (CommentOffset(first.text)) {
    return TextForm::kCode;
  }
  if (first.text.empty()) {
    return TextForm::kHexadecimal;
  }
  if (ListingOffset(first.text)) {
    return TextForm::kListing;
  }
  if (IsColonWord(first.text)) {
    return TextForm::kColons;
  }
  // The rest of a text in quotes may look like anything.
  bool const isBytes = first.text.size() > 1 && (first.text[0] == 'b' || first.text[0] == 'B') &&
                       IsQuote(first.text[1]);
  if (first.text.starts_with("\\x") || IsQuote(first.text.front()) || isBytes) {
    return TextForm::kEscapes;
  }
  Scanner afterFirst = ahead;
  Word const second = NextOf(ahead);
  if (first.text == "{") {
    return second.text.starts_with('"') ? TextForm::kJson : TextForm::kArrays;
  }
  if (second.text == "," && !first.text.starts_with('[')) {
    return TextForm::kArrays;
  }
  if (HasHexPrefix(first.text)) {
    return TextForm::kPrefixes;
  }
  bool const isDigits =
      std::all_of(first.text.begin(), first.text.end(), [](char c) { return HexDigit(c) >= 0; });
  if (isDigits && !second.text.starts_with('=')) {
    return first.text.size() >= 4 ? TextForm::kStream : TextForm::kHexadecimal;
  }
  return FormAfterDeclaration(text, afterFirst);
}

}  // namespace

bool LooksLikeText(std::string_view content) {
  for (std::size_t at = 0; at < content.size();) {
    std::size_t const length = Utf8Length(content.substr(at));
    bool const isControl = length == 1 && !IsWhiteSpace(content[at]) && !IsPrintable(content[at]);
    if (length == 0 || isControl) {
      return false;
    }
    at += length;
  }
  return !content.empty();
}

TextForm RecogniseText(std::string_view text) {
  try {
    return Recognise(text);
  } catch (TextError const&) {
    return TextForm::kHexadecimal;  // reading it finds the same fault, and names the file
  }
}

TextReading ReadText(std::string_view text, std::string const& name, std::optional<TextForm> form) {
  NamedText const named{WithoutByteOrderMark(text), name};
  TextReading reading;
  reading.form = form ? *form : RecogniseText(text);
  switch (reading.form) {
    case TextForm::kXxd:
    case TextForm::kHexdump:
    case TextForm::kOd:
    case TextForm::kWireshark:
      reading.runs = detail::ReadDump(named, reading.form);
      break;
    default:
      reading.runs = Reader(named, reading.form).Read(reading.form);
  }
  return reading;
}

std::vector<Device> DevicesOf(TextReading const& reading, std::string const& name) {
  Collector collector(name);
  bool const areArrays = reading.form == TextForm::kArrays || reading.form == TextForm::kPython;
  for (TextRun const& run : reading.runs) {
    collector.Add(run, areArrays);
  }
  return collector.Take();
}

}  // namespace usb_devices
