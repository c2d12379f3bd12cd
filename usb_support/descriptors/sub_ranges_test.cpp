// The operations of CDescriptorRange that cut, list and count sub-ranges: how they call finders and
// what they log. Their results are compared with a model in tests/property.
#include <cstddef>
#include <functional>
#include <memory>
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

using testing::ElementsAre;
using testing::IsEmpty;
using testing_support::Bytes;
using testing_support::ExactBytes;
using testing_support::Hex;
using testing_support::InvalidRange;
using testing_support::IsOfType;
using testing_support::Joined;
using testing_support::kInternalError;
using testing_support::kOutOfRange;
using testing_support::kZeroLength;
using testing_support::MakeDescriptor;
using testing_support::Piece;

using Iterator = CDescriptorRangeIterator;
using Found = std::pair<bool, Iterator>;
using Asked = std::vector<std::pair<Iterator, Iterator>>;
using Pieces = std::vector<Piece>;
using RangeVector = CDescriptorRange::RangeVector;

// A finder that always gives the same answer.
RangeFinder Answering(bool found, Iterator position) {
  return [found, position](Iterator, Iterator) { return Found(found, position); };
}

// A finder that answers the first call of each copy only.
RangeFinder Once() {
  return [calls = 0](Iterator first, Iterator) mutable { return Found(calls++ == 0, first); };
}

RangeFinder const kAny = CDescriptorRange::AlwaysTrue;

class SubRanges : public testing_support::SuiteTest {
 protected:
  Piece PieceOf(CDescriptorRange const& range) const {
    return range.IsEmpty()
               ? Piece()
               : Piece(static_cast<std::size_t>(range.Bytes() - block_.data()), range.Length());
  }
  Pieces PiecesOf(RangeVector const& ranges) const {
    return testing_support::PiecesOf(range_, ranges);
  }

  // Configuration, interface, endpoint, endpoint, interface, endpoint at 0, 9, 18, 25, 32, 41;
  // end 48.
  Bytes const run_ = Joined({MakeDescriptor(9, 2), MakeDescriptor(9, 4), MakeDescriptor(7, 5),
                             MakeDescriptor(7, 5), MakeDescriptor(9, 4), MakeDescriptor(7, 5)});
  ExactBytes const block_{run_};
  CDescriptorRange const range_ = block_.Range();
  // The same, followed by a descriptor that is cut after 4 of 9 bytes: valid until 48, end 52.
  ExactBytes const longer_{Joined({run_, Hex("09 04 02 00")})};
};

TEST_F(SubRanges, CountsAre16Bits) {
  static_assert(std::is_same_v<decltype(range_.Count()), unsigned short>);
  ExactBytes const longest(Bytes(65535, 1));
  EXPECT_EQ(longest.Range().Count(), 65535);
  EXPECT_EQ(longest.Range().Count(1), 65534) << "the last byte has no type";
  EXPECT_EQ(longest.Range().GetAll(1)->size(), 65534u);
  // Gives the first descriptor from the second on, so that the walk stays there, 65,538 times.
  ExactBytes const block(Hex("02 04 02 05"));
  unsigned calls = 0;
  RangeFinder const start = [&](Iterator, Iterator) {
    return Found(++calls <= 65538, block.At(0));
  };
  RangeFinder const finish = Answering(true, block.At(2));
  EXPECT_EQ(block.Range().Count(start, finish), 2);
  calls = 0;
  EXPECT_EQ(block.Range().GetSubRanges(start, finish)->size(), 65538u);
}

TEST_F(SubRanges, OneSubRangeBetweenTwoIterators) {
  EXPECT_EQ(PieceOf(CDescriptorRange::SubRange(block_.At(9), block_.At(32))), Piece(9, 23));
  EXPECT_TRUE(CDescriptorRange::SubRange(block_.At(9), block_.At(9)).IsEmpty());
  EXPECT_EQ(PieceOf(CDescriptorRange::SubRange(block_.At(9), block_.At(0))), Piece(9, 65527));
  RangeFinder const type4 = DescriptorType(4);
  CRangeSelector const selector(type4, type4);
  struct Row {
    std::size_t first, last;
    Piece piece;
  };
  for (Row const& row : {Row{0, 48, {9, 23}}, Row{18, 48, {32, 16}}, Row{0, 25, {9, 16}},
                         Row{18, 32, {0, 0}}, Row{48, 48, {0, 0}}}) {
    Iterator const first = block_.At(row.first);
    Iterator const last = block_.At(row.last);
    EXPECT_EQ(PieceOf(CDescriptorRange::SubRange(first, last, type4, type4)), row.piece);
    EXPECT_EQ(PieceOf(CDescriptorRange::SubRange(first, last, selector)), row.piece);
  }
  EXPECT_TRUE(CDescriptorRange::SubRange(Iterator(), Iterator(), kAny, kAny).IsEmpty());
  EXPECT_TRUE(CDescriptorRange().SubRange(kAny, kAny).IsEmpty());
}

