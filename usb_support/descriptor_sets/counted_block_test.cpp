#include <usb_support/descriptor_sets/counted_block.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <thread>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/allocation_counter.h>
#include <tests/support/exact_bytes.h>
#include <tests/support/latch.h>

#if defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)
#include <sanitizer/asan_interface.h>
#endif

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing_support::Bytes;
using testing_support::ExactBytes;

static_assert(std::is_nothrow_default_constructible_v<CountedBlock>);
static_assert(std::is_nothrow_copy_constructible_v<CountedBlock>);
static_assert(std::is_nothrow_copy_assignable_v<CountedBlock>);

Bytes CountingUp(std::size_t length) {
  Bytes bytes(length);
  for (std::size_t at = 0; at < length; ++at) {
    bytes[at] = static_cast<unsigned char>(at * 7 + at / 256);
  }
  return bytes;
}

// A block whose source is gone.
CountedBlock BlockOf(Bytes const& bytes) {
  ExactBytes const source(bytes);
  return {source.data(), static_cast<std::uint16_t>(source.size())};
}

Bytes BytesOf(CountedBlock const& block) {
  return {block.Bytes(), block.Bytes() + block.Length()};
}

TEST(CountedBlock, IsNoneAtFirst) {
  CountedBlock const none;
  EXPECT_EQ(none.Bytes(), nullptr);
  EXPECT_EQ(none.Length(), 0);
  unsigned char const elsewhere = 0;
  EXPECT_EQ(none.LengthFrom(&elsewhere), 0);
  EXPECT_EQ(none.LengthFrom(nullptr), 0);
}

TEST(CountedBlock, HoldsACopyOfTheBytes) {
  for (std::size_t const length : {1u, 2u, 7u, 8u, 9u, 255u, 256u, 0x8000u, 0xFFFFu}) {
    CountedBlock const block = BlockOf(CountingUp(length));
    EXPECT_EQ(block.Length(), length);
    EXPECT_EQ(BytesOf(block), CountingUp(length)) << length;
  }
}

TEST(CountedBlock, OfNoBytesIsABlock) {
  ExactBytes const source(Bytes{});
  CountedBlock const fromAddress(source.data(), 0);
  EXPECT_NE(fromAddress.Bytes(), nullptr);
  EXPECT_EQ(fromAddress.Length(), 0);
  EXPECT_EQ(fromAddress.LengthFrom(fromAddress.Bytes()), 0);
  EXPECT_EQ(fromAddress.LengthFrom(nullptr), 0);
  CountedBlock const fromNull(nullptr, 0);
  EXPECT_NE(fromNull.Bytes(), nullptr);
  EXPECT_EQ(fromNull.Length(), 0);
}

TEST(CountedBlock, KnowsHowManyBytesLieFromAnAddressOn) {
  CountedBlock const block = BlockOf(CountingUp(300));
  for (std::size_t at = 0; at < 300; ++at) {
    ASSERT_EQ(block.LengthFrom(block.Bytes() + at), 300 - at);
  }
  EXPECT_EQ(block.LengthFrom(block.Bytes() + 300), 0);
  EXPECT_EQ(block.LengthFrom(block.Bytes() - 1), 0);
  EXPECT_EQ(block.LengthFrom(nullptr), 0);

  CountedBlock const longest = BlockOf(CountingUp(0xFFFF));
  EXPECT_EQ(longest.LengthFrom(longest.Bytes()), 0xFFFF);
  EXPECT_EQ(longest.LengthFrom(longest.Bytes() + 0xFFFE), 1);
  EXPECT_EQ(longest.LengthFrom(longest.Bytes() + 0xFFFF), 0);
  EXPECT_EQ(longest.LengthFrom(longest.Bytes() + 0x10000), 0);
  EXPECT_EQ(longest.LengthFrom(block.Bytes()), 0);
}

TEST(CountedBlock, CopiesShareTheBytes) {
  CountedBlock const first = BlockOf({1, 2, 3});
  auto const second = std::make_unique<CountedBlock>(first);
  CountedBlock third;
  third = *second;
  EXPECT_EQ(second->Bytes(), first.Bytes());
  EXPECT_EQ(third.Bytes(), first.Bytes());
  EXPECT_EQ(third.Length(), 3);
  third.Bytes()[1] = 9;
  EXPECT_THAT(BytesOf(first), ElementsAre(1, 9, 3));
}

