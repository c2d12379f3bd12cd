#include <usb_support/descriptors/finders.h>

#include <cstddef>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::Joined;
using testing_support::kInternalError;
using testing_support::kZeroLength;
using testing_support::Piece;
using testing_support::PiecesOf;

using Byte = unsigned char;
using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;

// A BOS with one capability of each of these types at 5, 12, 22, 42, 45, 63, 87 and, once more a
// container ID, 99; end 119.
Bytes const kCapabilities =
    Hex("05 0F 77 00 08  07 10 02 02 00 00 00  0A 10 03 00 0E 00 01 0A FF 07"
        "14 10 04 00 30 EE F3 5C 07 D5 25 49 B0 01 80 2D 79 43 4C 30  03 10 0B"
        "12 10 06 00 1A 00 00 00 01 00 01 00 20 01 00 02 00 01"
        "18 10 08 00 06 00 64 00 90 01 00 00 70 17 00 00 70 17 00 00 00 00 00 00"
        "0C 10 09 00 06 00 01 00 2C 91 01 0A"
        "14 10 04 00 11 22 33 44 55 66 77 88 99 AA BB CC DD EE FF 00");

struct Place {
  unsigned char type;
  std::size_t offset;
  std::size_t length;
};

constexpr Place kPlaces[] = {{0x02, 5, 7},   {0x03, 12, 10}, {0x04, 22, 20}, {0x0B, 42, 3},
                             {0x06, 45, 18}, {0x08, 63, 24}, {0x09, 87, 12}};

// An interface of an audio device: interface, header (subtype 1), input terminal (2), feature unit
// (6), endpoint, class-specific endpoint (1), input terminal (2) at 0, 9, 18, 30, 39, 46, 53;
// end 65.
Bytes const kAudio =
    Hex("09 04 00 00 01 01 01 00 00  09 24 01 00 01 1E 00 01 01"
        "0C 24 02 01 01 01 00 02 03 00 00 00  09 24 06 02 01 01 03 00 00"
        "07 05 81 03 02 00 10  07 25 01 01 00 00 00  0C 24 02 04 01 02 00 01 00 00 00 00");

TEST(HasSubtype, ComparesTypeAndThirdByte) {
  ExactBytes const block({0x04, 0x24, 0x02, 0xFF});
  for (unsigned type = 0; type < 256; ++type) {
    for (unsigned subtype = 0; subtype < 256; ++subtype) {
      ASSERT_EQ(HasSubtype(block.At(0), static_cast<Byte>(type), static_cast<Byte>(subtype)),
                type == 0x24 && subtype == 0x02)
          << type << ", " << subtype;
    }
  }
}

TEST(HasSubtype, ThereIsNoneWithoutAThirdByte) {
  ExactBytes const two({0x03, 0x24});
  ExactBytes const one({0x03});
  for (unsigned subtype = 0; subtype < 256; ++subtype) {
    EXPECT_FALSE(HasSubtype(two.At(0), 0x24, static_cast<Byte>(subtype)));
    EXPECT_FALSE(HasSubtype(two.At(2), 0x24, static_cast<Byte>(subtype)));
    EXPECT_FALSE(HasSubtype(one.At(0), 0x24, static_cast<Byte>(subtype)));
    EXPECT_FALSE(HasSubtype(Iterator(), 0x00, static_cast<Byte>(subtype)));
  }
}

TEST(HasSubtype, ReadsTheNextDescriptorsByte) {
  ExactBytes const block({0x02, 0x24, 0x09, 0x04});
  EXPECT_TRUE(HasSubtype(block.At(0), 0x24, 0x09));
  EXPECT_FALSE(HasSubtype(block.At(0), 0x24, 0x00));
}

TEST(IsFirstSetting, IsAnInterfacesSettingZero) {
  for (unsigned type = 0; type < 256; ++type) {
    for (unsigned setting = 0; setting < 256; ++setting) {
      ExactBytes const block({0x09, static_cast<Byte>(type), 0x07, static_cast<Byte>(setting), 0x01,
                              0x08, 0x06, 0x50, 0x00});
      ASSERT_EQ(IsFirstSetting(block.At(0)), type == 0x04 && setting == 0x00)
          << type << ", " << setting;
    }
  }
}

TEST(IsFirstSetting, ReadsInsideTheRunAndZeroAfterIt) {
  for (char const* const bytes : {"02 04", "09 04 07", "02 04 02 00", "01 04 24 00"}) {
    EXPECT_TRUE(IsFirstSetting(ExactBytes(Hex(bytes)).At(0))) << bytes;
  }
  for (char const* const bytes : {"04 04 07 01", "04", "02 04 07 05"}) {
    EXPECT_FALSE(IsFirstSetting(ExactBytes(Hex(bytes)).At(0))) << bytes;
  }
  EXPECT_FALSE(IsFirstSetting(Iterator()));
}

