// CDescriptorRange::OutputString: the labelled dump of a range. Dumps of generated runs are compared
// with a model in tests/property.
#include <cstddef>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/helper/usb_helper.h>

namespace usb_support {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Joined;
using testing_support::kInternalError;
using testing_support::MakeDescriptor;

constexpr char const* kNoHelper = "INTERNAL ERROR - USB TQHelper does not exist.";

std::string Listing(CDescriptorRange const& range) {
  return *range.OutputString(false);
}

std::string Code(CDescriptorRange const& range) {
  return *range.OutputString(true);
}

std::string Listing(Bytes const& bytes) {
  return Listing(ExactBytes(bytes).Range());
}

std::string Code(Bytes const& bytes) {
  return Code(ExactBytes(bytes).Range());
}

// A webcam's own device descriptor.
Bytes Device() {
  return {0x12, 0x01, 0x00, 0x02, 0xEF, 0x02, 0x01, 0x40, 0x6D,
          0x04, 0x25, 0x08, 0x12, 0x00, 0x00, 0x00, 0x02, 0x01};
}

Bytes InterfaceBytes(unsigned char number, unsigned char alternate, unsigned char interfaceClass,
                     unsigned char subClass = 0, unsigned char protocol = 0) {
  return {0x09, 0x04, number, alternate, 0x00, interfaceClass, subClass, protocol, 0x00};
}

class RangeRendering : public testing_support::SuiteTest {
 protected:
  void SetUp() override { InitUsbHelper(nullptr); }

