#include <tools/usbdesc/views/summary.h>

#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

std::string SummaryOf(testing_support::Bytes const& bytes) {
  Input const input = InputOf(bytes);
  RunSummary const summary = Summarise(Show(input));
  std::string const& text = summary.line.Text();
  EXPECT_EQ(summary.isGood, text.ends_with(", lengths good")) << text;
  return text;
}

TEST(Summary, OfADeviceWithOtherAnswers) {
  using usb_devices::Outcome;
  using usb_devices::Request;
  usb_devices::DeviceBuilder builder;
  builder.SetName("1.7");
  builder.Add({Request::Descriptor(2), Outcome::kAnswered, {4, 2, 5, 0}, {}, {}});
  builder.Add({Request::HidReport(0), Outcome::kAnswered, {0, 0, 0}, {}, {}});
  builder.Add({Request::Descriptor(0x0F), Outcome::kStalled, {}, {}, {}});
  Input input{"a.pcap", "traffic", {}};
  input.devices.push_back(builder.Build());
  builder.Add({Request::String(1, 0x409), Outcome::kAnswered, {4, 3, 'a'}, {}, {}});
  input.devices.push_back(builder.Build());
  RunSummary const summary = Summarise(Show(input));
  EXPECT_EQ(summary.line.Text(),
            "// traffic: 2 devices, 1 descriptor, 1 configuration, 0 interfaces, 1 other answer, "
            "10 bytes, 1 request without an answer, lengths bad: a.pcap#2, string 1, "
            "language 0409h: past the end at offset 0h, 3 bytes left, wTotalLength wrong: "
            "a.pcap#1.7, 5 announced at offset 0h, 4 found");
  EXPECT_FALSE(summary.isGood);
}

TEST(Summary, OfAnEmptyRun) {
  EXPECT_EQ(SummaryOf({}),
            "// 0 descriptors, 0 configurations, 0 interfaces, 0 bytes, nothing to check");
}

TEST(Summary, HasTheSingularForOne) {
  EXPECT_EQ(SummaryOf({1}),
            "// 1 descriptor, 0 configurations, 0 interfaces, 1 byte, lengths good");
  EXPECT_EQ(SummaryOf({4, 2, 4, 0}),
            "// 1 descriptor, 1 configuration, 0 interfaces, 4 bytes, lengths good");
  EXPECT_EQ(SummaryOf({4, 4, 0, 0}),
            "// 1 descriptor, 0 configurations, 1 interface, 4 bytes, lengths good");
}

TEST(Summary, CountsBothKindsOfConfiguration) {
  EXPECT_EQ(SummaryOf({4, 2, 4, 0, 4, 7, 4, 0, 2, 6, 2, 1}),
            "// 4 descriptors, 2 configurations, 0 interfaces, 12 bytes, lengths good");
}

TEST(Summary, ReportsWhichTotalLengthIsWrong) {
  // An announcement of too much, of too little, and of less than the header itself.
  EXPECT_EQ(SummaryOf({2, 1, 4, 2, 9, 0, 4, 4, 0, 0}),
            "// 3 descriptors, 1 configuration, 1 interface, 10 bytes, lengths good, wTotalLength "
            "wrong: 9 announced at offset 2h, 8 found");
  EXPECT_EQ(SummaryOf({4, 7, 4, 0, 4, 4, 0, 0}),
            "// 2 descriptors, 1 configuration, 1 interface, 8 bytes, lengths good, wTotalLength "
            "wrong: 4 announced at offset 0h, 8 found");
  EXPECT_EQ(SummaryOf({5, 0x0F, 4, 0, 0}),
            "// 1 descriptor, 0 configurations, 0 interfaces, 5 bytes, lengths good, wTotalLength "
            "wrong: 4 announced at offset 0h, 5 found");
  // The first is shown, the others are counted.
  EXPECT_EQ(SummaryOf({4, 2, 4, 0, 4, 2, 5, 0, 4, 2, 6, 0, 5, 0x0F, 7, 0, 0}),
            "// 4 descriptors, 3 configurations, 0 interfaces, 17 bytes, lengths good, "
            "wTotalLength wrong: 5 announced at offset 4h, 4 found, and 2 more");
}

TEST(Summary, LetsDescriptorsOfOtherRequestsFollow) {
  EXPECT_EQ(SummaryOf({4, 2, 4, 0, 4, 3, 9, 4}),
            "// 2 descriptors, 1 configuration, 0 interfaces, 8 bytes, lengths good");
  EXPECT_EQ(SummaryOf({5, 0x0F, 5, 0, 0, 4, 4, 0, 0}),
            "// 2 descriptors, 0 configurations, 1 interface, 9 bytes, lengths good");
  EXPECT_EQ(SummaryOf({5, 0x0F, 5, 0, 0, 3, 0x10, 0}),
            "// 2 descriptors, 0 configurations, 0 interfaces, 8 bytes, lengths good, wTotalLength "
            "wrong: 5 announced at offset 0h, 8 found");
}

TEST(Summary, ReportsBothWhenAConfigurationIsCutOff) {
  EXPECT_EQ(SummaryOf({4, 2, 8, 0, 4, 4}),
            "// 1 descriptor, 1 configuration, 0 interfaces, 6 bytes, lengths bad: past the end at "
            "offset 4h, 2 bytes left, wTotalLength wrong: 8 announced at offset 0h, 6 found");
}

TEST(Summary, CountsAnInterfaceOnce) {
  EXPECT_EQ(SummaryOf({4, 4, 0, 0, 4, 4, 0, 1, 4, 4, 0, 2, 4, 4, 1, 0}),
            "// 4 descriptors, 0 configurations, 2 interfaces, 16 bytes, lengths good");
}

TEST(Summary, ReadsNoFieldOutsideTheRun) {
  EXPECT_EQ(SummaryOf({2, 4}),
            "// 1 descriptor, 0 configurations, 1 interface, 2 bytes, lengths good");
  EXPECT_EQ(SummaryOf({1, 1}),
            "// 2 descriptors, 0 configurations, 0 interfaces, 2 bytes, lengths good");
}

TEST(Summary, CountsUpToTheEndOfTheValidPart) {
  EXPECT_EQ(SummaryOf({4, 4, 0, 0, 0, 4, 1, 0}),
            "// 1 descriptor, 0 configurations, 1 interface, 8 bytes, lengths bad: "
            "zero length at offset 4h, 4 bytes left");
  EXPECT_EQ(SummaryOf({4, 4, 0, 0, 9}),
            "// 1 descriptor, 0 configurations, 1 interface, 5 bytes, lengths bad: "
            "header cut short at offset 4h, 1 byte left");
  EXPECT_EQ(SummaryOf(testing_support::Joined({testing_support::Bytes(27, 1), {9, 2, 0}})),
            "// 27 descriptors, 0 configurations, 0 interfaces, 30 bytes, lengths bad: "
            "past the end at offset 1Bh, 3 bytes left");
}

TEST(Summary, CountsTheLargestRun) {
  EXPECT_EQ(SummaryOf(testing_support::Bytes(65535, 1)),
            "// 65535 descriptors, 0 configurations, 0 interfaces, 65535 bytes, lengths good");
  testing_support::Bytes run(65535, 1);
  run.back() = 0xC8;
  EXPECT_EQ(SummaryOf(run),
            "// 65534 descriptors, 0 configurations, 0 interfaces, 65535 bytes, lengths bad: "
            "header cut short at offset FFFEh, 1 byte left");
}

}  // namespace
}  // namespace usb_support::usbdesc
