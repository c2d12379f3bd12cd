#include <usb_support/platform/files.h>

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <system_error>

namespace usb_support::platform {
namespace {

std::error_code LastError() {
  return {errno, std::generic_category()};
}

// A new file with a unique name beside the file at `target`.
class NewFile {
 public:
  explicit NewFile(std::filesystem::path const& target)
      : path_(target.native() + ".XXXXXX"),
        descriptor_(::mkostemp(path_.data(), O_CLOEXEC)) {}
  NewFile(NewFile const&) = delete;
  NewFile& operator=(NewFile const&) = delete;
  ~NewFile() {
    if (!IsOpen()) {
      return;
    }
    ::close(descriptor_);
    if (!isMoved_) {
      ::unlink(path_.c_str());
    }
  }

  bool IsOpen() const { return descriptor_ != -1; }
  std::string const& Path() const { return path_; }

  // Some file systems report only now that the bytes were not written.
  bool MoveTo(std::filesystem::path const& target) {
    isMoved_ = ::fsync(descriptor_) == 0 && std::rename(path_.c_str(), target.c_str()) == 0;
    return isMoved_;
  }

 private:
  std::string path_;
  int descriptor_;
  bool isMoved_ = false;
};

// First copies to a new file, so the file at the target is always a whole one, even when others
// move files there or this process is stopped halfway. A source that cannot be removed remains,
// because the target already has the file.
std::error_code MoveToOtherVolume(std::filesystem::path const& from,
                                  std::filesystem::path const& to) {
  NewFile copy(to);
  if (!copy.IsOpen()) {
    return LastError();
  }
  std::error_code error;
  std::filesystem::copy_file(from, copy.Path(), std::filesystem::copy_options::overwrite_existing,
                             error);
  if (!error && !copy.MoveTo(to)) {
    error = LastError();
  }
  if (!error) {
    ::unlink(from.c_str());
  }
  return error;
}

}  // namespace

std::optional<std::filesystem::path> PathOf(std::string_view utf8) {
  return std::filesystem::path(utf8);
}

void MoveFileReplacing(std::filesystem::path const& from, std::filesystem::path const& to) {
  std::error_code error;
  std::filesystem::rename(from, to, error);
  if (error == std::errc::cross_device_link) {
    error = MoveToOtherVolume(from, to);
  }
  if (error) {
    throw std::filesystem::filesystem_error("rename", from, to, error);
  }
}

}  // namespace usb_support::platform
