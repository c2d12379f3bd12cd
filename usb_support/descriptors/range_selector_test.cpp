#include <usb_support/descriptors/range_selector.h>

#include <cstddef>
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
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Joined;
using testing_support::MakeDescriptor;

constexpr auto kInternalError = static_cast<TEST_STATUS>(0x40000000);
constexpr char const* kOutOfRange = "Invalid Descriptor Range Iterator: out of range.";
constexpr char const* kZeroLength = "Invalid descriptor:  bLength must be greater than 0.";

using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;

// Configuration, interface, endpoint, interface, endpoint: offsets 0, 9, 18, 25, 34, end 41.
Bytes FiveDescriptors() {
  return Joined({MakeDescriptor(9, 2), MakeDescriptor(9, 4), MakeDescriptor(7, 5),
                 MakeDescriptor(9, 4), MakeDescriptor(7, 5)});
}

RangePredicate IsOfType(unsigned char type) {
  return [type](Iterator const& it) { return it->bDescriptorType == type; };
}

TEST(DescriptorTypeFinder, FindsTheFirstOfItsType) {
  ExactBytes const block(FiveDescriptors());
  EXPECT_EQ(DescriptorType(2)(block.At(0), block.At(41)), Found(true, block.At(0)));
  EXPECT_EQ(DescriptorType(4)(block.At(0), block.At(41)), Found(true, block.At(9)));
  EXPECT_EQ(DescriptorType(5)(block.At(0), block.At(41)), Found(true, block.At(18)));
}

TEST(DescriptorTypeFinder, StartsAtFirst) {
  ExactBytes const block(FiveDescriptors());
  EXPECT_EQ(DescriptorType(4)(block.At(9), block.At(41)), Found(true, block.At(9)));
  EXPECT_EQ(DescriptorType(4)(block.At(18), block.At(41)), Found(true, block.At(25)));
}

TEST(DescriptorTypeFinder, SaysTrueWithLastWhenThereIsNone) {
  ExactBytes const block(FiveDescriptors());
  EXPECT_EQ(DescriptorType(2)(block.At(9), block.At(41)), Found(true, block.At(41)));
  EXPECT_EQ(DescriptorType(0)(block.At(0), block.At(41)), Found(true, block.At(41)));
  EXPECT_EQ(DescriptorType(4)(block.At(41), block.At(41)), Found(true, block.At(41)));
  EXPECT_EQ(DescriptorType(4)(Iterator(), Iterator()), Found(true, Iterator()));
}

TEST(DescriptorTypeFinder, LooksNoFurtherThanLast) {
  ExactBytes const block(FiveDescriptors());
  EXPECT_EQ(DescriptorType(5)(block.At(0), block.At(18)), Found(true, block.At(18)));
  EXPECT_EQ(DescriptorType(4)(block.At(18), block.At(25)), Found(true, block.At(25)));
}

TEST(DescriptorTypeFinder, RaisesOnAZeroLengthBeforeAMatch) {
  ExactBytes const block({0x02, 0x04, 0x00, 0x05, 0x02, 0x06});
  EXPECT_EQ(DescriptorType(5)(block.At(0), block.At(6)), Found(true, block.At(2)));
  EXPECT_RUN_TIME_EXCEPTION(DescriptorType(6)(block.At(0), block.At(6)), kZeroLength,
                            kInternalError);
}

TEST(DescriptorTypeFinder, RaisesWhenItRunsPastTheEnd) {
  ExactBytes const block({0x02, 0x04});
  // No step from the run's start reaches this end.
  Iterator const unreachable(block.Descriptor(2), 1);
  EXPECT_RUN_TIME_EXCEPTION(DescriptorType(6)(block.At(0), unreachable), kOutOfRange,
                            kInternalError);
}

TEST(DescriptorTypeFinder, NoTypeMatchesALastByteWithoutASecond) {
  ExactBytes const block({0x02, 0x04, 0x01});
  for (unsigned type = 0; type < 256; ++type) {
    if (type != 4) {
      EXPECT_EQ(DescriptorType(static_cast<unsigned char>(type))(block.At(0), block.At(3)),
                Found(true, block.At(3)))
          << type;
    }
  }
}

