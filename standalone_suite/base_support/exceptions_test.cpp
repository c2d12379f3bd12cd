#include <usb_support/suite_interfaces/exceptions.h>

#include <string>
#include <utility>

#include <gmock/gmock.h>

namespace {

template <typename Caught>
std::string CaughtAs(std::string const& message) {
  try {
    throw TQRunTimeException(message, TEST_STATUS_INTERNAL_ERROR);
  } catch (Caught const& caught) {
    return caught.what();
  }
}

TEST(Exceptions, RunTimeExceptionIsCaughtAsEachOfItsBases) {
  EXPECT_EQ(CaughtAs<TQRunTimeException>("a fault"), "a fault");
  EXPECT_EQ(CaughtAs<TQException>("a fault"), "a fault");
  EXPECT_EQ(CaughtAs<std::runtime_error>("a fault"), "a fault");
  EXPECT_EQ(CaughtAs<std::exception>("a fault"), "a fault");
}

TEST(Exceptions, KeepsTheStatusWhateverItIs) {
  EXPECT_EQ(TQRunTimeException("", TEST_STATUS_INTERNAL_ERROR).Status(),
            TEST_STATUS_INTERNAL_ERROR);
  EXPECT_EQ(TQException("", static_cast<TEST_STATUS>(0xFFFFFFFF)).Status(),
            static_cast<TEST_STATUS>(0xFFFFFFFF));
}

TEST(Exceptions, KeepsAMessageOfAnyLength) {
  std::string const longMessage(100'000, 'x');
  EXPECT_EQ(CaughtAs<TQRunTimeException>(longMessage), longMessage);
}

TEST(Exceptions, KeepsAConversionInTheMessageAsItIs) {
  EXPECT_EQ(CaughtAs<TQRunTimeException>("100%s of %n"), "100%s of %n");
}

TEST(Exceptions, TakesAViewThatIsNotTerminated) {
  std::string const text = "a fault and more";
  EXPECT_STREQ(TQException(basic_sv_wrapper<char>(text.data(), 7), TEST_STATUS_PLAIN).what(),
               "a fault");
}

TEST(Exceptions, KeepsAnEmptyMessageEmpty) {
  EXPECT_STREQ(TQRunTimeException("", TEST_STATUS_PLAIN).what(), "");
  EXPECT_STREQ(TQRunTimeException(basic_sv_wrapper<char>(), TEST_STATUS_PLAIN).what(), "");
}

TEST(Exceptions, HasATextThatStandsInForAnEmptyMessage) {
  EXPECT_STRNE(TQRunTimeException::RUN_TIME_EXCEPTION_DEFAULT_MSG, "");
}

TEST(Exceptions, CopiesCarryMessageAndStatus) {
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
