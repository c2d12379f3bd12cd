// Waits on several events: which one wins, whose signal is taken, and what fails.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <type_traits>
#include <vector>

#include <tests/support/suite_test.h>
#include <usb_support/events/driver_event.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::NoEvent;
using testing_support::Print;

using Record = COsSpecificDriverEvent;

constexpr RETURN_CODE kWaitTimedOut = static_cast<RETURN_CODE>(0x80005001);
constexpr RETURN_CODE kWaitError = static_cast<RETURN_CODE>(0x80005002);
constexpr unsigned kNoLimit = 0xFFFFFFFF;
constexpr TQE_EventType kType = TQE_EVENT_TYPE_DEFAULT;
constexpr auto kAny = static_cast<EMultipleWaitCondition>(0);
constexpr auto kAll = static_cast<EMultipleWaitCondition>(1);

// Every test of a behaviour is run with both forms of the wait: Form is the class of the events.
template <typename Form>
class MultipleWait : public testing_support::SuiteTest {
 protected:
  /// Makes `count` auto-reset events.
  void Make(std::size_t count) {
    while (owned_.size() < count) {
      Add()->Initialize(kType);
    }
  }

  /// Makes an event without a handle, after the others.
  Form* Add() {
    owned_.push_back(std::make_unique<Form>());
    events_.push_back(owned_.back().get());
    return events_.back();
  }

  Form& At(std::size_t index) { return *owned_[index]; }

  static Record& RecordOf(Record& record) { return record; }
  static Record& RecordOf(CDriverEvent& event) {
    return dynamic_cast<Record&>(*event.GetImplStruct());
  }

  bool TakeSignal(std::size_t index) { return RecordOf(At(index)).IsSignalled(); }

  /// Which events are signalled; takes the signals.
  std::vector<std::size_t> TakeSignals() {
    std::vector<std::size_t> signalled;
    for (std::size_t index = 0; index < owned_.size(); ++index) {
      if (TakeSignal(index)) {
        signalled.push_back(index);
      }
    }
    return signalled;
  }

  RETURN_CODE Wait(unsigned timeoutMs, EMultipleWaitCondition condition) const {
    return Form::WaitOnMultipleEvents(events_, timeoutMs, condition);
  }

  std::vector<Form*>& Events() { return events_; }

 private:
  std::vector<std::unique_ptr<Form>> owned_;
  std::vector<Form*> events_;
};

using Forms = testing::Types<Record, CDriverEvent>;
TYPED_TEST_SUITE(MultipleWait, Forms);

TYPED_TEST(MultipleWait, ForAnyTakesTheLowestNumber) {
  this->Make(4);
  this->At(0).SetEvent();
  this->At(2).SetEvent();
  EXPECT_EQ(this->Wait(0, kAny), 0u);
  EXPECT_THAT(this->TakeSignals(), ElementsAre(2));
  this->At(3).SetEvent();
  this->At(2).SetEvent();
  this->At(1).SetEvent();
  EXPECT_EQ(this->Wait(0, kAny), 1u);
  EXPECT_EQ(this->Wait(kNoLimit, kAny), 2u);
  EXPECT_EQ(this->Wait(10, kAny), 3u);
  EXPECT_EQ(this->Wait(0, kAny), kWaitTimedOut);
}

TYPED_TEST(MultipleWait, ForAllTakesAllSignals) {
  this->Make(3);
  for (unsigned const timeout : {0u, 10u, kNoLimit}) {
    for (std::size_t index = 0; index < 3; ++index) {
      this->At(index).SetEvent();
    }
    EXPECT_EQ(this->Wait(timeout, kAll), 0u) << timeout;
    EXPECT_THAT(this->TakeSignals(), IsEmpty()) << timeout;
  }
}

TYPED_TEST(MultipleWait, ForAllTakesAllOrNone) {
  this->Make(3);
  for (std::size_t missing = 0; missing < 3; ++missing) {
    for (unsigned const timeout : {0u, 5u}) {
      std::vector<std::size_t> signalled;
      for (std::size_t index = 0; index < 3; ++index) {
        if (index != missing) {
          this->At(index).SetEvent();
          signalled.push_back(index);
        }
      }
      EXPECT_EQ(this->Wait(timeout, kAll), kWaitTimedOut);
      EXPECT_EQ(this->TakeSignals(), signalled);
    }
  }
}

TYPED_TEST(MultipleWait, EveryConditionButOneIsForAny) {
  this->Make(2);
  for (std::uint32_t const value : {0u, 2u, 3u, 0x100u, 0x101u, 0x80000001u, 0xFFFFFFFFu}) {
    this->At(1).SetEvent();
    EXPECT_EQ(this->Wait(0, static_cast<EMultipleWaitCondition>(value)), 1u) << value;
    EXPECT_THAT(this->TakeSignals(), IsEmpty()) << value;
  }
  this->At(1).SetEvent();
  EXPECT_EQ(this->Wait(0, kAll), kWaitTimedOut);
  EXPECT_THAT(this->TakeSignals(), ElementsAre(1));
}

