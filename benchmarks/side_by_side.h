// Measures an operation of the library and a baseline in one program, each as a Google Benchmark
// that is repeated in turn with all others. A row compares the medians.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <optional>
#include <stdexcept>
#include <string>
#include <utility>

#include <benchmark/benchmark.h>

#include <tests/support/allocation_counter.h>

namespace usb_support::benchmarks {

/// One row of the table.
struct Row {
  std::string operation;
  std::string input;
  std::uint64_t operations = 1;          ///< the number per run; times are for one
  std::optional<double> mostRatio = {};  ///< goal: the ratio is at most this
  std::optional<double> mostNs = {};     ///< goal: an operation takes at most this
  bool allocatesNothing = false;         ///< goal: the library allocates nothing
  double bytes = 0;                      ///< the number per operation, for the throughput
};

/// Adds a row; returns the name that its benchmarks' names begin with.
std::string AddRow(Row row);

/// Adds a benchmark. The result of the action counts as used, and memory as changed between two
/// runs.
template <typename Action>
void AddBenchmark(std::string const& name, Action action) {
  auto const measure = [action](benchmark::State& state) {
    for (auto step : state) {
      static_cast<void>(step);
      benchmark::DoNotOptimize(action());
      benchmark::ClobberMemory();
    }
#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)
    state.counters["blocks"] =
        static_cast<double>(testing_support::AllocationsOf([&action] { action(); }));
#endif
  };
  benchmark::RegisterBenchmark(name.c_str(), measure)->MinTime(0.01)->Repetitions(15);
}

/// Adds a row whose two sides give equal results, `same(library(), baseline())`; throws
/// std::logic_error when they do not.
template <typename Library, typename Baseline, typename Same = std::equal_to<>>
void Compare(Row row, Library library, Baseline baseline, Same same = {}) {
  if (!same(library(), baseline())) {
    throw std::logic_error("The baseline of " + row.operation + " (" + row.input +
                           ") does not do the same.");
  }
  std::string const name = AddRow(std::move(row));
  AddBenchmark(name + "/library", std::move(library));
  AddBenchmark(name + "/baseline", std::move(baseline));
}

/// The sum of the results of `action` for each of the things.
template <typename Things, typename Action>
auto SumOver(Things things, Action action) {
  return [things = std::move(things), action] {
    std::size_t sum = 0;
    for (auto const& thing : things) {
      sum += action(thing);
    }
    return sum;
  };
}

/// Measures the rows that the Google Benchmark options select, prints the table, and returns the
/// number of missed goals.
int RunRows();

}  // namespace usb_support::benchmarks
