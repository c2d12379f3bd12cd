#include <standalone_suite/platform/scoped_environment_variable.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <filesystem>
#include <utility>

namespace usb_support::standalone {
namespace {

std::wstring Wide(std::string const& utf8) {
  return std::filesystem::path(std::u8string(utf8.begin(), utf8.end())).wstring();
}

void Set(std::string const& name, std::optional<std::string> const& value) {
  SetEnvironmentVariableW(Wide(name).c_str(), value ? Wide(*value).c_str() : nullptr);
}

std::optional<std::string> Get(std::string const& name) {
  // The longest value that the system allows.
  std::wstring value(32767, L'\0');
  SetLastError(ERROR_SUCCESS);
  DWORD const length =
      GetEnvironmentVariableW(Wide(name).c_str(), value.data(), static_cast<DWORD>(value.size()));
  if (length == 0 && GetLastError() == ERROR_ENVVAR_NOT_FOUND) {
    return std::nullopt;
  }
  value.resize(length);
  std::u8string const utf8 = std::filesystem::path(value).u8string();
  return std::string(utf8.begin(), utf8.end());
}

}  // namespace

ScopedEnvironmentVariable::ScopedEnvironmentVariable(std::string name,
                                                     std::optional<std::string> const& value)
    : name_(std::move(name)),
      before_(Get(name_)) {
  Set(name_, value);
}

ScopedEnvironmentVariable::~ScopedEnvironmentVariable() {
  Set(name_, before_);
}

}  // namespace usb_support::standalone
