#include <usb_support/descriptor_sets/bos_descriptor_set.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <thread>
#include <tuple>
#include <utility>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/descriptors/finders.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::BytesOf;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::InvalidRange;
using testing_support::Put;

using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;

// USB 2.0 extension, SuperSpeed USB and container ID at 5, 12 and 22; end 42.
Bytes const kBos =
    Hex("05 0F 2A 00 03  07 10 02 02 00 00 00  0A 10 03 00 0E 00 01 0A FF 07"
        "14 10 04 00 30 EE F3 5C 07 D5 25 49 B0 01 80 2D 79 43 4C 30");

// The device descriptor of a USB 3.2 hub.
Bytes const kDevice = Hex("12 01 20 03 09 00 03 09 09 21 15 08 34 92 01 02 00 01");

// A set as a test program makes it: the device descriptor comes with the read.
class ReadBos : public CBOSDescriptorSet {
 public:
  using CBOSDescriptorSet::StoreDeviceDescriptor;

  ReadBos() {
    Put(*this, kBos);
    TQ_USB_DEVICE_DESCRIPTOR record;
    std::memcpy(&record, kDevice.data(), sizeof(record));
    StoreDeviceDescriptor(record);
  }
};

struct NamedAccessor {
  char const* name;
  std::function<bool(CBOSDescriptorSet&)> findsNothing;
};

// Every operation that looks for a capability.
NamedAccessor const kAccessors[] = {
    {"Get20ExtensionDesc", [](auto& set) { return set.Get20ExtensionDesc() == nullptr; }},
    {"GetSSDesc", [](auto& set) { return set.GetSSDesc() == nullptr; }},
    {"GetContainer", [](auto& set) { return set.GetContainer() == nullptr; }},
    {"GetPDCap", [](auto& set) { return set.GetPDCap() == nullptr; }},
    {"GetBattery", [](auto& set) { return set.GetBattery() == nullptr; }},
    {"GetConsumer", [](auto& set) { return set.GetConsumer() == nullptr; }},
    {"GetProvider", [](auto& set) { return set.GetProvider() == nullptr; }},
    {"ContainerID", [](auto& set) { return set.ContainerID() == nullptr; }},
    {"SupportsSuperSpeed", [](auto& set) { return !set.SupportsSuperSpeed(); }},
    {"GetDescriptorsOfType", [](auto& set) { return set.GetDescriptorsOfType(0x02)->empty(); }},
};

using BosDescriptorSet = testing_support::SuiteTest;

void ExpectDevice(CBOSDescriptorSet& set, bool isKnown, unsigned bcd, unsigned vid, unsigned pid) {
  EXPECT_EQ(set.BcdUsb(), std::tuple(isKnown, bcd));
  EXPECT_EQ(set.VID(), vid);
  EXPECT_EQ(set.PID(), pid);
}

TEST_F(BosDescriptorSet, AnswersWhenItIsEmpty) {
  CBOSDescriptorSet set;
  EXPECT_TRUE(set.HasBOS()) << "as the suite has it";
  EXPECT_EQ(set.GetBOS(), nullptr);
  for (NamedAccessor const& accessor : kAccessors) {
    EXPECT_TRUE(accessor.findsNothing(set)) << accessor.name;
  }
  EXPECT_TRUE(set.GetDescriptorsOfType(0x02).get_deleter());
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(BosDescriptorSet, ShowsTheBosHeader) {
  CBOSDescriptorSet set;
  Put(set, kBos);
  EXPECT_FALSE(set.HasBOS());
  EXPECT_EQ(&set.GetRange(), &set);
  EXPECT_EQ(set.GetBOS(), static_cast<void const*>(set.Bytes()));
  EXPECT_EQ(set.GetBOS()->wTotalLength, 42);
  EXPECT_EQ(set.GetBOS()->bNumDeviceCaps, 3);
}

TEST_F(BosDescriptorSet, KnowsTheStoredDevice) {
  ReadBos set;
  for (Bytes const& bytes : {kBos, kDevice, Bytes{}}) {
    Put(set, bytes);
    ExpectDevice(set, true, 0x0320, 0x2109, 0x0815);
  }
  CBOSDescriptorSet copy(set);
  ExpectDevice(copy, true, 0x0320, 0x2109, 0x0815);
  CBOSDescriptorSet moved(static_cast<CBOSDescriptorSet&&>(copy));
  ExpectDevice(moved, false, 0, 0, 0);
  moved = set;
  ExpectDevice(moved, true, 0x0320, 0x2109, 0x0815);
  set.StoreDeviceDescriptor({});
  ExpectDevice(set, true, 0, 0, 0);
  set.Reset();
  ExpectDevice(set, false, 0, 0, 0);
  Put(set, kDevice);
  ExpectDevice(set, false, 0, 0, 0);
}

TEST_F(BosDescriptorSet, AccessorsThrowWhenItHoldsAnything) {
  // A BOS with capabilities, one without, and a descriptor that is not a BOS.
  for (Bytes const& bytes : {kBos, Hex("05 0F 05 00 00"), Hex("0A 10 03 00 0E 00 01 0A FF 07")}) {
    CBOSDescriptorSet set;
    Put(set, bytes);
    for (NamedAccessor const& accessor : kAccessors) {
      EXPECT_THROW(static_cast<void>(accessor.findsNothing(set)), std::bad_function_call)
          << accessor.name;
    }
    EXPECT_EQ(BytesOf(set), bytes);
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

// No descriptor is left for the predicate to be asked about.
TEST_F(BosDescriptorSet, AccessorsFindNothing) {
  for (Bytes const& bytes : {Hex("00 0F 05 00 00"), Hex("06 0F 05"), Hex("05")}) {
    CBOSDescriptorSet set;
    Put(set, bytes);
    for (NamedAccessor const& accessor : kAccessors) {
      EXPECT_TRUE(accessor.findsNothing(set)) << accessor.name;
      EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 0))) << accessor.name;
    }
  }
}

