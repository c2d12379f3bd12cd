// What every descriptor set does: a base template and both concrete sets.
#include <usb_support/descriptor_sets/descriptor_set.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <functional>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <tests/support/virtual_slot.h>
#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>

namespace usb_support {
namespace {

using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::BytesOf;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::Part;
using testing_support::Put;

using Iterator = CDescriptorRangeIterator;
using BosRecord = TQ_USB_BOS_DESCRIPTOR;
using ConfigurationRecord = TQ_USB_CONFIGURATION_DESCRIPTOR;

// A hub's configuration: configuration, interface, endpoint at 0, 9, 18; end 25.
Bytes const kHub =
    Hex("09 02 19 00 01 01 00 E0 32  09 04 00 00 01 09 00 00 00  07 05 81 03 02 00 0C");
Bytes const kHubInterface = Part(kHub, 9, 18);
Bytes const kHubEndpoint = Part(kHub, 18, 25);

// A BOS with a USB 2.0 extension.
Bytes const kHubBos = Hex("05 0F 0C 00 01  07 10 02 02 00 00 00");

// A hub's device descriptor.
Bytes const kHubDevice = Hex("12 01 00 02 09 00 01 40 24 04 14 25 B3 0B 00 00 00 01");

TQ_USB_DEVICE_DESCRIPTOR DeviceRecord() {
  TQ_USB_DEVICE_DESCRIPTOR record;
  std::memcpy(&record, kHubDevice.data(), sizeof(record));
  return record;
}

// Like std::move, for sources that a test examines afterwards.
template <typename Set>
Set&& Moved(Set& set) {
  return static_cast<Set&&>(set);
}

// A set with public access to its protected members.
template <typename Set>
class Open : public Set {
 public:
  using Set::DoReadDescriptor;
  using Set::Holds;
  using Set::SyncPointers;
};

template <typename Set>
class OpenCompound : public Open<Set> {
 public:
  using Set::DeviceDescriptor;
  using Set::DoGetDeviceDescriptor;
  using Set::HasDeviceDescriptor;
  using Set::StoreDeviceDescriptor;

  bool HasTheDevice() const { return HasDeviceDescriptor() && DeviceBytes() == kHubDevice; }
  bool HasNoDevice() const { return !HasDeviceDescriptor() && DeviceBytes() == Bytes(18); }

 private:
  Bytes DeviceBytes() const {
    auto const* const bytes = reinterpret_cast<unsigned char const*>(&DeviceDescriptor());
    return {bytes, bytes + sizeof(TQ_USB_DEVICE_DESCRIPTOR)};
  }
};

// Sees every virtual reset of a set.
template <typename Set>
class Witness : public Set {
 public:
  using Set::SyncPointers;

  void Reset() override {
    ++resets;
    if (onReset) {
      onReset();
    }
    if (passesResetOn) {
      Set::Reset();
    }
  }
  void Reset(Iterator first, Iterator last) override {
    ++rangeResets;
    Set::Reset(first, last);
  }
  void Reset(void* const bytes, unsigned short length) override {
    ++byteResets;
    Set::Reset(bytes, length);
  }

  int All() const { return resets + rangeResets + byteResets; }

