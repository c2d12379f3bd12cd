#include <standalone_suite/platform/scoped_environment_variable.h>

#include <cstdlib>
#include <utility>

namespace usb_support::standalone {
namespace {

void Set(std::string const& name, std::optional<std::string> const& value) {
  if (value) {
    setenv(name.c_str(), value->c_str(), 1);
  } else {
    unsetenv(name.c_str());
  }
}

std::optional<std::string> Get(std::string const& name) {
  char const* const value = std::getenv(name.c_str());
  return value == nullptr ? std::nullopt : std::optional<std::string>(value);
}

}  // namespace

ScopedEnvironmentVariable::ScopedEnvironmentVariable(std::string name,
                                                     std::optional<std::string> const& value)
    : name_(std::move(name)),
      before_(Get(name_)) {
  Set(name_, value);
}

ScopedEnvironmentVariable::~ScopedEnvironmentVariable() {
  Set(name_, before_);
}

}  // namespace usb_support::standalone
