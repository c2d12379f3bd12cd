#include <usb_support/descriptor_sets/config_descriptor_set.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <functional>
#include <initializer_list>
#include <memory>
#include <string>
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
using testing_support::MakeDescriptor;
using testing_support::Print;

using Iterator = CDescriptorRangeIterator;
using Piece = std::pair<std::size_t, std::size_t>;  // offset and length

Bytes const kConfiguration = {0x09, 0x02, 0x00, 0x00, 0x01, 0x01, 0x00, 0x80, 0x32};
Bytes const kEndpoint = {0x07, 0x05, 0x81, 0x03, 0x08, 0x00, 0x0A};
Bytes const kHid = {0x09, 0x21, 0x11, 0x01, 0x00, 0x01, 0x22, 0x41, 0x00};

Bytes Interface(unsigned char number, unsigned char setting = 0) {
  return {0x09, 0x04, number, setting, 0x01, 0x03, 0x00, 0x00, 0x00};
}

Bytes Association(unsigned char first, unsigned char count) {
  return {0x08, 0x0B, first, count, 0x0E, 0x03, 0x00, 0x00};
}

// A copy, as a set that is moved to need not hold anything.
CConfigDescriptorSet SetOf(Bytes const& bytes) {
  ExactBytes const source(bytes);
  CConfigDescriptorSet set;
  set.SetDescriptor(source.data(), static_cast<unsigned short>(source.size()));
  CConfigDescriptorSet const& filled = set;
  return {filled};
}

CConfigDescriptorSet SetOf(std::initializer_list<Bytes> parts) {
  return SetOf(Joined(parts));
}

Bytes BytesOf(CDescriptorRange const& range) {
  return {range.Bytes(), range.Bytes() + range.Length()};
}

std::vector<Piece> PiecesOf(CDescriptorRange const& whole,
                            CDescriptorRange::RangeVector const& ranges) {
  std::vector<Piece> pieces;
  for (CDescriptorRange const& range : *ranges) {
    EXPECT_TRUE(range.SubRangeOf(whole));
    pieces.emplace_back(static_cast<std::size_t>(range.Bytes() - whole.Bytes()), range.Length());
  }
  return pieces;
}

std::vector<Piece> Interfaces(CConfigDescriptorSet& set) {
  return PiecesOf(set, set.GetInterfaceList());
}

std::vector<Piece> Functions(CConfigDescriptorSet& set) {
  return PiecesOf(set, set.GetFunctionList());
}

// Sixteen digits of the low 32 bits of an address.
std::string Digits(void const* address) {
  char digits[17];
  std::snprintf(digits, sizeof(digits), "00000000%08X",
                static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(address)));
  return digits;
}

standalone::RecordedCall InvalidRange(CDescriptorRange const& range, std::size_t validLength) {
  return Print(0, "Descriptor Range is not valid.\n  End of last valid descriptor:  0x" +
                      Digits(range.Bytes() + validLength) + ".\n  End of Descriptor Range 0x" +
                      Digits(range.Bytes() + range.Length()) + ".\n");
}

class StoringSet : public CConfigDescriptorSet {
 public:
  using CConfigDescriptorSet::CConfigDescriptorSet;
  using CConfigDescriptorSet::HasDeviceDescriptor;
  using CConfigDescriptorSet::StoreDeviceDescriptor;
};

template <typename Set>
concept GivesLists = requires(Set& set) {
  set.GetInterfaceList();
  set.GetFunctionList();
};

using ConfigDescriptorSet = testing_support::SuiteTest;

TEST_F(ConfigDescriptorSet, StandsForNoConfigurationAtFirst) {
  CConfigDescriptorSet const set;
  EXPECT_EQ(set.ConfigIndex(), 0xFF);
  EXPECT_FALSE(set.OtherSpeed());
  EXPECT_TRUE(set.IsEmpty());
}

TEST_F(ConfigDescriptorSet, StandsForTheIndexItIsMadeWith) {
  for (unsigned index = 0; index < 256; ++index) {
    CConfigDescriptorSet const set(static_cast<unsigned char>(index));
    EXPECT_EQ(set.ConfigIndex(), index);
    EXPECT_FALSE(set.OtherSpeed());
    EXPECT_TRUE(set.IsEmpty());
  }
}

