// The bytes as a settings file: the values that it sets and that read back, or the contents of the
// error and that nothing has changed.
#include <algorithm>
#include <filesystem>
#include <limits>
#include <map>
#include <optional>
#include <string>

#include <fuzz/json_model.h>
#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <standalone_suite/test_support/temp_folder.h>
#include <usb_support/suite_interfaces/app_settings.h>

namespace usb_support::fuzz {
namespace {

using model::Json;

constexpr char kOldKey[] = "Old";
constexpr std::uint64_t kOldValue = 0x0123456789ABCDEF;

std::string Utf8(std::filesystem::path const& path) {
  std::u8string const text = path.u8string();
  return {text.begin(), text.end()};
}

// The magnitude of a number that consists of digits; nothing when it does not fit 64 bits.
std::optional<std::uint64_t> Magnitude(std::string_view digits, unsigned base) {
  std::uint64_t value = 0;
  for (char const c : digits) {
    unsigned const digit = c >= '0' && c <= '9'   ? static_cast<unsigned>(c - '0')
                           : c >= 'a' && c <= 'z' ? static_cast<unsigned>(c - 'a') + 10
                           : c >= 'A' && c <= 'Z' ? static_cast<unsigned>(c - 'A') + 10
                                                  : base;
    if (digit >= base || value > (std::numeric_limits<std::uint64_t>::max() - digit) / base) {
      return std::nullopt;
    }
    value = value * base + digit;
  }
  return digits.empty() ? std::nullopt : std::optional(value);
}

// A negative number wraps to 64 bits.
std::optional<std::uint64_t> Integer(std::string_view text, unsigned base) {
  bool const isNegative = text.starts_with('-');
  text.remove_prefix(isNegative ? 1 : 0);
  if (base == 16 && (text.starts_with("0x") || text.starts_with("0X"))) {
    text.remove_prefix(2);
  }
  std::optional<std::uint64_t> const magnitude = Magnitude(text, base);
  if (!magnitude || !isNegative) {
    return magnitude;
  }
  return *magnitude > std::uint64_t{1} << 63 ? std::nullopt : std::optional(0 - *magnitude);
}

bool IsSetting(Json const& value) {
  switch (value.kind) {
    case Json::Kind::kBoolean:
    case Json::Kind::kText:
      return true;
    case Json::Kind::kNumber:
      return Integer(value.text, 10).has_value();
    default:
      return false;
  }
}

bool HoldsSettings(Json const& root) {
  return root.kind == Json::Kind::kObject &&
         std::all_of(root.values.begin(), root.values.end(), IsSetting);
}

std::optional<std::uint64_t> AsInteger(Json const& value, unsigned base) {
  return value.kind == Json::Kind::kBoolean  ? std::optional<std::uint64_t>(value.boolean ? 1 : 0)
         : value.kind == Json::Kind::kNumber ? Integer(value.text, 10)
                                             : Integer(value.text, base);
}

std::optional<bool> AsBoolean(Json const& value) {
  std::string lower;
  for (char const c : value.text) {
    lower += c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
  }
  if (value.kind == Json::Kind::kText && (lower == "true" || lower == "false")) {
    return lower == "true";
  }
  std::optional<std::uint64_t> const number = AsInteger(value, 10);
  return number ? std::optional(*number != 0) : std::nullopt;
}

std::optional<std::uint64_t> ReadInteger(std::string const& key, int base,
                                         EScope scope = SCOPE_DEFAULT) {
  unsigned long long value = 77;
  bool const isFound = CAppState::AppSettings().GetAppSetting(key, value, scope, base);
  Require(isFound || value == 77, "a setting that is not found changes nothing");
  return isFound ? std::optional<std::uint64_t>(value) : std::nullopt;
}

std::optional<bool> ReadBoolean(std::string const& key) {
  bool value = true;
  return CAppState::AppSettings().GetAppSetting(key, value, SCOPE_DEFAULT) ? std::optional(value)
                                                                           : std::nullopt;
}

void CheckLoaded(Json const& root) {
  std::map<std::string, Json const*> last;
  for (std::size_t i = 0; i < root.keys.size(); ++i) {
    last[root.keys[i]] = &root.values[i];
  }
  for (auto const& [key, value] : last) {
    RequireEqual(ReadBoolean(key), AsBoolean(*value), "boolean");
    for (unsigned const base : {10u, 16u, 2u, 36u}) {
      RequireEqual(ReadInteger(key, static_cast<int>(base)), AsInteger(*value, base), "integer");
    }
    Require(!ReadInteger(key, 10, static_cast<EScope>(1)), "nothing in another scope");
  }
  if (!last.contains(kOldKey)) {
    RequireEqual(ReadInteger(kOldKey, 10), std::optional(kOldValue), "setting not in the file");
  }
}

void CheckRefused(standalone::SettingsError const& error, std::filesystem::path const& file,
                  std::string_view text, Json const& root) {
  std::string const what = error.what();
  Require(what.starts_with(Utf8(file) + ": "), "the message begins with the file");
  Require(what.find("at offset " + std::to_string(error.Offset()) + ": ") != std::string::npos,
          "the message tells where");
  for (char const c : what) {
    Require(static_cast<unsigned char>(c) >= 0x20 && c != 0x7F, "the message is one line");
  }
  Require(error.File() == file, "file of the error");
  Require(error.Offset() <= text.size(), "the offset is in the text");
  if (!error.Key().empty()) {
    Require(what.find("key \"") != std::string::npos, "the message names the key");
    Require(std::find(root.keys.begin(), root.keys.end(), error.Key()) != root.keys.end(),
            "the key is in the file");
  }
  RequireEqual(ReadInteger(kOldKey, 10), std::optional(kOldValue), "setting from before");
  for (std::string const& key : root.keys) {
    Require(key == kOldKey || (!ReadBoolean(key) && !ReadInteger(key, 10)),
            "no setting of a refused file is there");
  }
}

}  // namespace

void SettingsFile(Input input) {
  static standalone::TempFolder const folder;
  Suite const suite;
  std::string const text = TextOf(input);
  std::filesystem::path const file = folder.Write("settings.json", text);
  standalone::SetSetting(kOldKey, kOldValue);

  model::JsonText const expected(text, true, 16);
  bool const isFine =
      expected.IsJson() && HoldsSettings(expected.Root()) && text.find('\0') == std::string::npos;
  try {
    standalone::LoadSettings(file);
    Require(isFine, "a file that was loaded holds settings");
    CheckLoaded(expected.Root());
  } catch (standalone::SettingsError const& error) {
    Require(!isFine, error.what());
    CheckRefused(error, file, text, expected.Root());
  }
  suite.ExpectNothingLogged();
}

}  // namespace usb_support::fuzz
