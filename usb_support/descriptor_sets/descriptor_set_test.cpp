// What every descriptor set does: both templates and both concrete sets, for both records.
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

#include <tests/support/allocation_counter.h>
#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <tests/support/virtual_slot.h>
#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>

#if defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#endif

namespace usb_support {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::ExactBytes;

using Iterator = CDescriptorRangeIterator;
using BosRecord = TQ_USB_BOS_DESCRIPTOR;
using ConfigurationRecord = TQ_USB_CONFIGURATION_DESCRIPTOR;

static_assert(std::is_base_of_v<CDescriptorRange, CDescriptorSet<BosRecord>>);
static_assert(std::is_base_of_v<CDescriptorRange, CDescriptorSet<ConfigurationRecord>>);
static_assert(std::is_base_of_v<CDescriptorSet<BosRecord>, CCompoundDescriptorSet<BosRecord>>);
static_assert(std::is_base_of_v<CDescriptorSet<ConfigurationRecord>,
                                CCompoundDescriptorSet<ConfigurationRecord>>);
static_assert(std::is_base_of_v<CCompoundDescriptorSet<BosRecord>, CBOSDescriptorSet>);
static_assert(std::is_base_of_v<CCompoundDescriptorSet<ConfigurationRecord>, CConfigDescriptorSet>);

// A hub's configuration: configuration, interface, endpoint at 0, 9, 18; end 25.
Bytes const kHub = {0x09, 0x02, 0x19, 0x00, 0x01, 0x01, 0x00, 0xE0, 0x32,  //
                    0x09, 0x04, 0x00, 0x00, 0x01, 0x09, 0x00, 0x00, 0x00,  //
                    0x07, 0x05, 0x81, 0x03, 0x02, 0x00, 0x0C};
Bytes const kHubInterface(kHub.begin() + 9, kHub.begin() + 18);
Bytes const kHubEndpoint(kHub.begin() + 18, kHub.end());

// A BOS with a USB 2.0 extension.
Bytes const kBos = {0x05, 0x0F, 0x0C, 0x00, 0x01,  //
                    0x07, 0x10, 0x02, 0x02, 0x00, 0x00, 0x00};

// A hub's device descriptor.
Bytes const kDevice = {0x12, 0x01, 0x00, 0x02, 0x09, 0x00, 0x01, 0x40, 0x24,
                       0x04, 0x14, 0x25, 0xB3, 0x0B, 0x00, 0x00, 0x00, 0x01};

TQ_USB_DEVICE_DESCRIPTOR DeviceRecord() {
  TQ_USB_DEVICE_DESCRIPTOR record;
  static_assert(sizeof(record) == 18);
  std::memcpy(&record, kDevice.data(), sizeof(record));
  return record;
}

Bytes BytesOf(CDescriptorRange const& range) {
  return {range.Bytes(), range.Bytes() + range.Length()};
}

// As std::move, for sources that a test looks at afterwards.
template <typename Set>
Set&& Moved(Set& set) {
  return static_cast<Set&&>(set);
}

template <typename Set>
using RecordOf = std::conditional_t<std::is_base_of_v<CDescriptorSet<BosRecord>, Set>, BosRecord,
                                    ConfigurationRecord>;

// A set with its protected members open.
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

  Bytes DeviceBytes() const {
    auto const* const bytes = reinterpret_cast<unsigned char const*>(&DeviceDescriptor());
    return {bytes, bytes + sizeof(TQ_USB_DEVICE_DESCRIPTOR)};
  }

  bool HasTheDevice() const { return HasDeviceDescriptor() && DeviceBytes() == kDevice; }
  bool HasNoDevice() const { return !HasDeviceDescriptor() && DeviceBytes() == Bytes(18); }
};

// Sees every virtual reset of a set.
template <typename Set>
class Witness : public Set {
 public:
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

  int resets = 0;
  int rangeResets = 0;
  int byteResets = 0;
  bool passesResetOn = true;
  std::function<void()> onReset;
};

// The bytes of a fill are gone when it returns.
void Fill(auto& set, Bytes const& bytes) {
  ExactBytes const source(bytes);
  set.SetDescriptor(source.data(), static_cast<unsigned short>(source.size()));
}

void ResetTo(auto& set, Bytes const& bytes) {
  ExactBytes const source(bytes);
  set.Reset(source.data(), static_cast<unsigned short>(source.size()));
}

// Everything that may be done with a set that was moved from or to.
void ExpectUsable(auto& set) {
  auto const before = BytesOf(set);
  {
    auto const copy(set);
    EXPECT_EQ(BytesOf(copy), before);
    auto assigned(copy);
    assigned = set;
    EXPECT_EQ(BytesOf(assigned), before);
  }
  Fill(set, kBos);
  EXPECT_EQ(BytesOf(set), kBos);
  ResetTo(set, kHub);
  EXPECT_EQ(BytesOf(set), kHub);
  set.Reset();
  EXPECT_TRUE(set.IsEmpty());
  Fill(set, kBos);
  EXPECT_EQ(BytesOf(set), kBos);
}

template <typename Set>
class DescriptorSet : public testing_support::SuiteTest {
 protected:
  using Record = RecordOf<Set>;

  /// A set writes nothing to the log.
  void TearDown() override { EXPECT_THAT(TakeCalls(), IsEmpty()); }
};

using SetTypes =
    testing::Types<CDescriptorSet<BosRecord>, CDescriptorSet<ConfigurationRecord>,
                   CCompoundDescriptorSet<BosRecord>, CCompoundDescriptorSet<ConfigurationRecord>,
                   CBOSDescriptorSet, CConfigDescriptorSet>;
TYPED_TEST_SUITE(DescriptorSet, SetTypes);