TEST_F(SubRanges, OneSubRangeFollowsTheFindersAnswers) {
  struct Row {
    Found start, finish;
    Piece piece;
  };
  Row const rows[] = {{{true, block_.At(9)}, {true, block_.At(32)}, {9, 23}},
                      {{true, block_.At(9)}, {true, block_.At(9)}, {0, 0}},
                      {{true, block_.At(9)}, {true, block_.At(0)}, {9, 65527}},
                      {{true, block_.At(9)}, {false, block_.At(32)}, {0, 0}},
                      {{false, block_.At(9)}, {true, block_.At(32)}, {0, 0}},
                      {{true, block_.At(48)}, {true, block_.At(48)}, {0, 0}},
                      {{false, block_.At(48)}, {true, block_.At(48)}, {0, 0}}};
  for (Row const& row : rows) {
    SCOPED_TRACE(&row - rows);
    Asked starts;
    Asked finishes;
    RangeFinder const start = [&](Iterator first, Iterator last) {
      starts.emplace_back(first, last);
      return row.start;
    };
    RangeFinder const finish = [&](Iterator first, Iterator last) {
      finishes.emplace_back(first, last);
      return row.finish;
    };
    EXPECT_EQ(PieceOf(range_.SubRange(start, finish)), row.piece);
    EXPECT_THAT(starts, ElementsAre(std::pair(block_.At(0), block_.At(48))));
    if (row.start == Found(true, block_.At(9))) {
      EXPECT_THAT(finishes, ElementsAre(std::pair(block_.At(18), block_.At(48))));
    } else {
      EXPECT_THAT(finishes, IsEmpty());
    }
  }
  EXPECT_RUN_TIME_EXCEPTION(
      CDescriptorRange::SubRange(block_.At(0), block_.At(41), Answering(true, block_.At(48)), kAny),
      kOutOfRange, kInternalError);
}

