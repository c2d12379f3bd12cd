#include <usb_support/descriptor_sets/bos_descriptor_set.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <thread>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

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
using testing_support::ExactBytes;
using testing_support::Print;

using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;

// USB 2.0 extension, SuperSpeed USB and container ID at 5, 12 and 22; end 42.
Bytes const kBos = {0x05, 0x0F, 0x2A, 0x00, 0x03,                                //
                    0x07, 0x10, 0x02, 0x02, 0x00, 0x00, 0x00,                    //
                    0x0A, 0x10, 0x03, 0x00, 0x0E, 0x00, 0x01, 0x0A, 0xFF, 0x07,  //
                    0x14, 0x10, 0x04, 0x00, 0x30, 0xEE, 0xF3, 0x5C, 0x07, 0xD5,  //
                    0x25, 0x49, 0xB0, 0x01, 0x80, 0x2D, 0x79, 0x43, 0x4C, 0x30};

// The device descriptor of a USB 3.2 hub.
Bytes const kDevice = {0x12, 0x01, 0x20, 0x03, 0x09, 0x00, 0x03, 0x09, 0x09,
                       0x21, 0x15, 0x08, 0x34, 0x92, 0x01, 0x02, 0x00, 0x01};

// A set as a test program makes it: the device descriptor comes with the read.
class ReadBos : public CBOSDescriptorSet {
 public:
  RETURN_CODE Read() {
    RETURN_CODE const code = DoReadDescriptor();
    return code != RC_SUCCESS ? code : DoGetDeviceDescriptor();
  }

  using CBOSDescriptorSet::StoreDeviceDescriptor;

 protected:
  RETURN_CODE DoReadDescriptor() override {
    ExactBytes const source(kBos);
    Reset(source.data(), 42);
    return RC_SUCCESS;
  }

  RETURN_CODE DoGetDeviceDescriptor() override {
    TQ_USB_DEVICE_DESCRIPTOR record;
    std::memcpy(&record, kDevice.data(), sizeof(record));
    StoreDeviceDescriptor(record);
    return RC_SUCCESS;
  }
};

void Fill(CBOSDescriptorSet& set, Bytes const& bytes) {
  ExactBytes const source(bytes);
  set.SetDescriptor(source.data(), static_cast<unsigned short>(source.size()));
}

Bytes BytesOf(CDescriptorRange const& range) {
  return {range.Bytes(), range.Bytes() + range.Length()};
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

struct NamedAccessor {
  char const* name;
  std::function<bool(CBOSDescriptorSet const&)> answersNothing;
};

// Every operation that looks for a capability.
std::vector<NamedAccessor> const& Accessors() {
  static std::vector<NamedAccessor> const accessors = {
      {"Get20ExtensionDesc", [](auto const& set) { return set.Get20ExtensionDesc() == nullptr; }},
      {"GetSSDesc", [](auto const& set) { return set.GetSSDesc() == nullptr; }},
      {"GetContainer", [](auto const& set) { return set.GetContainer() == nullptr; }},
      {"GetPDCap", [](auto const& set) { return set.GetPDCap() == nullptr; }},
      {"GetBattery", [](auto const& set) { return set.GetBattery() == nullptr; }},
      {"GetConsumer", [](auto const& set) { return set.GetConsumer() == nullptr; }},
      {"GetProvider", [](auto const& set) { return set.GetProvider() == nullptr; }},
      {"ContainerID", [](auto const& set) { return set.ContainerID() == nullptr; }},
      {"SupportsSuperSpeed", [](auto const& set) { return !set.SupportsSuperSpeed(); }},
  };
  return accessors;
}

template <typename Set>
concept GetsDescriptorsOfType = requires(Set& set) {
  set.GetDescriptorsOfType(0x02);
};

using BosDescriptorSet = testing_support::SuiteTest;

TEST_F(BosDescriptorSet, OperationsGiveTheirTypes) {
  using Set = CBOSDescriptorSet const&;
  static_assert(std::is_same_v<decltype(std::declval<CBOSDescriptorSet&>().BcdUsb()),
                               std::tuple<bool, unsigned short>>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().VID()), unsigned short>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().PID()), unsigned short>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().HasBOS()), bool>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().GetRange()), CDescriptorRange const&>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().GetBOS()),
                               decltype(std::declval<Set>().Descriptor())>);
  static_assert(GetsDescriptorsOfType<CBOSDescriptorSet>);
  static_assert(!GetsDescriptorsOfType<CBOSDescriptorSet const>);
  static_assert(
      std::is_same_v<decltype(std::declval<CBOSDescriptorSet&>().GetDescriptorsOfType(0)),
                     std::unique_ptr<std::vector<CDescriptorRange>,
                                     std::function<void(std::vector<CDescriptorRange>*)>>>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().Get20ExtensionDesc()),
                               TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR*>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().GetSSDesc()),
                               TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR*>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().GetContainer()),
                               TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR*>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().GetPDCap()),
                               TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2*>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().GetBattery()),
                               TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR*>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().GetConsumer()),
                               TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR*>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().GetProvider()),
                               TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR*>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().ContainerID()), unsigned char*>);
  static_assert(std::is_same_v<decltype(std::declval<Set>().SupportsSuperSpeed()), bool>);
  // The set adds no data of its own.
  EXPECT_EQ(sizeof(CBOSDescriptorSet), sizeof(CCompoundDescriptorSet<TQ_USB_BOS_DESCRIPTOR>));
}