TYPED_TEST(DescriptorSet, HasTheOperationsOfAValue) {
  static_assert(std::is_default_constructible_v<TypeParam>);
  static_assert(std::is_copy_constructible_v<TypeParam>);
  static_assert(std::is_copy_assignable_v<TypeParam>);
  static_assert(std::is_move_constructible_v<TypeParam>);
  static_assert(std::is_move_assignable_v<TypeParam>);
  static_assert(std::has_virtual_destructor_v<TypeParam>);
  static_assert(std::is_same_v<decltype(std::declval<TypeParam const&>().Descriptor()),
                               typename TestFixture::Record const*>);
  static_assert(std::is_convertible_v<TypeParam*, CDescriptorRange*>);

  // A growing vector copies its sets and does not move them.
  static_assert(!std::is_nothrow_move_constructible_v<TypeParam>);
  std::vector<TypeParam> sets(1);
  Fill(sets[0], kHub);
  for (int i = 0; i < 10; ++i) {
    sets.push_back(sets[0]);
  }
  for (TypeParam const& set : sets) {
    EXPECT_EQ(BytesOf(set), kHub);
  }
}

TYPED_TEST(DescriptorSet, IsEmptyAtFirst) {
  Open<TypeParam> const set;
  EXPECT_TRUE(set.IsEmpty());
  EXPECT_EQ(set.Bytes(), nullptr);
  EXPECT_EQ(set.Length(), 0);
  EXPECT_EQ(set.Descriptor(), nullptr);
  EXPECT_EQ(set.begin(), set.end());
  EXPECT_TRUE(set.Valid());
  EXPECT_FALSE(set.Holds(nullptr));
  EXPECT_FALSE(set.Holds(std::addressof(set)));
}

TYPED_TEST(DescriptorSet, SetDescriptorHoldsACopy) {
  Open<TypeParam> set;
  {
    ExactBytes const source(kHub);
    set.SetDescriptor(source.data(), 25);
    EXPECT_NE(set.Bytes(), source.data());
    EXPECT_FALSE(set.Holds(source.data()));
    std::memset(source.data(), 0xEE, source.size());
  }
  EXPECT_EQ(set.Length(), 25);
  EXPECT_FALSE(set.IsEmpty());
  EXPECT_EQ(BytesOf(set), kHub);
  EXPECT_TRUE(set.Holds(set.Bytes()));
  EXPECT_TRUE(set.Holds(set.Bytes() + 24));
  EXPECT_FALSE(set.Holds(set.Bytes() + 25));
}

TYPED_TEST(DescriptorSet, ResetWithBytesHoldsACopy) {
  Open<TypeParam> set;
  {
    ExactBytes const source(kHub);
    set.Reset(source.data(), 25);
    EXPECT_NE(set.Bytes(), source.data());
    std::memset(source.data(), 0xEE, source.size());
  }
  EXPECT_EQ(set.Length(), 25);
  EXPECT_EQ(BytesOf(set), kHub);
}

TYPED_TEST(DescriptorSet, FillingTakesOnlyTheBytesAskedFor) {
  ExactBytes const source(kHub);
  TypeParam set;
  set.SetDescriptor(source.data(), 9);
  EXPECT_EQ(BytesOf(set), Bytes(kHub.begin(), kHub.begin() + 9));
  set.Reset(source.data() + 9, 9);
  EXPECT_EQ(BytesOf(set), kHubInterface);
}

TYPED_TEST(DescriptorSet, FillingReplacesWhatIsHeld) {
  TypeParam set;
  Fill(set, kHub);
  Fill(set, kBos);
  EXPECT_EQ(BytesOf(set), kBos);
  Fill(set, kHub);
  EXPECT_EQ(BytesOf(set), kHub);
  ResetTo(set, kBos);
  EXPECT_EQ(BytesOf(set), kBos);
  ResetTo(set, kHub);
  EXPECT_EQ(BytesOf(set), kHub);
}

TYPED_TEST(DescriptorSet, FillingWithNoBytesLeavesItEmpty) {
  ExactBytes const source(kHub);
  for (bool const isFilled : {false, true}) {
    for (bool const throughReset : {false, true}) {
      Open<TypeParam> set;
      if (isFilled) {
        Fill(set, kHub);
      }
      if (throughReset) {
        set.Reset(source.data(), 0);
      } else {
        set.SetDescriptor(source.data(), 0);
      }
      EXPECT_TRUE(set.IsEmpty());
      EXPECT_EQ(set.Bytes(), nullptr);
      EXPECT_EQ(set.Length(), 0);
      EXPECT_EQ(set.Descriptor(), nullptr);
      set.SyncPointers(25);
      EXPECT_TRUE(set.IsEmpty());
      Fill(set, kBos);
      EXPECT_EQ(BytesOf(set), kBos);
    }
  }
}

TYPED_TEST(DescriptorSet, NullIsNoBytes) {
  Open<TypeParam> set;
  Fill(set, kHub);
  set.Reset(nullptr, 9);
  EXPECT_TRUE(set.IsEmpty());
  EXPECT_EQ(set.Bytes(), nullptr);
  Fill(set, kHub);
  set.SetDescriptor(nullptr, 9);
  EXPECT_TRUE(set.IsEmpty());
  EXPECT_EQ(set.Bytes(), nullptr);
  set.SyncPointers(9);
  EXPECT_TRUE(set.IsEmpty());
}

TYPED_TEST(DescriptorSet, HoldsUpTo65535Bytes) {
  Bytes bytes(0xFFFF);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    bytes[at] = static_cast<unsigned char>(at * 3 + at / 256);
  }
  TypeParam set;
  Fill(set, bytes);
  EXPECT_EQ(set.Length(), 0xFFFF);
  EXPECT_EQ(BytesOf(set), bytes);
  TypeParam const copy(set);
  EXPECT_EQ(BytesOf(copy), bytes);
}

#if defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)
TYPED_TEST(DescriptorSet, HoldsNothingBehindTheLastByte) {
  TypeParam set;
  Fill(set, kHub);
  TypeParam const copy(set);
  for (unsigned char const* const bytes : {set.Bytes(), copy.Bytes()}) {
    EXPECT_EQ(__asan_address_is_poisoned(bytes + 24), 0);
    EXPECT_NE(__asan_address_is_poisoned(bytes + 25), 0);
  }
}
#endif

