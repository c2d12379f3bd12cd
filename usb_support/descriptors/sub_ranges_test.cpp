// The operations of CDescriptorRange that cut, list and count sub-ranges.
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <memory>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <tests/support/allocation_counter.h>
#include <tests/support/exact_bytes.h>
#include <tests/support/suite_test.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/descriptor_type_finder.h>

namespace usb_support {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Joined;
using testing_support::MakeDescriptor;
using testing_support::Print;

constexpr auto kInternalError = static_cast<TEST_STATUS>(0x40000000);
constexpr char const* kOutOfRange = "Invalid Descriptor Range Iterator: out of range.";
constexpr char const* kZeroLength = "Invalid descriptor:  bLength must be greater than 0.";

using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;
using RangeVector = std::unique_ptr<std::vector<CDescriptorRange>,
                                    std::function<void(std::vector<CDescriptorRange>*)>>;

// Configuration, interface, endpoint, endpoint, interface, endpoint:
// offsets 0, 9, 18, 25, 32, 41, end 48.
Bytes Configuration() {
  return Joined({MakeDescriptor(9, 2), MakeDescriptor(9, 4), MakeDescriptor(7, 5),
                 MakeDescriptor(7, 5), MakeDescriptor(9, 4), MakeDescriptor(7, 5)});
}

// The same behind which a descriptor is cut after 4 of 9 bytes: valid until 48, end 52.
Bytes ConfigurationWithTail() {
  return Joined({Configuration(), {0x09, 0x04, 0x02, 0x00}});
}

RangePredicate IsOfType(unsigned char type) {
  return [type](Iterator const& it) { return it->bDescriptorType == type; };
}

// A finder that always gives the same answer.
RangeFinder Answering(bool found, Iterator position) {
  return [found, position](Iterator, Iterator) { return Found(found, position); };
}

class SubRanges : public testing_support::SuiteTest {
 protected:
  // The offset and the length of each range of a list, in the block that was searched.
  using Pieces = std::vector<std::pair<std::ptrdiff_t, unsigned>>;

  static std::pair<std::ptrdiff_t, unsigned> PieceOf(ExactBytes const& block,
                                                     CDescriptorRange const& range) {
    EXPECT_FALSE(range.IsEmpty());
    return {range.Bytes() - block.data(), range.Length()};
  }

  static Pieces PiecesOf(ExactBytes const& block, RangeVector const& ranges) {
    Pieces pieces;
    for (CDescriptorRange const& range : *ranges) {
      pieces.push_back(PieceOf(block, range));
    }
    return pieces;
  }

  // The low 32 bits of an address in 16 places.
  static std::string Printed(void const* address) {
    std::array<char, 17> digits{};
    std::snprintf(digits.data(), digits.size(), "00000000%08X",
                  static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(address)));
    return digits.data();
  }

  static standalone::RecordedCall NotValid(void const* validUntil, void const* end) {
    return Print(0, "Descriptor Range is not valid.\n  End of last valid descriptor:  0x" +
                        Printed(validUntil) + ".\n  End of Descriptor Range 0x" + Printed(end) +
                        ".\n");
  }

  void ExpectNothingLogged() { EXPECT_THAT(TakeCalls(), IsEmpty()); }
};

TEST_F(SubRanges, ResultsHaveTheSuitesTypes) {
  using Range = CDescriptorRange const&;
  static_assert(std::is_same_v<decltype(std::declval<Range>().GetAll()), RangeVector>);
  static_assert(std::is_same_v<decltype(std::declval<Range>().GetAll(4)), RangeVector>);
  static_assert(std::is_same_v<decltype(std::declval<Range>().GetSubRanges(
                                   std::declval<CRangeSelector const&>())),
                               RangeVector>);
  static_assert(std::is_same_v<decltype(std::declval<Range>().Count()), unsigned short>);
  static_assert(std::is_same_v<decltype(std::declval<Range>().Count(4)), unsigned short>);
  static_assert(
      std::is_same_v<decltype(std::declval<Range>().Count(std::declval<RangePredicate>())),
                     unsigned short>);
  static_assert(
      std::is_same_v<decltype(std::declval<Range>().Count(std::declval<CRangeSelector>())),
                     unsigned short>);
  static_assert(std::is_same_v<decltype(std::declval<Range>().Count(std::declval<RangeFinder>(),
                                                                    std::declval<RangeFinder>())),
                               unsigned short>);
  EXPECT_NE(CDescriptorRange().GetAll(), nullptr);
}

// One sub-range.

TEST_F(SubRanges, SubRangeBetweenTwoIteratorsIsTheConstructors) {
  ExactBytes const block(Configuration());
  EXPECT_EQ(PieceOf(block, CDescriptorRange::SubRange(block.At(9), block.At(32))),
            std::pair(std::ptrdiff_t{9}, 23u));
  EXPECT_TRUE(CDescriptorRange::SubRange(block.At(9), block.At(9)).IsEmpty());
  EXPECT_TRUE(CDescriptorRange::SubRange(Iterator(), block.At(9)).IsEmpty());
  EXPECT_EQ(PieceOf(block, CDescriptorRange::SubRange(block.At(9), block.At(0))),
            std::pair(std::ptrdiff_t{9}, 65527u));
}

