// Shows a test which pauses the code under test requested.
//
// A recorder records every SleepMicroSec of the process, on all threads, from its construction to
// its destruction; the sleeps themselves take place as usual. Several recorders may exist at a
// time, each with its own record. Any thread may use it.
#pragma once

#include <cstdint>
#include <vector>

#include <usb_support/platform/export.h>

namespace usb_support::standalone {

/// Records sleeps while it exists.
class SleepRecorder {
 public:
  BASE_SUPPORT_API SleepRecorder();
  SleepRecorder(SleepRecorder const&) = delete;
  SleepRecorder& operator=(SleepRecorder const&) = delete;
  BASE_SUPPORT_API ~SleepRecorder();

  /// The sleeps so far, in microseconds, in the order of the calls.
  BASE_SUPPORT_API std::vector<std::uint64_t> Sleeps() const;

  /// Forgets the sleeps so far.
  BASE_SUPPORT_API void Clear();

 private:
  friend struct SleepRecord;

  std::vector<std::uint64_t> sleeps_;
};

}  // namespace usb_support::standalone