TEST_F(ConfigDescriptorSet, IsMadeOfAnIndex) {
  static_assert(std::is_convertible_v<unsigned char, CConfigDescriptorSet>);
  CConfigDescriptorSet const set = static_cast<unsigned char>(3);
  EXPECT_EQ(set.ConfigIndex(), 3);
}

TEST_F(ConfigDescriptorSet, IndexAndSpeedChangeNothingElse) {
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0)});
  Bytes const bytes = BytesOf(set);
  unsigned char const* const address = set.Bytes();
  set.ConfigIndex(3);
  EXPECT_EQ(set.ConfigIndex(), 3);
  EXPECT_FALSE(set.OtherSpeed());
  set.OtherSpeed(true);
  EXPECT_TRUE(set.OtherSpeed());
  EXPECT_EQ(set.ConfigIndex(), 3);
  set.OtherSpeed(false);
  EXPECT_FALSE(set.OtherSpeed());
  EXPECT_EQ(set.Bytes(), address);
  EXPECT_EQ(BytesOf(set), bytes);
}

TEST_F(ConfigDescriptorSet, IndexAndSpeedOutliveTheBytes) {
  ExactBytes const source(kConfiguration);
  std::function<void(CConfigDescriptorSet&)> const changes[] = {
      [](CConfigDescriptorSet& set) { set.Reset(); },
      [&](CConfigDescriptorSet& set) { set.Reset(source.data(), 9); },
      [&](CConfigDescriptorSet& set) { set.Reset(source.At(0), source.At(9)); },
      [](CConfigDescriptorSet& set) { set.Reset(set.begin() + 1, set.end()); },
      [](CConfigDescriptorSet& set) { set.Reset(set.end(), set.begin()); },
      [&](CConfigDescriptorSet& set) { set.SetDescriptor(source.data(), 9); },
  };
  for (auto const& change : changes) {
    CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0)});
    set.ConfigIndex(7);
    set.OtherSpeed(true);
    change(set);
    EXPECT_EQ(set.ConfigIndex(), 7);
    EXPECT_TRUE(set.OtherSpeed());
  }
}

TEST_F(ConfigDescriptorSet, CopiesStandForTheSameConfiguration) {
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0)});
  set.ConfigIndex(7);
  set.OtherSpeed(true);
  CConfigDescriptorSet const copy(set);
  EXPECT_EQ(copy.ConfigIndex(), 7);
  EXPECT_TRUE(copy.OtherSpeed());
  EXPECT_EQ(BytesOf(copy), BytesOf(set));
  CConfigDescriptorSet assigned(1);
  assigned = set;
  EXPECT_EQ(assigned.ConfigIndex(), 7);
  EXPECT_TRUE(assigned.OtherSpeed());
  assigned = CConfigDescriptorSet(2);
  EXPECT_EQ(assigned.ConfigIndex(), 2);
  EXPECT_FALSE(assigned.OtherSpeed());
  CConfigDescriptorSet const& same = set;
  set = same;
  EXPECT_EQ(set.ConfigIndex(), 7);
  EXPECT_TRUE(set.OtherSpeed());
}

// The reset of a source leaves its index and speed.
TEST_F(ConfigDescriptorSet, MovedSetsStandForTheSameConfiguration) {
  StoringSet set(7);
  set.OtherSpeed(true);
  set.StoreDeviceDescriptor({});
  StoringSet const constructed(static_cast<StoringSet&&>(set));
  EXPECT_EQ(constructed.ConfigIndex(), 7);
  EXPECT_TRUE(constructed.OtherSpeed());
  EXPECT_FALSE(constructed.HasDeviceDescriptor());
  // NOLINTBEGIN(clang-analyzer-cplusplus.Move): the source is looked at on purpose
  EXPECT_EQ(set.ConfigIndex(), 7);
  EXPECT_TRUE(set.OtherSpeed());
  CConfigDescriptorSet assigned;
  assigned = static_cast<CConfigDescriptorSet&&>(set);
  EXPECT_EQ(set.ConfigIndex(), 7);
  EXPECT_TRUE(set.OtherSpeed());
  // NOLINTEND(clang-analyzer-cplusplus.Move)
  EXPECT_EQ(assigned.ConfigIndex(), 7);
  EXPECT_TRUE(assigned.OtherSpeed());
}

