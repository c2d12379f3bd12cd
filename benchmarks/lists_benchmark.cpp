// Lists of sub-ranges beside loops that do the same cut by hand into a vector of (pointer, length).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include <benchmarks/inputs.h>
#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/descriptor_type_finder.h>
#include <usb_support/descriptors/read_record.h>

namespace usb_support::benchmarks {
namespace {

constexpr double kGoal = 1.50;

using Byte = unsigned char;
using Piece = std::pair<Byte const*, std::size_t>;
using Pieces = std::vector<Piece>;

struct BareRun {
  Byte const* bytes;
  std::size_t length;
};

bool IsWhole(Byte const* p, Byte const* end) {
  return p[0] != 0 && p[0] <= static_cast<std::size_t>(end - p);
}

// A field of a descriptor; 0 where it lies behind the run.
Byte Field(Byte const* p, Byte const* end, std::ptrdiff_t at) {
  return at < end - p ? p[at] : Byte{0};
}

bool HasBareType(Byte const* p, Byte const* end, Byte type) {
  return end - p >= 2 && p[1] == type;
}

bool IsBareFirstSetting(Byte const* p, Byte const* end) {
  return HasBareType(p, end, kInterfaceType) && Field(p, end, 3) == 0;
}

Pieces BareGetAll(BareRun run) {
  Pieces pieces;
  Byte const* const end = run.bytes + run.length;
  for (Byte const* p = run.bytes; p != end && IsWhole(p, end); p += p[0]) {
    pieces.emplace_back(p, p[0]);
  }
  return pieces;
}

Pieces BareGetAll(BareRun run, Byte type) {
  Pieces pieces;
  Byte const* const end = run.bytes + run.length;
  for (Byte const* p = run.bytes; p != end && IsWhole(p, end); p += p[0]) {
    if (HasBareType(p, end, type)) {
      pieces.emplace_back(p, p[0]);
    }
  }
  return pieces;
}

Pieces BareInterfaceList(BareRun run) {
  Pieces pieces;
  Byte const* const end = run.bytes + run.length;
  Byte const* start = nullptr;
  Byte const* p = run.bytes;
  for (; p != end && IsWhole(p, end); p += p[0]) {
    bool const isStart = IsBareFirstSetting(p, end);
    if (start != nullptr && (isStart || HasBareType(p, end, kInterfaceAssociationType))) {
      pieces.emplace_back(start, p - start);
      start = nullptr;
    }
    if (isStart) {
      start = p;
    }
  }
  if (start != nullptr) {
    pieces.emplace_back(start, p - start);
  }
  return pieces;
}

Pieces BareFunctionList(BareRun run) {
  Pieces pieces;
  Byte const* const end = run.bytes + run.length;
  Byte const* start = nullptr;
  Byte nextInterface = 0;
  Byte const* p = run.bytes;
  for (; p != end && IsWhole(p, end); p += p[0]) {
    bool const isAssociation = HasBareType(p, end, kInterfaceAssociationType);
    if (!isAssociation && !IsBareFirstSetting(p, end)) {
      continue;
    }
    if (start != nullptr) {
      if (!isAssociation && Field(p, end, 2) != nextInterface) {
        continue;
      }
      pieces.emplace_back(start, p - start);
    }
    start = p;
    nextInterface =
        static_cast<Byte>(Field(p, end, 2) + (isAssociation ? Field(p, end, 3) : Byte{1}));
  }
  if (start != nullptr) {
    pieces.emplace_back(start, p - start);
  }
  return pieces;
}

std::uint16_t BareCount(BareRun run, Byte type) {
  std::uint16_t count = 0;
  Byte const* const end = run.bytes + run.length;
  for (Byte const* p = run.bytes; p != end && IsWhole(p, end); p += p[0]) {
    count = static_cast<std::uint16_t>(count + (HasBareType(p, end, type) ? 1 : 0));
  }
  return count;
}

using Configurations = std::vector<std::unique_ptr<CConfigDescriptorSet>>;

Configurations ConfigurationsOf(Input const& input) {
  Configurations sets;
  for (auto const& run : input.runs) {
    sets.push_back(std::make_unique<CConfigDescriptorSet>());
    sets.back()->SetDescriptor(run.data(), static_cast<unsigned short>(run.size()));
  }
  return sets;
}

std::vector<BareRun> BareRunsOf(Configurations const& sets) {
  std::vector<BareRun> runs;
  for (auto const& set : sets) {
    runs.push_back({set->Bytes(), set->Length()});
  }
  return runs;
}

bool SamePieces(std::vector<CDescriptorRange> const& ranges, Pieces const& pieces) {
  return std::ranges::equal(ranges, pieces, [](CDescriptorRange const& range, Piece const& piece) {
    return range.Bytes() == piece.first && range.Length() == piece.second;
  });
}

// Every list is made, looked at and freed before the next.
template <typename ListOf, typename BareListOf>
void AddList(Row row, std::shared_ptr<Configurations> const& sets, ListOf listOf,
             BareListOf bareListOf) {
  std::vector<BareRun> const runs = BareRunsOf(*sets);
  for (std::size_t at = 0; at < runs.size(); ++at) {
    if (!SamePieces(*listOf(*(*sets)[at]), bareListOf(runs[at]))) {
      throw std::logic_error("The baseline of " + row.operation + " makes other pieces.");
    }
  }
  Compare(
      std::move(row),
      [sets, listOf] {
        std::size_t sum = 0;
        for (auto const& set : *sets) {
          auto const list = listOf(*set);
          benchmark::DoNotOptimize(list->data());
          sum += list->size();
        }
        return sum;
      },
      [runs, bareListOf] {
        std::size_t sum = 0;
        for (BareRun const& run : runs) {
          Pieces const list = bareListOf(run);
          benchmark::DoNotOptimize(list.data());
          sum += list.size();
        }
        return sum;
      });
}

template <typename Counted>
void AddCount(Row row, std::shared_ptr<Configurations> const& sets, Counted counted) {
  std::vector<BareRun> const runs = BareRunsOf(*sets);
  row.allocatesNothing = true;
  Compare(
      std::move(row),
      [sets, counted] {
        std::size_t sum = 0;
        for (auto const& set : *sets) {
          sum += counted(*set);
        }
        return sum;
      },
      [runs] {
        std::size_t sum = 0;
        for (BareRun const& run : runs) {
          sum += BareCount(run, kInterfaceType);
        }
        return sum;
      });
}

// A list of one element takes two blocks, the vector's and the element's, where the hand-written
// loop takes one.
constexpr std::size_t kBytesWithOneElement = 25;
constexpr double kTwoBlocks = 2.5;

// Clang calls the virtual destructor of every element; GCC sees that it is the range's own.
#if defined(__clang__)
constexpr std::size_t kBytesOfManyElements = 4096;
constexpr double kVirtualDestructors = 2.0;
#endif

void AddRows(Input const& input, Row const& form) {
  auto const sets = std::make_shared<Configurations>(ConfigurationsOf(input));
  auto const row = [&](char const* operation) {
    Row result = form;
    result.operation = operation;
    result.input = input.name;
    result.mostRatio = kGoal;
    if (input.Bytes() == kBytesWithOneElement) {
      result.bound = "two blocks beside one";
      result.mostBoundRatio = kTwoBlocks;
    }
#if defined(__clang__)
    if (input.runs.size() == 1 && input.Bytes() >= kBytesOfManyElements) {
      result.bound = "a virtual destructor for every element";
      result.mostBoundRatio = kVirtualDestructors;
    }
#endif
    return result;
  };
  AddList(
      row("GetAll()"), sets, [](CConfigDescriptorSet& set) { return set.GetAll(); },
      [](BareRun run) { return BareGetAll(run); });
  AddList(
      row("GetAll(interface)"), sets,
      [](CConfigDescriptorSet& set) { return set.GetAll(kInterfaceType); },
      [](BareRun run) { return BareGetAll(run, kInterfaceType); });
  AddList(
      row("GetInterfaceList()"), sets,
      [](CConfigDescriptorSet& set) { return set.GetInterfaceList(); },
      [](BareRun run) { return BareInterfaceList(run); });
  AddList(
      row("GetFunctionList()"), sets,
      [](CConfigDescriptorSet& set) { return set.GetFunctionList(); },
      [](BareRun run) { return BareFunctionList(run); });
}

// The counts, whose goal is to allocate nothing.
void AddCounts(Input const& input) {
  auto const sets = std::make_shared<Configurations>(ConfigurationsOf(input));
  auto const row = [&](char const* operation) {
    Row result;
    result.operation = operation;
    result.input = input.name;
    return result;
  };
  AddCount(row("Count(interface)"), sets,
           [](CConfigDescriptorSet& set) { return set.Count(kInterfaceType); });
  AddCount(row("Count(predicate)"), sets, [](CConfigDescriptorSet& set) {
    return set.Count(
        [](CDescriptorRangeIterator const& it) { return HasType(it, kInterfaceType); });
  });
  AddCount(row("Count(start, finish)"), sets, [](CConfigDescriptorSet& set) {
    return set.Count(DescriptorType(kInterfaceType), CDescriptorRange::AlwaysTrue);
  });
  auto const selector = std::make_shared<CRangeSelector>(DescriptorType(kInterfaceType),
                                                         CDescriptorRange::AlwaysTrue);
  AddCount(row("Count(selector)"), sets,
           [selector](CConfigDescriptorSet& set) { return set.Count(*selector); });
}

}  // namespace

void AddListRows() {
  for (Input const& input : TableInputs()) {
    AddRows(input, {});
    AddCounts(input);
  }
  for (Input const& input : GrowthInputs()) {
    Row form;
    form.descriptors = input.Descriptors();
    AddRows(input, form);
  }
}

}  // namespace usb_support::benchmarks
