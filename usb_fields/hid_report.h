// HID report descriptors (HID 1.11, 6.2.2): their items, and the reports that they describe.
//
//   for (HidItemReader items(bytes); items.Next();) {
//     items.Item().name;  // "Usage Page"; HidItemText has "Generic Desktop"
//   }
//   HidReports const reports = ReadHidReports(bytes);
//
// The walk over the items allocates nothing and never throws. ReadHidReports allocates only its
// result: at most a fixed number of bytes for each byte of the descriptor.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include <usb_fields/export.h>
#include <usb_fields/reader.h>

namespace usb_fields {

enum class HidItemType : std::uint8_t { kMain, kGlobal, kLocal, kReserved, kLong };

/// One item of a report descriptor.
struct HidItem {
  std::string_view name;  ///< "Usage Page"; empty for a reserved one
  HidItemType type = HidItemType::kMain;
  std::uint8_t prefix = 0;              ///< the first byte without the bits for the data size
  std::uint8_t tag = 0;                 ///< the tag of a long item
  std::size_t offset = 0;               ///< from the start of the report descriptor
  std::span<std::uint8_t const> bytes;  ///< the whole item
  std::span<std::uint8_t const> data;   ///< the bytes after the prefix
  bool isCut = false;                   ///< the descriptor ends before the item does
  std::uint32_t value = 0;              ///< the data as an unsigned number
  std::int64_t number = 0;              ///< the data, signed if the item's data is signed
  std::uint16_t usagePage = 0;          ///< the usage page at this place
  Field const* field = nullptr;         ///< its row in the tables; null for a reserved or long item

  /// The data as a field, for TextOf and BitsReader.
  ///
  /// Requires: field is not null.
  FieldValue Value() const noexcept {
    return {field, 0, 0, static_cast<std::uint16_t>(data.size()), value, ByteView(data)};
  }
};

/// Walks over the items of a report descriptor.
class HidItemReader {
 public:
  /// The caller owns the bytes.
  explicit HidItemReader(std::span<std::uint8_t const> bytes) noexcept : bytes_(bytes) {}

  /// Moves to the next item; returns false at the end. An item that is cut is the last.
  USB_FIELDS_API bool Next() noexcept;

  /// The current item.
  HidItem const& Item() const noexcept { return item_; }

 private:
  struct State {
    std::uint16_t usagePage = 0;
    bool hasNegativeLogical = false;
    bool hasNegativePhysical = false;
  };

  void ReadLong() noexcept;
  void Understand() noexcept;

  std::span<std::uint8_t const> bytes_;
  std::size_t next_ = 0;
  HidItem item_;
  State state_;
  std::array<State, 16> pushed_{};
  std::size_t depth_ = 0;
};

/// The meaning of the data of an item: "Generic Desktop", "Mouse", "Data, Variable, Relative",
/// "127", "cm^2 s^-1".
USB_FIELDS_API std::string_view HidItemText(HidItem const& item, std::span<char> buffer) noexcept;

enum class HidReportType : std::uint8_t { kInput, kOutput, kFeature };

/// Usages `first` to `last` of a page.
struct HidUsages {
  std::uint16_t page = 0;
  std::uint16_t first = 0;
  std::uint16_t last = 0;
};

struct HidCollection {
  std::uint8_t type = 0;  ///< 0: physical, 1: application ...
  HidUsages usage;
  std::int32_t parent = -1;  ///< index of the collection around it; -1: none
};

/// The field of one Input, Output or Feature item: `count` values of `bits` bits.
struct HidField {
  HidReportType type = HidReportType::kInput;
  std::uint8_t reportId = 0;    ///< 0: the descriptor has no report IDs
  std::uint32_t flags = 0;      ///< the item's data: bit 0 constant, bit 1 variable ...
  std::uint64_t bitOffset = 0;  ///< from the start of the report, including the ID byte
  std::uint32_t bits = 0;       ///< of one value
  std::uint32_t count = 0;
  std::int64_t logicalMinimum = 0;
  std::int64_t logicalMaximum = 0;
  std::int64_t physicalMinimum = 0;  ///< both 0: the same as the logical ones
  std::int64_t physicalMaximum = 0;
  std::int8_t unitExponent = 0;
  std::uint32_t unit = 0;
  std::uint32_t firstUsage = 0;    ///< index of its first entry in HidReports::usages
  std::uint32_t usageEntries = 0;  ///< number of entries of the field
  std::int32_t collection = -1;    ///< index of the collection around it; -1: none
};

struct HidReport {
  HidReportType type = HidReportType::kInput;
  std::uint8_t id = 0;     ///< 0: the descriptor has no report IDs
  std::uint64_t bits = 0;  ///< including the byte of the report ID

  std::uint64_t Bytes() const noexcept { return (bits + 7) / 8; }
};

/// A fault in a report descriptor.
struct HidProblem {
  std::size_t offset = 0;  ///< of the item
  std::string_view text;   ///< "Pop without Push"
};

/// The contents of a report descriptor.
struct HidReports {
  std::vector<HidCollection> collections;  ///< in the order in which they begin
  std::vector<HidUsages> usages;           ///< of all fields, one field after the other
  std::vector<HidField> fields;
  std::vector<HidReport> reports;  ///< in the order of their first occurrence
  std::vector<HidProblem> problems;

  /// The usage of value number `index` of a field. When there are fewer usages than values, the
  /// last usage applies to the rest. All 0 when the field has no usages.
  USB_FIELDS_API HidUsages UsageOf(HidField const& field, std::uint32_t index) const noexcept;
};

/// Reads a whole report descriptor, as far as it can be understood. Throws std::bad_alloc only.
USB_FIELDS_API HidReports ReadHidReports(std::span<std::uint8_t const> bytes);

}  // namespace usb_fields
