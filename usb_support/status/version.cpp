#include <usb_support/status/version.h>

// USB_SUPPORT_VERSION_… come from the one definition in the build, which the version resource uses
// too.

std::int32_t GetVersionMajor() {
  return USB_SUPPORT_VERSION_MAJOR;
}

std::int32_t GetVersionMinor() {
  return USB_SUPPORT_VERSION_MINOR;
}

std::int32_t GetVersionPatch() {
  return USB_SUPPORT_VERSION_PATCH;
}

std::int32_t GetVersionTweak() {
  return USB_SUPPORT_VERSION_TWEAK;
}
