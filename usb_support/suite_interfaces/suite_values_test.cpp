// The numbers that the suite's other modules were compiled with.
#include <cstdint>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <usb_support/suite_interfaces/app_settings.h>
#include <usb_support/suite_interfaces/exceptions.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/suite_interfaces/log_level.h>
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

TEST(SuiteValues, LogLevels) {
  EXPECT_EQ(NumberOf(LOG_LEVEL_0), 0u);
  EXPECT_EQ(NumberOf(LOG_LEVEL_1), 1u);
  EXPECT_EQ(NumberOf(LOG_LEVEL_2), 2u);
  EXPECT_EQ(NumberOf(LOG_LEVEL_3), 3u);
  EXPECT_EQ(NumberOf(LOG_LEVEL_4), 4u);
  EXPECT_EQ(NumberOf(LOG_LEVEL_5), 5u);
  EXPECT_EQ(NumberOf(LOG_LEVEL_6), 6u);
}

TEST(SuiteValues, LogTypeIsTheStatus) {
  for (std::uint32_t const status : {0x00000000u, 0x08000000u, 0x80000001u, 0xFFFFFFFFu}) {
    EXPECT_EQ(NumberOf(LogTypeOf(static_cast<TEST_STATUS>(status))), status);
  }
}

TEST(SuiteValues, TextStrengths) {
  EXPECT_EQ(NumberOf(TEXT_STRENGTH_NORMAL), 400u);
  EXPECT_EQ(NumberOf(TEXT_STRENGTH_BOLD), 700u);
}

TEST(SuiteValues, Scope) {
  EXPECT_EQ(NumberOf(SCOPE_DEFAULT), 0u);
}

TEST(SuiteValues, DefaultMessageOfARunTimeException) {
  EXPECT_STREQ(TQRunTimeException::RUN_TIME_EXCEPTION_DEFAULT_MSG, "Run-time exception.");
}

TEST(SuiteTextView, OfNothingHasNoValue) {
  constexpr basic_sv_wrapper<char> none;
  EXPECT_EQ(none.data(), nullptr);
  EXPECT_EQ(none.size(), 0u);
  EXPECT_TRUE(none.empty());
  EXPECT_FALSE(none.has_value());
  EXPECT_TRUE(none.view().empty());
}

TEST(SuiteTextView, OfANullPointerHasNoValue) {
  char const* const null = nullptr;
  basic_sv_wrapper<char> const text(null);
  EXPECT_EQ(text.data(), nullptr);
  EXPECT_EQ(text.size(), 0u);
  EXPECT_FALSE(text.has_value());
  EXPECT_FALSE(basic_sv_wrapper<char>(null, 0).has_value());
}

TEST(SuiteTextView, OfAnEmptyTextHasAValue) {
  basic_sv_wrapper<char> const text("");
  EXPECT_TRUE(text.empty());
  EXPECT_TRUE(text.has_value());
  EXPECT_TRUE(basic_sv_wrapper<char>(std::string_view()).has_value());
  EXPECT_TRUE(basic_sv_wrapper<char>(std::string()).has_value());
}

TEST(SuiteTextView, OfOneCharacter) {
  basic_sv_wrapper<char> const text("a");
  EXPECT_EQ(text.size(), 1u);
  EXPECT_FALSE(text.empty());
  EXPECT_TRUE(text.has_value());
  EXPECT_EQ(text.view(), "a");
}

TEST(SuiteTextView, HoldsZerosInsideItsLength) {
  basic_sv_wrapper<char> const text("a\0b", 3);
  EXPECT_EQ(text.size(), 3u);
  EXPECT_EQ(text.view(), std::string_view("a\0b", 3));
}

}  // namespace
}  // namespace usb_support
