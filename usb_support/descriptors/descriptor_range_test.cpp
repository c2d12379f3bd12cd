#include <usb_support/descriptors/descriptor_range.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <tests/support/virtual_slot.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Joined;
using testing_support::MakeDescriptor;

constexpr auto kInternalError = static_cast<TEST_STATUS>(0x40000000);
constexpr char const* kOutOfRange = "Invalid Descriptor Range Iterator: out of range.";
constexpr char const* kZeroLength = "Invalid descriptor:  bLength must be greater than 0.";

using Iterator = CDescriptorRangeIterator;

// The test uses the log only to see that it stays empty.
class DescriptorRange : public testing_support::SuiteTest {
 protected:
  void TearDown() override { EXPECT_THAT(TakeCalls(), IsEmpty()); }
};

void ExpectEmpty(CDescriptorRange const& range) {
  EXPECT_EQ(range.Bytes(), nullptr);
  EXPECT_EQ(range.Descriptors(), nullptr);
  EXPECT_EQ(range.Length(), 0);
  EXPECT_TRUE(range.IsEmpty());
}

void ExpectCovers(CDescriptorRange const& range, void const* bytes, unsigned length) {
  EXPECT_EQ(range.Bytes(), bytes);
  EXPECT_EQ(range.Descriptors(), bytes);
  EXPECT_EQ(range.Length(), length);
  EXPECT_EQ(range.IsEmpty(), length == 0);
}

// Configuration, interface, endpoint, endpoint: offsets 0, 9, 18, 25, end 32.
Bytes FourDescriptors() {
  return Joined(
      {MakeDescriptor(9, 2), MakeDescriptor(9, 4), MakeDescriptor(7, 5), MakeDescriptor(7, 5)});
}

// Writes down every reset, by overload, and then resets.
class ResetRecorder : public CDescriptorRange {
 public:
  using CDescriptorRange::CDescriptorRange;

  void Reset() override {
    resets.emplace_back("Reset()");
    CDescriptorRange::Reset();
  }

  void Reset(Iterator first, Iterator last) override {
    resets.emplace_back("Reset(first, last)");
    CDescriptorRange::Reset(first, last);
  }

  void Reset(void* const bytes, unsigned short length) override {
    resets.push_back((bytes == nullptr ? "Reset(null, " : "Reset(bytes, ") +
                     std::to_string(length) + ")");
    lastBytes = bytes;
    CDescriptorRange::Reset(bytes, length);
  }

  std::vector<std::string> resets;
  void const* lastBytes = nullptr;
};

// Overrides only the overload that every reset ends in.
class LastResetRecorder : public CDescriptorRange {
 public:
  using CDescriptorRange::Reset;

  void Reset(void* const bytes, unsigned short length) override {
    ++resets;
    CDescriptorRange::Reset(bytes, length);
  }

  int resets = 0;
};

TEST_F(DescriptorRange, DefaultIsEmpty) {
  ExpectEmpty(CDescriptorRange());
}

TEST_F(DescriptorRange, TakesBytesAndLength) {
  ExactBytes const block(MakeDescriptor(9, 4));
  ExpectCovers(CDescriptorRange(block.data(), 9), block.data(), 9);
  ExpectCovers(CDescriptorRange(block.data(), 1), block.data(), 1);
  ExpectCovers(CDescriptorRange(block.data(), 65535), block.data(), 65535);
}

TEST_F(DescriptorRange, IsEmptyUnlessBothBytesAndLengthAreGiven) {
  ExactBytes const block(MakeDescriptor(9, 4));
  ExpectEmpty(CDescriptorRange(block.data(), 0));
  ExpectEmpty(CDescriptorRange(nullptr, 9));
  ExpectEmpty(CDescriptorRange(nullptr, 0));
}

TEST_F(DescriptorRange, TakesTheBytesBetweenTwoIterators) {
  ExactBytes const block(FourDescriptors());
  ExpectCovers(CDescriptorRange(block.At(9), block.At(25)), block.data() + 9, 16);
  ExpectCovers(CDescriptorRange(block.At(0), block.At(32)), block.data(), 32);
}

