#include <tools/usbdesc/summary.h>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>

namespace usb_support::usbdesc {
namespace {

using testing_support::ExactBytes;

std::string SummaryOf(testing_support::Bytes const& bytes) {
  return Summarise(ExactBytes(bytes).Range());
}

TEST(Summary, OfAnEmptyRun) {
  EXPECT_EQ(Summarise(CDescriptorRange()),
            "// 0 descriptors, 0 configurations, 0 interfaces, 0 bytes, valid");
}

TEST(Summary, HasTheSingularForOne) {
  EXPECT_EQ(SummaryOf({1}), "// 1 descriptor, 0 configurations, 0 interfaces, 1 byte, valid");
  EXPECT_EQ(SummaryOf({4, 2, 0, 0}),
            "// 1 descriptor, 1 configuration, 0 interfaces, 4 bytes, valid");
  EXPECT_EQ(SummaryOf({4, 4, 0, 0}),
            "// 1 descriptor, 0 configurations, 1 interface, 4 bytes, valid");
}

TEST(Summary, CountsBothKindsOfConfiguration) {
  EXPECT_EQ(SummaryOf({2, 2, 2, 7, 2, 6, 2, 1}),
            "// 4 descriptors, 2 configurations, 0 interfaces, 8 bytes, valid");
}

TEST(Summary, CountsAnInterfaceOnce) {
  EXPECT_EQ(SummaryOf({4, 4, 0, 0, 4, 4, 0, 1, 4, 4, 0, 2, 4, 4, 1, 0}),
            "// 4 descriptors, 0 configurations, 2 interfaces, 16 bytes, valid");
}

TEST(Summary, ReadsNoFieldOutsideTheRun) {
  EXPECT_EQ(SummaryOf({2, 4}), "// 1 descriptor, 0 configurations, 1 interface, 2 bytes, valid");
  EXPECT_EQ(SummaryOf({1, 1}), "// 2 descriptors, 0 configurations, 0 interfaces, 2 bytes, valid");
}

TEST(Summary, CountsUpToTheEndOfTheValidPart) {
  EXPECT_EQ(SummaryOf({4, 4, 0, 0, 0, 4, 1, 0}),
            "// 1 descriptor, 0 configurations, 1 interface, 8 bytes, not valid: "
            "zero length at offset 4 (4h), 4 bytes left");
  EXPECT_EQ(SummaryOf({4, 4, 0, 0, 9}),
            "// 1 descriptor, 0 configurations, 1 interface, 5 bytes, not valid: "
            "header cut short at offset 4 (4h), 1 byte left");
  EXPECT_EQ(SummaryOf(testing_support::Joined({testing_support::Bytes(27, 1), {9, 2, 0}})),
            "// 27 descriptors, 0 configurations, 0 interfaces, 30 bytes, not valid: "
            "past the end at offset 27 (1Bh), 3 bytes left");
}

TEST(Summary, CountsTheLargestRun) {
  EXPECT_EQ(SummaryOf(testing_support::Bytes(65535, 1)),
            "// 65535 descriptors, 0 configurations, 0 interfaces, 65535 bytes, valid");
  testing_support::Bytes run(65535, 1);
  run.back() = 0xC8;
  EXPECT_EQ(SummaryOf(run),
            "// 65534 descriptors, 0 configurations, 0 interfaces, 65535 bytes, not valid: "
            "header cut short at offset 65534 (FFFEh), 1 byte left");
}

}  // namespace
}  // namespace usb_support::usbdesc
