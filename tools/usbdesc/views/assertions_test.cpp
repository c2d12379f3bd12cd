#include <tools/usbdesc/views/assertions.h>

#include <tests/support/suite_test.h>
#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using testing::ElementsAre;
using testing_support::Joined;
using testing_support::Line;
using testing_support::RecordedCall;

Bytes const kDevice = {0x12, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x40, 0x09,
                       0x12, 0x10, 0x00, 0x00, 0x01, 0x00, 0x00, 0x00, 0x01};
Bytes const kConfiguration = {9, 2, 18, 0, 1, 1, 0, 0x80, 50, 9, 4, 0, 0, 0, 0xFF, 0, 0, 0};
Bytes const kBos = {5, 0x0F, 8, 0, 1, 3, 0x10, 0x0B};

class Assertions : public testing_support::SuiteTest {
 protected:
  AssertionCount Assert(Bytes const& run) {
    Input const input = InputOf(run, "100%% %s");
    TakeCalls();
    AssertionCount const count = AssertDevice(Show(input).devices.front());
    lines_.clear();
    for (RecordedCall const& call : TakeCalls()) {
      if (call.operation != testing_support::LogOperation::kFlushOutput) {
        lines_.push_back(call);
      }
    }
    return count;
  }

  std::vector<RecordedCall> const& Lines() const { return lines_; }

 private:
  std::vector<RecordedCall> lines_;
};

TEST_F(Assertions, CountTheChecksOfEverySet) {
  EXPECT_EQ(Summarise(Assert({})), "// nothing to check");
  EXPECT_EQ(Summarise(Assert(kDevice)), "// nothing to check")
      << "it says nothing about what was not captured";
  EXPECT_EQ(Summarise(Assert(kConfiguration)), "// 13 checks, 0 failed");
  EXPECT_EQ(Summarise(Assert(kBos)), "// 8 checks, 0 failed");
  EXPECT_EQ(Summarise(Assert(Joined({kDevice, kConfiguration, kBos}))), "// 22 checks, 0 failed");
  Bytes otherSpeed = kConfiguration;
  otherSpeed[1] = 7;
  EXPECT_EQ(Summarise(Assert(Joined({kConfiguration, otherSpeed}))), "// 26 checks, 0 failed");
  EXPECT_THAT(Lines(), testing::IsEmpty());
}

TEST_F(Assertions, LogABrokenRuleAsAFailureWithItsPlaces) {
  Bytes configuration = kConfiguration;
  configuration[4] = 3;
  configuration[13] = 2;
  EXPECT_EQ(Summarise(Assert(configuration)), "// 13 checks, 2 failed");
  EXPECT_THAT(
      Lines(),
      ElementsAre(
          Line(TEST_STATUS_FAILURE, 1,
               "(USB 3.2: 9.6.3) bNumInterfaces is not the number of interfaces."),
          Line(TEST_STATUS_PLAIN, 1, "//   100%% %s, configuration 1: announced 3, found 1"),
          Line(TEST_STATUS_FAILURE, 1,
               "(USB 3.2: 9.6.5) bNumEndpoints is not the number of endpoints."),
          Line(TEST_STATUS_PLAIN, 1,
               "//   100%% %s, configuration 1: interface 0, alternate setting 0: announced 2, "
               "found 0")));
}

TEST_F(Assertions, LeaveOutTheContentWhereTheLengthsAreWrong) {
  Bytes configuration = kConfiguration;
  configuration[2] = 20;
  configuration[4] = 3;
  EXPECT_EQ(Summarise(Assert(Joined({kDevice, configuration, kConfiguration, kBos}))),
            "// 24 checks, 1 failed, 11 left out")
      << "3 and 13 checks of configurations and 8 of the BOS; left out are 10 of the first "
         "configuration and the one of the device";
  EXPECT_THAT(Lines(), ElementsAre(Line(TEST_STATUS_FAILURE, 1,
                                        "(USB 3.2: 9.6.3) wTotalLength is not the length of the "
                                        "configuration."),
                                   Line(TEST_STATUS_PLAIN, 1,
                                        "//   100%% %s, configuration 1: announced 20, found 18")));
}

TEST_F(Assertions, ReportEveryWrongLength) {
  EXPECT_EQ(Summarise(Assert({5, 0x0F, 9, 0, 1, 9, 0x10, 0x0B})),
            "// 3 checks, 2 failed, 5 left out");
}

TEST_F(Assertions, ReportWhereAPlaceIsInTheFileAndInItsSet) {
  Assert(Joined({kDevice, {9, 2, 11, 0, 0, 1, 0, 0x80, 50, 0, 0}}));
  ASSERT_EQ(Lines().size(), 2u);
  EXPECT_EQ(Lines()[1].text,
            "//   100%% %s, configuration 1: offset 1Bh (9h in the configuration): zero length, 2 "
            "bytes left");
  Assert(Joined({kDevice, kConfiguration, {5, 0x0F, 9, 0, 1, 3, 0x10, 0x0B, 9}}));
  ASSERT_GE(Lines().size(), 2u);
  EXPECT_EQ(Lines()[1].text,
            "//   100%% %s, BOS: offset 2Ch (8h in the BOS): header cut short, 1 byte left");
}

TEST_F(Assertions, NameTheOtherSpeed) {
  Bytes otherSpeed = kConfiguration;
  otherSpeed[1] = 7;
  otherSpeed[4] = 0;
  Assert(otherSpeed);
  ASSERT_EQ(Lines().size(), 2u);
  EXPECT_EQ(Lines()[1].text, "//   100%% %s, other-speed configuration 1: announced 0, found 1");
}

}  // namespace
}  // namespace usb_support::usbdesc