TEST_F(DescriptorRange, IteratorsCountByAddressAlone) {
  ExactBytes const block(FourDescriptors());
  ExpectCovers(
      CDescriptorRange(Iterator(block.Descriptor(9), 0), Iterator(block.Descriptor(25), 3)),
      block.data() + 9, 16);
}

TEST_F(DescriptorRange, IsEmptyBetweenEqualIterators) {
  ExactBytes const block(FourDescriptors());
  ExpectEmpty(CDescriptorRange(block.At(9), block.At(9)));
  ExpectEmpty(CDescriptorRange(Iterator(), Iterator()));
}

TEST_F(DescriptorRange, IsEmptyFromANullIterator) {
  ExactBytes const block(FourDescriptors());
  ExpectEmpty(CDescriptorRange(Iterator(), block.At(9)));
}

TEST_F(DescriptorRange, DistanceToANullIteratorIsCutTo16Bits) {
  ExactBytes const block(FourDescriptors());
  // The one of two neighbouring addresses that does not end in 16 zero bits.
  std::size_t const at = (reinterpret_cast<std::uintptr_t>(block.data()) & 0xFFFF) == 0 ? 1 : 0;
  auto const address = reinterpret_cast<std::uintptr_t>(block.data() + at);
  ExpectCovers(CDescriptorRange(block.At(at), Iterator()), block.data() + at,
               static_cast<unsigned>((0 - address) & 0xFFFF));
}

TEST_F(DescriptorRange, ReversedIteratorsGiveTheRemainderOfTheNegativeDistance) {
  ExactBytes const block(FourDescriptors());
  ExpectCovers(CDescriptorRange(block.At(9), block.At(0)), block.data() + 9, 65536 - 9);
  ExpectCovers(CDescriptorRange(block.At(25), block.At(24)), block.data() + 25, 65535);
}

TEST_F(DescriptorRange, DistanceIsCutTo16Bits) {
  ExactBytes const block(Bytes(65538, 1));
  ExpectCovers(CDescriptorRange(block.At(0), block.At(65535)), block.data(), 65535);
  ExpectEmpty(CDescriptorRange(block.At(0), block.At(65536)));
  ExpectCovers(CDescriptorRange(block.At(0), block.At(65537)), block.data(), 1);
  ExpectCovers(CDescriptorRange(block.At(0), block.At(65538)), block.data(), 2);
}

TEST_F(DescriptorRange, ResetTakesBytesAndLength) {
  ExactBytes const first(MakeDescriptor(9, 4));
  ExactBytes const second(MakeDescriptor(7, 5));
  CDescriptorRange range = first.Range();
  range.Reset(second.data(), 7);
  ExpectCovers(range, second.data(), 7);
}

TEST_F(DescriptorRange, ResetEmptiesUnlessBothBytesAndLengthAreGiven) {
  ExactBytes const block(MakeDescriptor(9, 4));
  CDescriptorRange range = block.Range();
  range.Reset(block.data(), 0);
  ExpectEmpty(range);
  range = block.Range();
  range.Reset(nullptr, 9);
  ExpectEmpty(range);
  range = block.Range();
  range.Reset(nullptr, 0);
  ExpectEmpty(range);
  range = block.Range();
  range.Reset();
  ExpectEmpty(range);
}

TEST_F(DescriptorRange, ResetTakesTheBytesBetweenTwoIterators) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange range;
  range.Reset(block.At(9), block.At(25));
  ExpectCovers(range, block.data() + 9, 16);
}

TEST_F(DescriptorRange, ResetRefusesReversedIterators) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange range = block.Range();
  range.Reset(block.At(9), block.At(0));
  ExpectEmpty(range);
}

TEST_F(DescriptorRange, ResetIsEmptyBetweenEqualAndNullIterators) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange range = block.Range();
  range.Reset(block.At(9), block.At(9));
  ExpectEmpty(range);
  range = block.Range();
  range.Reset(Iterator(), block.At(9));
  ExpectEmpty(range);
  range = block.Range();
  range.Reset(block.At(9), Iterator());
  ExpectEmpty(range);
  range = block.Range();
  range.Reset(Iterator(), Iterator());
  ExpectEmpty(range);
}

