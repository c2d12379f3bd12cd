#include <tools/usbdesc/platform.h>

namespace usb_support::usbdesc {

std::vector<std::string> CommandLine(int argc, char** argv) {
  return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void UseBinaryMode(std::FILE* /*stream*/) {
}

std::FILE* OpenForReading(std::string const& name) {
  return std::fopen(name.c_str(), "rb");
}

}  // namespace usb_support::usbdesc
