// CDescriptorRange::OutputString: the labelled dump of a range.
#include <cstddef>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
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
using testing_support::MakeDescriptor;

constexpr auto kInternalError = static_cast<TEST_STATUS>(0x40000000);
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

// The label of the last line of a listing.
std::string LastLabel(Bytes const& bytes) {
  std::string const text = Listing(bytes);
  return text.substr(text.rfind(" : ") + 3);
}

// A webcam's own device descriptor.
Bytes Device() {
  return {0x12, 0x01, 0x00, 0x02, 0xEF, 0x02, 0x01, 0x40, 0x6D,
          0x04, 0x25, 0x08, 0x12, 0x00, 0x00, 0x00, 0x02, 0x01};
}

Bytes Interface(unsigned char number, unsigned char alternate, unsigned char interfaceClass,
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

TEST_F(RangeRendering, ListingOfOneDescriptor) {
  EXPECT_EQ(Listing({0x09, 0x02, 0xA2, 0x09, 0x04, 0x01, 0x00, 0x80, 0xFA}),
            "   0h:  09 02 A2 09 04 01 00 80 FA : Configuration");
}

TEST_F(RangeRendering, CodeOfOneDescriptor) {
  EXPECT_EQ(Code({0x09, 0x02, 0xA2, 0x09, 0x04, 0x01, 0x00, 0x80, 0xFA}),
            "/*    0h */  0x09, 0x02, 0xA2, 0x09, 0x04, 0x01, 0x00, 0x80, 0xFA, // Configuration");
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

TEST_F(RangeRendering, TailThatIsCutShort) {
  Bytes const bytes = Joined({Device(), {0x09, 0x02, 0xA2, 0x09}});
  EXPECT_EQ(Listing(bytes),
            "   0h:  12 01 00 02 EF 02 01 40 6D 04 25 08 12 00 00 00 02 01 : Device  12h:  \n"
            "09 02 A2 09 (incomplete)");
}

TEST_F(RangeRendering, TailIsAListingInCodeToo) {
  Bytes const bytes = Joined({Device(), {0x09, 0x02, 0xA2, 0x09}});
  EXPECT_EQ(Code(bytes),
            "/*    0h */  0x12, 0x01, 0x00, 0x02, 0xEF, 0x02, 0x01, 0x40, 0x6D, 0x04, 0x25, 0x08, "
            "0x12, 0x00, 0x00, 0x00, 0x02, 0x01, // Device/*   12h */  \n"
            "09 02 A2 09 (incomplete)");
}

TEST_F(RangeRendering, TailOfOneByte) {
  EXPECT_EQ(Listing({0x02, 0x01, 0x02}), "   0h:  02 01 : Device   2h:  \n02 (incomplete)");
}

TEST_F(RangeRendering, TailBehindAZeroLengthHasAllThatFollows) {
  EXPECT_EQ(Listing({0x02, 0x01, 0x00, 0x04, 0x02, 0x01}),
            "   0h:  02 01 : Device   2h:  \n00 04 02 01 (incomplete)");
}

TEST_F(RangeRendering, FirstDescriptorAlreadyInvalid) {
  EXPECT_EQ(Listing({0x09, 0x04, 0x00}), "   0h:  \n09 04 00 (incomplete)");
  EXPECT_EQ(Code({0x09, 0x04, 0x00}), "/*    0h */  \n09 04 00 (incomplete)");
  EXPECT_EQ(Listing({0x00}), "   0h:  \n00 (incomplete)");
  EXPECT_EQ(Code({0xFF}), "/*    0h */  \nFF (incomplete)");
}

TEST_F(RangeRendering, CutAtEveryLength) {
  Bytes const whole = Joined({{0x02, 0x01}, {0x05, 0x0F, 0x0C, 0x00, 0x01}, {0x03, 0x10, 0x04}});
  std::vector<std::string> const expected = {
      "",
      "   0h:  \n02 (incomplete)",
      "   0h:  02 01 : Device",
      "   0h:  02 01 : Device   2h:  \n05 (incomplete)",
      "   0h:  02 01 : Device   2h:  \n05 0F (incomplete)",
      "   0h:  02 01 : Device   2h:  \n05 0F 0C (incomplete)",
      "   0h:  02 01 : Device   2h:  \n05 0F 0C 00 (incomplete)",
      "   0h:  02 01 : Device\n   2h:  05 0F 0C 00 01 : BOS",
      "   0h:  02 01 : Device\n   2h:  05 0F 0C 00 01 : BOS   7h:  \n03 (incomplete)",
      "   0h:  02 01 : Device\n   2h:  05 0F 0C 00 01 : BOS   7h:  \n03 10 (incomplete)",
      std::string("   0h:  02 01 : Device\n   2h:  05 0F 0C 00 01 : BOS\n") +
          "   7h:  03 10 04 : BOS Capability (Container ID)",
  };
  ASSERT_EQ(expected.size(), whole.size() + 1);
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    EXPECT_EQ(Listing(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length))),
              expected[length]);
  }
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