TYPED_TEST(DescriptorSet, AnyBytesAreHeld) {
  for (Bytes const& bytes : {Bytes{0x00}, Bytes{0xFF}, Bytes{0x09, 0x02}, Bytes(7, 0x00)}) {
    TypeParam set;
    Fill(set, bytes);
    EXPECT_EQ(BytesOf(set), bytes);
    EXPECT_FALSE(set.Valid());
    EXPECT_EQ(set.Descriptor(), static_cast<void const*>(set.Bytes()));
  }
}

TYPED_TEST(DescriptorSet, ShowsTheDescriptorAsItsRecord) {
  TypeParam set;
  Fill(set, std::is_same_v<typename TestFixture::Record, BosRecord> ? kBos : kHub);
  auto const* const descriptor = set.Descriptor();
  EXPECT_EQ(descriptor, static_cast<void const*>(set.Bytes()));
  EXPECT_EQ(descriptor->wTotalLength, set.Length());
}

TYPED_TEST(DescriptorSet, IsARangeOverItsBytes) {
  TypeParam set;
  Fill(set, kHub);
  EXPECT_TRUE(set.Valid());
  EXPECT_EQ(set.Count(), 3);
  EXPECT_EQ(set.Count(static_cast<unsigned char>(0x05)), 1);
  EXPECT_EQ(set.FindFirst(0x04) - set.begin(), 9);
  EXPECT_EQ(set[2].bDescriptorType, 0x05);
  EXPECT_EQ(set.end() - set.begin(), 25);
  auto const all = set.GetAll();
  ASSERT_EQ(all->size(), 3u);
  EXPECT_EQ(BytesOf((*all)[1]), kHubInterface);
  EXPECT_TRUE((*all)[1].SubRangeOf(set));
  EXPECT_EQ(BytesOf(set.SubRange([](Iterator, Iterator last) { return std::pair(true, last); },
                                 CDescriptorRange::AlwaysTrue)),
            Bytes{});
}

TYPED_TEST(DescriptorSet, ResetLetsTheBytesGo) {
  Open<TypeParam> set;
  Fill(set, kHub);
  set.Reset();
  EXPECT_TRUE(set.IsEmpty());
  EXPECT_EQ(set.Bytes(), nullptr);
  EXPECT_EQ(set.Length(), 0);
  EXPECT_EQ(set.Descriptor(), nullptr);
  set.SyncPointers(25);
  EXPECT_EQ(set.Bytes(), nullptr);
  set.Reset();
  EXPECT_TRUE(set.IsEmpty());
}

TYPED_TEST(DescriptorSet, ResetsOfTheRangeAreTheSets) {
  Open<TypeParam> set;
  CDescriptorRange& range = set;
  ResetTo(range, kHub);
  EXPECT_EQ(BytesOf(set), kHub);
  ResetTo(range, kBos);
  EXPECT_EQ(BytesOf(set), kBos);
  range.Reset();
  EXPECT_TRUE(set.IsEmpty());
  set.SyncPointers(12);
  EXPECT_TRUE(set.IsEmpty());
}

TYPED_TEST(DescriptorSet, EndsAsARange) {
  bool ended = false;
  class Ending : public TypeParam {
   public:
    explicit Ending(bool& flag) : flag_(flag) {}
    Ending(Ending const&) = delete;
    Ending& operator=(Ending const&) = delete;
    ~Ending() override { flag_ = true; }

   private:
    bool& flag_;
  };
  std::unique_ptr<CDescriptorRange> range = std::make_unique<Ending>(ended);
  ResetTo(*range, kHub);
  range.reset();
  EXPECT_TRUE(ended);
}

// A part of the held bytes

TYPED_TEST(DescriptorSet, SetDescriptorMayTakeBytesFromTheSetItself) {
  Open<TypeParam> set;
  Fill(set, kHub);
  set.SetDescriptor(set.Bytes(), set.Length());
  EXPECT_EQ(BytesOf(set), kHub);
  set.SetDescriptor(set.Bytes() + 9, 16);
  EXPECT_EQ(BytesOf(set), Bytes(kHub.begin() + 9, kHub.end()));
  set.SetDescriptor(set.Bytes() + 9, 7);
  EXPECT_EQ(BytesOf(set), kHubEndpoint);
  // It is a block of its own, not a view of the old one.
  set.SyncPointers(25);
  EXPECT_EQ(BytesOf(set), kHubEndpoint);
}

TYPED_TEST(DescriptorSet, ResetWithAPointerIntoTheHeldBytesOnlyPointsTheRangeThere) {
  for (std::size_t at = 0; at < 25; ++at) {
    for (std::size_t length = 1; length <= 25 - at; ++length) {
      Open<TypeParam> set;
      Fill(set, kHub);
      unsigned char* const bytes = set.Bytes();
      set.Reset(bytes + at, static_cast<unsigned short>(length));
      EXPECT_EQ(set.Bytes(), bytes + at);
      ASSERT_EQ(set.Length(), length);
      EXPECT_TRUE(set.Holds(bytes));
      set.SyncPointers(25);
      EXPECT_EQ(set.Bytes(), bytes);
      ASSERT_EQ(BytesOf(set), kHub);
    }
  }
}

TYPED_TEST(DescriptorSet, ARangeIntoTheHeldBytesEndsWhereTheyEnd) {
  Open<TypeParam> set;
  Fill(set, kHub);
  unsigned char* const bytes = set.Bytes();
  set.Reset(bytes, 26);
  EXPECT_EQ(BytesOf(set), kHub);
  set.Reset(bytes + 18, 8);
  EXPECT_EQ(BytesOf(set), kHubEndpoint);
  set.Reset(bytes + 24, 0xFFFF);
  EXPECT_THAT(BytesOf(set), ElementsAre(0x0C));
  EXPECT_EQ(set.Bytes(), bytes + 24);
}

TYPED_TEST(DescriptorSet, NoBytesFromTheHeldOnesLetThemGo) {
  for (std::size_t at = 0; at <= 25; ++at) {
    Open<TypeParam> set;
    Fill(set, kHub);
    unsigned char* const bytes = set.Bytes();
    set.Reset(bytes + at, 0);
    EXPECT_TRUE(set.IsEmpty());
    EXPECT_EQ(set.Bytes(), nullptr);
    EXPECT_FALSE(set.Holds(bytes));
    set.SyncPointers(25);
    EXPECT_TRUE(set.IsEmpty());
  }
}

