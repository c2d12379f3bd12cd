// Walks, counts and searches compared with the bare loop `p += p[0]` with the same checks.
#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

#include <benchmarks/inputs.h>
#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/suite_interfaces/exceptions.h>

namespace usb_support::benchmarks {
namespace {

// The cost of beginning and ending a walk shows in short runs: a tenth of the 2 ns for three
// descriptors is less than the effect of code placement, and in runs of about twenty descriptors
// Clang's walk takes 1 to 3 ns more per run.
double GoalFor(Input const& input) {
  constexpr std::size_t kFewBytes = 25;
  constexpr std::size_t kShortRun = 512;
  return input.Bytes() == kFewBytes                       ? 1.25
         : input.Bytes() <= kShortRun * input.runs.size() ? 1.15
                                                          : 1.10;
}

constexpr unsigned char kAbsentType = 0xEE;

using Byte = unsigned char;

// The end of the chain of lengths.
Byte const* BareValidUntil(BareRun run) {
  Byte const* p = run.bytes;
  std::size_t left = run.length;
  while (left != 0 && p[0] != 0 && p[0] <= left) {
    left -= p[0];
    p += p[0];
  }
  return p;
}

[[noreturn]] void Refuse() {
  throw TQRunTimeException("The run is broken.", TEST_STATUS_INTERNAL_ERROR);
}

std::uint16_t BareCount(BareRun run) {
  Byte const* p = run.bytes;
  std::size_t left = run.length;
  std::uint16_t count = 0;
  while (left != 0 && p[0] != 0 && p[0] <= left) {
    left -= p[0];
    p += p[0];
    ++count;
  }
  if (left != 0) {
    Refuse();
  }
  return count;
}

// The steps of the two walks below are like those of the iterator: they refuse a zero length and
// never leave the run. The count checks whether the whole run is valid, as the library does for its
// log line.

unsigned BareWalk(BareRun run, Byte const* validEnd) {
  unsigned sum = 0;
  Byte const* p = run.bytes;
  std::size_t left = run.length;
  while (p != validEnd) {
    sum += p[1];
    if (left == 0) {
      Refuse();
    }
    std::size_t const length = p[0];
    if (length == 0) {
      Refuse();
    }
    if (length > left) {
      break;
    }
    p += length;
    left -= length;
  }
  return sum;
}

Byte const* BareFindFirst(BareRun run, Byte type) {
  Byte const* p = run.bytes;
  std::size_t left = run.length;
  while (left != 0 && !(left >= 2 && p[1] == type)) {
    std::size_t const length = p[0];
    if (length == 0) {
      Refuse();
    }
    if (length > left) {
      return p + left;
    }
    p += length;
    left -= length;
  }
  return p;
}

std::uintptr_t Address(CDescriptorRangeIterator const& it) {
  return reinterpret_cast<std::uintptr_t>(it.operator->());
}

std::uintptr_t Address(Byte const* p) {
  return reinterpret_cast<std::uintptr_t>(p);
}

unsigned Walk(CDescriptorRange const& range, CDescriptorRangeIterator validEnd) {
  unsigned sum = 0;
  for (CDescriptorRangeIterator it = range.begin(); it != validEnd; ++it) {
    sum += it->bDescriptorType;
  }
  return sum;
}

template <typename RangeAction, typename BareAction>
void AddRows(char const* operation, Input const& input, RangeAction action, BareAction bareAction) {
  Compare({.operation = operation,
           .input = input.name,
           .mostRatio = GoalFor(input),
           .allocatesNothing = true},
          SumOver(input.Ranges(), action), SumOver(input.BareRuns(), bareAction));
}

// Only the walk: its end was found before.
void AddWalk(Input const& input) {
  std::vector<std::pair<CDescriptorRange, CDescriptorRangeIterator>> walks;
  for (CDescriptorRange const& range : input.Ranges()) {
    walks.emplace_back(range, range.ValidUntil());
  }
  std::vector<std::pair<BareRun, Byte const*>> bare;
  for (BareRun const& run : input.BareRuns()) {
    bare.emplace_back(run, BareValidUntil(run));
  }
  Compare({.operation = "walk begin() to ValidUntil()",
           .input = input.name,
           .mostRatio = GoalFor(input),
           .allocatesNothing = true},
          SumOver(walks, [](auto const& walk) { return Walk(walk.first, walk.second); }),
          SumOver(bare, [](auto const& walk) { return BareWalk(walk.first, walk.second); }));
}

}  // namespace

void AddWalkRows() {
  for (Input const& input : TableInputs()) {
    AddWalk(input);
    AddRows(
        "ValidUntil()", input,
        [](CDescriptorRange const& range) { return Address(range.ValidUntil()); },
        [](BareRun run) { return Address(BareValidUntil(run)); });
    AddRows(
        "ValidUntil(), then a walk to it", input,
        [](CDescriptorRange const& range) { return Walk(range, range.ValidUntil()); },
        [](BareRun run) { return BareWalk(run, BareValidUntil(run)); });
    AddRows(
        "Count()", input, [](CDescriptorRange const& range) { return range.Count(); }, BareCount);
    AddRows(
        "FindFirst(absent)", input,
        [](CDescriptorRange const& range) { return Address(range.FindFirst(kAbsentType)); },
        [](BareRun run) { return Address(BareFindFirst(run, kAbsentType)); });
  }
}

}  // namespace usb_support::benchmarks
