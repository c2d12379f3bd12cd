#include <usb_support/platform/files.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace usb_support::platform {
namespace {

std::error_code LastError() {
  return {errno, std::generic_category()};
}

class OpenFile {
 public:
  explicit OpenFile(int descriptor) : descriptor_(descriptor) {}
  OpenFile(OpenFile const&) = delete;
  OpenFile& operator=(OpenFile const&) = delete;
  ~OpenFile() {
    if (descriptor_ >= 0) {
      ::close(descriptor_);
    }
  }

  int Descriptor() const { return descriptor_; }

  // Some file systems report only here that the bytes were not written.
  bool Close() { return ::close(std::exchange(descriptor_, -1)) == 0; }

 private:
  int descriptor_;
};

bool WriteAll(int to, std::string_view bytes) {
  while (!bytes.empty()) {
    ssize_t const written = ::write(to, bytes.data(), bytes.size());
    if (written < 0 && errno != EINTR) {
      return false;
    }
    bytes.remove_prefix(written < 0 ? 0 : static_cast<std::size_t>(written));
  }
  return true;
}

bool CopyAll(int from, int to) {
  std::array<char, 65536> block;
  for (;;) {
    ssize_t const read = ::read(from, block.data(), block.size());
    if (read == 0 || (read < 0 && errno != EINTR)) {
      return read == 0;
    }
    if (read > 0 && !WriteAll(to, {block.data(), static_cast<std::size_t>(read)})) {
      return false;
    }
  }
}

// Fills a new file with a copy of `from`, its permissions included.
std::error_code Fill(int to, std::filesystem::path const& from) {
  // Without waiting for a writer, in case it is a pipe.
  OpenFile const source(::open(from.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
  struct stat status {};
  bool const isThere = source.Descriptor() >= 0 && ::fstat(source.Descriptor(), &status) == 0;
  if (!isThere || !S_ISREG(status.st_mode)) {
    return isThere ? std::make_error_code(std::errc::not_supported) : LastError();
  }
  bool const isWhole = CopyAll(source.Descriptor(), to) &&
                       ::fchmod(to, status.st_mode & 07777U) == 0 && ::fsync(to) == 0;
  return isWhole ? std::error_code() : LastError();
}

// First copies to a new file with a unique name, so the file at the target is always a whole one,
// even when others move files there or this process is stopped halfway. A source that cannot be
// removed remains, because the target already has the file.
std::error_code MoveToOtherVolume(std::filesystem::path const& from,
                                  std::filesystem::path const& to) {
  std::string copy = to.native() + ".XXXXXX";
  OpenFile target(::mkostemp(copy.data(), O_CLOEXEC));
  if (target.Descriptor() < 0) {
    return LastError();
  }
  std::error_code error = Fill(target.Descriptor(), from);
  if (!error && (!target.Close() || std::rename(copy.c_str(), to.c_str()) != 0)) {
    error = LastError();
  }
  if (error) {
    ::unlink(copy.c_str());
  } else {
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
