// Reports a sleep to the recorders. Internal to the library.
#pragma once

#include <cstdint>

namespace usb_support::standalone {

struct SleepRecord {
  /// Records a sleep in every existing recorder.
  static void Add(std::uint64_t microseconds);
};

}  // namespace usb_support::standalone
