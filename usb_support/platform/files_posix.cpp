#include <usb_support/platform/files.h>

#include <system_error>

namespace usb_support::platform {
namespace {

// Copies under another name first, so that a copy that fails leaves what is at the target.
void MoveToOtherVolume(std::filesystem::path const& from, std::filesystem::path const& to,
                       std::error_code& error) {
  std::filesystem::path part = to;
  part += ".part";
  std::filesystem::copy_file(from, part, std::filesystem::copy_options::overwrite_existing, error);
  if (!error) {
    std::filesystem::rename(part, to, error);
  }
  if (error) {
    std::error_code ignored;
    std::filesystem::remove(part, ignored);
    return;
  }
  std::filesystem::remove(from, error);
}

}  // namespace

void MoveFileReplacing(std::filesystem::path const& from, std::filesystem::path const& to) {
  std::error_code error;
  std::filesystem::rename(from, to, error);
  if (error == std::errc::cross_device_link) {
    error.clear();
    MoveToOtherVolume(from, to, error);
  }
  if (error) {
    throw std::filesystem::filesystem_error("rename", from, to, error);
  }
}

}  // namespace usb_support::platform
