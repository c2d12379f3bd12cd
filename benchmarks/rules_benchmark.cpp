// Judging a device by the whole catalogue, compared with only reading all its fields. The goal is
// 200 us for 1 KiB of descriptors; 64 KiB in one configuration show that the time is linear.
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>

#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <usb_fields/fields.h>
#include <usb_rules/judge.h>
#include <usb_rules/test_support/sample.h>

namespace usb_support::benchmarks {
namespace {

using usb_rules::test::Bytes;
using usb_rules::test::Part;
using usb_rules::test::Sample;
using usb_rules::test::SampleOf;

constexpr double kMostNs = 200'000.0 / 1024;  // of a byte

std::size_t BytesOf(Sample const& sample) {
  std::size_t bytes = 0;
  for (std::size_t i = 0; i < sample.Count(); ++i) {
    bytes += sample.At(i).bytes.size();
  }
  return bytes;
}

std::size_t ReadAll(Sample const& sample) {
  std::size_t length = 0;
  for (std::size_t i = 0; i < sample.Count(); ++i) {
    usb_fields::Context context{.speed = usb_fields::Speed::kHigh};
    std::span<std::uint8_t const> rest(sample.At(i).bytes);
    length += rest.size();
    while (!rest.empty()) {
      usb_fields::Reading const reading = usb_fields::ReadFields(
          rest, context,
          [](usb_fields::FieldValue const& field) { benchmark::DoNotOptimize(field.value); });
      context.Follow(rest);
      rest = rest.subspan(reading.length != 0 ? reading.length : rest.size());
    }
  }
  return length;
}

void AddRowOf(std::string const& name, Sample const& original, double mostNs) {
  auto const sample = std::make_shared<Sample>(original);
  std::size_t const bytes = BytesOf(*sample);
  Compare(
      {.operation = "Judge, a byte",
       .input = name + ", " + std::to_string(bytes) + " bytes",
       .operations = bytes,
       .mostNs = mostNs},
      [sample, bytes, subject = sample->Get()] {
        benchmark::DoNotOptimize(usb_rules::Judge(subject).verdicts.size());
        return bytes;
      },
      [sample] { return ReadAll(*sample); });
}

// A keyboard whose configuration has as many interfaces and endpoints as 65,535 bytes can hold.
Sample LargestKeyboard() {
  Sample sample = SampleOf("keyboard-low");
  Bytes const more = usb_rules::test::BytesOf("09 04 00 00 01 03 00 00 00 07 05 81 03 08 00 0A");
  for (Part& part : sample.Parts()) {
    while (part.kind == "configuration" && part.bytes.size() + more.size() <= 0xFFFF) {
      part.bytes.insert(part.bytes.end(), more.begin(), more.end());
    }
  }
  return sample;
}

}  // namespace

void AddRuleRows() {
  AddRowOf("camera", SampleOf("camera-high"), kMostNs);
  AddRowOf("sound card", SampleOf("dac-high"), kMostNs);
  AddRowOf("keyboard", LargestKeyboard(), 2 * kMostNs);  // the caches of the processor are full
}

}  // namespace usb_support::benchmarks
