#include <usb_support/descriptors/range_selector.h>

#include <functional>
#include <memory>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/descriptors/descriptor_type_finder.h>

namespace usb_support {
namespace {

using testing::ElementsAre;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::IsOfType;
using testing_support::kInternalError;
using testing_support::kOutOfRange;
using testing_support::kZeroLength;

using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;

// Types 2, 4, 5, 4, 5 at 0, 2, 4, 6, 8; end 10.
ExactBytes const& Block() {
  static ExactBytes const block(Hex("02 02 02 04 02 05 02 04 02 05"));
  return block;
}

Iterator At(unsigned offset) {
  return Block().At(offset);
}

TEST(DescriptorTypeFinder, FindsTheFirstFromFirstToLast) {
  struct Row {
    unsigned char type;
    unsigned first, last, found;
  };
  for (Row const& row :
       {Row{2, 0, 10, 0}, Row{4, 0, 10, 2}, Row{5, 0, 10, 4}, Row{4, 2, 10, 2}, Row{4, 4, 10, 6},
        Row{2, 2, 10, 10}, Row{0, 0, 10, 10}, Row{4, 10, 10, 10}, Row{5, 0, 4, 4}}) {
    EXPECT_EQ(DescriptorType(row.type)(At(row.first), At(row.last)), Found(true, At(row.found)));
  }
  EXPECT_EQ(DescriptorType(4)(Iterator(), Iterator()), Found(true, Iterator()));
  // A last byte has no type.
  ExactBytes const lastByte(Hex("02 04 01"));
  for (unsigned type = 0; type < 256; ++type) {
    EXPECT_EQ(DescriptorType(static_cast<unsigned char>(type))(lastByte.At(0), lastByte.At(3)),
              Found(true, lastByte.At(type == 4 ? 0 : 3)));
  }
}

TEST(DescriptorTypeFinder, ThrowsWhereAStepFails) {
  ExactBytes const block(Hex("02 04 00 05 02 06"));
  EXPECT_EQ(DescriptorType(5)(block.At(0), block.At(6)), Found(true, block.At(2)));
  EXPECT_RUN_TIME_EXCEPTION(DescriptorType(6)(block.At(0), block.At(6)), kZeroLength,
                            kInternalError);
  // No step from the run's start reaches this end.
  EXPECT_RUN_TIME_EXCEPTION(DescriptorType(9)(At(0), Iterator(Block().Descriptor(10), 1)),
                            kOutOfRange, kInternalError);
}

TEST(RangeSelector, IsTwoWordsAndPolymorphic) {
  static_assert(sizeof(CRangeSelector) == 2 * sizeof(void*));
  static_assert(std::has_virtual_destructor_v<CRangeSelector>);
  static_assert(!std::is_default_constructible_v<CRangeSelector>);
  // Only the second predicate is not const.
  static_assert(std::is_constructible_v<CRangeSelector, RangePredicate const&, RangePredicate&>);
  static_assert(
      !std::is_constructible_v<CRangeSelector, RangePredicate const&, RangePredicate const&>);
  static_assert(!std::is_constructible_v<CRangeSelector, RangePredicate const&, RangePredicate>);
}

TEST(RangeSelector, AsksItsFindersWithTheGivenArguments) {
  std::vector<std::pair<Iterator, Iterator>> asked;
  RangeFinder start = [&](Iterator first, Iterator last) {
    asked.emplace_back(first, last);
    return Found(true, At(4));
  };
  RangeFinder finish = [&](Iterator first, Iterator last) {
    asked.emplace_back(last, first);
    return Found(false, At(6));
  };
  CRangeSelector const selector(start, finish);
  start = DescriptorType(2);
  finish = nullptr;
  EXPECT_EQ(selector.FindStart(At(0), At(10)), Found(true, At(4)));
  EXPECT_EQ(selector.FindFinish(At(2), At(8)), Found(false, At(6)));
  EXPECT_EQ(selector.FindStartFunc()(At(0), At(10)), Found(true, At(4)));
  EXPECT_EQ(selector.FindFinishFunc()(At(2), At(8)), Found(false, At(6)));
  auto const first = std::pair(At(0), At(10));
  auto const second = std::pair(At(8), At(2));
  EXPECT_THAT(asked, ElementsAre(first, second, first, second));
}

TEST(RangeSelector, KeepsTheStateOfEachFinder) {
  RangeFinder const counting = [calls = 0](Iterator, Iterator last) mutable {
    return Found(++calls > 1, last);
  };
  CRangeSelector const selector(counting, counting);
  EXPECT_FALSE(selector.FindStart(At(0), At(10)).first);
  EXPECT_TRUE(selector.FindStart(At(0), At(10)).first);
  EXPECT_FALSE(selector.FindFinish(At(0), At(10)).first);
}

TEST(RangeSelector, OnePredicateServesForStartAndFinish) {
  std::vector<Iterator> seen;
  RangePredicate const predicate = [&seen](Iterator const& it) {
    seen.push_back(it);
    return it->bDescriptorType == 5;
  };
  CRangeSelector const selector(predicate);
  EXPECT_EQ(selector.FindStart(At(0), At(10)), Found(true, At(4)));
  EXPECT_THAT(seen, ElementsAre(At(0), At(2), At(4)));
  EXPECT_EQ(selector.FindFinish(At(4), At(10)), Found(true, At(4)));
  EXPECT_EQ(selector.FindFinish(At(6), At(8)), Found(true, At(8)));
  EXPECT_EQ(seen.size(), 5u);
  EXPECT_EQ(selector.FindStart(Iterator(), Iterator()), Found(true, Iterator()));
  EXPECT_EQ(seen.size(), 5u);
}

TEST(RangeSelector, RefersToTheCallersPredicates) {
  RangePredicate start = IsOfType(4);
  RangePredicate finish = IsOfType(5);
  CRangeSelector const selector(start, finish);
  CRangeSelector const copy(selector);
  RangeFinder const finder = selector.FindStartFunc();
  EXPECT_EQ(selector.FindStart(At(0), At(10)), Found(true, At(2)));
  EXPECT_EQ(selector.FindFinish(At(0), At(10)), Found(true, At(4)));
  start = IsOfType(5);
  finish = IsOfType(2);
  EXPECT_EQ(copy.FindStart(At(0), At(10)), Found(true, At(4)));
  EXPECT_EQ(copy.FindFinish(At(0), At(10)), Found(true, At(0)));
  EXPECT_EQ(finder(At(0), At(10)), Found(true, At(4)));
  finish = IsOfType(6);
  ExactBytes const zero(Hex("02 04 00 05 02 06"));
  EXPECT_RUN_TIME_EXCEPTION(selector.FindFinish(zero.At(0), zero.At(6)), kZeroLength,
                            kInternalError);
}

TEST(RangeSelector, PassesOnWhatItsFindersThrow) {
  RangePredicate const none;
  CRangeSelector const byPredicate(none);
  EXPECT_THROW(byPredicate.FindStart(At(0), At(10)), std::bad_function_call);
  EXPECT_THROW(byPredicate.FindFinish(At(0), At(10)), std::bad_function_call);
  EXPECT_EQ(byPredicate.FindStart(At(10), At(10)), Found(true, At(10)));
  RangeFinder const failing = [](Iterator, Iterator) -> Found { throw 5; };
  CRangeSelector const selector(failing, RangeFinder());
  EXPECT_THROW(selector.FindStart({}, {}), int);
  EXPECT_THROW(selector.FindFinish(At(10), At(10)), std::bad_function_call);
}

// A finder whose number of owners shows how many copies of it exist.
RangeFinder TokenHolder(std::shared_ptr<int> const& token) {
  return [token](Iterator first, Iterator) { return Found(true, first); };
}

TEST(RangeSelector, CopiesShareTheFinders) {
  auto const token = std::make_shared<int>(0);
  {
    auto source = std::make_unique<CRangeSelector>(TokenHolder(token), TokenHolder(token));
    CRangeSelector const copy(*source);
    std::vector<CRangeSelector> const copies(3, copy);
    EXPECT_EQ(&copies[2].FindStartFunc(), &source->FindStartFunc());
    EXPECT_EQ(&copies[2].FindFinishFunc(), &source->FindFinishFunc());
    EXPECT_EQ(token.use_count(), 3);
    source.reset();
    EXPECT_EQ(copy.FindFinish(At(2), At(10)), Found(true, At(2)));
    EXPECT_EQ(token.use_count(), 3);
  }
  EXPECT_EQ(token.use_count(), 1);
}

TEST(RangeSelector, AssignmentReleasesTheTargetsFinders) {
  auto const oldToken = std::make_shared<int>(0);
  auto const newToken = std::make_shared<int>(0);
  {
    CRangeSelector target(TokenHolder(oldToken), TokenHolder(oldToken));
    CRangeSelector const& self = target;
    target = self;
    EXPECT_EQ(oldToken.use_count(), 3);
    target = CRangeSelector(RangeFinder(DescriptorType(4)), TokenHolder(newToken));
    EXPECT_EQ(oldToken.use_count(), 1);
    EXPECT_EQ(newToken.use_count(), 2);
    EXPECT_EQ(target.FindStart(At(0), At(10)), Found(true, At(2)));
  }
  EXPECT_EQ(newToken.use_count(), 1);
}

}  // namespace
}  // namespace usb_support
