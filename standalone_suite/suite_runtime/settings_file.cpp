#include <cerrno>
#include <charconv>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

#include <rapidjson/error/en.h>
#include <rapidjson/reader.h>
#include <rapidjson/stream.h>

#include <standalone_suite/suite_runtime/setting_store.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <standalone_suite/suite_runtime/showable.h>

namespace usb_support::standalone {
namespace {

constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

// When it validates the encoding, RapidJSON reads the zero byte after a character that is cut off,
// and continues up to the character's length.
constexpr std::size_t kLongestCharacter = 4;

// Settings are a few lines; a larger file is not read to its end.
constexpr std::size_t kLargestFile = std::size_t{16} << 20;

std::string Utf8(std::filesystem::path const& path) {
  std::u8string const text = path.u8string();
  return {text.begin(), text.end()};
}

std::string Message(std::filesystem::path const& file, std::string const* key, std::size_t offset,
                    std::string_view reason) {
  std::string message = Showable(Utf8(file)) + ": ";
  if (key != nullptr) {
    message += "key \"" + Showable(*key) + "\" ";
  }
  message += "at offset " + std::to_string(offset) + ": ";
  message += reason;
  return message;
}

std::string ReasonOfErrno(std::string_view what, int error) {
  std::string reason(what);
  if (error != 0) {
    reason += ": " + std::generic_category().message(error);
  }
  return reason;
}

std::string ReadFile(std::filesystem::path const& file) {
  // Checked before the file is opened: opening a pipe waits for a writer, and a device may have no
  // end. For a missing file the opening fails and gives the reason.
  std::error_code error;
  if (std::filesystem::exists(file, error) && !std::filesystem::is_regular_file(file, error)) {
    throw SettingsError(file, "is not a regular file");
  }
  errno = 0;
  std::ifstream in(file, std::ios::binary);
  if (!in) {
    throw SettingsError(file, ReasonOfErrno("cannot be opened", errno));
  }
  std::string text;
  char block[4096];
  do {
    in.read(block, sizeof block);
    text.append(block, static_cast<std::size_t>(in.gcount()));
    if (text.size() > kLargestFile) {
      throw SettingsError(file, "has more than 16 MiB");
    }
  } while (in);
  if (in.bad()) {
    throw SettingsError(file, ReasonOfErrno("cannot be read", errno));
  }
  return text;
}

// The text that is parsed in place. A separate type, because the parser works on a copy of
// RapidJSON's stream, whose position would not be updated here.
class SettingsText : public rapidjson::InsituStringStream {
 public:
  explicit SettingsText(char* text) : rapidjson::InsituStringStream(text) {}

  std::size_t Offset() const { return static_cast<std::size_t>(src_ - head_); }
};

// Receives the parser's events, and stops it at the first one that is not a setting.
class SettingsHandler : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, SettingsHandler> {
 public:
  SettingsHandler(std::string_view text, SettingsText const& stream)
      : text_(text),
        stream_(stream),
        valueStart_(stream.Offset()) {}

  bool StartObject() {
    if (inObject_) {
      return Refuse("an object");
    }
    inObject_ = true;
    return true;
  }
  bool EndObject(rapidjson::SizeType) { return true; }
  bool StartArray() { return Refuse("an array"); }

  bool Key(char const* key, rapidjson::SizeType length, bool) {
    key_.emplace(key, length);
    valueStart_ = stream_.Offset();
    return true;
  }

  bool Null() { return Refuse("null"); }
  bool Bool(bool value) { return Take(value, "a boolean"); }
  bool RawNumber(char const*, rapidjson::SizeType length, bool) {
    std::string_view const digits = text_.substr(stream_.Offset() - length, length);
    if (digits.starts_with('-')) {
      return TakeInteger<std::int64_t>(digits);
    }
    return TakeInteger<std::uint64_t>(digits);
  }
  bool String(char const* text, rapidjson::SizeType length, bool) {
    return Take(std::string(text, length), "a text");
  }

  SettingMap const& Taken() const { return taken_; }
  std::string const* CurrentKey() const { return key_ ? &*key_ : nullptr; }
  std::string const& Refusal() const { return refusal_; }