TYPED_TEST(DescriptorSet, ThePlaceBehindTheHeldBytesIsNotOneOfThem) {
  Open<TypeParam> set;
  Fill(set, kHub);
  set.Reset(set.Bytes() + 25, 0);
  EXPECT_TRUE(set.IsEmpty());
  set.SyncPointers(25);
  EXPECT_TRUE(set.IsEmpty());
}

TYPED_TEST(DescriptorSet, ResetWithIteratorsOfTheSetOnlyPointsTheRangeThere) {
  Open<TypeParam> set;
  Fill(set, kHub);
  unsigned char* const bytes = set.Bytes();
  set.Reset(set.begin() + 1, set.begin() + 2);
  EXPECT_EQ(set.Bytes(), bytes + 9);
  EXPECT_EQ(BytesOf(set), kHubInterface);
  // What is held but out of range can be reached again.
  set.Reset(Iterator(reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR*>(bytes), 25),
            Iterator(reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR*>(bytes + 25), 0));
  EXPECT_EQ(set.Bytes(), bytes);
  EXPECT_EQ(BytesOf(set), kHub);
}

TYPED_TEST(DescriptorSet, ResetWithForeignIteratorsHoldsACopy) {
  Open<TypeParam> set;
  Fill(set, kBos);
  {
    ExactBytes const source(kHub);
    set.Reset(source.At(9), source.At(25));
    EXPECT_NE(set.Bytes(), source.data() + 9);
  }
  EXPECT_EQ(BytesOf(set), Bytes(kHub.begin() + 9, kHub.end()));
  set.SyncPointers(25);
  EXPECT_EQ(set.Length(), 16);
}

TYPED_TEST(DescriptorSet, ResetWithIteratorsThatSpanNothingLetsTheBytesGo) {
  auto const expectEmptied = [](auto const& pair) {
    Open<TypeParam> set;
    Fill(set, kHub);
    auto const [first, last] = pair(set);
    set.Reset(first, last);
    EXPECT_TRUE(set.IsEmpty());
    set.SyncPointers(25);
    EXPECT_TRUE(set.IsEmpty());
  };
  expectEmptied([](auto const& set) { return std::pair(set.begin() + 2, set.begin() + 1); });
  expectEmptied([](auto const& set) { return std::pair(set.begin() + 1, set.begin() + 1); });
  expectEmptied([](auto const& set) { return std::pair(Iterator(), set.end()); });
  expectEmptied([](auto const& set) { return std::pair(set.begin(), Iterator()); });
  expectEmptied([](auto const&) { return std::pair(Iterator(), Iterator()); });
}

