// GetStatusDetail of every known code in a random order, beside the same code over and over: the
// ratio shows what the order costs, so a text found by a chain of branches would stand out.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <random>
#include <string_view>
#include <vector>

#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <usb_support/status/status_text.h>

namespace usb_support::benchmarks {
namespace {

constexpr std::size_t kCalls = 4096;
constexpr double kMostNs = 5;

// More than a sequence of branches that a core can learn.
std::vector<RETURN_CODE> KnownCodesInRandomOrder() {
  constexpr char kUnknown[] = "unknown";
  std::vector<RETURN_CODE> known;
  for (std::uint32_t code = 0x80000000; code < 0x80009000; ++code) {
    if (GetStatusDetail(static_cast<RETURN_CODE>(code), kUnknown) != kUnknown) {
      known.push_back(static_cast<RETURN_CODE>(code));
    }
  }
  std::mt19937 engine(1);
  std::vector<RETURN_CODE> codes;
  while (codes.size() < kCalls) {
    codes.push_back(known[engine() % known.size()]);
  }
  return codes;
}

}  // namespace

void AddStatusRows() {
  std::vector<RETURN_CODE> const codes = KnownCodesInRandomOrder();
  auto const hasText = [](RETURN_CODE code) {
    return GetStatusDetail(code, nullptr) != nullptr ? 1u : 0u;
  };
  Compare({.operation = "GetStatusDetail",
           .input = "known codes in random order, beside one code",
           .operations = kCalls,
           .mostNs = kMostNs,
           .allocatesNothing = true},
          SumOver(codes, hasText),
          SumOver(std::vector<RETURN_CODE>(kCalls, codes.front()), hasText));
}

}  // namespace usb_support::benchmarks