TEST_F(SubRanges, SubRangeRunsFromStartToFinish) {
  ExactBytes const block(Configuration());
  CDescriptorRange const range = block.Range();
  RangeFinder const start = DescriptorType(4);
  RangeFinder const finish = DescriptorType(4);
  CRangeSelector const selector(start, finish);
  auto const first = std::pair(std::ptrdiff_t{9}, 23u);
  EXPECT_EQ(PieceOf(block, range.SubRange(start, finish)), first);
  EXPECT_EQ(PieceOf(block, range.SubRange(selector)), first);
  EXPECT_EQ(PieceOf(block, CDescriptorRange::SubRange(range.begin(), range.end(), start, finish)),
            first);
  EXPECT_EQ(PieceOf(block, CDescriptorRange::SubRange(range.begin(), range.end(), selector)),
            first);
  ExpectNothingLogged();
}

TEST_F(SubRanges, SubRangeSearchesBetweenItsIterators) {
  ExactBytes const block(Configuration());
  RangeFinder const start = DescriptorType(4);
  RangeFinder const finish = DescriptorType(4);
  CRangeSelector const selector(start, finish);
  EXPECT_EQ(PieceOf(block, CDescriptorRange::SubRange(block.At(18), block.At(48), start, finish)),
            std::pair(std::ptrdiff_t{32}, 16u));
  EXPECT_EQ(PieceOf(block, CDescriptorRange::SubRange(block.At(18), block.At(48), selector)),
            std::pair(std::ptrdiff_t{32}, 16u));
  EXPECT_EQ(PieceOf(block, CDescriptorRange::SubRange(block.At(0), block.At(25), start, finish)),
            std::pair(std::ptrdiff_t{9}, 16u));
  EXPECT_TRUE(CDescriptorRange::SubRange(block.At(18), block.At(32), start, finish).IsEmpty());
}

TEST_F(SubRanges, SubRangeWithPredicates) {
  ExactBytes const block(Configuration());
  RangePredicate const isInterface = IsOfType(4);
  RangePredicate isEndpoint = IsOfType(5);
  EXPECT_EQ(PieceOf(block, block.Range().SubRange(CRangeSelector(isInterface))),
            std::pair(std::ptrdiff_t{9}, 23u));
  EXPECT_EQ(PieceOf(block, block.Range().SubRange(CRangeSelector(isInterface, isEndpoint))),
            std::pair(std::ptrdiff_t{9}, 9u));
}

TEST_F(SubRanges, SubRangeAsksTheFinishFromTheDescriptorBehindTheStart) {
  ExactBytes const block(Configuration());
  std::vector<std::pair<Iterator, Iterator>> starts;
  std::vector<std::pair<Iterator, Iterator>> finishes;
  RangeFinder const start = [&](Iterator first, Iterator last) {
    starts.emplace_back(first, last);
    return Found(true, block.At(9));
  };
  RangeFinder const finish = [&](Iterator first, Iterator last) {
    finishes.emplace_back(first, last);
    return Found(true, block.At(32));
  };
  EXPECT_EQ(PieceOf(block, block.Range().SubRange(start, finish)),
            std::pair(std::ptrdiff_t{9}, 23u));
  EXPECT_THAT(starts, ElementsAre(std::pair(block.At(0), block.At(48))));
  EXPECT_THAT(finishes, ElementsAre(std::pair(block.At(18), block.At(48))));
}

TEST_F(SubRanges, SubRangeIsEmptyWhenTheStartIsNotFound) {
  ExactBytes const block(Configuration());
  bool finishAsked = false;
  RangeFinder const finish = [&](Iterator first, Iterator) {
    finishAsked = true;
    return Found(true, first);
  };
  EXPECT_TRUE(block.Range().SubRange(Answering(false, block.At(9)), finish).IsEmpty());
  EXPECT_TRUE(block.Range().SubRange(Answering(true, block.At(48)), finish).IsEmpty());
  EXPECT_TRUE(block.Range().SubRange(Answering(false, block.At(48)), finish).IsEmpty());
  EXPECT_TRUE(block.Range().SubRange(RangeFinder(DescriptorType(9)), finish).IsEmpty());
  EXPECT_FALSE(finishAsked);
}

TEST_F(SubRanges, SubRangeIsEmptyWhenTheFinishIsNotFound) {
  ExactBytes const block(Configuration());
  CDescriptorRange const range = block.Range();
  EXPECT_TRUE(
      range.SubRange(Answering(true, block.At(9)), Answering(false, block.At(32))).IsEmpty());
}