TEST(ClassSpecificFinder, FindsTheFirstFromFirstToLast) {
  struct Row {
    Byte type, subtype;
    std::size_t first, last, found;
  };
  ExactBytes const block(kAudio);
  for (Row const& row :
       {Row{0x24, 1, 0, 65, 9}, Row{0x24, 2, 0, 65, 18}, Row{0x24, 6, 0, 65, 30},
        Row{0x25, 1, 0, 65, 46}, Row{0x24, 2, 18, 65, 18}, Row{0x24, 2, 30, 65, 53},
        Row{0x24, 2, 30, 53, 53}, Row{0x24, 2, 18, 18, 18}, Row{0x24, 3, 0, 65, 65},
        Row{0x25, 2, 0, 65, 65}}) {
    EXPECT_EQ(ClassSpecificFinder(row.type, row.subtype)(block.At(row.first), block.At(row.last)),
              Found(true, block.At(row.found)));
  }
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x01)(Iterator(), Iterator()), Found(true, Iterator()));
}

TEST(ClassSpecificFinder, ThrowsOnAZeroLength) {
  ExactBytes const block({0x03, 0x24, 0x01, 0x00, 0x24, 0x02, 0x03, 0x24, 0x03});
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x02)(block.At(0), block.At(9)), Found(true, block.At(3)));
  EXPECT_RUN_TIME_EXCEPTION(ClassSpecificFinder(0x24, 0x03)(block.At(0), block.At(9)), kZeroLength,
                            kInternalError);
}

class Finders : public testing_support::SuiteTest {
 protected:
  ExactBytes bos_{kCapabilities};
  ExactBytes audio_{kAudio};
};

TEST_F(Finders, ServeTheOperationsOfARange) {
  CDescriptorRange const range = audio_.Range();
  ClassSpecificFinder const terminals(0x24, 0x02);
  EXPECT_THAT(PiecesOf(range, range.GetSubRanges(terminals, CDescriptorRange::AlwaysTrue)),
              ElementsAre(Piece(18, 12), Piece(53, 12)));
  EXPECT_EQ(range.SubRange(terminals, terminals).Length(), 35);
  EXPECT_EQ(range.Count(CRangeSelector(ClassSpecificFinder(0x25, 0x01), terminals)), 1);
  EXPECT_EQ(bos_.Range().Count(CapabilityFinder(0x04), CDescriptorRange::AlwaysTrue), 2);
}

TEST_F(Finders, OnlyDeviceCapabilitiesAreCapabilities) {
  ExactBytes const block({0x05, 0x0F, 0x02, 0x00, 0x00, 0x03, 0x11, 0x02, 0x03, 0x10, 0x02});
  EXPECT_EQ(CapabilityFinder(0x02)(block.At(0), block.At(11)), Found(true, block.At(8)));
}

TEST_F(Finders, FindCapabilityLooksAtTheValidPartOnly) {
  // The valid part ends at a zero length, and at one past the end.
  for (Byte const length : {Byte{0x00}, Byte{0x07}}) {
    ExactBytes const block({0x05, 0x0F, 0x0E, 0x00, 0x02, 0x03, 0x10, 0x0B,  //
                            length, 0x10, 0x02, 0x02, 0x00, 0x00});
    CDescriptorRange const range = block.Range();
    EXPECT_EQ(FindCapability(range, 0x0B).Bytes(), block.data() + 5);
    EXPECT_TRUE(FindCapability(range, 0x02).IsEmpty());
  }
  ExactBytes const zeroes(Bytes(5));
  EXPECT_TRUE(FindCapability(zeroes.Range(), 0x00).IsEmpty());
  EXPECT_THAT(TakeCalls(), IsEmpty()) << "it is silent";
}

TEST_F(Finders, FindCapabilityInARunOfAnyLength) {
  for (std::size_t length = 0; length <= kCapabilities.size(); ++length) {
    ExactBytes const block(testing_support::Part(kCapabilities, 0, length));
    for (unsigned type = 0; type < 256; ++type) {
      CDescriptorRange const found = FindCapability(block.Range(), static_cast<Byte>(type));
      Place expected{};
      for (Place const& place : kPlaces) {
        expected = place.type == type && place.offset + place.length <= length ? place : expected;
      }
      ASSERT_EQ(found.Length(), expected.length) << length << ", " << type;
      ASSERT_TRUE(found.IsEmpty() || found.Bytes() == block.data() + expected.offset);
    }
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

// Nothing of a descriptor without a third byte is a subtype, though the next one's first byte is.
TEST_F(Finders, FindCapabilityOfShortCapabilities) {
  ExactBytes const last({0x05, 0x0F, 0x07, 0x00, 0x01, 0x02, 0x10});
  for (unsigned type = 0; type < 256; ++type) {
    EXPECT_TRUE(FindCapability(last.Range(), static_cast<Byte>(type)).IsEmpty()) << type;
  }
  ExactBytes const inside(
      Joined({{0x05, 0x0F, 0x0A, 0x00, 0x02}, {0x02, 0x10}, {0x03, 0x10, 0x0B}}));
  EXPECT_EQ(FindCapability(inside.Range(), 0x03).Bytes(), inside.data() + 5);
  EXPECT_EQ(FindCapability(inside.Range(), 0x03).Length(), 2);
  EXPECT_EQ(FindCapability(inside.Range(), 0x0B).Bytes(), inside.data() + 7);
}

}  // namespace
}  // namespace usb_support
