#include <usb_support/descriptors/finders.h>

#include <cstddef>
#include <type_traits>
#include <utility>
#include <vector>

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
using testing_support::Joined;

constexpr auto kInternalError = static_cast<TEST_STATUS>(0x40000000);
constexpr char const* kZeroLength = "Invalid descriptor:  bLength must be greater than 0.";

using Byte = unsigned char;
using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;

static_assert(std::is_trivially_copyable_v<ClassSpecificFinder>);
static_assert(std::is_trivially_copyable_v<CapabilityFinder>);
static_assert(std::is_convertible_v<ClassSpecificFinder, RangeFinder>);
static_assert(std::is_convertible_v<CapabilityFinder, RangeFinder>);

// A BOS with one capability of each of these types at 5, 12, 22, 42, 45, 63, 87 and, once more a
// container ID, 99; end 119.
Bytes const kBos = {
    0x05, 0x0F, 0x77, 0x00, 0x08,                                      //
    0x07, 0x10, 0x02, 0x02, 0x00, 0x00, 0x00,                          // USB 2.0 extension
    0x0A, 0x10, 0x03, 0x00, 0x0E, 0x00, 0x01, 0x0A, 0xFF, 0x07,        // SuperSpeed USB
    0x14, 0x10, 0x04, 0x00, 0x30, 0xEE, 0xF3, 0x5C, 0x07, 0xD5,        // container ID
    0x25, 0x49, 0xB0, 0x01, 0x80, 0x2D, 0x79, 0x43, 0x4C, 0x30,        //
    0x03, 0x10, 0x0B,                                                  // time measurement
    0x12, 0x10, 0x06, 0x00, 0x1A, 0x00, 0x00, 0x00, 0x01,              // Power Delivery
    0x00, 0x01, 0x00, 0x20, 0x01, 0x00, 0x02, 0x00, 0x01,              //
    0x18, 0x10, 0x08, 0x00, 0x06, 0x00, 0x64, 0x00, 0x90, 0x01, 0x00,  // consumer port
    0x00, 0x70, 0x17, 0x00, 0x00, 0x70, 0x17, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
    0x0C, 0x10, 0x09, 0x00, 0x06, 0x00, 0x01, 0x00, 0x2C, 0x91, 0x01, 0x0A,  // provider port
    0x14, 0x10, 0x04, 0x00, 0x11, 0x22, 0x33, 0x44, 0x55, 0x66,              // container ID
    0x77, 0x88, 0x99, 0xAA, 0xBB, 0xCC, 0xDD, 0xEE, 0xFF, 0x00};

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
Bytes const kAudio = {0x09, 0x04, 0x00, 0x00, 0x01, 0x01, 0x01, 0x00, 0x00,                    //
                      0x09, 0x24, 0x01, 0x00, 0x01, 0x1E, 0x00, 0x01, 0x01,                    //
                      0x0C, 0x24, 0x02, 0x01, 0x01, 0x01, 0x00, 0x02, 0x03, 0x00, 0x00, 0x00,  //
                      0x09, 0x24, 0x06, 0x02, 0x01, 0x01, 0x03, 0x00, 0x00,                    //
                      0x07, 0x05, 0x81, 0x03, 0x02, 0x00, 0x10,                                //
                      0x07, 0x25, 0x01, 0x01, 0x00, 0x00, 0x00,                                //
                      0x0C, 0x24, 0x02, 0x04, 0x01, 0x02, 0x00, 0x01, 0x00, 0x00, 0x00, 0x00};

std::vector<std::size_t> OffsetsOf(CDescriptorRange const& whole,
                                   CDescriptorRange::RangeVector const& ranges) {
  std::vector<std::size_t> offsets;
  for (CDescriptorRange const& range : *ranges) {
    offsets.push_back(static_cast<std::size_t>(range.Bytes() - whole.Bytes()));
  }
  return offsets;
}

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

TEST(HasSubtype, ReadsBehindAShortDescriptorWhatStandsThere) {
  ExactBytes const block({0x02, 0x24, 0x09, 0x04});
  EXPECT_TRUE(HasSubtype(block.At(0), 0x24, 0x09));
  EXPECT_FALSE(HasSubtype(block.At(0), 0x24, 0x00));
}

TEST(IsFirstSetting, IsTrueForAlternateSettingZeroOfAnInterface) {
  for (unsigned type = 0; type < 256; ++type) {
    for (unsigned setting = 0; setting < 256; ++setting) {
      ExactBytes const block({0x09, static_cast<Byte>(type), 0x07, static_cast<Byte>(setting), 0x01,
                              0x08, 0x06, 0x50, 0x00});
      ASSERT_EQ(IsFirstSetting(block.At(0)), type == 0x04 && setting == 0x00)
          << type << ", " << setting;
    }
  }
}

