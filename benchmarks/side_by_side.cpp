#include <benchmarks/side_by_side.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <ctime>
#include <map>
#include <utility>
#include <vector>

#include <benchmarks/allocations.h>

namespace usb_support::benchmarks {
namespace {

constexpr std::size_t kPairs = 61;
constexpr double kBatchNs = 400'000;

// From the smallest of these sizes on, the cost of a descriptor may not rise by more.
constexpr std::uint64_t kGrowthFrom = 100;
constexpr double kMostGrowth = 1.25;

struct Entry {
  Row row;
  Batch library;
  Batch baseline;
};

std::vector<Entry>& Entries() {
  static std::vector<Entry> entries;
  return entries;
}

std::string NameOf(Row const& row) {
  std::string name = (row.descriptors != 0 ? "growth/" : "") + row.operation + "/" + row.input;
  std::ranges::replace(name, ' ', '_');
  return name;
}

// The processor time of this thread where the system knows it, so that what other programs take is
// not measured.
double Now() {
#if defined(CLOCK_THREAD_CPUTIME_ID)
  std::timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e9 + static_cast<double>(now.tv_nsec);
#else
  return std::chrono::duration<double, std::nano>(
             std::chrono::steady_clock::now().time_since_epoch())
      .count();
#endif
}

double Nanoseconds(Batch const& batch, std::uint64_t runs) {
  double const start = Now();
  batch(runs);
  return Now() - start;
}

// How many runs fill a batch.
std::uint64_t RunsOf(Batch const& batch) {
  std::uint64_t runs = 1;
  double spent = Nanoseconds(batch, runs);
  while (spent < kBatchNs / 4) {
    runs *= 2;
    spent = Nanoseconds(batch, runs);
  }
  return std::max<std::uint64_t>(
      1, static_cast<std::uint64_t>(static_cast<double>(runs) * kBatchNs / spent));
}

double At(std::vector<double>& values, double part) {
  std::ranges::sort(values);
  return values[static_cast<std::size_t>(part * static_cast<double>(values.size() - 1) + 0.5)];
}

Allocations AllocationsOf(Batch const& batch) {
  batch(1);
  Allocations const before = AllocationsSoFar();
  batch(1);
  Allocations const after = AllocationsSoFar();
  return {after.blocks - before.blocks, after.bytes - before.bytes};
}

void Measure(benchmark::State& state, Entry const& entry) {
  std::vector<double> library;
  std::vector<double> baseline;
  std::vector<double> ratios;
  for (auto step : state) {
    static_cast<void>(step);
    auto const operations = static_cast<double>(entry.row.operations);
    std::uint64_t const libraryRuns = RunsOf(entry.library);
    std::uint64_t const baselineRuns = RunsOf(entry.baseline);
    for (std::size_t pair = 0; pair < kPairs; ++pair) {
      // Either side comes first in every other pair.
      double spent[2] = {};
      for (std::size_t const side : {pair % 2, (pair + 1) % 2}) {
        spent[side] =
            side == 0
                ? Nanoseconds(entry.library, libraryRuns) / static_cast<double>(libraryRuns)
                : Nanoseconds(entry.baseline, baselineRuns) / static_cast<double>(baselineRuns);
      }
      library.push_back(spent[0] / operations);
      baseline.push_back(spent[1] / operations);
      ratios.push_back(spent[0] / spent[1]);
    }
  }
  Allocations const allocated = AllocationsOf(entry.library);
  Allocations const baselineAllocated = AllocationsOf(entry.baseline);
  state.counters["library_ns"] = At(library, 0.5);
  state.counters["baseline_ns"] = At(baseline, 0.5);
  state.counters["ratio"] = At(ratios, 0.5);
  state.counters["ratio_q1"] = At(ratios, 0.25);
  state.counters["ratio_q3"] = At(ratios, 0.75);
  state.counters["blocks"] = static_cast<double>(allocated.blocks);
  state.counters["bytes"] = static_cast<double>(allocated.bytes);
  state.counters["baseline_blocks"] = static_cast<double>(baselineAllocated.blocks);
  state.counters["baseline_bytes"] = static_cast<double>(baselineAllocated.bytes);
}

#if defined(__GNUC__)
__attribute__((format(printf, 1, 2)))
#endif
std::string
Printed(char const* format, ...) {
  std::array<char, 256> text{};
  std::va_list arguments;
  va_start(arguments, format);
  std::vsnprintf(text.data(), text.size(), format, arguments);
  va_end(arguments);
  return text.data();
}

// Prints a row as soon as it is measured, and the growth table at the end.
class Table final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(Context const& /*context*/) override {
    std::puts(
        "| operation | input | library ns | baseline ns | ratio | quartiles | goal | allocated "
        "(baseline) | |\n|---|---|--:|--:|--:|:-:|--:|--:|---|");
    return true;
  }

