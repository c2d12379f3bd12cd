// Walks, counts and searches beside the bare loop `p += p[0]` with the same checks.
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

constexpr double kGoal = 1.10;

// What beginning and ending a walk takes shows in short runs: a tenth of the 2 ns for three
// descriptors is less than can be told from where the code lies, and in runs of some twenty
// descriptors Clang's walk takes 1 to 3 ns a run more.
void BoundOfShortRuns(Input const& input, Row& row) {
  constexpr std::size_t kFewBytes = 25;
  constexpr std::size_t kShortRun = 512;
  if (input.Bytes() == kFewBytes) {
    row.bound = "a tenth of 2 ns";
    row.mostBoundRatio = 1.25;
  } else if (input.Bytes() <= kShortRun * input.runs.size()) {
    row.bound = "1 to 3 ns a run";
    row.mostBoundRatio = 1.15;
  }
}

constexpr unsigned char kAbsentType = 0xEE;

using Byte = unsigned char;

// A run as the bare loops take it.
struct BareRun {
  Byte const* bytes;
  std::size_t length;
};

// Where the chain of lengths ends.
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

// The steps of the two walks below are the iterator's: they refuse a zero length and never leave
// the run. The count looks whether all of the run is valid, as the library's does for its log line.

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

template <typename RangeAction, typename BareAction>
void AddBoth(Row row, Input const& input, RangeAction rangeAction, BareAction bareAction) {
  std::vector<BareRun> bare;
  for (auto const& run : input.runs) {
    bare.push_back({run.data(), run.size()});
  }
  Compare(
      std::move(row),
      [ranges = input.Ranges(), rangeAction] {
        std::uintptr_t sum = 0;
        for (CDescriptorRange const& range : ranges) {
          sum += rangeAction(range);
        }
        return sum;
      },
      [bare, bareAction] {
        std::uintptr_t sum = 0;
        for (BareRun const& run : bare) {
          sum += bareAction(run);
        }
        return sum;
      });
}

std::uintptr_t Address(CDescriptorRangeIterator const& it) {
  return reinterpret_cast<std::uintptr_t>(it.operator->());
}

std::uintptr_t Address(Byte const* p) {
  return reinterpret_cast<std::uintptr_t>(p);
}

void AddRows(Input const& input, Row const& form) {
  auto const row = [&](char const* operation, double goal) {
    Row result = form;
    result.operation = operation;
    result.input = input.name;
    if (goal != 0) {
      result.mostRatio = goal;
    }
    result.allocatesNothing = true;
    BoundOfShortRuns(input, result);
    return result;
  };
  AddBoth(
      row("ValidUntil()", kGoal), input,
      [](CDescriptorRange const& range) { return Address(range.ValidUntil()); },
      [](BareRun run) { return Address(BareValidUntil(run)); });
  AddBoth(
      row("ValidUntil(), then a walk to it", kGoal), input,
      [](CDescriptorRange const& range) {
        unsigned sum = 0;
        CDescriptorRangeIterator const validEnd = range.ValidUntil();
        for (CDescriptorRangeIterator it = range.begin(); it != validEnd; ++it) {
          sum += it->bDescriptorType;
        }
        return std::uintptr_t{sum};
      },
      [](BareRun run) { return std::uintptr_t{BareWalk(run, BareValidUntil(run))}; });
  AddBoth(
      row("Count()", kGoal), input,
      [](CDescriptorRange const& range) { return std::uintptr_t{range.Count()}; },
      [](BareRun run) { return std::uintptr_t{BareCount(run)}; });
  AddBoth(
      row("FindFirst(absent)", kGoal), input,
      [](CDescriptorRange const& range) { return Address(range.FindFirst(kAbsentType)); },
      [](BareRun run) { return Address(BareFindFirst(run, kAbsentType)); });
}

// The walk alone: its end was found before.
void AddWalk(Input const& input) {
  struct Walk {
    CDescriptorRange range;
    CDescriptorRangeIterator validEnd;
  };
  struct BareWalkInput {
    BareRun run;
    Byte const* validEnd;
  };
  std::vector<Walk> walks;
  for (CDescriptorRange const& range : input.Ranges()) {
    walks.push_back({range, range.ValidUntil()});
  }
  std::vector<BareWalkInput> bare;
  for (auto const& run : input.runs) {
    BareRun const bareRun{run.data(), run.size()};
    bare.push_back({bareRun, BareValidUntil(bareRun)});
  }
  Row row;
  row.operation = "walk begin() to ValidUntil()";
  row.input = input.name;
  row.mostRatio = kGoal;
  row.allocatesNothing = true;
  BoundOfShortRuns(input, row);
  Compare(
      row,
      [walks] {
        unsigned sum = 0;
        for (Walk const& walk : walks) {
          CDescriptorRangeIterator const validEnd = walk.validEnd;
          for (CDescriptorRangeIterator it = walk.range.begin(); it != validEnd; ++it) {
            sum += it->bDescriptorType;
          }
        }
        return sum;
      },
      [bare] {
        unsigned sum = 0;
        for (BareWalkInput const& walk : bare) {
          sum += BareWalk(walk.run, walk.validEnd);
        }
        return sum;
      });
}

}  // namespace

void AddWalkRows() {
  for (Input const& input : TableInputs()) {
    AddWalk(input);
    AddRows(input, {});
  }
  for (Input const& input : GrowthInputs()) {
    Row form;
    form.descriptors = input.Descriptors();
    AddRows(input, form);
  }
}

}  // namespace usb_support::benchmarks
