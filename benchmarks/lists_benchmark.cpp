// Lists of sub-ranges compared with loops that make the same cuts by hand into a vector of
// (pointer, length).
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
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

using Byte = unsigned char;
using Piece = std::pair<Byte const*, std::size_t>;
using Pieces = std::vector<Piece>;

bool IsWhole(Byte const* p, Byte const* end) {
  return p[0] != 0 && p[0] <= static_cast<std::size_t>(end - p);
}

// A field of a descriptor; 0 where it is after the run.
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

using Configurations = std::vector<std::shared_ptr<CConfigDescriptorSet>>;

bool SamePieces(std::vector<CDescriptorRange> const& ranges, Pieces const& pieces) {
  return std::ranges::equal(ranges, pieces, [](CDescriptorRange const& range, Piece const& piece) {
    return range.Bytes() == piece.first && range.Length() == piece.second;
  });
}

// A list of one element takes two blocks, the vector's and the element's, where the loop by hand
// takes one. Clang calls the virtual destructor of every element; GCC sees that it is the range's
// own.
double GoalFor(Input const& input) {
  constexpr std::size_t kBytesWithOneElement = 25;
  if (input.Bytes() == kBytesWithOneElement) {
    return 2.5;
  }
#if defined(__clang__)
  constexpr std::size_t kBytesOfManyElements = 4096;
  if (input.runs.size() == 1 && input.Bytes() >= kBytesOfManyElements) {
    return 2.0;
  }
#endif
  return 1.5;
}

void AddRows(Input const& input) {
  Configurations sets;
  std::vector<BareRun> runs;
  for (auto const& run : input.runs) {
    sets.push_back(std::make_shared<CConfigDescriptorSet>());
    sets.back()->SetDescriptor(run.data(), static_cast<unsigned short>(run.size()));
    runs.push_back({sets.back()->Bytes(), sets.back()->Length()});
  }
  // Every list is made, read and freed before the next.
  auto const addList = [&](char const* operation, auto listOf, auto bareListOf) {
    for (std::size_t at = 0; at < runs.size(); ++at) {
      if (!SamePieces(*listOf(*sets[at]), bareListOf(runs[at]))) {
        throw std::logic_error(std::string("The baseline of ") + operation +
                               " makes other pieces.");
      }
    }
    auto const sizeOf = [](auto const& list) {
      benchmark::DoNotOptimize(list.data());
      return list.size();
    };
    Compare({.operation = operation, .input = input.name, .mostRatio = GoalFor(input)},
            SumOver(sets, [=](auto const& set) { return sizeOf(*listOf(*set)); }),
            SumOver(runs, [=](BareRun run) { return sizeOf(bareListOf(run)); }));
  };
  addList(
      "GetAll()", [](CConfigDescriptorSet& set) { return set.GetAll(); },
      [](BareRun run) { return BareGetAll(run); });
  addList(
      "GetAll(interface)", [](CConfigDescriptorSet& set) { return set.GetAll(kInterfaceType); },
      [](BareRun run) { return BareGetAll(run, kInterfaceType); });
  addList(
      "GetInterfaceList()", [](CConfigDescriptorSet& set) { return set.GetInterfaceList(); },
      BareInterfaceList);
  addList(
      "GetFunctionList()", [](CConfigDescriptorSet& set) { return set.GetFunctionList(); },
      BareFunctionList);

  // The counts, whose goal is to allocate nothing.
  auto const addCount = [&](char const* operation, auto counted) {
    Compare({.operation = operation, .input = input.name, .allocatesNothing = true},
            SumOver(sets, [counted](auto const& set) { return counted(*set); }),
            SumOver(runs, [](BareRun run) { return BareCount(run, kInterfaceType); }));
  };
  addCount("Count(interface)", [](CConfigDescriptorSet& set) { return set.Count(kInterfaceType); });
  addCount("Count(predicate)", [](CConfigDescriptorSet& set) {
    return set.Count(
        [](CDescriptorRangeIterator const& it) { return HasType(it, kInterfaceType); });
  });
  addCount("Count(start, finish)", [](CConfigDescriptorSet& set) {
    return set.Count(DescriptorType(kInterfaceType), CDescriptorRange::AlwaysTrue);
  });
  auto const selector = std::make_shared<CRangeSelector>(DescriptorType(kInterfaceType),
                                                         CDescriptorRange::AlwaysTrue);
  addCount("Count(selector)",
           [selector](CConfigDescriptorSet& set) { return set.Count(*selector); });
}

}  // namespace

void AddListRows() {
  for (Input const& input : TableInputs()) {
    AddRows(input);
  }
}

}  // namespace usb_support::benchmarks