TEST_F(ConfigDescriptorSet, ReadersAskForWhatTheSetStandsFor) {
  class Reader : public CConfigDescriptorSet {
   public:
    using CConfigDescriptorSet::CConfigDescriptorSet;
    RETURN_CODE Read() { return DoReadDescriptor(); }

   protected:
    RETURN_CODE DoReadDescriptor() override {
      testing_support::Bytes bytes = kConfiguration;
      bytes[1] = OtherSpeed() ? 0x07 : 0x02;
      bytes[5] = static_cast<unsigned char>(ConfigIndex() + 1);
      ExactBytes const source(bytes);
      Reset(source.data(), 9);
      return RC_SUCCESS;
    }
  };
  Reader reader(2);
  reader.OtherSpeed(true);
  EXPECT_EQ(reader.Read(), RC_SUCCESS);
  EXPECT_EQ(reader.Descriptor()->bDescriptorType, 0x07);
  EXPECT_EQ(reader.Descriptor()->bConfigurationValue, 3);
}

// The lists

TEST_F(ConfigDescriptorSet, ListsAreOwnedByTheirPointers) {
  using List = std::unique_ptr<std::vector<CDescriptorRange>,
                               std::function<void(std::vector<CDescriptorRange>*)>>;
  static_assert(
      std::is_same_v<decltype(std::declval<CConfigDescriptorSet&>().GetInterfaceList()), List>);
  static_assert(
      std::is_same_v<decltype(std::declval<CConfigDescriptorSet&>().GetFunctionList()), List>);
  static_assert(GivesLists<CConfigDescriptorSet>);
  static_assert(!GivesLists<CConfigDescriptorSet const>);
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0)});
  EXPECT_TRUE(set.GetInterfaceList().get_deleter());
  EXPECT_TRUE(set.GetFunctionList().get_deleter());
}

TEST_F(ConfigDescriptorSet, ListsHaveNoMoreRoomThanOneRangeForEachByte) {
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0)});
  EXPECT_LE(set.GetInterfaceList()->capacity(), set.Length());
  EXPECT_LE(set.GetFunctionList()->capacity(), set.Length());
}

TEST_F(ConfigDescriptorSet, ListsOfAnEmptySetAreEmpty) {
  CConfigDescriptorSet set;
  EXPECT_THAT(Interfaces(set), IsEmpty());
  EXPECT_THAT(Functions(set), IsEmpty());
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(ConfigDescriptorSet, ListsWithoutInterfacesAreEmpty) {
  for (Bytes const& bytes : {kConfiguration, Joined({kConfiguration, kEndpoint, kHid}),
                             Joined({kConfiguration, Interface(0, 1), kEndpoint})}) {
    CConfigDescriptorSet set = SetOf(bytes);
    EXPECT_THAT(Interfaces(set), IsEmpty());
    EXPECT_THAT(Functions(set), IsEmpty());
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(ConfigDescriptorSet, EachInterfaceIsAFunctionWithoutAssociations) {
  // At 0, 9, 18, 27, 34 and 43; end 50.
  CConfigDescriptorSet set =
      SetOf({kConfiguration, Interface(0), kHid, kEndpoint, Interface(1), kEndpoint});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 25), Piece(34, 16)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 25), Piece(34, 16)));
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(ConfigDescriptorSet, AnAssociationGathersItsInterfaces) {
  // At 0, 9, 17, 26, 33, 42 and 51; end 58.
  CConfigDescriptorSet set = SetOf({kConfiguration, Association(0, 2), Interface(0), kEndpoint,
                                    Interface(1), Interface(2), kEndpoint});
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 33), Piece(42, 16)));
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(17, 16), Piece(33, 9), Piece(42, 16)));
}

