// Measures the library and hand-written code and prints a table; see docs/performance.md.
#include <cstdio>
#include <exception>

#include <benchmark/benchmark.h>

#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
    return 2;
  }
  try {
    usb_support::benchmarks::AddWalkRows();
    usb_support::benchmarks::AddListRows();
    usb_support::benchmarks::AddRenderingRows();
    usb_support::benchmarks::AddMessageRows();
    usb_support::benchmarks::AddStatusRows();
    usb_support::benchmarks::AddEventRows();
    usb_support::benchmarks::AddVendorRows();
    usb_support::benchmarks::AddFieldRows();
    usb_support::benchmarks::AddRuleRows();
    usb_support::benchmarks::AddReportRows();
    int const missed = usb_support::benchmarks::RunRows();
    if (missed != 0) {
      std::printf("\n%d goals missed\n", missed);
      return 1;
    }
    return 0;
  } catch (std::exception const& error) {
    std::fprintf(stderr, "benchmarks: %s\n", error.what());
    return 2;
  }
}