TEST_F(SubRanges, SubRangeIsEmptyWhenTheFinishIsTheStart) {
  ExactBytes const block(Configuration());
  EXPECT_TRUE(
      block.Range().SubRange(Answering(true, block.At(9)), Answering(true, block.At(9))).IsEmpty());
}

TEST_F(SubRanges, FinishBeforeTheStartGivesTheRemainderOfTheNegativeLength) {
  ExactBytes const block(Configuration());
  EXPECT_EQ(PieceOf(block, block.Range().SubRange(Answering(true, block.At(9)),
                                                  Answering(true, block.At(0)))),
            std::pair(std::ptrdiff_t{9}, 65527u));
}

TEST_F(SubRanges, SubRangeBetweenDefaultIteratorsIsEmpty) {
  RangeFinder const any = CDescriptorRange::AlwaysTrue;
  EXPECT_TRUE(CDescriptorRange::SubRange(Iterator(), Iterator(), any, any).IsEmpty());
}

TEST_F(SubRanges, SubRangeRaisesWhenThereIsNoStepBehindTheStart) {
  ExactBytes const block(Configuration());
  RangeFinder const atTheEnd = Answering(true, block.At(48));
  EXPECT_RUN_TIME_EXCEPTION(
      CDescriptorRange::SubRange(block.At(0), block.At(41), atTheEnd, CDescriptorRange::AlwaysTrue),
      kOutOfRange, kInternalError);
}

TEST_F(SubRanges, SubRangeOfAnEmptyRangeIsEmpty) {
  RangePredicate const any = [](Iterator const&) { return true; };
  EXPECT_TRUE(CDescriptorRange().SubRange(CRangeSelector(any)).IsEmpty());
  EXPECT_TRUE(CDescriptorRange()
                  .SubRange(CDescriptorRange::AlwaysTrue, CDescriptorRange::AlwaysTrue)
                  .IsEmpty());
}

TEST_F(SubRanges, MemberSubRangeSearchesBeyondTheValidPart) {
  ExactBytes const block(ConfigurationWithTail());
  RangePredicate const isInterface = IsOfType(4);
  CRangeSelector const selector(isInterface);
  // The tail claims 9 bytes of which 4 are there, so it ends the second interface.
  EXPECT_EQ(PieceOf(block, CDescriptorRange::SubRange(block.At(18), block.Range().end(), selector)),
            std::pair(std::ptrdiff_t{32}, 16u));
  EXPECT_EQ(PieceOf(block, block.Range().SubRange(Answering(true, block.At(48)),
                                                  CDescriptorRange::AlwaysTrue)),
            std::pair(std::ptrdiff_t{48}, 4u));
  ExpectNothingLogged();
}