TEST_F(DescriptorRange, ResetCutsTheDistanceTo16Bits) {
  ExactBytes const block(Bytes(65537, 1));
  CDescriptorRange range;
  range.Reset(block.At(0), block.At(65535));
  ExpectCovers(range, block.data(), 65535);
  range.Reset(block.At(0), block.At(65536));
  ExpectEmpty(range);
  range.Reset(block.At(0), block.At(65537));
  ExpectCovers(range, block.data(), 1);
}

TEST_F(DescriptorRange, EveryResetEndsInTheOverloadOfBytesAndLength) {
  ExactBytes const block(FourDescriptors());
  ResetRecorder range;
  CDescriptorRange& base = range;
  auto const take = [&range] { return std::exchange(range.resets, {}); };

  base.Reset();
  EXPECT_THAT(take(), ElementsAre("Reset()", "Reset(null, 0)"));

  base.Reset(block.At(9), block.At(25));
  EXPECT_THAT(take(), ElementsAre("Reset(first, last)", "Reset(bytes, 16)"));
  EXPECT_EQ(range.lastBytes, block.data() + 9);

  base.Reset(block.At(25), block.At(9));
  EXPECT_THAT(take(), ElementsAre("Reset(first, last)", "Reset()", "Reset(null, 0)"));

  base.Reset(block.At(9), block.At(9));
  EXPECT_THAT(take(), ElementsAre("Reset(first, last)", "Reset()", "Reset(null, 0)"));

  base.Reset(Iterator(), block.At(9));
  EXPECT_THAT(take(), ElementsAre("Reset(first, last)", "Reset()", "Reset(null, 0)"));

  base.Reset(block.At(9), Iterator());
  EXPECT_THAT(take(), ElementsAre("Reset(first, last)", "Reset()", "Reset(null, 0)"));

  base.Reset(block.data(), 5);
  EXPECT_THAT(take(), ElementsAre("Reset(bytes, 5)"));
  EXPECT_EQ(range.lastBytes, block.data());
}

TEST_F(DescriptorRange, ResetHandsOnADistanceThatIsCutToZero) {
  ExactBytes const block(Bytes(65536, 1));
  ResetRecorder range;
  range.Reset(block.At(0), block.At(65536));
  EXPECT_THAT(range.resets, ElementsAre("Reset(first, last)", "Reset(bytes, 0)"));
  EXPECT_EQ(range.lastBytes, block.data());
  ExpectEmpty(range);
}

TEST_F(DescriptorRange, OneOverrideSeesEveryReset) {
  ExactBytes const block(FourDescriptors());
  LastResetRecorder range;
  CDescriptorRange& base = range;
  base.Reset();
  EXPECT_EQ(range.resets, 1);
  base.Reset(block.At(0), block.At(9));
  EXPECT_EQ(range.resets, 2);
  base.Reset(block.At(9), block.At(0));
  EXPECT_EQ(range.resets, 3);
  base.Reset(block.data(), 9);
  EXPECT_EQ(range.resets, 4);
}

TEST_F(DescriptorRange, ConstructorsCallNoReset) {
  ExactBytes const block(FourDescriptors());
  EXPECT_THAT(ResetRecorder().resets, IsEmpty());
  EXPECT_THAT(ResetRecorder(block.data(), 9).resets, IsEmpty());
  EXPECT_THAT(ResetRecorder(block.At(0), block.At(9)).resets, IsEmpty());
}

TEST_F(DescriptorRange, IsDestroyedThroughItsBase) {
  class Derived : public CDescriptorRange {
   public:
    explicit Derived(bool& ended) : ended_(ended) {}
    Derived(Derived const&) = delete;
    Derived& operator=(Derived const&) = delete;
    ~Derived() override { ended_ = true; }

   private:
    bool& ended_;
  };
  bool ended = false;
  std::unique_ptr<CDescriptorRange>(new Derived(ended)).reset();
  EXPECT_TRUE(ended);
}

TEST_F(DescriptorRange, NeverFreesItsBytes) {
  ExactBytes const block(MakeDescriptor(9, 4));
  {
    CDescriptorRange range = block.Range();
    CDescriptorRange const copy = range;
    range.Reset();
  }
  EXPECT_EQ(block.data()[0], 9);
}

