#include <usb_support/suite_interfaces/safe_string.h>

#include <string>

#include <gmock/gmock.h>

namespace {

TEST(SafeString, IsEmptyByDefault) {
  CSafeString const text;
  EXPECT_STREQ(text.c_str(), "");
  EXPECT_EQ(text.get(), "");
}

TEST(SafeString, ReadsANullPointerAsTheEmptyText) {
  EXPECT_STREQ(CSafeString(static_cast<char const*>(nullptr)).c_str(), "");
}

TEST(SafeString, ReadsAViewThatIsNotSetAsTheEmptyText) {
  EXPECT_STREQ(CSafeString(basic_sv_wrapper<char>()).c_str(), "");
}

TEST(SafeString, CopiesTheText) {
  std::string source = "a text that is too long to be kept inside the string object itself";
  CSafeString const text(source.c_str());
  std::string const before = source;
  source.assign(source.size(), 'x');
  EXPECT_EQ(text.get(), before);
  EXPECT_STREQ(text.c_str(), before.c_str());
}

TEST(SafeString, TerminatesAViewThatIsNot) {
  std::string const source = "12345";
  EXPECT_STREQ(CSafeString(basic_sv_wrapper<char>(source.data(), 3)).c_str(), "123");
}

TEST(SafeString, KeepsEveryByteOfAView) {
  std::string const source("a\0b", 3);
  EXPECT_EQ(CSafeString(basic_sv_wrapper<char>(source)).get(), source);
}

TEST(SafeString, ComparesAndAssigns) {
  CSafeString text("one");
  EXPECT_TRUE(text == CSafeString("one"));
  EXPECT_FALSE(text == CSafeString("two"));
  CSafeString const other("two");
  text = other;
  EXPECT_TRUE(text == other);
  EXPECT_TRUE(CSafeString("") == CSafeString());
}

}  // namespace