TYPED_TEST(MultipleWait, LeavesManualResetEventsSignalled) {
  for (int i = 0; i < 3; ++i) {
    this->Add()->InitializeManualReset(kType);
  }
  this->At(1).SetEvent();
  this->At(2).SetEvent();
  EXPECT_EQ(this->Wait(0, kAny), 1u);
  EXPECT_EQ(this->Wait(0, kAny), 1u);
  EXPECT_EQ(this->Wait(0, kAll), kWaitTimedOut);
  this->At(0).SetEvent();
  EXPECT_EQ(this->Wait(0, kAll), 0u);
  EXPECT_THAT(this->TakeSignals(), ElementsAre(0, 1, 2));
}

TYPED_TEST(MultipleWait, TakesSixtyFourEvents) {
  this->Make(64);
  EXPECT_EQ(this->Wait(0, kAny), kWaitTimedOut);
  this->At(63).SetEvent();
  EXPECT_EQ(this->Wait(0, kAny), 63u);
  for (std::size_t index = 0; index < 64; ++index) {
    this->At(index).SetEvent();
  }
  EXPECT_EQ(this->Wait(0, kAll), 0u);
  EXPECT_THAT(this->TakeSignals(), IsEmpty());
}

TYPED_TEST(MultipleWait, FailsForSixtyFiveEventsOrMore) {
  for (std::size_t const count : {65u, 66u, 128u, 300u}) {
    this->Make(count);
    for (EMultipleWaitCondition const condition : {kAny, kAll}) {
      this->At(0).SetEvent();
      EXPECT_EQ(this->Wait(0, condition), kWaitError) << count;
      EXPECT_EQ(this->Wait(kNoLimit, condition), kWaitError) << count;
      EXPECT_THAT(this->TakeSignals(), ElementsAre(0)) << count;
    }
  }
}

TYPED_TEST(MultipleWait, FailsForNoEvents) {
  for (unsigned const timeout : {0u, 10u, kNoLimit}) {
    EXPECT_EQ(this->Wait(timeout, kAny), kWaitError) << timeout;
    EXPECT_EQ(this->Wait(timeout, kAll), kWaitError) << timeout;
  }
}

TYPED_TEST(MultipleWait, FailsWhenOneIsNotAnEvent) {
  this->Make(2);
  Record& third = this->RecordOf(*this->Add());
  this->At(0).SetEvent();
  this->At(1).SetEvent();
  for (void* const handle : {static_cast<void*>(nullptr), NoEvent()}) {
    third.m_Overlapped.hEvent = handle;
    for (unsigned const timeout : {0u, 10u, kNoLimit}) {
      EXPECT_EQ(this->Wait(timeout, kAny), kWaitError) << timeout;
      EXPECT_EQ(this->Wait(timeout, kAll), kWaitError) << timeout;
    }
  }
  third.m_Overlapped.hEvent = nullptr;
  EXPECT_THAT(this->TakeSignals(), ElementsAre(0, 1));
}

TYPED_TEST(MultipleWait, PrintsATimeoutFromVerbositySixOn) {
  this->Make(2);
  for (unsigned const verbosity : {0u, 3u, 5u, 6u, 7u, 128u, 255u}) {
    standalone::SetLogVerbosity(static_cast<ELogLevel>(verbosity));
    EXPECT_EQ(this->Wait(0, kAny), kWaitTimedOut);
    EXPECT_EQ(this->Wait(5, kAll), kWaitTimedOut);
    std::vector<standalone::RecordedCall> expected;
    if (verbosity >= 6) {
      expected.assign(2, Print(0, "WaitForMultipleEvents() timed out."));
    }
    EXPECT_EQ(this->TakeCalls(), expected) << verbosity;
  }
}

TYPED_TEST(MultipleWait, PrintsNothingElse) {
  this->Make(2);
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  this->At(1).SetEvent();
  EXPECT_EQ(this->Wait(0, kAny), 1u);
  this->At(0).SetEvent();
  this->At(1).SetEvent();
  EXPECT_EQ(this->Wait(0, kAll), 0u);
  this->Add();
  EXPECT_EQ(this->Wait(0, kAny), kWaitError);
  this->Events().clear();
  EXPECT_EQ(this->Wait(0, kAny), kWaitError);
  EXPECT_THAT(this->TakeCalls(), IsEmpty());
}

}  // namespace
}  // namespace usb_support
