// The progress marker and the verdict on an expected stall.
#include <cstddef>
#include <cstdint>
#include <string>
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

constexpr char const* kStalled = "Request returned a STALL (as expected).";

class Diagnostics : public testing_support::SuiteTest {};

TEST_F(Diagnostics, ProgressMarkerWritesAPointAndEndsLines) {
  std::string const longName(1000, 'n');
  struct Row {
    unsigned index, perLine;
    char const* operation;
    unsigned channel;
    std::string line;  // none: the line goes on
  };
  for (Row const& row : {
           Row{0, 10, "transfer", 2, ""},
           Row{8, 10, "transfer", 1, ""},
           Row{9, 10, "transfer", 1, " \n10 transfers"},
           Row{10, 10, "transfer", 1, ""},
           Row{19, 10, "transfer", 1, " \n20 transfers"},
           Row{0, 0, "transfer", 1, ""},
           Row{4294967295u, 0, "transfer", 1, ""},
           Row{0, 1, nullptr, 1, " \n1 operation"},
           Row{0, 1, "read", 1, " \n1 read"},
           Row{1, 2, nullptr, 1, " \n2 operations"},
           Row{1, 2, "", 1, " \n2 s"},
           Row{1, 1, "read", 0, " \n2 reads"},
           Row{0, 1, "read", 2147483647u, " \n1 read"},
           Row{0, 1, "read", 0xFFFFFFFFu, " \n1 read"},
           Row{4294967294u, 4294967295u, "read", 1, " \n4294967295 reads"},
           // The count after the last index wraps to 0, which is a multiple of anything.
           Row{4294967295u, 7, "read", 1, " \n0 reads"},
           Row{1, 2, "%s%n%%", 1, " \n2 %s%n%%s"},
           Row{1, 2, longName.c_str(), 1, " \n2 " + longName + "s"},
       }) {
    CUsbHelper::OutputProgressMarker(row.index, row.perLine, row.operation, row.channel);
    std::vector<RecordedCall> expected = {Print(static_cast<int>(row.channel), ". ")};
    if (!row.line.empty()) {
      expected.push_back(PrintLn(static_cast<int>(row.channel), row.line));
    }
    expected.push_back(Flush(true));
    EXPECT_EQ(TakeCalls(), expected);
  }
}

TEST_F(Diagnostics, ExpectedStallIsReportedAtLevelFour) {
  CUsbHelper helper(nullptr);
  helper.StallExpectedDiagnostic(static_cast<RETURN_CODE>(0x80004008), TEST_STATUS_FAILURE);
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Line(TEST_STATUS_PLAIN, 4, kStalled),
                                   Line(TEST_STATUS_FAILURE, 1, "Stall error."), Flush(true)));
}

TEST_F(Diagnostics, AnythingElseThanAStallIsReported) {
  struct Row {
    std::uint32_t code;
    char const* verdict;
    char const* text;
  };
  CUsbHelper helper(nullptr);
  // The stall code with a flag is another value, although its text is the same.
  for (Row const& row :
       {Row{0x00000000, "succeeded instead. (Status = 0x00000000)", "Success."},
        Row{0x00004008, "succeeded instead. (Status = 0x00004008)", "Success."},
        Row{0x7FFFABCD, "succeeded instead. (Status = 0x7FFFABCD)", "Success (with warning)."},
        Row{0x80000000, "failed in another manner. (Status = 0x80000000)", "Operation failed."},
        Row{0x81004008, "failed in another manner. (Status = 0x81004008)", "Stall error."}}) {
    helper.StallExpectedDiagnostic(static_cast<RETURN_CODE>(row.code), TEST_STATUS_FAILURE);
    EXPECT_THAT(
        TakeCalls(),
        testing::ElementsAre(Line(TEST_STATUS_INFORMATION, 5,
                                  std::string("Request was expected to STALL, but ") + row.verdict),
                             Line(TEST_STATUS_FAILURE, 1, row.text), Flush(true)));
  }
}

TEST_F(Diagnostics, UnknownFailureIsReported) {
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