TEST_F(RangeRendering, OffsetsCountFromTheRangesStart) {
  ExactBytes const block(Joined({Device(), {0x02, 0x06}, {0x02, 0x0F}}));
  EXPECT_EQ(Listing(CDescriptorRange(block.At(18), block.At(22))),
            "   0h:  02 06 : Device Qualifier\n   2h:  02 0F : BOS");
}

TEST_F(RangeRendering, RangeInsideABlockShowsNothingBehindIt) {
  ExactBytes const block(Joined({{0x02, 0x04}, Interface(7, 3, 0xFF)}));
  EXPECT_EQ(Listing(CDescriptorRange(block.At(0), block.At(2))),
            "   0h:  02 04 : Interface: Num=0, Alt=0");
}

TEST_F(RangeRendering, ClassSpecificDescriptorsBelongToTheInterfaceBeforeThem) {
  Bytes const classSpecific = {0x03, 0x24, 0x01};
  Bytes const endpointSpecific = {0x03, 0x25, 0x01};
  EXPECT_EQ(Listing(Joined({classSpecific,
                            Interface(0, 0, 0x0E, 1),
                            classSpecific,
                            endpointSpecific,
                            {0x02, 0x05},
                            classSpecific,
                            Interface(1, 0, 0x0E, 2),
                            classSpecific,
                            endpointSpecific,
                            Interface(2, 0, 0x03),
                            classSpecific,
                            Interface(3, 0, 0x01, 1, 0x20),
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

TEST_F(RangeRendering, OtherStandardDescriptorsDoNotEndTheCurrentInterface) {
  EXPECT_EQ(LastLabel(Joined({Interface(0, 0, 0x0E, 1),
                              Device(),
                              {0x08, 0x0B, 0x00, 0x02, 0x0E, 0x03, 0x00, 0x00},
                              {0x02, 0x21},
                              {0x03, 0x24, 0x06}})),
            "UVC Control Interface: Extension Unit");
}

TEST_F(RangeRendering, EachDumpStartsWithoutACurrentInterface) {
  EXPECT_EQ(LastLabel(Interface(0, 0, 0x0E, 1)), "Interface: Num=0, Alt=0 (Video Control)");
  EXPECT_EQ(LastLabel({0x03, 0x24, 0x01}), "<UNKNOWN DESCRIPTOR>");
}

// What a label asks for beyond the run reads as 0.

TEST_F(RangeRendering, InterfaceCutAtEveryLength) {
  Bytes const whole = {0x09, 0x04, 0x07, 0x03, 0x01, 0x0E, 0x01, 0x00, 0x00};
  std::vector<std::pair<std::size_t, std::string>> const expected = {
      {2, "Interface: Num=0, Alt=0"},
      {3, "Interface: Num=7, Alt=0"},
      {4, "Interface: Num=7, Alt=3"},
      {5, "Interface: Num=7, Alt=3"},
      {6, "Interface: Num=7, Alt=3"},
      {7, "Interface: Num=7, Alt=3 (Video Control)"},
      {8, "Interface: Num=7, Alt=3 (Video Control)"},
      {9, "Interface: Num=7, Alt=3 (Video Control)"},
  };
  for (auto const& [length, label] : expected) {
    Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    bytes[0] = static_cast<unsigned char>(length);
    EXPECT_EQ(LastLabel(bytes), label) << length;
  }
}

TEST_F(RangeRendering, AudioInterfaceWithoutItsLastBytes) {
  EXPECT_EQ(LastLabel({0x08, 0x04, 0x01, 0x02, 0x00, 0x01, 0x02, 0x30}),
            "Interface: Num=1, Alt=2 (USB Audio 3 - streaming)");
  EXPECT_EQ(LastLabel({0x07, 0x04, 0x01, 0x02, 0x00, 0x01, 0x02}),
            "Interface: Num=1, Alt=2 (USB Audio <unknown>)");
  EXPECT_EQ(LastLabel({0x05, 0x04, 0x01, 0x02, 0x00}), "Interface: Num=1, Alt=2");
}

TEST_F(RangeRendering, EndpointCutAtEveryLength) {
  Bytes const whole = {0x07, 0x05, 0x81, 0x03, 0x40, 0x01, 0x0A};
  std::vector<std::pair<std::size_t, std::string>> const expected = {
      {2, "Control Endpoint: Address=0x00 (OUT), wMaxPacketSize=0 (0x0000), bInterval=0 (0x00)"},
      {3, "Control Endpoint: Address=0x81 (IN), wMaxPacketSize=0 (0x0000), bInterval=0 (0x00)"},
      {4, "Interrupt Endpoint: Address=0x81 (IN), wMaxPacketSize=0 (0x0000), bInterval=0 (0x00)"},
      {5, "Interrupt Endpoint: Address=0x81 (IN), wMaxPacketSize=64 (0x0040), bInterval=0 (0x00)"},
      {6, "Interrupt Endpoint: Address=0x81 (IN), wMaxPacketSize=320 (0x0140), bInterval=0 (0x00)"},
      {7,
       "Interrupt Endpoint: Address=0x81 (IN), wMaxPacketSize=320 (0x0140), bInterval=10 (0x0A)"},
  };
  for (auto const& [length, label] : expected) {
    Bytes bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length));
    bytes[0] = static_cast<unsigned char>(length);
    EXPECT_EQ(LastLabel(bytes), label) << length;
  }
}

TEST_F(RangeRendering, AssociationCutAtEveryLength) {
  EXPECT_EQ(LastLabel({0x02, 0x0B}), "Interface Association: Initial=0, Count=0");
  EXPECT_EQ(LastLabel({0x03, 0x0B, 0x05}), "Interface Association: Initial=5, Count=0");
  EXPECT_EQ(LastLabel({0x04, 0x0B, 0x05, 0x02}), "Interface Association: Initial=5, Count=2");
}

TEST_F(RangeRendering, CapabilityOfTwoBytes) {
  EXPECT_EQ(LastLabel({0x02, 0x10}), "BOS Capability (<unknown capability descriptor>)");
}

TEST_F(RangeRendering, ClassSpecificDescriptorsOfTwoBytes) {
  EXPECT_EQ(LastLabel(Joined({Interface(0, 0, 0x0E, 1), {0x02, 0x24}})),
            "UVC Control Interface: <unknown control interface>");
  EXPECT_EQ(LastLabel(Joined({Interface(0, 0, 0x0E, 2), {0x02, 0x24}})),
            "UVC Streaming Interface: <unknown streaming interface>");
  EXPECT_EQ(LastLabel(Joined({Interface(0, 0, 0x0E, 1), {0x02, 0x25}})), "UVC Control Endpoint");
}

TEST_F(RangeRendering, CurrentInterfaceReachesPastTheRunsEnd) {
  // The interface's class lies in the descriptor behind it, its subclass nowhere.
  EXPECT_EQ(Listing({0x04, 0x04, 0x07, 0x03, 0x02, 0x0E}),
            "   0h:  04 04 07 03 : Interface: Num=7, Alt=3\n"
            "   4h:  02 0E : <UNKNOWN DESCRIPTOR>");
  // Its subclass is the last byte that there is.
  EXPECT_EQ(Listing({0x04, 0x04, 0x07, 0x03, 0x03, 0x0E, 0x01}),
            "   0h:  04 04 07 03 : Interface: Num=7, Alt=3 (Video Control)\n"
            "   4h:  03 0E 01 : <Unknown UVC Control Descriptor>");
  EXPECT_EQ(Listing({0x02, 0x04, 0x02, 0x24}),
            "   0h:  02 04 : Interface: Num=2, Alt=36\n"
            "   2h:  02 24 : <UNKNOWN DESCRIPTOR>");
}

TEST_F(RangeRendering, FieldsBeyondTheLengthButInsideTheRunAreReadAsTheyStand) {
  EXPECT_EQ(Listing({0x02, 0x04, 0x07, 0x05, 0x81, 0x0E, 0x01, 0x00, 0x0A}),
            "   0h:  02 04 : Interface: Num=7, Alt=5 (Video Control)\n"
            "   2h:  07 05 81 0E 01 00 0A : Bulk Endpoint: Address=0x81 (IN), "
            "wMaxPacketSize=1 (0x0001), bInterval=10 (0x0A)");
}

TEST_F(RangeRendering, DescriptorOfOneByte) {
  EXPECT_EQ(Listing({0x01}), "   0h:  01 : <UNKNOWN DESCRIPTOR>");
  EXPECT_EQ(Code({0x01}), "/*    0h */  0x01, // <UNKNOWN DESCRIPTOR>");
  EXPECT_EQ(Listing({0x01, 0x04, 0x05, 0xAA, 0xBB}),
            "   0h:  01 : Interface: Num=5, Alt=170\n"
            "   1h:  04 05 AA BB : Interrupt Endpoint: Address=0xAA (IN), "
            "wMaxPacketSize=0 (0x0000), bInterval=0 (0x00)");
}

TEST_F(RangeRendering, LastByteIsNoInterface) {
  // Were it one, of whatever class, the first descriptor's interface would be gone.
  EXPECT_EQ(Listing(Joined({Interface(0, 0, 0x0E, 1), {0x01}})),
            "   0h:  09 04 00 00 00 0E 01 00 00 : Interface: Num=0, Alt=0 (Video Control)\n"
            "   9h:  01 : <Unknown UVC Control Descriptor>");
}

TEST_F(RangeRendering, LeavesTheBytesAlone) {
  Bytes const bytes = Joined({Interface(1, 2, 0x0E, 1), {0x02, 0x24}, {0x05, 0x24}});
  ExactBytes const block(bytes);
  EXPECT_THAT(Code(block.Range()), EndsWith("\n05 24 (incomplete)"));
  EXPECT_EQ(Bytes(block.data(), block.data() + block.size()), bytes);
}

TEST_F(RangeRendering, NeedsNoPointersInTheHelper) {
  UsbTqPointers pointers;
  InitUsbHelper(&pointers);
  EXPECT_EQ(Listing({0x02, 0x01}), "   0h:  02 01 : Device");
}

TEST_F(RangeRendering, RaisesWithoutAHelper) {
  CAppState::Helper(nullptr);
  ExactBytes const block({0x02, 0x01});
  ExactBytes const invalid({0x00});
  EXPECT_RUN_TIME_EXCEPTION(block.Range().OutputString(false), kNoHelper, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(block.Range().OutputString(true), kNoHelper, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(invalid.Range().OutputString(true), kNoHelper, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(CDescriptorRange().OutputString(false), kNoHelper, kInternalError);
}

TEST_F(RangeRendering, RaisesWithAHelperOfAnotherClass) {
  CAppState::Helper(
      custom_unique_ptr<TQHelper, TQHelper>(new TQHelper, [](TQHelper* helper) { delete helper; }));
  ExactBytes const block({0x02, 0x01});
  EXPECT_RUN_TIME_EXCEPTION(block.Range().OutputString(false), kNoHelper, kInternalError);
}

TEST_F(RangeRendering, TextHasTheSuitesTypeAndItsOwnDeleter) {
  using Text = std::unique_ptr<std::string, std::function<void(std::string*)>>;
  static_assert(
      std::is_same_v<decltype(std::declval<CDescriptorRange const&>().OutputString(true)), Text>);
  ExactBytes const block(Device());
  Text text = block.Range().OutputString(false);
  auto const deleter = text.get_deleter();
  std::string* const released = text.release();
  ASSERT_NE(released, nullptr);
  ASSERT_TRUE(deleter);
  EXPECT_THAT(*released, EndsWith(" : Device"));
  EXPECT_NO_THROW(deleter(nullptr));
  deleter(released);
}

TEST_F(RangeRendering, EachTextIsItsOwn) {
  ExactBytes const block({0x02, 0x01});
  auto const first = block.Range().OutputString(false);
  auto const second = block.Range().OutputString(true);
  EXPECT_EQ(*first, "   0h:  02 01 : Device");
  EXPECT_EQ(*second, "/*    0h */  0x02, 0x01, // Device");
}

}  // namespace
}  // namespace usb_support
