// The stand-in's texts, looks and exceptions.
#include <exception>
#include <stdexcept>
#include <string>

#include <gtest/gtest.h>

#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/exceptions.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/suite_interfaces/safe_string.h>

namespace {

TEST(SafeString, CopiesTheText) {
  std::string source = "a text that is too long to be kept inside the string object itself";
  CSafeString const text(source.c_str());
  std::string const before = source;
  source.assign(source.size(), 'x');
  EXPECT_EQ(text.get(), before);
  EXPECT_STREQ(text.c_str(), before.c_str());
  EXPECT_STREQ(CSafeString(basic_sv_wrapper<char>("12345", 3)).c_str(), "123");
  std::string const withZero("a\0b", 3);
  EXPECT_EQ(CSafeString(basic_sv_wrapper<char>(withZero)).get(), withZero);
}

TEST(SafeString, IsEmptyForNothing) {
  EXPECT_EQ(CSafeString().get(), "");
  EXPECT_STREQ(CSafeString(static_cast<char const*>(nullptr)).c_str(), "");
  EXPECT_STREQ(CSafeString(basic_sv_wrapper<char>()).c_str(), "");
}

TEST(FormatInfo, ErrorFormatIsALookOfItsOwn) {
  EXPECT_TRUE(DefaultErrorFormat() == DefaultErrorFormat());
  EXPECT_EQ(DefaultErrorFormat().Strength(), TEXT_STRENGTH_BOLD);
  for (TEST_STATUS const status :
       {TEST_STATUS_PLAIN, TEST_STATUS_VENDOR_LIST, TEST_STATUS_INFORMATION,
        TEST_STATUS_INTERNAL_ERROR, TEST_STATUS_FAILURE}) {
    EXPECT_FALSE(DefaultErrorFormat() == CAppState::Log().GetDefaultFormat(status)) << status;
  }
}

template <typename Caught>
std::string CaughtAs(std::string const& message) {
  try {
    throw TQRunTimeException(message, TEST_STATUS_INTERNAL_ERROR);
  } catch (Caught const& caught) {
    return caught.what();
  }
}

TEST(Exceptions, AreCaughtAsEachOfTheirBases) {
  for (std::string const& message :
       {std::string("a fault"), std::string("100%s of %n"), std::string(100'000, 'x')}) {
    EXPECT_EQ(CaughtAs<TQRunTimeException>(message), message);
    EXPECT_EQ(CaughtAs<TQException>(message), message);
    EXPECT_EQ(CaughtAs<std::runtime_error>(message), message);
    EXPECT_EQ(CaughtAs<std::exception>(message), message);
  }
}

TEST(Exceptions, CarryMessageAndStatus) {
  EXPECT_STREQ(TQException(basic_sv_wrapper<char>("a fault and more", 7), {}).what(), "a fault");
  EXPECT_STREQ(TQRunTimeException(basic_sv_wrapper<char>(), TEST_STATUS_PLAIN).what(), "");
  EXPECT_EQ(TQException("", static_cast<TEST_STATUS>(0xFFFFFFFF)).Status(),
            static_cast<TEST_STATUS>(0xFFFFFFFF));
  TQRunTimeException original("a fault", TEST_STATUS_FAILURE);
  TQRunTimeException const copy(original);
  original = TQRunTimeException("a later fault", TEST_STATUS_PLAIN);
  EXPECT_STREQ(copy.what(), "a fault");
  EXPECT_EQ(copy.Status(), TEST_STATUS_FAILURE);
  TQException assigned("another", TEST_STATUS_PLAIN);
  assigned = copy;
  EXPECT_STREQ(assigned.what(), "a fault");
  EXPECT_EQ(assigned.Status(), TEST_STATUS_FAILURE);
}

}  // namespace
