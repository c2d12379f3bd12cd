// The reason why an input gives no device.
#pragma once

#include <stdexcept>
#include <string>

#include <usb_devices/characters.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// One harmless line: the input's name, the place if there is one, what was found there and what
/// was expected.
class USB_DEVICES_API ReadError : public std::runtime_error {
 public:
  ReadError(std::string const& name, std::string const& detail)
      : std::runtime_error(Harmless(name.empty() ? detail : name + ": " + detail)),
        name_(name),
        detail_(Harmless(detail)) {}

  /// The file or device that cannot be read, as the caller named it.
  std::string const& Name() const noexcept { return name_; }

  /// The message without the name.
  std::string const& Detail() const noexcept { return detail_; }

 private:
  std::string name_;
  std::string detail_;
};

}  // namespace usb_devices
