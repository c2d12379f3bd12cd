// The bytes as an answer of a device, read field by field, and as a HID report descriptor: every
// byte of a descriptor is visited once and in order, and every text can be printed.
#include <algorithm>
#include <array>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <tests/support/heap_bytes.h>
#include <usb_fields/fields.h>

namespace usb_support::fuzz {
namespace {

using usb_fields::BitsReader;
using usb_fields::Context;
using usb_fields::FieldValue;
using usb_fields::HidItem;
using usb_fields::Reading;
using usb_fields::testing_support::HeapBytes;

using ByteSpan = std::span<std::uint8_t const>;

void RequirePrintable(std::string_view text) {
  Require(std::ranges::all_of(
              text, [](char c) { return static_cast<unsigned char>(c) >= 0x20 && c != 0x7F; }),
          "a text can be printed");
}

std::uint64_t LittleEndian(ByteSpan bytes) {
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < std::min<std::size_t>(bytes.size(), 8); ++i) {
    value |= std::uint64_t{bytes[i]} << (8 * i);
  }
  return value;
}

class FieldsOracle {
 public:
  explicit FieldsOracle(ByteSpan bytes) : bytes_(bytes) {}

  void Take(FieldValue const& field) {
    Require(!wasCut_, "nothing comes after a field that is cut");
    RequireEqual(std::size_t{field.offset}, next_, "where a field begins");
    ByteSpan const own = field.Bytes();
    Require(own.empty() || own.data() == bytes_.data() + next_, "the bytes of a field");
    next_ += own.size();
    wasCut_ = field.IsCut();
    Require(wasCut_ == (own.size() < field.size), "a field that is cut");
    RequireEqual(field.value, LittleEndian(own), "the value of a field");
    RequirePrintable(usb_fields::TextOf(field, buffer_));
    RequirePrintable(usb_fields::NumberOf(field, buffer_));
    std::uint64_t seen = 0;
    for (BitsReader bits(field); bits.Next();) {
      usb_fields::BitsValue const& value = bits.Value();
      RequirePrintable(value.name);
      RequirePrintable(value.text);
      Require(value.low <= value.high && value.high < 64, "bits are in order");
      std::uint64_t const mask = ~std::uint64_t{0} >> (63 - (value.high - value.low));
      Require((seen & mask << value.low) == 0, "bits do not overlap");
      seen |= mask << value.low;
      RequireEqual(value.value, field.value >> value.low & mask, "the value of bits");
    }
  }

  void Finish(Reading const& reading) {
    Require(reading.length <= bytes_.size(), "a descriptor ends with its run");
    RequireEqual(std::size_t{reading.described}, next_, "the described bytes");
    RequireEqual(reading.described + reading.NotDescribed(), std::size_t{reading.length},
                 "the bytes of a descriptor");
    Require(reading.isCut == wasCut_, "a reading that is cut");
  }

 private:
  ByteSpan bytes_;
  std::size_t next_ = 0;
  bool wasCut_ = false;
  std::array<char, usb_fields::kMostText> buffer_{};
};

void CheckRun(ByteSpan run, Context context) {
  while (!run.empty()) {
    FieldsOracle oracle(run);
    oracle.Finish(usb_fields::ReadFields(
        run, context, [&oracle](FieldValue const& field) { oracle.Take(field); }));
    std::array<char, usb_fields::kMostSummary> buffer;
    RequirePrintable(usb_fields::SummaryOf(run, context, buffer));
    std::size_t const length = usb_fields::DescriptorLength(run, context);
    context.Follow(run);
    run = run.subspan(std::clamp<std::size_t>(length, 1, run.size()));
  }
}

// Every layout reads the bytes, whatever they are.
void CheckLayout(ByteSpan bytes, std::size_t layout, Context const& context) {
  FieldsOracle oracle(bytes);
  usb_fields::LayoutMatch const match{
      usb_fields::AllLayouts()[layout % usb_fields::AllLayouts().size()]};
  oracle.Finish(usb_fields::ReadFields(bytes, match, context,
                                       [&oracle](FieldValue const& field) { oracle.Take(field); }));
}

void CheckReport(ByteSpan bytes) {
  std::size_t next = 0;
  std::size_t items = 0;
  std::array<char, 256> buffer;
  for (usb_fields::HidItemReader reader(bytes); reader.Next(); ++items) {
    HidItem const& item = reader.Item();
    RequireEqual(item.offset, next, "where an item begins");
    Require(!item.bytes.empty(), "an item has bytes");
    next += item.bytes.size();
    RequirePrintable(usb_fields::HidItemText(item, buffer));
  }
  RequireEqual(next, bytes.size(), "the bytes of all items");
  usb_fields::HidReports const reports = usb_fields::ReadHidReports(bytes);
  Require(reports.fields.size() + reports.collections.size() <= items, "fields come from items");
  Require(reports.usages.size() <= items, "usages come from items");
  for (usb_fields::HidField const& field : reports.fields) {
    Require(field.firstUsage + field.usageEntries <= reports.usages.size(), "usages of a field");
    Require(field.collection < static_cast<std::int32_t>(reports.collections.size()),
            "the collection of a field");
    reports.UsageOf(field, 0);
    reports.UsageOf(field, ~std::uint32_t{0});
  }
}

}  // namespace

// Bytes: speed, request, class, subclass, protocol, a layout (2), the run.
void Fields(Input input) {
  constexpr std::size_t kFirst = 7;
  if (input.size() < kFirst || input.size() > kFirst + 0xFFFF) {
    return;
  }
  Context context{.speed = static_cast<usb_fields::Speed>(input[0] % 6),
                  .request = static_cast<usb_fields::Request>(input[1] % 8)};
  context.hasInterface = input[2] != 0;
  context.interfaceClass = input[2];
  context.interfaceSubclass = input[3];
  context.interfaceProtocol = input[4];
  HeapBytes const bytes(input.subspan(kFirst));
  std::span<std::uint8_t const> const runs[] = {bytes.Span()};
  usb_fields::GuessSpeed(runs);
  CheckRun(bytes.Span(), context);
  CheckLayout(bytes.Span(), input[5] + 256u * input[6], context);
  CheckReport(bytes.Span());
}

}  // namespace usb_support::fuzz
