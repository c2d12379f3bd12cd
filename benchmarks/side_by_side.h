// Measures an operation of the library and a baseline side by side.
//
// Both run in turn, in short batches of equal length in time, so that whatever else the machine
// does falls on both. Each pair of neighbouring batches gives one ratio; the row shows their median
// and quartiles. Before anything is timed, both must give the same result once.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

namespace usb_support::benchmarks {

/// One row of the table.
struct Row {
  std::string operation;
  std::string input;
  std::uint64_t operations = 1;     ///< how many operations one run makes; times are for one
  std::optional<double> mostRatio;  ///< goal: the median ratio is at most this
  /// Why the goal cannot be reached here (docs/performance.md has more); the ratio is then at most
  /// `mostBoundRatio`.
  std::string bound;
  double mostBoundRatio = 0;
  std::optional<double> mostNs;   ///< goal: an operation takes at most this
  bool allocatesNothing = false;  ///< goal: the library allocates nothing
  double bytes = 0;               ///< bytes that one operation makes, for the throughput
  std::uint64_t descriptors = 0;  ///< not 0: a row of the growth table, with so many descriptors
};

/// Runs an operation so many times.
using Batch = std::function<void(std::uint64_t runs)>;

/// The loop around an operation; its result counts as used, and memory as changed between two runs.
template <typename Action>
Batch Repeat(Action action) {
  return [action](std::uint64_t runs) {
    for (; runs != 0; --runs) {
      benchmark::DoNotOptimize(action());
      benchmark::ClobberMemory();
    }
  };
}

/// Adds a row.
void AddRow(Row row, Batch library, Batch baseline);

/// Adds a row whose two sides give equal results, `same(library(), baseline())`; raises
/// std::logic_error when they do not.
template <typename Library, typename Baseline, typename Same>
void Compare(Row row, Library library, Baseline baseline, Same same) {
  if (!same(library(), baseline())) {
    throw std::logic_error("The baseline of " + row.operation + " (" + row.input +
                           ") does not do the same.");
  }
  AddRow(std::move(row), Repeat(std::move(library)), Repeat(std::move(baseline)));
}

template <typename Library, typename Baseline>
void Compare(Row row, Library library, Baseline baseline) {
  Compare(std::move(row), std::move(library), std::move(baseline), std::equal_to<>());
}

/// Measures the rows that the Google Benchmark options ask for, prints the tables, and returns how
/// many goals are missed.
int RunRows();

}  // namespace usb_support::benchmarks
