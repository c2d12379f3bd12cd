#include <usb_support/log/check.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/suite_test.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Flush;
using testing_support::Line;

constexpr Rule kTotalLength{{{"USB 2.0", "9", "6", "3"}}, "wTotalLength is 100% wrong: %s"};

class CheckTest : public testing_support::SuiteTest {
 protected:
  static standalone::RecordedCall Assertion(TEST_STATUS status) {
    return Line(status, CAppState::Log().GetDefaultLogVerbosity(status),
                "(USB 2.0: 9.6.3) wTotalLength is 100% wrong: %s");
  }
};

TEST_F(CheckTest, IsSilentForARuleThatIsKept) {
  EXPECT_TRUE(Check(kTotalLength, true));
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(CheckTest, LogsABrokenRuleAsAnAssertion) {
  EXPECT_FALSE(Check(kTotalLength, false));
  EXPECT_THAT(TakeCalls(), ElementsAre(Assertion(TEST_STATUS_FAILURE), Flush(false)));
}

TEST_F(CheckTest, LogsWithTheStatusThatTheTestGives) {
  EXPECT_FALSE(Check(kTotalLength, false, TEST_STATUS_INTERNAL_ERROR));
  EXPECT_THAT(TakeCalls(), ElementsAre(Assertion(TEST_STATUS_INTERNAL_ERROR), Flush(false)));
}

}  // namespace
}  // namespace usb_support