TEST_F(BosDescriptorSet, AnswersWhenItIsEmpty) {
  CBOSDescriptorSet set;
  EXPECT_TRUE(set.IsEmpty());
  EXPECT_TRUE(set.HasBOS());
  EXPECT_EQ(set.GetBOS(), nullptr);
  EXPECT_EQ(set.BcdUsb(), std::tuple(false, 0));
  EXPECT_EQ(set.VID(), 0);
  EXPECT_EQ(set.PID(), 0);
  for (NamedAccessor const& accessor : Accessors()) {
    EXPECT_TRUE(accessor.answersNothing(set)) << accessor.name;
  }
  for (unsigned type = 0; type < 256; ++type) {
    auto const found = set.GetDescriptorsOfType(static_cast<unsigned char>(type));
    EXPECT_TRUE(found->empty()) << type;
    EXPECT_TRUE(found.get_deleter());
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(BosDescriptorSet, HasBosSaysThatItIsEmpty) {
  CBOSDescriptorSet set;
  EXPECT_TRUE(set.HasBOS());
  Fill(set, kBos);
  EXPECT_FALSE(set.HasBOS());
  Fill(set, {0x00});
  EXPECT_FALSE(set.HasBOS());
  set.SetDescriptor(nullptr, 0);
  EXPECT_TRUE(set.HasBOS());
  Fill(set, kBos);
  set.Reset();
  EXPECT_TRUE(set.HasBOS());
}

TEST_F(BosDescriptorSet, IsItsRange) {
  CBOSDescriptorSet set;
  EXPECT_EQ(&set.GetRange(), &set);
  Fill(set, kBos);
  EXPECT_EQ(&set.GetRange(), &set);
  EXPECT_EQ(BytesOf(set.GetRange()), kBos);
}

TEST_F(BosDescriptorSet, ShowsTheBosHeader) {
  CBOSDescriptorSet set;
  Fill(set, kBos);
  EXPECT_EQ(set.GetBOS(), set.Descriptor());
  EXPECT_EQ(set.GetBOS(), static_cast<void const*>(set.Bytes()));
  EXPECT_EQ(set.GetBOS()->bDescriptorType, 0x0F);
  EXPECT_EQ(set.GetBOS()->wTotalLength, 42);
  EXPECT_EQ(set.GetBOS()->bNumDeviceCaps, 3);
}

TEST_F(BosDescriptorSet, AnswersFromTheStoredDeviceDescriptor) {
  ReadBos set;
  EXPECT_EQ(set.Read(), RC_SUCCESS);
  for (Bytes const& bytes : {kBos, kDevice, Bytes{0x00}, Bytes{}}) {
    Fill(set, bytes);
    EXPECT_EQ(set.BcdUsb(), std::tuple(true, 0x0320));
    EXPECT_EQ(set.VID(), 0x2109);
    EXPECT_EQ(set.PID(), 0x0815);
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(BosDescriptorSet, NeverTakesTheDeviceFromTheBytes) {
  CBOSDescriptorSet set;
  Fill(set, kDevice);
  EXPECT_EQ(set.BcdUsb(), std::tuple(false, 0));
  EXPECT_EQ(set.VID(), 0);
  EXPECT_EQ(set.PID(), 0);
}

TEST_F(BosDescriptorSet, ADeviceDescriptorOfZeroesCounts) {
  ReadBos set;
  set.StoreDeviceDescriptor({});
  EXPECT_EQ(set.BcdUsb(), std::tuple(true, 0));
  EXPECT_EQ(set.VID(), 0);
  EXPECT_EQ(set.PID(), 0);
}

TEST_F(BosDescriptorSet, ResetsForgetTheDevice) {
  ReadBos set;
  set.Read();
  ExactBytes const source(kBos);
  set.Reset(source.data(), 42);
  EXPECT_EQ(set.BcdUsb(), std::tuple(false, 0));
  EXPECT_EQ(set.VID(), 0);
  EXPECT_EQ(set.PID(), 0);
  set.Read();
  EXPECT_EQ(set.VID(), 0x2109);
  set.Reset();
  EXPECT_EQ(set.BcdUsb(), std::tuple(false, 0));
  EXPECT_EQ(set.VID(), 0);
  EXPECT_EQ(set.PID(), 0);
}

TEST_F(BosDescriptorSet, CopiesAnswerForTheSameDevice) {
  ReadBos set;
  set.Read();
  CBOSDescriptorSet constructed(set);
  CBOSDescriptorSet assigned;
  assigned = set;
  set.Reset();
  EXPECT_EQ(constructed.BcdUsb(), std::tuple(true, 0x0320));
  EXPECT_EQ(assigned.BcdUsb(), std::tuple(true, 0x0320));
  EXPECT_EQ(constructed.VID(), 0x2109);
  EXPECT_EQ(assigned.PID(), 0x0815);
  EXPECT_EQ(BytesOf(constructed), kBos);
  EXPECT_EQ(BytesOf(assigned), kBos);
}

TEST_F(BosDescriptorSet, MovedToSetAnswersForNoDevice) {
  ReadBos set;
  set.Read();
  CBOSDescriptorSet constructed(static_cast<CBOSDescriptorSet&&>(set));
  EXPECT_EQ(constructed.BcdUsb(), std::tuple(false, 0));
  EXPECT_EQ(constructed.VID(), 0);
  EXPECT_TRUE(set.HasBOS());
  set.Read();
  CBOSDescriptorSet assigned;
  assigned = static_cast<CBOSDescriptorSet&&>(set);
  EXPECT_EQ(assigned.BcdUsb(), std::tuple(false, 0));
  EXPECT_EQ(assigned.PID(), 0);
  EXPECT_EQ(set.VID(), 0);
}

TEST_F(BosDescriptorSet, CapabilityAccessorsRaiseWhenItHoldsAnything) {
  // A BOS with capabilities, one without, and a descriptor that is no BOS.
  for (Bytes const& bytes : {kBos, Bytes{0x05, 0x0F, 0x05, 0x00, 0x00},
                             Bytes{0x0A, 0x10, 0x03, 0x00, 0x0E, 0x00, 0x01, 0x0A, 0xFF, 0x07}}) {
    CBOSDescriptorSet set;
    Fill(set, bytes);
    for (NamedAccessor const& accessor : Accessors()) {
      EXPECT_THROW(static_cast<void>(accessor.answersNothing(set)), std::bad_function_call)
          << accessor.name;
    }
    for (unsigned type = 0; type < 256; ++type) {
      EXPECT_THROW(set.GetDescriptorsOfType(static_cast<unsigned char>(type)),
                   std::bad_function_call)
          << type;
    }
    EXPECT_EQ(BytesOf(set), bytes);
  }
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(BosDescriptorSet, CapabilityAccessorsRaiseOnAPartOfTheSet) {
  CBOSDescriptorSet set;
  Fill(set, kBos);
  set.Reset(set.begin() + 2, set.end());
  EXPECT_THROW(static_cast<void>(set.GetSSDesc()), std::bad_function_call);
  set.Reset(set.begin(), set.begin());
  EXPECT_EQ(set.GetSSDesc(), nullptr);
}

// No descriptor is left for the predicate to be asked about.
TEST_F(BosDescriptorSet, CapabilityAccessorsFindNothingWithoutAValidDescriptor) {
  for (Bytes const& bytes :
       {Bytes{0x00, 0x0F, 0x05, 0x00, 0x00}, Bytes{0x06, 0x0F, 0x05}, Bytes{0x05}}) {
    CBOSDescriptorSet set;
    Fill(set, bytes);
    for (NamedAccessor const& accessor : Accessors()) {
      EXPECT_TRUE(accessor.answersNothing(set)) << accessor.name;
      EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 0))) << accessor.name;
    }
    EXPECT_TRUE(set.GetDescriptorsOfType(0x03)->empty());
    EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 0)));
  }
}

