#include <usb_support/descriptors/walk.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <type_traits>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/property/run_generator.h>
#include <tests/support/allocation_counter.h>
#include <tests/support/exact_bytes.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/descriptors/range_diagnosis.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::Part;

// A SuperSpeed audio and storage device: interface 0 without and with an endpoint, interface 1 with
// two alternate settings, the second with companions of both kinds.
// Configuration at 0, association 9, interface 0 17 and 26, class-specific 35, endpoint 42 with a
// companion 49, interface 1 55 with an endpoint 64, and 71 with an endpoint 80, class-specific 87 and
// companions 91 and 97.
Bytes const kConfiguration =
    Hex("09 02 69 00 02 01 00 80 32  08 0B 00 01 01 00 00 00  09 04 00 00 00 01 02 00 00"
        "09 04 00 01 01 01 02 00 00  07 24 01 01 01 01 00  07 05 01 05 C8 00 04"
        "06 30 00 00 C8 00  09 04 01 00 01 08 06 50 00  07 05 82 02 00 04 00"
        "09 04 01 01 01 08 06 62 00  07 05 83 05 00 04 01  04 25 01 00"
        "06 30 0F 80 00 00  08 31 00 00 00 80 01 00");

template <typename View>
std::vector<unsigned> Offsets(View const& view) {
  std::vector<unsigned> offsets;
  for (Descriptor const d : view) {
    offsets.push_back(d.Offset());
  }
  return offsets;
}

using ViewOfAll = decltype(Walk(CDescriptorRange()));
static_assert(std::forward_iterator<ViewOfAll::Iterator>);
static_assert(std::is_trivially_copyable_v<Descriptor>);
static_assert(std::is_trivially_copyable_v<ViewOfAll>);

template <typename Range>
concept Walkable = requires(Range&& range) {
  Walk(static_cast<Range&&>(range));
};
static_assert(Walkable<CDescriptorRange>);
static_assert(Walkable<CConfigDescriptorSet&>);
static_assert(Walkable<CConfigDescriptorSet const&>);
static_assert(!Walkable<CConfigDescriptorSet>, "its bytes would end with it");

TEST(Walk, VisitsEveryDescriptorInOrder) {
  ExactBytes const run(kConfiguration);
  EXPECT_THAT(Offsets(Walk(run.Range())),
              ElementsAre(0, 9, 17, 26, 35, 42, 49, 55, 64, 71, 80, 87, 91, 97));
}

TEST(Walk, VisitsTheDescriptorsOfOneType) {
  ExactBytes const run(kConfiguration);
  EXPECT_THAT(Offsets(Walk(run.Range(), kEndpointType)), ElementsAre(42, 64, 80));
  EXPECT_THAT(Offsets(Walk(run.Range(), kHubType)), IsEmpty());
}

TEST(Walk, VisitsNothingInAnEmptyRange) {
  EXPECT_TRUE(Walk(CDescriptorRange()).empty());
  EXPECT_FALSE(Walk(CDescriptorRange()).front());
}

TEST(Walk, VisitsASetByItsName) {
  CConfigDescriptorSet set;
  set.SetDescriptor(kConfiguration.data(), static_cast<unsigned short>(kConfiguration.size()));
  EXPECT_THAT(Offsets(Walk(set, kInterfaceType)), ElementsAre(17, 26, 55, 71));
}

TEST(Walk, EndsWhereTheValidPartEnds) {
  for (std::size_t length = 0; length <= kConfiguration.size(); ++length) {
    ExactBytes const run(Part(kConfiguration, 0, length));
    unsigned end = 0;
    for (Descriptor const d : Walk(run.Range())) {
      EXPECT_EQ(d.Offset(), end);
      end += d.Length();
    }
    EXPECT_EQ(end, DiagnoseRun(run.Range()).offset) << length;
  }
}

TEST(Walk, AgreesWithTheIteratorOnAnyBytes) {
  property::RunGenerator generator(1);
  for (int i = 0; i < 3000; ++i) {
    ExactBytes const run(generator.Below(2) == 0 ? generator.Chain() : generator.Soup());
    CDescriptorRange const range = run.Range();
    std::vector<unsigned> expected;
    CDescriptorRangeIterator const end = range.ValidUntil();
    for (CDescriptorRangeIterator it = range.begin(); it != end; ++it) {
      expected.push_back(static_cast<unsigned>(it - range.begin()));
    }
    EXPECT_EQ(Offsets(Walk(range)), expected);
  }
}

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)
TEST(Walk, AllocatesNothing) {
  ExactBytes const run(kConfiguration);
  unsigned count = 0;
  std::size_t const allocations = testing_support::AllocationsOf([&] {
    for (Descriptor const setting : AlternateSettings(run.Range(), 1)) {
      for (Descriptor const endpoint : Endpoints(setting)) {
        count += 1 + static_cast<unsigned>(std::ranges::distance(Companions(endpoint)));
      }
    }
  });
  EXPECT_EQ(allocations, 0u);
  EXPECT_EQ(count, 4u);
}
#endif

