// The suite's application settings, as the library reads them.
#pragma once

#include <cstdint>

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/sv_wrapper.h>

/// Where a setting is looked for. The library always passes 0.
enum EScope : std::uint32_t {
  SCOPE_DEFAULT = 0,
};

/// The settings of the running application. The only failure of a read is "not found".
class SUITE_RUNTIME_API CAppSettings {
 public:
  CAppSettings() = default;
  CAppSettings(CAppSettings const&) = delete;
  CAppSettings& operator=(CAppSettings const&) = delete;

  /// Reads a boolean setting. True when it was found; otherwise `value` stays as it was.
  bool GetAppSetting(basic_sv_wrapper<char> key, bool& value, EScope scope);

  /// Reads an integer setting; a setting that is a text is read in the given base (2 to 36).
  /// True when it was found; otherwise `value` stays as it was.
  bool GetAppSetting(basic_sv_wrapper<char> key, unsigned long long& value, EScope scope,
                     int base) {
    return DoGetAppSettingInt(key, value, scope, base);
  }

 private:
  bool DoGetAppSettingInt(basic_sv_wrapper<char> key, unsigned long long& value, EScope scope,
                          int base);
};
