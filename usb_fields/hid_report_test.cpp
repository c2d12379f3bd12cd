#include <usb_fields/hid_report.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <tests/support/heap_bytes.h>
#include <usb_fields/samples.h>

namespace usb_fields {
namespace {

using testing::ElementsAre;
using testing_support::Bytes;
using testing_support::FromHex;
using testing_support::HeapBytes;

// The boot mouse of HID 1.11, E.10.
constexpr std::string_view kMouse =
    "05 01 09 02 a1 01 09 01 a1 00 05 09 19 01 29 03 15 00 25 01 95 03 75 01 81 02 95 01 75 05 81 "
    "01 05 01 09 30 09 31 15 81 25 7f 75 08 95 02 81 06 c0 c0";

std::vector<std::string> TextsOf(Bytes const& bytes) {
  std::vector<std::string> texts;
  std::array<char, 256> buffer{};
  for (HidItemReader items(bytes); items.Next();) {
    texts.push_back(std::string(items.Item().name) + ": " +
                    std::string(HidItemText(items.Item(), buffer)));
  }
  return texts;
}

std::vector<std::string> ProblemsOf(std::string_view hex) {
  std::vector<std::string> texts;
  for (HidProblem const& problem : ReadHidReports(FromHex(hex)).problems) {
    texts.push_back(std::to_string(problem.offset) + " " + std::string(problem.text));
  }
  return texts;
}

TEST(HidItemsTest, HaveNamesAndTexts) {
  std::vector<std::string> const texts = TextsOf(FromHex(kMouse));
  ASSERT_EQ(texts.size(), 26u);
  EXPECT_EQ(texts[0], "Usage Page: Generic Desktop");
  EXPECT_EQ(texts[1], "Usage: Mouse");
  EXPECT_EQ(texts[2], "Collection: Application");
  EXPECT_EQ(texts[6], "Usage Minimum: Button 1");
  EXPECT_EQ(texts[12],
            "Input: Data, Variable, Absolute, No Wrap, Linear, Preferred State, No Null position, "
            "Bit Field");
  EXPECT_EQ(texts[19], "Logical Minimum: -127");
  EXPECT_EQ(texts[20], "Logical Maximum: 127");
  EXPECT_EQ(texts[25], "End Collection: ");
}

TEST(HidItemsTest, MaximumIsSignedOnlyBelowAMinimumThatIs) {
  EXPECT_THAT(TextsOf(FromHex("15 00 25 ff 15 80 25 ff")),
              ElementsAre("Logical Minimum: 0", "Logical Maximum: 255", "Logical Minimum: -128",
                          "Logical Maximum: -1"));
}

TEST(HidItemsTest, UnitsAndExponents) {
  // HID 1.11, 6.2.2.7: velocity in cm/s is F011h with the nibbles of length 1 and time -1.
  EXPECT_THAT(TextsOf(FromHex("66 11 f0 55 0e 65 00 65 14")),
              ElementsAre("Unit: cm s^-1", "Unit Exponent: -2", "Unit: None", "Unit: deg"));
}

TEST(HidItemsTest, PushAndPopKeepThePage) {
  EXPECT_THAT(TextsOf(FromHex("05 09 a4 05 01 09 02 b4 09 02 0b 02 00 01 00")),
              ElementsAre("Usage Page: Button", "Push: ", "Usage Page: Generic Desktop",
                          "Usage: Mouse", "Pop: ", "Usage: Button 2", "Usage: Mouse"));
}

TEST(HidItemsTest, LongItemsAndCutItems) {
  Bytes const bytes = FromHex("fe 02 f0 01 02 05");
  HidItemReader items(bytes);
  ASSERT_TRUE(items.Next());
  EXPECT_EQ(items.Item().type, HidItemType::kLong);
  EXPECT_EQ(items.Item().tag, 0xF0);
  EXPECT_EQ(items.Item().data.size(), 2u);
  ASSERT_TRUE(items.Next());
  EXPECT_TRUE(items.Item().isCut);
  EXPECT_FALSE(items.Next());
}

TEST(HidReportsTest, OfTheBootMouse) {
  HidReports const reports = ReadHidReports(FromHex(kMouse));
  EXPECT_THAT(reports.problems, testing::IsEmpty());
  ASSERT_EQ(reports.collections.size(), 2u);
  EXPECT_EQ(reports.collections[0].usage.first, 2);
  EXPECT_EQ(reports.collections[1].parent, 0);
  ASSERT_EQ(reports.reports.size(), 1u);
  EXPECT_EQ(reports.reports[0].id, 0);
  EXPECT_EQ(reports.reports[0].Bytes(), 3u);
  ASSERT_EQ(reports.fields.size(), 3u);
  HidField const& axes = reports.fields[2];
  EXPECT_EQ(axes.bitOffset, 8u);
  EXPECT_EQ(axes.bits, 8u);
  EXPECT_EQ(axes.count, 2u);
  EXPECT_EQ(axes.logicalMinimum, -127);
  EXPECT_EQ(axes.logicalMaximum, 127);
  EXPECT_EQ(axes.collection, 1);
  EXPECT_EQ(reports.UsageOf(axes, 0).first, 0x30);
  EXPECT_EQ(reports.UsageOf(axes, 1).first, 0x31);
  EXPECT_EQ(reports.UsageOf(axes, 9).first, 0x31) << "the last usage counts for the rest";
  EXPECT_EQ(reports.UsageOf(reports.fields[0], 2).first, 3);
  EXPECT_EQ(reports.UsageOf(reports.fields[1], 0).page, 0) << "padding has no usage";
}

TEST(HidReportsTest, ReportIdsBeginEachReport) {
  HidReports const reports = ReadHidReports(
      FromHex("05 01 09 06 a1 01 85 01 75 08 95 02 81 02 85 02 95 01 81 02 85 01 91 02 c0"));
  ASSERT_EQ(reports.reports.size(), 3u);
  EXPECT_EQ(reports.reports[0].Bytes(), 3u);
  EXPECT_EQ(reports.reports[1].Bytes(), 2u);
  EXPECT_EQ(reports.reports[2].type, HidReportType::kOutput);
  EXPECT_EQ(reports.fields[0].bitOffset, 8u);
}

TEST(HidReportsTest, TheFirstUsageOfADelimitedSetCounts) {
  HidReports const reports =
      ReadHidReports(FromHex("05 01 a1 01 a9 01 09 30 09 31 a9 00 09 32 75 08 95 02 81 02 c0"));
  EXPECT_EQ(reports.UsageOf(reports.fields.at(0), 0).first, 0x30);
  EXPECT_EQ(reports.UsageOf(reports.fields.at(0), 1).first, 0x32);
}

TEST(HidReportsTest, UsageMinimumAndMaximumComeInEitherOrder) {
  HidReports const reports =
      ReadHidReports(FromHex("05 09 a1 01 29 03 19 01 75 01 95 03 81 02 c0"));
  EXPECT_THAT(reports.problems, testing::IsEmpty());
  EXPECT_EQ(reports.UsageOf(reports.fields.at(0), 2).first, 3);
}

TEST(HidReportsTest, SayWhatIsWrong) {
  EXPECT_THAT(ProblemsOf("b4"), ElementsAre("0 Pop without Push"));
  EXPECT_THAT(ProblemsOf("a4"), ElementsAre("1 Push without Pop"));
  EXPECT_THAT(ProblemsOf("c0"), ElementsAre("0 End Collection without Collection"));
  EXPECT_THAT(ProblemsOf("a1 01"), ElementsAre("2 A collection is not ended"));
  EXPECT_THAT(ProblemsOf("81 02"), ElementsAre("0 The field is not in a collection"));
  EXPECT_THAT(ProblemsOf("26 01"), ElementsAre("0 The item is cut off"));
  EXPECT_THAT(ProblemsOf("0c"), ElementsAre("0 The item's type is reserved"));
  EXPECT_THAT(ProblemsOf("f0"), ElementsAre("0 The main item is not known"));
  EXPECT_THAT(ProblemsOf("c4"), ElementsAre("0 The global item is not known"));
  EXPECT_THAT(ProblemsOf("68"), ElementsAre("0 The local item is not known"));
  EXPECT_THAT(ProblemsOf("85 00"), ElementsAre("0 A report ID is 1 to 255"));
  EXPECT_THAT(ProblemsOf("29 03 a1 01 c0"),
              ElementsAre("2 Usage Minimum and Usage Maximum come in pairs"));
  EXPECT_THAT(ProblemsOf("19 04 29 03"), ElementsAre("2 Usage Maximum is below Usage Minimum"));
  EXPECT_THAT(ProblemsOf("a1 01 75 08 95 01 81 02 85 01 c0"),
              ElementsAre("8 A report ID comes after fields without one"));
  EXPECT_THAT(ProblemsOf("a1 01 77 ff ff ff ff 97 ff ff ff ff 81 02 c0"),
              ElementsAre("12 The report is longer than 65535 bytes"));
}

TEST(HidReportsTest, HostileInputStaysSmall) {
  Bytes const pushes(60000, 0xA4);
  EXPECT_EQ(ReadHidReports(pushes).problems.size(), 60000u - 16 + 1);
  Bytes const bytes = FromHex(kMouse);
  for (std::size_t size = 0; size <= bytes.size(); ++size) {
    HeapBytes const cut(std::span<std::uint8_t const>(bytes).first(size));
    HidReports const reports = ReadHidReports(cut.Span());
    EXPECT_LE(reports.fields.size(), size);
    std::size_t next = 0;
    std::array<char, 64> buffer{};
    for (HidItemReader items(cut.Span()); items.Next();) {
      EXPECT_EQ(items.Item().offset, next);
      next += items.Item().bytes.size();
      HidItemText(items.Item(), buffer);
    }
    EXPECT_EQ(next, size);
  }
}

}  // namespace
}  // namespace usb_fields