TEST(DescriptorTypeFinder, IsAFinder) {
  ExactBytes const block(FiveDescriptors());
  RangeFinder const finder = DescriptorType(5);
  EXPECT_EQ(finder(block.At(0), block.At(41)), Found(true, block.At(18)));
}

TEST(RangeSelector, IsTwoWordsAndPolymorphic) {
  static_assert(sizeof(CRangeSelector) == 2 * sizeof(void*));
  static_assert(std::is_polymorphic_v<CRangeSelector>);
  static_assert(std::has_virtual_destructor_v<CRangeSelector>);
  bool ended = false;
  class Derived : public CRangeSelector {
   public:
    explicit Derived(bool& flag)
        : CRangeSelector(RangeFinder(DescriptorType(4)), RangeFinder(DescriptorType(5))),
          flag_(flag) {}
    Derived(Derived const&) = delete;
    Derived& operator=(Derived const&) = delete;
    ~Derived() override { flag_ = true; }

   private:
    bool& flag_;
  };
  std::unique_ptr<CRangeSelector>(new Derived(ended)).reset();
  EXPECT_TRUE(ended);
}

TEST(RangeSelector, AsksItsFindersWithTheArgumentsAsGiven) {
  ExactBytes const block(FiveDescriptors());
  std::vector<std::pair<Iterator, Iterator>> starts;
  std::vector<std::pair<Iterator, Iterator>> finishes;
  CRangeSelector const selector(RangeFinder([&](Iterator first, Iterator last) {
                                  starts.emplace_back(first, last);
                                  return Found(true, block.At(18));
                                }),
                                RangeFinder([&](Iterator first, Iterator last) {
                                  finishes.emplace_back(first, last);
                                  return Found(false, block.At(25));
                                }));

  EXPECT_EQ(selector.FindStart(block.At(0), block.At(41)), Found(true, block.At(18)));
  EXPECT_THAT(starts, ElementsAre(std::pair(block.At(0), block.At(41))));
  EXPECT_THAT(finishes, IsEmpty());

  EXPECT_EQ(selector.FindFinish(block.At(9), block.At(34)), Found(false, block.At(25)));
  EXPECT_THAT(starts, testing::SizeIs(1));
  EXPECT_THAT(finishes, ElementsAre(std::pair(block.At(9), block.At(34))));
}

TEST(RangeSelector, GivesItsFinders) {
  ExactBytes const block(FiveDescriptors());
  CRangeSelector const selector(RangeFinder(DescriptorType(4)), RangeFinder(DescriptorType(5)));
  static_assert(std::is_same_v<decltype(selector.FindStartFunc()), RangeFinder const&>);
  static_assert(std::is_same_v<decltype(selector.FindFinishFunc()), RangeFinder const&>);
  EXPECT_EQ(selector.FindStartFunc()(block.At(0), block.At(41)), Found(true, block.At(9)));
  EXPECT_EQ(selector.FindFinishFunc()(block.At(0), block.At(41)), Found(true, block.At(18)));
  ASSERT_NE(selector.FindStartFunc().target<DescriptorType>(), nullptr);
}

TEST(RangeSelector, CopiesTheGivenFinders) {
  ExactBytes const block(FiveDescriptors());
  RangeFinder start = DescriptorType(4);
  RangeFinder finish = DescriptorType(5);
  CRangeSelector const selector(start, finish);
  start = DescriptorType(2);
  finish = nullptr;
  EXPECT_EQ(selector.FindStart(block.At(0), block.At(41)), Found(true, block.At(9)));
  EXPECT_EQ(selector.FindFinish(block.At(0), block.At(41)), Found(true, block.At(18)));
}

