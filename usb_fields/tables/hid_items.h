// The items of HID report descriptors. Internal to the library.
#pragma once

#include <cstdint>
#include <span>

#include <usb_fields/table.h>

namespace usb_fields::detail {

/// The interpretation of an item's data.
enum class ItemData : std::uint8_t {
  kNone,
  kMeaning,   // as in the field's meaning
  kUnsigned,  // a number
  kSigned,    // a number in two's complement
  kMaximum,   // signed, unless the minimum of the same kind is not below 0
  kExponent,  // the low nibble, in two's complement
  kUnit,      // a nibble for each base unit
  kUsagePage,
  kUsage,  // the upper two of 4 bytes are the usage page
};

struct ItemRow {
  std::uint8_t prefix;  // without the bits for the data size
  ItemData data;
  Field field;
};

/// The names of one nibble of a unit, by system: none, SI linear, SI rotation, English linear,
/// English rotation.
struct UnitRow {
  std::uint8_t low;  // the lowest bit of the nibble
  std::string_view names[5];
};

std::span<ItemRow const> ItemRows() noexcept;
std::span<UnitRow const> UnitRows() noexcept;
std::span<Code const> UnitSystems() noexcept;

}  // namespace usb_fields::detail
