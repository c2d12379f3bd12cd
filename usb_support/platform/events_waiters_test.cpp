// Signals for threads that are already waiting. A signal belongs to the wait that it ends, whatever
// happens to the event before that wait's thread runs again.
//
// On Linux a test sees that a thread sleeps in its wait, and each of its rounds must be right.
// Other systems do not show that: there the events are kernel32's own, a round whose threads had
// not yet arrived looks wrong, and the first that is right ends the test.
#include <atomic>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <fstream>
#include <functional>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <usb_support/events/driver_event.h>

#if defined(__linux__)
#include <unistd.h>
#endif

namespace usb_support {
namespace {

using Record = COsSpecificDriverEvent;

constexpr RETURN_CODE kWaitTimedOut = static_cast<RETURN_CODE>(0x80005001);
constexpr unsigned kFarAway = 60'000;  // milliseconds; no test here takes that long
constexpr TQE_EventType kType = TQE_EVENT_TYPE_DEFAULT;

#if defined(__linux__)

constexpr bool kSeesWhoSleeps = true;

long ThisThread() {
  return ::gettid();
}

bool Sleeps(long thread) {
  std::ifstream file("/proc/self/task/" + std::to_string(thread) + "/stat");
  std::string stat;
  std::getline(file, stat);
  // "ID (name) state ..."; the name may hold a parenthesis.
  std::size_t const name = stat.rfind(')');
  return name != std::string::npos && stat.compare(name, 3, ") S") == 0;
}

#else

constexpr bool kSeesWhoSleeps = false;

long ThisThread() {
  return 1;
}

bool Sleeps(long /*thread*/) {
  for (int i = 0; i < 1000; ++i) {
    std::this_thread::yield();
  }
  return true;
}

#endif

struct ManualResetEvent : Record {
  ManualResetEvent() { InitializeManualReset(kType); }
};

/// A thread that waits. When the constructor returns, the thread sleeps in its wait.
class Waiter {
 public:
  explicit Waiter(std::function<RETURN_CODE()> wait)
      : thread_([this, wait = std::move(wait)] {
          id_ = ThisThread();
          result_ = wait();
          hasEnded_ = true;
        }) {
    // The wait takes no lock that is held for long, so the thread that sleeps after this sleeps in
    // the wait.
    while (!hasEnded_ && (id_ == 0 || !Sleeps(id_))) {
      std::this_thread::yield();
    }
  }

  explicit Waiter(Record& event, unsigned timeoutMs = kFarAway)
      : Waiter([&event, timeoutMs] { return event.WaitOnEvent(timeoutMs); }) {}

  Waiter(std::vector<Record*> events, EMultipleWaitCondition condition)
      : Waiter([events = std::move(events), condition] {
          return Record::WaitOnMultipleEvents(events, kFarAway, condition);
        }) {}

  bool HasEnded() const { return hasEnded_; }

  /// The result of the wait; waits for the thread.
  RETURN_CODE Result() {
    if (thread_.joinable()) {
      thread_.join();
    }
    return result_;
  }