  // The place of the value that was refused last.
  std::size_t ValueOffset() const {
    std::size_t const offset =
        text_.find_first_not_of(inObject_ ? " \t\r\n:" : " \t\r\n", valueStart_);
    return offset == std::string_view::npos ? text_.size() : offset;
  }

 private:
  bool Take(SettingValue value, char const* kind) {
    if (!inObject_) {
      return Refuse(kind);
    }
    taken_.insert_or_assign(std::move(*key_), std::move(value));
    key_.reset();
    return true;
  }

  template <typename Integer>
  bool TakeInteger(std::string_view digits) {
    Integer value = 0;
    char const* const end = digits.data() + digits.size();
    auto const [stopped, error] = std::from_chars(digits.data(), end, value);
    if (error != std::errc{} || stopped != end) {
      return Refuse("a number that is not a 64-bit integer");
    }
    return Take(value, "an integer");
  }

  bool Refuse(std::string_view kind) {
    refusal_ = inObject_ ? "expected a boolean, an integer or a text, found "
                         : "expected an object, found ";
    refusal_ += kind;
    return false;
  }

  std::string_view text_;
  SettingsText const& stream_;
  std::size_t valueStart_;
  bool inObject_ = false;
  std::optional<std::string> key_;
  std::string refusal_;
  SettingMap taken_;
};

SettingMap Parse(std::filesystem::path const& file, std::string text) {
  std::size_t const size = text.size();
  text.append(kLongestCharacter, '\0');
  SettingsText stream(text.data());
  if (text.starts_with(kByteOrderMark)) {
    stream.src_ += kByteOrderMark.size();
  }
  SettingsHandler handler(text, stream);
  rapidjson::Reader reader;
  // In place, so that the reader does not use its stack, on whose first use RapidJSON 1.1.0 adds to
  // a null pointer. Numbers as strings, because converting one with a hostile exponent overflows
  // there (CVE-2024-38517). The handler refuses nesting, which limits the reader's recursion.
  constexpr unsigned kFlags = rapidjson::kParseInsituFlag | rapidjson::kParseNumbersAsStringsFlag |
                              rapidjson::kParseValidateEncodingFlag;
  rapidjson::ParseResult const result = reader.Parse<kFlags>(stream, handler);
  if (result.Code() == rapidjson::kParseErrorTermination) {
    throw SettingsError(file, handler.CurrentKey(), handler.ValueOffset(), handler.Refusal());
  }
  if (result.IsError()) {
    throw SettingsError(file, handler.CurrentKey(), result.Offset(),
                        rapidjson::GetParseError_En(result.Code()));
  }
  // The parser treats a zero byte as the end of the text.
  if (stream.Offset() != size) {
    throw SettingsError(file, nullptr, stream.Offset(), "a zero byte follows the object");
  }
  return handler.Taken();
}

}  // namespace

struct SettingsError::Details {
  std::filesystem::path file;
  std::string key;
  std::size_t offset;
};

SettingsError::SettingsError(std::filesystem::path const& file, std::string const* key,
                             std::size_t offset, std::string_view reason)
    : std::runtime_error(Message(file, key, offset, reason)),
      details_(std::make_shared<Details const>(
          Details{file, key == nullptr ? std::string() : *key, offset})) {
}

SettingsError::SettingsError(std::filesystem::path const& file, std::string_view reason)
    : std::runtime_error(Showable(Utf8(file)) + ": " + std::string(reason)),
      details_(std::make_shared<Details const>(Details{file, std::string(), 0})) {
}

SettingsError::SettingsError(SettingsError const&) noexcept = default;
SettingsError& SettingsError::operator=(SettingsError const&) noexcept = default;
SettingsError::~SettingsError() = default;

std::filesystem::path const& SettingsError::File() const noexcept {
  return details_->file;
}

std::string const& SettingsError::Key() const noexcept {
  return details_->key;
}

std::size_t SettingsError::Offset() const noexcept {
  return details_->offset;
}

void LoadSettings(std::filesystem::path const& file) {
  SettingMap loaded = Parse(file, ReadFile(file));
  // The settings that the file does not name are added to the loaded ones; only the swap changes
  // anything.
  for (auto const& setting : Settings()) {
    loaded.insert(setting);
  }
  Settings().swap(loaded);
}

}  // namespace usb_support::standalone
