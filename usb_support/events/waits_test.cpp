#include <usb_support/events/waits.h>

#include <chrono>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/suite_test.h>

namespace usb_support {
namespace {

using namespace std::chrono_literals;

class Waits : public testing_support::SuiteTest {
 protected:
  CDriverEvent first_{TQE_EVENT_TYPE_DEFAULT};
  CDriverEvent second_{TQE_EVENT_TYPE_DEFAULT};
  std::vector<CDriverEvent*> both_{&first_, &second_};
};

TEST_F(Waits, SayThatAnEventWasSignalled) {
  first_.SetEvent();
  WaitResult const result = Wait(first_, 0ms);
  EXPECT_TRUE(result);
  EXPECT_EQ(result.end, WaitEnd::kSignalled);
  EXPECT_EQ(result.code, RC_SUCCESS);
}

TEST_F(Waits, SayThatTheTimeLimitWasReached) {
  WaitResult const result = Wait(first_, 0ms);
  EXPECT_FALSE(result);
  EXPECT_EQ(result.end, WaitEnd::kTimedOut);
  EXPECT_EQ(result.code, RC_WAIT_TIMEOUT);
  EXPECT_EQ(WaitForAny(both_, 0ms).end, WaitEnd::kTimedOut);
  EXPECT_EQ(WaitForAll(both_, 0ms).end, WaitEnd::kTimedOut);
}

TEST_F(Waits, TakeALimitBelowZeroAsZero) {
  EXPECT_EQ(Wait(first_, -5ms).end, WaitEnd::kTimedOut);
}

TEST_F(Waits, SayThatTheSystemRefused) {
  CDriverEvent none;
  EXPECT_EQ(Wait(none, 0ms).end, WaitEnd::kFailed);
  EXPECT_EQ(Wait(none, 0ms).code, RC_OPERATION_FAILED);
  EXPECT_EQ(WaitForAny({}, 0ms).end, WaitEnd::kFailed);
  EXPECT_EQ(WaitForAny({}, 0ms).code, RC_WAIT_ERROR);
}

TEST_F(Waits, SayWhichOfSeveralWasSignalled) {
  second_.SetEvent();
  WaitResult const result = WaitForAny(both_, 0ms);
  EXPECT_TRUE(result);
  EXPECT_EQ(result.index, 1u);
}

TEST_F(Waits, WaitForAllAtOnce) {
  first_.SetEvent();
  EXPECT_EQ(WaitForAll(both_, 0ms).end, WaitEnd::kTimedOut);
  second_.SetEvent();
  EXPECT_TRUE(WaitForAll(both_, 0ms));
}

TEST_F(Waits, LastForAsLongAsItTakes) {
  for (std::chrono::milliseconds const limit :
       {kForever, std::chrono::milliseconds(1h * 24 * 365)}) {
    std::thread driver([this] { first_.SetEvent(); });
    EXPECT_TRUE(Wait(first_, limit));
    driver.join();
  }
}

TEST(WaitResults, NameTheSuitesCodes) {
  EXPECT_EQ(wait_detail::ResultOf(RC_WAIT_ABANDONED).end, WaitEnd::kAbandoned);
  EXPECT_EQ(wait_detail::ResultOf(RC_WAIT_ERROR).end, WaitEnd::kFailed);
}

TEST(TimeLimits, FitTheSystemsOwn) {
  EXPECT_EQ(wait_detail::Timeout(0ms), 0u);
  EXPECT_EQ(wait_detail::Timeout(5s), 5000u);
  EXPECT_EQ(wait_detail::Timeout(std::chrono::milliseconds(0xFFFFFFFF)), 0xFFFFFFFEu);
  EXPECT_EQ(wait_detail::Timeout(kForever), 0xFFFFFFFFu);
}

}  // namespace
}  // namespace usb_support
