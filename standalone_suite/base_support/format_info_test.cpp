#include <usb_support/suite_interfaces/format_info.h>

#include <gmock/gmock.h>

#include <usb_support/suite_interfaces/app_state.h>

namespace {

TEST(FormatInfo, ErrorFormatIsTheSameEachTime) {
  EXPECT_TRUE(DefaultErrorFormat() == DefaultErrorFormat());
}

TEST(FormatInfo, ErrorFormatIsBold) {
  EXPECT_EQ(DefaultErrorFormat().Strength(), TEXT_STRENGTH_BOLD);
}

TEST(FormatInfo, ErrorFormatDiffersFromEveryDefaultLook) {
  for (TEST_STATUS const status :
       {TEST_STATUS_PLAIN, TEST_STATUS_VENDOR_LIST, TEST_STATUS_INFORMATION,
        TEST_STATUS_INTERNAL_ERROR, TEST_STATUS_FAILURE}) {
    EXPECT_FALSE(DefaultErrorFormat() == CAppState::Log().GetDefaultFormat(status)) << status;
  }
}

TEST(FormatInfo, EqualsOnlyWithTheSameColourAndStrength) {
  CFormatInfo const format({1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  EXPECT_TRUE(format == CFormatInfo({1, 2, 3, 4}, TEXT_STRENGTH_BOLD));
  EXPECT_FALSE(format == CFormatInfo({1, 2, 3, 4}, TEXT_STRENGTH_NORMAL));
  EXPECT_FALSE(format == CFormatInfo({0, 2, 3, 4}, TEXT_STRENGTH_BOLD));
  EXPECT_FALSE(format == CFormatInfo({1, 0, 3, 4}, TEXT_STRENGTH_BOLD));
  EXPECT_FALSE(format == CFormatInfo({1, 2, 0, 4}, TEXT_STRENGTH_BOLD));
  EXPECT_FALSE(format == CFormatInfo({1, 2, 3, 0}, TEXT_STRENGTH_BOLD));
}

}  // namespace
