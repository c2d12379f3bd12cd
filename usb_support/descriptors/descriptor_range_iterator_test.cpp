// Walks over generated runs are compared with a model in tests/property.
#include <usb_support/descriptors/descriptor_range_iterator.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>
#include <type_traits>
#include <utility>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::kInternalError;
using testing_support::kOutOfRange;
using testing_support::kZeroLength;

using Iterator = CDescriptorRangeIterator;

TEST(DescriptorRangeIterator, IsAnAddressAndThenACount) {
  static_assert(sizeof(Iterator) == 16);
  static_assert(std::is_trivially_copyable_v<Iterator>);
  ExactBytes const block(Hex("02 04"));
  Iterator const it(block.Descriptor(), 0x1122334455667788u);
  unsigned char image[sizeof(Iterator)];
  std::memcpy(image, std::addressof(it), sizeof(image));
  void* address = nullptr;
  std::uint64_t count = 0;
  std::memcpy(&address, image, sizeof(address));
  std::memcpy(&count, image + 8, sizeof(count));
  EXPECT_EQ(address, block.data());
  EXPECT_EQ(count, 0x1122334455667788u);
  EXPECT_EQ(it.Remaining(), 0x1122334455667788u);
  EXPECT_EQ(Iterator().operator->(), nullptr);
  EXPECT_EQ(Iterator().Remaining(), 0u);
}

TEST(DescriptorRangeIterator, GivesTheDescriptorUnchecked) {
  using Record = TQ_USB_COMMON_DESCRIPTOR;
  static_assert(std::is_same_v<decltype(std::declval<Iterator&>().operator->()), Record*>);
  static_assert(std::is_same_v<decltype(*std::declval<Iterator&>()), Record&>);
  static_assert(std::is_same_v<decltype(&std::declval<Iterator&>()), Record*>);
  static_assert(
      std::is_same_v<decltype(std::declval<Iterator const&>().operator->()), Record const*>);
  static_assert(std::is_same_v<decltype(*std::declval<Iterator const&>()), Record const&>);
  static_assert(std::is_same_v<decltype(&std::declval<Iterator const&>()), Record const*>);
  ExactBytes const block(Hex("02 04 02 05"));
  for (std::size_t const at : {0u, 2u, 4u}) {
    Iterator it = block.At(at);
    Iterator const& constant = it;
    EXPECT_EQ(it.operator->(), block.Descriptor(at));
    EXPECT_EQ(&it, block.Descriptor(at));
    EXPECT_EQ(constant.operator->(), block.Descriptor(at));
    EXPECT_EQ(&constant, block.Descriptor(at));
  }
  EXPECT_EQ(+(*block.At(2)).bDescriptorType, 5);
  Iterator const constant = block.At(2);
  EXPECT_EQ(+(*constant).bDescriptorType, 5);
}

// Every bLength, with fewer, just as many and more bytes left.
TEST(DescriptorRangeIterator, StepIsTheSmallerOfLengthAndRest) {
  for (unsigned length = 1; length < 256; ++length) {
    for (std::size_t const remaining : {1u, 2u, 9u, 127u, 254u, 255u, 300u}) {
      Bytes bytes(remaining);
      bytes[0] = static_cast<unsigned char>(length);
      ExactBytes const block(bytes);
      Iterator it = block.At(0);
      EXPECT_EQ(std::addressof(++it), std::addressof(it));
      EXPECT_EQ(it, block.At(length < remaining ? length : remaining));
    }
  }
  ExactBytes const block(Hex("09 04"));
  Iterator wide(block.Descriptor(), 0x100000005u);
  ++wide;
  EXPECT_EQ(wide.Remaining(), 0xFFFFFFFCu);
}

TEST(DescriptorRangeIterator, PostfixGivesThePlaceBefore) {
  ExactBytes const block(Hex("02 04 02 05"));
  Iterator it = block.At(0);
  EXPECT_EQ(it++, block.At(0));
  EXPECT_EQ(it, block.At(2));
}

TEST(DescriptorRangeIterator, RefusedStepsThrowAndStay) {
  ExactBytes const block(Hex("00 04"));
  struct Row {
    Iterator at;
    char const* message;
  };
  for (Row const& row :
       {Row{block.At(0), kZeroLength}, Row{block.At(2), kOutOfRange},
        Row{Iterator(block.Descriptor(), 0), kOutOfRange}, Row{Iterator(), kOutOfRange}}) {
    Iterator it = row.at;
    EXPECT_RUN_TIME_EXCEPTION(++it, row.message, kInternalError);
    EXPECT_RUN_TIME_EXCEPTION(it++, row.message, kInternalError);
    EXPECT_RUN_TIME_EXCEPTION(it + 1, row.message, kInternalError);
    EXPECT_RUN_TIME_EXCEPTION(it + std::numeric_limits<std::uint64_t>::max(), row.message,
                              kInternalError);
    EXPECT_EQ(it, row.at);
    EXPECT_EQ(it + 0, row.at);
  }
}

TEST(DescriptorRangeIterator, MinusIsTheDistanceInBytes) {
  static_assert(
      std::is_same_v<decltype(std::declval<Iterator const&>() - Iterator()), std::int64_t>);
  ExactBytes const block(Bytes(32, 2));
  EXPECT_EQ(block.At(25) - block.At(9), 16);
  EXPECT_EQ(block.At(9) - block.At(25), -16);
  EXPECT_EQ(Iterator(block.Descriptor(9), 0) - Iterator(block.Descriptor(0), 1000), 9);
  EXPECT_EQ(Iterator() - Iterator(), 0);
}

TEST(DescriptorRangeIterator, EqualWhenBothFieldsAre) {
  // As members: a program may take their addresses.
  using Comparison = bool (Iterator::*)(Iterator const&) const noexcept;
  Comparison const equal = &Iterator::operator==;
  Comparison const unequal = &Iterator::operator!=;
  ExactBytes const block(Bytes(32, 2));
  Iterator const it(block.Descriptor(9), 16);
  for (auto const& [other, isEqual] :
       {std::pair(Iterator(block.Descriptor(9), 16), true),
        std::pair(Iterator(block.Descriptor(9), 15), false),
        std::pair(Iterator(block.Descriptor(0), 16), false), std::pair(Iterator(), false)}) {
    EXPECT_EQ((it.*equal)(other), isEqual);
    EXPECT_EQ((it.*unequal)(other), !isEqual);
  }
}

TEST(DescriptorRangeIterator, WorksWithTheStandardAlgorithms) {
  using Traits = std::iterator_traits<Iterator>;
  static_assert(std::is_base_of_v<std::forward_iterator_tag, Traits::iterator_category>);
  static_assert(!std::is_base_of_v<std::bidirectional_iterator_tag, Traits::iterator_category>);
  static_assert(std::is_same_v<Traits::value_type, TQ_USB_COMMON_DESCRIPTOR>);
  static_assert(std::is_same_v<Traits::reference, TQ_USB_COMMON_DESCRIPTOR&>);
  static_assert(std::is_same_v<Traits::pointer, TQ_USB_COMMON_DESCRIPTOR*>);
  static_assert(std::is_same_v<Traits::difference_type, std::int64_t>);
  ExactBytes const block(Hex("02 02 02 04 02 05 02 05"));
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(std::distance(range.begin(), range.end()), 4);
  EXPECT_EQ(std::count_if(range.begin(), range.end(),
                          [](auto const& descriptor) { return descriptor.bDescriptorType == 5; }),
            2);
}

}  // namespace
}  // namespace usb_support
