// Every field of every descriptor, passed to a visitor that does nothing, compared with the bare
// walk over the descriptors. The goal is in nanoseconds per field.
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include <benchmarks/inputs.h>
#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <usb_fields/fields.h>

namespace usb_support::benchmarks {
namespace {

constexpr double kMostNs = 5;

using Bytes = std::vector<unsigned char>;

// The length of all descriptors; a field costs what `visit` does and the reading.
template <typename Visit>
std::size_t Decode(Bytes const& run, Visit const& visit) {
  usb_fields::Context context{.speed = usb_fields::Speed::kHigh};
  std::span<std::uint8_t const> rest(run);
  std::size_t length = 0;
  while (!rest.empty()) {
    usb_fields::Reading const reading = usb_fields::ReadFields(rest, context, visit);
    context.Follow(rest);
    length += reading.length;
    rest = rest.subspan(reading.length);
  }
  return length;
}

std::size_t Walk(Bytes const& run) {
  std::size_t length = 0;
  while (length < run.size()) {
    length += run[length];
  }
  return length;
}

void AddRowOf(Input const& input) {
  std::uint64_t fields = 0;
  for (Bytes const& run : input.runs) {
    Decode(run, [&fields](usb_fields::FieldValue const&) { ++fields; });
  }
  if (fields == 0) {
    return;
  }
  Compare({.operation = "ReadFields, a field",
           .input = input.name,
           .operations = fields,
           .mostNs = kMostNs,
           .allocatesNothing = true},
          SumOver(input.runs,
                  [](Bytes const& run) {
                    return Decode(run, [](usb_fields::FieldValue const& field) {
                      benchmark::DoNotOptimize(field.value);
                    });
                  }),
          SumOver(input.runs, Walk));
}

}  // namespace

void AddFieldRows() {
  AddRowOf(Samples());
  AddRowOf(Captures());
}

}  // namespace usb_support::benchmarks
