#include <usb_support/descriptors/descriptor_range_iterator.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <limits>
#include <memory>
#include <stdexcept>
#include <type_traits>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Joined;
using testing_support::MakeDescriptor;

constexpr auto kInternalError = static_cast<TEST_STATUS>(0x40000000);
constexpr char const* kOutOfRange = "Invalid Descriptor Range Iterator: out of range.";
constexpr char const* kZeroLength = "Invalid descriptor:  bLength must be greater than 0.";

using Iterator = CDescriptorRangeIterator;

// Configuration, interface, endpoint, endpoint: 9 + 9 + 7 + 7 bytes.
Bytes FourDescriptors() {
  return Joined(
      {MakeDescriptor(9, 2), MakeDescriptor(9, 4), MakeDescriptor(7, 5), MakeDescriptor(7, 5)});
}

TEST(DescriptorRangeIterator, DefaultIsNullWithNothingLeft) {
  Iterator const it;
  EXPECT_EQ(it.operator->(), nullptr);
  EXPECT_EQ(it.Remaining(), 0u);
}

TEST(DescriptorRangeIterator, StoresBothFieldsAsGiven) {
  ExactBytes const block({0x00, 0x00});
  Iterator const it(block.Descriptor(), std::numeric_limits<std::uint64_t>::max());
  EXPECT_EQ(it.operator->(), block.Descriptor());
  EXPECT_EQ(it.Remaining(), std::numeric_limits<std::uint64_t>::max());

  Iterator const overNothing(nullptr, 7);
  EXPECT_EQ(overNothing.operator->(), nullptr);
  EXPECT_EQ(overNothing.Remaining(), 7u);
}

TEST(DescriptorRangeIterator, IsAnAddressAndThenACount) {
  static_assert(sizeof(Iterator) == 16);
  static_assert(std::is_trivially_copyable_v<Iterator>);
  static_assert(!std::is_polymorphic_v<Iterator>);
  ExactBytes const block({0x02, 0x04});
  Iterator const it(block.Descriptor(), 0x1122334455667788u);
  unsigned char image[sizeof(Iterator)];
  std::memcpy(image, std::addressof(it), sizeof(image));
  void* address = nullptr;
  std::uint64_t count = 0;
  std::memcpy(&address, image, sizeof(address));
  std::memcpy(&count, image + 8, sizeof(count));
  EXPECT_EQ(address, block.data());
  EXPECT_EQ(count, 0x1122334455667788u);
}

TEST(DescriptorRangeIterator, CopiesAndMovesCopyBothFields) {
  ExactBytes const block({0x02, 0x04});
  Iterator original = block.At(0);

  Iterator const copy(original);
  EXPECT_EQ(copy.operator->(), block.Descriptor());
  EXPECT_EQ(copy.Remaining(), 2u);

  // NOLINTBEGIN(bugprone-use-after-move,performance-move-const-arg): a move leaves its source
  // alone.
  Iterator const moved(std::move(original));
  EXPECT_EQ(moved, copy);
  EXPECT_EQ(original, copy);

  Iterator copyAssigned;
  copyAssigned = copy;
  EXPECT_EQ(copyAssigned, copy);

  Iterator moveAssigned;
  moveAssigned = std::move(copyAssigned);
  EXPECT_EQ(moveAssigned, copy);
  EXPECT_EQ(copyAssigned, copy);
  // NOLINTEND(bugprone-use-after-move,performance-move-const-arg)
}

TEST(DescriptorRangeIterator, CopiesStepOnTheirOwn) {
  ExactBytes const block(FourDescriptors());
  Iterator const original = block.At(0);
  Iterator copy = original;
  ++copy;
  EXPECT_EQ(original, block.At(0));
  EXPECT_EQ(copy, block.At(9));
}

TEST(DescriptorRangeIterator, AccessGivesTheDescriptorUnderTheCursor) {
  ExactBytes const block(FourDescriptors());
  Iterator it = block.At(9);
  Iterator const& constant = it;
  EXPECT_EQ(it.operator->(), block.Descriptor(9));
  EXPECT_EQ(std::addressof(*it), block.Descriptor(9));
  EXPECT_EQ(&it, block.Descriptor(9));
  EXPECT_EQ(constant.operator->(), block.Descriptor(9));
  EXPECT_EQ(std::addressof(*constant), block.Descriptor(9));
  EXPECT_EQ(&constant, block.Descriptor(9));
  EXPECT_EQ(+it->bLength, 9);
  EXPECT_EQ(+(*constant).bDescriptorType, 4);
}

