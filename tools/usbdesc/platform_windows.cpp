// windows.h must come before the headers that need its types.
#include <windows.h>

#include <fcntl.h>
#include <io.h>
#include <shellapi.h>

#include <filesystem>
#include <memory>

#include <tools/usbdesc/platform.h>

namespace usb_support::usbdesc {
namespace {

std::string Utf8(std::wstring const& text) {
  int const count = static_cast<int>(text.size());
  int const size =
      WideCharToMultiByte(CP_UTF8, 0, text.data(), count, nullptr, 0, nullptr, nullptr);
  std::string utf8(static_cast<std::size_t>(size), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), count, utf8.data(), size, nullptr, nullptr);
  return utf8;
}

}  // namespace

// main gets its arguments in the user's code page, which need not have every character of a name.
std::vector<std::string> CommandLine(int argc, char** argv) {
  int count = 0;
  std::unique_ptr<LPWSTR, decltype(&LocalFree)> const words(
      CommandLineToArgvW(GetCommandLineW(), &count), LocalFree);
  std::vector<std::string> arguments;
  if (words == nullptr) {
    arguments.assign(argv + 1, argv + argc);
    return arguments;
  }
  for (int i = 1; i < count; ++i) {
    arguments.push_back(Utf8(words.get()[i]));
  }
  return arguments;
}

void UseBinaryMode(std::FILE* stream) {
  _setmode(_fileno(stream), _O_BINARY);
}

std::FILE* OpenForReading(std::string const& name) {
  std::filesystem::path const path(std::u8string(name.begin(), name.end()));
  return _wfopen(path.c_str(), L"rb");
}

}  // namespace usb_support::usbdesc