TEST(IsFirstSetting, ReadsZeroBehindTheRun) {
  EXPECT_TRUE(IsFirstSetting(ExactBytes({0x02, 0x04}).At(0)));
  EXPECT_TRUE(IsFirstSetting(ExactBytes({0x09, 0x04, 0x07}).At(0)));
  EXPECT_FALSE(IsFirstSetting(ExactBytes({0x04, 0x04, 0x07, 0x01}).At(0)));
  EXPECT_FALSE(IsFirstSetting(ExactBytes({0x04}).At(0)));
  EXPECT_FALSE(IsFirstSetting(Iterator()));
}

TEST(IsFirstSetting, ReadsBehindAShortDescriptorWhatStandsThere) {
  EXPECT_FALSE(IsFirstSetting(ExactBytes({0x02, 0x04, 0x07, 0x05}).At(0)));
  EXPECT_TRUE(IsFirstSetting(ExactBytes({0x02, 0x04, 0x02, 0x00}).At(0)));
  EXPECT_TRUE(IsFirstSetting(ExactBytes({0x01, 0x04, 0x24, 0x00}).At(0)));
}

TEST(ClassSpecificFinder, FindsTheFirstOfItsTypeAndSubtype) {
  ExactBytes const block(kAudio);
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x01)(block.At(0), block.At(65)), Found(true, block.At(9)));
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x02)(block.At(0), block.At(65)), Found(true, block.At(18)));
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x06)(block.At(0), block.At(65)), Found(true, block.At(30)));
  EXPECT_EQ(ClassSpecificFinder(0x25, 0x01)(block.At(0), block.At(65)), Found(true, block.At(46)));
}

TEST(ClassSpecificFinder, LooksFromFirstToLast) {
  ExactBytes const block(kAudio);
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x02)(block.At(18), block.At(65)), Found(true, block.At(18)));
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x02)(block.At(30), block.At(65)), Found(true, block.At(53)));
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x02)(block.At(30), block.At(53)), Found(true, block.At(53)));
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x02)(block.At(18), block.At(18)), Found(true, block.At(18)));
}

TEST(ClassSpecificFinder, SaysTrueWithLastWhenThereIsNone) {
  ExactBytes const block(kAudio);
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x03)(block.At(0), block.At(65)), Found(true, block.At(65)));
  EXPECT_EQ(ClassSpecificFinder(0x25, 0x02)(block.At(0), block.At(65)), Found(true, block.At(65)));
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x01)(Iterator(), Iterator()), Found(true, Iterator()));
}

TEST(ClassSpecificFinder, RaisesOnAZeroLengthBeforeAMatch) {
  ExactBytes const block({0x03, 0x24, 0x01, 0x00, 0x24, 0x02, 0x03, 0x24, 0x03});
  EXPECT_EQ(ClassSpecificFinder(0x24, 0x02)(block.At(0), block.At(9)), Found(true, block.At(3)));
  EXPECT_RUN_TIME_EXCEPTION(ClassSpecificFinder(0x24, 0x03)(block.At(0), block.At(9)), kZeroLength,
                            kInternalError);
}

TEST(ClassSpecificFinder, ReadsNothingBehindTheRun) {
  for (std::size_t length = 0; length <= kAudio.size(); ++length) {
    ExactBytes const block(Bytes(kAudio.begin(), kAudio.begin() + static_cast<int>(length)));
    for (unsigned subtype = 0; subtype < 256; ++subtype) {
      for (Byte const type : {Byte{0x24}, Byte{0x25}}) {
        auto const subtypeByte = static_cast<Byte>(subtype);
        Found const found =
            ClassSpecificFinder(type, subtypeByte)(block.At(0), block.At(block.size()));
        EXPECT_TRUE(found.first);
        auto const at = static_cast<std::size_t>(found.second - block.At(0));
        ASSERT_LE(at, length);
        if (at != length) {
          ASSERT_LE(at + 3, length);
          ASSERT_EQ(block.data()[at + 1], type);
          ASSERT_EQ(block.data()[at + 2], subtypeByte);
        }
      }
    }
  }
}

class Finders : public testing_support::SuiteTest {
 protected:
  ExactBytes bos_{kBos};
  ExactBytes audio_{kAudio};
};

