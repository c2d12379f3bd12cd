// A handle that is none.
#pragma once

namespace usb_support::testing_support {

/// The address of something that is no event.
inline void* NoEvent() {
  static char something = 0;
  return &something;
}

}  // namespace usb_support::testing_support