TEST(DescriptorOfAWalk, ReadsItselfAsARecord) {
  ExactBytes const run(kConfiguration);
  Descriptor const endpoint = Find(run.Range(), kEndpointType);
  ASSERT_TRUE(endpoint);
  EXPECT_EQ(endpoint.Type(), kEndpointType);
  EXPECT_TRUE(endpoint.Is(kEndpointType));
  EXPECT_FALSE(endpoint.Is(kInterfaceType));
  EXPECT_EQ(endpoint.Length(), 7);
  EXPECT_EQ(endpoint.Offset(), 42);
  EXPECT_EQ(endpoint.Byte(6), 0x04);
  auto const record = endpoint.As<TQ_USB_ENDPOINT_DESCRIPTOR>();
  EXPECT_EQ(record.bEndpointAddress, 0x01);
  EXPECT_EQ(record.wMaxPacketSize, 200);
  EXPECT_THAT(endpoint.Bytes(), ElementsAre(0x07, 0x05, 0x01, 0x05, 0xC8, 0x00, 0x04));
  EXPECT_EQ(endpoint.Range().Bytes(), run.data() + 42);
  EXPECT_EQ(endpoint.Range().Length(), 7);
}

TEST(DescriptorOfAWalk, ReadsBeyondItsLength) {
  ExactBytes const run(Hex("03 05 81 04 06 AA BB"));
  Descriptor const shortOne = Find(run.Range(), kEndpointType);
  EXPECT_EQ(shortOne.As<TQ_USB_ENDPOINT_DESCRIPTOR>().wMaxPacketSize, 0xAA06);
  Descriptor const last = shortOne.Next();
  ASSERT_TRUE(last);
  EXPECT_EQ(last.As<TQ_USB_ENDPOINT_DESCRIPTOR>().bInterval, 0);
  EXPECT_EQ(last.Byte(4), 0);
}

TEST(DescriptorOfAWalk, LastByteHasNoType) {
  ExactBytes const run(Hex("02 00 01"));
  Descriptor const last = Descriptor(run.Range()).Next();
  ASSERT_TRUE(last);
  EXPECT_EQ(last.Length(), 1);
  EXPECT_EQ(last.Type(), 0);
  EXPECT_FALSE(last.Is(0));
}

TEST(DescriptorOfAWalk, IsNoneWhenNothingIsThere) {
  Descriptor const none = Find(CDescriptorRange(), kDeviceType);
  EXPECT_FALSE(none);
  EXPECT_EQ(none, Descriptor());
  EXPECT_EQ(none.Length(), 0);
  EXPECT_EQ(none.Type(), 0);
  EXPECT_EQ(none.Offset(), 0);
  EXPECT_THAT(none.Bytes(), IsEmpty());
  EXPECT_TRUE(none.Range().IsEmpty());
  EXPECT_FALSE(none.Next());
}

TEST(Find, NeverThrows) {
  ExactBytes const run(Hex("02 24 00 05 07 05"));
  EXPECT_TRUE(Find(run.Range(), 0x24));
  EXPECT_FALSE(Find(run.Range(), kEndpointType)) << "it is after a bLength of 0";
}

TEST(AlternateSettings, AreTheInterfaceDescriptorsOfOneNumber) {
  ExactBytes const run(kConfiguration);
  EXPECT_THAT(Offsets(AlternateSettings(run.Range(), 0)), ElementsAre(17, 26));
  EXPECT_THAT(Offsets(AlternateSettings(run.Range(), 1)), ElementsAre(55, 71));
  EXPECT_THAT(Offsets(AlternateSettings(run.Range(), 2)), IsEmpty());
}

TEST(Endpoints, AreThoseOfOneSetting) {
  ExactBytes const run(kConfiguration);
  std::vector<std::vector<unsigned>> endpoints;
  for (Descriptor const setting : Walk(run.Range(), kInterfaceType)) {
    endpoints.push_back(Offsets(Endpoints(setting)));
  }
  EXPECT_THAT(endpoints, ElementsAre(IsEmpty(), ElementsAre(42), ElementsAre(64), ElementsAre(80)));
}

TEST(Endpoints, EndAtWhateverBeginsSomethingElse) {
  for (std::uint8_t const type : {kInterfaceType, kInterfaceAssociationType, kConfigurationType,
                                  kOtherSpeedConfigurationType}) {
    ExactBytes const run({0x02, 0x04, 0x02, 0x05, 0x02, type, 0x02, 0x05});
    EXPECT_THAT(Offsets(Endpoints(Descriptor(run.Range()))), ElementsAre(2)) << unsigned{type};
  }
}

TEST(Companions, AreThoseOfOneEndpoint) {
  ExactBytes const run(kConfiguration);
  std::vector<std::vector<unsigned>> companions;
  for (Descriptor const endpoint : Walk(run.Range(), kEndpointType)) {
    companions.push_back(Offsets(Companions(endpoint)));
  }
  EXPECT_THAT(companions, ElementsAre(ElementsAre(49), IsEmpty(), ElementsAre(91, 97)));
}

TEST(Companions, EndAtTheNextEndpoint) {
  ExactBytes const run(Hex("02 05 02 12 02 05 02 30"));
  EXPECT_THAT(Offsets(Companions(Descriptor(run.Range()))), ElementsAre(2));
}

}  // namespace
}  // namespace usb_support