TEST_F(BosDescriptorSet, CapabilityAccessorsTellOfAnInvalidSetBeforeTheyRaise) {
  CBOSDescriptorSet set;
  Fill(set, {0x05, 0x0F, 0x0C, 0x00, 0x01, 0x07, 0x10, 0x02});
  EXPECT_THROW(static_cast<void>(set.Get20ExtensionDesc()), std::bad_function_call);
  EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 5)));
  EXPECT_THROW(static_cast<void>(set.SupportsSuperSpeed()), std::bad_function_call);
  EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(set, 5)));
}

TEST_F(BosDescriptorSet, FindCapabilityFindsWhatTheAccessorsDoNot) {
  CBOSDescriptorSet set;
  Fill(set, kBos);
  EXPECT_EQ(FindCapability(set, kUsb20ExtensionCapability).Bytes(), set.Bytes() + 5);
  EXPECT_EQ(FindCapability(set, kSuperSpeedCapability).Bytes(), set.Bytes() + 12);
  EXPECT_EQ(FindCapability(set, kContainerIdCapability).Length(), 20);
  EXPECT_TRUE(FindCapability(set, kBatteryInfoCapability).IsEmpty());
}

// The selector

TEST(CapabilitySelector, IsARangeSelector) {
  static_assert(std::is_base_of_v<CRangeSelector, capability_type_selector>);
  static_assert(std::has_virtual_destructor_v<capability_type_selector>);
  static_assert(std::is_copy_constructible_v<capability_type_selector>);
  static_assert(std::is_copy_assignable_v<capability_type_selector>);
  EXPECT_EQ(sizeof(capability_type_selector), sizeof(CRangeSelector)) << "it stores no type";
}

