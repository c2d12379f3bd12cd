// The error numbers of the POSIX source of the events, which are those of Windows. The shared
// library does not export it, so it is compiled here again.
#if !defined(_WIN32)

#include <usb_support/platform/events_posix.cpp>  // NOLINT(bugprone-suspicious-include)

#include <cstdint>
#include <functional>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace usb_support::platform {
namespace {

/// The last error after `action` on a thread that has had none.
std::uint32_t ErrorAfter(std::function<void()> const& action) {
  std::uint32_t error = 0;
  std::thread([&] {
    action();
    error = LastError();
  }).join();
  return error;
}

class PosixEvents : public testing::Test {
 protected:
  PosixEvents() = default;

  ~PosixEvents() override {
    for (EventHandle const event : made_) {
      EXPECT_TRUE(CloseEvent(event));
    }
  }

  EventHandle Make(bool manualReset) {
    made_.push_back(MakeEvent(manualReset));
    return made_.back();
  }

  std::vector<EventHandle> MakeSeveral(std::size_t count) {
    std::vector<EventHandle> events;
    for (std::size_t i = 0; i < count; ++i) {
      events.push_back(Make(true));
    }
    return events;
  }

 private:
  std::vector<EventHandle> made_;
};

TEST_F(PosixEvents, ResultsAreTheNumbersOfWindows) {
  EXPECT_EQ(kWaitAbandoned, 0x80u);
  EXPECT_EQ(kWaitTimeout, 0x102u);
  EXPECT_EQ(kWaitFailed, 0xFFFFFFFFu);
  EXPECT_EQ(kNoLimit, 0xFFFFFFFFu);
  EXPECT_EQ(kMostEvents, 64u);
}

TEST_F(PosixEvents, ErrorsAreTheNumbersOfWindows) {
  EXPECT_EQ(kErrorInvalidHandle, 6u);
  EXPECT_EQ(kErrorNotEnoughMemory, 8u);
  EXPECT_EQ(kErrorInvalidParameter, 87u);
}

TEST_F(PosixEvents, WhatSucceedsLeavesTheErrorAsItWas) {
  EventHandle const event = Make(false);
  EXPECT_EQ(ErrorAfter([&] {
              EXPECT_TRUE(SignalEvent(event));
              EXPECT_EQ(WaitForOne(event, 0), 0u);
              EXPECT_EQ(WaitForOne(event, 0), 0x102u);
              EXPECT_TRUE(ResetEvent(event));
            }),
            0u);
}

TEST_F(PosixEvents, FailuresHaveTheNumbersOfWindows) {
  EventHandle const closed = MakeEvent(true);
  EXPECT_TRUE(CloseEvent(closed));
  for (EventHandle const event : {EventHandle{nullptr}, closed}) {
    EXPECT_EQ(ErrorAfter([&] { EXPECT_FALSE(SignalEvent(event)); }), 6u);
    EXPECT_EQ(ErrorAfter([&] { EXPECT_FALSE(ResetEvent(event)); }), 6u);
    EXPECT_EQ(ErrorAfter([&] { EXPECT_FALSE(CloseEvent(event)); }), 6u);
    EXPECT_EQ(ErrorAfter([&] { EXPECT_EQ(WaitForOne(event, 0), 0xFFFFFFFFu); }), 6u);
  }
  std::vector<EventHandle> events = MakeSeveral(2);
  EXPECT_TRUE(SignalEvent(events[0]));
  events.push_back(nullptr);
  EXPECT_EQ(ErrorAfter([&] { EXPECT_EQ(WaitForSeveral(events, false, 0), 0xFFFFFFFFu); }), 6u);
  EXPECT_EQ(ErrorAfter([] { EXPECT_EQ(WaitForSeveral({}, false, 0), 0xFFFFFFFFu); }), 87u);
  std::vector<EventHandle> const tooMany = MakeSeveral(65);
  EXPECT_EQ(ErrorAfter([&] { EXPECT_EQ(WaitForSeveral(tooMany, true, 0), 0xFFFFFFFFu); }), 87u);
}

}  // namespace
}  // namespace usb_support::platform

#endif
