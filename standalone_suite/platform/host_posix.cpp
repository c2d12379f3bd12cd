#include <standalone_suite/platform/host.h>

#include <pwd.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <vector>

namespace usb_support::standalone {
namespace {

std::string HomeFolder() {
  std::string home = EnvironmentVariable("HOME");
  if (!home.empty()) {
    return home;
  }
  std::vector<char> strings(1024);
  passwd entry{};
  passwd* found = nullptr;
  while (getpwuid_r(getuid(), &entry, strings.data(), strings.size(), &found) == ERANGE) {
    strings.resize(strings.size() * 2);
  }
  return found == nullptr || found->pw_dir == nullptr ? std::string() : found->pw_dir;
}

}  // namespace

std::string EnvironmentVariable(char const* name) {
  char const* value = std::getenv(name);
  return value == nullptr ? std::string() : value;
}

std::string UserDataFolder() {
  // The definition of XDG base directories says that a path that is not absolute must be ignored.
  std::string folder = EnvironmentVariable("XDG_DATA_HOME");
  if (!folder.empty() && folder.front() == '/') {
    return folder + "/usb_support";
  }
  folder = HomeFolder();
  return folder.empty() ? folder : folder + "/.local/share/usb_support";
}

bool IsTerminal(std::FILE* stream) {
  return isatty(fileno(stream)) == 1;
}

bool EnableAnsiColours(std::FILE* stream) {
  return IsTerminal(stream);
}

}  // namespace usb_support::standalone