TEST(CapabilitySelector, AsksAnEmptyPredicateWhateverTheType) {
  ExactBytes const block(kBos);
  for (unsigned type = 0; type < 256; ++type) {
    capability_type_selector const selector(static_cast<unsigned char>(type));
    EXPECT_THROW(selector.FindStart(block.At(0), block.At(42)), std::bad_function_call) << type;
    EXPECT_THROW(selector.FindFinish(block.At(5), block.At(42)), std::bad_function_call) << type;
    EXPECT_EQ(selector.FindStart(block.At(42), block.At(42)), Found(true, block.At(42)));
    EXPECT_EQ(selector.FindFinish(Iterator(), Iterator()), Found(true, Iterator()));
  }
}

std::unique_ptr<CRangeSelector> CopyOfAnEndedSelector() {
  auto const selector = std::make_unique<capability_type_selector>(static_cast<unsigned char>(4));
  return std::make_unique<capability_type_selector>(*selector);
}

TEST(CapabilitySelector, CopiesMayOutliveIt) {
  ExactBytes const block(kBos);
  std::unique_ptr<CRangeSelector> const copy = CopyOfAnEndedSelector();
  EXPECT_THROW(copy->FindStart(block.At(0), block.At(42)), std::bad_function_call);
  RangeFinder const finder = copy->FindStartFunc();
  EXPECT_THROW(finder(block.At(0), block.At(42)), std::bad_function_call);
}

TEST(CapabilitySelector, MayOutliveItsThread) {
  ExactBytes const block(kBos);
  std::unique_ptr<CRangeSelector> selector;
  std::thread([&selector] { selector = CopyOfAnEndedSelector(); }).join();
  EXPECT_THROW(selector->FindStart(block.At(0), block.At(42)), std::bad_function_call);
}

// Ends behind everything that was made after it, what the library made for its first selector
// included; the answer of the selector then is the exit status.
class LastUser {
 public:
  LastUser() = default;
  LastUser(LastUser const&) = delete;
  LastUser& operator=(LastUser const&) = delete;
  ~LastUser() { std::_Exit(Ask()); }

  std::optional<CRangeSelector> selector;

 private:
  int Ask() const {
    try {
      ExactBytes const block(kBos);
      selector->FindStart(block.At(0), block.At(42));
    } catch (std::bad_function_call const&) {
      return 0;
    } catch (...) {
      return 1;
    }
    return 2;
  }
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
