// Items of report descriptors: HID 1.11, 6.2.2.
#include <usb_fields/tables/hid_items.h>

#include <usb_fields/compile.h>

namespace usb_fields::detail {
namespace {

// HID 1.11, 6.2.2.5
constexpr Bit kInput[] = {
    {0, 0, "Data or Constant"},   {0, 0, 0, "Data"},
    {0, 0, 1, "Constant"},        {1, 1, "Array or Variable"},
    {1, 1, 0, "Array"},           {1, 1, 1, "Variable"},
    {2, 2, "Coordinates"},        {2, 2, 0, "Absolute"},
    {2, 2, 1, "Relative"},        {3, 3, "Wrapping"},
    {3, 3, 0, "No Wrap"},         {3, 3, 1, "Wrap"},
    {4, 4, "Linearity"},          {4, 4, 0, "Linear"},
    {4, 4, 1, "Nonlinear"},       {5, 5, "Preference"},
    {5, 5, 0, "Preferred State"}, {5, 5, 1, "No Preferred"},
    {6, 6, "Null position"},      {6, 6, 0, "No Null position"},
    {6, 6, 1, "Null state"},      {7, "Reserved"},
    {8, 8, "Unit of the data"},   {8, 8, 0, "Bit Field"},
    {8, 8, 1, "Buffered Bytes"},  {31, 9, "Reserved"},
};
static_assert((CheckBits(kInput, 32), true));

// HID 1.11, 6.2.2.5: Output and Feature
constexpr Bit kOutput[] = {
    {0, 0, "Data or Constant"},   {0, 0, 0, "Data"},
    {0, 0, 1, "Constant"},        {1, 1, "Array or Variable"},
    {1, 1, 0, "Array"},           {1, 1, 1, "Variable"},
    {2, 2, "Coordinates"},        {2, 2, 0, "Absolute"},
    {2, 2, 1, "Relative"},        {3, 3, "Wrapping"},
    {3, 3, 0, "No Wrap"},         {3, 3, 1, "Wrap"},
    {4, 4, "Linearity"},          {4, 4, 0, "Linear"},
    {4, 4, 1, "Nonlinear"},       {5, 5, "Preference"},
    {5, 5, 0, "Preferred State"}, {5, 5, 1, "No Preferred"},
    {6, 6, "Null position"},      {6, 6, 0, "No Null position"},
    {6, 6, 1, "Null state"},      {7, 7, "Volatility"},
    {7, 7, 0, "Non Volatile"},    {7, 7, 1, "Volatile"},
    {8, 8, "Unit of the data"},   {8, 8, 0, "Bit Field"},
    {8, 8, 1, "Buffered Bytes"},  {31, 9, "Reserved"},
};
static_assert((CheckBits(kOutput, 32), true));

// HID 1.11, 6.2.2.6
constexpr Code kCollection[] = {
    {0x00, "Physical"},       {0x01, "Application"},    {0x02, "Logical"},
    {0x03, "Report"},         {0x04, "Named Array"},    {0x05, "Usage Switch"},
    {0x06, "Usage Modifier"}, {0x07, 0x7F, "Reserved"}, {0x80, 0xFF, "Vendor-defined"},
};
static_assert((CheckCodes(kCollection, 8), true));

// HID 1.11, 6.2.2.8
constexpr Code kDelimiter[] = {
    {0x00, "Close set"},
    {0x01, "Open set"},
};

// HID 1.11, 6.2.2.4 to 6.2.2.8
constexpr ItemRow kItems[] = {
    {0x80, ItemData::kMeaning, {"Input", 4, Bits(kInput)}},
    {0x90, ItemData::kMeaning, {"Output", 4, Bits(kOutput)}},
    {0xB0, ItemData::kMeaning, {"Feature", 4, Bits(kOutput)}},
    {0xA0, ItemData::kMeaning, {"Collection", 4, Enum(kCollection)}},
    {0xC0, ItemData::kNone, {"End Collection", 4, Hex()}},
    {0x04, ItemData::kUsagePage, {"Usage Page", 4, Hex()}},
    {0x14, ItemData::kSigned, {"Logical Minimum", 4, Signed()}},
    {0x24, ItemData::kMaximum, {"Logical Maximum", 4, Signed()}},
    {0x34, ItemData::kSigned, {"Physical Minimum", 4, Signed()}},
    {0x44, ItemData::kMaximum, {"Physical Maximum", 4, Signed()}},
    {0x54, ItemData::kExponent, {"Unit Exponent", 4, Signed()}},
    {0x64, ItemData::kUnit, {"Unit", 4, Hex()}},
    {0x74, ItemData::kUnsigned, {"Report Size", 4, Dec()}},
    {0x84, ItemData::kUnsigned, {"Report ID", 4, Dec()}},
    {0x94, ItemData::kUnsigned, {"Report Count", 4, Dec()}},
    {0xA4, ItemData::kNone, {"Push", 4, Hex()}},
    {0xB4, ItemData::kNone, {"Pop", 4, Hex()}},
    {0x08, ItemData::kUsage, {"Usage", 4, Hex()}},
    {0x18, ItemData::kUsage, {"Usage Minimum", 4, Hex()}},
    {0x28, ItemData::kUsage, {"Usage Maximum", 4, Hex()}},
    {0x38, ItemData::kUnsigned, {"Designator Index", 4, Dec()}},
    {0x48, ItemData::kUnsigned, {"Designator Minimum", 4, Dec()}},
    {0x58, ItemData::kUnsigned, {"Designator Maximum", 4, Dec()}},
    {0x78, ItemData::kUnsigned, {"String Index", 4, Dec()}},
    {0x88, ItemData::kUnsigned, {"String Minimum", 4, Dec()}},
    {0x98, ItemData::kUnsigned, {"String Maximum", 4, Dec()}},
    {0xA8, ItemData::kMeaning, {"Delimiter", 4, Enum(kDelimiter)}},
};

// HID 1.11, 6.2.2.7, table of the unit's nibbles
constexpr UnitRow kUnits[] = {
    {4, {"", "cm", "rad", "in", "deg"}}, {8, {"", "g", "g", "slug", "slug"}},
    {12, {"", "s", "s", "s", "s"}},      {16, {"", "K", "K", "F", "F"}},
    {20, {"", "A", "A", "A", "A"}},      {24, {"", "cd", "cd", "cd", "cd"}},
};

constexpr Code kUnitSystems[] = {
    {0x0, "None"},           {0x1, "SI Linear"},        {0x2, "SI Rotation"},
    {0x3, "English Linear"}, {0x4, "English Rotation"}, {0x5, 0xE, "Reserved"},
    {0xF, "Vendor-defined"},
};
static_assert((CheckCodes(kUnitSystems, 4), true));

}  // namespace

std::span<ItemRow const> ItemRows() noexcept {
  return kItems;
}

std::span<UnitRow const> UnitRows() noexcept {
  return kUnits;
}

std::span<Code const> UnitSystems() noexcept {
  return kUnitSystems;
}

}  // namespace usb_fields::detail
