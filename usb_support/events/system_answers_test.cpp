// How a wait handles the system's answers, even those that no event of this system gives, and which
// events the system must close: the record is compiled here again, under other names, with system
// calls whose answers the test chooses. On Windows the system itself gives them
// (platform/events_windows_test.cpp).
#if !defined(_WIN32)

#include <cstdint>
#include <span>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#define CDEImplementation ScriptedImplementation
#define COsSpecificDriverEvent ScriptedEvent
#define CDriverEvent ScriptedDriverEvent
#define TQE_EventType ScriptedEventType
#define TQE_EVENT_TYPE_DEFAULT SCRIPTED_EVENT_TYPE_DEFAULT
#define EMultipleWaitCondition ScriptedWaitCondition
#define WAIT_FOR_ANY_EVENT SCRIPTED_WAIT_FOR_ANY_EVENT
#define WAIT_FOR_ALL_EVENTS SCRIPTED_WAIT_FOR_ALL_EVENTS
#define DriverStatusDecoder ScriptedStatusDecoder
#define platform scripted_platform
#include <usb_support/events/driver_event.cpp>  // NOLINT(bugprone-suspicious-include)
#undef platform

#include <tests/support/suite_test.h>

namespace usb_support {
namespace {

std::uint32_t answer = 0;
std::vector<void*> closed;
int lastErrorsRead = 0;

}  // namespace

namespace scripted_platform {

EventHandle MakeEvent(bool /*manualReset*/) {
  return &answer;
}

bool SignalEvent(EventHandle /*event*/) {
  return true;
}

bool ResetEvent(EventHandle /*event*/) {
  return true;
}

bool CloseEvent(EventHandle event) {
  closed.push_back(event);
  return true;
}

std::uint32_t WaitForOne(EventHandle /*event*/, std::uint32_t /*timeoutMs*/) {
  return answer;
}

std::uint32_t WaitForSeveral(std::span<EventHandle const> /*events*/, bool /*all*/,
                             std::uint32_t /*timeoutMs*/) {
  return answer;
}

std::uint32_t LastError() {
  ++lastErrorsRead;
  return 0;
}

}  // namespace scripted_platform

namespace {

class SystemAnswers : public testing_support::SuiteTest {
 protected:
  ~SystemAnswers() override {
    answer = 0;
    closed.clear();
    lastErrorsRead = 0;
  }
};

TEST_F(SystemAnswers, OfAWaitOnOneAreStatuses) {
  standalone::SetLogVerbosity(LOG_LEVEL_6);
  struct Row {
    std::uint32_t answer;
    std::uint32_t status;
    std::size_t lines;
  };
  ScriptedDriverEvent event(SCRIPTED_EVENT_TYPE_DEFAULT);
  for (Row const& row : {
           Row{0x00000000, 0x00000000, 1},
           Row{0x00000001, 0x80000000, 0},
           Row{0x00000080, 0x80005000, 0},
           Row{0x00000081, 0x80000000, 0},
           Row{0x00000102, 0x80005001, 1},
           Row{0xFFFFFFFF, 0x80000000, 0},
       }) {
    SCOPED_TRACE(row.answer);
    answer = row.answer;
    EXPECT_EQ(event.WaitOnEvent(7), row.status);
    EXPECT_EQ(TakeCalls().size(), row.lines);
  }
}

TEST_F(SystemAnswers, OfAWaitOnSeveralAreStatuses) {
  struct Row {
    std::uint32_t answer;
    std::uint32_t status;
  };
  ScriptedDriverEvent first(SCRIPTED_EVENT_TYPE_DEFAULT);
  ScriptedDriverEvent second(SCRIPTED_EVENT_TYPE_DEFAULT);
  for (Row const& row : {
           Row{0x00000000, 0x00000000},
           Row{0x00000001, 0x00000001},
           Row{0x00000002, 0x80005002},
           Row{0x00000080, 0x80005002},
           Row{0x00000081, 0x80005002},
           Row{0x00000102, 0x80005001},
           Row{0xFFFFFFFF, 0x80005002},
       }) {
    SCOPED_TRACE(row.answer);
    answer = row.answer;
    EXPECT_EQ(ScriptedDriverEvent::WaitOnMultipleEvents({&first, &second}, 7,
                                                        SCRIPTED_WAIT_FOR_ANY_EVENT),
              row.status);
  }
}

// A debugger that stops there shows the error.
TEST_F(SystemAnswers, DebugSeeErrorMessageReadsTheLastError) {
  ScriptedEvent::DebugSeeErrorMessage(RC_SUCCESS);
  EXPECT_EQ(lastErrorsRead, 1);
}

// A debugger stops where an invalid handle is closed.
TEST_F(SystemAnswers, NothingIsClosedWithoutAnEvent) {
  { ScriptedEvent const empty; }
  EXPECT_THAT(closed, testing::IsEmpty());
  { ScriptedEvent const armed(SCRIPTED_EVENT_TYPE_DEFAULT); }
  EXPECT_THAT(closed, testing::ElementsAre(&answer));
}

}  // namespace
}  // namespace usb_support

#endif