  int resets = 0;
  int rangeResets = 0;
  int byteResets = 0;
  bool passesResetOn = true;
  std::function<void()> onReset;
};

void ResetTo(auto& set, Bytes const& bytes) {
  ExactBytes const source(bytes);
  set.Reset(source.data(), static_cast<unsigned short>(source.size()));
}

template <typename Set>
Set Holding(Bytes const& bytes) {
  Set set;
  Put(set, bytes);
  Set const& filled = set;
  return Set(filled);
}

// Empty, with nothing that could come back.
void ExpectEmptied(auto& set) {
  EXPECT_TRUE(set.IsEmpty());
  EXPECT_EQ(set.Bytes(), nullptr);
  EXPECT_EQ(set.Length(), 0);
  EXPECT_EQ(set.Descriptor(), nullptr);
  set.SyncPointers(25);
  EXPECT_TRUE(set.IsEmpty());
}

// Everything that is allowed with a set that was moved from or to.
void ExpectUsable(auto& set) {
  auto const before = BytesOf(set);
  auto const copy(set);
  EXPECT_EQ(BytesOf(copy), before);
  Put(set, kHubBos);
  EXPECT_EQ(BytesOf(set), kHubBos);
  ResetTo(set, kHub);
  EXPECT_EQ(BytesOf(set), kHub);
  set.Reset();
  EXPECT_TRUE(set.IsEmpty());
}

template <typename Set>
class DescriptorSet : public testing_support::SuiteTest {
 protected:
  /// A set writes nothing to the log.
  void TearDown() override { EXPECT_THAT(TakeCalls(), IsEmpty()); }
};

using SetTypes = testing::Types<CDescriptorSet<BosRecord>, CBOSDescriptorSet, CConfigDescriptorSet>;
TYPED_TEST_SUITE(DescriptorSet, SetTypes);

TYPED_TEST(DescriptorSet, IsEmptyAtFirst) {
  Open<TypeParam> set;
  EXPECT_EQ(set.begin(), set.end());
  EXPECT_FALSE(set.Holds(nullptr));
  EXPECT_FALSE(set.Holds(std::addressof(set)));
  ExpectEmptied(set);
}

TYPED_TEST(DescriptorSet, HoldsACopy) {
  Bytes longest(0xFFFF);
  for (std::size_t at = 0; at < longest.size(); ++at) {
    longest[at] = static_cast<unsigned char>(at * 3 + at / 256);
  }
  Open<TypeParam> set;
  for (Bytes const& bytes : {kHub, kHubBos, longest, Hex("00"), Hex("FF"), Hex("09 02")}) {
    for (bool const throughReset : {false, true}) {
      if (throughReset) {
        ResetTo(set, bytes);
      } else {
        Put(set, bytes);
      }
      EXPECT_EQ(BytesOf(set), bytes);
      EXPECT_EQ(set.Descriptor(), static_cast<void const*>(set.Bytes()));
      EXPECT_TRUE(set.Holds(set.Bytes()));
      EXPECT_TRUE(set.Holds(set.Bytes() + bytes.size() - 1));
      EXPECT_FALSE(set.Holds(set.Bytes() + bytes.size()));
    }
  }
  ExactBytes const source(kHub);
  set.SetDescriptor(source.data(), 9);
  EXPECT_EQ(BytesOf(set), Part(kHub, 0, 9));
  set.Reset(source.data() + 9, 9);
  EXPECT_EQ(BytesOf(set), kHubInterface);
}

TYPED_TEST(DescriptorSet, IsARangeOverItsBytes) {
  Open<TypeParam> set;
  CDescriptorRange& range = set;
  ResetTo(range, kHub);
  EXPECT_EQ(set.Descriptor()->wTotalLength, 25);
  EXPECT_EQ(set.Count(), 3);
  EXPECT_EQ(BytesOf((*set.GetAll())[1]), kHubInterface);
  range.Reset();
  ExpectEmptied(set);
}

TYPED_TEST(DescriptorSet, FillingWithNothingEmpties) {
  ExactBytes const source(kHub);
  std::function<void(Open<TypeParam>&)> const fills[] = {
      [&](auto& set) { set.SetDescriptor(source.data(), 0); },
      [&](auto& set) { set.SetDescriptor(nullptr, 9); },
      [&](auto& set) { set.Reset(source.data(), 0); },
      [&](auto& set) { set.Reset(nullptr, 9); },
      [&](auto& set) { set.Reset(set.Bytes(), 0); },
      [&](auto& set) { set.Reset(set.Bytes() + 24, 0); },
      [&](auto& set) { set.Reset(set.Bytes() + 25, 0); },
      [&](auto& set) { set.Reset(); },
      [&](auto& set) { set.Reset(set.begin() + 2, set.begin() + 1); },
      [&](auto& set) { set.Reset(set.begin() + 1, set.begin() + 1); },
      [&](auto& set) { set.Reset(Iterator(), set.end()); },
      [&](auto& set) { set.Reset(set.begin(), Iterator()); },
      [&](auto& set) { set.Reset(Iterator(), Iterator()); },
      [&](auto& set) { static_cast<TypeParam&>(set) = TypeParam(); },
  };
  for (auto const& fill : fills) {
    Open<TypeParam> set;
    Put(set, kHub);
    fill(set);
    ExpectEmptied(set);
    ExpectUsable(set);
  }
}

TYPED_TEST(DescriptorSet, FillsFromItsOwnBytes) {
  Open<TypeParam> set;
  Put(set, kHub);
  set.SetDescriptor(set.Bytes(), set.Length());
  EXPECT_EQ(BytesOf(set), kHub);
  set.SetDescriptor(set.Bytes() + 18, 7);
  EXPECT_EQ(BytesOf(set), kHubEndpoint);
  // It is a block of its own, not a view of the old one.
  set.SyncPointers(25);
  EXPECT_EQ(BytesOf(set), kHubEndpoint);
}

TYPED_TEST(DescriptorSet, ResetPointsIntoItsOwnBytes) {
  Open<TypeParam> set;
  Put(set, kHub);
  unsigned char* const bytes = set.Bytes();
  for (std::size_t at = 0; at < 25; ++at) {
    for (std::size_t const length : {std::size_t{1}, 25 - at, 26 - at, std::size_t{0xFFFF}}) {
      set.Reset(bytes + at, static_cast<unsigned short>(length));
      EXPECT_EQ(set.Bytes(), bytes + at);
      EXPECT_EQ(set.Length(), length < 25 - at ? length : 25 - at);
      set.SyncPointers(25);
      EXPECT_EQ(set.Bytes(), bytes);
      ASSERT_EQ(BytesOf(set), kHub);
    }
  }
  set.Reset(set.begin() + 1, set.begin() + 2);
  EXPECT_EQ(set.Bytes(), bytes + 9);
  EXPECT_EQ(BytesOf(set), kHubInterface);
}

TYPED_TEST(DescriptorSet, HoldsTheAddressesOfItsBytes) {
  Open<TypeParam> set;
  EXPECT_FALSE(set.Holds(nullptr));
  Put(set, Bytes(0xFFFF));
  unsigned char const* const bytes = set.Bytes();
  EXPECT_FALSE(set.Holds(bytes - 1));
  EXPECT_TRUE(set.Holds(bytes));
  EXPECT_TRUE(set.Holds(bytes + 0xFFFE));
  EXPECT_FALSE(set.Holds(bytes + 0xFFFF));
  EXPECT_FALSE(set.Holds(nullptr));
  set.SetDescriptor(bytes, 0);
  EXPECT_FALSE(set.Holds(set.Bytes()));
}

TYPED_TEST(DescriptorSet, ResetCopiesWhatForeignIteratorsSpan) {
  Open<TypeParam> set;
  Put(set, kHubBos);
  {
    ExactBytes const source(kHub);
    set.Reset(source.At(9), source.At(25));
  }
  EXPECT_EQ(BytesOf(set), Part(kHub, 9, 25));
  set.SyncPointers(25);
  EXPECT_EQ(set.Length(), 16);
}

TYPED_TEST(DescriptorSet, DerivedClassesSeeResets) {
  Witness<TypeParam> set;
  Put(set, kHub);
  set.SyncPointers(9);
  set.SyncPointers(25);
  static_cast<TypeParam&>(set) = Holding<TypeParam>(kHub);
  EXPECT_EQ(set.All(), 0);
  CDescriptorRange& range = set;
  range.Reset(set.begin() + 1, set.begin() + 2);
  EXPECT_EQ(set.rangeResets, 1);
  EXPECT_EQ(set.byteResets, 1);
  EXPECT_EQ(set.resets, 0);
  range.Reset(set.end(), set.begin());
  EXPECT_EQ(set.rangeResets, 2);
  EXPECT_EQ(set.byteResets, 1);
  EXPECT_EQ(set.resets, 1);
}

TYPED_TEST(DescriptorSet, SyncPointersShowsWhatWasReadInPlace) {
  Open<TypeParam> set;
  set.SyncPointers(9);
  EXPECT_TRUE(set.IsEmpty());
  Put(set, Bytes(64));
  unsigned char* const bytes = set.Bytes();
  std::memcpy(bytes, kHub.data(), kHub.size());
  set.SyncPointers(25);
  EXPECT_EQ(BytesOf(set), kHub);
  set.SyncPointers(0);
  EXPECT_EQ(set.Bytes(), nullptr);
  for (std::uint16_t const length : {std::uint16_t{64}, std::uint16_t{65}, std::uint16_t{0xFFFF}}) {
    set.SyncPointers(length);
    EXPECT_EQ(set.Length(), 64);
    EXPECT_EQ(set.Bytes(), bytes);
  }
}

TYPED_TEST(DescriptorSet, ReadsNothingByItself) {
  Open<TypeParam> set;
  Put(set, kHub);
  EXPECT_EQ(set.DoReadDescriptor(), static_cast<RETURN_CODE>(0x80000000));
  EXPECT_EQ(BytesOf(set), kHub);
}

TYPED_TEST(DescriptorSet, CopiesHoldBytesOfTheirOwn) {
  TypeParam source;
  Put(source, kHub);
  TypeParam const copy(source);
  TypeParam assigned;
  Put(assigned, kHubBos);
  EXPECT_EQ(&(assigned = source), &assigned);
  EXPECT_NE(copy.Bytes(), source.Bytes());
  EXPECT_NE(assigned.Bytes(), source.Bytes());
  source.Bytes()[0] = 0xEE;
  source.Reset();
  EXPECT_EQ(BytesOf(copy), kHub);
  EXPECT_EQ(BytesOf(assigned), kHub);
  // A growing vector copies its sets and does not move them.
  static_assert(!std::is_nothrow_move_constructible_v<TypeParam>);
  std::vector<TypeParam> const sets(3, copy);
  EXPECT_EQ(BytesOf(std::vector<TypeParam>(sets)[2]), kHub);
}

TYPED_TEST(DescriptorSet, CopiesHoldWhatTheRangeCovers) {
  TypeParam source;
  Put(source, kHub);
  source.Reset(source.begin() + 1, source.begin() + 2);
  EXPECT_EQ(BytesOf(TypeParam(source)), kHubInterface);
  Open<TypeParam> copy;
  static_cast<TypeParam&>(copy) = source;
  copy.SyncPointers(25);
  EXPECT_EQ(BytesOf(copy), kHubInterface);
}

TYPED_TEST(DescriptorSet, CopyToItselfChangesNothing) {
  Open<TypeParam> set;
  Put(set, kHub);
  unsigned char const* const bytes = set.Bytes();
  set.Reset(set.begin() + 1, set.begin() + 2);
  Open<TypeParam> const& same = set;
  set = same;
  EXPECT_EQ(set.Bytes(), bytes + 9);
  EXPECT_EQ(BytesOf(set), kHubInterface);
  set.SyncPointers(25);
  EXPECT_EQ(BytesOf(set), kHub);
}

TYPED_TEST(DescriptorSet, MovesResetTheSource) {
  for (bool const assigns : {false, true}) {
    Witness<TypeParam> source;
    Put(source, kHub);
    unsigned char const* const bytes = source.Bytes();
    std::unique_ptr<Witness<TypeParam>> const assigned = std::make_unique<Witness<TypeParam>>();
    Put(*assigned, kHubBos);
    source.onReset = [&] {
      EXPECT_EQ(source.Bytes(), bytes);
      EXPECT_EQ(source.Length(), 25);
      EXPECT_EQ(assigned->Bytes() == bytes, assigns);
    };
    TypeParam& source1 = source;
    TypeParam& target = *assigned;
    if (assigns) {
      EXPECT_EQ(&(target = Moved(source1)), &target);
      EXPECT_EQ(assigned->All(), 0);
      EXPECT_EQ(target.Bytes(), bytes);
      EXPECT_EQ(target.Length(), 25);
    } else {
      TypeParam const constructed(Moved(source1));
      EXPECT_EQ(constructed.Bytes(), bytes);
      EXPECT_EQ(constructed.Length(), 25);
    }
    EXPECT_EQ(source.resets, 1);
    EXPECT_EQ(source.All(), 1);
    EXPECT_EQ(source.Bytes(), nullptr);
  }
}

TYPED_TEST(DescriptorSet, MovedToSetPointsAtTheStart) {
  Open<TypeParam> source;
  Put(source, kHub);
  unsigned char const* const bytes = source.Bytes();
  source.Reset(source.begin() + 2, source.end());
  TypeParam const target(Moved<TypeParam>(source));
  EXPECT_EQ(target.Bytes(), bytes);
  EXPECT_EQ(target.Length(), 7);
  EXPECT_FALSE(source.Holds(bytes));
}

TYPED_TEST(DescriptorSet, MovedSetsAreUsable) {
  for (Bytes const& bytes : {Bytes{}, kHub}) {
    for (bool const sourceEndsFirst : {false, true}) {
      auto source = std::make_unique<TypeParam>(Holding<TypeParam>(bytes));
      auto first = std::make_unique<TypeParam>(Moved(*source));
      auto second = std::make_unique<TypeParam>(Holding<TypeParam>(kHubBos));
      *second = Moved(*first);
      EXPECT_TRUE(source->IsEmpty());
      ExpectUsable(*first);
      auto& ending = sourceEndsFirst ? source : second;
      auto& staying = sourceEndsFirst ? second : source;
      ending.reset();
      ExpectUsable(*staying);
    }
  }
}

TYPED_TEST(DescriptorSet, MoveToItselfChangesNothing) {
  Witness<TypeParam> set;
  Put(set, kHub);
  TypeParam& target = set;
  target = Moved(target);
  EXPECT_EQ(set.All(), 0);
  EXPECT_EQ(BytesOf(set), kHub);
}

TYPED_TEST(DescriptorSet, MoveThrowsWhatTheResetThrows) {
  Witness<TypeParam> source;
  Put(source, kHub);
  source.onReset = [] { throw std::domain_error("no reset"); };
  EXPECT_THROW(TypeParam const target(Moved<TypeParam>(source)), std::domain_error);
  TypeParam assigned;
  EXPECT_THROW(assigned = Moved<TypeParam>(source), std::domain_error);
  source.onReset = nullptr;
  ExpectUsable(assigned);
  ExpectUsable(source);
}

TYPED_TEST(DescriptorSet, MoveIsSafeWithoutAReset) {
  Witness<TypeParam> source;
  source.passesResetOn = false;
  Put(source, kHub);
  {
    TypeParam const target(Moved<TypeParam>(source));
    EXPECT_EQ(target.Bytes(), source.Bytes());
  }
  EXPECT_EQ(BytesOf(source), kHub);
}

// The device descriptor of compound sets

template <typename Set>
class CompoundDescriptorSet : public testing_support::SuiteTest {
 protected:
  CompoundDescriptorSet() {
    Put(set_, kHub);
    set_.StoreDeviceDescriptor(DeviceRecord());
  }