TEST_F(ConfigDescriptorSet, OtherSettingsStayWithTheirInterface) {
  // At 0, 9, 18, 25, 34, 41, 50 and 59; end 66.
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0), kEndpoint, Interface(0, 1),
                                    kEndpoint, Interface(0, 2), Interface(1), kEndpoint});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 41), Piece(50, 16)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 41), Piece(50, 16)));
}

TEST_F(ConfigDescriptorSet, OtherSettingsBeforeTheFirstBelongToNothing) {
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0, 1), kEndpoint, Interface(0)});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(25, 9)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(25, 9)));
}

TEST_F(ConfigDescriptorSet, AnAssociationEndsTheInterfaceBeforeIt) {
  // At 0, 9, 18, 25, 33 and 40; end 49. The endpoint behind the association is no interface's.
  CConfigDescriptorSet set =
      SetOf({kConfiguration, Interface(0), kEndpoint, Association(1, 1), kEndpoint, Interface(1)});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 16), Piece(40, 9)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 16), Piece(25, 24)));
}

TEST_F(ConfigDescriptorSet, AnAssociationEndsTheFunctionBeforeIt) {
  // At 0, 9, 17, 26, 34 and 43; end 52. The first announces more than comes.
  CConfigDescriptorSet set = SetOf({kConfiguration, Association(0, 5), Interface(0),
                                    Association(1, 1), Interface(1), Interface(2)});
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 17), Piece(26, 17), Piece(43, 9)));
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(17, 9), Piece(34, 9), Piece(43, 9)));
}

TEST_F(ConfigDescriptorSet, AssociationsAloneAreFunctions) {
  CConfigDescriptorSet set = SetOf({Association(0, 1), Association(1, 1), kEndpoint});
  EXPECT_THAT(Functions(set), ElementsAre(Piece(0, 8), Piece(8, 15)));
  EXPECT_THAT(Interfaces(set), IsEmpty());
}

TEST_F(ConfigDescriptorSet, AnAssociationOfNoInterfacesEndsAtItsFirst) {
  CConfigDescriptorSet set =
      SetOf({kConfiguration, Association(1, 0), kEndpoint, Interface(1), Interface(2)});
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 15), Piece(24, 9), Piece(33, 9)));
}

TEST_F(ConfigDescriptorSet, AnInterfaceThatDoesNotFollowOnStaysInTheFunction) {
  // Announced twice, and numbers that skip: all in the function of interface 0, up to interface 1.
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0), Interface(0), Interface(2),
                                    Interface(255), Interface(1), Interface(3)});
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 36), Piece(45, 18)));
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 9), Piece(18, 9), Piece(27, 9), Piece(36, 9),
                                           Piece(45, 9), Piece(54, 9)));
}

TEST_F(ConfigDescriptorSet, InterfaceNumbersFollowOnModulo256) {
  CConfigDescriptorSet interfaces = SetOf({Interface(254), Interface(255), Interface(0)});
  EXPECT_THAT(Functions(interfaces), ElementsAre(Piece(0, 9), Piece(9, 9), Piece(18, 9)));
  CConfigDescriptorSet association =
      SetOf({Association(254, 4), Interface(254), Interface(255), Interface(0), Interface(1),
             Interface(2), Interface(3)});
  EXPECT_THAT(Functions(association), ElementsAre(Piece(0, 44), Piece(44, 9), Piece(53, 9)));
  CConfigDescriptorSet most = SetOf({Association(255, 255), Interface(253), Interface(254)});
  EXPECT_THAT(Functions(most), ElementsAre(Piece(0, 17), Piece(17, 9)));
}

TEST_F(ConfigDescriptorSet, ListsLookAtTheWholeRange) {
  // Behind a wTotalLength of 9 there is more; what the range covers counts.
  Bytes configuration = kConfiguration;
  configuration[2] = 0x09;
  CConfigDescriptorSet set = SetOf({configuration, Interface(0), Interface(1)});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 9), Piece(18, 9)));
  set.Reset(set.begin() + 2, set.end());
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(0, 9)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(0, 9)));
}

