// Signals from other threads. A lost wait ends the test by its time limit.
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <usb_support/events/driver_event.h>

namespace usb_support {
namespace {

constexpr RETURN_CODE kWaitTimedOut = static_cast<RETURN_CODE>(0x80005001);
constexpr unsigned kNoLimit = 0xFFFFFFFF;
constexpr unsigned kFarAway = 120'000;  // milliseconds; no test here takes that long
constexpr TQE_EventType kType = TQE_EVENT_TYPE_DEFAULT;
constexpr auto kAny = static_cast<EMultipleWaitCondition>(0);
constexpr auto kAll = static_cast<EMultipleWaitCondition>(1);

TEST(DriverEventThreads, SignalCarriesWhatWasWrittenBeforeIt) {
  CDriverEvent event(kType);
  int value = 0;
  std::jthread const signaller([&] {
    *static_cast<std::uint32_t*>(event.GetStatusBuffer()) = 0x81000200;
    value = 17;
    event.SetEvent();
  });
  EXPECT_EQ(event.WaitOnEvent(kNoLimit), RC_SUCCESS);
  EXPECT_EQ(value, 17);
  EXPECT_EQ(event.GetLengthTransfered(), 0x200u);
}

TEST(DriverEventThreads, SeveralThreadsEndAWaitForAll) {
  CDriverEvent first(kType);
  CDriverEvent second(kType);
  CDriverEvent third(kType);
  for (unsigned const timeout : {kFarAway, kNoLimit}) {
    std::jthread const one([&] { third.SetEvent(); });
    std::jthread const two([&] { first.SetEvent(); });
    std::jthread const three([&] { second.SetEvent(); });
    EXPECT_EQ(CDriverEvent::WaitOnMultipleEvents({&first, &second, &third}, timeout, kAll), 0u);
    EXPECT_EQ(first.WaitOnEvent(0), kWaitTimedOut);
    EXPECT_EQ(second.WaitOnEvent(0), kWaitTimedOut);
    EXPECT_EQ(third.WaitOnEvent(0), kWaitTimedOut);
  }
}

TEST(DriverEventThreads, WaitForAnyTakesEverySignalOnce) {
  constexpr std::size_t kThreads = 8;
  constexpr int kSignals = 250;
  std::vector<COsSpecificDriverEvent> signals(kThreads);
  std::vector<COsSpecificDriverEvent> answers(kThreads);
  std::vector<COsSpecificDriverEvent*> waited;
  for (std::size_t i = 0; i < kThreads; ++i) {
    signals[i].Initialize(kType);
    answers[i].Initialize(kType);
    waited.push_back(&signals[i]);
  }
  std::vector<std::jthread> threads;
  threads.reserve(kThreads);
  for (std::size_t i = 0; i < kThreads; ++i) {
    threads.emplace_back([&, i] {
      for (int turn = 0; turn < kSignals; ++turn) {
        signals[i].SetEvent();
        if (answers[i].WaitOnEvent(kFarAway) != RC_SUCCESS) {
          return;
        }
      }
    });
  }
  std::vector<int> taken(kThreads);
  for (std::size_t turn = 0; turn < kThreads * kSignals; ++turn) {
    RETURN_CODE const result = COsSpecificDriverEvent::WaitOnMultipleEvents(waited, kFarAway, kAny);
    if (result >= kThreads) {
      ADD_FAILURE() << "A signal was lost: " << result;
      break;
    }
    ++taken[result];
    answers[result].SetEvent();
  }
  threads.clear();
  EXPECT_EQ(taken, std::vector<int>(kThreads, kSignals));
}

TEST(DriverEventThreads, LoseNoSignal) {
  constexpr int kHandOvers = 100'000;
  COsSpecificDriverEvent there(kType);
  COsSpecificDriverEvent back(kType);
  int counted = 0;  // guarded by the signals between the threads
  std::jthread other([&] {
    for (int i = 0; i < kHandOvers / 2; ++i) {
      if (there.WaitOnEvent(kFarAway) != RC_SUCCESS) {
        return;
      }
      ++counted;
      back.SetEvent();
    }
  });
  int answered = 0;
  for (; answered < kHandOvers / 2; ++answered) {
    ++counted;
    there.SetEvent();
    if (back.WaitOnEvent(kFarAway) != RC_SUCCESS) {
      break;
    }
  }
  other.join();
  EXPECT_EQ(answered, kHandOvers / 2);
  EXPECT_EQ(counted, kHandOvers);
  EXPECT_FALSE(there.IsSignalled());
  EXPECT_FALSE(back.IsSignalled());
}

}  // namespace
}  // namespace usb_support
