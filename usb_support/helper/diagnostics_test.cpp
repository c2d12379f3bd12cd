// The progress marker and the verdict on an expected stall.
#include <cstddef>
#include <cstdint>
#include <string>
#include <type_traits>
#include <vector>

#include <tests/support/suite_test.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/suite_interfaces/format_info.h>

namespace usb_support {
namespace {

using standalone::RecordedCall;
using testing_support::Flush;
using testing_support::Line;
using testing_support::Print;
using testing_support::PrintLn;

static_assert(std::is_same_v<decltype(&CUsbHelper::OutputProgressMarker),
                             void (*)(unsigned, unsigned, char const*, unsigned)>);
static_assert(std::is_same_v<decltype(&CUsbHelper::StallExpectedDiagnostic),
                             void (CUsbHelper::*)(RETURN_CODE, TEST_STATUS)>);

constexpr char const* kStalled = "Request returned a STALL (as expected).";

class Diagnostics : public testing_support::SuiteTest {};

TEST_F(Diagnostics, ProgressMarkerWritesAPointAndFlushes) {
  CUsbHelper::OutputProgressMarker(0, 10, "transfer", 2);
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(Print(2, ". "), Flush(true)));
}

TEST_F(Diagnostics, ProgressMarkerEndsTheLineAfterEveryTenthOfTwenty) {
  std::vector<RecordedCall> expected;
  for (unsigned index = 0; index < 20; ++index) {
    CUsbHelper::OutputProgressMarker(index, 10, "transfer", 1);
    expected.push_back(Print(1, ". "));
    if (index == 9) {
      expected.push_back(PrintLn(1, " \n10 transfers"));
    }
    if (index == 19) {
      expected.push_back(PrintLn(1, " \n20 transfers"));
    }
    expected.push_back(Flush(true));
  }
  EXPECT_EQ(TakeCalls(), expected);
}

TEST_F(Diagnostics, ProgressMarkerWithoutALineLengthOnlyWritesPoints) {
  std::vector<RecordedCall> expected;
  for (unsigned index : {0u, 1u, 9u, 99u, 4294967294u, 4294967295u}) {
    CUsbHelper::OutputProgressMarker(index, 0, "transfer", 1);
    expected.push_back(Print(1, ". "));
    expected.push_back(Flush(true));
  }
  EXPECT_EQ(TakeCalls(), expected);
}

TEST_F(Diagnostics, ProgressMarkerCountsOneWithoutPlural) {
  CUsbHelper::OutputProgressMarker(0, 1, nullptr, 1);
  CUsbHelper::OutputProgressMarker(0, 1, "read", 1);
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Print(1, ". "), PrintLn(1, " \n1 operation"), Flush(true),
                                   Print(1, ". "), PrintLn(1, " \n1 read"), Flush(true)));
}

TEST_F(Diagnostics, ProgressMarkerCallsAnUnnamedStepAnOperation) {
  CUsbHelper::OutputProgressMarker(1, 2, nullptr, 1);
  CUsbHelper::OutputProgressMarker(1, 2, "", 1);
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Print(1, ". "), PrintLn(1, " \n2 operations"), Flush(true),
                                   Print(1, ". "), PrintLn(1, " \n2 s"), Flush(true)));
}

TEST_F(Diagnostics, ProgressMarkerEndsTheLineAtEveryStepOfOne) {
  CUsbHelper::OutputProgressMarker(1, 1, "read", 1);
  CUsbHelper::OutputProgressMarker(2, 1, "read", 1);
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Print(1, ". "), PrintLn(1, " \n2 reads"), Flush(true),
                                   Print(1, ". "), PrintLn(1, " \n3 reads"), Flush(true)));
}

TEST_F(Diagnostics, ProgressMarkerHandsOnAnyChannel) {
  CUsbHelper::OutputProgressMarker(0, 1, "read", 0);
  CUsbHelper::OutputProgressMarker(0, 1, "read", 2147483647u);
  CUsbHelper::OutputProgressMarker(0, 1, "read", 0xFFFFFFFFu);
  EXPECT_THAT(
      TakeCalls(),
      testing::ElementsAre(Print(0, ". "), PrintLn(0, " \n1 read"), Flush(true),
                           Print(2147483647, ". "), PrintLn(2147483647, " \n1 read"), Flush(true),
                           Print(-1, ". "), PrintLn(-1, " \n1 read"), Flush(true)));
}