TEST_F(DescriptorRange, IsThreeWordsAndPolymorphic) {
  static_assert(std::is_polymorphic_v<CDescriptorRange>);
  static_assert(std::has_virtual_destructor_v<CDescriptorRange>);
  EXPECT_EQ(sizeof(CDescriptorRange), 3 * sizeof(void*));

  ExactBytes const block(MakeDescriptor(9, 4));
  CDescriptorRange const range = block.Range();
  unsigned char image[sizeof(CDescriptorRange)];
  std::memcpy(image, reinterpret_cast<unsigned char const*>(std::addressof(range)), sizeof(image));
  void* bytes = nullptr;
  std::uint16_t length = 0;
  std::memcpy(&bytes, image + sizeof(void*), sizeof(bytes));
  std::memcpy(&length, image + 2 * sizeof(void*), sizeof(length));
  EXPECT_EQ(bytes, block.data());
  EXPECT_EQ(length, 9);
}

#if !defined(_MSC_VER) && defined(__x86_64__)
using testing_support::SlotOf;

TEST_F(DescriptorRange, VirtualOperationsHaveTheirSlots) {
  // The destructor, the only other virtual operation, has two slots in that ABI.
  EXPECT_EQ(SlotOf(static_cast<void (CDescriptorRange::*)()>(&CDescriptorRange::Reset)), 2u);
  EXPECT_EQ(
      SlotOf(static_cast<void (CDescriptorRange::*)(Iterator, Iterator)>(&CDescriptorRange::Reset)),
      3u);
  EXPECT_EQ(SlotOf(static_cast<void (CDescriptorRange::*)(void*, unsigned short)>(
                &CDescriptorRange::Reset)),
            4u);
}
#endif

TEST_F(DescriptorRange, BeginAndEnd) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(range.begin(), Iterator(block.Descriptor(0), 32));
  EXPECT_EQ(range.end(), Iterator(block.Descriptor(32), 0));

  CDescriptorRange const slice(block.At(9), block.At(25));
  EXPECT_EQ(slice.begin(), Iterator(block.Descriptor(9), 16));
  EXPECT_EQ(slice.end(), Iterator(block.Descriptor(25), 0));
}

TEST_F(DescriptorRange, BeginAndEndOfAnEmptyRangeAreNull) {
  CDescriptorRange const range;
  EXPECT_EQ(range.begin(), Iterator());
  EXPECT_EQ(range.end(), Iterator());
}

TEST_F(DescriptorRange, IndexCountsDescriptors) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange const range = block.Range();
  static_assert(std::is_same_v<decltype(range[0]), TQ_USB_COMMON_DESCRIPTOR const&>);
  EXPECT_EQ(std::addressof(range[0]), block.Descriptor(0));
  EXPECT_EQ(std::addressof(range[1]), block.Descriptor(9));
  EXPECT_EQ(std::addressof(range[2]), block.Descriptor(18));
  EXPECT_EQ(std::addressof(range[3]), block.Descriptor(25));
}

