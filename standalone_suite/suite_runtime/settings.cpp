#include <standalone_suite/suite_runtime/settings.h>

#include <utility>

#include <standalone_suite/base_support/never_destroyed.h>
#include <standalone_suite/suite_runtime/setting_store.h>

namespace usb_support::standalone {
namespace {

void Set(std::string_view key, SettingValue value) {
  Settings().insert_or_assign(std::string(key), std::move(value));
}

}  // namespace

SettingMap& Settings() {
  static NeverDestroyed<SettingMap> settings;
  return settings.value;
}

void SetBooleanSetting(std::string_view key, bool value) {
  Set(key, value);
}

void SetSignedSetting(std::string_view key, std::int64_t value) {
  Set(key, value);
}

void SetUnsignedSetting(std::string_view key, std::uint64_t value) {
  Set(key, value);
}

void SetSetting(std::string_view key, std::string_view value) {
  Set(key, std::string(value));
}

void ClearSetting(std::string_view key) {
  auto const found = Settings().find(key);
  if (found != Settings().end()) {
    Settings().erase(found);
  }
}

void ClearSettings() {
  Settings().clear();
}

}  // namespace usb_support::standalone