TYPED_TEST(DescriptorSet, DerivedClassesSeeResetsAndWhatTheyEndIn) {
  Witness<TypeParam> set;
  Fill(set, kHub);
  EXPECT_EQ(set.resets + set.rangeResets + set.byteResets, 0);
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

// Reading in place

TYPED_TEST(DescriptorSet, SyncPointersShowsWhatWasReadInPlace) {
  Open<TypeParam> set;
  Fill(set, Bytes(64));
  unsigned char* const bytes = set.Bytes();
  std::memcpy(bytes, kHub.data(), kHub.size());
  set.SyncPointers(25);
  EXPECT_EQ(set.Bytes(), bytes);
  EXPECT_EQ(BytesOf(set), kHub);
  set.SyncPointers(0);
  EXPECT_TRUE(set.IsEmpty());
  EXPECT_EQ(set.Bytes(), nullptr);
  set.SyncPointers(64);
  EXPECT_EQ(set.Length(), 64);
  EXPECT_EQ(set.Bytes(), bytes);
}

TYPED_TEST(DescriptorSet, SyncPointersNeverGoesPastTheHeldBytes) {
  Open<TypeParam> set;
  set.SyncPointers(9);
  EXPECT_TRUE(set.IsEmpty());
  Fill(set, kHub);
  set.SyncPointers(26);
  EXPECT_EQ(BytesOf(set), kHub);
  set.SyncPointers(0xFFFF);
  EXPECT_EQ(BytesOf(set), kHub);
}

TYPED_TEST(DescriptorSet, SyncPointersCallsNoVirtualReset) {
  class Reader : public Witness<TypeParam> {
   public:
    using TypeParam::SyncPointers;
  };
  Reader set;
  Fill(set, kHub);
  set.SyncPointers(9);
  EXPECT_EQ(set.Length(), 9);
  EXPECT_EQ(set.resets + set.rangeResets + set.byteResets, 0);
}

TYPED_TEST(DescriptorSet, ReadsNothingByItself) {
  for (bool const isFilled : {false, true}) {
    Open<TypeParam> set;
    if (isFilled) {
      Fill(set, kHub);
    }
    unsigned char const* const bytes = set.Bytes();
    EXPECT_EQ(set.DoReadDescriptor(), static_cast<RETURN_CODE>(0x80000000));
    EXPECT_EQ(set.Bytes(), bytes);
    EXPECT_EQ(BytesOf(set), isFilled ? kHub : Bytes{});
  }
}

TYPED_TEST(DescriptorSet, ReadingIsForDerivedClasses) {
  class Reader : public Open<TypeParam> {
   protected:
    RETURN_CODE DoReadDescriptor() override {
      Fill(*this, kHub);
      return RC_SUCCESS;
    }
  };
  Reader reader;
  Open<TypeParam>& set = reader;
  EXPECT_EQ(set.DoReadDescriptor(), RC_SUCCESS);
  EXPECT_EQ(BytesOf(set), kHub);
}

// Copies

TYPED_TEST(DescriptorSet, CopyHoldsBytesOfItsOwn) {
  TypeParam source;
  Fill(source, kHub);
  TypeParam const copy(source);
  EXPECT_EQ(BytesOf(copy), kHub);
  EXPECT_NE(copy.Bytes(), source.Bytes());
  EXPECT_EQ(copy, source);
  source.Bytes()[0] = 0xEE;
  EXPECT_EQ(BytesOf(copy), kHub);
  source.Reset();
  EXPECT_EQ(BytesOf(copy), kHub);
}

TYPED_TEST(DescriptorSet, AssignedCopyHoldsBytesOfItsOwn) {
  for (Bytes const& before : {Bytes{}, kBos, kHub}) {
    TypeParam copy;
    Fill(copy, before);
    {
      TypeParam source;
      Fill(source, kHub);
      EXPECT_EQ(&(copy = source), &copy);
      EXPECT_NE(copy.Bytes(), source.Bytes());
    }
    EXPECT_EQ(BytesOf(copy), kHub);
  }
}

TYPED_TEST(DescriptorSet, CopyOfAnEmptySetIsEmpty) {
  TypeParam const empty;
  TypeParam const copy(empty);
  EXPECT_TRUE(copy.IsEmpty());
  EXPECT_EQ(copy.Bytes(), nullptr);
  Open<TypeParam> assigned;
  Fill(assigned, kHub);
  static_cast<TypeParam&>(assigned) = empty;
  EXPECT_TRUE(assigned.IsEmpty());
  EXPECT_EQ(assigned.Bytes(), nullptr);
  assigned.SyncPointers(25);
  EXPECT_TRUE(assigned.IsEmpty());
}

TYPED_TEST(DescriptorSet, CopyHoldsWhatTheRangeCovers) {
  TypeParam source;
  Fill(source, kHub);
  source.Reset(source.begin() + 1, source.begin() + 2);
  class OpenCopy : public Open<TypeParam> {
   public:
    explicit OpenCopy(TypeParam const& other) { static_cast<TypeParam&>(*this) = other; }
  };
  OpenCopy copy(source);
  EXPECT_EQ(BytesOf(copy), kHubInterface);
  copy.SyncPointers(25);
  EXPECT_EQ(BytesOf(copy), kHubInterface);
  EXPECT_EQ(BytesOf(TypeParam(source)), kHubInterface);
}

TYPED_TEST(DescriptorSet, CopyToItselfChangesNothing) {
  Open<TypeParam> set;
  Fill(set, kHub);
  unsigned char const* const bytes = set.Bytes();
  Open<TypeParam> const& same = set;
  set = same;
  EXPECT_EQ(set.Bytes(), bytes);
  EXPECT_EQ(BytesOf(set), kHub);

  set.Reset(set.begin() + 1, set.begin() + 2);
  set = same;
  EXPECT_EQ(set.Bytes(), bytes + 9);
  EXPECT_EQ(BytesOf(set), kHubInterface);
  set.SyncPointers(25);
  EXPECT_EQ(BytesOf(set), kHub);

  TypeParam empty;
  TypeParam const& sameEmpty = empty;
  empty = sameEmpty;
  EXPECT_TRUE(empty.IsEmpty());
}

TYPED_TEST(DescriptorSet, CopyingCallsNoVirtualReset) {
  Witness<TypeParam> source;
  Fill(source, kHub);
  Witness<TypeParam> target;
  Fill(target, kBos);
  static_cast<TypeParam&>(target) = source;
  EXPECT_EQ(BytesOf(target), kHub);
  EXPECT_EQ(target.resets + target.rangeResets + target.byteResets, 0);
  EXPECT_EQ(source.resets + source.rangeResets + source.byteResets, 0);
}

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)
TYPED_TEST(DescriptorSet, CopyTakesOneAllocation) {
  TypeParam source;
  Fill(source, kHub);
  EXPECT_EQ(testing_support::AllocationsOf([&source] { TypeParam const copy(source); }), 1u);
  TypeParam target;
  EXPECT_EQ(testing_support::AllocationsOf([&] { target = source; }), 1u);
  EXPECT_EQ(testing_support::AllocationsOf([&] { target = source; }), 1u);
  EXPECT_EQ(testing_support::AllocationsOf([&] { Fill(target, kHub); }), 2u) << "one by the test";
}

TYPED_TEST(DescriptorSet, MovingResettingAndPointingTakeNoAllocation) {
  Open<TypeParam> set;
  Fill(set, kHub);
  TypeParam target;
  EXPECT_EQ(testing_support::AllocationsOf([&] {
              set.Reset(set.begin() + 1, set.begin() + 2);
              set.SyncPointers(25);
              target = static_cast<TypeParam&&>(set);
              TypeParam const other(Moved(target));
              set.Reset();
            }),
            0u);
}
#endif

#if defined(USB_SUPPORT_TEST_FAILS_ALLOCATIONS)
TYPED_TEST(DescriptorSet, WithoutMemoryNothingChanges) {
  ExactBytes const bytes(kBos);
  TypeParam source;
  Fill(source, kBos);
  TypeParam set;
  Fill(set, kHub);
  unsigned char const* const held = set.Bytes();
  EXPECT_TRUE(testing_support::RunsOutOfMemory([&] { set.SetDescriptor(bytes.data(), 12); }));
  EXPECT_TRUE(testing_support::RunsOutOfMemory([&] { set.Reset(bytes.data(), 12); }));
  EXPECT_TRUE(testing_support::RunsOutOfMemory([&] { set.Reset(bytes.At(0), bytes.At(12)); }));
  EXPECT_TRUE(testing_support::RunsOutOfMemory([&] { set = source; }));
  EXPECT_TRUE(testing_support::RunsOutOfMemory([&] { TypeParam const copy(set); }));
  EXPECT_EQ(set.Bytes(), held);
  EXPECT_EQ(BytesOf(set), kHub);
}
#endif

// Moves

TYPED_TEST(DescriptorSet, MoveConstructionHandsTheBlockOverAndThenResetsTheSource) {
  Witness<TypeParam> source;
  Fill(source, kHub);
  unsigned char const* const bytes = source.Bytes();
  source.onReset = [&] {
    EXPECT_EQ(source.Bytes(), bytes);
    EXPECT_EQ(source.Length(), 25);
  };
  TypeParam const target(static_cast<TypeParam&&>(source));
  EXPECT_EQ(source.resets, 1);
  EXPECT_EQ(source.rangeResets, 0);
  EXPECT_EQ(source.byteResets, 0);
  EXPECT_TRUE(source.IsEmpty());
  EXPECT_EQ(source.Bytes(), nullptr);
  EXPECT_EQ(target.Bytes(), bytes);
  EXPECT_EQ(target.Length(), 25);
}

