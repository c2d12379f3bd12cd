#include <usb_rules/assert_rules.h>

#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/suite_test.h>
#include <usb_rules/test_support/sample.h>
#include <usb_support/usb_support.h>

namespace usb_rules::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using usb_support::RangeOver;

// The answers of a keyboard, one of them changed, as a test program has them.
class AssertRulesTest : public usb_support::testing_support::SuiteTest {
 protected:
  static Bytes Answer(char const* kind, char const* change = "") {
    Sample sample = SampleOf("keyboard-low");
    sample.Change(change);
    for (Part const& part : sample.Parts()) {
      if (part.kind == kind) {
        return part.bytes;
      }
    }
    return {};
  }

  std::vector<std::string> TakeLines() {
    std::vector<std::string> lines;
    for (auto const& call : TakeCalls()) {
      if (!call.text.empty()) {
        lines.push_back(call.text);
      }
    }
    return lines;
  }
};

constexpr AssertOptions kLowSpeed = {.speed = Speed::kLow};

TEST_F(AssertRulesTest, LogsNothingAboutGoodDescriptors) {
  Bytes const device = Answer("device");
  Bytes const configuration = Answer("configuration");
  RuleCounts const counts = AssertRules({RangeOver(device), RangeOver(configuration)}, kLowSpeed);
  EXPECT_TRUE(counts.IsGood());
  EXPECT_GT(counts.passed, 50u);
  EXPECT_GT(counts.notRun, 0u);  // strings and the report descriptor were not read
  EXPECT_THAT(TakeLines(), IsEmpty());
}

TEST_F(AssertRulesTest, LogsABrokenRuleWithItsSectionAndPlace) {
  CConfigDescriptorSet set;
  Bytes const bytes = Answer("configuration", "set usb2.configuration bmAttributes = 20");
  set.SetDescriptor(bytes.data(), static_cast<unsigned short>(bytes.size()));
  RuleCounts const counts = AssertRules({set}, kLowSpeed);
  EXPECT_EQ(counts.failed, 1u);
  EXPECT_FALSE(counts.IsGood());
  EXPECT_THAT(TakeLines(),
              ElementsAre("(USB 2.0: 9.6.3) Bit 7 of bmAttributes of a configuration is one. "
                          "configuration[0]+0, Configuration: bmAttributes[7] is 0, expected 1 "
                          "[usb2.config.attributes-bit7]"));
}

TEST_F(AssertRulesTest, CitesTheReleaseThatTheDeviceClaims) {
  Bytes run = Answer("device", "set usb2.device bcdUSB = 320; set usb2.device bMaxPacketSize0 = 9");
  Bytes const configuration = Answer("configuration", "set usb2.configuration bmAttributes = 20");
  run.insert(run.end(), configuration.begin(), configuration.end());
  AssertRules({RangeOver(run)}, {.speed = Speed::kSuper, .rules = "usb2.config.attributes-bit7"});
  EXPECT_THAT(TakeLines(), ElementsAre(testing::StartsWith("(USB 3.2: 9.6.3) Bit 7")));
}

TEST_F(AssertRulesTest, JudgesTheRulesThatATestNames) {
  Bytes const device = Answer("device", "set usb2.device bMaxPacketSize0 = 7");
  EXPECT_EQ(
      AssertRules({RangeOver(device)}, {.speed = Speed::kLow, .rules = "usb2.config."}).failed, 0u);
  EXPECT_EQ(
      AssertRules({RangeOver(device)}, {.speed = Speed::kLow, .rules = "usb2.device."}).failed, 3u);
}

TEST_F(AssertRulesTest, LeavesRecommendationsOutUnlessTheyAreAskedFor) {
  Bytes const device = Answer("device", "set usb2.device idVendor = 0");
  EXPECT_EQ(AssertRules({RangeOver(device)}, kLowSpeed).failed, 0u);
  EXPECT_EQ(
      AssertRules({RangeOver(device)}, {.speed = Speed::kLow, .level = Level::kShould}).failed, 1u);
}

TEST_F(AssertRulesTest, IsNotGoodWithoutAnythingToJudge) {
  EXPECT_FALSE(AssertRules({}).IsGood());
  Bytes const endpoint = BytesOf("07 05 81 03 08 00 0A");
  EXPECT_FALSE(AssertRules({RangeOver(endpoint), CDescriptorRange()}).IsGood());
}

// Cut and broken in every place: no read is outside the bytes, and the walk ends.
TEST_F(AssertRulesTest, TakesAnyBytes) {
  Bytes run = Answer("device");
  Bytes const configuration = Answer("configuration");
  run.insert(run.end(), configuration.begin(), configuration.end());
  for (std::size_t length = 0; length < run.size(); ++length) {
    Bytes cut(run.begin(), run.begin() + static_cast<std::ptrdiff_t>(length));
    AssertRules({RangeOver(cut)});
    if (length != 0) {
      cut.back() = 0;
      AssertRules({RangeOver(cut)});
    }
  }
}

}  // namespace
}  // namespace usb_rules::test