 private:
  std::atomic<long> id_ = 0;
  std::atomic<bool> hasEnded_ = false;
  RETURN_CODE result_ = RC_OPERATION_FAILED;
  std::jthread thread_;
};

/// Runs rounds; see above.
void ExpectRight(std::function<bool()> const& round) {
  if (kSeesWhoSleeps) {
    for (int i = 0; i < 20; ++i) {
      ASSERT_TRUE(round()) << "round " << i;
    }
    return;
  }
  auto const end = std::chrono::steady_clock::now() + std::chrono::milliseconds(kFarAway);
  while (!round()) {
    ASSERT_LT(std::chrono::steady_clock::now(), end);
  }
}

/// Whether the wait ends without a further signal. Where a thread may have come too late for the
/// first, it gets one after a while, and the round is not right.
bool HadEnded(Waiter& waiter, Record& event) {
  constexpr auto kLimit = std::chrono::milliseconds(kSeesWhoSleeps ? kFarAway : 500);
  auto const end = std::chrono::steady_clock::now() + kLimit;
  while (!waiter.HasEnded()) {
    if (std::chrono::steady_clock::now() > end) {
      event.SetEvent();
      waiter.Result();
      return false;
    }
    std::this_thread::yield();
  }
  return true;
}

TEST(EventWaiters, AreReleasedBeforeAReset) {
  ExpectRight([] {
    ManualResetEvent event;
    Waiter first(event);
    Waiter second(event);
    event.SetEvent();
    event.ResetEvent();
    bool const firstHadEnded = HadEnded(first, event);
    bool const secondHadEnded = HadEnded(second, event);
    return firstHadEnded && secondHadEnded && first.Result() == RC_SUCCESS &&
           second.Result() == RC_SUCCESS && !event.IsSignalled();
  });
}

TEST(EventWaiters, TakeASignalEach) {
  ExpectRight([] {
    Record event(kType);
    Waiter first(event);
    Waiter second(event);
    event.SetEvent();
    event.SetEvent();
    bool const firstHadEnded = HadEnded(first, event);
    bool const secondHadEnded = HadEnded(second, event);
    return firstHadEnded && secondHadEnded && first.Result() == RC_SUCCESS &&
           second.Result() == RC_SUCCESS && !event.IsSignalled();
  });
}

TEST(EventWaiters, TakeTheFirstOfTwoSignals) {
  ExpectRight([] {
    Record first(kType);
    Record second(kType);
    Waiter waiter({&first, &second}, WAIT_FOR_ANY_EVENT);
    second.SetEvent();
    first.SetEvent();
    return waiter.Result() == 1u && first.IsSignalled() && !second.IsSignalled();
  });
}

TEST(EventWaiters, ForAllSeeAMomentsState) {
  ExpectRight([] {
    ManualResetEvent first;
    ManualResetEvent second;
    Waiter waiter({&first, &second}, WAIT_FOR_ALL_EVENTS);
    first.SetEvent();
    second.SetEvent();
    first.ResetEvent();
    bool const hadEnded = HadEnded(waiter, first);
    return hadEnded && waiter.Result() == 0u && second.IsSignalled();
  });
}

TEST(EventWaiters, ForAllTakeAllOrNone) {
  ExpectRight([] {
    Record first(kType);
    Record second(kType);
    Waiter waiter({&first, &second}, WAIT_FOR_ALL_EVENTS);
    first.SetEvent();
    bool const isLeft = first.WaitOnEvent(0) == RC_SUCCESS;
    second.SetEvent();
    bool const isAlive = !waiter.HasEnded();
    first.SetEvent();
    return isLeft && isAlive && waiter.Result() == 0u && !first.IsSignalled() &&
           !second.IsSignalled();
  });
}

TEST(EventWaiters, AreReleasedInTheOrderOfTheirArrival) {
  if (!kSeesWhoSleeps) {
    GTEST_SKIP() << "The system promises no order.";
  }
  ExpectRight([] {
    Record event(kType);
    Record other(kType);
    Waiter first(event);
    Waiter second({&other, &event}, WAIT_FOR_ANY_EVENT);
    Waiter third(event);
    event.SetEvent();
    bool right = first.Result() == RC_SUCCESS && !second.HasEnded() && !third.HasEnded();
    event.SetEvent();
    right = second.Result() == 1u && !third.HasEnded() && right;
    event.SetEvent();
    return third.Result() == RC_SUCCESS && right;
  });
}

TEST(EventWaiters, LeaveTheSignalToTheNext) {
  ExpectRight([] {
    Record event(kType);
    Record missing(kType);
    Waiter all({&event, &missing}, WAIT_FOR_ALL_EVENTS);
    Waiter one(event);
    event.SetEvent();
    bool const hadEnded = HadEnded(one, event);
    bool const isAlive = !all.HasEnded();
    missing.SetEvent();
    event.SetEvent();
    return hadEnded && isAlive && all.Result() == 0u && !event.IsSignalled();
  });
}

TEST(EventWaiters, WhoseLimitHasEndedTakeNoSignal) {
  Record event(kType);
  for (int i = 0; i < 20; ++i) {
    Waiter waiter(event, 1);
    EXPECT_EQ(waiter.Result(), kWaitTimedOut);
    event.SetEvent();
    EXPECT_TRUE(event.IsSignalled());
  }
}

TEST(EventWaiters, WithALongLimitWait) {
  for (unsigned const limit : {0x7FFFFFFFu, 0x80000000u, 0x80000001u, 0xFFFF0000u, 0xFFFFFFFEu}) {
    Record event(kType);
    std::function<RETURN_CODE()> const waits[] = {
        [&] { return event.WaitOnEvent(limit); },
        [&] { return Record::WaitOnMultipleEvents({&event}, limit, WAIT_FOR_ANY_EVENT); },
        [&] { return Record::WaitOnMultipleEvents({&event}, limit, WAIT_FOR_ALL_EVENTS); }};
    for (auto const& wait : waits) {
      SCOPED_TRACE(limit);
      Waiter waiter(wait);
      EXPECT_FALSE(waiter.HasEnded());
      event.SetEvent();
      EXPECT_EQ(waiter.Result(), RC_SUCCESS);
      EXPECT_FALSE(event.IsSignalled());
    }
  }
}

// The Thread sanitizer sees an event that is changed without the lock.
TEST(EventWaiters, MayBeSignalledAndResetByManyThreads) {
  ManualResetEvent event;
  Record done(kType);
  std::vector<std::jthread> threads;
  threads.reserve(4);
  for (int i = 0; i < 4; ++i) {
    threads.emplace_back([&event, i] {
      for (int turn = 0; turn < 1000; ++turn) {
        if (i % 2 == 0) {
          event.SetEvent();
        } else {
          event.ResetEvent();
        }
      }
    });
  }
  for (int turn = 0; turn < 1000; ++turn) {
    static_cast<void>(event.WaitOnEvent(0));
    EXPECT_EQ(Record::WaitOnMultipleEvents({&event, &done}, 0, WAIT_FOR_ALL_EVENTS), kWaitTimedOut);
  }
  threads.clear();
  event.SetEvent();
  EXPECT_EQ(event.WaitOnEvent(kFarAway), RC_SUCCESS);
}

}  // namespace
}  // namespace usb_support
