#include <tools/usbdesc/progress.h>

#include <string>

#include <standalone_suite/platform/host.h>

namespace usb_support::usbdesc {

Progress::Progress(std::FILE* stream, std::size_t count)
    : stream_(stream),
      count_(count),
      isShown_(count >= kManyFiles && standalone::IsTerminal(stream)) {
}

Progress::~Progress() {
  Clear();
}

void Progress::Next() {
  if (!isShown_) {
    return;
  }
  // The numbers only grow, so that a marker covers the one before it.
  std::string const text =
      "usbdesc: " + std::to_string(++number_) + " of " + std::to_string(count_);
  std::fprintf(stream_, "\r%s", text.c_str());
  std::fflush(stream_);
  width_ = text.size();
}

void Progress::Clear() {
  if (width_ == 0) {
    return;
  }
  // Spaces, as not every terminal knows escape codes.
  std::fprintf(stream_, "\r%*s\r", static_cast<int>(width_), "");
  std::fflush(stream_);
  width_ = 0;
}

}  // namespace usb_support::usbdesc