TEST_F(BosDescriptorSet, AccessorsLogBeforeTheyThrow) {
  CBOSDescriptorSet set;
  Put(set, Hex("05 0F 0C 00 01  07 10 02"));
  EXPECT_THROW(static_cast<void>(set.Get20ExtensionDesc()), std::bad_function_call);
  EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 5)));
}

TEST_F(BosDescriptorSet, FindCapabilityFindsThem) {
  CBOSDescriptorSet set;
  Put(set, kBos);
  EXPECT_EQ(FindCapability(set, kUsb20ExtensionCapability).Bytes(), set.Bytes() + 5);
  EXPECT_EQ(FindCapability(set, kContainerIdCapability).Length(), 20);
  EXPECT_TRUE(FindCapability(set, kBatteryInfoCapability).IsEmpty());
}

std::unique_ptr<CRangeSelector> CopyOfAnEndedSelector() {
  auto const selector = std::make_unique<capability_type_selector>(static_cast<unsigned char>(4));
  return std::make_unique<capability_type_selector>(*selector);
}

TEST(CapabilitySelector, AsksAnEmptyPredicate) {
  EXPECT_EQ(sizeof(capability_type_selector), sizeof(CRangeSelector)) << "it stores no type";
  ExactBytes const block(kBos);
  std::unique_ptr<CRangeSelector> selector;
  // It may outlive its source and its thread.
  std::thread([&selector] { selector = CopyOfAnEndedSelector(); }).join();
  EXPECT_THROW(selector->FindStart(block.At(0), block.At(42)), std::bad_function_call);
  EXPECT_THROW(selector->FindFinish(block.At(5), block.At(42)), std::bad_function_call);
  EXPECT_THROW(selector->FindStartFunc()(block.At(0), block.At(42)), std::bad_function_call);
  EXPECT_EQ(selector->FindStart(block.At(42), block.At(42)), Found(true, block.At(42)));
  EXPECT_EQ(selector->FindFinish(Iterator(), Iterator()), Found(true, Iterator()));
}

// Ends after everything that was made later, what the library made for its first selector included;
// the answer of the selector then is the exit status.
class LastUser {
 public:
  LastUser() = default;
  LastUser(LastUser const&) = delete;
  LastUser& operator=(LastUser const&) = delete;
  ~LastUser() {
    try {
      ExactBytes const block(kBos);
      selector->FindStart(block.At(0), block.At(42));
    } catch (std::bad_function_call const&) {
      std::_Exit(0);
    } catch (...) {
      std::_Exit(1);
    }
    std::_Exit(2);
  }

  std::optional<CRangeSelector> selector;
};

void ExitWithASelector() {
  static LastUser lastUser;
  lastUser.selector = capability_type_selector(4);
  std::exit(3);
}

TEST(CapabilitySelectorDeathTest, MayBeUsedUntilTheProcessEnds) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(ExitWithASelector(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace usb_support
