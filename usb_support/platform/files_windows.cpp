#include <usb_support/platform/files.h>

#include <system_error>

#include <usb_support/platform/overlapped.h>

namespace usb_support::platform {

void MoveFileReplacing(std::filesystem::path const& from, std::filesystem::path const& to) {
  if (::MoveFileExW(from.c_str(), to.c_str(), MOVEFILE_REPLACE_EXISTING | MOVEFILE_COPY_ALLOWED) ==
      FALSE) {
    std::error_code const error(static_cast<int>(::GetLastError()), std::system_category());
    throw std::filesystem::filesystem_error("rename", from, to, error);
  }
}

}  // namespace usb_support::platform
