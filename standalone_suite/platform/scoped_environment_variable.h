// Gives a test its own environment variable. Like the environment itself, it must not be used
// by several threads at a time.
#pragma once

#include <optional>
#include <string>

namespace usb_support::standalone {

/// Sets or removes an environment variable, and restores it when it is destroyed.
class ScopedEnvironmentVariable {
 public:
  /// Without a value the variable is removed. Name and value are UTF-8.
  ScopedEnvironmentVariable(std::string name, std::optional<std::string> const& value);
  ScopedEnvironmentVariable(ScopedEnvironmentVariable const&) = delete;
  ScopedEnvironmentVariable& operator=(ScopedEnvironmentVariable const&) = delete;
  ~ScopedEnvironmentVariable();

 private:
  std::string name_;
  std::optional<std::string> before_;
};

}  // namespace usb_support::standalone