TEST(CountedBlock, LivesAsLongAsAShareOfIt) {
  auto first = std::make_unique<CountedBlock>(BlockOf({1, 2, 3}));
  auto second = std::make_unique<CountedBlock>(*first);
  CountedBlock third(*second);
  first.reset();
  EXPECT_THAT(BytesOf(*second), ElementsAre(1, 2, 3));
  second.reset();
  EXPECT_THAT(BytesOf(third), ElementsAre(1, 2, 3));
  third = CountedBlock();
  EXPECT_EQ(third.Bytes(), nullptr);
}

TEST(CountedBlock, AssignmentGivesTheOldShareBack) {
  CountedBlock block = BlockOf({1, 2, 3});
  CountedBlock const sharer(block);
  block = BlockOf({4, 5});
  EXPECT_THAT(BytesOf(block), ElementsAre(4, 5));
  EXPECT_THAT(BytesOf(sharer), ElementsAre(1, 2, 3));
  block = sharer;
  EXPECT_EQ(block.Bytes(), sharer.Bytes());
  block = CountedBlock();
  EXPECT_EQ(block.Bytes(), nullptr);
  EXPECT_EQ(block.Length(), 0);
  EXPECT_THAT(BytesOf(sharer), ElementsAre(1, 2, 3));
}

TEST(CountedBlock, MayBeAssignedToItself) {
  CountedBlock block = BlockOf({1, 2, 3});
  unsigned char const* const bytes = block.Bytes();
  CountedBlock const& same = block;
  block = same;
  EXPECT_EQ(block.Bytes(), bytes);
  EXPECT_THAT(BytesOf(block), ElementsAre(1, 2, 3));

  CountedBlock none;
  CountedBlock const& sameNone = none;
  none = sameNone;
  EXPECT_EQ(none.Bytes(), nullptr);
}

TEST(CountedBlock, MayBeMadeFromTheBlockThatItReplaces) {
  CountedBlock block = BlockOf(CountingUp(1000));
  block = CountedBlock(block.Bytes() + 100, 900);
  Bytes const all = CountingUp(1000);
  EXPECT_EQ(BytesOf(block), Bytes(all.begin() + 100, all.end()));
}

TEST(CountedBlock, SharesAreCountedAcrossThreads) {
  CountedBlock const block = BlockOf({1, 2, 3});
  testing_support::Latch together(2);
  auto const shareAndDrop = [&] {
    together.ArriveAndWait();
    for (int round = 0; round < 200000; ++round) {
      CountedBlock share(block);
      share = CountedBlock();
      share = block;
    }
  };
  std::thread thread(shareAndDrop);
  shareAndDrop();
  thread.join();
  EXPECT_THAT(BytesOf(block), ElementsAre(1, 2, 3));
}

#if defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)
TEST(CountedBlock, HasNothingBehindItsLastByte) {
  for (std::size_t length = 0; length < 64; ++length) {
    CountedBlock const block = BlockOf(CountingUp(length));
    EXPECT_NE(__asan_address_is_poisoned(block.Bytes() + length), 0) << length;
    if (length != 0) {
      EXPECT_EQ(__asan_address_is_poisoned(block.Bytes() + length - 1), 0) << length;
    }
  }
}
#endif

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)
TEST(CountedBlock, TakesOneAllocation) {
  ExactBytes const source(CountingUp(100));
  EXPECT_EQ(testing_support::AllocationsOf([&source] { CountedBlock const b(source.data(), 100); }),
            1u);
  CountedBlock const block = BlockOf({1, 2, 3});
  EXPECT_EQ(testing_support::AllocationsOf([&block] {
              CountedBlock share(block);
              share = CountedBlock();
              share = block;
            }),
            0u);
}
#endif

#if defined(USB_SUPPORT_TEST_FAILS_ALLOCATIONS)
TEST(CountedBlock, RaisesWhenThereIsNoMemory) {
  ExactBytes const source(CountingUp(100));
  CountedBlock block = BlockOf({1, 2, 3});
  EXPECT_TRUE(testing_support::RunsOutOfMemory([&] { block = CountedBlock(source.data(), 100); }));
  EXPECT_THAT(BytesOf(block), ElementsAre(1, 2, 3));
}
#endif

}  // namespace
}  // namespace usb_support
