#include <benchmarks/side_by_side.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <vector>

namespace usb_support::benchmarks {
namespace {

// From 4 KiB to 64 KiB, the cost of a byte may not grow by more.
constexpr double kMostGrowth = 1.25;
constexpr double kSizes = 65535.0 / 4096.0;

std::vector<Row>& Rows() {
  static std::vector<Row> rows;
  return rows;
}

std::string NameOf(std::string const& operation, std::string const& input) {
  std::string name = operation + "/" + input;
  std::ranges::replace(name, ' ', '_');
  return name;
}

// The processor time of this thread is measured, so the time of other programs does not count.
class Table final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(Context const& /*context*/) override { return true; }

  void ReportRuns(std::vector<Run> const& runs) override {
    for (Run const& run : runs) {
      if (run.aggregate_name == "median") {
        medians_.emplace(run.run_name.function_name, run);
      }
    }
  }

  int Print() const {
    std::puts(
        "| operation | input | library ns | baseline ns | ratio | blocks | goal | |\n"
        "|---|---|--:|--:|--:|--:|--:|---|");
    int missed = 0;
    for (Row const& row : Rows()) {
      if (medians_.contains(NameOf(row.operation, row.input) + "/library")) {
        missed += Print(row) ? 0 : 1;
      }
    }
    return missed;
  }

 private:
  double Time(std::string const& name) const {
    auto const median = medians_.find(name);
    return median == medians_.end() ? 0 : median->second.GetAdjustedCPUTime();
  }

  // True when the row reaches its goals.
  bool Print(Row const& row) const {
    std::string const name = NameOf(row.operation, row.input);
    double const ns = Time(name + "/library") / static_cast<double>(row.operations);
    double const baselineNs = Time(name + "/baseline") / static_cast<double>(row.operations);
    auto const& counters = medians_.at(name + "/library").counters;
    auto const blocks = counters.find("blocks");
    double const allocated = blocks == counters.end() ? 0 : blocks->second.value;
    bool reached = true;
    std::printf("| %s | %s | %.2f | %.2f | **%.2f** | %.0f |", row.operation.c_str(),
                row.input.c_str(), ns, baselineNs, ns / baselineNs, allocated);
    if (row.mostRatio) {
      std::printf(" %.2f x", *row.mostRatio);
      reached = ns <= *row.mostRatio * baselineNs;
    }
    if (row.mostNs) {
      std::printf(" %.0f ns", *row.mostNs);
      reached = reached && ns <= *row.mostNs;
    }
    if (row.allocatesNothing) {
      std::printf(" 0 blocks");
      reached = reached && allocated == 0;
    }
    std::printf(" |");
    double const small = Time(NameOf(row.operation, "4 KiB") + "/library");
    if (row.input == "64 KiB" && small != 0) {
      double const growth = ns / small / kSizes;
      std::printf(" growth %.2f", growth);
      reached = reached && growth <= kMostGrowth;
    }
    if (row.bytes != 0) {
      std::printf(" %.2f GB/s", row.bytes / ns);
    }
    std::printf("%s |\n", reached ? "" : " MISSED");
    return reached;
  }

  std::map<std::string, Run> medians_;
};

}  // namespace

std::string AddRow(Row row) {
  Rows().push_back(std::move(row));
  return NameOf(Rows().back().operation, Rows().back().input);
}

int RunRows() {
  Table table;
  benchmark::RunSpecifiedBenchmarks(&table);
  return table.Print();
}

}  // namespace usb_support::benchmarks