TYPED_TEST(DescriptorSet, MoveAssignmentHandsTheBlockOverAndThenResetsTheSource) {
  Witness<TypeParam> source;
  Witness<TypeParam> target;
  Fill(source, kHub);
  Fill(target, kBos);
  unsigned char const* const bytes = source.Bytes();
  source.onReset = [&] {
    EXPECT_EQ(target.Bytes(), bytes);
    EXPECT_EQ(target.Length(), 25);
    EXPECT_EQ(source.Bytes(), bytes);
    EXPECT_EQ(source.Length(), 25);
  };
  TypeParam& assigned = target;
  EXPECT_EQ(&(assigned = static_cast<TypeParam&&>(source)), &assigned);
  EXPECT_EQ(source.resets, 1);
  EXPECT_EQ(source.rangeResets + source.byteResets, 0);
  EXPECT_EQ(target.resets + target.rangeResets + target.byteResets, 0);
  EXPECT_TRUE(source.IsEmpty());
  EXPECT_EQ(source.Bytes(), nullptr);
  EXPECT_EQ(target.Bytes(), bytes);
  EXPECT_EQ(target.Length(), 25);
}

TYPED_TEST(DescriptorSet, MovePointsTheTargetAtTheStartOfTheBlock) {
  for (bool const assigns : {false, true}) {
    Open<TypeParam> source;
    Fill(source, kHub);
    unsigned char const* const bytes = source.Bytes();
    source.Reset(source.begin() + 2, source.end());
    ASSERT_EQ(source.Bytes(), bytes + 18);
    TypeParam target;
    if (assigns) {
      target = static_cast<TypeParam&&>(source);
      EXPECT_EQ(target.Bytes(), bytes);
      EXPECT_EQ(target.Length(), 7);
    } else {
      TypeParam const constructed(static_cast<TypeParam&&>(source));
      EXPECT_EQ(constructed.Bytes(), bytes);
      EXPECT_EQ(constructed.Length(), 7);
    }
    EXPECT_TRUE(source.IsEmpty());
    EXPECT_FALSE(source.Holds(bytes));
  }
}

TYPED_TEST(DescriptorSet, MovedSetsMayBeUsedAgain) {
  for (Bytes const& bytes : {Bytes{}, kHub}) {
    TypeParam source;
    Fill(source, bytes);
    TypeParam constructed(Moved(source));
    EXPECT_TRUE(source.IsEmpty());
    ExpectUsable(constructed);
    ExpectUsable(source);

    TypeParam assigned;
    Fill(assigned, kBos);
    Fill(source, bytes);
    assigned = Moved(source);
    EXPECT_TRUE(source.IsEmpty());
    ExpectUsable(source);
    ExpectUsable(assigned);
  }
}

TYPED_TEST(DescriptorSet, MovedSetsMayEndInAnyOrder) {
  for (bool const targetFirst : {false, true}) {
    auto source = std::make_unique<TypeParam>();
    Fill(*source, kHub);
    auto target = std::make_unique<TypeParam>(Moved(*source));
    auto second = std::make_unique<TypeParam>();
    *second = Moved(*target);
    EXPECT_TRUE(target->IsEmpty());
    if (targetFirst) {
      second.reset();
      target.reset();
      EXPECT_TRUE(source->IsEmpty());
      ExpectUsable(*source);
    } else {
      source.reset();
      target.reset();
      ExpectUsable(*second);
    }
  }
}

TYPED_TEST(DescriptorSet, MovedToSetMayBeResetInEachWay) {
  std::function<void(TypeParam&)> const resets[] = {
      [](TypeParam& set) { set.Reset(); },
      [](TypeParam& set) { set.Reset(nullptr, 0); },
      [](TypeParam& set) { set.Reset(Iterator(), Iterator()); },
      [](TypeParam& set) { set.Reset(set.begin(), set.begin()); },
      [](TypeParam& set) { set.SetDescriptor(nullptr, 0); },
      [](TypeParam& set) { set = TypeParam(); },
  };
  for (auto const& reset : resets) {
    TypeParam source;
    Fill(source, kHub);
    TypeParam target(Moved(source));
    reset(target);
    EXPECT_TRUE(target.IsEmpty());
    EXPECT_EQ(target.Bytes(), nullptr);
    ExpectUsable(target);
  }
}

TYPED_TEST(DescriptorSet, MoveToItselfChangesNothing) {
  Witness<TypeParam> set;
  Fill(set, kHub);
  TypeParam& target = set;
  target = static_cast<TypeParam&&>(set);
  EXPECT_EQ(set.resets + set.rangeResets + set.byteResets, 0);
  EXPECT_EQ(BytesOf(set), kHub);
}

TYPED_TEST(DescriptorSet, MoveRaisesWhatTheResetOfTheSourceRaises) {
  Witness<TypeParam> source;
  Fill(source, kHub);
  source.onReset = [] { throw std::domain_error("no reset"); };
  EXPECT_THROW(TypeParam const target(static_cast<TypeParam&&>(source)), std::domain_error);
  TypeParam assigned;
  Fill(assigned, kBos);
  EXPECT_THROW(assigned = static_cast<TypeParam&&>(source), std::domain_error);
  EXPECT_EQ(source.resets, 2);
  source.onReset = nullptr;
  ExpectUsable(assigned);
  ExpectUsable(source);
}

TYPED_TEST(DescriptorSet, MoveIsSafeWhenTheSourceDoesNotReset) {
  Witness<TypeParam> source;
  source.passesResetOn = false;
  Fill(source, kHub);
  {
    TypeParam const target(static_cast<TypeParam&&>(source));
    TypeParam assigned;
    assigned = static_cast<TypeParam&&>(source);
    EXPECT_EQ(source.resets, 2);
    EXPECT_EQ(target.Bytes(), source.Bytes());
    EXPECT_EQ(assigned.Bytes(), source.Bytes());
  }
  EXPECT_EQ(BytesOf(source), kHub);
}