TEST(RangeSelector, FinderStateLivesAsLongAsTheSelector) {
  ExactBytes const block(FiveDescriptors());
  RangeFinder const counting = [calls = 0](Iterator, Iterator last) mutable {
    return Found(++calls > 1, last);
  };
  CRangeSelector const selector(counting, counting);
  EXPECT_FALSE(selector.FindStart(block.At(0), block.At(41)).first);
  EXPECT_TRUE(selector.FindStart(block.At(0), block.At(41)).first);
  // The finish finder is a copy of its own.
  EXPECT_FALSE(selector.FindFinish(block.At(0), block.At(41)).first);
}

TEST(RangeSelector, OnePredicateServesForStartAndFinish) {
  ExactBytes const block(FiveDescriptors());
  RangePredicate const isInterface = IsOfType(4);
  CRangeSelector const selector(isInterface);
  EXPECT_EQ(selector.FindStart(block.At(0), block.At(41)), Found(true, block.At(9)));
  EXPECT_EQ(selector.FindStart(block.At(18), block.At(41)), Found(true, block.At(25)));
  EXPECT_EQ(selector.FindFinish(block.At(9), block.At(41)), Found(true, block.At(9)));
  EXPECT_EQ(selector.FindFinish(block.At(18), block.At(41)), Found(true, block.At(25)));
  EXPECT_EQ(selector.FindFinish(block.At(34), block.At(41)), Found(true, block.At(41)));
}

TEST(RangeSelector, TwoPredicatesServeOneEach) {
  ExactBytes const block(FiveDescriptors());
  RangePredicate const isInterface = IsOfType(4);
  RangePredicate isEndpoint = IsOfType(5);
  CRangeSelector const selector(isInterface, isEndpoint);
  EXPECT_EQ(selector.FindStart(block.At(0), block.At(41)), Found(true, block.At(9)));
  EXPECT_EQ(selector.FindFinish(block.At(0), block.At(41)), Found(true, block.At(18)));
}

TEST(RangeSelector, OnlyTheSecondPredicateIsNotConst) {
  static_assert(std::is_constructible_v<CRangeSelector, RangePredicate const&, RangePredicate&>);
  static_assert(std::is_constructible_v<CRangeSelector, RangePredicate&, RangePredicate&>);
  static_assert(
      !std::is_constructible_v<CRangeSelector, RangePredicate const&, RangePredicate const&>);
  static_assert(!std::is_constructible_v<CRangeSelector, RangePredicate const&, RangePredicate>);
  static_assert(std::is_constructible_v<CRangeSelector, RangePredicate const&>);
  static_assert(std::is_constructible_v<CRangeSelector, RangeFinder const&, RangeFinder const&>);
  static_assert(!std::is_default_constructible_v<CRangeSelector>);
  // A named predicate that is not const fits the const parameter too.
  ExactBytes const block(FiveDescriptors());
  RangePredicate start = IsOfType(5);
  RangePredicate finish = IsOfType(4);
  EXPECT_EQ(CRangeSelector(start, finish).FindStart(block.At(0), block.At(41)),
            Found(true, block.At(18)));
}

TEST(RangeSelector, PredicateSeesEveryDescriptorUpToTheMatch) {
  ExactBytes const block(FiveDescriptors());
  std::vector<Iterator> seen;
  RangePredicate const predicate = [&seen](Iterator const& it) {
    seen.push_back(it);
    return it->bDescriptorType == 5;
  };
  CRangeSelector const selector(predicate);
  EXPECT_EQ(selector.FindStart(block.At(0), block.At(41)), Found(true, block.At(18)));
  EXPECT_THAT(seen, ElementsAre(block.At(0), block.At(9), block.At(18)));
}

TEST(RangeSelector, PredicateFinderSaysTrueWithLastWhenThereIsNone) {
  ExactBytes const block(FiveDescriptors());
  int calls = 0;
  RangePredicate const never = [&calls](Iterator const&) {
    ++calls;
    return false;
  };
  CRangeSelector const selector(never);
  EXPECT_EQ(selector.FindStart(block.At(0), block.At(25)), Found(true, block.At(25)));
  EXPECT_EQ(calls, 3);
  EXPECT_EQ(selector.FindStart(block.At(25), block.At(25)), Found(true, block.At(25)));
  EXPECT_EQ(selector.FindStart(Iterator(), Iterator()), Found(true, Iterator()));
  EXPECT_EQ(calls, 3);
}

