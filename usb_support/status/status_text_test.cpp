#include <usb_support/status/status_text.h>

#include <cstddef>
#include <cstdint>
#include <set>
#include <string>
#include <string_view>
#include <thread>
#include <type_traits>
#include <vector>

#include <tests/support/suite_test.h>
#include <usb_support/suite_interfaces/format_info.h>

namespace usb_support {
namespace {

using testing_support::Flush;
using testing_support::Line;

static_assert(std::is_same_v<std::underlying_type_t<RETURN_CODE>, std::uint32_t>);
static_assert(
    std::is_same_v<decltype(&GetStatusDetail), char const* (*)(RETURN_CODE, char const*)>);
static_assert(std::is_same_v<decltype(&PrintErrorDetail), bool (*)(RETURN_CODE, TEST_STATUS)>);

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

TEST_F(StatusText, TableHasSeventyFourCodesAndSeventyThreeTexts) {
  std::set<std::uint32_t> codes;
  std::set<std::string_view> texts;
  for (Failure const& failure : kFailures) {
    codes.insert(failure.code);
    texts.insert(GetStatusDetail(Code(failure.code), nullptr));
  }
  EXPECT_EQ(codes.size(), 74u);
  EXPECT_EQ(texts.size(), 73u);
}

TEST_F(StatusText, EveryFailureHasItsText) {
  for (Failure const& failure : kFailures) {
    EXPECT_STREQ(GetStatusDetail(Code(failure.code), nullptr), failure.text);
    EXPECT_STREQ(GetStatusDetail(Code(failure.code), ""), failure.text);
    EXPECT_STREQ(GetStatusDetail(Code(failure.code), kMark), failure.text);
  }
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(StatusText, BitsTwentyFourToThirtyPlayNoPartInAFailure) {
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

TEST_F(StatusText, GapsHaveNoText) {
  std::vector<std::uint32_t> gaps = {0x80001007, 0x80004003, 0x80004006, 0x8000400E};
  for (std::uint32_t code = 0x80008000; code <= 0x80008007; ++code) {
    gaps.push_back(code);
  }
  // Behind each group, behind the last one, and between groups.
  for (std::uint32_t const code :
       {0x80000001u, 0x80000FFFu, 0x80001009u, 0x80001FFFu, 0x80002001u, 0x8000300Du, 0x80004010u,
        0x80005003u, 0x80006004u, 0x80007010u, 0x80008017u, 0x80008018u, 0x80008FFFu, 0x80009000u,
        0x8000F000u, 0x80010000u, 0x80014000u, 0x80FFFFFFu, 0xFFFFFFFFu}) {
    gaps.push_back(code);
  }
  for (std::uint32_t const code : gaps) {
    EXPECT_EQ(GetStatusDetail(Code(code), kMark), kMark) << std::hex << code;
  }
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(StatusText, SuccessHasItsTextWhateverTheDefault) {
  for (std::uint32_t const code : {0x00000000u, 0x00000001u, 0x00001000u, 0x00004000u, 0x00008016u,
                                   0x3FFFFFFFu, 0x20000000u}) {
    for (char const* const defaultText : {static_cast<char const*>(nullptr), "", kMark}) {
      EXPECT_STREQ(GetStatusDetail(Code(code), defaultText), "Success") << std::hex << code;
    }
  }
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(StatusText, SuccessWithWarningHasItsTextWhateverTheDefault) {
  for (std::uint32_t const code :
       {0x40000000u, 0x40001234u, 0x40004000u, 0x7FFFFFFFu, 0x60000000u}) {
    for (char const* const defaultText : {static_cast<char const*>(nullptr), "", kMark}) {
      EXPECT_STREQ(GetStatusDetail(Code(code), defaultText), "Success (with warning)")
          << std::hex << code;
    }
  }
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(StatusText, FlaggedFailuresGiveTheTextOfTheirBaseCode) {
  EXPECT_STREQ(GetStatusDetail(Code(0x81004000), nullptr), "Transfer timeout");
  EXPECT_STREQ(GetStatusDetail(Code(0xC0004000), nullptr), "Transfer timeout");
  EXPECT_STREQ(GetStatusDetail(Code(0xFF000000), nullptr), "Operation failed");
}

TEST_F(StatusText, HandshakeThreeHasTwoCodes) {
  EXPECT_STREQ(GetStatusDetail(Code(0x80006002), nullptr), "Handshake 3 failed");
  EXPECT_STREQ(GetStatusDetail(Code(0x80006003), nullptr), "Handshake 3 failed");
}

TEST_F(StatusText, GivesBackTheCallersOwnDefault) {
  std::string const own = "?";
  EXPECT_EQ(GetStatusDetail(Code(0x80004003), own.c_str()), own.c_str());
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(StatusText, UnknownFailureWithoutDefaultIsLoggedAndGivesTheEmptyText) {
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

TEST_F(StatusText, UnknownFailureIsLoggedWithAllItsBits) {
  EXPECT_STREQ(GetStatusDetail(Code(0x8F000007), nullptr), "");
  EXPECT_STREQ(GetStatusDetail(Code(0xFFABCDEF), nullptr), "");
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(
                  Line(TEST_STATUS_PLAIN, 3, "No status text discovered for status: 0x8F000007",
                       DefaultErrorFormat()),
                  Line(TEST_STATUS_PLAIN, 3, "No status text discovered for status: 0xFFABCDEF",
                       DefaultErrorFormat())));
}

TEST_F(StatusText, TextsDoNotLieInTheFormattingBuffer) {
  char const* const known = GetStatusDetail(RC_TRANSFER_TIMEOUT, nullptr);
  char const* const unknown = GetStatusDetail(Code(0x80004003), nullptr);
  PrintErrorDetail(RC_STALL_ERROR, TEST_STATUS_PLAIN);
  PrintErrorDetail(Code(0x80004006), TEST_STATUS_PLAIN);
  EXPECT_STREQ(known, "Transfer timeout");
  EXPECT_STREQ(unknown, "");
  EXPECT_EQ(GetStatusDetail(RC_TRANSFER_TIMEOUT, nullptr), known);
}

TEST_F(StatusText, SeveralThreadsGetTheSameTexts) {
  constexpr int kRounds = 200;
  auto const readAll = [](bool& same) {
    same = true;
    for (int round = 0; round < kRounds; ++round) {
      for (Failure const& failure : kFailures) {
        same =
            same && std::string_view(GetStatusDetail(Code(failure.code), nullptr)) == failure.text;
      }
      PrintErrorDetail(RC_BAD_PARAMETER, TEST_STATUS_FAILURE);
    }
  };
  bool sameHere = false;
  bool sameThere = false;
  std::thread other([&] { readAll(sameThere); });
  readAll(sameHere);
  other.join();
  EXPECT_TRUE(sameHere);
  EXPECT_TRUE(sameThere);
  std::size_t lines = 0;
  std::size_t flushes = 0;
  for (standalone::RecordedCall const& call : TakeCalls()) {
    lines += call == Line(TEST_STATUS_FAILURE, 1, "Bad parameter.") ? 1u : 0u;
    flushes += call == Flush(true) ? 1u : 0u;
  }
  EXPECT_EQ(lines, 2u * kRounds);
  EXPECT_EQ(flushes, 2u * kRounds);
}

TEST_F(StatusText, PrintErrorDetailWritesTheTextWithAFullStopAndFlushes) {
  for (Failure const& failure : kFailures) {
    EXPECT_TRUE(PrintErrorDetail(Code(failure.code), TEST_STATUS_FAILURE));
    EXPECT_THAT(TakeCalls(),
                testing::ElementsAre(Line(TEST_STATUS_FAILURE, 1, std::string(failure.text) + "."),
                                     Flush(true)));
  }
}

TEST_F(StatusText, PrintErrorDetailWritesWithTheStatussOwnLevelAndLook) {
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

TEST_F(StatusText, PrintErrorDetailWritesSuccess) {
  EXPECT_TRUE(PrintErrorDetail(RC_SUCCESS, TEST_STATUS_PLAIN));
  EXPECT_TRUE(PrintErrorDetail(RC_SUCCESS_WITH_WARNING, TEST_STATUS_PLAIN));
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(
                               Line(TEST_STATUS_PLAIN, 3, "Success."), Flush(true),
                               Line(TEST_STATUS_PLAIN, 3, "Success (with warning)."), Flush(true)));
}

TEST_F(StatusText, PrintErrorDetailOfAnUnknownFailureWritesAFullStopAlone) {
  EXPECT_TRUE(PrintErrorDetail(Code(0x8F000007), TEST_STATUS_FAILURE));
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(
                  Line(TEST_STATUS_PLAIN, 3, "No status text discovered for status: 0x8F000007",
                       DefaultErrorFormat()),
                  Line(TEST_STATUS_FAILURE, 1, "."), Flush(true)));
}

}  // namespace
}  // namespace usb_support