TEST_F(Finders, ServeTheOperationsOfARange) {
  CDescriptorRange const range = audio_.Range();
  ClassSpecificFinder const terminals(0x24, 0x02);
  EXPECT_EQ(range.Count(terminals, CDescriptorRange::AlwaysTrue), 2);
  EXPECT_THAT(OffsetsOf(range, range.GetSubRanges(terminals, CDescriptorRange::AlwaysTrue)),
              ElementsAre(18, 53));
  CDescriptorRange const first = range.SubRange(terminals, CDescriptorRange::AlwaysTrue);
  EXPECT_EQ(first.Bytes(), audio_.data() + 18);
  EXPECT_EQ(first.Length(), 12);
  CDescriptorRange const toNext = range.SubRange(terminals, terminals);
  EXPECT_EQ(toNext.Bytes(), audio_.data() + 18);
  EXPECT_EQ(toNext.Length(), 35);
  EXPECT_TRUE(
      range.SubRange(ClassSpecificFinder(0x24, 0x09), CDescriptorRange::AlwaysTrue).IsEmpty());
  EXPECT_EQ(range.Count(CRangeSelector(ClassSpecificFinder(0x25, 0x01), terminals)), 1);
  RangePredicate const isTerminal = [](Iterator const& it) { return HasSubtype(it, 0x24, 0x02); };
  EXPECT_THAT(OffsetsOf(range, range.GetSubRanges(CRangeSelector(isTerminal))),
              ElementsAre(18, 53));
  RangePredicate const isInterface = [](Iterator const& it) { return IsFirstSetting(it); };
  EXPECT_EQ(range.Count(isInterface), 1);
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(Finders, CapabilitiesAreFoundByTheirType) {
  CDescriptorRange const range = bos_.Range();
  for (Place const& place : kPlaces) {
    CDescriptorRange const found =
        range.SubRange(CapabilityFinder(place.type), CDescriptorRange::AlwaysTrue);
    EXPECT_EQ(found.Bytes(), bos_.data() + place.offset) << int{place.type};
    EXPECT_EQ(found.Length(), place.length) << int{place.type};
    EXPECT_EQ(range.Count(CapabilityFinder(place.type), CDescriptorRange::AlwaysTrue),
              place.type == 0x04 ? 2 : 1);
  }
  EXPECT_THAT(
      OffsetsOf(range, range.GetSubRanges(CapabilityFinder(0x04), CDescriptorRange::AlwaysTrue)),
      ElementsAre(22, 99));
  EXPECT_EQ(range.Count(CapabilityFinder(0x07), CDescriptorRange::AlwaysTrue), 0);
}

TEST_F(Finders, OnlyDeviceCapabilitiesAreCapabilities) {
  ExactBytes const block({0x05, 0x0F, 0x02, 0x00, 0x00, 0x03, 0x11, 0x02, 0x03, 0x10, 0x02});
  EXPECT_EQ(CapabilityFinder(0x02)(block.At(0), block.At(11)), Found(true, block.At(8)));
}

TEST_F(Finders, FindCapabilityGivesTheFirstOfItsType) {
  CDescriptorRange const range = bos_.Range();
  for (unsigned type = 0; type < 256; ++type) {
    CDescriptorRange const found = FindCapability(range, static_cast<Byte>(type));
    Place const* expected = nullptr;
    for (Place const& place : kPlaces) {
      expected = place.type == type ? &place : expected;
    }
    ASSERT_EQ(found.IsEmpty(), expected == nullptr) << type;
    if (expected != nullptr) {
      EXPECT_EQ(found.Bytes(), bos_.data() + expected->offset) << type;
      EXPECT_EQ(found.Length(), expected->length) << type;
    }
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(Finders, FindCapabilityFindsNothingInAnEmptyRange) {
  EXPECT_TRUE(FindCapability(CDescriptorRange(), 0x00).IsEmpty());
  EXPECT_TRUE(FindCapability(CDescriptorRange(), 0x04).IsEmpty());
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

TEST_F(Finders, FindCapabilityStaysInsideARunOfAnyLength) {
  for (std::size_t length = 0; length <= kBos.size(); ++length) {
    ExactBytes const block(Bytes(kBos.begin(), kBos.begin() + static_cast<int>(length)));
    CDescriptorRange const range = block.Range();
    for (Place const& place : kPlaces) {
      CDescriptorRange const found = FindCapability(range, place.type);
      bool const isThere = place.offset + place.length <= length;
      ASSERT_EQ(found.IsEmpty(), !isThere) << length << ", " << int{place.type};
      if (isThere) {
        ASSERT_EQ(found.Bytes(), block.data() + place.offset);
        ASSERT_EQ(found.Length(), place.length);
      }
    }
  }
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
