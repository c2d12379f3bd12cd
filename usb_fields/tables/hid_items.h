// The items of HID report descriptors. Not for other use.
#pragma once

#include <cstdint>
#include <span>

#include <usb_fields/table.h>

namespace usb_fields::detail {

/// How the data of an item is meant.
enum class ItemData : std::uint8_t {
  kNone,
  kMeaning,   // as the field's meaning says
  kUnsigned,  // a number
  kSigned,    // a number in two's complement
  kMaximum,   // signed, unless the minimum of the same kind is not below 0
  kExponent,  // the low nibble, in two's complement
  kUnit,      // a nibble for each base unit
  kUsagePage,
  kUsage,  // with 4 bytes of data the upper two are the page
};

struct ItemRow {
  std::uint8_t prefix;  // without the size
  ItemData data;
  Field field;
};

/// The names of a unit's nibble by the system: none, SI linear, SI rotation, English linear,
/// English rotation.
struct UnitRow {
  std::uint8_t low;  // the lowest bit of the nibble
  std::string_view names[5];
};

std::span<ItemRow const> ItemRows() noexcept;
std::span<UnitRow const> UnitRows() noexcept;
std::span<Code const> UnitSystems() noexcept;

}  // namespace usb_fields::detail
