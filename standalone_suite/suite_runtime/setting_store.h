// The store of the settings that settings.h sets and CAppSettings reads. Internal to the library.
#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <variant>

namespace usb_support::standalone {

using SettingValue = std::variant<bool, std::int64_t, std::uint64_t, std::string>;
using SettingMap = std::map<std::string, SettingValue, std::less<>>;

/// All settings of the process; usable until its very end.
SettingMap& Settings();

}  // namespace usb_support::standalone
