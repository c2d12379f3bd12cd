// std::latch over a mutex: the standard's own waits on an atomic, which sometimes never wakes up in
// a MinGW program under Wine.
#pragma once

#include <condition_variable>
#include <mutex>

namespace usb_support::testing_support {

/// Threads wait until the count is down to 0.
class Latch {
 public:
  explicit Latch(unsigned count) : count_(count) {}

  void CountDown() {
    std::lock_guard const guard(lock_);
    if (--count_ == 0) {
      isOpen_.notify_all();
    }
  }

  void Wait() {
    std::unique_lock guard(lock_);
    isOpen_.wait(guard, [this] { return count_ == 0; });
  }

  void ArriveAndWait() {
    CountDown();
    Wait();
  }

 private:
  std::mutex lock_;
  std::condition_variable isOpen_;
  unsigned count_;
};

}  // namespace usb_support::testing_support