  OpenCompound<Set> set_;  ///< filled, with a device descriptor
};

using CompoundTypes =
    testing::Types<CCompoundDescriptorSet<ConfigurationRecord>, CBOSDescriptorSet>;
TYPED_TEST_SUITE(CompoundDescriptorSet, CompoundTypes);

TYPED_TEST(CompoundDescriptorSet, StoresADeviceDescriptor) {
  OpenCompound<TypeParam> set;
  EXPECT_TRUE(set.HasNoDevice());
  set.StoreDeviceDescriptor({});
  EXPECT_TRUE(set.HasDeviceDescriptor());
  EXPECT_TRUE(this->set_.HasTheDevice());
}

TYPED_TEST(CompoundDescriptorSet, ForgetsTheDeviceWithItsBytes) {
  ExactBytes const source(kHubBos);
  using Set = OpenCompound<TypeParam>;
  struct Row {
    bool keeps;
    std::function<void(Set&)> change;
  };
  Row const rows[] = {
      {true, [&](Set& set) { set.SetDescriptor(source.data(), 12); }},
      {true, [](Set& set) { set.SetDescriptor(nullptr, 0); }},
      {true, [](Set& set) { set.SetDescriptor(set.Bytes() + 9, 9); }},
      {true, [](Set& set) { set.Reset(set.begin() + 1, set.begin() + 2); }},
      {true, [](Set& set) { set.Reset(set.Bytes() + 24, 25); }},
      {true, [](Set& set) { set = *&set; }},
      {true, [](Set& set) { set = Moved(set); }},
      {true, [](Set& set) { static_cast<void>(set.DoGetDeviceDescriptor()); }},
      {false, [](Set& set) { set.Reset(); }},
      {false, [&](Set& set) { set.Reset(source.data(), 12); }},
      {false, [&](Set& set) { set.Reset(source.data(), 0); }},
      {false, [](Set& set) { set.Reset(nullptr, 0); }},
      {false, [](Set& set) { set.Reset(nullptr, 9); }},
      {false, [](Set& set) { set.Reset(set.Bytes(), 0); }},
      {false, [](Set& set) { set.Reset(set.Bytes() + 25, 0); }},
      {false, [&](Set& set) { set.Reset(source.At(0), source.At(12)); }},
      {false, [](Set& set) { set.Reset(set.end(), set.begin()); }},
      {false, [](Set& set) { set = Set(Set()); }},
  };
  for (Row const& row : rows) {
    SCOPED_TRACE(&row - rows);
    Set set(this->set_);
    EXPECT_TRUE(set.HasTheDevice());
    row.change(set);
    EXPECT_TRUE(row.keeps ? set.HasTheDevice() : set.HasNoDevice());
  }
  Set assigned;
  assigned = this->set_;
  EXPECT_TRUE(assigned.HasTheDevice());
}

TYPED_TEST(CompoundDescriptorSet, MovedToSetHasNoDevice) {
  OpenCompound<TypeParam> constructed(Moved(this->set_));
  EXPECT_TRUE(constructed.HasNoDevice());
  EXPECT_TRUE(this->set_.HasNoDevice());
  OpenCompound<TypeParam> assigned;
  assigned.StoreDeviceDescriptor(DeviceRecord());
  constructed.StoreDeviceDescriptor(DeviceRecord());
  assigned = Moved(constructed);
  EXPECT_TRUE(assigned.HasNoDevice());
  EXPECT_TRUE(constructed.HasNoDevice());
}

// What a source's Reset() leaves as its device descriptor is what the move copies.
TYPED_TEST(CompoundDescriptorSet, MoveCopiesTheDeviceAfterTheReset) {
  Witness<OpenCompound<TypeParam>> source;
  OpenCompound<TypeParam>& set = source;
  source.passesResetOn = false;
  source.onReset = [&] { set.StoreDeviceDescriptor(DeviceRecord()); };
  OpenCompound<TypeParam> target;
  target = Moved(set);
  EXPECT_TRUE(target.HasTheDevice());
  set.StoreDeviceDescriptor({});
  OpenCompound<TypeParam> const constructed(Moved(set));
  EXPECT_TRUE(constructed.HasTheDevice());
}

TYPED_TEST(CompoundDescriptorSet, GetsNoDeviceDescriptorByItself) {
  EXPECT_EQ(this->set_.DoGetDeviceDescriptor(), static_cast<RETURN_CODE>(0x80000000));
  EXPECT_EQ(BytesOf(this->set_), kHub);
}

#if !defined(_MSC_VER) && defined(__x86_64__)
// A virtual operation that a derived class adds takes the first slot that is free.
template <typename Set>
class OneMore : public Set {
 public:
  virtual void Added() {}
};

// The destructor has the slots 0 and 1 in that ABI.
template <typename Set>
void ExpectSlots(std::size_t added) {
  using testing_support::SlotOf;
  EXPECT_EQ(SlotOf(static_cast<void (Set::*)()>(&Set::Reset)), 2u);
  EXPECT_EQ(SlotOf(static_cast<void (Set::*)(Iterator, Iterator)>(&Set::Reset)), 3u);
  EXPECT_EQ(SlotOf(static_cast<void (Set::*)(void*, unsigned short)>(&Set::Reset)), 4u);
  EXPECT_EQ(SlotOf(&Open<Set>::DoReadDescriptor), 5u);
  EXPECT_EQ(SlotOf(&OneMore<Set>::Added), added);
}

TEST(DescriptorSetSlots, AreInTheSuitesOrder) {
  ExpectSlots<CDescriptorSet<BosRecord>>(6);
  ExpectSlots<CBOSDescriptorSet>(7);
  ExpectSlots<CConfigDescriptorSet>(7);
  EXPECT_EQ(testing_support::SlotOf(&OpenCompound<CBOSDescriptorSet>::DoGetDeviceDescriptor), 6u);
}
#endif

}  // namespace
}  // namespace usb_support
