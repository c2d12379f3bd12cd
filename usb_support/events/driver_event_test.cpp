// One driver event: its record, its signal, the wait on it, and the lines of the wait.
#include <array>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <vector>

#include <tests/support/suite_test.h>
#include <tests/support/virtual_slot.h>
#include <usb_support/events/driver_event.h>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#include <sanitizer/asan_interface.h>
#define USB_SUPPORT_TEST_SEES_FREED_MEMORY
#endif
#endif

namespace usb_support {
namespace {

using standalone::RecordedCall;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Line;
using testing_support::NoEvent;

constexpr RETURN_CODE kWaitTimedOut = static_cast<RETURN_CODE>(0x80005001);
constexpr RETURN_CODE kFailed = static_cast<RETURN_CODE>(0x80000000);
constexpr unsigned kNoLimit = 0xFFFFFFFF;
constexpr TQE_EventType kType = TQE_EVENT_TYPE_DEFAULT;

using Decoder = std::function<RETURN_CODE(unsigned, bool)>;

using Record = COsSpecificDriverEvent;
static_assert(sizeof(CDEImplementation) == sizeof(void*));
static_assert(std::has_virtual_destructor_v<CDEImplementation>);
static_assert(sizeof(CDriverEvent) == 2 * sizeof(void*));
static_assert(std::has_virtual_destructor_v<CDriverEvent>);

Record& RecordOf(CDriverEvent const& event) {
  return dynamic_cast<Record&>(*event.GetImplStruct());
}

/// Clears the event of `record`, so that its destructor does not close it.
void* TakeEvent(Record& record) {
  void* const event = record.m_Overlapped.hEvent;
  record.m_Overlapped.hEvent = nullptr;
  return event;
}

/// Fills all that a request fills: the driver's fields, the status word and both pointers.
void Use(Record& record, void* buffer, void* secondBlock) {
  record.m_Overlapped.Internal = 0x1111;
  record.m_Overlapped.InternalHigh = 0x2222;
  record.m_Overlapped.Offset = 0x3333;
  record.m_Overlapped.OffsetHigh = 0x4444;
  record.m_StatusBuffer = 0x81000200;
  record.m_Buffer = buffer;
  record.m_SecondBlock = secondBlock;
}

/// Everything of a record but its event.
using Contents = std::tuple<std::uintptr_t, std::uintptr_t, std::uint32_t, std::uint32_t,
                            std::uint32_t, void*, void*>;

Contents ContentsOf(Record const& record) {
  OVERLAPPED const& overlapped = record.m_Overlapped;
  return {overlapped.Internal,   overlapped.InternalHigh, overlapped.Offset,
          overlapped.OffsetHigh, record.m_StatusBuffer,   record.m_Buffer,
          record.m_SecondBlock};
}

class DriverEvent : public testing_support::SuiteTest {
 protected:
  static RecordedCall Ended(char const* how, Record const& record, std::string const& rest) {
    return Line(TEST_STATUS_INFORMATION, 5,
                "COsSpecificDriverEvent::WaitOnEvent " + std::string(how) + "! (this : 0x" +
                    testing_support::AddressDigits(&record) + ", m_StatusBuffer : " + rest);
  }
  static RecordedCall InTime(Record const& record, std::string const& rest) {
    return Ended("returned in time", record, rest);
  }
  static RecordedCall Timeout(Record const& record, std::string const& rest) {
    return Ended("returning timeout", record, rest);
  }
};

TEST_F(DriverEvent, RecordHasTheLayoutOfTheSuite) {
  Record const record;
  auto const& overlapped = record.m_Overlapped;
  std::pair<void const*, std::size_t> const members[] = {{&overlapped, 8},
                                                         {&overlapped.Internal, 8},
                                                         {&overlapped.InternalHigh, 16},
                                                         {&overlapped.Offset, 24},
                                                         {&overlapped.OffsetHigh, 28},
                                                         {&overlapped.hEvent, 32},
                                                         {&record.m_StatusBuffer, 40},
                                                         {&record.m_Buffer, 48},
                                                         {&record.m_SecondBlock, 56}};
  for (auto const& [member, offset] : members) {
    EXPECT_EQ(static_cast<std::byte const*>(member) - reinterpret_cast<std::byte const*>(&record),
              static_cast<std::ptrdiff_t>(offset));
  }
  EXPECT_EQ(sizeof(Record), 64u);
  EXPECT_EQ(sizeof(record.m_StatusBuffer), 4u);
}

TEST_F(DriverEvent, ChoicesHaveTheSuitesNumbers) {
  EXPECT_EQ(TQE_EVENT_TYPE_DEFAULT, 0u);
  EXPECT_EQ(WAIT_FOR_ANY_EVENT, 0u);
  EXPECT_EQ(WAIT_FOR_ALL_EVENTS, 1u);
}

#if !defined(_MSC_VER) && defined(__x86_64__)
TEST_F(DriverEvent, GetStatusHasTheFirstSlot) {
  struct OneMore : CDriverEvent {
    virtual void Added() {}
  };
  // The destructor has the slots 0 and 1 in that ABI.
  EXPECT_EQ(testing_support::SlotOf(&CDriverEvent::GetStatus), 2u);
  EXPECT_EQ(testing_support::SlotOf(&OneMore::Added), 3u);
}
#endif

TEST_F(DriverEvent, RecordIsZeroAtFirst) {
  alignas(Record) std::array<unsigned char, sizeof(Record)> memory;
  memory.fill(0xCC);
  auto* record = new (memory.data()) Record;
  EXPECT_EQ(ContentsOf(*record), Contents());
  EXPECT_EQ(record->GetOverlappedEvent(), nullptr);
  record->~Record();
  memory.fill(0xCC);
  record = new (memory.data()) Record(kType);
  EXPECT_EQ(ContentsOf(*record), Contents());
  EXPECT_NE(record->GetOverlappedEvent(), nullptr);
  EXPECT_EQ(record->WaitOnEvent(0), kWaitTimedOut);
  EXPECT_TRUE(record->SetEvent());
  EXPECT_EQ(record->WaitOnEvent(0), RC_SUCCESS);
  EXPECT_EQ(record->WaitOnEvent(0), kWaitTimedOut);
  record->~Record();
}

TEST_F(DriverEvent, GivesOutItsMembers) {
  CDriverEvent event(kType);
  Record& record = RecordOf(event);
  record.m_Buffer = std::malloc(16);
  EXPECT_EQ(&record.GetOverlapped(), &record.m_Overlapped);
  EXPECT_EQ(record.GetOverlappedEvent(), record.m_Overlapped.hEvent);
  EXPECT_EQ(record.GetBuffer(), record.m_Buffer);
  EXPECT_EQ(record.GetStatusBuffer(), &record.m_StatusBuffer);
  EXPECT_EQ(event.AsynchHandler(), &record.m_Overlapped);
  EXPECT_EQ(event.GetStatusBuffer(), &record.m_StatusBuffer);
}

TEST_F(DriverEvent, InitialisersClearTheRecord) {
  // That of a manual-reset event keeps the status word and the second block.
  for (bool const isManual : {false, true}) {
    for (std::uint32_t const type : {0u, 1u, 7u, 0x80000000u, 0xFFFFFFFFu}) {
      Record record;
      std::array<unsigned char, 2> blocks{};
      Use(record, &blocks[0], &blocks[1]);
      if (isManual) {
        record.InitializeManualReset(static_cast<TQE_EventType>(type));
      } else {
        record.Initialize(static_cast<TQE_EventType>(type));
      }
      EXPECT_EQ(ContentsOf(record),
                isManual ? Contents(0, 0, 0, 0, 0x81000200, nullptr, &blocks[1]) : Contents());
      EXPECT_FALSE(record.IsSignalled());
      record.SetEvent();
      EXPECT_TRUE(record.IsSignalled());
      EXPECT_EQ(record.IsSignalled(), isManual);
      record.m_SecondBlock = nullptr;
    }
  }
}

TEST_F(DriverEvent, InitialisersLeaveTheEventBeforeOpen) {
  Record record(kType);
  Record first;
  first.m_Overlapped.hEvent = record.m_Overlapped.hEvent;
  record.Initialize(kType);
  Record second;
  second.m_Overlapped.hEvent = record.m_Overlapped.hEvent;
  record.InitializeManualReset(kType);
  EXPECT_NE(record.m_Overlapped.hEvent, second.m_Overlapped.hEvent);
  EXPECT_NE(first.m_Overlapped.hEvent, second.m_Overlapped.hEvent);
  EXPECT_TRUE(first.SetEvent());
  EXPECT_FALSE(second.IsSignalled());
  EXPECT_FALSE(record.IsSignalled());
  EXPECT_TRUE(first.IsSignalled());
  EXPECT_TRUE(second.SetEvent());
  EXPECT_FALSE(record.IsSignalled());
  EXPECT_TRUE(second.IsSignalled());
}

TEST_F(DriverEvent, AutoResetSignalSatisfiesOneWait) {
  Record record(kType);
  EXPECT_TRUE(record.SetEvent());
  EXPECT_TRUE(record.SetEvent());
  EXPECT_EQ(record.WaitOnEvent(0), RC_SUCCESS);
  EXPECT_EQ(record.WaitOnEvent(0), kWaitTimedOut);
  EXPECT_TRUE(record.SetEvent());
  EXPECT_TRUE(record.ResetEvent());
  EXPECT_EQ(record.WaitOnEvent(0), kWaitTimedOut);
  EXPECT_TRUE(record.ResetEvent());
  EXPECT_EQ(record.WaitOnEvent(0), kWaitTimedOut);
}

TEST_F(DriverEvent, ManualResetSignalStaysUntilItIsReset) {
  Record record;
  record.InitializeManualReset(kType);
  EXPECT_TRUE(record.SetEvent());
  EXPECT_EQ(record.WaitOnEvent(0), RC_SUCCESS);
  EXPECT_EQ(record.WaitOnEvent(kNoLimit), RC_SUCCESS);
  EXPECT_TRUE(record.IsSignalled());
  EXPECT_TRUE(record.ResetEvent());
  EXPECT_EQ(record.WaitOnEvent(0), kWaitTimedOut);
}

TEST_F(DriverEvent, SignalThatIsThereEndsEveryWait) {
  Record record(kType);
  for (unsigned const timeout :
       {0u, 1u, 60'000u, 0x7FFFFFFFu, 0x80000000u, 0xFFFFFFFEu, kNoLimit}) {
    record.SetEvent();
    EXPECT_EQ(record.WaitOnEvent(timeout), RC_SUCCESS) << timeout;
  }
}

TEST_F(DriverEvent, TimeLimitIsInMilliseconds) {
  Record record(kType);
  auto const start = std::chrono::steady_clock::now();
  EXPECT_EQ(record.WaitOnEvent(100), kWaitTimedOut);
  auto const passed = std::chrono::steady_clock::now() - start;
  // Windows counts a limit in clock ticks, of at most 15.6 ms; the first may be nearly over.
  EXPECT_GE(passed, std::chrono::milliseconds(84));
  EXPECT_LT(passed, std::chrono::seconds(50));
}

#if !defined(_WIN32)
TEST_F(DriverEvent, TheLeastTimeLimitTakesItsMillisecond) {
  Record record(kType);
  auto const start = std::chrono::steady_clock::now();
  EXPECT_EQ(record.WaitOnEvent(1), kWaitTimedOut);
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(1));
}
#endif

TEST_F(DriverEvent, WithoutAnEventEverythingFails) {
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  for (void* const handle : {static_cast<void*>(nullptr), NoEvent()}) {
    CDriverEvent event;
    Record& record = RecordOf(event);
    record.m_Overlapped.hEvent = handle;
    EXPECT_FALSE(record.SetEvent());
    EXPECT_FALSE(record.ResetEvent());
    EXPECT_FALSE(record.IsSignalled());
    EXPECT_EQ(record.WaitOnEvent(0), kFailed);
    EXPECT_EQ(record.WaitOnEvent(kNoLimit), kFailed);
    EXPECT_FALSE(event.SetEvent());
    EXPECT_FALSE(event.ResetEvent());
    EXPECT_EQ(event.WaitOnEvent(kNoLimit), kFailed);
    TakeEvent(record);
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(DriverEvent, ClosesItsEventAtItsEnd) {
  Record watcher;
  auto event = std::make_unique<CDriverEvent>(kType);
  watcher.m_Overlapped.hEvent = RecordOf(*event).m_Overlapped.hEvent;
  EXPECT_TRUE(watcher.SetEvent());
  EXPECT_EQ(event->WaitOnEvent(0), RC_SUCCESS);
  event.reset();
  EXPECT_FALSE(watcher.SetEvent());
  EXPECT_EQ(watcher.WaitOnEvent(0), kFailed);
  TakeEvent(watcher);
}

TEST_F(DriverEvent, RecordFreesBothBlocksAtItsEnd) {
  auto record = std::make_unique<Record>();
  record->m_Buffer = std::malloc(1'000);
  record->m_SecondBlock = std::malloc(2'000);
  void const* const buffer = record->m_Buffer;
  void const* const secondBlock = record->m_SecondBlock;
  ASSERT_TRUE(buffer != nullptr && secondBlock != nullptr);
  EXPECT_EQ(record->GetBuffer(), buffer);
  record.reset();
  // Elsewhere the leak and memory checkers that the tests run under see what is left.
#if defined(USB_SUPPORT_TEST_SEES_FREED_MEMORY)
  EXPECT_EQ(__asan_address_is_poisoned(buffer), 1);
  EXPECT_EQ(__asan_address_is_poisoned(secondBlock), 1);
#endif
}

TEST_F(DriverEvent, CopyOfARecordSharesEventAndBlocks) {
  Record record(kType);
  void* const buffer = std::malloc(8);
  void* const secondBlock = std::malloc(8);
  void* const event = record.m_Overlapped.hEvent;
  Use(record, buffer, secondBlock);

  Record copy(record);
  Record assigned;
  assigned = record;
  for (Record* const each : {&copy, &assigned, &record}) {
    EXPECT_EQ(ContentsOf(*each),
              Contents(0x1111, 0x2222, 0x3333, 0x4444, 0x81000200, buffer, secondBlock));
    EXPECT_EQ(each->m_Overlapped.hEvent, event);
  }
  EXPECT_TRUE(copy.SetEvent());
  EXPECT_TRUE(assigned.IsSignalled());
  EXPECT_FALSE(record.IsSignalled());

  for (Record* const each : {&copy, &assigned}) {
    TakeEvent(*each);
    each->m_Buffer = nullptr;
    each->m_SecondBlock = nullptr;
  }
}

TEST_F(DriverEvent, LengthIsTheLow24BitsOfTheStatusWord) {
  CDriverEvent event;
  Record& record = RecordOf(event);
  struct Case {
    std::uint32_t word;
    unsigned length;
  };
  for (auto const& [word, length] : {
           Case{0, 0},
           Case{0x00000001, 1},
           Case{0x81000200, 0x200},
           Case{0x00FFFFFF, 0xFFFFFF},
           Case{0x01000000, 0},
           Case{0xFF000000, 0},
           Case{0xFFFFFFFF, 0xFFFFFF},
           Case{0x12345678, 0x345678},
       }) {
    *static_cast<std::uint32_t*>(event.GetStatusBuffer()) = word;
    EXPECT_EQ(record.GetLengthTransfered(), length) << word;
    EXPECT_EQ(event.GetLengthTransfered(), length) << word;
  }
}

TEST_F(DriverEvent, StatusIsTheFunctionsOfTheWord) {
  CDriverEvent event;
  Record& record = RecordOf(event);
  record.m_StatusBuffer = 0x81000200;
  std::vector<std::pair<unsigned, bool>> seen;
  Decoder const decode = [&](unsigned word, bool flag) {
    seen.emplace_back(word, flag);
    return static_cast<RETURN_CODE>(flag ? 0x80004008u : 0x40000001u);
  };
  EXPECT_EQ(record.GetStatus(decode, true), 0x80004008u);
  EXPECT_EQ(record.GetStatus(decode, false), 0x40000001u);
  EXPECT_EQ(event.GetStatus(decode, true), 0x80004008u);
  EXPECT_EQ(event.GetStatus(decode, false), 0x40000001u);
  EXPECT_THAT(seen, ElementsAre(std::pair(0x81000200u, true), std::pair(0x81000200u, false),
                                std::pair(0x81000200u, true), std::pair(0x81000200u, false)));
  EXPECT_EQ(record.m_StatusBuffer, 0x81000200u);
}

TEST_F(DriverEvent, StatusThrowsWhatTheFunctionThrows) {
  CDriverEvent event;
  EXPECT_THROW(event.GetStatus(Decoder(), true), std::bad_function_call);
  EXPECT_THROW(RecordOf(event).GetStatus(Decoder(), false), std::bad_function_call);
  Decoder const decode = [](unsigned, bool) -> RETURN_CODE { throw 17; };
  EXPECT_THROW(event.GetStatus(decode, true), int);
}

TEST_F(DriverEvent, HandsItsOperationsOnToItsRecord) {
  CDriverEvent event(kType);
  Record& record = RecordOf(event);
  EXPECT_EQ(event.WaitOnEvent(0), kWaitTimedOut);
  EXPECT_TRUE(event.SetEvent());
  EXPECT_TRUE(record.IsSignalled());
  EXPECT_TRUE(record.SetEvent());
  EXPECT_TRUE(event.ResetEvent());
  EXPECT_FALSE(record.IsSignalled());
  EXPECT_TRUE(record.SetEvent());
  EXPECT_EQ(event.WaitOnEvent(kNoLimit), RC_SUCCESS);
  EXPECT_EQ(event.GetImplStruct(), &record);
}

TEST_F(DriverEvent, HandsItsInitialisersOnToItsRecord) {
  CDriverEvent event;
  Record& record = RecordOf(event);
  record.m_StatusBuffer = 0x81000200;
  event.InitializeManualReset(kType);
  EXPECT_EQ(record.m_StatusBuffer, 0x81000200u);
  event.SetEvent();
  EXPECT_EQ(event.WaitOnEvent(0), RC_SUCCESS);
  EXPECT_EQ(event.WaitOnEvent(0), RC_SUCCESS);
  Record before;
  before.m_Overlapped.hEvent = record.m_Overlapped.hEvent;
  event.Initialize(kType);
  EXPECT_EQ(record.m_StatusBuffer, 0u);
  event.SetEvent();
  EXPECT_EQ(event.WaitOnEvent(0), RC_SUCCESS);
  EXPECT_EQ(event.WaitOnEvent(0), kWaitTimedOut);
}

TEST_F(DriverEvent, WaitIsLoggedFromVerbositySixOn) {
  CDriverEvent event(kType);
  Record& record = RecordOf(event);
  for (unsigned const verbosity : {0u, 1u, 2u, 3u, 4u, 5u, 6u, 7u, 127u, 128u, 255u}) {
    standalone::SetLogVerbosity(static_cast<ELogLevel>(verbosity));
    std::vector<RecordedCall> expected;
    if (verbosity >= 6) {
      expected = {Timeout(record, "0x00000000: timeout: 0 ms)\n"),
                  InTime(record, "0x00000000: timeout: 0 ms)\n")};
    }
    EXPECT_EQ(record.WaitOnEvent(0), kWaitTimedOut);
    record.SetEvent();
    EXPECT_EQ(record.WaitOnEvent(0), RC_SUCCESS);
    EXPECT_EQ(TakeCalls(), expected) << verbosity;
    EXPECT_FALSE(record.IsSignalled());
    record.SetEvent();
    EXPECT_TRUE(record.IsSignalled());
    EXPECT_EQ(TakeCalls(), expected) << verbosity;
    EXPECT_EQ(event.WaitOnEvent(0), kWaitTimedOut);
    event.SetEvent();
    EXPECT_EQ(event.WaitOnEvent(0), RC_SUCCESS);
    EXPECT_EQ(TakeCalls(), expected) << verbosity;
  }
}

TEST_F(DriverEvent, WaitLogsStatusWordAndTimeLimit) {
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  Record record(kType);
  record.m_StatusBuffer = 0x81000ABC;
  record.SetEvent();
  EXPECT_EQ(record.WaitOnEvent(kNoLimit), RC_SUCCESS);
  record.SetEvent();
  EXPECT_EQ(record.WaitOnEvent(2'500'000'000), RC_SUCCESS);
  record.m_StatusBuffer = 0xF;
  EXPECT_EQ(record.WaitOnEvent(1), kWaitTimedOut);
  EXPECT_THAT(TakeCalls(), ElementsAre(InTime(record, "0x81000ABC: timeout: 4294967295 ms)\n"),
                                       InTime(record, "0x81000ABC: timeout: 2500000000 ms)\n"),
                                       Timeout(record, "0x0000000F: timeout: 1 ms)\n")));
}

TEST_F(DriverEvent, NothingElseIsLogged) {
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  {
    CDriverEvent event(kType);
    event.SetEvent();
    event.ResetEvent();
    event.GetStatus([](unsigned, bool) { return RC_SUCCESS; }, false);
    event.GetLengthTransfered();
    CDriverEvent manual;
    manual.InitializeManualReset(kType);
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

// Puts another record in the place of an event's, which is after the virtual table.
void Replace(CDriverEvent& event, CDEImplementation* implementation) {
  static_assert(sizeof(CDriverEvent) == 2 * sizeof(void*));
  delete event.GetImplStruct();
  std::memcpy(reinterpret_cast<std::byte*>(&event) + sizeof(void*), &implementation,
              sizeof(implementation));
}

TEST_F(DriverEvent, ReachesARecordOfADerivedClass) {
  struct DerivedRecord : Record {};
  CDriverEvent event(kType);
  Replace(event, new DerivedRecord);
  event.Initialize(kType);
  EXPECT_TRUE(event.SetEvent());
  EXPECT_EQ(event.WaitOnEvent(0), RC_SUCCESS);
}

TEST_F(DriverEvent, RefusesWhatIsNotARecord) {
  struct NoRecord : CDEImplementation {};
  CDriverEvent event(kType);
  Replace(event, new NoRecord);
  EXPECT_THROW(event.SetEvent(), std::bad_cast);
  EXPECT_THROW(static_cast<void>(event.WaitOnEvent(0)), std::bad_cast);
}

TEST_F(DriverEvent, DebugSeeErrorMessageHasNoEffect) {
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  for (RETURN_CODE const code : {RC_SUCCESS, RC_WAIT_TIMEOUT, kFailed}) {
    CDriverEvent::DebugSeeErrorMessage(code);
    Record::DebugSeeErrorMessage(code);
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

}  // namespace
}  // namespace usb_support
