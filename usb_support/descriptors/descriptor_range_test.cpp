// Searches over generated runs are compared with a model in tests/property.
#include <usb_support/descriptors/descriptor_range.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <span>
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
using testing_support::Hex;
using testing_support::kInternalError;
using testing_support::kOutOfRange;
using testing_support::kZeroLength;
using testing_support::Part;

using Iterator = CDescriptorRangeIterator;

// The test uses the log only to see that it stays empty.
class DescriptorRange : public testing_support::SuiteTest {
 protected:
  void TearDown() override { EXPECT_THAT(TakeCalls(), IsEmpty()); }
};

void ExpectCovers(CDescriptorRange const& range, void const* bytes, unsigned length) {
  EXPECT_EQ(range.Bytes(), bytes);
  EXPECT_EQ(range.Descriptors(), bytes);
  EXPECT_EQ(range.Length(), length);
  EXPECT_EQ(range.IsEmpty(), length == 0);
}

void ExpectEmpty(CDescriptorRange const& range) {
  ExpectCovers(range, nullptr, 0);
}

// Configuration, interface, endpoint, endpoint: offsets 0, 9, 18, 25, end 32.
Bytes const kRun =
    Hex("09 02 20 00 01 01 00 80 32  09 04 00 00 02 03 00 00 00"
        "07 05 81 03 08 00 0A  07 05 02 03 08 00 0A");

// Records every reset, by overload, and then resets.
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

TEST_F(DescriptorRange, CoversBytesAndLength) {
  ExactBytes const block(kRun);
  ExpectEmpty(CDescriptorRange());
  struct Row {
    bool hasBytes;
    unsigned short length;
    bool isEmpty;
  };
  for (Row const& row : {Row{true, 9, false}, Row{true, 1, false}, Row{true, 65535, false},
                         Row{true, 0, true}, Row{false, 9, true}, Row{false, 0, true}}) {
    unsigned char* const bytes = row.hasBytes ? block.data() : nullptr;
    CDescriptorRange reset(block.data() + 1, 2);
    reset.Reset(bytes, row.length);
    for (CDescriptorRange const& range : {CDescriptorRange(bytes, row.length), reset}) {
      row.isEmpty ? ExpectEmpty(range) : ExpectCovers(range, bytes, row.length);
    }
  }
  CDescriptorRange range = block.Range();
  range.Reset();
  ExpectEmpty(range);
}

TEST_F(DescriptorRange, CoversWhatTwoIteratorsSpan) {
  ExactBytes const block(Bytes(65538, 1));
  struct Row {
    std::size_t first, last;
    unsigned length, afterReset;
  };
  for (Row const& row : {Row{9, 25, 16, 16}, Row{0, 32, 32, 32}, Row{9, 9, 0, 0},
                         Row{9, 0, 65527, 0}, Row{25, 24, 65535, 0}, Row{0, 65535, 65535, 65535},
                         Row{0, 65536, 0, 0}, Row{0, 65537, 1, 1}, Row{0, 65538, 2, 2}}) {
    auto const expect = [&](CDescriptorRange const& range, unsigned length) {
      ExpectCovers(range, length == 0 ? nullptr : block.data() + row.first, length);
    };
    expect(CDescriptorRange(block.At(row.first), block.At(row.last)), row.length);
    // By address alone.
    expect(CDescriptorRange(Iterator(block.Descriptor(row.first), 0),
                            Iterator(block.Descriptor(row.last), 3)),
           row.length);
    CDescriptorRange reset(block.data() + 1, 2);
    reset.Reset(block.At(row.first), block.At(row.last));
    expect(reset, row.afterReset);
  }
  ExpectEmpty(CDescriptorRange(Iterator(), Iterator()));
  ExpectEmpty(CDescriptorRange(Iterator(), block.At(9)));
  // To a null iterator; of two neighbouring addresses, one does not end in 16 zero bits.
  std::size_t const at = (reinterpret_cast<std::uintptr_t>(block.data()) & 0xFFFF) == 0 ? 1 : 0;
  auto const address = reinterpret_cast<std::uintptr_t>(block.data() + at);
  ExpectCovers(CDescriptorRange(block.At(at), Iterator()), block.data() + at,
               static_cast<unsigned>((0 - address) & 0xFFFF));
}

