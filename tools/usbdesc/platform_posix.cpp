#include <tools/usbdesc/platform.h>

#include <fcntl.h>
#include <sys/ioctl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace usb_support::usbdesc {
namespace {

std::optional<FileIdentity> IdentityIn(int result, struct stat const& status) {
  if (result != 0 || !S_ISREG(status.st_mode)) {
    return std::nullopt;
  }
  return FileIdentity{status.st_dev, status.st_ino};
}

}  // namespace

std::vector<std::string> Arguments(int argc, char** argv) {
  return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void KeepStandardStreams() {
  for (int const number : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
    // open takes the lowest free number. The wrong direction lets each use fail.
    if (fcntl(number, F_GETFD) == -1) {
      static_cast<void>(open("/dev/null", number == STDIN_FILENO ? O_WRONLY : O_RDONLY));
    }
  }
}

void UseBinaryMode(std::FILE* /*stream*/) {
}

std::size_t TerminalColumns(std::FILE* stream) {
  struct winsize size {};
  return ioctl(fileno(stream), TIOCGWINSZ, &size) == 0 ? size.ws_col : 0;
}

std::optional<FileIdentity> IdentityOf(std::filesystem::path const& path) {
  struct stat status;
  return IdentityIn(stat(path.c_str(), &status), status);
}

std::optional<FileIdentity> IdentityOf(std::FILE* stream) {
  struct stat status;
  return IdentityIn(fstat(fileno(stream), &status), status);
}

}  // namespace usb_support::usbdesc
