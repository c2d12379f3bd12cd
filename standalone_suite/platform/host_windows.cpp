#include <standalone_suite/platform/host.h>

#define WIN32_LEAN_AND_MEAN
#include <io.h>
#include <windows.h>

#include <cstdint>

namespace usb_support::standalone {
namespace {

std::wstring WideVariable(std::wstring const& name) {
  std::wstring value;
  DWORD needed = GetEnvironmentVariableW(name.c_str(), nullptr, 0);
  // Another thread may make the variable longer between two calls.
  while (needed > value.size()) {
    value.resize(needed);
    needed = GetEnvironmentVariableW(name.c_str(), value.data(), needed);
  }
  value.resize(needed);
  return value;
}

std::string ToUtf8(std::wstring const& text) {
  if (text.empty()) {
    return {};
  }
  int const length = static_cast<int>(text.size());
  int const needed =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), length, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(needed), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), length, utf8.data(), needed, nullptr, nullptr);
  return utf8;
}

HANDLE HandleOf(std::FILE* stream) {
  int const descriptor = _fileno(stream);
  if (descriptor < 0) {
    return INVALID_HANDLE_VALUE;
  }
  std::intptr_t const handle = _get_osfhandle(descriptor);
  return reinterpret_cast<HANDLE>(handle);
}

}  // namespace

std::string EnvironmentVariable(char const* name) {
  // The names in use are ASCII.
  std::string const narrow = name;
  return ToUtf8(WideVariable(std::wstring(narrow.begin(), narrow.end())));
}

std::string UserDataFolder() {
  std::string const folder = EnvironmentVariable("LOCALAPPDATA");
  return folder.empty() ? folder : folder + "\\usb_support";
}

bool IsTerminal(std::FILE* stream) {
  // Only a console has a mode; _isatty also takes the null device for a terminal.
  DWORD mode = 0;
  return GetConsoleMode(HandleOf(stream), &mode) != 0;
}

bool EnableAnsiColours(std::FILE* stream) {
  HANDLE const console = HandleOf(stream);
  DWORD mode = 0;
  if (GetConsoleMode(console, &mode) == 0) {
    return false;
  }
  return SetConsoleMode(console,
                        mode | ENABLE_PROCESSED_OUTPUT | ENABLE_VIRTUAL_TERMINAL_PROCESSING) != 0;
}

}  // namespace usb_support::standalone