TEST_F(SubRanges, MemberSubRangeRaisesOnAZeroLength) {
  ExactBytes const block(Joined({MakeDescriptor(9, 2), {0x00, 0x04}, MakeDescriptor(7, 5)}));
  CDescriptorRange const range = block.Range();
  RangeFinder const isEndpoint = DescriptorType(5);
  RangeFinder const isInterface = DescriptorType(4);
  RangeFinder const isConfiguration = DescriptorType(2);
  EXPECT_RUN_TIME_EXCEPTION(range.SubRange(isEndpoint, isEndpoint), kZeroLength, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(range.SubRange(CRangeSelector(isEndpoint, isEndpoint)), kZeroLength,
                            kInternalError);
  // In the search for the finish, and in the step behind the start.
  EXPECT_RUN_TIME_EXCEPTION(range.SubRange(isConfiguration, isEndpoint), kZeroLength,
                            kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(range.SubRange(isInterface, isInterface), kZeroLength, kInternalError);
  EXPECT_EQ(PieceOf(block, range.SubRange(isConfiguration, isInterface)),
            std::pair(std::ptrdiff_t{0}, 9u));
  ExpectNothingLogged();
}

TEST_F(SubRanges, SubRangeRaisesOnAnEmptyFinder) {
  ExactBytes const block(Configuration());
  CDescriptorRange const range = block.Range();
  RangeFinder const any = CDescriptorRange::AlwaysTrue;
  EXPECT_THROW(range.SubRange(RangeFinder(), any), std::bad_function_call);
  EXPECT_THROW(range.SubRange(any, RangeFinder()), std::bad_function_call);
  EXPECT_THROW(CDescriptorRange::SubRange(range.begin(), range.end(), RangeFinder(), any),
               std::bad_function_call);
  EXPECT_THROW(range.SubRange(CRangeSelector(RangeFinder(), any)), std::bad_function_call);
}

TEST_F(SubRanges, SubRangeLeavesTheCallersFindersAsTheyAre) {
  ExactBytes const block(Configuration());
  RangeFinder const once = [calls = 0](Iterator first, Iterator) mutable {
    return Found(calls++ == 0, first);
  };
  EXPECT_FALSE(block.Range().SubRange(once, once).IsEmpty());
  EXPECT_FALSE(block.Range().SubRange(once, once).IsEmpty());
}

TEST_F(SubRanges, SubRangeAsksTheSelectorsOwnFinders) {
  ExactBytes const block(Configuration());
  RangeFinder const once = [calls = 0](Iterator first, Iterator) mutable {
    return Found(calls++ == 0, first);
  };
  CRangeSelector const selector(once, once);
  EXPECT_FALSE(block.Range().SubRange(selector).IsEmpty());
  EXPECT_TRUE(block.Range().SubRange(selector).IsEmpty());
}

// All sub-ranges.

TEST_F(SubRanges, OneSubRangeForEachInterface) {
  ExactBytes const block(Configuration());
  RangePredicate const isInterface = IsOfType(4);
  CRangeSelector const selector(isInterface);
  auto const ranges = block.Range().GetSubRanges(selector);
  EXPECT_EQ(PiecesOf(block, ranges), (Pieces{{9, 23}, {32, 16}}));
  EXPECT_EQ(block.Range().Count(isInterface), 2);
  EXPECT_EQ(block.Range().Count(selector), 2);
  ExpectNothingLogged();
}

TEST_F(SubRanges, TwoFinders) {
  ExactBytes const block(Configuration());
  RangeFinder const start = DescriptorType(4);
  RangeFinder const finish = DescriptorType(5);
  EXPECT_EQ(PiecesOf(block, block.Range().GetSubRanges(start, finish)), (Pieces{{9, 9}, {32, 9}}));
  EXPECT_EQ(PiecesOf(block, block.Range().GetSubRanges(CRangeSelector(start, finish))),
            (Pieces{{9, 9}, {32, 9}}));
  EXPECT_EQ(block.Range().Count(start, finish), 2);
}

TEST_F(SubRanges, TwoPredicates) {
  ExactBytes const block(Configuration());
  RangePredicate const isEndpoint = IsOfType(5);
  RangePredicate isInterface = IsOfType(4);
  CRangeSelector const selector(isEndpoint, isInterface);
  EXPECT_EQ(PiecesOf(block, block.Range().GetSubRanges(selector)), (Pieces{{18, 14}, {41, 7}}));
  EXPECT_EQ(block.Range().Count(selector), 2);
}

TEST_F(SubRanges, AllOfOneType) {
  ExactBytes const block(Configuration());
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(PiecesOf(block, range.GetAll(2)), (Pieces{{0, 9}}));
  EXPECT_EQ(PiecesOf(block, range.GetAll(4)), (Pieces{{9, 9}, {32, 9}}));
  EXPECT_EQ(PiecesOf(block, range.GetAll(5)), (Pieces{{18, 7}, {25, 7}, {41, 7}}));
  for (unsigned type = 0; type < 256; ++type) {
    unsigned const expected = type == 2 ? 1 : type == 4 ? 2 : type == 5 ? 3 : 0;
    EXPECT_EQ(range.GetAll(static_cast<unsigned char>(type))->size(), expected) << type;
    EXPECT_EQ(range.Count(static_cast<unsigned char>(type)), expected) << type;
  }
  ExpectNothingLogged();
}

TEST_F(SubRanges, AllDescriptors) {
  ExactBytes const block(Configuration());
  EXPECT_EQ(PiecesOf(block, block.Range().GetAll()),
            (Pieces{{0, 9}, {9, 9}, {18, 7}, {25, 7}, {32, 9}, {41, 7}}));
  EXPECT_EQ(block.Range().Count(), 6);
  ExpectNothingLogged();
}

TEST_F(SubRanges, ListsHaveNoMoreRoomThanOneRangeForEachByte) {
  ExactBytes const block(Configuration());
  EXPECT_LE(block.Range().GetAll()->capacity(), block.size());
  EXPECT_LE(block.Range().GetAll(4)->capacity(), block.size());
}

TEST_F(SubRanges, RangesPointIntoTheSearchedBytes) {
  ExactBytes const block(Configuration());
  CDescriptorRange const range = block.Range();
  auto const ranges = range.GetAll();
  for (CDescriptorRange const& part : *ranges) {
    EXPECT_TRUE(part.SubRangeOf(range));
  }
  block.data()[11] = 0x77;
  EXPECT_EQ((*ranges)[1].Bytes()[2], 0x77);
}

TEST_F(SubRanges, EmptyRangeHasNoneAndLogsNothing) {
  CDescriptorRange const range;
  RangePredicate const any = [](Iterator const&) { return true; };
  EXPECT_THAT(*range.GetAll(), IsEmpty());
  EXPECT_THAT(*range.GetAll(0), IsEmpty());
  EXPECT_THAT(*range.GetSubRanges(CRangeSelector(any)), IsEmpty());
  EXPECT_EQ(range.Count(), 0);
  EXPECT_EQ(range.Count(0), 0);
  EXPECT_EQ(range.Count(any), 0);
  ExpectNothingLogged();
}

TEST_F(SubRanges, FindersAreAskedUpToTheEndOfTheValidPart) {
  ExactBytes const block(ConfigurationWithTail());
  CDescriptorRange const range = block.Range();
  ASSERT_EQ(range.ValidUntil(), block.At(48));
  std::vector<std::pair<Iterator, Iterator>> starts;
  std::vector<std::pair<Iterator, Iterator>> finishes;
  RangeFinder const start = [&](Iterator first, Iterator last) {
    starts.emplace_back(first, last);
    return DescriptorType(4)(first, last);
  };
  RangeFinder const finish = [&](Iterator first, Iterator last) {
    finishes.emplace_back(first, last);
    return DescriptorType(4)(first, last);
  };
  EXPECT_EQ(PiecesOf(block, range.GetSubRanges(start, finish)), (Pieces{{9, 23}, {32, 16}}));
  EXPECT_THAT(starts, ElementsAre(std::pair(block.At(0), block.At(48)),
                                  std::pair(block.At(32), block.At(48))));
  EXPECT_THAT(finishes, ElementsAre(std::pair(block.At(18), block.At(48)),
                                    std::pair(block.At(41), block.At(48))));
}

TEST_F(SubRanges, StartIsAskedAgainUntilItFindsNoMore) {
  ExactBytes const block(Configuration());
  std::vector<Iterator> starts;
  RangeFinder const start = [&](Iterator first, Iterator last) {
    starts.push_back(first);
    return DescriptorType(4)(first, last);
  };
  RangeFinder const finish = CDescriptorRange::AlwaysTrue;
  EXPECT_EQ(PiecesOf(block, block.Range().GetSubRanges(start, finish)), (Pieces{{9, 9}, {32, 9}}));
  // Behind each sub-range; the last search finds nothing.
  EXPECT_THAT(starts, ElementsAre(block.At(0), block.At(18), block.At(41)));
}

TEST_F(SubRanges, WalkGoesOnWithTheDescriptorAtOrBehindTheSubRangesEnd) {
  ExactBytes const block(Configuration());
  std::vector<Iterator> starts;
  RangeFinder const start = [&](Iterator first, Iterator) {
    starts.push_back(first);
    return Found(true, first);
  };
  // Ends one byte behind its first descriptor, in the middle of the next.
  RangeFinder const finish = [](Iterator first, Iterator last) {
    return Found(true, first == last ? last : Iterator(&first, first.Remaining()));
  };
  RangeFinder const middle = [&block](Iterator first, Iterator last) {
    return Found(
        true, first == last ? last : block.At(static_cast<std::size_t>(first - block.At(0)) + 1));
  };
  EXPECT_EQ(PiecesOf(block, block.Range().GetSubRanges(start, finish)),
            (Pieces{{0, 9}, {9, 9}, {18, 7}, {25, 7}, {32, 9}, {41, 7}}));
  starts.clear();
  EXPECT_EQ(PiecesOf(block, block.Range().GetSubRanges(start, middle)),
            (Pieces{{0, 10}, {18, 8}, {32, 10}}));
  EXPECT_THAT(starts, ElementsAre(block.At(0), block.At(18), block.At(32)));
}

TEST_F(SubRanges, EmptySubRangeEndsTheWholeSearch) {
  ExactBytes const block(Configuration());
  CDescriptorRange const range = block.Range();
  // Each finder refuses only the second of the six descriptors, in each way in which it can.
  auto const refusing = [&block](std::size_t offset, Found refusal) -> RangeFinder {
    return [&block, offset, refusal](Iterator first, Iterator) {
      return first == block.At(offset) ? refusal : Found(true, first);
    };
  };
  RangeFinder const any = CDescriptorRange::AlwaysTrue;
  for (Found const& refusal :
       {Found(false, block.At(9)), Found(true, block.At(48)), Found(false, block.At(48))}) {
    EXPECT_EQ(PiecesOf(block, range.GetSubRanges(refusing(9, refusal), any)), (Pieces{{0, 9}}));
    EXPECT_EQ(range.Count(refusing(9, refusal), any), 1);
    EXPECT_EQ(range.Count(refusing(0, refusal), any), 0);
  }
  // The finish is asked from the descriptor behind the start; at the start itself it cuts nothing.
  for (Found const& refusal : {Found(false, block.At(18)), Found(true, block.At(9))}) {
    EXPECT_EQ(PiecesOf(block, range.GetSubRanges(any, refusing(18, refusal))), (Pieces{{0, 9}}));
    EXPECT_EQ(range.Count(any, refusing(18, refusal)), 1);
  }
  EXPECT_EQ(range.Count(any, refusing(9, Found(false, block.At(9)))), 0);
}

TEST_F(SubRanges, EachPassStartsWithFreshFinders) {
  ExactBytes const block(Configuration());
  CDescriptorRange const range = block.Range();
  // Each answers the first call of a copy only.
  RangeFinder const once = [calls = 0](Iterator first, Iterator) mutable {
    return Found(calls++ == 0, first);
  };
  RangeFinder const any = CDescriptorRange::AlwaysTrue;
  EXPECT_EQ(range.GetSubRanges(once, any)->size(), 6u);
  EXPECT_EQ(range.GetSubRanges(any, once)->size(), 6u);
  EXPECT_EQ(range.Count(once, once), 6);
  CRangeSelector const selector(once, once);
  EXPECT_EQ(range.GetSubRanges(selector)->size(), 6u);
  EXPECT_EQ(range.Count(selector), 6);
  // The selector's own finders were never called.
  EXPECT_TRUE(selector.FindStart(block.At(0), block.At(48)).first);
  EXPECT_TRUE(selector.FindFinish(block.At(0), block.At(48)).first);
  EXPECT_FALSE(selector.FindStart(block.At(0), block.At(48)).first);
  // Now they are used up, and a pass starts from that state.
  EXPECT_EQ(range.Count(selector), 0);
}

TEST_F(SubRanges, CopiesOfFindersAreReleased) {
  ExactBytes const block(Configuration());
  auto const token = std::make_shared<int>(0);
  RangeFinder const finder = [token](Iterator first, Iterator) { return Found(true, first); };
  long const before = token.use_count();
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(range.GetSubRanges(finder, finder)->size(), 6u);
  EXPECT_EQ(range.Count(finder, finder), 6);
  EXPECT_EQ(range.Count(CRangeSelector(finder, finder)), 6);
  EXPECT_FALSE(range.SubRange(finder, finder).IsEmpty());
  EXPECT_EQ(token.use_count(), before);

  RangeFinder const failing = [token](Iterator, Iterator) -> Found { throw 1; };
  EXPECT_THROW(range.GetSubRanges(finder, failing), int);
  EXPECT_THROW(range.Count(failing, finder), int);
  EXPECT_EQ(token.use_count(), before + 1);
}

TEST_F(SubRanges, CountTakesWhateverIsCallable) {
  ExactBytes const block(Configuration());
  EXPECT_EQ(block.Range().Count([](Iterator const& it) { return it->bLength == 7; }), 3);
  EXPECT_EQ(block.Range().Count(DescriptorType(4), DescriptorType(5)), 2);
  EXPECT_EQ(block.Range().Count(RangePredicate([](Iterator const&) { return false; })), 0);
}

TEST_F(SubRanges, PredicatesAreReadAtTheTimeOfTheSearch) {
  ExactBytes const block(Configuration());
  RangePredicate predicate = IsOfType(4);
  CRangeSelector const selector(predicate);
  EXPECT_EQ(block.Range().Count(selector), 2);
  predicate = IsOfType(5);
  EXPECT_EQ(block.Range().Count(selector), 3);
}

TEST_F(SubRanges, EmptyFindersAndPredicatesRaise) {
  ExactBytes const block(Configuration());
  CDescriptorRange const range = block.Range();
  RangeFinder const any = CDescriptorRange::AlwaysTrue;
  RangePredicate const none;
  EXPECT_THROW(range.GetSubRanges(RangeFinder(), any), std::bad_function_call);
  EXPECT_THROW(range.GetSubRanges(any, RangeFinder()), std::bad_function_call);
  EXPECT_THROW(range.GetSubRanges(CRangeSelector(none)), std::bad_function_call);
  EXPECT_THROW(range.Count(RangeFinder(), any), std::bad_function_call);
  EXPECT_THROW(range.Count(any, RangeFinder()), std::bad_function_call);
  EXPECT_THROW(range.Count(none), std::bad_function_call);
  EXPECT_THROW(range.Count(CRangeSelector(any, RangeFinder())), std::bad_function_call);
  // Nothing is asked over a range that holds nothing.
  EXPECT_EQ(CDescriptorRange().Count(none), 0);
  EXPECT_EQ(CDescriptorRange().Count(RangeFinder(), RangeFinder()), 0);
  ExpectNothingLogged();
}

TEST_F(SubRanges, FinishBeforeTheStartRunsTheWalkOffTheEnd) {
  ExactBytes const block(Configuration());
  RangeFinder const any = CDescriptorRange::AlwaysTrue;
  EXPECT_RUN_TIME_EXCEPTION(
      block.Range().GetSubRanges(Answering(true, block.At(9)), Answering(true, block.At(0))),
      kOutOfRange, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(
      block.Range().Count(Answering(true, block.At(9)), Answering(true, block.At(0))), kOutOfRange,
      kInternalError);
}

TEST_F(SubRanges, CountsTheLongestRun) {
  ExactBytes const block(Bytes(65535, 1));
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(range.Count(), 65535);
  EXPECT_EQ(range.GetAll()->size(), 65535u);
  // The last byte has no type.
  EXPECT_EQ(range.Count(1), 65534);
  EXPECT_EQ(range.GetAll(1)->size(), 65534u);
}

TEST_F(SubRanges, CountIsCutTo16Bits) {
  ExactBytes const block({0x02, 0x04, 0x02, 0x05});
  // Gives the first descriptor from the second on, so that the walk stays there, 65,538 times.
  unsigned calls = 0;
  RangeFinder const start = [&](Iterator, Iterator) {
    return Found(++calls <= 65538, block.At(0));
  };
  RangeFinder const finish = Answering(true, block.At(2));
  EXPECT_EQ(block.Range().Count(start, finish), 2);
  calls = 0;
  EXPECT_EQ(block.Range().GetSubRanges(start, finish)->size(), 65538u);
  calls = 0;
  EXPECT_EQ(block.Range().Count(CRangeSelector(start, finish)), 2);
}

// Ranges that are not valid.

TEST_F(SubRanges, EveryListAndEveryCountSaysOnceThatTheRangeIsNotValid) {
  ExactBytes const block(ConfigurationWithTail());
  CDescriptorRange const range = block.Range();
  standalone::RecordedCall const said = NotValid(block.data() + 48, block.data() + 52);
  RangePredicate const isInterface = IsOfType(4);
  RangeFinder const start = DescriptorType(4);
  RangeFinder const finish = DescriptorType(5);
  CRangeSelector const selector(isInterface);

  EXPECT_EQ(PiecesOf(block, range.GetAll()),
            (Pieces{{0, 9}, {9, 9}, {18, 7}, {25, 7}, {32, 9}, {41, 7}}));
  EXPECT_THAT(TakeCalls(), ElementsAre(said));
  EXPECT_EQ(PiecesOf(block, range.GetAll(4)), (Pieces{{9, 9}, {32, 9}}));
  EXPECT_THAT(TakeCalls(), ElementsAre(said));
  EXPECT_EQ(PiecesOf(block, range.GetSubRanges(selector)), (Pieces{{9, 23}, {32, 16}}));
  EXPECT_THAT(TakeCalls(), ElementsAre(said));
  EXPECT_EQ(PiecesOf(block, range.GetSubRanges(start, finish)), (Pieces{{9, 9}, {32, 9}}));
  EXPECT_THAT(TakeCalls(), ElementsAre(said));
  EXPECT_EQ(range.Count(), 6);
  EXPECT_THAT(TakeCalls(), ElementsAre(said));
  EXPECT_EQ(range.Count(4), 2);
  EXPECT_THAT(TakeCalls(), ElementsAre(said));
  EXPECT_EQ(range.Count(isInterface), 2);
  EXPECT_THAT(TakeCalls(), ElementsAre(said));
  EXPECT_EQ(range.Count(start, finish), 2);
  EXPECT_THAT(TakeCalls(), ElementsAre(said));
  EXPECT_EQ(range.Count(selector), 2);
  EXPECT_THAT(TakeCalls(), ElementsAre(said));
}

TEST_F(SubRanges, DiagnosticIsAPieceOfOutputOnChannel0) {
  ExactBytes const block({0x05, 0x04});
  EXPECT_EQ(block.Range().Count(), 0);
  auto const calls = TakeCalls();
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].operation, standalone::LogOperation::kDoWritePrintOnly);
  EXPECT_EQ(calls[0].channel, 0);
  EXPECT_EQ(calls[0].text, "Descriptor Range is not valid.\n  End of last valid descriptor:  0x" +
                               Printed(block.data()) + ".\n  End of Descriptor Range 0x" +
                               Printed(block.data() + 2) + ".\n");
}

TEST_F(SubRanges, DiagnosticRaisesTheStackDepthOnce) {
  ExactBytes const block({0x05, 0x04});
  EXPECT_EQ(block.Range().Count(), 0);
  auto const calls = Sink().Take();
  ASSERT_EQ(calls.size(), 1u);
  EXPECT_EQ(calls[0].stackDepth, 1u);
}

TEST_F(SubRanges, DiagnosticComesBeforeTheSearch) {
  ExactBytes const block(ConfigurationWithTail());
  std::size_t callsAtFirstSearch = 99;
  RangeFinder const start = [&](Iterator, Iterator) -> Found {
    callsAtFirstSearch = Sink().Calls().size();
    throw 1;
  };
  EXPECT_THROW(block.Range().GetSubRanges(start, start), int);
  EXPECT_EQ(callsAtFirstSearch, 1u);
  EXPECT_THAT(TakeCalls(), ElementsAre(NotValid(block.data() + 48, block.data() + 52)));
}

TEST_F(SubRanges, SearchesAndTestsSayNothing) {
  ExactBytes const block(ConfigurationWithTail());
  CDescriptorRange const range = block.Range();
  RangeFinder const start = DescriptorType(4);
  EXPECT_FALSE(range.Valid());
  EXPECT_EQ(range.ValidUntil(), block.At(48));
  EXPECT_EQ(range.FindFirst(5), block.At(18));
  EXPECT_FALSE(range.SubRange(start, start).IsEmpty());
  EXPECT_FALSE(range.SubRange(CRangeSelector(start, start)).IsEmpty());
  EXPECT_FALSE(CDescriptorRange::SubRange(range.begin(), range.end(), start, start).IsEmpty());
  ExpectNothingLogged();
}

TEST_F(SubRanges, ZeroLengthAtTheStartGivesNothing) {
  ExactBytes const block(Joined({{0x00, 0x04}, MakeDescriptor(7, 5)}));
  CDescriptorRange const range = block.Range();
  EXPECT_THAT(*range.GetAll(), IsEmpty());
  EXPECT_THAT(TakeCalls(), ElementsAre(NotValid(block.data(), block.data() + 9)));
  EXPECT_EQ(range.Count(), 0);
  EXPECT_EQ(range.Count(4), 0);
  EXPECT_EQ(range.Count(5), 0);
  EXPECT_THAT(TakeCalls(), Each(NotValid(block.data(), block.data() + 9)));
}

TEST_F(SubRanges, ZeroLengthInTheMiddleEndsTheSearch) {
  ExactBytes const block(Joined({MakeDescriptor(9, 4), {0x00, 0x04}, MakeDescriptor(7, 5)}));
  CDescriptorRange const range = block.Range();
  EXPECT_EQ(PiecesOf(block, range.GetAll()), (Pieces{{0, 9}}));
  EXPECT_EQ(PiecesOf(block, range.GetAll(4)), (Pieces{{0, 9}}));
  EXPECT_THAT(*range.GetAll(5), IsEmpty());
  RangePredicate const isInterface = IsOfType(4);
  EXPECT_EQ(PiecesOf(block, range.GetSubRanges(CRangeSelector(isInterface))), (Pieces{{0, 9}}));
  EXPECT_THAT(TakeCalls(), testing::AllOf(testing::SizeIs(4),
                                          Each(NotValid(block.data() + 9, block.data() + 18))));
}

TEST_F(SubRanges, OneByteTailEndsTheSearch) {
  ExactBytes const block(Joined({MakeDescriptor(9, 4), {0x02}}));
  EXPECT_EQ(PiecesOf(block, block.Range().GetAll()), (Pieces{{0, 9}}));
  EXPECT_THAT(TakeCalls(), ElementsAre(NotValid(block.data() + 9, block.data() + 10)));
}

// Memory.

TEST_F(SubRanges, ListsAreReleasedByTheirOwnDeleter) {
  ExactBytes const block(Configuration());
  auto ranges = block.Range().GetAll();
  auto const deleter = ranges.get_deleter();
  std::vector<CDescriptorRange>* const released = ranges.release();
  ASSERT_NE(released, nullptr);
  ASSERT_TRUE(deleter);
  EXPECT_EQ(released->size(), 6u);
  EXPECT_NO_THROW(deleter(nullptr));
  deleter(released);
}

TEST_F(SubRanges, ListsOutliveTheRangeAndMoveOn) {
  ExactBytes const block(Configuration());
  RangeVector ranges;
  {
    CDescriptorRange range = block.Range();
    ranges = range.GetAll(5);
    range.Reset();
  }
  RangeVector const moved = std::move(ranges);
  EXPECT_EQ(PiecesOf(block, moved), (Pieces{{18, 7}, {25, 7}, {41, 7}}));
}

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)
using testing_support::AllocationsOf;
using testing_support::SteadyAllocationsOf;

TEST_F(SubRanges, SteppingAndCountingAllocateNothing) {
  ExactBytes const block(Configuration());
  CDescriptorRange const range = block.Range();
  EXPECT_GT(AllocationsOf([&] { static_cast<void>(range.GetAll()); }), 0u);
  EXPECT_EQ(AllocationsOf([&] {
              for (Iterator it = range.begin(); it != range.end(); it++) {
                static_cast<void>(range.begin() + 3);
              }
              static_cast<void>(range[3]);
              static_cast<void>(range.Valid());
              static_cast<void>(range.FindFirst(5));
              static_cast<void>(range.Count());
              static_cast<void>(range.Count(5));
            }),
            0u);
}

TEST_F(SubRanges, CountingAnInvalidRangeAllocatesNothingOnceWarm) {
  ExactBytes const block(ConfigurationWithTail());
  CDescriptorRange const range = block.Range();
  standalone::RemoveAllLogSinks();
  EXPECT_EQ(SteadyAllocationsOf([&] {
              static_cast<void>(range.Count());
              static_cast<void>(range.Count(5));
            }),
            0u);
}
#endif

}  // namespace
}  // namespace usb_support
