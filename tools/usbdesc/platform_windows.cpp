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

HANDLE HandleOf(std::FILE* stream) {
  // A program without a console has standard streams without a file.
  int const descriptor = _fileno(stream);
  return descriptor < 0 ? INVALID_HANDLE_VALUE
                        : reinterpret_cast<HANDLE>(_get_osfhandle(descriptor));
}

std::optional<FileIdentity> IdentityOfHandle(HANDLE file) {
  BY_HANDLE_FILE_INFORMATION information;
  if (GetFileType(file) != FILE_TYPE_DISK || GetFileInformationByHandle(file, &information) == 0 ||
      (information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) != 0) {
    return std::nullopt;
  }
  return FileIdentity{information.dwVolumeSerialNumber,
                      std::uint64_t{information.nFileIndexHigh} << 32U | information.nFileIndexLow};
}

}  // namespace

// main gets its arguments in the user's code page, which may lack characters of a name.
std::vector<std::string> Arguments(int argc, char** argv) {
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

// The C library opens no file under the number of a standard stream.
void KeepStandardStreams() {
}

void UseBinaryMode(std::FILE* stream) {
  _setmode(_fileno(stream), _O_BINARY);
}

std::size_t TerminalColumns(std::FILE* stream) {
  CONSOLE_SCREEN_BUFFER_INFO information;
  bool const isConsole = GetConsoleScreenBufferInfo(HandleOf(stream), &information) != 0;
  return isConsole
             ? static_cast<std::size_t>(information.srWindow.Right - information.srWindow.Left + 1)
             : 0;
}

std::optional<FileIdentity> IdentityOf(std::filesystem::path const& path) {
  HANDLE const file =
      CreateFileW(path.c_str(), 0, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                  OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
  if (file == INVALID_HANDLE_VALUE) {
    return std::nullopt;
  }
  std::optional<FileIdentity> const identity = IdentityOfHandle(file);
  CloseHandle(file);
  return identity;
}

std::optional<FileIdentity> IdentityOf(std::FILE* stream) {
  return IdentityOfHandle(HandleOf(stream));
}

}  // namespace usb_support::usbdesc