TEST(RangeSelector, PredicateFinderRaisesOnAZeroLength) {
  ExactBytes const block({0x02, 0x04, 0x00, 0x05, 0x02, 0x06});
  RangePredicate const isOfType5 = IsOfType(5);
  RangePredicate isOfType6 = IsOfType(6);
  CRangeSelector const selector(isOfType5, isOfType6);
  EXPECT_EQ(selector.FindStart(block.At(0), block.At(6)), Found(true, block.At(2)));
  EXPECT_RUN_TIME_EXCEPTION(selector.FindFinish(block.At(0), block.At(6)), kZeroLength,
                            kInternalError);
}

TEST(RangeSelector, RefersToTheCallersPredicates) {
  ExactBytes const block(FiveDescriptors());
  RangePredicate start = IsOfType(4);
  RangePredicate finish = IsOfType(5);
  CRangeSelector const selector(start, finish);
  auto const copy = std::make_unique<CRangeSelector const>(selector);
  RangeFinder const finder = selector.FindStartFunc();
  start = IsOfType(5);
  finish = IsOfType(2);
  EXPECT_EQ(selector.FindStart(block.At(0), block.At(41)), Found(true, block.At(18)));
  EXPECT_EQ(selector.FindFinish(block.At(0), block.At(41)), Found(true, block.At(0)));
  EXPECT_EQ(copy->FindStart(block.At(0), block.At(41)), Found(true, block.At(18)));
  EXPECT_EQ(finder(block.At(0), block.At(41)), Found(true, block.At(18)));

  RangePredicate both = IsOfType(4);
  CRangeSelector const single(both);
  both = IsOfType(2);
  EXPECT_EQ(single.FindStart(block.At(0), block.At(41)), Found(true, block.At(0)));
  EXPECT_EQ(single.FindFinish(block.At(9), block.At(41)), Found(true, block.At(41)));
}

TEST(RangeSelector, EmptyFinderRaisesWhenItIsAsked) {
  ExactBytes const block(FiveDescriptors());
  CRangeSelector const noStart(RangeFinder(), RangeFinder(DescriptorType(4)));
  EXPECT_THROW(noStart.FindStart(block.At(0), block.At(41)), std::bad_function_call);
  EXPECT_EQ(noStart.FindFinish(block.At(0), block.At(41)).second, block.At(9));
  CRangeSelector const noFinish(RangeFinder(DescriptorType(4)), RangeFinder());
  EXPECT_EQ(noFinish.FindStart(block.At(0), block.At(41)).second, block.At(9));
  EXPECT_THROW(noFinish.FindFinish(block.At(0), block.At(41)), std::bad_function_call);
  EXPECT_THROW(noFinish.FindFinish(block.At(41), block.At(41)), std::bad_function_call);
}

TEST(RangeSelector, EmptyPredicateRaisesWhenItIsAsked) {
  ExactBytes const block(FiveDescriptors());
  RangePredicate const empty;
  CRangeSelector const selector(empty);
  EXPECT_THROW(selector.FindStart(block.At(0), block.At(41)), std::bad_function_call);
  EXPECT_THROW(selector.FindFinish(block.At(0), block.At(41)), std::bad_function_call);
  EXPECT_EQ(selector.FindStart(block.At(41), block.At(41)), Found(true, block.At(41)));
}

TEST(RangeSelector, PassesOnWhatAFinderRaises) {
  struct Failure {};
  CRangeSelector const selector(RangeFinder([](Iterator, Iterator) -> Found { throw Failure(); }),
                                RangeFinder([](Iterator, Iterator) -> Found { throw 5; }));
  EXPECT_THROW(selector.FindStart({}, {}), Failure);
  EXPECT_THROW(selector.FindFinish({}, {}), int);
}

// A finder that says by the number of its owners how many copies of it are alive.
RangeFinder TokenHolder(std::shared_ptr<int> const& token) {
  return [token](Iterator first, Iterator) { return Found(true, first); };
}