TEST(DescriptorRangeIterator, ConstAccessGivesConstDescriptors) {
  using Record = TQ_USB_COMMON_DESCRIPTOR;
  static_assert(std::is_same_v<decltype(std::declval<Iterator&>().operator->()), Record*>);
  static_assert(std::is_same_v<decltype(*std::declval<Iterator&>()), Record&>);
  static_assert(std::is_same_v<decltype(&std::declval<Iterator&>()), Record*>);
  static_assert(
      std::is_same_v<decltype(std::declval<Iterator const&>().operator->()), Record const*>);
  static_assert(std::is_same_v<decltype(*std::declval<Iterator const&>()), Record const&>);
  static_assert(std::is_same_v<decltype(&std::declval<Iterator const&>()), Record const*>);
  ExactBytes const block({0x02, 0x04});
  Iterator it = block.At(0);
  it->bDescriptorType = 0x21;
  (*it).bLength = 0x07;
  EXPECT_EQ(+block.data()[0], 0x07);
  EXPECT_EQ(+block.data()[1], 0x21);
}

TEST(DescriptorRangeIterator, AccessOfADefaultOrEndIteratorIsNotChecked) {
  Iterator nowhere;
  EXPECT_EQ(nowhere.operator->(), nullptr);
  EXPECT_EQ(&nowhere, nullptr);
  ExactBytes const block({0x02, 0x04});
  Iterator end = block.At(2);
  EXPECT_EQ(end.operator->(), block.Descriptor(2));
  EXPECT_EQ(&end, block.Descriptor(2));
}

TEST(DescriptorRangeIterator, PrefixStepsByTheLengthAndReturnsItself) {
  ExactBytes const block(FourDescriptors());
  Iterator it = block.At(0);
  Iterator& result = ++it;
  EXPECT_EQ(std::addressof(result), std::addressof(it));
  EXPECT_EQ(it, block.At(9));
  EXPECT_EQ(++it, block.At(18));
  EXPECT_EQ(++it, block.At(25));
  EXPECT_EQ(++it, block.At(32));
  EXPECT_EQ(it.Remaining(), 0u);
}

TEST(DescriptorRangeIterator, PostfixReturnsTheIteratorBeforeTheStep) {
  ExactBytes const block(FourDescriptors());
  Iterator it = block.At(0);
  EXPECT_EQ(it++, block.At(0));
  EXPECT_EQ(it++, block.At(9));
  EXPECT_EQ(it, block.At(18));
  static_assert(std::is_same_v<decltype(it++), Iterator>);
}

// Every bLength, with fewer, just as many and more bytes left.
TEST(DescriptorRangeIterator, StepIsTheSmallerOfLengthAndRemaining) {
  for (unsigned length = 1; length < 256; ++length) {
    for (std::size_t remaining : {std::size_t{1}, std::size_t{2}, std::size_t{9}, std::size_t{127},
                                  std::size_t{254}, std::size_t{255}, std::size_t{300}}) {
      Bytes bytes(remaining);
      bytes[0] = static_cast<unsigned char>(length);
      ExactBytes const block(bytes);
      Iterator it = block.At(0);
      ++it;
      std::size_t const step = length < remaining ? length : remaining;
      EXPECT_EQ(it, block.At(step)) << length << " of " << remaining;
    }
  }
}

TEST(DescriptorRangeIterator, StepTakesAllOfAWideCount) {
  ExactBytes const block(MakeDescriptor(9, 4));
  Iterator it(block.Descriptor(), 0x100000005u);
  ++it;
  EXPECT_EQ(it.operator->(), block.Descriptor(9));
  EXPECT_EQ(it.Remaining(), 0xFFFFFFFCu);
}

TEST(DescriptorRangeIterator, StepReadsTheLengthOnly) {
  ExactBytes const block({0x01});
  Iterator it = block.At(0);
  EXPECT_EQ(++it, block.At(1));
}

TEST(DescriptorRangeIterator, LastDescriptorThatClaimsTooMuchStepsToTheEnd) {
  Bytes bytes = MakeDescriptor(9, 1);
  bytes[0] = 18;
  ExactBytes const block(bytes);
  Iterator it = block.At(0);
  ++it;
  EXPECT_EQ(it.operator->(), block.Descriptor(9));
  EXPECT_EQ(it.Remaining(), 0u);
  EXPECT_EQ(it, block.Range().end());
  EXPECT_RUN_TIME_EXCEPTION(++it, kOutOfRange, kInternalError);
  EXPECT_EQ(it, block.Range().end());
}

