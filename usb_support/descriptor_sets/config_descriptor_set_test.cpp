// What the lists hold is compared with a model in tests/property/function_list_test.cpp.
#include <usb_support/descriptor_sets/config_descriptor_set.h>

#include <cstddef>
#include <functional>

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
using testing_support::InvalidRange;
using testing_support::Joined;
using testing_support::Piece;
using testing_support::PiecesOf;
using testing_support::Put;

Bytes const kConfiguration = Hex("09 02 00 00 01 01 00 80 32");
Bytes const kInterface0 = Hex("09 04 00 00 01 03 00 00 00");

using ConfigDescriptorSet = testing_support::SuiteTest;

void ExpectMeans(CConfigDescriptorSet const& set, unsigned index, bool otherSpeed) {
  EXPECT_EQ(set.ConfigIndex(), index);
  EXPECT_EQ(set.OtherSpeed(), otherSpeed);
}

TEST_F(ConfigDescriptorSet, MeansTheGivenConfiguration) {
  ExpectMeans({}, 0xFF, false);
  ExpectMeans(static_cast<unsigned char>(3), 3, false);
  CConfigDescriptorSet set;
  set.ConfigIndex(4);
  ExpectMeans(set, 4, false);
  set.OtherSpeed(true);
  ExpectMeans(set, 4, true);
  set.OtherSpeed(false);
  ExpectMeans(set, 4, false);
}

TEST_F(ConfigDescriptorSet, NoChangeOfBytesChangesWhatItMeans) {
  ExactBytes const source(kConfiguration);
  std::function<void(CConfigDescriptorSet&)> const changes[] = {
      [](auto& set) { set.Reset(); },
      [&](auto& set) { set.Reset(source.data(), 9); },
      [](auto& set) { set.Reset(set.begin() + 1, set.end()); },
      [](auto& set) { set.Reset(set.end(), set.begin()); },
      [&](auto& set) { set.SetDescriptor(source.data(), 9); },
      [](auto& set) { set = *&set; },
      [](auto& set) { CConfigDescriptorSet const other(static_cast<CConfigDescriptorSet&&>(set)); },
  };
  for (auto const& change : changes) {
    CConfigDescriptorSet set(7);
    set.OtherSpeed(true);
    Put(set, Joined({kConfiguration, kInterface0}));
    change(set);
    ExpectMeans(set, 7, true);
  }
}

TEST_F(ConfigDescriptorSet, CopiesAndMovesMeanTheSame) {
  CConfigDescriptorSet set(7);
  set.OtherSpeed(true);
  ExpectMeans(CConfigDescriptorSet(set), 7, true);
  CConfigDescriptorSet assigned(1);
  assigned = set;
  ExpectMeans(assigned, 7, true);
  assigned = CConfigDescriptorSet(2);
  ExpectMeans(assigned, 2, false);
  ExpectMeans(CConfigDescriptorSet(static_cast<CConfigDescriptorSet&&>(set)), 7, true);
}

TEST_F(ConfigDescriptorSet, ListsInterfacesAndFunctions) {
  // At 0, 9, 17, 26, 33, 42 and 51; end 58: an association gathers two interfaces.
  CConfigDescriptorSet set;
  Put(set, Joined({kConfiguration, Hex("08 0B 00 02 0E 03 00 00"), kInterface0,
                   Hex("07 05 81 03 08 00 0A"), Hex("09 04 01 00 01 03 00 00 00"),
                   Hex("09 04 02 00 01 03 00 00 00"), Hex("07 05 82 03 08 00 0A")}));
  auto const functions = set.GetFunctionList();
  auto const interfaces = set.GetInterfaceList();
  EXPECT_THAT(PiecesOf(set, functions), ElementsAre(Piece(9, 33), Piece(42, 16)));
  EXPECT_THAT(PiecesOf(set, interfaces), ElementsAre(Piece(17, 16), Piece(33, 9), Piece(42, 16)));
  EXPECT_TRUE(functions.get_deleter());
  EXPECT_LE(functions->capacity(), set.Length());
  EXPECT_LE(interfaces->capacity(), set.Length());
  // Only what the range covers counts.
  set.Reset(set.begin() + 5, set.end());
  EXPECT_THAT(PiecesOf(set, set.GetFunctionList()), ElementsAre(Piece(0, 16)));
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(ConfigDescriptorSet, ListsLogAnInvalidRange) {
  CConfigDescriptorSet set;
  Put(set, Joined({kConfiguration, kInterface0, Hex("00 05"), kInterface0}));
  EXPECT_THAT(PiecesOf(set, set.GetInterfaceList()), ElementsAre(Piece(9, 9)));
  EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 18)));
  EXPECT_THAT(PiecesOf(set, set.GetFunctionList()), ElementsAre(Piece(9, 9)));
  EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 18)));
}

TEST_F(ConfigDescriptorSet, ListsSpanTheLongestConfiguration) {
  // Interfaces of 2 bytes whose number and setting are the length 2 and type 0 of the next.
  Bytes bytes = kConfiguration;
  while (bytes.size() + 4 <= 0xFFFF) {
    bytes.insert(bytes.end(), {0x02, 0x04, 0x02, 0x00});
  }
  bytes.insert(bytes.end(), {0x02, 0x0B});
  CConfigDescriptorSet set;
  Put(set, bytes);
  auto const interfaces = PiecesOf(set, set.GetInterfaceList());
  EXPECT_EQ(interfaces.size(), 16381u);
  EXPECT_EQ(interfaces.back(), Piece(0xFFFF - 6, 4));
  EXPECT_THAT(PiecesOf(set, set.GetFunctionList()),
              ElementsAre(Piece(9, 65524), Piece(0xFFFF - 2, 2)));
}

}  // namespace
}  // namespace usb_support