TEST_F(DescriptorRange, IndexOneBehindTheLastIsNotChecked) {
  ExactBytes const block(MakeDescriptor(9, 4));
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(std::addressof(range[1]), block.Descriptor(9));
  EXPECT_RUN_TIME_EXCEPTION(range[2], kOutOfRange, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(range[3], kOutOfRange, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(range[~std::uint64_t{0}], kOutOfRange, kInternalError);
}

TEST_F(DescriptorRange, IndexLandsOnTheEndBehindADescriptorThatClaimsTooMuch) {
  Bytes bytes = MakeDescriptor(9, 4);
  bytes[0] = 10;
  ExactBytes const block(bytes);
  EXPECT_EQ(std::addressof(block.Range()[1]), block.Descriptor(9));
  EXPECT_RUN_TIME_EXCEPTION(block.Range()[2], kOutOfRange, kInternalError);
}

TEST_F(DescriptorRange, IndexRaisesOnAZeroLengthOnTheWay) {
  ExactBytes const block(Joined({MakeDescriptor(9, 4), {0x00, 0x05}, MakeDescriptor(7, 5)}));
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(std::addressof(range[1]), block.Descriptor(9));
  EXPECT_RUN_TIME_EXCEPTION(range[2], kZeroLength, kInternalError);

  ExactBytes const zero({0x00, 0x05});
  EXPECT_EQ(std::addressof(zero.Range()[0]), zero.Descriptor(0));
}

TEST_F(DescriptorRange, IndexBeyondAnEmptyRangeRaises) {
  EXPECT_RUN_TIME_EXCEPTION(CDescriptorRange()[1], kOutOfRange, kInternalError);
}

// A sanitizer stops the reference to null that this operation is defined to return.
#if defined(__has_feature)
#if __has_feature(undefined_behavior_sanitizer)
#define USB_SUPPORT_TEST_NULL_REFERENCES 0
#endif
#endif
#if !defined(USB_SUPPORT_TEST_NULL_REFERENCES) && !defined(__SANITIZE_ADDRESS__)
TEST_F(DescriptorRange, IndexZeroOfAnEmptyRangeIsNotChecked) {
  CDescriptorRange const range;
  EXPECT_NO_THROW(static_cast<void>(range[0]));
}
#endif

TEST_F(DescriptorRange, FindFirstFindsTheFirstOfEachType) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange const range = block.Range();
  for (unsigned type = 0; type < 256; ++type) {
    std::size_t const expected = type == 2 ? 0 : type == 4 ? 9 : type == 5 ? 18 : 32;
    EXPECT_EQ(range.FindFirst(static_cast<unsigned char>(type)), block.At(expected)) << type;
  }
}

TEST_F(DescriptorRange, FindFirstInAnEmptyRangeIsTheEnd) {
  CDescriptorRange const range;
  EXPECT_EQ(range.FindFirst(0), range.end());
  EXPECT_EQ(range.FindFirst(4), Iterator());
}

TEST_F(DescriptorRange, FindFirstRaisesOnAZeroLengthBeforeAMatch) {
  ExactBytes const block(Joined({MakeDescriptor(9, 4), {0x00, 0x05}, MakeDescriptor(7, 6)}));
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(range.FindFirst(4), block.At(0));
  EXPECT_EQ(range.FindFirst(5), block.At(9));
  EXPECT_RUN_TIME_EXCEPTION(range.FindFirst(6), kZeroLength, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(range.FindFirst(7), kZeroLength, kInternalError);
}

TEST_F(DescriptorRange, FindFirstFindsADescriptorThatClaimsTooMuch) {
  ExactBytes const block({0x02, 0x04, 0x09, 0x05, 0x06});
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(range.FindFirst(5), block.At(2));
  EXPECT_EQ(range.FindFirst(6), range.end());
}

TEST_F(DescriptorRange, FindFirstMatchesNoTypeInTheLastByte) {
  for (unsigned last = 1; last < 256; ++last) {
    ExactBytes const block({0x02, 0x04, static_cast<unsigned char>(last)});
    CDescriptorRange const range = block.Range();
    for (unsigned type = 0; type < 256; ++type) {
      ASSERT_EQ(range.FindFirst(static_cast<unsigned char>(type)), block.At(type == 4 ? 0 : 3))
          << type << " with a last byte of " << last;
    }
  }
}

TEST_F(DescriptorRange, FindFirstRaisesOnALastByteOfZero) {
  ExactBytes const block({0x02, 0x04, 0x00});
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(range.FindFirst(4), block.At(0));
  EXPECT_RUN_TIME_EXCEPTION(range.FindFirst(0), kZeroLength, kInternalError);
}

TEST_F(DescriptorRange, OneByteRunIsOneDescriptorWithoutAType) {
  ExactBytes const block({0x01});
  CDescriptorRange const range = block.Range();
  EXPECT_TRUE(range.Valid());
  EXPECT_EQ(range.Count(), 1);
  for (unsigned type = 0; type < 256; ++type) {
    EXPECT_EQ(range.FindFirst(static_cast<unsigned char>(type)), range.end()) << type;
    EXPECT_EQ(range.Count(static_cast<unsigned char>(type)), 0) << type;
    EXPECT_TRUE(range.GetAll(static_cast<unsigned char>(type))->empty()) << type;
  }
}

TEST_F(DescriptorRange, DescriptorOfOneByteHasTheTypeThatStandsBehindIt) {
  ExactBytes const block({0x01, 0x02, 0x05});
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(range.FindFirst(2), block.At(0));
  EXPECT_EQ(range.FindFirst(5), block.At(1));
}

TEST_F(DescriptorRange, ValidUntilTheEndOfWholeDescriptors) {
  ExactBytes const block(FourDescriptors());
  EXPECT_EQ(block.Range().ValidUntil(), block.At(32));
  EXPECT_TRUE(block.Range().Valid());
  ExactBytes const longest(MakeDescriptor(255, 0x24));
  EXPECT_EQ(longest.Range().ValidUntil(), longest.At(255));
  EXPECT_TRUE(longest.Range().Valid());
}

TEST_F(DescriptorRange, EmptyRangeIsValid) {
  CDescriptorRange const range;
  EXPECT_EQ(range.ValidUntil(), range.begin());
  EXPECT_EQ(range.ValidUntil(), range.end());
  EXPECT_TRUE(range.Valid());
}

TEST_F(DescriptorRange, StopsBeforeTruncatedDescriptor) {
  Bytes bytes = Joined({MakeDescriptor(18, 1), MakeDescriptor(9, 2)});
  bytes[18] = 10;
  ExactBytes const block(bytes);
  EXPECT_EQ(block.Range().ValidUntil(), Iterator(block.Descriptor(18), 9));
  EXPECT_FALSE(block.Range().Valid());
}

TEST_F(DescriptorRange, StopsBeforeZeroLength) {
  ExactBytes const first({0x00, 0x04, 0x02, 0x05});
  EXPECT_EQ(first.Range().ValidUntil(), first.Range().begin());
  EXPECT_FALSE(first.Range().Valid());

  ExactBytes const second(Joined({MakeDescriptor(9, 4), {0x00}, MakeDescriptor(7, 5)}));
  EXPECT_EQ(second.Range().ValidUntil(), second.At(9));
  EXPECT_FALSE(second.Range().Valid());

  ExactBytes const last(Joined({MakeDescriptor(9, 4), {0x00}}));
  EXPECT_EQ(last.Range().ValidUntil(), last.At(9));
  EXPECT_FALSE(last.Range().Valid());
}

TEST_F(DescriptorRange, ValidUntilOfARunCutAtEveryLength) {
  Bytes const whole = FourDescriptors();
  for (std::size_t length = 0; length <= whole.size(); ++length) {
    ExactBytes const block(
        Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(length)));
    std::size_t const valid = length < 9    ? 0
                              : length < 18 ? 9
                              : length < 25 ? 18
                              : length < 32 ? 25
                                            : 32;
    CDescriptorRange const range = block.Range();
    EXPECT_EQ(range.ValidUntil(), range.begin() + (valid == 0    ? 0u
                                                   : valid == 9  ? 1u
                                                   : valid == 18 ? 2u
                                                   : valid == 25 ? 3u
                                                                 : 4u))
        << length;
    EXPECT_EQ(range.ValidUntil() - range.begin(), static_cast<std::int64_t>(valid)) << length;
    EXPECT_EQ(range.Valid(), valid == length) << length;
  }
}

TEST_F(DescriptorRange, ValidUntilLooksAtLengthsOnly) {
  ExactBytes const block({0x01, 0x02, 0xFF, 0x03, 0x00, 0x00});
  EXPECT_TRUE(block.Range().Valid());
}

TEST_F(DescriptorRange, ValidUntilOfTheLongestRun) {
  Bytes bytes(65535, 1);
  ExactBytes const whole(bytes);
  EXPECT_EQ(whole.Range().ValidUntil(), whole.At(65535));
  bytes.back() = 2;
  ExactBytes const cut(bytes);
  EXPECT_EQ(cut.Range().ValidUntil(), cut.At(65534));
  EXPECT_FALSE(cut.Range().Valid());
}

TEST_F(DescriptorRange, SubRangeOfGoesByAddress) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange const whole = block.Range();
  auto const slice = [&block](std::size_t first, std::size_t last) {
    return CDescriptorRange(block.At(first), block.At(last));
  };
  EXPECT_TRUE(whole.SubRangeOf(whole));
  EXPECT_TRUE(slice(9, 25).SubRangeOf(whole));
  EXPECT_TRUE(slice(0, 9).SubRangeOf(whole));
  EXPECT_TRUE(slice(25, 32).SubRangeOf(whole));
  EXPECT_FALSE(whole.SubRangeOf(slice(9, 25)));
  EXPECT_FALSE(slice(0, 25).SubRangeOf(slice(9, 25)));
  EXPECT_FALSE(slice(9, 32).SubRangeOf(slice(9, 25)));
  EXPECT_FALSE(slice(0, 9).SubRangeOf(slice(9, 25)));
  EXPECT_FALSE(slice(25, 32).SubRangeOf(slice(9, 25)));

  ExactBytes const twin(FourDescriptors());
  EXPECT_EQ(twin.Range(), whole);
  EXPECT_FALSE(twin.Range().SubRangeOf(whole));
}