TEST_F(ConfigDescriptorSet, ListsMayBeTakenAgain) {
  CConfigDescriptorSet set = SetOf({kConfiguration, Association(0, 1), Interface(0), Interface(1)});
  for (int round = 0; round < 3; ++round) {
    EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 17), Piece(26, 9)));
    EXPECT_THAT(Interfaces(set), ElementsAre(Piece(17, 9), Piece(26, 9)));
  }
}

TEST_F(ConfigDescriptorSet, ListsEndAtAZeroLength) {
  CConfigDescriptorSet set = SetOf(
      {kConfiguration, Interface(0), kEndpoint, {0x00, 0x05}, Interface(1), Association(2, 1)});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 16)));
  EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 25)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 16)));
  EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 25)));
}

TEST_F(ConfigDescriptorSet, ListsEndAtADescriptorThatIsCutShort) {
  Bytes cut = Interface(1);
  cut.resize(8);
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0), kEndpoint, cut});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 16)));
  EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 25)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 16)));
  EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 25)));
}

TEST_F(ConfigDescriptorSet, ListsWithoutAValidDescriptorAreEmpty) {
  for (Bytes const& bytes : {Bytes(9), Bytes{0x09, 0x04}, Bytes{0x09, 0x0B}, Bytes{0x02}}) {
    CConfigDescriptorSet set = SetOf(bytes);
    EXPECT_THAT(Interfaces(set), IsEmpty());
    EXPECT_THAT(Functions(set), IsEmpty());
    EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 0), InvalidRange(set, 0)));
  }
}

// Fields that a short descriptor does not have

TEST_F(ConfigDescriptorSet, FieldsBehindTheRunReadAsZero) {
  // The last interface has number 0 and setting 0.
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(255), {0x02, 0x04}});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 9), Piece(18, 2)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 9), Piece(18, 2)));
  CConfigDescriptorSet other = SetOf({kConfiguration, Interface(0), {0x02, 0x04}});
  EXPECT_THAT(Interfaces(other), ElementsAre(Piece(9, 9), Piece(18, 2)));
  EXPECT_THAT(Functions(other), ElementsAre(Piece(9, 11)));
  // With its number but without its setting.
  CConfigDescriptorSet numbered = SetOf({kConfiguration, Interface(6), {0x03, 0x04, 0x07}});
  EXPECT_THAT(Functions(numbered), ElementsAre(Piece(9, 9), Piece(18, 3)));
}

TEST_F(ConfigDescriptorSet, FieldsBehindADescriptorReadAsTheyStandInTheRun) {
  // Number and setting are the next descriptor's length and type: 2 and 0, and 7 and 5.
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(1), {0x02, 0x04}, {0x02, 0x00}});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 9), Piece(18, 4)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 9), Piece(18, 4)));
  CConfigDescriptorSet other = SetOf({kConfiguration, Interface(6), {0x02, 0x04}, kEndpoint});
  EXPECT_THAT(Interfaces(other), ElementsAre(Piece(9, 18)));
  EXPECT_THAT(Functions(other), ElementsAre(Piece(9, 18)));
  // An association of first interface 9, count 4.
  CConfigDescriptorSet association =
      SetOf({kConfiguration, {0x02, 0x0B}, Interface(12), Interface(13)});
  EXPECT_THAT(Functions(association), ElementsAre(Piece(9, 11), Piece(20, 9)));
}

TEST_F(ConfigDescriptorSet, FieldsAreReadInTheInvalidPartOfTheRunToo) {
  // The setting of the last valid descriptor stands behind the valid part: 1, then 0.
  CConfigDescriptorSet second = SetOf({kConfiguration, {0x02, 0x04}, {0x00, 0x01}});
  EXPECT_THAT(Interfaces(second), IsEmpty());
  EXPECT_THAT(Functions(second), IsEmpty());
  CConfigDescriptorSet first = SetOf({kConfiguration, {0x02, 0x04}, {0x00, 0x00}});
  EXPECT_THAT(Interfaces(first), ElementsAre(Piece(9, 2)));
  EXPECT_THAT(Functions(first), ElementsAre(Piece(9, 2)));
  // So does its number: 0x10 of a descriptor that is too long.
  CConfigDescriptorSet numbered =
      SetOf({kConfiguration, Interface(0x0F), {0x02, 0x04}, {0x10, 0x00}});
  EXPECT_THAT(Functions(numbered), ElementsAre(Piece(9, 9), Piece(18, 2)));
}

