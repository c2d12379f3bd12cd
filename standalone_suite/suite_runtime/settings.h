// The application settings that CAppSettings reads, and the functions by which a program or a test
// sets them.
//
// A setting is a boolean, a 64-bit integer or a text under a key; keys are compared exactly.
// All settings are in scope 0; a read in any other scope finds nothing. The settings belong to
// the test thread: setting, loading and reading are not locked.
//
// The result of a read:
//
//   setting   read as boolean                   read as integer in base b
//   boolean   its value                         0 or 1
//   integer   true when it is not 0             its value; a negative one wraps to 64 bits
//   text      "true" or "false" in any case     the number that the whole text is in base b,
//             of the letters; else true when    with an optional "-" (wraps), and for base 16
//             it is a decimal integer but 0     an optional "0x" after that
//
// A text that is not such a number, or a number beyond 64 bits, reads as "not found".
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>

#include <usb_support/platform/export.h>

namespace usb_support::standalone {

/// Sets a boolean setting; like all of these functions, it replaces the key's setting of any type.
SUITE_RUNTIME_API void SetBooleanSetting(std::string_view key, bool value);

/// Sets an integer setting that may be negative.
SUITE_RUNTIME_API void SetSignedSetting(std::string_view key, std::int64_t value);

/// Sets an integer setting of up to 64 bits.
SUITE_RUNTIME_API void SetUnsignedSetting(std::string_view key, std::uint64_t value);

/// Sets a text setting. The text is copied.
SUITE_RUNTIME_API void SetSetting(std::string_view key, std::string_view value);

/// A null pointer is not a text.
void SetSetting(std::string_view key, std::nullptr_t value) = delete;

/// An integer type, and not a character type, whose meaning would be ambiguous.
template <typename T>
concept SettingInteger = std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> &&
                         !std::same_as<T, wchar_t> && !std::same_as<T, char8_t> &&
                         !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// Sets a boolean setting.
template <std::same_as<bool> T>
void SetSetting(std::string_view key, T value) {
  SetBooleanSetting(key, value);
}

/// Sets an integer setting.
template <SettingInteger T>
void SetSetting(std::string_view key, T value) {
  if constexpr (std::is_signed_v<T>) {
    SetSignedSetting(key, value);
  } else {
    SetUnsignedSetting(key, value);
  }
}

/// Removes a setting; no effect when there is none with that key.
SUITE_RUNTIME_API void ClearSetting(std::string_view key);

/// Removes all settings.
SUITE_RUNTIME_API void ClearSettings();

/// Sets every setting that a file names; other settings stay. The file is one JSON object in UTF-8
/// (a byte order mark is allowed) whose members are booleans, integers of up to 64 bits, signed or
/// unsigned, or texts. When a key occurs more than once, its last value counts. Throws
/// SettingsError when the file cannot be read, is not a regular file, is larger than 16 MiB or has
/// any other content; then no setting has changed.
SUITE_RUNTIME_API void LoadSettings(std::filesystem::path const& file);

#if defined(_MSC_VER)
#pragma warning(push)
#pragma warning(disable : 4251 4275)  // library and program share one standard library
#endif

/// The fault of a settings file. what() describes it in one line that begins with the file's name.
class SUITE_RUNTIME_API SettingsError : public std::runtime_error {
 public:
  /// A null `key` means that the fault belongs to no member of the object.
  SettingsError(std::filesystem::path const& file, std::string const* key, std::size_t offset,
                std::string_view reason);

  /// The fault of a file that cannot be read at all.
  SettingsError(std::filesystem::path const& file, std::string_view reason);

  /// Copies share their text.
  SettingsError(SettingsError const&) noexcept;
  SettingsError& operator=(SettingsError const&) noexcept;
  ~SettingsError() override;

  /// The file as it was given to LoadSettings.
  std::filesystem::path const& File() const noexcept;

  /// The key of the member that the fault is in; empty when it is in none.
  std::string const& Key() const noexcept;

  /// The place of the fault, in bytes from the start of the file: the start of a value of the wrong
  /// type, or the place at which the text stops being JSON. 0 for a file that cannot be read.
  std::size_t Offset() const noexcept;

 private:
  struct Details;

  std::shared_ptr<Details const> details_;
};

#if defined(_MSC_VER)
#pragma warning(pop)
#endif

}  // namespace usb_support::standalone
