#include <standalone_suite/suite_runtime/utf8.h>

#include <gtest/gtest.h>

namespace usb_support::standalone {
namespace {

TEST(Utf8Length, IsThatOfTheFirstCharacter) {
  static_assert(Utf8Length("\xE0\xA0\x80") == 3);
  EXPECT_EQ(Utf8Length(""), 0u);
  EXPECT_EQ(Utf8Length("ab"), 1u);
  EXPECT_EQ(Utf8Length("\x7F"), 1u);
  EXPECT_EQ(Utf8Length("\xC2\x80"), 2u);
  EXPECT_EQ(Utf8Length("\xDF\xBF\xDF\xBF"), 2u);
  EXPECT_EQ(Utf8Length("\xE0\xA0\x80"), 3u);
  EXPECT_EQ(Utf8Length("\xED\x9F\xBF"), 3u);
  EXPECT_EQ(Utf8Length("\xEF\xBF\xBF"), 3u);
  EXPECT_EQ(Utf8Length("\xF0\x90\x80\x80"), 4u);
  EXPECT_EQ(Utf8Length("\xF4\x8F\xBF\xBF"), 4u);
}

TEST(Utf8Length, CountsWhatIsCutOff) {
  EXPECT_EQ(Utf8Length("\xC2"), 2u);
  EXPECT_EQ(Utf8Length("\xE2\x82"), 3u);
  EXPECT_EQ(Utf8Length("\xF0\x9F"), 4u);
}

TEST(Utf8Length, IsZeroForWhatIsNotWellFormed) {
  EXPECT_EQ(Utf8Length("\x80"), 0u);
  EXPECT_EQ(Utf8Length("\xBF\xBF"), 0u);
  EXPECT_EQ(Utf8Length("\xC0\x80"), 0u) << "overlong";
  EXPECT_EQ(Utf8Length("\xC1\xBF"), 0u) << "overlong";
  EXPECT_EQ(Utf8Length("\xE0\x9F\xBF"), 0u) << "overlong";
  EXPECT_EQ(Utf8Length("\xED\xA0\x80"), 0u) << "surrogate";
  EXPECT_EQ(Utf8Length("\xF0\x8F\xBF\xBF"), 0u) << "overlong";
  EXPECT_EQ(Utf8Length("\xF4\x90\x80\x80"), 0u) << "beyond U+10FFFF";
  EXPECT_EQ(Utf8Length("\xF5\x80\x80\x80"), 0u);
  EXPECT_EQ(Utf8Length("\xFF"), 0u);
  EXPECT_EQ(Utf8Length("\xC3z"), 0u);
  EXPECT_EQ(Utf8Length("\xE2\x82z"), 0u);
  EXPECT_EQ(Utf8Length("\xF0\x90\x80\xC0"), 0u);
}

}  // namespace
}  // namespace usb_support::standalone
