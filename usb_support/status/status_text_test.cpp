#include <usb_support/status/status_text.h>

#include <cstddef>
#include <cstdint>
#include <iterator>
#include <string>
#include <string_view>
#include <vector>

#include <tests/support/suite_test.h>
#include <usb_support/suite_interfaces/format_info.h>

namespace usb_support {
namespace {

using testing_support::Flush;
using testing_support::Line;

static_assert(Failed(RC_OPERATION_FAILED));
static_assert(!Failed(RC_SUCCESS));
static_assert(!Failed(RC_SUCCESS_WITH_WARNING));

struct Failure {
  std::uint32_t code;
  char const* text;
};

constexpr Failure kFailures[] = {
    {0x80000000, "Operation failed"},
    {0x80001000, "Operation not implemented"},
    {0x80001001, "Operation not supported"},
    {0x80001002, "Access denied"},
    {0x80001003, "Cannot open log"},
    {0x80001004, "Log not open"},
    {0x80001005, "Log write error"},
    {0x80001006, "Destination buffer too small"},
    {0x80001008, "Internal error: a Windows registry operation failed."},
    {0x80002000, "The host interface is invalid"},
    {0x80003000, "Transfer type undefined"},
    {0x80003001, "Invalid packet size"},
    {0x80003002, "Invalid transfer type"},
    {0x80003003, "Invalid option"},
    {0x80003004, "Parameter can't change"},
    {0x80003005, "Endpoint not found"},
    {0x80003006, "Invalid response mode"},
    {0x80003007, "Endpoint write error"},
    {0x80003008, "Endpoint read error"},
    {0x80003009, "Endpoint open error"},
    {0x8000300A, "Endpoint invalid max burst size"},
    {0x8000300B, "Endpoint invalid SuperSpeed multiplier size"},
    {0x8000300C, "Endpoint configuration failed"},
    {0x80004000, "Transfer timeout"},
    {0x80004001, "Transfer error"},
    {0x80004002, "Missed microframe"},
    {0x80004004, "Transfer hard error"},
    {0x80004005, "Babble error"},
    {0x80004007, "Data buffer hard error"},
    {0x80004008, "Stall error"},
    {0x80004009, "Transfer active"},
    {0x8000400A, "Transfer insufficient resources"},
    {0x8000400B, "Transfer insufficient data"},
    {0x8000400C, "The data returned in the transfer has an unexpected value"},
    {0x8000400D, "Transfer failed"},
    {0x8000400F, "A transfer did not respond with the expected status"},
    {0x80005000, "System wait abandoned"},
    {0x80005001, "System wait timeout"},
    {0x80005002, "System wait error"},
    {0x80006000, "Handshake 1 failed"},
    {0x80006001, "Handshake 2 failed"},
    {0x80006002, "Handshake 3 failed"},
    {0x80006003, "Handshake 3 failed"},
    {0x80007000, "Error getting a new Slot from Host Controller"},
    {0x80007001, "Error allocating or initializing the Input Context for the Host controller"},
    {0x80007002, "Error setting up Default Endpoint 0"},
    {0x80007003,
     "Error Setting the address for the device via the xHCI Host Controller SetAddress Command"},
    {0x80007004, "Error trying to get the port status"},
    {0x80007005, "Port Status did not report a connected device"},
    {0x80007006, "Memory allocation error"},
    {0x80007007, "Host Initialization failed"},
    {0x80007008, "A Port function failed"},
    {0x80007009, "A device was not found.  Check that device is plugged into correct port"},
    {0x8000700A, "Error performing \"Evaluate Context\" to change device parameters"},
    {0x8000700B, "Error getting hub descriptor during enumeration"},
    {0x8000700C, "Error getting device descriptor during enumeration"},
    {0x8000700D, "Error checking dev notification during enumeration"},
    {0x8000700E, "Link helper failure"},
    {0x8000700F, "Enumeration failure"},
    {0x80008008, "Internal error: NULL pointer"},
    {0x80008009, "Internal error: value out of range"},
    {0x8000800A, "Internal error: the pointer has an unexpected dynamic type"},
    {0x8000800B, "No downstream port"},
    {0x8000800C, "No downstream device"},
    {0x8000800D, "No upstream port"},
    {0x8000800E, "USB query failure"},
    {0x8000800F, "Procedure timeout"},
    {0x80008010, "Procedure aborted by user"},
    {0x80008011, "Incomplete procedure"},
    {0x80008012, "Bad parameter"},
    {0x80008013, "Bad port status"},
    {0x80008014, "USB inconsistency"},
    {0x80008015, "Compliance driver error"},
    {0x80008016, "Incorrect driver version"},
};

// A text that is none of the library's.
constexpr char const* kMark = "no text of the library";

RETURN_CODE Code(std::uint32_t value) {
  return static_cast<RETURN_CODE>(value);
}

class StatusText : public testing_support::SuiteTest {};

TEST_F(StatusText, EveryFailureHasItsText) {
  for (Failure const& failure : kFailures) {
    EXPECT_STREQ(GetStatusDetail(Code(failure.code), nullptr), failure.text);
    EXPECT_STREQ(GetStatusDetail(Code(failure.code), ""), failure.text);
    EXPECT_STREQ(GetStatusDetail(Code(failure.code), kMark), failure.text);
  }
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(StatusText, FlagsPlayNoPartInAFailure) {
  for (Failure const& failure : kFailures) {
    for (std::uint32_t flags = 0; flags < 0x80; ++flags) {
      ASSERT_STREQ(GetStatusDetail(Code(failure.code | (flags << 24)), nullptr), failure.text)
          << std::hex << failure.code << ' ' << flags;
    }
  }
  EXPECT_TRUE(TakeCalls().empty());
}

// Every value of the 24 bits that name a failure.
TEST_F(StatusText, NoOtherFailureHasAText) {
  std::size_t withText = 0;
  for (std::uint32_t key = 0; key <= 0x00FFFFFF; ++key) {
    withText += GetStatusDetail(Code(0x80000000u | key), kMark) != kMark ? 1u : 0u;
  }
  EXPECT_EQ(withText, 74u);
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(StatusText, SuccessHasItsTextWhateverTheDefault) {
  for (std::uint32_t code = 0; code < 0x80000000u; code += 0x00FFFFFF) {
    for (char const* const defaultText : {static_cast<char const*>(nullptr), "", kMark}) {
      EXPECT_STREQ(GetStatusDetail(Code(code), defaultText),
                   code < 0x40000000u ? "Success" : "Success (with warning)");
    }
  }
  EXPECT_STREQ(GetStatusDetail(Code(0x3FFFFFFF), nullptr), "Success");
  EXPECT_STREQ(GetStatusDetail(Code(0x40000000), nullptr), "Success (with warning)");
  EXPECT_STREQ(GetStatusDetail(Code(0x7FFFFFFF), nullptr), "Success (with warning)");
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(StatusText, GivesBackTheCallersOwnDefault) {
  std::string const own = "?";
  EXPECT_EQ(GetStatusDetail(Code(0x80004003), own.c_str()), own.c_str());
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(StatusText, UnknownFailureIsLogged) {
  char const empty[] = {'\0'};
  for (char const* const defaultText : {static_cast<char const*>(nullptr), &empty[0]}) {
    char const* const text = GetStatusDetail(Code(0x80004003), defaultText);
    ASSERT_NE(text, nullptr);
    EXPECT_NE(text, defaultText);
    EXPECT_STREQ(text, "");
    EXPECT_THAT(TakeCalls(),
                testing::ElementsAre(Line(TEST_STATUS_PLAIN, 3,
                                          "No status text discovered for status: 0x80004003",
                                          DefaultErrorFormat())));
  }
}

TEST_F(StatusText, PrintErrorDetailWritesTheText) {
  std::vector<Failure> failures(std::begin(kFailures), std::end(kFailures));
  failures.push_back({0x00000000, "Success"});
  failures.push_back({0x40000000, "Success (with warning)"});
  for (Failure const& failure : failures) {
    EXPECT_TRUE(PrintErrorDetail(Code(failure.code), TEST_STATUS_FAILURE));
    EXPECT_THAT(TakeCalls(),
                testing::ElementsAre(Line(TEST_STATUS_FAILURE, 1, std::string(failure.text) + "."),
                                     Flush(true)));
  }
}

TEST_F(StatusText, PrintErrorDetailHasTheStatussLevel) {
  struct Row {
    std::uint32_t status;
    unsigned level;
  };
  for (Row const& row : {Row{0x00000000, 3}, Row{0x08000000, 2}, Row{0x20000000, 5},
                         Row{0x40000000, 0}, Row{0x80000000, 1}, Row{0x80000123, 1}}) {
    auto const status = static_cast<TEST_STATUS>(row.status);
    EXPECT_TRUE(PrintErrorDetail(Code(0x80005001), status));
    EXPECT_THAT(TakeCalls(),
                testing::ElementsAre(Line(status, row.level, "System wait timeout."), Flush(true)));
  }
}

TEST_F(StatusText, PrintErrorDetailOfAnUnknownFailure) {
  EXPECT_TRUE(PrintErrorDetail(Code(0x8F000007), TEST_STATUS_FAILURE));
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(
                  Line(TEST_STATUS_PLAIN, 3, "No status text discovered for status: 0x8F000007",
                       DefaultErrorFormat()),
                  Line(TEST_STATUS_FAILURE, 1, "."), Flush(true)));
}

}  // namespace
}  // namespace usb_support
