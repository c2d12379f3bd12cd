#include <usb_support/suite_interfaces/simple_buffer.h>

#include <cstdint>
#include <cstring>
#include <new>
#include <string>
#include <string_view>
#include <utility>

#include <gmock/gmock.h>

namespace {

void Fill(CSimpleBuffer& buffer, std::string_view text) {
  std::memcpy(buffer.GetBuffer(text.size()), text.data(), text.size());
}

std::string_view Bytes(CSimpleBuffer const& buffer) {
  return {buffer.Contents(), buffer.Size()};
}

TEST(SimpleBuffer, IsAsLongAsAskedForAndWritable) {
  CSimpleBuffer buffer;
  for (std::size_t const size : {1U, 63U, 64U, 65U, 1000U, 100'000U}) {
    std::memset(buffer.GetBuffer(size), 'x', size);
    EXPECT_EQ(buffer.Size(), size);
    EXPECT_EQ(Bytes(buffer), std::string(size, 'x'));
  }
}

TEST(SimpleBuffer, MayBeAskedForNothing) {
  CSimpleBuffer buffer;
  EXPECT_EQ(buffer.Size(), 0U);
  EXPECT_STREQ(buffer.Contents(), "");
  EXPECT_NE(buffer.GetBuffer(0), nullptr);
  EXPECT_EQ(buffer.Size(), 0U);
  EXPECT_STREQ(buffer.Contents(), "");

  Fill(buffer, "text");
  EXPECT_NE(buffer.GetBuffer(0), nullptr);
  EXPECT_EQ(buffer.Size(), 0U);
  EXPECT_STREQ(buffer.Contents(), "");
}

TEST(SimpleBuffer, ReusesItsMemoryWhenItIsFilledAgain) {
  CSimpleBuffer buffer;
  char const* const start = buffer.GetBuffer(1000);
  EXPECT_EQ(buffer.GetBuffer(0), start);
  EXPECT_EQ(buffer.GetBuffer(1), start);
  EXPECT_EQ(buffer.GetBuffer(999), start);
  EXPECT_EQ(buffer.GetBuffer(1000), start);
}

TEST(SimpleBuffer, GrowsGeometrically) {
  CSimpleBuffer buffer;
  char const* start = nullptr;
  int blocks = 0;
  for (std::size_t size = 1; size <= std::size_t{1} << 16; ++size) {
    // A new block is made before the old one is freed, so that its address tells them apart.
    if (buffer.GetBuffer(size) != start) {
      start = buffer.Contents();
      ++blocks;
    }
  }
  EXPECT_GE(blocks, 2);
  EXPECT_LE(blocks, 17);
}

TEST(SimpleBuffer, StaysAsItWasWithoutMemory) {
  CSimpleBuffer buffer;
  Fill(buffer, "text");
  char const* const start = buffer.Contents();
  EXPECT_THROW(buffer.GetBuffer(SIZE_MAX), std::bad_alloc);
  EXPECT_THROW(buffer.GetBuffer(std::size_t{PTRDIFF_MAX} + 1), std::bad_alloc);
  EXPECT_EQ(buffer.Contents(), start);
  EXPECT_EQ(Bytes(buffer), "text");

  CSimpleBuffer empty;
  EXPECT_THROW(empty.GetBuffer(SIZE_MAX), std::bad_alloc);
  EXPECT_STREQ(empty.Contents(), "");
}

TEST(SimpleBuffer, CopiesHaveBytesOfTheirOwn) {
  CSimpleBuffer original;
  Fill(original, "text");
  CSimpleBuffer const copy(original);
  Fill(original, "else");
  EXPECT_EQ(Bytes(copy), "text");
  EXPECT_EQ(Bytes(original), "else");
}

TEST(SimpleBuffer, CopyAssignmentReusesTheMemory) {
  CSimpleBuffer target;
  char const* const start = target.GetBuffer(1000);
  CSimpleBuffer source;
  for (std::size_t const size : {1000u, 4u, 5000u}) {
    Fill(source, std::string(size, 'y'));
    target = source;
    EXPECT_EQ(target.Contents() == start, size <= 1000);
    EXPECT_EQ(Bytes(target), std::string(size, 'y'));
  }
}

TEST(SimpleBuffer, CopiesABufferThatWasNeverFilled) {
  CSimpleBuffer empty;
  CSimpleBuffer const copy(empty);

  CSimpleBuffer target;
  Fill(target, "text");
  target = empty;
  EXPECT_EQ(target.Size(), 0U);
  EXPECT_STREQ(target.Contents(), "");

  Fill(empty, "later");
  EXPECT_EQ(copy.Size(), 0U);
  EXPECT_STREQ(copy.Contents(), "");
}

TEST(SimpleBuffer, AssignsToItself) {
  CSimpleBuffer buffer;
  Fill(buffer, "text");
  CSimpleBuffer& same = buffer;
  buffer = same;
  EXPECT_EQ(Bytes(buffer), "text");
  buffer = std::move(same);
  EXPECT_EQ(Bytes(buffer), "text");
}

TEST(SimpleBuffer, MovesItsBlock) {
  CSimpleBuffer original;
  Fill(original, "text");
  char const* const start = original.Contents();

  CSimpleBuffer moved(std::move(original));
  EXPECT_EQ(moved.Contents(), start);
  EXPECT_EQ(Bytes(moved), "text");

  CSimpleBuffer target;
  Fill(target, "else");
  target = std::move(moved);
  EXPECT_EQ(target.Contents(), start);
  EXPECT_EQ(Bytes(target), "text");
}

TEST(SimpleBuffer, IsUsableAfterAMove) {
  CSimpleBuffer buffer;
  Fill(buffer, "text");
  CSimpleBuffer const taken(std::move(buffer));
  // NOLINTNEXTLINE(bugprone-use-after-move,clang-analyzer-cplusplus.Move): what this test is about
  EXPECT_EQ(buffer.Size(), 0U);
  EXPECT_STREQ(buffer.Contents(), "");
  Fill(buffer, "again");
  EXPECT_EQ(Bytes(buffer), "again");
  EXPECT_EQ(Bytes(taken), "text");
}

}  // namespace
