#include <usb_support/platform/files.h>

#include <array>
#include <atomic>
#include <string>
#include <system_error>
#include <utility>

#include <usb_support/platform/overlapped.h>

namespace usb_support::platform {
namespace {

std::error_code LastError() {
  return {static_cast<int>(::GetLastError()), std::system_category()};
}

class OpenFile {
 public:
  OpenFile(std::filesystem::path const& file, DWORD access, DWORD sharing, DWORD disposition)
      : handle_(::CreateFileW(file.c_str(), access, sharing, nullptr, disposition,
                              FILE_ATTRIBUTE_NORMAL, nullptr)) {}
  OpenFile(OpenFile const&) = delete;
  OpenFile& operator=(OpenFile const&) = delete;
  ~OpenFile() { Close(); }

  HANDLE Handle() const { return handle_; }
  bool IsOpen() const { return handle_ != INVALID_HANDLE_VALUE; }

  void Close() {
    if (IsOpen()) {
      ::CloseHandle(std::exchange(handle_, INVALID_HANDLE_VALUE));
    }
  }

 private:
  HANDLE handle_;
};

// A name in the folder of `file` that no other thread or process of this system chooses now.
std::filesystem::path NameBeside(std::filesystem::path const& file) {
  static std::atomic<unsigned> count = 0;
  LARGE_INTEGER ticks{};
  ::QueryPerformanceCounter(&ticks);
  std::filesystem::path name = file;
  name += L"." + std::to_wstring(::GetCurrentProcessId()) + L"-" + std::to_wstring(ticks.QuadPart) +
          L"-" + std::to_wstring(++count);
  return name;
}

// Fills a new file with a copy of `from`.
std::error_code Fill(HANDLE to, std::filesystem::path const& from) {
  OpenFile const source(from, GENERIC_READ, FILE_SHARE_READ | FILE_SHARE_DELETE, OPEN_EXISTING);
  if (!source.IsOpen()) {
    return LastError();
  }
  if (::GetFileType(source.Handle()) != FILE_TYPE_DISK) {
    return std::make_error_code(std::errc::not_supported);
  }
  std::array<char, 65536> block;
  DWORD read = 0;
  do {
    DWORD written = 0;
    if (::ReadFile(source.Handle(), block.data(), static_cast<DWORD>(block.size()), &read,
                   nullptr) == FALSE ||
        ::WriteFile(to, block.data(), read, &written, nullptr) == FALSE) {
      return LastError();
    }
    if (written != read) {
      return std::make_error_code(std::errc::no_space_on_device);
    }
  } while (read != 0);
  return ::FlushFileBuffers(to) != FALSE ? std::error_code() : LastError();
}

// Renames, in place of any file at the target. The system refuses while another thread or process
// replaces or reads the target, so the call is repeated for a while.
std::error_code Rename(std::filesystem::path const& from, std::filesystem::path const& to) {
  constexpr int kMostTries = 50;
  for (int tries = 1;; ++tries) {
    if (::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING) != FALSE) {
      return {};
    }
    std::error_code const error = LastError();
    bool const isInUse =
        error.value() == ERROR_ACCESS_DENIED || error.value() == ERROR_SHARING_VIOLATION;
    if (!isInUse || tries == kMostTries) {
      return error;
    }
    ::Sleep(2);
  }
}

// First copies to a new file with a unique name, so the file at the target is always a whole one,
// even when others move files there or this process is stopped halfway. A source that cannot be
// removed remains, because the target already has the file.
std::error_code MoveToOtherVolume(std::filesystem::path const& from,
                                  std::filesystem::path const& to) {
  std::filesystem::path const copy = NameBeside(to);
  // Fails when anything has that name, even a link.
  OpenFile target(copy, GENERIC_WRITE, 0, CREATE_NEW);
  if (!target.IsOpen()) {
    return LastError();
  }
  std::error_code error = Fill(target.Handle(), from);
  target.Close();
  if (!error) {
    error = Rename(copy, to);
  }
  ::DeleteFileW(error ? copy.c_str() : from.c_str());
  return error;
}

}  // namespace

std::optional<std::filesystem::path> PathOf(std::string_view utf8) {
  try {
    return std::u8string(utf8.begin(), utf8.end());
  } catch (std::system_error const&) {
    return std::nullopt;
  }
}

void MoveFileReplacing(std::filesystem::path const& from, std::filesystem::path const& to) {
  // MOVEFILE_COPY_ALLOWED alone would copy over the target, which would be incomplete for a while.
  std::error_code error = Rename(from, to);
  if (error.value() == ERROR_NOT_SAME_DEVICE) {
    error = MoveToOtherVolume(from, to);
  }
  if (error) {
    throw std::filesystem::filesystem_error("rename", from, to, error);
  }
}

}  // namespace usb_support::platform