TEST_F(DescriptorRange, SubRangeOfWithEmptyRanges) {
  ExactBytes const block(FourDescriptors());
  EXPECT_TRUE(CDescriptorRange().SubRangeOf(CDescriptorRange()));
  EXPECT_FALSE(CDescriptorRange().SubRangeOf(block.Range()));
  EXPECT_FALSE(block.Range().SubRangeOf(CDescriptorRange()));
}

TEST_F(DescriptorRange, AlwaysTrueMatchesAtOnce) {
  ExactBytes const block(FourDescriptors());
  auto const [found, position] = CDescriptorRange::AlwaysTrue(block.At(9), block.At(25));
  EXPECT_TRUE(found);
  EXPECT_EQ(position, block.At(9));
  auto const atEnd = CDescriptorRange::AlwaysTrue(block.At(32), block.At(32));
  EXPECT_TRUE(atEnd.first);
  EXPECT_EQ(atEnd.second, block.At(32));
}

TEST_F(DescriptorRange, EqualWhenTheBytesAre) {
  ExactBytes const a(FourDescriptors());
  ExactBytes const b(FourDescriptors());
  EXPECT_TRUE(a.Range() == b.Range());
  EXPECT_FALSE(a.Range() != b.Range());
  EXPECT_TRUE(a.Range() == a.Range());
}

