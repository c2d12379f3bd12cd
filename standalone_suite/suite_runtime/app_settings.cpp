#include <usb_support/suite_interfaces/app_settings.h>

#include <charconv>
#include <optional>
#include <string_view>

#include <standalone_suite/suite_runtime/call_recorder.h>
#include <standalone_suite/suite_runtime/setting_store.h>

namespace {

using usb_support::standalone::CallRecorder;
using usb_support::standalone::SettingKind;
using usb_support::standalone::Settings;
using usb_support::standalone::SettingValue;

constexpr std::uint64_t kLowestMagnitude = std::uint64_t{1} << 63;

SettingValue const* Find(std::string_view key, EScope scope) {
  if (scope != SCOPE_DEFAULT) {
    return nullptr;
  }
  auto const found = Settings().find(key);
  return found == Settings().end() ? nullptr : &found->second;
}

char LowerCase(char c) {
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

// `word` is lower-case.
bool EqualsInAnyCase(std::string_view text, std::string_view word) {
  if (text.size() != word.size()) {
    return false;
  }
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (LowerCase(text[i]) != word[i]) {
      return false;
    }
  }
  return true;
}

std::optional<std::uint64_t> ParseInteger(std::string_view text, int base) {
  if (base < 2 || base > 36) {
    return std::nullopt;
  }
  bool const negative = text.starts_with('-');
  if (negative) {
    text.remove_prefix(1);
  }
  if (base == 16 && (text.starts_with("0x") || text.starts_with("0X"))) {
    text.remove_prefix(2);
  }
  std::uint64_t magnitude = 0;
  char const* const end = text.data() + text.size();
  auto const result = std::from_chars(text.data(), end, magnitude, base);
  if (result.ec != std::errc() || result.ptr != end) {
    return std::nullopt;
  }
  if (!negative) {
    return magnitude;
  }
  return magnitude > kLowestMagnitude ? std::nullopt : std::optional(0 - magnitude);
}

struct AsBoolean {
  std::optional<bool> operator()(bool value) const { return value; }
  std::optional<bool> operator()(std::int64_t value) const { return value != 0; }
  std::optional<bool> operator()(std::uint64_t value) const { return value != 0; }
  std::optional<bool> operator()(std::string const& text) const {
    if (EqualsInAnyCase(text, "true")) {
      return true;
    }
    if (EqualsInAnyCase(text, "false")) {
      return false;
    }
    auto const number = ParseInteger(text, 10);
    return number ? std::optional(*number != 0) : std::nullopt;
  }
};

struct AsInteger {
  int base;

  std::optional<std::uint64_t> operator()(bool value) const { return value ? 1 : 0; }
  std::optional<std::uint64_t> operator()(std::int64_t value) const {
    return static_cast<std::uint64_t>(value);
  }
  std::optional<std::uint64_t> operator()(std::uint64_t value) const { return value; }
  std::optional<std::uint64_t> operator()(std::string const& text) const {
    return ParseInteger(text, base);
  }
};

}  // namespace

bool CAppSettings::GetAppSetting(basic_sv_wrapper<char> key, bool& value, EScope scope) {
  CallRecorder::RecordSettingRead(key.view(), SettingKind::kBoolean, scope, 0);
  SettingValue const* const setting = Find(key.view(), scope);
  std::optional<bool> const read =
      setting == nullptr ? std::nullopt : std::visit(AsBoolean{}, *setting);
  if (read) {
    value = *read;
  }
  return read.has_value();
}

bool CAppSettings::DoGetAppSettingInt(basic_sv_wrapper<char> key, unsigned long long& value,
                                      EScope scope, int base) {
  CallRecorder::RecordSettingRead(key.view(), SettingKind::kInteger, scope, base);
  SettingValue const* const setting = Find(key.view(), scope);
  std::optional<std::uint64_t> const read =
      setting == nullptr ? std::nullopt : std::visit(AsInteger{base}, *setting);
  if (read) {
    value = *read;
  }
  return read.has_value();
}