TEST_F(ConfigDescriptorSet, ADescriptorOfOneByteTakesItsTypeFromTheNext) {
  // The next descriptor's length stands for its type, the next's type for its number and so on.
  CConfigDescriptorSet set = SetOf({kConfiguration, {0x01}, {0x04, 0x24, 0x00, 0x00}});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 5)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 5)));
  CConfigDescriptorSet association =
      SetOf({kConfiguration, Interface(0), {0x01}, MakeDescriptor(11, 0x24)});
  EXPECT_THAT(Interfaces(association), ElementsAre(Piece(9, 9)));
  EXPECT_THAT(Functions(association), ElementsAre(Piece(9, 9), Piece(18, 12)));
}

TEST_F(ConfigDescriptorSet, ALastByteWithoutATypeIsNoStart) {
  CConfigDescriptorSet set = SetOf({kConfiguration, Interface(0), {0x01}});
  EXPECT_THAT(Interfaces(set), ElementsAre(Piece(9, 10)));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 10)));
  CConfigDescriptorSet alone = SetOf(Bytes{0x01});
  EXPECT_THAT(Interfaces(alone), IsEmpty());
  EXPECT_THAT(Functions(alone), IsEmpty());
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(ConfigDescriptorSet, ListsSpanTheLongestConfiguration) {
  // Interfaces of 2 bytes whose number and setting are the length 2 and type 0 of the next.
  Bytes bytes = kConfiguration;
  while (bytes.size() + 4 <= 0xFFFF) {
    bytes.insert(bytes.end(), {0x02, 0x04, 0x02, 0x00});
  }
  bytes.insert(bytes.end(), {0x02, 0x0B});
  ASSERT_EQ(bytes.size(), 0xFFFFu);
  CConfigDescriptorSet set = SetOf(bytes);
  std::vector<Piece> const interfaces = Interfaces(set);
  EXPECT_EQ(interfaces.size(), 16381u);
  EXPECT_EQ(interfaces.front(), Piece(9, 4));
  EXPECT_EQ(interfaces.back(), Piece(0xFFFF - 6, 4));
  EXPECT_THAT(Functions(set), ElementsAre(Piece(9, 65524), Piece(0xFFFF - 2, 2)));
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

// Each descriptor is asked about once as a start and once as an end at most.
TEST_F(ConfigDescriptorSet, CuttingByAPredicateIsLinearInTheDescriptors) {
  Bytes bytes = kConfiguration;
  while (bytes.size() + 2 <= 0xFFFF) {
    bytes.insert(bytes.end(), {0x02, static_cast<unsigned char>(bytes.size() % 3 == 0 ? 4 : 5)});
  }
  CConfigDescriptorSet const set = SetOf(bytes);
  std::size_t const descriptors = 32764;
  std::size_t asked = 0;
  auto const expectLinear = [&](std::size_t ranges, auto const& matches) {
    RangePredicate const predicate = [&](Iterator const& it) {
      ++asked;
      return matches(it->bDescriptorType);
    };
    asked = 0;
    EXPECT_EQ(set.GetSubRanges(CRangeSelector(predicate))->size(), ranges);
    EXPECT_GE(asked, descriptors);
    EXPECT_LE(asked, 2 * descriptors);
    asked = 0;
    EXPECT_EQ(set.Count(predicate), ranges);
    EXPECT_LE(asked, 2 * descriptors);
  };
  expectLinear(10921, [](unsigned type) { return type == 4; });
  expectLinear(32764, [](unsigned) { return true; });
  expectLinear(0, [](unsigned) { return false; });
  expectLinear(1, [](unsigned type) { return type == 2; });
}

}  // namespace
}  // namespace usb_support
