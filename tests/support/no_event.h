// A handle that is not one.
#pragma once

namespace usb_support::testing_support {

/// The address of something that is not an event.
inline void* NoEvent() {
  static char something = 0;
  return &something;
}

}  // namespace usb_support::testing_support