TEST_F(DescriptorRange, UnequalWhenOneByteOrTheLengthDiffers) {
  Bytes const bytes = FourDescriptors();
  ExactBytes const original(bytes);
  for (std::size_t at = 0; at < bytes.size(); ++at) {
    Bytes changed = bytes;
    changed[at] ^= 0x80;
    ExactBytes const other(changed);
    EXPECT_FALSE(original.Range() == other.Range()) << at;
    EXPECT_TRUE(original.Range() != other.Range()) << at;
  }
  CDescriptorRange const shorter(original.data(), 31);
  EXPECT_FALSE(original.Range() == shorter);
  EXPECT_FALSE(shorter == original.Range());
  EXPECT_TRUE(original.Range() != shorter);
}

// A length of 16 bits without a sign, and every byte of it compared.
TEST_F(DescriptorRange, UnequalWhenTheLastOfTheMostBytesDiffers) {
  constexpr std::size_t kMost = 65535;
  ExactBytes const a{Bytes(kMost, 0x02)};
  for (std::size_t const at : {std::size_t{32767}, std::size_t{32768}, kMost - 1}) {
    Bytes changed(kMost, 0x02);
    ExactBytes const same(changed);
    EXPECT_TRUE(a.Range() == same.Range());
    changed[at] ^= 0x01;
    ExactBytes const other(changed);
    EXPECT_FALSE(a.Range() == other.Range()) << at;
    EXPECT_TRUE(a.Range() != other.Range()) << at;
  }
}

TEST_F(DescriptorRange, HasBothComparisonsAsFreeOperators) {
  using Comparison = bool (*)(CDescriptorRange const&, CDescriptorRange const&) noexcept;
  Comparison const equal = &::operator==;
  Comparison const unequal = &::operator!=;
  ExactBytes const block(FourDescriptors());
  EXPECT_TRUE(equal(block.Range(), block.Range()));
  EXPECT_FALSE(unequal(block.Range(), block.Range()));
  EXPECT_TRUE(unequal(block.Range(), CDescriptorRange()));
}