TEST_F(DescriptorRange, EveryResetEndsInBytesAndLength) {
  ExactBytes const block(Bytes(65536, 1));
  ResetRecorder range;
  CDescriptorRange& base = range;
  auto const take = [&range] { return std::exchange(range.resets, {}); };
  base.Reset();
  EXPECT_THAT(take(), ElementsAre("Reset()", "Reset(null, 0)"));
  base.Reset(block.At(9), block.At(25));
  EXPECT_THAT(take(), ElementsAre("Reset(first, last)", "Reset(bytes, 16)"));
  EXPECT_EQ(range.lastBytes, block.data() + 9);
  for (auto const& [first, last] :
       {std::pair(block.At(25), block.At(9)), std::pair(block.At(9), block.At(9)),
        std::pair(Iterator(), block.At(9)), std::pair(block.At(9), Iterator()),
        std::pair(Iterator(), Iterator())}) {
    base.Reset(first, last);
    EXPECT_THAT(take(), ElementsAre("Reset(first, last)", "Reset()", "Reset(null, 0)"));
  }
  base.Reset(block.data(), 5);
  EXPECT_THAT(take(), ElementsAre("Reset(bytes, 5)"));
  base.Reset(block.At(0), block.At(65536));
  EXPECT_THAT(take(), ElementsAre("Reset(first, last)", "Reset(bytes, 0)"));
  EXPECT_EQ(range.lastBytes, block.data());
  ExpectEmpty(range);
}

TEST_F(DescriptorRange, ConstructionAndAssignmentCallNoReset) {
  ExactBytes const block(kRun);
  EXPECT_THAT(ResetRecorder(block.data(), 9).resets, IsEmpty());
  EXPECT_THAT(ResetRecorder(block.At(0), block.At(9)).resets, IsEmpty());
  ResetRecorder range;
  CDescriptorRange& base = range;
  CDescriptorRange const other(block.data(), 9);
  base = other;
  ExpectCovers(range, block.data(), 9);
  base = block.Range();
  ExpectCovers(range, block.data(), 32);
  EXPECT_THAT(range.resets, IsEmpty());
}

TEST_F(DescriptorRange, IsThreeWordsAndPolymorphic) {
  static_assert(std::has_virtual_destructor_v<CDescriptorRange>);
  static_assert(std::is_nothrow_move_constructible_v<CDescriptorRange>);
  static_assert(std::is_nothrow_move_assignable_v<CDescriptorRange>);
  EXPECT_EQ(sizeof(CDescriptorRange), 3 * sizeof(void*));
  ExactBytes const block(kRun);
  CDescriptorRange const range(block.data(), 9);
  unsigned char image[sizeof(CDescriptorRange)];
  std::memcpy(image, reinterpret_cast<unsigned char const*>(std::addressof(range)), sizeof(image));
  void* bytes = nullptr;
  std::uint16_t length = 0;
  std::memcpy(&bytes, image + sizeof(void*), sizeof(bytes));
  std::memcpy(&length, image + 2 * sizeof(void*), sizeof(length));
  EXPECT_EQ(bytes, block.data());
  EXPECT_EQ(length, 9);
#if !defined(_MSC_VER) && defined(__x86_64__)
  // The destructor, the only other virtual operation, has two slots in that ABI.
  using Range = CDescriptorRange;
  using testing_support::SlotOf;
  EXPECT_EQ(SlotOf(static_cast<void (Range::*)()>(&Range::Reset)), 2u);
  EXPECT_EQ(SlotOf(static_cast<void (Range::*)(Iterator, Iterator)>(&Range::Reset)), 3u);
  EXPECT_EQ(SlotOf(static_cast<void (Range::*)(void*, unsigned short)>(&Range::Reset)), 4u);
#endif
}

