#include <usb_support/log/log_assert.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/suite_test.h>
#include <usb_support/helper/usb_helper.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing_support::Flush;
using testing_support::Line;

constexpr auto kFailure = static_cast<TEST_STATUS>(0x80000000);
constexpr auto kPlain = static_cast<TEST_STATUS>(0);

// A number of 1 to 10 parts for each way to show one.
constexpr TQAssertionNumbers kNumbers[] = {
    {{"A"}},
    {{"A", "1"}},
    {{"A", "1", "2"}},
    {{"A", "1", "2", "3"}},
    {{"A", "1", "2", "3", "4"}},
    {{"A", "1", "2", "3", "4", "5"}},
    {{"A", "1", "2", "3", "4", "5", "6"}},
    {{"A", "1", "2", "3", "4", "5", "6", "7"}},
    {{"A", "1", "2", "3", "4", "5", "6", "7", "8"}},
    {{"A", "1", "2", "3", "4", "5", "6", "7", "8", "9"}},
};

constexpr char const* kMessages[] = {"m0", "m1", "m2", "m3", "m4", "m5", "m6", "m7", "m8", "m9"};

constexpr char const* kLines[] = {
    "(A) m0",
    "(A: 1) m1",
    "(A: 1.2) m2",
    "(A: 1.2.3) m3",
    "(A: 1.2.3.4) m4",
    "(A: 1.2.3.4.5) m5",
    "(A: 1.2.3.4.5.6) m6",
    "(A: 1.2.3.4.5.6.7) m7",
    "(A: 1.2.3.4.5.6.7.8) m8",
    "(A: 1.2.3.4.5.6.7.8.9) m9",
};

class LogAssertTest : public testing_support::SuiteTest {
 protected:
  /// Expects one assertion to have given one line and a flush.
  void ExpectLine(TEST_STATUS status, unsigned level, std::string const& text) {
    EXPECT_THAT(TakeCalls(), ElementsAre(Line(status, level, text), Flush(false)));
  }
};

TEST_F(LogAssertTest, ShowsEveryNumberOfParts) {
  for (unsigned index = 0; index < 10; ++index) {
    LogAssert(kFailure, index, kNumbers, kMessages);
    ExpectLine(kFailure, 1, kLines[index]);
  }
}

TEST_F(LogAssertTest, WritesTextsAsTheyAre) {
  std::string const longText(100000, 'x');
  struct Row {
    TQAssertionNumbers numbers;
    std::string message;
    std::string line;
  };
  for (Row const& row : {Row{{{"TD", "9", "4", "1"}},
                             "bLength is 8, should be 9.",
                             "(TD: 9.4.1) bLength is 8, should be 9."},
                         Row{{{""}}, "", "() "}, Row{{{"A", ""}}, "", "(A: ) "},
                         Row{{{"A", "1", "", "3", ""}}, "m", "(A: 1..3.) m"},
                         Row{{{"%s"}}, "%s%s%s%n %d 100%", "(%s) %s%s%s%n %d 100%"},
                         Row{{{"100%", "%%", "%s", "%x", "%*d", "%5$s", "%ls", "%p", "%n", "%"}},
                             "%%",
                             "(100%: %%.%s.%x.%*d.%5$s.%ls.%p.%n.%) %%"},
                         Row{{{"A"}}, "first\n\tsecond\n", "(A) first\n\tsecond\n"},
                         Row{{{"A", "1"}}, longText, "(A: 1) " + longText}}) {
    TQAssertionNumbers const numbers[] = {{{"no"}}, row.numbers, {{"no"}}};
    char const* const messages[] = {"no", row.message.c_str(), "no"};
    LogAssert(kFailure, 1, numbers, messages);
    ExpectLine(kFailure, 1, row.line);
  }
}

// The last part that is given decides, not the first that is missing; how a missing part between
// them is shown is the C library's.
TEST_F(LogAssertTest, ShowsPartsAfterAMissingOne) {
  TQAssertionNumbers const numbers[] = {
      {{"A", "1", nullptr, "3"}},
      {{"A", nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, nullptr, "9"}},
  };
  char const* const messages[] = {"m0", "m1"};
  LogAssert(kFailure, 0, numbers, messages);
  EXPECT_THAT(TakeCalls().at(0).text,
              testing::AllOf(testing::StartsWith("(A: 1."), testing::EndsWith(".3) m0")));
  LogAssert(kFailure, 1, numbers, messages);
  EXPECT_THAT(TakeCalls().at(0).text,
              testing::AllOf(testing::StartsWith("(A: "), testing::EndsWith(".9) m1")));
}

// The status of the line and, as the suite has it for that status, its level.
struct ShownStatus {
  std::uint32_t bits;  ///< of the caller's status
  std::uint32_t line;
  unsigned level;
};

constexpr ShownStatus kShownStatuses[] = {
    {0x00000000, 0x80000000, 1}, {0x08000000, 0x08000000, 2}, {0x40000000, 0x40000000, 0},
    {0x48000000, 0x48000000, 0}, {0x80000000, 0x80000000, 1}, {0x88000000, 0x88000000, 1},
    {0xC0000000, 0xC0000000, 0}, {0xC8000000, 0xC8000000, 0},
};

TEST_F(LogAssertTest, KeepsOnlyTheSeverityOfTheStatus) {
  std::vector<std::uint32_t> others = {0, 0x37FFFFFF, 0x20000001, 0x12345678};
  for (unsigned bit = 0; bit < 32; ++bit) {
    others.push_back((std::uint32_t{1} << bit) & 0x37FFFFFF);
  }
  for (ShownStatus const& shown : kShownStatuses) {
    for (std::uint32_t const other : others) {
      SCOPED_TRACE(testing::Message() << std::hex << (shown.bits | other));
      LogAssert(static_cast<TEST_STATUS>(shown.bits | other), 1, kNumbers, kMessages);
      ExpectLine(static_cast<TEST_STATUS>(shown.line), shown.level, "(A: 1) m1");
    }
  }
}

TEST_F(LogAssertTest, IsWrittenAtEveryVerbosity) {
  for (unsigned verbosity = 0; verbosity <= 6; ++verbosity) {
    standalone::SetLogVerbosity(static_cast<ELogLevel>(verbosity));
    LogAssert(static_cast<TEST_STATUS>(0x08000000), 0, kNumbers, kMessages);
    ExpectLine(static_cast<TEST_STATUS>(0x08000000), 2, "(A) m0");
  }
}

class AssertingHelper : public CUsbHelper {
 public:
  AssertingHelper() : CUsbHelper(nullptr) {}

  using CUsbHelper::DoLogAssert;
};

TEST_F(LogAssertTest, HelpersPassTheirAssertionsOn) {
  AssertingHelper const helper;
  for (unsigned index = 0; index < 10; ++index) {
    helper.DoLogAssert(kPlain, index, kNumbers, kMessages);
    ExpectLine(kFailure, 1, kLines[index]);
    helper.DoLogAssert(static_cast<TEST_STATUS>(0x48000003), index, kNumbers, kMessages);
    ExpectLine(static_cast<TEST_STATUS>(0x48000000), 0, kLines[index]);
  }
}

}  // namespace
}  // namespace usb_support