TEST_F(DescriptorRange, MovesWithoutThrowing) {
  static_assert(std::is_nothrow_move_constructible_v<CDescriptorRange>);
  static_assert(std::is_nothrow_move_assignable_v<CDescriptorRange>);
}

TEST_F(DescriptorRange, NullEqualsOnlyNull) {
  ExactBytes const block(FourDescriptors());
  EXPECT_TRUE(CDescriptorRange() == CDescriptorRange());
  EXPECT_FALSE(CDescriptorRange() != CDescriptorRange());
  EXPECT_FALSE(CDescriptorRange() == block.Range());
  EXPECT_FALSE(block.Range() == CDescriptorRange());
  EXPECT_TRUE(CDescriptorRange() != block.Range());
  EXPECT_TRUE(block.Range() != CDescriptorRange());
}

// NOLINTBEGIN(bugprone-use-after-move,clang-analyzer-cplusplus.Move): a move leaves its source
// alone.
TEST_F(DescriptorRange, CopiesAndMovesCopyBothFields) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange original = block.Range();
  CDescriptorRange const copy(original);
  ExpectCovers(copy, block.data(), 32);
  CDescriptorRange const moved(std::move(original));
  ExpectCovers(moved, block.data(), 32);
  EXPECT_EQ(original.Bytes(), block.data());
  EXPECT_EQ(original.Length(), 32);
  CDescriptorRange copyAssigned;
  copyAssigned = original;
  ExpectCovers(copyAssigned, block.data(), 32);
  CDescriptorRange moveAssigned;
  moveAssigned = std::move(copyAssigned);
  ExpectCovers(moveAssigned, block.data(), 32);
  EXPECT_EQ(copyAssigned.Bytes(), block.data());
  EXPECT_EQ(copyAssigned.Length(), 32);
  moveAssigned = CDescriptorRange();
  ExpectEmpty(moveAssigned);
}
// NOLINTEND(bugprone-use-after-move,clang-analyzer-cplusplus.Move)

TEST_F(DescriptorRange, CopiesAreIndependent) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange original = block.Range();
  CDescriptorRange const copy = original;
  original.Reset();
  ExpectCovers(copy, block.data(), 32);
}

TEST_F(DescriptorRange, AssignmentKeepsTheTargetsClassAndCallsNoReset) {
  ExactBytes const block(FourDescriptors());
  ResetRecorder range;
  CDescriptorRange& base = range;
  base = block.Range();
  ExpectCovers(range, block.data(), 32);
  CDescriptorRange const other(block.data(), 9);
  base = other;
  ExpectCovers(range, block.data(), 9);
  EXPECT_THAT(range.resets, IsEmpty());
  base.Reset();
  EXPECT_THAT(range.resets, ElementsAre("Reset()", "Reset(null, 0)"));
}

TEST_F(DescriptorRange, WorksWithTheStandardAlgorithms) {
  ExactBytes const block(FourDescriptors());
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(std::distance(range.begin(), range.end()), 4);
  EXPECT_EQ(std::count_if(range.begin(), range.end(),
                          [](auto const& descriptor) { return descriptor.bLength == 9; }),
            2);
}

TEST_F(DescriptorRange, RangeOverConstBytes) {
  ExactBytes const block(FourDescriptors());
  std::span<unsigned char const> const bytes(block.data(), block.size());
  ExpectCovers(RangeOver(bytes), block.data(), 32);
  ExpectEmpty(RangeOver({}));
  ExpectEmpty(RangeOver(bytes.first(0)));
}

TEST_F(DescriptorRange, RangeOverTheLongestRunAndNoMore) {
  ExactBytes const block(Bytes(65536, 1));
  std::span<unsigned char const> const bytes(block.data(), block.size());
  ExpectCovers(RangeOver(bytes.first(65535)), block.data(), 65535);
  EXPECT_THROW(RangeOver(bytes), std::length_error);
}

}  // namespace
}  // namespace usb_support