TEST(RangeSelector, OwnsItsFindersAndCopiesShareThem) {
  auto const token = std::make_shared<int>(0);
  RangeFinder const finder = TokenHolder(token);
  long const before = token.use_count();
  {
    CRangeSelector const selector(finder, finder);
    EXPECT_EQ(token.use_count(), before + 2);
    {
      std::vector<CRangeSelector> const copies(3, selector);
      std::vector<CRangeSelector> const copiesOfCopies(copies.begin(), copies.end());
      EXPECT_EQ(token.use_count(), before + 2);
      EXPECT_EQ(&copiesOfCopies[2].FindStartFunc(), &selector.FindStartFunc());
      EXPECT_EQ(&copiesOfCopies[2].FindFinishFunc(), &selector.FindFinishFunc());
    }
    EXPECT_EQ(token.use_count(), before + 2);
  }
  EXPECT_EQ(token.use_count(), before);
}

TEST(RangeSelector, CopyOutlivesItsSource) {
  ExactBytes const block(FiveDescriptors());
  auto const token = std::make_shared<int>(0);
  RangeFinder const finder = TokenHolder(token);
  long const before = token.use_count();
  auto source = std::make_unique<CRangeSelector>(finder, finder);
  auto copy = std::make_unique<CRangeSelector>(*source);
  source.reset();
  EXPECT_EQ(token.use_count(), before + 2);
  EXPECT_EQ(copy->FindStart(block.At(9), block.At(41)), Found(true, block.At(9)));
  EXPECT_EQ(copy->FindFinish(block.At(18), block.At(41)), Found(true, block.At(18)));
  copy.reset();
  EXPECT_EQ(token.use_count(), before);
}

TEST(RangeSelector, AssignmentReleasesTheFindersOfTheTarget) {
  ExactBytes const block(FiveDescriptors());
  auto const oldToken = std::make_shared<int>(0);
  auto const newToken = std::make_shared<int>(0);
  {
    CRangeSelector target(TokenHolder(oldToken), TokenHolder(oldToken));
    EXPECT_EQ(oldToken.use_count(), 3);
    {
      CRangeSelector const source(RangeFinder(DescriptorType(4)), TokenHolder(newToken));
      EXPECT_EQ(newToken.use_count(), 2);
      target = source;
      EXPECT_EQ(oldToken.use_count(), 1);
      EXPECT_EQ(newToken.use_count(), 2);
    }
    EXPECT_EQ(newToken.use_count(), 2);
    EXPECT_EQ(target.FindStart(block.At(0), block.At(41)), Found(true, block.At(9)));
  }
  EXPECT_EQ(newToken.use_count(), 1);
}

TEST(RangeSelector, AssignmentOfSelfAndOfACopyKeepsTheFinders) {
  ExactBytes const block(FiveDescriptors());
  auto const token = std::make_shared<int>(0);
  {
    CRangeSelector selector(TokenHolder(token), TokenHolder(token));
    CRangeSelector const& self = selector;
    selector = self;
    EXPECT_EQ(token.use_count(), 3);
    CRangeSelector const copy(selector);
    selector = copy;
    EXPECT_EQ(token.use_count(), 3);
    EXPECT_EQ(selector.FindStart(block.At(9), block.At(41)), Found(true, block.At(9)));
  }
  EXPECT_EQ(token.use_count(), 1);
}

TEST(RangeSelector, CopiesLiveInAVector) {
  auto const token = std::make_shared<int>(0);
  {
    std::vector<CRangeSelector> selectors;
    selectors.reserve(10);
    for (int i = 0; i < 10; ++i) {
      selectors.emplace_back(TokenHolder(token), TokenHolder(token));
    }
    EXPECT_EQ(token.use_count(), 1 + 20);
    selectors.erase(selectors.begin() + 2, selectors.begin() + 5);
    EXPECT_EQ(token.use_count(), 1 + 14);
  }
  EXPECT_EQ(token.use_count(), 1);
}

}  // namespace
}  // namespace usb_support
