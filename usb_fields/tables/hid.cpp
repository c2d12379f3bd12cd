// HID 1.11.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// HID 1.11, 7.1
constexpr Code kDescriptorType[] = {
    {0x21, "HID"},
    {0x22, "Report"},
    {0x23, "Physical"},
    {0x24, 0x2F, "Reserved"},
};

// HID 1.11, 6.2.1
constexpr Code kCountry[] = {
    {0x00, "Not Supported"},
    {0x01, "Arabic"},
    {0x02, "Belgian"},
    {0x03, "Canadian-Bilingual"},
    {0x04, "Canadian-French"},
    {0x05, "Czech Republic"},
    {0x06, "Danish"},
    {0x07, "Finnish"},
    {0x08, "French"},
    {0x09, "German"},
    {0x0A, "Greek"},
    {0x0B, "Hebrew"},
    {0x0C, "Hungary"},
    {0x0D, "International (ISO)"},
    {0x0E, "Italian"},
    {0x0F, "Japan (Katakana)"},
    {0x10, "Korean"},
    {0x11, "Latin American"},
    {0x12, "Netherlands/Dutch"},
    {0x13, "Norwegian"},
    {0x14, "Persian (Farsi)"},
    {0x15, "Poland"},
    {0x16, "Portuguese"},
    {0x17, "Russia"},
    {0x18, "Slovakia"},
    {0x19, "Spanish"},
    {0x1A, "Swedish"},
    {0x1B, "Swiss/French"},
    {0x1C, "Swiss/German"},
    {0x1D, "Switzerland"},
    {0x1E, "Taiwan"},
    {0x1F, "Turkish-Q"},
    {0x20, "UK"},
    {0x21, "US"},
    {0x22, "Yugoslavia"},
    {0x23, "Turkish-F"},
    {0x24, 0xFF, "Reserved"},
};

// HID 1.11, 6.2.3
constexpr Bit kPhysicalInfo[] = {
    {7, 5, "Bias"},          {7, 5, 0, "Not applicable"},
    {7, 5, 1, "Right hand"}, {7, 5, 2, "Left hand"},
    {7, 5, 3, "Both hands"}, {7, 5, 4, "Either hand"},
    {7, 5, 5, "Reserved"},   {7, 5, 6, "Reserved"},
    {7, 5, 7, "Reserved"},   {4, 0, "Preference (0 = most preferred)"},
};

// HID 1.11, 6.2.3
constexpr Code kDesignator[] = {
    {0x00, "None"},
    {0x01, "Hand"},
    {0x02, "Eyeball"},
    {0x03, "Eyebrow"},
    {0x04, "Eyelid"},
    {0x05, "Ear"},
    {0x06, "Nose"},
    {0x07, "Mouth"},
    {0x08, "Upper lip"},
    {0x09, "Lower lip"},
    {0x0A, "Jaw"},
    {0x0B, "Neck"},
    {0x0C, "Upper arm"},
    {0x0D, "Elbow"},
    {0x0E, "Forearm"},
    {0x0F, "Wrist"},
    {0x10, "Palm"},
    {0x11, "Thumb"},
    {0x12, "Index finger"},
    {0x13, "Middle finger"},
    {0x14, "Ring finger"},
    {0x15, "Little finger"},
    {0x16, "Head"},
    {0x17, "Shoulder"},
    {0x18, "Hip"},
    {0x19, "Waist"},
    {0x1A, "Thigh"},
    {0x1B, "Knee"},
    {0x1C, "Calf"},
    {0x1D, "Ankle"},
    {0x1E, "Foot"},
    {0x1F, "Heel"},
    {0x20, "Ball of foot"},
    {0x21, "Big toe"},
    {0x22, "Second toe"},
    {0x23, "Third toe"},
    {0x24, "Fourth toe"},
    {0x25, "Little toe"},
    {0x26, "Brow"},
    {0x27, "Cheek"},
    {0x28, 0xFF, "Reserved"},
};

// HID 1.11, 6.2.3
constexpr Bit kPhysicalFlags[] = {
    {7, 5, "Qualifier"},   {7, 5, 0, "Not applicable"}, {7, 5, 1, "Right"},  {7, 5, 2, "Left"},
    {7, 5, 3, "Both"},     {7, 5, 4, "Either"},         {7, 5, 5, "Center"}, {7, 5, 6, "Reserved"},
    {7, 5, 7, "Reserved"}, {4, 0, "Effort (0 = easy)"},
};

// HID: HID 1.11, 6.2.1
constexpr Field kHidFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bcdHID", 2, Bcd()},
    {"bCountryCode", 1, Enum(kCountry)},
    {"bNumDescriptors", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType), {.repeat = "bNumDescriptors", .group = 'a'}},
    {"wDescriptorLength", 2, Dec(kBytes), {.repeat = "bNumDescriptors", .group = 'a'}},
};

// HID Physical Descriptor Set 0: HID 1.11, 6.2.3
constexpr Field kPhysicalSet0Fields[] = {
    {"bNumber", 1, Dec()},
    {"bLength", 2, Dec(kBytes)},
};

// HID Physical Descriptor Set: HID 1.11, 6.2.3
constexpr Field kPhysicalSetFields[] = {
    {"bPhysicalInfo", 1, Bits(kPhysicalInfo)},
    {"bDesignator", 1, Enum(kDesignator), {.repeat = "end", .group = 'a'}},
    {"bFlags", 1, Bits(kPhysicalFlags), {.repeat = "end", .group = 'a'}},
};

constexpr Layout kLayouts[] = {
    {"hid.hid", "HID", "type=21 class=03", 9, "6+bNumDescriptors*3", kHidFields, "HID 1.11, 6.2.1"},
    {"hid.physical_set0", "HID Physical Descriptor Set 0", "context=physical index=00", 3, "3",
     kPhysicalSet0Fields, "HID 1.11, 6.2.3"},
    {"hid.physical_set", "HID Physical Descriptor Set", "context=physical", 1, "",
     kPhysicalSetFields, "HID 1.11, 6.2.3"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> HidTable() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
