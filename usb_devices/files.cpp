#include <usb_devices/files.h>

#include <cerrno>
#include <system_error>
#include <vector>

#include <usb_devices/read_error.h>

namespace usb_devices {
namespace {

constexpr std::size_t kBlockSize = std::size_t{64} << 10;

[[noreturn]] void Fail(std::string const& name, std::string what, int error) {
  if (error != 0) {
    what += ": " + std::generic_category().message(error);
  }
  throw ReadError(name, what);
}

OpenFile Open(std::string const& name, bool isForWriting) {
  errno = 0;
#if defined(_WIN32)
  std::FILE* const file = _wfopen(PathOf(name).c_str(), isForWriting ? L"wb" : L"rb");
#else
  std::FILE* const file = std::fopen(name.c_str(), isForWriting ? "wb" : "rb");
#endif
  if (file == nullptr) {
    Fail(name, "cannot be opened", errno);
  }
  return {file, std::fclose};
}

}  // namespace

std::filesystem::path PathOf(std::string_view name) {
  return std::u8string(name.begin(), name.end());
}

std::string NameOf(std::filesystem::path const& path) {
  std::u8string const name = path.generic_u8string();
  return {name.begin(), name.end()};
}

OpenFile OpenForReading(std::string const& name) {
  return Open(name, false);
}

std::string ReadStream(std::FILE* stream, std::string const& name, LimitOf const& limitOf) {
  std::string content;
  std::vector<char> block(kBlockSize);
  SizeLimit limit{0, {}};
  for (bool isFirst = true;; isFirst = false) {
    errno = 0;
    std::size_t const size = std::fread(block.data(), 1, block.size(), stream);
    bool const isWhole = size == block.size();
    // Microsoft's C library does not mark every failure, but it does mark the end.
    if (std::ferror(stream) != 0 || (!isWhole && std::feof(stream) == 0)) {
      Fail(name, "cannot be read", errno);
    }
    content.append(block.data(), size);
    if (isFirst) {
      limit = limitOf(content);
    }
    if (content.size() > limit.bytes) {
      throw ReadError(name, "holds more than " + std::string(limit.what));
    }
    if (!isWhole) {
      return content;
    }
  }
}

std::string ReadFile(std::string const& name, SizeLimit const& limit) {
  OpenFile const file = OpenForReading(name);
  return ReadStream(file.get(), name, [&limit](std::string_view) { return limit; });
}

void WriteFile(std::string const& name, std::string_view content) {
  OpenFile file = Open(name, true);
  errno = 0;
  bool const isWritten =
      std::fwrite(content.data(), 1, content.size(), file.get()) == content.size();
  int const error = errno;
  if (std::fclose(file.release()) != 0 || !isWritten) {
    Fail(name, "cannot be written", isWritten ? errno : error);
  }
}

}  // namespace usb_devices
