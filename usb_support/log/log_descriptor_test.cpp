#include <usb_support/log/log_descriptor.h>

#include <string>
#include <utility>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/suite_interfaces/format_info.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Line;

constexpr CFormatInfo kTitleLook(TQColor{0, 0, 255, 255}, static_cast<ETextStrength>(700));

constexpr char const* kMissingHelper = "INTERNAL ERROR - USB TQHelper does not exist.";

// An interface and its endpoint.
Bytes const kInterface = {0x09, 0x04, 0x00, 0x01, 0x01, 0x0E, 0x02, 0x00, 0x00};
Bytes const kEndpoint = {0x07, 0x05, 0x81, 0x03, 0x40, 0x00, 0x0A};

constexpr char const* kInterfaceLine =
    "/*    0h */  0x09, 0x04, 0x00, 0x01, 0x01, 0x0E, 0x02, 0x00, 0x00, // Interface: Num=0, Alt=1 "
    "(Video Streaming)";
constexpr char const* kEndpointLine =
    "/*    9h */  0x07, 0x05, 0x81, 0x03, 0x40, 0x00, 0x0A, // Interrupt Endpoint: Address=0x81 "
    "(IN), wMaxPacketSize=64 (0x0040), bInterval=10 (0x0A)";

class LogDescriptor : public testing_support::SuiteTest {
 protected:
  LogDescriptor() { InitUsbHelper(nullptr); }
};

// A flush would be a call of its own.
TEST_F(LogDescriptor, WritesTheTitleThenTheRangeAsCode) {
  ExactBytes const bytes(testing_support::Joined({kInterface, kEndpoint}));
  TQHelper_LogDescriptor(bytes.Range(), "T");
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(
                  Line(TEST_STATUS_PLAIN, 3, "\n// T:", kTitleLook),
                  Line(TEST_STATUS_PLAIN, 3, std::string(kInterfaceLine) + "\n" + kEndpointLine)));
}

TEST_F(LogDescriptor, TitleIsPassedThrough) {
  ExactBytes const bytes(kInterface);
  std::string const longTitle(2000, 't');
  for (auto const& [title, written] :
       {std::pair<std::string, std::string>("100% %s %n %5$d %", "100% %s %n %5$d %"),
        {"100%% %%%", "100% %%"},
        {longTitle, longTitle}}) {
    TQHelper_LogDescriptor(bytes.Range(), title.c_str());
    EXPECT_THAT(TakeCalls(), testing::ElementsAre(
                                 Line(TEST_STATUS_PLAIN, 3, "\n// " + written + ":", kTitleLook),
                                 Line(TEST_STATUS_PLAIN, 3, kInterfaceLine)));
  }
}

TEST_F(LogDescriptor, EmptyRangeIsAnEmptyText) {
  TQHelper_LogDescriptor(CDescriptorRange(), "T");
  TQHelper_LogDescriptor(CDescriptorRange(), "");
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(Line(TEST_STATUS_PLAIN, 3, "\n// T:", kTitleLook),
                                   Line(TEST_STATUS_PLAIN, 3, ""), Line(TEST_STATUS_PLAIN, 3, "")));
}

TEST_F(LogDescriptor, WritesTheTail) {
  ExactBytes const bytes(testing_support::Joined({kInterface, {0x07, 0x05, 0x81}}));
  TQHelper_LogDescriptor(bytes.Range(), "T");
  EXPECT_THAT(TakeCalls(), testing::ElementsAre(Line(TEST_STATUS_PLAIN, 3, "\n// T:", kTitleLook),
                                                Line(TEST_STATUS_PLAIN, 3,
                                                     std::string(kInterfaceLine) +
                                                         "/*    9h */  \n07 05 81 (incomplete)")));
}

// The range is rendered before anything is written, so that a failure leaves no title.
TEST_F(LogDescriptor, WithoutAHelperThrowsAndWritesNothing) {
  CAppState::Helper(nullptr);
  ExactBytes const bytes(kInterface);
  for (char const* const title : {"T", ""}) {
    EXPECT_RUN_TIME_EXCEPTION(TQHelper_LogDescriptor(bytes.Range(), title), kMissingHelper,
                              0x40000000u);
    EXPECT_RUN_TIME_EXCEPTION(TQHelper_LogDescriptor(CDescriptorRange(), title), kMissingHelper,
                              0x40000000u);
  }
  EXPECT_TRUE(TakeCalls().empty());
}

TEST_F(LogDescriptor, AForeignHelperThrowsAndWritesNothing) {
  CAppState::Helper(
      custom_unique_ptr<TQHelper, TQHelper>(new TQHelper, [](TQHelper* helper) { delete helper; }));
  ExactBytes const bytes(kInterface);
  EXPECT_RUN_TIME_EXCEPTION(TQHelper_LogDescriptor(bytes.Range(), "T"), kMissingHelper,
                            0x40000000u);
  EXPECT_TRUE(TakeCalls().empty());
}

}  // namespace
}  // namespace usb_support