  // A dump writes nothing to the log.
  void TearDown() override { EXPECT_THAT(TakeCalls(), IsEmpty()); }
};

TEST_F(RangeRendering, EmptyRangeIsAnEmptyText) {
  EXPECT_EQ(Listing(CDescriptorRange()), "");
  EXPECT_EQ(Code(CDescriptorRange()), "");
}

TEST_F(RangeRendering, Tails) {
  Bytes const bytes = Joined({Device(), {0x09, 0x02, 0xA2, 0x09}});
  EXPECT_EQ(Listing(bytes),
            "   0h:  12 01 00 02 EF 02 01 40 6D 04 25 08 12 00 00 00 02 01 : Device  12h:  \n"
            "09 02 A2 09 (incomplete)");
  // A listing in code too.
  EXPECT_EQ(Code(bytes),
            "/*    0h */  0x12, 0x01, 0x00, 0x02, 0xEF, 0x02, 0x01, 0x40, 0x6D, 0x04, 0x25, 0x08, "
            "0x12, 0x00, 0x00, 0x00, 0x02, 0x01, // Device/*   12h */  \n"
            "09 02 A2 09 (incomplete)");
  EXPECT_EQ(Listing({0x09, 0x04, 0x00}), "   0h:  \n09 04 00 (incomplete)");
}

TEST_F(RangeRendering, ListingOfSeveralDescriptors) {
  Bytes const bytes = Joined({{0x09, 0x02, 0x1F, 0x00, 0x01, 0x01, 0x00, 0x80, 0xFA},
                              {0x08, 0x0B, 0x00, 0x02, 0x0E, 0x03, 0x00, 0x00},
                              {0x09, 0x04, 0x00, 0x01, 0x01, 0x0E, 0x02, 0x00, 0x00},
                              {0x07, 0x05, 0x81, 0x05, 0x00, 0x14, 0x01}});
  EXPECT_EQ(Listing(bytes),
            "   0h:  09 02 1F 00 01 01 00 80 FA : Configuration\n"
            "   9h:  08 0B 00 02 0E 03 00 00 : Interface Association: Initial=0, Count=2\n"
            "  11h:  09 04 00 01 01 0E 02 00 00 : Interface: Num=0, Alt=1 (Video Streaming)\n"
            "  1Ah:  07 05 81 05 00 14 01 : Isoch Endpoint: Address=0x81 (IN), "
            "wMaxPacketSize=5120 (0x1400), bInterval=1 (0x01)");
  EXPECT_EQ(Code(bytes),
            "/*    0h */  0x09, 0x02, 0x1F, 0x00, 0x01, 0x01, 0x00, 0x80, 0xFA, // Configuration\n"
            "/*    9h */  0x08, 0x0B, 0x00, 0x02, 0x0E, 0x03, 0x00, 0x00, "
            "// Interface Association: Initial=0, Count=2\n"
            "/*   11h */  0x09, 0x04, 0x00, 0x01, 0x01, 0x0E, 0x02, 0x00, 0x00, "
            "// Interface: Num=0, Alt=1 (Video Streaming)\n"
            "/*   1Ah */  0x07, 0x05, 0x81, 0x05, 0x00, 0x14, 0x01, "
            "// Isoch Endpoint: Address=0x81 (IN), wMaxPacketSize=5120 (0x1400), "
            "bInterval=1 (0x01)");
}

TEST_F(RangeRendering, OffsetsAreRightAlignedInFourColumns) {
  Bytes bytes;
  std::vector<std::size_t> offsets;
  for (std::size_t at = 0; at < 257; ++at) {
    offsets.push_back(bytes.size());
    Bytes const descriptor = MakeDescriptor(255, 0x41);
    bytes.insert(bytes.end(), descriptor.begin(), descriptor.end());
  }
  ASSERT_EQ(bytes.size(), 65535u);
  std::string const listing = Listing(bytes);
  EXPECT_THAT(listing, StartsWith("   0h:  FF 41 01 02"));
  EXPECT_THAT(listing, HasSubstr("\n  FFh:  FF 41 01 02"));
  EXPECT_THAT(listing, HasSubstr("\n 1FEh:  FF 41 01 02"));
  EXPECT_THAT(listing, HasSubstr("\n FF0h:  FF 41 01 02") /* 16 times 255 */);
  EXPECT_THAT(listing, HasSubstr("\n10EFh:  FF 41 01 02"));
  EXPECT_THAT(listing, HasSubstr("\nFF00h:  FF 41 01 02"));
  EXPECT_THAT(listing, EndsWith(" FB FC FD : <UNKNOWN DESCRIPTOR>"));
  std::string const code = Code(bytes);
  EXPECT_THAT(code, StartsWith("/*    0h */  0xFF, 0x41, 0x01"));
  EXPECT_THAT(code, HasSubstr("\n/*  1FEh */  0xFF, 0x41, 0x01"));
  EXPECT_THAT(code, HasSubstr("\n/* FF00h */  0xFF, 0x41, 0x01"));
  EXPECT_THAT(code, EndsWith(" 0xFC, 0xFD, // <UNKNOWN DESCRIPTOR>"));
}

TEST_F(RangeRendering, TailOfTheLongestRun) {
  Bytes bytes(65535, 1);
  bytes[65533] = 3;
  std::string const listing = Listing(bytes);
  EXPECT_THAT(listing, EndsWith("FFFDh:  \n03 01 (incomplete)"));
}

TEST_F(RangeRendering, ClassSpecificDescriptorsTakeTheInterface) {
  Bytes const classSpecific = {0x03, 0x24, 0x01};
  Bytes const endpointSpecific = {0x03, 0x25, 0x01};
  EXPECT_EQ(Listing(Joined({classSpecific,
                            InterfaceBytes(0, 0, 0x0E, 1),
                            classSpecific,
                            endpointSpecific,
                            {0x02, 0x05},
                            classSpecific,
                            InterfaceBytes(1, 0, 0x0E, 2),
                            classSpecific,
                            endpointSpecific,
                            InterfaceBytes(2, 0, 0x03),
                            classSpecific,
                            InterfaceBytes(3, 0, 0x01, 1, 0x20),
                            classSpecific})),
            "   0h:  03 24 01 : <UNKNOWN DESCRIPTOR>\n"
            "   3h:  09 04 00 00 00 0E 01 00 00 : Interface: Num=0, Alt=0 (Video Control)\n"
            "   Ch:  03 24 01 : UVC Control Interface: Header\n"
            "   Fh:  03 25 01 : UVC Control Endpoint\n"
            "  12h:  02 05 : Control Endpoint: Address=0x03 (OUT), wMaxPacketSize=2305 (0x0901), "
            "bInterval=4 (0x04)\n"
            "  14h:  03 24 01 : UVC Control Interface: Header\n"
            "  17h:  09 04 01 00 00 0E 02 00 00 : Interface: Num=1, Alt=0 (Video Streaming)\n"
            "  20h:  03 24 01 : UVC Streaming Interface: Input Header\n"
            "  23h:  03 25 01 : UVC Streaming Endpoint\n"
            "  26h:  09 04 02 00 00 03 00 00 00 : Interface: Num=2, Alt=0 (HID)\n"
            "  2Fh:  03 24 01 : <UNKNOWN DESCRIPTOR>\n"
            "  32h:  09 04 03 00 00 01 01 20 00 : Interface: Num=3, Alt=0 (USB Audio 2)\n"
            "  3Bh:  03 24 01 : <UNKNOWN DESCRIPTOR>");
}

// Bytes of a label's record beyond the run read as 0.

TEST_F(RangeRendering, ThrowsWithoutAHelper) {
  CAppState::Helper(nullptr);
  ExactBytes const block({0x02, 0x01});
  ExactBytes const invalid({0x00});
  EXPECT_RUN_TIME_EXCEPTION(block.Range().OutputString(false), kNoHelper, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(block.Range().OutputString(true), kNoHelper, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(invalid.Range().OutputString(true), kNoHelper, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(CDescriptorRange().OutputString(false), kNoHelper, kInternalError);
}

TEST_F(RangeRendering, ThrowsWithAHelperOfAnotherClass) {
  CAppState::Helper(
      custom_unique_ptr<TQHelper, TQHelper>(new TQHelper, [](TQHelper* helper) { delete helper; }));
  ExactBytes const block({0x02, 0x01});
  EXPECT_RUN_TIME_EXCEPTION(block.Range().OutputString(false), kNoHelper, kInternalError);
}

TEST_F(RangeRendering, TextHasItsOwnDeleter) {
  ExactBytes const block(Device());
  auto text = block.Range().OutputString(false);
  auto const deleter = text.get_deleter();
  std::string* const released = text.release();
  ASSERT_NE(released, nullptr);
  ASSERT_TRUE(deleter);
  EXPECT_THAT(*released, EndsWith(" : Device"));
  EXPECT_NO_THROW(deleter(nullptr));
  deleter(released);
}

}  // namespace
}  // namespace usb_support
