// The names that rules may use, with their layouts and rows. Internal to the library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <unordered_map>
#include <vector>

#include <usb_fields/reader.h>

namespace usb_rules::detail {

/// Layouts without a table: the facts about strings and about HID report descriptors.
enum class Pseudo : std::uint8_t {
  kText,
  kReport,
  kReportData,
  kReportMain,  ///< collections and their ends
  kReportGlobal,
  kReportLocal,
  kReportReserved,  ///< long items and items of a reserved type
  kCount,
};

/// Where a field is in a layout.
struct Slot {
  static constexpr std::uint8_t kNone = 0xFF;

  std::uint8_t row = kNone;  ///< the first row of the name
  bool repeats = false;

  bool IsThere() const noexcept { return row != kNone; }
};

/// All layouts and all names of their fields, numbered. Created once.
class Vocabulary {
 public:
  static constexpr std::uint16_t kNoName = 0xFFFF;
  static constexpr std::uint16_t kNoLayout = 0;  ///< for descriptors without a table

  static Vocabulary const& Get();

  std::size_t LayoutCount() const noexcept { return ids_.size(); }
  std::string_view LayoutId(std::uint16_t layout) const noexcept { return ids_[layout]; }
  std::string_view LayoutName(std::uint16_t layout) const noexcept { return titles_[layout]; }
  std::uint16_t LayoutOf(usb_fields::detail::Compiled const* compiled) const noexcept;
  std::uint16_t LayoutOf(Pseudo pseudo) const noexcept;

  /// The number of a name, or kNoName.
  std::uint16_t NameOf(std::string_view name) const noexcept;
  std::string_view NameText(std::uint16_t name) const noexcept { return texts_[name]; }
  Slot Find(std::uint16_t layout, std::uint16_t name) const noexcept {
    return slots_[layout * names_.size() + name];
  }
  /// The table and section that define a layout; empty for a pseudo layout.
  std::string_view LayoutSource(std::uint16_t layout) const noexcept {
    return layouts_[layout] != nullptr ? layouts_[layout]->source : std::string_view{};
  }
  /// The checks (BitOf) of each row of a layout, and those of all rows together.
  std::uint8_t const* ChecksOfRows(std::uint16_t layout) const noexcept {
    return checksOfRow_[layout].data();
  }
  unsigned ChecksOfLayout(std::uint16_t layout) const noexcept { return checks_[layout]; }
  /// The number of rows of a layout.
  std::size_t RowCount(std::uint16_t layout) const noexcept { return slotOfRow_[layout].size(); }
  /// The slot of a row: that of the first row with the same name that repeats in the same way.
  std::uint8_t SlotOfRow(std::uint16_t layout, std::uint8_t row) const noexcept {
    return slotOfRow_[layout][row];
  }
  /// The row itself; null in a pseudo layout.
  usb_fields::Field const* Field(std::uint16_t layout, std::uint8_t row) const noexcept;
  static bool Repeats(usb_fields::Field const& field) noexcept {
    return !field.extra.repeat.empty() || field.extra.group != '\0';
  }

 private:
  Vocabulary();
  std::uint16_t AddName(std::string_view name);
  void AddLayouts();
  void AddSlots(std::uint16_t layout);

  std::vector<std::string_view> ids_;
  std::vector<std::string_view> titles_;
  std::vector<usb_fields::Layout const*> layouts_;
  std::unordered_map<void const*, std::uint16_t> layoutOf_;
  std::unordered_map<std::string_view, std::uint16_t> names_;
  std::vector<std::string_view> texts_;  // of names
  std::vector<Slot> slots_;
  std::vector<std::vector<std::uint8_t>> slotOfRow_;
  std::vector<std::vector<std::uint8_t>> checksOfRow_;
  std::vector<std::uint8_t> checks_;
};

/// The names of the fields of a pseudo layout, in the order of their rows.
std::span<std::string_view const> FieldsOf(Pseudo pseudo) noexcept;

}  // namespace usb_rules::detail