TEST(DescriptorRangeIterator, StepAtTheEndRaisesAndReadsNothing) {
  ExactBytes const block(MakeDescriptor(9, 4));
  Iterator it = block.At(9);
  EXPECT_RUN_TIME_EXCEPTION(++it, kOutOfRange, kInternalError);
  EXPECT_EQ(it, block.At(9));
  EXPECT_RUN_TIME_EXCEPTION(it++, kOutOfRange, kInternalError);
  EXPECT_EQ(it, block.At(9));
  EXPECT_RUN_TIME_EXCEPTION(it + 1, kOutOfRange, kInternalError);
  EXPECT_EQ(it, block.At(9));
}

TEST(DescriptorRangeIterator, StepOfADefaultIteratorRaises) {
  Iterator it;
  EXPECT_RUN_TIME_EXCEPTION(++it, kOutOfRange, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(it++, kOutOfRange, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(it + 1, kOutOfRange, kInternalError);
  EXPECT_EQ(it, Iterator());
}

TEST(DescriptorRangeIterator, StepOnAZeroLengthRaises) {
  ExactBytes const block({0x00, 0x04, 0x02, 0x05});
  Iterator it = block.At(0);
  EXPECT_RUN_TIME_EXCEPTION(++it, kZeroLength, kInternalError);
  EXPECT_EQ(it, block.At(0));
  EXPECT_RUN_TIME_EXCEPTION(it++, kZeroLength, kInternalError);
  EXPECT_EQ(it, block.At(0));
  EXPECT_RUN_TIME_EXCEPTION(it + 1, kZeroLength, kInternalError);
  EXPECT_EQ(it, block.At(0));
}

TEST(DescriptorRangeIterator, NothingLeftIsSaidBeforeAZeroLength) {
  ExactBytes const block({0x00, 0x04});
  Iterator it(block.Descriptor(), 0);
  EXPECT_RUN_TIME_EXCEPTION(++it, kOutOfRange, kInternalError);
}

TEST(DescriptorRangeIterator, FailureIsCaughtAsEachOfItsBases) {
  Iterator it;
  EXPECT_THROW(++it, TQRunTimeException);
  EXPECT_THROW(++it, TQException);
  EXPECT_THROW(++it, std::runtime_error);
  EXPECT_THROW(++it, std::exception);
}

TEST(DescriptorRangeIterator, PlusMakesStepsOnACopy) {
  ExactBytes const block(FourDescriptors());
  Iterator const it = block.At(0);
  EXPECT_EQ(it + 0, block.At(0));
  EXPECT_EQ(it + 1, block.At(9));
  EXPECT_EQ(it + 2, block.At(18));
  EXPECT_EQ(it + 3, block.At(25));
  EXPECT_EQ(it + 4, block.At(32));
  EXPECT_EQ(it, block.At(0));
}

TEST(DescriptorRangeIterator, PlusRaisesAtTheFirstStepThatFails) {
  Bytes bytes = FourDescriptors();
  ExactBytes const whole(bytes);
  Iterator const it = whole.At(0);
  EXPECT_RUN_TIME_EXCEPTION(it + 5, kOutOfRange, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(it + std::numeric_limits<std::uint64_t>::max(), kOutOfRange,
                            kInternalError);
  EXPECT_EQ(it, whole.At(0));

  bytes[18] = 0;
  ExactBytes const broken(bytes);
  Iterator const start = broken.At(0);
  EXPECT_EQ(start + 2, broken.At(18));
  EXPECT_RUN_TIME_EXCEPTION(start + 3, kZeroLength, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(start + 100, kZeroLength, kInternalError);
  EXPECT_EQ(start, broken.At(0));
}

TEST(DescriptorRangeIterator, PlusZeroChecksNothing) {
  EXPECT_EQ(Iterator() + 0, Iterator());
  ExactBytes const block({0x00, 0x04});
  EXPECT_EQ(block.At(0) + 0, block.At(0));
  EXPECT_EQ(block.At(2) + 0, block.At(2));
}

TEST(DescriptorRangeIterator, MinusIsTheDistanceInBytes) {
  ExactBytes const block(FourDescriptors());
  static_assert(
      std::is_same_v<decltype(std::declval<Iterator const&>() - Iterator()), std::int64_t>);
  EXPECT_EQ(block.At(25) - block.At(9), 16);
  EXPECT_EQ(block.At(9) - block.At(25), -16);
  Iterator const sameAddress(block.Descriptor(9), 23);
  EXPECT_EQ(block.At(9) - sameAddress, 0);
  Iterator const nowhere;
  EXPECT_EQ(nowhere - Iterator(), 0);
}

TEST(DescriptorRangeIterator, MinusIgnoresRemaining) {
  ExactBytes const block(FourDescriptors());
  EXPECT_EQ(Iterator(block.Descriptor(9), 0) - Iterator(block.Descriptor(0), 1000), 9);
  EXPECT_EQ(Iterator(block.Descriptor(9), 5) - Iterator(block.Descriptor(9), 6), 0);
}

TEST(DescriptorRangeIterator, EqualOnlyWhenBothFieldsAre) {
  ExactBytes const block(FourDescriptors());
  Iterator const it(block.Descriptor(9), 16);
  EXPECT_TRUE(it == Iterator(block.Descriptor(9), 16));
  EXPECT_FALSE(it != Iterator(block.Descriptor(9), 16));
  EXPECT_FALSE(it == Iterator(block.Descriptor(9), 15));
  EXPECT_TRUE(it != Iterator(block.Descriptor(9), 15));
  EXPECT_FALSE(it == Iterator(block.Descriptor(0), 16));
  EXPECT_TRUE(it != Iterator(block.Descriptor(0), 16));
  EXPECT_TRUE(Iterator() == Iterator(nullptr, 0));
  EXPECT_FALSE(Iterator() == Iterator(nullptr, 1));
}

TEST(DescriptorRangeIterator, HasBothComparisonsAsMembers) {
  using Comparison = bool (Iterator::*)(Iterator const&) const noexcept;
  Comparison const equal = &Iterator::operator==;
  Comparison const unequal = &Iterator::operator!=;
  Iterator const it;
  EXPECT_TRUE((it.*equal)(Iterator()));
  EXPECT_FALSE((it.*unequal)(Iterator()));
}

TEST(DescriptorRangeIterator, TellsTheStandardLibraryWhatItIs) {
  using Traits = std::iterator_traits<Iterator>;
  static_assert(std::is_base_of_v<std::forward_iterator_tag, Traits::iterator_category>);
  static_assert(!std::is_base_of_v<std::bidirectional_iterator_tag, Traits::iterator_category>);
  static_assert(std::is_same_v<Traits::value_type, TQ_USB_COMMON_DESCRIPTOR>);
  static_assert(std::is_same_v<Traits::reference, TQ_USB_COMMON_DESCRIPTOR&>);
  static_assert(std::is_same_v<Traits::pointer, TQ_USB_COMMON_DESCRIPTOR*>);
  static_assert(std::is_same_v<Traits::difference_type, std::int64_t>);

  ExactBytes const block(FourDescriptors());
  Iterator const first = block.At(0);
  Iterator const last = block.At(32);
  auto const isEndpoint = [](TQ_USB_COMMON_DESCRIPTOR const& descriptor) {
    return descriptor.bDescriptorType == 5;
  };
  EXPECT_EQ(std::find_if(first, last, isEndpoint), block.At(18));
  EXPECT_EQ(std::count_if(first, last, isEndpoint), 2);
  EXPECT_TRUE(std::none_of(first, block.At(18), isEndpoint));
  EXPECT_EQ(std::distance(first, last), 4);
  EXPECT_EQ(std::next(first, 3), block.At(25));
  EXPECT_EQ(std::adjacent_find(first, last,
                               [](auto const& a, auto const& b) {
                                 return a.bDescriptorType == b.bDescriptorType;
                               }),
            block.At(18));
}

TEST(DescriptorRangeIterator, RangeForVisitsEveryDescriptor) {
  ExactBytes const block(FourDescriptors());
  std::vector<int> types;
  for (TQ_USB_COMMON_DESCRIPTOR const& descriptor : block.Range()) {
    types.push_back(descriptor.bDescriptorType);
  }
  EXPECT_EQ(types, (std::vector<int>{2, 4, 5, 5}));
}

}  // namespace
}  // namespace usb_support
