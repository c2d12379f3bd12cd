// The way of a sleep to the recorders. Internal to the library.
#pragma once

#include <cstdint>

namespace usb_support::standalone {

struct SleepRecord {
  /// Takes down a sleep in every recorder that is alive.
  static void Add(std::uint64_t microseconds);
};

}  // namespace usb_support::standalone