  void ReportRuns(std::vector<Run> const& runs) override {
    for (Run const& run : runs) {
      Report(run);
    }
    std::fflush(stdout);
  }

  void Finalize() override {
    if (growth_.empty()) {
      return;
    }
    std::puts("\nns for each descriptor, by bytes of the run:\n");
    std::string head = "| operation |";
    std::string line = "|---|";
    for (auto const& [descriptors, input] : sizes_) {
      head += " " + input + " |";
      line += "--:|";
    }
    std::printf("%s growth |\n%s--:|\n", head.c_str(), line.c_str());
    for (std::string const& operation : growthOrder_) {
      ReportGrowth(operation);
    }
  }

  int Missed() const noexcept { return missed_; }

 private:
  void Report(Run const& run) {
    auto const entry = std::ranges::find_if(Entries(), [&run](Entry const& candidate) {
      return NameOf(candidate.row) == run.run_name.function_name;
    });
    if (entry == Entries().end()) {
      return;
    }
    Row const& row = entry->row;
    auto const counter = [&run](char const* name) { return run.counters.at(name).value; };
    if (row.descriptors != 0) {
      if (!growth_.contains(row.operation)) {
        growthOrder_.push_back(row.operation);
      }
      sizes_[row.descriptors] = row.input;
      growth_[row.operation][row.descriptors] =
          counter("library_ns") / static_cast<double>(row.descriptors);
      return;
    }
    std::string goal;
    bool reached = true;
    std::string verdict = "ok";
    if (row.mostRatio) {
      goal += Printed("%.2f x", *row.mostRatio);
      double most = *row.mostRatio;
      if (!row.bound.empty() && counter("ratio") > most) {
        most = row.mostBoundRatio;
        verdict = "bound: " + row.bound;
      }
      reached = reached && counter("ratio") <= most;
    }
    if (row.mostNs) {
      goal += Printed("%s%.0f ns", goal.empty() ? "" : ", ", *row.mostNs);
      reached = reached && counter("library_ns") <= *row.mostNs;
    }
    if (row.allocatesNothing) {
      goal += goal.empty() ? "0 B" : ", 0 B";
      reached = reached && counter("bytes") == 0;
    }
    std::string throughput;
    if (row.bytes != 0) {
      throughput = Printed(", %.2f GB/s", row.bytes / counter("library_ns"));
    }
    std::printf(
        "| %s | %s | %.2f%s | %.2f | **%.2f** | %.2f to %.2f | %s | %.0f B in %.0f (%.0f B in "
        "%.0f) | %s |\n",
        row.operation.c_str(), row.input.c_str(), counter("library_ns"), throughput.c_str(),
        counter("baseline_ns"), counter("ratio"), counter("ratio_q1"), counter("ratio_q3"),
        goal.empty() ? "none" : goal.c_str(), counter("bytes"), counter("blocks"),
        counter("baseline_bytes"), counter("baseline_blocks"),
        goal.empty() ? ""
        : reached    ? verdict.c_str()
                     : "MISSED");
    missed_ += reached ? 0 : 1;
  }

  void ReportGrowth(std::string const& operation) {
    std::string line = "| " + operation + " |";
    std::vector<double> large;
    auto const& costs = growth_.at(operation);
    for (auto const& [descriptors, input] : sizes_) {
      auto const cost = costs.find(descriptors);
      if (cost == costs.end()) {
        line += " |";
        continue;
      }
      line += Printed(" %.2f |", cost->second);
      if (descriptors >= kGrowthFrom) {
        large.push_back(cost->second);
      }
    }
    double const growth = large.empty() ? 1 : large.back() / large.front();
    bool const flat = growth <= kMostGrowth;
    std::printf("%s %.2f %s |\n", line.c_str(), growth, flat ? "ok" : "MISSED");
    missed_ += flat ? 0 : 1;
  }

  int missed_ = 0;
  std::map<std::uint64_t, std::string> sizes_;
  std::map<std::string, std::map<std::uint64_t, double>> growth_;
  std::vector<std::string> growthOrder_;
};

}  // namespace

void AddRow(Row row, Batch library, Batch baseline) {
  Entries().push_back({std::move(row), std::move(library), std::move(baseline)});
}

int RunRows() {
  for (Entry const& entry : Entries()) {
    benchmark::RegisterBenchmark(NameOf(entry.row).c_str(), Measure, entry)->Iterations(1);
  }
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return table.Missed();
}

}  // namespace usb_support::benchmarks