TEST_F(SubRanges, OneSubRangeSearchesTheInvalidPartToo) {
  CDescriptorRange const range = longer_.Range();
  RangeFinder const type4 = DescriptorType(4);
  CDescriptorRange const second =
      CDescriptorRange::SubRange(longer_.At(41), range.end(), kAny, type4);
  EXPECT_EQ(second.Bytes() - longer_.data(), 41);
  EXPECT_EQ(second.Length(), 7);
  EXPECT_EQ(range.SubRange(Answering(true, longer_.At(48)), kAny).Length(), 4);
  ExactBytes const zero(Joined({MakeDescriptor(9, 2), Hex("00 04"), MakeDescriptor(7, 5)}));
  for (auto const& [start, finish] : {std::pair(5, 5), std::pair(2, 5), std::pair(4, 4)}) {
    RangeFinder const first = DescriptorType(static_cast<unsigned char>(start));
    RangeFinder const last = DescriptorType(static_cast<unsigned char>(finish));
    EXPECT_RUN_TIME_EXCEPTION(zero.Range().SubRange(first, last), kZeroLength, kInternalError);
    EXPECT_RUN_TIME_EXCEPTION(zero.Range().SubRange(CRangeSelector(first, last)), kZeroLength,
                              kInternalError);
  }
  EXPECT_EQ(zero.Range().SubRange(DescriptorType(2), type4).Length(), 9);
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

TEST_F(SubRanges, SearchesKeepTheCallersFinders) {
  RangeFinder const once = Once();
  for (int round = 0; round < 2; ++round) {
    EXPECT_FALSE(range_.SubRange(once, once).IsEmpty());
    EXPECT_EQ(range_.GetSubRanges(once, kAny)->size(), 6u);
    EXPECT_EQ(range_.GetSubRanges(kAny, once)->size(), 6u);
    EXPECT_EQ(range_.Count(once, once), 6);
  }
  CRangeSelector const selector(once, once);
  EXPECT_EQ(range_.GetSubRanges(selector)->size(), 6u);
  EXPECT_EQ(range_.Count(selector), 6);
  // One sub-range asks the selector's own finders; then they are used up.
  EXPECT_FALSE(range_.SubRange(selector).IsEmpty());
  EXPECT_TRUE(range_.SubRange(selector).IsEmpty());
  EXPECT_EQ(range_.Count(selector), 0);
}

TEST_F(SubRanges, ReleasesCopiesOfFinders) {
  auto const token = std::make_shared<int>(0);
  RangeFinder const finder = [token](Iterator first, Iterator) { return Found(true, first); };
  RangeFinder const failing = [token](Iterator, Iterator) -> Found { throw 1; };
  long const before = token.use_count();
  static_cast<void>(range_.GetSubRanges(finder, finder));
  static_cast<void>(range_.Count(finder, finder));
  static_cast<void>(range_.Count(CRangeSelector(finder, finder)));
  static_cast<void>(range_.SubRange(finder, finder));
  EXPECT_THROW(static_cast<void>(range_.GetSubRanges(finder, failing)), int);
  EXPECT_THROW(range_.Count(failing, finder), int);
  EXPECT_EQ(token.use_count(), before);
}

TEST_F(SubRanges, AsksFindersUpToTheValidEnd) {
  Asked starts;
  Asked finishes;
  RangeFinder const start = [&](Iterator first, Iterator last) {
    EXPECT_EQ(Sink().Calls().size(), 1u) << "the message comes first";
    starts.emplace_back(first, last);
    return DescriptorType(4)(first, last);
  };
  RangeFinder const finish = [&](Iterator first, Iterator last) {
    finishes.emplace_back(first, last);
    return DescriptorType(4)(first, last);
  };
  EXPECT_EQ(longer_.Range().GetSubRanges(start, finish)->size(), 2u);
  auto const upToTheEnd = [this](std::size_t at) {
    return std::pair(longer_.At(at), longer_.At(48));
  };
  EXPECT_THAT(starts, ElementsAre(upToTheEnd(0), upToTheEnd(32)));
  EXPECT_THAT(finishes, ElementsAre(upToTheEnd(18), upToTheEnd(41)));
}

TEST_F(SubRanges, GoesOnAtOrAfterTheEndOfEach) {
  Asked starts;
  RangeFinder const start = [&](Iterator first, Iterator last) {
    starts.emplace_back(first, last);
    return Found(true, first);
  };
  // Ends in the middle of a descriptor.
  RangeFinder const middle = [this](Iterator first, Iterator last) {
    return Found(
        true, first == last ? last : block_.At(static_cast<std::size_t>(first - block_.At(0)) + 1));
  };
  EXPECT_EQ(PiecesOf(range_.GetSubRanges(start, middle)), (Pieces{{0, 10}, {18, 8}, {32, 10}}));
  EXPECT_EQ(starts.size(), 3u);
  EXPECT_EQ(starts[1].first, block_.At(18));
  RangeFinder const after = Answering(true, block_.At(9));
  RangeFinder const before = Answering(true, block_.At(0));
  EXPECT_RUN_TIME_EXCEPTION(range_.GetSubRanges(after, before), kOutOfRange, kInternalError);
  EXPECT_RUN_TIME_EXCEPTION(range_.Count(after, before), kOutOfRange, kInternalError);
}

TEST_F(SubRanges, AnEmptySubRangeEndsTheSearch) {
  // Each finder refuses at one place, in each way in which it can.
  auto const refusing = [](Iterator at, Found refusal) -> RangeFinder {
    return [at, refusal](Iterator first, Iterator) {
      return first == at ? refusal : Found(true, first);
    };
  };
  for (Found const& refusal :
       {Found(false, block_.At(9)), Found(true, block_.At(48)), Found(false, block_.At(48))}) {
    EXPECT_EQ(PiecesOf(range_.GetSubRanges(refusing(block_.At(9), refusal), kAny)),
              (Pieces{{0, 9}}));
    EXPECT_EQ(range_.Count(refusing(block_.At(9), refusal), kAny), 1);
    EXPECT_EQ(range_.Count(refusing(block_.At(0), refusal), kAny), 0);
  }
  // The finish finder searches from the descriptor after the start; at the start itself it cuts
  // nothing.
  for (Found const& refusal : {Found(false, block_.At(18)), Found(true, block_.At(9))}) {
    EXPECT_EQ(PiecesOf(range_.GetSubRanges(kAny, refusing(block_.At(18), refusal))),
              (Pieces{{0, 9}}));
    EXPECT_EQ(range_.Count(kAny, refusing(block_.At(18), refusal)), 1);
  }
}

TEST_F(SubRanges, ReadsPredicatesAtTheTimeOfTheSearch) {
  RangePredicate predicate = IsOfType(4);
  CRangeSelector const selector(predicate);
  EXPECT_EQ(range_.Count(selector), 2);
  predicate = IsOfType(5);
  EXPECT_EQ(range_.Count(selector), 3);
  EXPECT_EQ(PieceOf(range_.SubRange(selector)), Piece(18, 7));
}

TEST_F(SubRanges, EmptyFindersAndPredicatesThrow) {
  RangePredicate const none;
  RangeFinder const empty;
  EXPECT_THROW(range_.SubRange(empty, kAny), std::bad_function_call);
  EXPECT_THROW(range_.SubRange(kAny, empty), std::bad_function_call);
  EXPECT_THROW(static_cast<void>(range_.GetSubRanges(empty, kAny)), std::bad_function_call);
  EXPECT_THROW(static_cast<void>(range_.GetSubRanges(kAny, empty)), std::bad_function_call);
  EXPECT_THROW(static_cast<void>(range_.GetSubRanges(CRangeSelector(none))),
               std::bad_function_call);
  EXPECT_THROW(range_.Count(empty, kAny), std::bad_function_call);
  EXPECT_THROW(range_.Count(kAny, empty), std::bad_function_call);
  EXPECT_THROW(range_.Count(none), std::bad_function_call);
  // No finder is called for an empty range.
  EXPECT_EQ(CDescriptorRange().Count(none), 0);
  EXPECT_EQ(CDescriptorRange().Count(empty, empty), 0);
  EXPECT_THAT(*CDescriptorRange().GetSubRanges(empty, empty), IsEmpty());
  EXPECT_THAT(TakeCalls(), IsEmpty());
}

// Each descriptor is asked about once as a start and once as an end at most.
TEST_F(SubRanges, WorkIsLinearInTheDescriptors) {
  Bytes bytes;
  while (bytes.size() + 2 <= 0xFFFF) {
    bytes.insert(bytes.end(), {0x02, static_cast<unsigned char>(bytes.size() % 3 == 0 ? 4 : 5)});
  }
  ExactBytes const block(bytes);
  for (unsigned const type : {4u, 9u}) {
    std::size_t asked = 0;
    RangePredicate const predicate = [&](Iterator const& it) {
      ++asked;
      return it->bDescriptorType == type;
    };
    static_cast<void>(block.Range().GetSubRanges(CRangeSelector(predicate)));
    EXPECT_GE(asked, 32767u);
    EXPECT_LE(asked, 2 * 32767u);
    asked = 0;
    static_cast<void>(block.Range().Count(predicate));
    EXPECT_LE(asked, 2 * 32767u);
  }
}

TEST_F(SubRanges, ListsAndCountsLogAnInvalidRangeOnce) {
  CDescriptorRange const range = longer_.Range();
  RangePredicate const isInterface = IsOfType(4);
  RangeFinder const type4 = DescriptorType(4);
  CRangeSelector const selector(isInterface);
  std::function<std::size_t()> const searches[] = {
      [&] { return range.GetAll()->size() - 4; },
      [&] { return range.GetAll(4)->size(); },
      [&] { return range.GetSubRanges(selector)->size(); },
      [&] { return range.GetSubRanges(type4, type4)->size(); },
      [&] { return range.Count() - 4u; },
      [&] { return range.Count(4); },
      [&] { return range.Count(isInterface); },
      [&] { return range.Count(type4, type4); },
      [&] { return range.Count(selector); },
  };
  for (auto const& search : searches) {
    EXPECT_EQ(search(), 2u);
    EXPECT_THAT(TakeCalls(), ElementsAre(InvalidRange(range, 48)));
  }
  EXPECT_EQ(range.Count(), 6);
  EXPECT_EQ(Sink().Take().at(0).stackDepth, 1u);
}

TEST_F(SubRanges, ListsHaveTheirOwnDeleter) {
  auto ranges = range_.GetAll();
  EXPECT_LE(ranges->capacity(), block_.size());
  EXPECT_LE(range_.GetAll(4)->capacity(), block_.size());
  auto const deleter = ranges.get_deleter();
  ASSERT_TRUE(deleter);
  EXPECT_NO_THROW(deleter(nullptr));
  deleter(ranges.release());
}

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)
TEST_F(SubRanges, SteppingAndCountingAllocateNothing) {
  standalone::RemoveAllLogSinks();
  for (CDescriptorRange const& range : {range_, longer_.Range()}) {
    EXPECT_GT(testing_support::AllocationsOf([&] { static_cast<void>(range.GetAll()); }), 0u);
    EXPECT_EQ(testing_support::SteadyAllocationsOf([&] {
                static_cast<void>(range[3]);
                static_cast<void>(range.Valid());
                static_cast<void>(range.FindFirst(5));
                static_cast<void>(range.Count());
                static_cast<void>(range.Count(5));
              }),
              0u);
  }
}
#endif

}  // namespace
}  // namespace usb_support
