// Lengths, shares and threads, which the tests of the sets do not cover.
#include <usb_support/descriptor_sets/counted_block.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <thread>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/latch.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Hex;

// A block whose source is gone.
CountedBlock BlockOf(Bytes const& bytes) {
  ExactBytes const source(bytes);
  return {source.data(), static_cast<std::uint16_t>(source.size())};
}

Bytes BytesOf(CountedBlock const& block) {
  return {block.Bytes(), block.Bytes() + block.Length()};
}

TEST(CountedBlock, OfNoBytesIsABlock) {
  CountedBlock const none;
  EXPECT_EQ(none.Bytes(), nullptr);
  EXPECT_EQ(none.LengthFrom(&none), 0);
  EXPECT_EQ(none.LengthFrom(nullptr), 0);
  CountedBlock const empty(nullptr, 0);
  EXPECT_NE(empty.Bytes(), nullptr);
  EXPECT_EQ(empty.Length(), 0);
  EXPECT_EQ(empty.LengthFrom(empty.Bytes()), 0);
}

TEST(CountedBlock, KnowsTheLengthFromAnAddress) {
  CountedBlock const block = BlockOf(Bytes(0xFFFF));
  unsigned char const* const bytes = block.Bytes();
  EXPECT_EQ(block.LengthFrom(bytes - 1), 0);
  EXPECT_EQ(block.LengthFrom(bytes), 0xFFFF);
  EXPECT_EQ(block.LengthFrom(bytes + 0xFFFE), 1);
  EXPECT_EQ(block.LengthFrom(bytes + 0xFFFF), 0);
  EXPECT_EQ(block.LengthFrom(bytes + 0x10000), 0);
  EXPECT_EQ(block.LengthFrom(nullptr), 0);
}

TEST(CountedBlock, LivesAsLongAsAShare) {
  auto first = std::make_unique<CountedBlock>(BlockOf(Hex("01 02 03")));
  CountedBlock const second(*first);
  CountedBlock third = BlockOf(Hex("04"));
  third = second;
  EXPECT_EQ(second.Bytes(), first->Bytes());
  EXPECT_EQ(third.Bytes(), first->Bytes());
  *first = BlockOf(Hex("05 06"));
  EXPECT_EQ(BytesOf(*first), Hex("05 06"));
  first.reset();
  third = CountedBlock();
  EXPECT_EQ(third.Bytes(), nullptr);
  EXPECT_EQ(BytesOf(second), Hex("01 02 03"));
}

TEST(CountedBlock, MayBeAssignedToItself) {
  CountedBlock block = BlockOf(Hex("01 02 03"));
  CountedBlock const& same = block;
  block = same;
  EXPECT_EQ(BytesOf(block), Hex("01 02 03"));
  block = CountedBlock(block.Bytes() + 1, 2);
  EXPECT_EQ(BytesOf(block), Hex("02 03"));
}

TEST(CountedBlock, CountsSharesAcrossThreads) {
  CountedBlock const block = BlockOf(Hex("01 02 03"));
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
  EXPECT_EQ(BytesOf(block), Hex("01 02 03"));
}

}  // namespace
}  // namespace usb_support
