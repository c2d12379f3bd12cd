// A terminal for tests. POSIX systems only.
#pragma once

#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <future>
#include <memory>
#include <stdexcept>
#include <string>

namespace usb_support::standalone {

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

/// A terminal without a screen: text that is written to its stream is read from its other end at
/// the same time, because a pseudo terminal buffers only a few thousand characters.
class PseudoTerminal {
 public:
  /// Throws std::runtime_error where there are no pseudo terminals, as in a chroot without
  /// /dev/pts.
  PseudoTerminal() : master_(posix_openpt(O_RDWR | O_NOCTTY)) {
    if (master_ < 0 || grantpt(master_) != 0 || unlockpt(master_) != 0) {
      throw std::runtime_error("The system has no pseudo terminals.");
    }
    int const slave = open(ptsname(master_), O_RDWR | O_NOCTTY);
    stream_.reset(slave < 0 ? nullptr : fdopen(slave, "r+"));
    if (stream_ == nullptr) {
      throw std::runtime_error("The pseudo terminal cannot be opened.");
    }
    termios mode{};
    tcgetattr(slave, &mode);
    cfmakeraw(&mode);
    tcsetattr(slave, TCSANOW, &mode);
    shown_ = std::async(std::launch::async, [this] { return ReadAll(); });
  }
  PseudoTerminal(PseudoTerminal const&) = delete;
  PseudoTerminal& operator=(PseudoTerminal const&) = delete;
  ~PseudoTerminal() {
    stream_.reset();
    if (shown_.valid()) {
      shown_.wait();
    }
    close(master_);
  }

  /// Text that is written here is shown. Null after Shown().
  std::FILE* Stream() const { return stream_.get(); }

  /// Closes the stream; returns everything that was written to it.
  std::string Shown() {
    stream_.reset();
    return shown_.get();
  }

 private:
  // The other end fails when the last stream is closed and everything is read.
  std::string ReadAll() const {
    std::string shown;
    char bytes[1024];
    for (ssize_t length = 0; (length = read(master_, bytes, sizeof bytes)) > 0;) {
      shown.append(bytes, static_cast<std::size_t>(length));
    }
    return shown;
  }

  int master_;
  std::unique_ptr<std::FILE, CloseFile> stream_;
  std::future<std::string> shown_;
};

}  // namespace usb_support::standalone
