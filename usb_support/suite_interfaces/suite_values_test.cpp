// The numbers that the suite's other modules were compiled with.
#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <usb_support/suite_interfaces/app_settings.h>
#include <usb_support/suite_interfaces/exceptions.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/suite_interfaces/log_level.h>
#include <usb_support/suite_interfaces/safe_string.h>
#include <usb_support/suite_interfaces/sv_wrapper.h>
#include <usb_support/suite_interfaces/test_status.h>

namespace usb_support {
namespace {

template <typename Value>
std::uint32_t NumberOf(Value value) {
  return static_cast<std::uint32_t>(value);
}

TEST(SuiteValues, Statuses) {
  EXPECT_EQ(NumberOf(TEST_STATUS_PLAIN), 0u);
  EXPECT_EQ(NumberOf(TEST_STATUS_VENDOR_LIST), 0x08000000u);
  EXPECT_EQ(NumberOf(TEST_STATUS_INFORMATION), 0x20000000u);
  EXPECT_EQ(NumberOf(TEST_STATUS_INTERNAL_ERROR), 0x40000000u);
  EXPECT_EQ(NumberOf(TEST_STATUS_FAILURE), 0x80000000u);
}

TEST(SuiteValues, OtherNumbers) {
  ELogLevel const levels[] = {LOG_LEVEL_0, LOG_LEVEL_1, LOG_LEVEL_2, LOG_LEVEL_3,
                              LOG_LEVEL_4, LOG_LEVEL_5, LOG_LEVEL_6};
  for (std::uint32_t level = 0; level < 7; ++level) {
    EXPECT_EQ(NumberOf(levels[level]), level);
  }
  EXPECT_EQ(NumberOf(TEXT_STRENGTH_NORMAL), 400u);
  EXPECT_EQ(NumberOf(TEXT_STRENGTH_BOLD), 700u);
  EXPECT_EQ(NumberOf(SCOPE_DEFAULT), 0u);
}

TEST(SuiteValues, LogTypeIsTheStatus) {
  for (std::uint32_t const status : {0x00000000u, 0x08000000u, 0x80000001u, 0xFFFFFFFFu}) {
    EXPECT_EQ(NumberOf(LogTypeOf(static_cast<TEST_STATUS>(status))), status);
  }
}

TEST(SuiteValues, DefaultMessageOfARunTimeException) {
  EXPECT_STREQ(TQRunTimeException::RUN_TIME_EXCEPTION_DEFAULT_MSG, "Run-time exception.");
}

TEST(SuiteValues, TextsAreEqualWithTheSameText) {
  EXPECT_TRUE(CSafeString("usbif.json") == CSafeString("usbif.json"));
  EXPECT_FALSE(CSafeString("usbif.json") == CSafeString("usbif.jso"));
  EXPECT_FALSE(CSafeString("usbif.json") == CSafeString("USBIF.json"));
  EXPECT_TRUE(CSafeString() == CSafeString(""));
}

TEST(SuiteValues, LooksAreEqualWithTheSameColourAndStrength) {
  CFormatInfo const format({1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  EXPECT_TRUE(format == CFormatInfo({1, 2, 3, 4}, TEXT_STRENGTH_BOLD));
  EXPECT_FALSE(format == CFormatInfo({1, 2, 3, 4}, TEXT_STRENGTH_NORMAL));
  for (TQColor const& colour :
       {TQColor{0, 2, 3, 4}, TQColor{1, 0, 3, 4}, TQColor{1, 2, 0, 4}, TQColor{1, 2, 3, 0}}) {
    EXPECT_FALSE(format == CFormatInfo(colour, TEXT_STRENGTH_BOLD));
  }
}

TEST(SuiteTextView, OfANullPointerHasNoValue) {
  char const* const null = nullptr;
  for (basic_sv_wrapper<char> const& none :
       {basic_sv_wrapper<char>(), basic_sv_wrapper<char>(null), basic_sv_wrapper<char>(null, 0)}) {
    EXPECT_EQ(none.data(), nullptr);
    EXPECT_EQ(none.size(), 0u);
    EXPECT_TRUE(none.empty());
    EXPECT_FALSE(none.has_value());
    EXPECT_TRUE(none.view().empty());
  }
}

TEST(SuiteTextView, OfATextHasAValue) {
  EXPECT_TRUE(basic_sv_wrapper<char>("").has_value());
  EXPECT_TRUE(basic_sv_wrapper<char>("").empty());
  EXPECT_TRUE(basic_sv_wrapper<char>(std::string_view()).has_value());
  EXPECT_TRUE(basic_sv_wrapper<char>(std::string()).has_value());
  basic_sv_wrapper<char> const text("a\0b", 3);
  EXPECT_FALSE(text.empty());
  EXPECT_EQ(text.size(), 3u);
  EXPECT_EQ(text.view(), std::string_view("a\0b", 3));
}

}  // namespace
}  // namespace usb_support