// The device descriptor of compound sets

template <typename Set>
class CompoundDescriptorSet : public testing_support::SuiteTest {
 protected:
  CompoundDescriptorSet() {
    Fill(set_, kHub);
    set_.StoreDeviceDescriptor(DeviceRecord());
  }

  OpenCompound<Set> set_;  ///< filled, with a device descriptor
};

using CompoundTypes =
    testing::Types<CCompoundDescriptorSet<BosRecord>, CCompoundDescriptorSet<ConfigurationRecord>,
                   CBOSDescriptorSet, CConfigDescriptorSet>;
TYPED_TEST_SUITE(CompoundDescriptorSet, CompoundTypes);

TYPED_TEST(CompoundDescriptorSet, HasNoDeviceDescriptorAtFirst) {
  OpenCompound<TypeParam> const set;
  EXPECT_FALSE(set.HasDeviceDescriptor());
  EXPECT_THAT(set.DeviceBytes(), Each(0));
}

TYPED_TEST(CompoundDescriptorSet, KeepsACopyOfTheDeviceDescriptor) {
  OpenCompound<TypeParam> set;
  {
    TQ_USB_DEVICE_DESCRIPTOR record = DeviceRecord();
    set.StoreDeviceDescriptor(record);
    record.idVendor = 0;
  }
  EXPECT_TRUE(set.HasDeviceDescriptor());
  EXPECT_EQ(set.DeviceBytes(), kDevice);
  EXPECT_TRUE(set.IsEmpty());
}

TYPED_TEST(CompoundDescriptorSet, ADeviceDescriptorOfZeroesIsOne) {
  OpenCompound<TypeParam> set;
  set.StoreDeviceDescriptor({});
  EXPECT_TRUE(set.HasDeviceDescriptor());
}

TYPED_TEST(CompoundDescriptorSet, SetDescriptorKeepsTheDeviceDescriptor) {
  Fill(this->set_, kBos);
  EXPECT_EQ(BytesOf(this->set_), kBos);
  EXPECT_TRUE(this->set_.HasTheDevice());
  this->set_.SetDescriptor(nullptr, 0);
  EXPECT_TRUE(this->set_.HasTheDevice());
  Fill(this->set_, kHub);
  this->set_.SetDescriptor(this->set_.Bytes() + 9, 9);
  EXPECT_TRUE(this->set_.HasTheDevice());
}

TYPED_TEST(CompoundDescriptorSet, ResetForgetsTheDeviceDescriptor) {
  this->set_.Reset();
  EXPECT_TRUE(this->set_.IsEmpty());
  EXPECT_TRUE(this->set_.HasNoDevice());
}

TYPED_TEST(CompoundDescriptorSet, ResetWithBytesForgetsTheDeviceDescriptor) {
  ResetTo(this->set_, kBos);
  EXPECT_EQ(BytesOf(this->set_), kBos);
  EXPECT_TRUE(this->set_.HasNoDevice());
}

TYPED_TEST(CompoundDescriptorSet, ResetWithNoBytesForgetsTheDeviceDescriptor) {
  this->set_.Reset(nullptr, 0);
  EXPECT_TRUE(this->set_.HasNoDevice());
  this->set_.StoreDeviceDescriptor(DeviceRecord());
  this->set_.Reset(nullptr, 9);
  EXPECT_TRUE(this->set_.HasNoDevice());
  this->set_.StoreDeviceDescriptor(DeviceRecord());
  ExactBytes const source(kHub);
  this->set_.Reset(source.data(), 0);
  EXPECT_TRUE(this->set_.HasNoDevice());
}

TYPED_TEST(CompoundDescriptorSet, PointingIntoTheHeldBytesKeepsTheDeviceDescriptor) {
  unsigned char* const bytes = this->set_.Bytes();
  this->set_.Reset(this->set_.begin() + 1, this->set_.begin() + 2);
  EXPECT_EQ(BytesOf(this->set_), kHubInterface);
  EXPECT_TRUE(this->set_.HasTheDevice());
  this->set_.Reset(bytes, 25);
  EXPECT_EQ(BytesOf(this->set_), kHub);
  EXPECT_TRUE(this->set_.HasTheDevice());
}

TYPED_TEST(CompoundDescriptorSet, NoBytesFromTheHeldOnesForgetTheDeviceDescriptor) {
  for (std::size_t at = 0; at <= 25; ++at) {
    OpenCompound<TypeParam> set(this->set_);
    set.Reset(set.Bytes() + at, 0);
    EXPECT_TRUE(set.IsEmpty());
    EXPECT_TRUE(set.HasNoDevice());
  }
}

TYPED_TEST(CompoundDescriptorSet, ResetWithOtherIteratorsForgetsTheDeviceDescriptor) {
  ExactBytes const source(kBos);
  this->set_.Reset(source.At(0), source.At(12));
  EXPECT_EQ(BytesOf(this->set_), kBos);
  EXPECT_TRUE(this->set_.HasNoDevice());

  Fill(this->set_, kHub);
  this->set_.StoreDeviceDescriptor(DeviceRecord());
  this->set_.Reset(this->set_.end(), this->set_.begin());
  EXPECT_TRUE(this->set_.IsEmpty());
  EXPECT_TRUE(this->set_.HasNoDevice());
}

TYPED_TEST(CompoundDescriptorSet, CopyHasTheDeviceDescriptor) {
  OpenCompound<TypeParam> const copy(this->set_);
  EXPECT_TRUE(copy.HasTheDevice());
  OpenCompound<TypeParam> assigned;
  assigned = this->set_;
  EXPECT_TRUE(assigned.HasTheDevice());
  this->set_.Reset();
  EXPECT_TRUE(copy.HasTheDevice());
  EXPECT_TRUE(assigned.HasTheDevice());
}

TYPED_TEST(CompoundDescriptorSet, CopyOfASetWithoutADeviceDescriptorHasNone) {
  OpenCompound<TypeParam> other;
  Fill(other, kBos);
  this->set_ = other;
  EXPECT_EQ(BytesOf(this->set_), kBos);
  EXPECT_TRUE(this->set_.HasNoDevice());
}