TEST_F(DescriptorRange, BeginAndEnd) {
  ExactBytes const block(kRun);
  CDescriptorRange const slice(block.At(9), block.At(25));
  EXPECT_EQ(slice.begin(), Iterator(block.Descriptor(9), 16));
  EXPECT_EQ(slice.end(), Iterator(block.Descriptor(25), 0));
  EXPECT_EQ(CDescriptorRange().begin(), Iterator());
  EXPECT_EQ(CDescriptorRange().end(), Iterator());
}

TEST_F(DescriptorRange, IndexOfTheEndIsNotChecked) {
  static_assert(std::is_same_v<decltype(CDescriptorRange()[0]), TQ_USB_COMMON_DESCRIPTOR const&>);
  ExactBytes const block(kRun);
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(std::addressof(range[3]), block.Descriptor(25));
  EXPECT_EQ(std::addressof(range[4]), block.Descriptor(32));
  EXPECT_RUN_TIME_EXCEPTION(range[5], kOutOfRange, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(range[~std::uint64_t{0}], kOutOfRange, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(CDescriptorRange()[1], kOutOfRange, kInternalError);
}

// A sanitizer stops at the reference to null that this operation is defined to return.
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

TEST_F(DescriptorRange, FindsTheFirstOfEachType) {
  // Whole descriptors, a zero length in the middle, and last bytes, which have no type.
  struct Row {
    Bytes run;
    std::vector<std::pair<unsigned, std::size_t>> found;
    std::size_t otherwise;  // 99: throws
  };
  for (Row const& row :
       {Row{kRun, {{2, 0}, {4, 9}, {5, 18}}, 32}, Row{{}, {}, 0},
        Row{Hex("02 04 00 05 02 06"), {{4, 0}, {5, 2}}, 99}, Row{Hex("02 04 00"), {{4, 0}}, 99},
        Row{Hex("02 04 01"), {{4, 0}}, 3}, Row{Hex("02 04 FF"), {{4, 0}}, 3}, Row{Hex("01"), {}, 1},
        Row{Hex("01 02 05"), {{2, 0}, {5, 1}}, 3},
        Row{Hex("02 04 09 05 06"), {{4, 0}, {5, 2}}, 5}}) {
    ExactBytes const block(row.run);
    CDescriptorRange const range = block.Range();
    for (unsigned type = 0; type < 256; ++type) {
      std::size_t expected = row.otherwise;
      for (auto const& [ofType, at] : row.found) {
        expected = ofType == type ? at : expected;
      }
      auto const find = [&] { return range.FindFirst(static_cast<unsigned char>(type)); };
      if (expected == 99) {
        EXPECT_RUN_TIME_EXCEPTION(find(), kZeroLength, kInternalError);
      } else {
        EXPECT_EQ(find(), row.run.empty() ? Iterator() : block.At(expected)) << type;
      }
    }
  }
}

TEST_F(DescriptorRange, ValidUntilAFaultOfTheRun) {
  for (std::size_t length = 0; length <= kRun.size(); ++length) {
    ExactBytes const block(Part(kRun, 0, length));
    std::size_t const valid = length < 9    ? 0
                              : length < 18 ? 9
                              : length < 25 ? 18
                              : length < 32 ? 25
                                            : 32;
    CDescriptorRange const range = block.Range();
    EXPECT_EQ(range.ValidUntil() - range.begin(), static_cast<std::int64_t>(valid)) << length;
    EXPECT_EQ(range.Valid(), valid == length) << length;
  }
  struct Row {
    Bytes run;
    std::size_t validUntil;
  };
  Bytes most(65535, 1);
  Bytes cut = most;
  cut.back() = 2;
  for (Row const& row :
       {Row{most, 65535}, Row{cut, 65534}, Row{Hex("00 04 02 05"), 0}, Row{Hex("02 04 00"), 2},
        Row{Hex("02 04 00 07"), 2}, Row{Hex("01 02 FF 03 00 00"), 6}}) {
    ExactBytes const block(row.run);
    EXPECT_EQ(block.Range().ValidUntil(), block.At(row.validUntil));
    EXPECT_EQ(block.Range().Valid(), row.validUntil == row.run.size());
  }
}

TEST_F(DescriptorRange, SubRangeOfGoesByAddress) {
  ExactBytes const block(kRun);
  ExactBytes const twin(kRun);
  struct Row {
    std::size_t first, last, ofFirst, ofLast;
    bool isInside;
  };
  for (Row const& row :
       {Row{0, 32, 0, 32, true}, Row{9, 25, 0, 32, true}, Row{0, 9, 0, 32, true},
        Row{25, 32, 0, 32, true}, Row{0, 32, 9, 25, false}, Row{0, 25, 9, 25, false},
        Row{9, 32, 9, 25, false}, Row{0, 9, 9, 25, false}, Row{25, 32, 9, 25, false}}) {
    CDescriptorRange const range(block.At(row.first), block.At(row.last));
    CDescriptorRange const of(block.At(row.ofFirst), block.At(row.ofLast));
    EXPECT_EQ(range.SubRangeOf(of), row.isInside);
  }
  EXPECT_FALSE(twin.Range().SubRangeOf(block.Range()));
  EXPECT_TRUE(CDescriptorRange().SubRangeOf(CDescriptorRange()));
  EXPECT_FALSE(CDescriptorRange().SubRangeOf(block.Range()));
  EXPECT_FALSE(block.Range().SubRangeOf(CDescriptorRange()));
}

TEST_F(DescriptorRange, AlwaysTrueFindsTheFirst) {
  ExactBytes const block(kRun);
  EXPECT_EQ(CDescriptorRange::AlwaysTrue(block.At(9), block.At(25)), std::pair(true, block.At(9)));
  EXPECT_EQ(CDescriptorRange::AlwaysTrue(block.At(32), block.At(32)),
            std::pair(true, block.At(32)));
}

TEST_F(DescriptorRange, EqualWhenTheBytesAre) {
  // As free functions: a program may take their addresses.
  using Comparison = bool (*)(CDescriptorRange const&, CDescriptorRange const&) noexcept;
  Comparison const equal = &::operator==;
  Comparison const unequal = &::operator!=;
  auto const expect = [&](CDescriptorRange const& a, CDescriptorRange const& b, bool areEqual) {
    EXPECT_EQ(equal(a, b), areEqual);
    EXPECT_EQ(equal(b, a), areEqual);
    EXPECT_EQ(unequal(a, b), !areEqual);
  };
  for (std::size_t const size : {std::size_t{32}, std::size_t{65535}}) {
    Bytes const bytes(size, 2);
    ExactBytes const original(bytes);
    ExactBytes const same(bytes);
    expect(original.Range(), same.Range(), true);
    expect(original.Range(), {original.data(), static_cast<unsigned short>(size - 1)}, false);
    for (std::size_t const at : {std::size_t{0}, std::size_t{1}, size / 2, size - 1}) {
      Bytes changed = bytes;
      changed[at] ^= 0x80;
      ExactBytes const other(changed);
      expect(original.Range(), other.Range(), false);
    }
    expect(original.Range(), {}, false);
  }
  expect({}, {}, true);
}

TEST_F(DescriptorRange, CopiesAndMovesLeaveTheSource) {
  ExactBytes const block(kRun);
  CDescriptorRange original = block.Range();
  CDescriptorRange moved(static_cast<CDescriptorRange&&>(original));
  moved = static_cast<CDescriptorRange&&>(original);
  ExpectCovers(moved, block.data(), 32);
  ExpectCovers(original, block.data(), 32);
  CDescriptorRange const copy = original;
  original.Reset();
  ExpectCovers(copy, block.data(), 32);
}

TEST_F(DescriptorRange, RangeOverSpans) {
  ExactBytes const block(Bytes(65536, 1));
  std::span<unsigned char const> const bytes(block.data(), block.size());
  ExpectCovers(RangeOver(bytes.first(65535)), block.data(), 65535);
  ExpectEmpty(RangeOver({}));
  ExpectEmpty(RangeOver(bytes.first(0)));
  EXPECT_THROW(RangeOver(bytes), std::length_error);
}

}  // namespace
}  // namespace usb_support