TEST_F(Diagnostics, ProgressMarkerWritesLargeCounts) {
  CUsbHelper::OutputProgressMarker(4294967294u, 4294967295u, "read", 1);
  // The count behind the last index wraps to 0, which is a multiple of anything.
  CUsbHelper::OutputProgressMarker(4294967295u, 7, "read", 1);
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Print(1, ". "), PrintLn(1, " \n4294967295 reads"), Flush(true),
                                   Print(1, ". "), PrintLn(1, " \n0 reads"), Flush(true)));
}

TEST_F(Diagnostics, ProgressMarkerWritesTheOperationAsItIs) {
  std::string const longName(1000, 'n');
  CUsbHelper::OutputProgressMarker(1, 2, "%s%n%%", 1);
  CUsbHelper::OutputProgressMarker(1, 2, longName.c_str(), 1);
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(Print(1, ". "), PrintLn(1, " \n2 %s%n%%s"),
                                                Flush(true), Print(1, ". "),
                                                PrintLn(1, " \n2 " + longName + "s"), Flush(true)));
}

TEST_F(Diagnostics, ExpectedStallIsReportedAtLevelFour) {
  CUsbHelper helper(nullptr);
  helper.StallExpectedDiagnostic(static_cast<RETURN_CODE>(0x80004008), TEST_STATUS_FAILURE);
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Line(TEST_STATUS_PLAIN, 4, kStalled),
                                   Line(TEST_STATUS_FAILURE, 1, "Stall error."), Flush(true)));
}

TEST_F(Diagnostics, SuccessInPlaceOfAStallIsReported) {
  struct Row {
    std::uint32_t code;
    char const* verdict;
    char const* text;
  };
  CUsbHelper helper(nullptr);
  for (Row const& row :
       {Row{0x00000000,
            "Request was expected to STALL, but succeeded instead. (Status = 0x00000000)",
            "Success."},
        Row{0x00004008,
            "Request was expected to STALL, but succeeded instead. (Status = 0x00004008)",
            "Success."},
        Row{0x40000000,
            "Request was expected to STALL, but succeeded instead. (Status = 0x40000000)",
            "Success (with warning)."},
        Row{0x7FFFABCD,
            "Request was expected to STALL, but succeeded instead. (Status = 0x7FFFABCD)",
            "Success (with warning)."}}) {
    helper.StallExpectedDiagnostic(static_cast<RETURN_CODE>(row.code), TEST_STATUS_FAILURE);
    EXPECT_THAT(TakeCalls(),
                testing::ElementsAre(Line(TEST_STATUS_INFORMATION, 5, row.verdict),
                                     Line(TEST_STATUS_FAILURE, 1, row.text), Flush(true)));
  }
}

TEST_F(Diagnostics, OtherFailureInPlaceOfAStallIsReported) {
  struct Row {
    std::uint32_t code;
    char const* verdict;
    char const* text;
  };
  CUsbHelper helper(nullptr);
  // The stall code with a flag is another value, although its text is the same.
  for (Row const& row :
       {Row{0x80000000,
            "Request was expected to STALL, but failed in another manner. (Status = 0x80000000)",
            "Operation failed."},
        Row{0x80004000,
            "Request was expected to STALL, but failed in another manner. (Status = 0x80004000)",
            "Transfer timeout."},
        Row{0x81004008,
            "Request was expected to STALL, but failed in another manner. (Status = 0x81004008)",
            "Stall error."}}) {
    helper.StallExpectedDiagnostic(static_cast<RETURN_CODE>(row.code), TEST_STATUS_PLAIN);
    EXPECT_THAT(TakeCalls(),
                testing::ElementsAre(Line(TEST_STATUS_INFORMATION, 5, row.verdict),
                                     Line(TEST_STATUS_PLAIN, 3, row.text), Flush(true)));
  }
}

TEST_F(Diagnostics, UnknownFailureInPlaceOfAStallIsReported) {
  CUsbHelper helper(nullptr);
  helper.StallExpectedDiagnostic(static_cast<RETURN_CODE>(0xFFFFFFFF), TEST_STATUS_INTERNAL_ERROR);
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(
                  Line(TEST_STATUS_INFORMATION, 5,
                       "Request was expected to STALL, but failed in another manner. (Status = "
                       "0xFFFFFFFF)"),
                  Line(TEST_STATUS_PLAIN, 3, "No status text discovered for status: 0xFFFFFFFF",
                       DefaultErrorFormat()),
                  Line(TEST_STATUS_INTERNAL_ERROR, 0, "."), Flush(true)));
}

}  // namespace
}  // namespace usb_support