TYPED_TEST(CompoundDescriptorSet, CopyToItselfKeepsTheDeviceDescriptor) {
  OpenCompound<TypeParam> const& same = this->set_;
  this->set_ = same;
  EXPECT_EQ(BytesOf(this->set_), kHub);
  EXPECT_TRUE(this->set_.HasTheDevice());
}

TYPED_TEST(CompoundDescriptorSet, MovedToSetHasNoDeviceDescriptor) {
  OpenCompound<TypeParam> constructed(Moved(this->set_));
  EXPECT_TRUE(constructed.HasNoDevice());
  EXPECT_TRUE(this->set_.HasNoDevice());
  EXPECT_TRUE(this->set_.IsEmpty());

  OpenCompound<TypeParam> assigned;
  assigned.StoreDeviceDescriptor(DeviceRecord());
  constructed.StoreDeviceDescriptor(DeviceRecord());
  assigned = Moved(constructed);
  EXPECT_TRUE(assigned.HasNoDevice());
  EXPECT_TRUE(constructed.HasNoDevice());
}

TYPED_TEST(CompoundDescriptorSet, MoveToItselfKeepsTheDeviceDescriptor) {
  this->set_ = Moved(this->set_);
  EXPECT_EQ(BytesOf(this->set_), kHub);
  EXPECT_TRUE(this->set_.HasTheDevice());
}

// What a source's Reset() leaves as its device descriptor is what the move copies.
TYPED_TEST(CompoundDescriptorSet, MoveCopiesTheDeviceDescriptorBehindTheReset) {
  Witness<OpenCompound<TypeParam>> source;
  Fill(source, kHub);
  source.passesResetOn = false;
  OpenCompound<TypeParam>& set = source;
  OpenCompound<TypeParam> target;
  set.StoreDeviceDescriptor({});
  source.onReset = [&] {
    EXPECT_FALSE(target.HasDeviceDescriptor());
    static_cast<TypeParam&>(set).TypeParam::Reset();
    set.StoreDeviceDescriptor(DeviceRecord());
  };
  target = Moved(set);
  EXPECT_EQ(source.resets, 1);
  EXPECT_TRUE(set.IsEmpty());
  EXPECT_TRUE(target.HasTheDevice());

  source.onReset = [&] { set.StoreDeviceDescriptor(DeviceRecord()); };
  set.StoreDeviceDescriptor({});
  OpenCompound<TypeParam> const constructed(Moved(set));
  EXPECT_TRUE(constructed.HasTheDevice());
}

#if defined(USB_SUPPORT_TEST_FAILS_ALLOCATIONS)
TYPED_TEST(CompoundDescriptorSet, WithoutMemoryTheDeviceDescriptorStays) {
  ExactBytes const bytes(kBos);
  OpenCompound<TypeParam> const other;
  EXPECT_TRUE(testing_support::RunsOutOfMemory([&] { this->set_.Reset(bytes.data(), 12); }));
  EXPECT_TRUE(testing_support::RunsOutOfMemory([&] { this->set_ = other; }));
  EXPECT_EQ(BytesOf(this->set_), kHub);
  EXPECT_TRUE(this->set_.HasTheDevice());
}
#endif

TYPED_TEST(CompoundDescriptorSet, GetsNoDeviceDescriptorByItself) {
  EXPECT_EQ(this->set_.DoGetDeviceDescriptor(), static_cast<RETURN_CODE>(0x80000000));
  EXPECT_TRUE(this->set_.HasTheDevice());
  EXPECT_EQ(BytesOf(this->set_), kHub);
  OpenCompound<TypeParam> empty;
  EXPECT_EQ(empty.DoGetDeviceDescriptor(), static_cast<RETURN_CODE>(0x80000000));
  EXPECT_TRUE(empty.HasNoDevice());
  EXPECT_TRUE(empty.IsEmpty());
}

TYPED_TEST(CompoundDescriptorSet, ReadingTheDeviceDescriptorIsForDerivedClasses) {
  class Reader : public OpenCompound<TypeParam> {
   protected:
    RETURN_CODE DoGetDeviceDescriptor() override {
      this->StoreDeviceDescriptor(DeviceRecord());
      return RC_SUCCESS;
    }
  };
  Reader reader;
  OpenCompound<TypeParam>& set = reader;
  EXPECT_EQ(set.DoGetDeviceDescriptor(), RC_SUCCESS);
  EXPECT_TRUE(set.HasTheDevice());
}

// The order of the virtual operations

#if !defined(_MSC_VER) && defined(__x86_64__)
using testing_support::SlotOf;

// The destructor has the slots 0 and 1 in that ABI.
TYPED_TEST(DescriptorSet, VirtualOperationsHaveTheirSlots) {
  EXPECT_EQ(SlotOf(static_cast<void (TypeParam::*)()>(&TypeParam::Reset)), 2u);
  EXPECT_EQ(SlotOf(static_cast<void (TypeParam::*)(Iterator, Iterator)>(&TypeParam::Reset)), 3u);
  EXPECT_EQ(SlotOf(static_cast<void (TypeParam::*)(void*, unsigned short)>(&TypeParam::Reset)), 4u);
  EXPECT_EQ(SlotOf(&Open<TypeParam>::DoReadDescriptor), 5u);
}

TYPED_TEST(CompoundDescriptorSet, VirtualOperationsHaveTheirSlots) {
  EXPECT_EQ(SlotOf(&OpenCompound<TypeParam>::DoGetDeviceDescriptor), 6u);
}

// A virtual operation that a derived class adds takes the first slot that is free.
template <typename Set>
class OneMore : public Set {
 public:
  virtual void Added() {}
};

TYPED_TEST(DescriptorSet, HasNoFurtherVirtualOperation) {
  bool const isCompound = std::is_base_of_v<CCompoundDescriptorSet<BosRecord>, TypeParam> ||
                          std::is_base_of_v<CCompoundDescriptorSet<ConfigurationRecord>, TypeParam>;
  EXPECT_EQ(SlotOf(&OneMore<TypeParam>::Added), isCompound ? 7u : 6u);
}
#endif

}  // namespace
}  // namespace usb_support
