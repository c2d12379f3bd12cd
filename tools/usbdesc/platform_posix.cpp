#include <tools/usbdesc/platform.h>

#include <unistd.h>

#include <cstdlib>

namespace usb_support::usbdesc {

std::vector<std::string> CommandLine(int argc, char** argv) {
  return argc > 0 ? std::vector<std::string>(argv + 1, argv + argc) : std::vector<std::string>();
}

void UseBinaryMode(std::FILE* /*stream*/) {
}

std::FILE* OpenForReading(std::string const& name) {
  return std::fopen(name.c_str(), "rb");
}

std::string EnvironmentVariable(char const* name) {
  char const* const value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

bool IsTerminal(std::FILE* stream) {
  return isatty(fileno(stream)) == 1;
}

bool EnableEscapeCodes(std::FILE* stream) {
  return IsTerminal(stream);
}

}  // namespace usb_support::usbdesc
