// Microsoft OS 1.0 and 2.0 descriptors, WebUSB.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// Microsoft OS 1.0 Descriptors
constexpr Code kMsos10Index[] = {
    {0x0004, "Extended Compat ID"},
    {0x0005, "Extended Properties"},
};

// Microsoft OS 2.0 Descriptors, table 15
constexpr Code kMsosPropertyType[] = {
    {0x0000, "Reserved"},
    {0x0001, "REG_SZ"},
    {0x0002, "REG_EXPAND_SZ"},
    {0x0003, "REG_BINARY"},
    {0x0004, "REG_DWORD_LITTLE_ENDIAN"},
    {0x0005, "REG_DWORD_BIG_ENDIAN"},
    {0x0006, "REG_LINK"},
    {0x0007, "REG_MULTI_SZ"},
};

// Microsoft OS 2.0 Descriptors, table 9
constexpr Code kMsos20DescriptorType[] = {
    {0x0000, "Set Header"},
    {0x0001, "Subset Header: Configuration"},
    {0x0002, "Subset Header: Function"},
    {0x0003, "Feature: Compatible ID"},
    {0x0004, "Feature: Registry Property"},
    {0x0005, "Feature: Minimum Resume Time"},
    {0x0006, "Feature: Model ID"},
    {0x0007, "Feature: CCGP Device"},
    {0x0008, "Feature: Vendor Revision"},
};

// Microsoft OS 2.0 Descriptors
constexpr Code kMsos20WindowsVersion[] = {
    {0x06030000, "Windows 8.1 or later"},
    {0x0A000000, "Windows 10 or later"},
};

// WebUSB, 4.3
constexpr Code kWebusbDescriptorType[] = {
    {0x03, "WEBUSB_URL"},
};

// WebUSB, 4.3.1
constexpr Code kWebusbScheme[] = {
    {0x00, "http://"},
    {0x01, "https://"},
    {0xFF, "(none)"},
};

// Microsoft OS 1.0 String: Microsoft OS 1.0 Descriptors, OS String Descriptor
constexpr Field kMsos10StringFields[] = {
    {"bLength", 1, Dec()},        {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"qwSignature", 14, Utf16()}, {"bMS_VendorCode", 1, Hex()},
    {"bPad", 1, Hex()},
};

// Microsoft OS 1.0 Extended Compat ID: Microsoft OS 1.0 Descriptors, Extended Compat ID
constexpr Field kMsos10ExtendedCompatIdFields[] = {
    {"dwLength", 4, Dec(kBytes)},
    {"bcdVersion", 2, Bcd()},
    {"wIndex", 2, Enum(kMsos10Index)},
    {"bCount", 1, Dec()},
    {"RESERVED", 7, Bytes()},
    {"bFirstInterfaceNumber", 1, Dec(), {.repeat = "bCount", .group = 'a'}},
    {"RESERVED", 1, Hex(), {.repeat = "bCount", .group = 'a'}},
    {"compatibleID", 8, Ascii(), {.repeat = "bCount", .group = 'a'}},
    {"subCompatibleID", 8, Ascii(), {.repeat = "bCount", .group = 'a'}},
    {"RESERVED", 6, Bytes(), {.repeat = "bCount", .group = 'a'}},
};

// Microsoft OS 1.0 Extended Properties: Microsoft OS 1.0 Descriptors, Extended Properties
constexpr Field kMsos10ExtendedPropertiesFields[] = {
    {"dwLength", 4, Dec(kBytes)},
    {"bcdVersion", 2, Bcd()},
    {"wIndex", 2, Enum(kMsos10Index)},
    {"wCount", 2, Dec()},
    {"dwSize", 4, Dec(), {.repeat = "wCount", .group = 'a'}},
    {"dwPropertyDataType", 4, Enum(kMsosPropertyType), {.repeat = "wCount", .group = 'a'}},
    {"wPropertyNameLength", 2, Dec(), {.repeat = "wCount", .group = 'a'}},
    {"bPropertyName", "wPropertyNameLength", Utf16(), {.repeat = "wCount", .group = 'a'}},
    {"dwPropertyDataLength", 4, Dec(), {.repeat = "wCount", .group = 'a'}},
    {"bPropertyData", "dwPropertyDataLength", Bytes(), {.repeat = "wCount", .group = 'a'}},
};

// Microsoft OS 2.0 Set Header: Microsoft OS 2.0 Descriptors, table 10
constexpr Field kMsos20SetHeaderFields[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Enum(kMsos20DescriptorType)},
    {"dwWindowsVersion", 4, Enum(kMsos20WindowsVersion)},
    {"wTotalLength", 2, Dec(kBytes)},
};

// Microsoft OS 2.0 Configuration Subset Header: Microsoft OS 2.0 Descriptors, table 11
constexpr Field kMsos20ConfigurationSubsetFields[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Enum(kMsos20DescriptorType)},
    {"bConfigurationValue", 1, Dec()},
    {"bReserved", 1, Hex()},
    {"wTotalLength", 2, Dec(kBytes)},
};

// Microsoft OS 2.0 Function Subset Header: Microsoft OS 2.0 Descriptors, table 12
constexpr Field kMsos20FunctionSubsetFields[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Enum(kMsos20DescriptorType)},
    {"bFirstInterface", 1, Dec()},
    {"bReserved", 1, Hex()},
    {"wSubsetLength", 2, Dec(kBytes)},
};

// Microsoft OS 2.0 Compatible ID: Microsoft OS 2.0 Descriptors, table 13
constexpr Field kMsos20CompatibleIdFields[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Enum(kMsos20DescriptorType)},
    {"CompatibleID", 8, Ascii()},
    {"SubCompatibleID", 8, Ascii()},
};

// Microsoft OS 2.0 Registry Property: Microsoft OS 2.0 Descriptors, table 14
constexpr Field kMsos20RegistryPropertyFields[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Enum(kMsos20DescriptorType)},
    {"wPropertyDataType", 2, Enum(kMsosPropertyType)},
    {"wPropertyNameLength", 2, Dec()},
    {"PropertyName", "wPropertyNameLength", Utf16()},
    {"wPropertyDataLength", 2, Dec()},
    {"PropertyData", "wPropertyDataLength", Bytes()},
};

// Microsoft OS 2.0 Minimum USB Recovery Time: Microsoft OS 2.0 Descriptors, table 16
constexpr Field kMsos20MinimumRecoveryTimeFields[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Enum(kMsos20DescriptorType)},
    {"bResumeRecoveryTime", 1, Dec(kMilliseconds)},
    {"bResumeSignalingTime", 1, Dec(kMilliseconds)},
};

// Microsoft OS 2.0 Model ID: Microsoft OS 2.0 Descriptors, table 17
constexpr Field kMsos20ModelIdFields[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Enum(kMsos20DescriptorType)},
    {"ModelID", 16, Uuid()},
};

// Microsoft OS 2.0 CCGP Device: Microsoft OS 2.0 Descriptors, table 18
constexpr Field kMsos20CcgpDeviceFields[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Enum(kMsos20DescriptorType)},
};

// Microsoft OS 2.0 Vendor Revision: Microsoft OS 2.0 Descriptors, table 19
constexpr Field kMsos20VendorRevisionFields[] = {
    {"wLength", 2, Dec()},
    {"wDescriptorType", 2, Enum(kMsos20DescriptorType)},
    {"VendorRevision", 2, Dec()},
};

// WebUSB URL: WebUSB, 4.3.1
constexpr Field kUrlFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kWebusbDescriptorType)},
    {"bScheme", 1, Enum(kWebusbScheme)},
    {"URL", "rest", Ascii()},
};

constexpr Layout kLayouts[] = {
    {"msos10.string", "Microsoft OS 1.0 String", "type=03 index=EE", 18, "18", kMsos10StringFields,
     "Microsoft OS 1.0 Descriptors, OS String Descriptor"},
    {"msos10.extended_compat_id", "Microsoft OS 1.0 Extended Compat ID",
     "context=msos10 wIndex=0004", 16, "16+bCount*24", kMsos10ExtendedCompatIdFields,
     "Microsoft OS 1.0 Descriptors, Extended Compat ID"},
    {"msos10.extended_properties", "Microsoft OS 1.0 Extended Properties",
     "context=msos10 wIndex=0005", 10, "", kMsos10ExtendedPropertiesFields,
     "Microsoft OS 1.0 Descriptors, Extended Properties"},
    {"msos20.set_header", "Microsoft OS 2.0 Set Header", "context=msos20 wDescriptorType=0000", 10,
     "10", kMsos20SetHeaderFields, "Microsoft OS 2.0 Descriptors, table 10"},
    {"msos20.configuration_subset", "Microsoft OS 2.0 Configuration Subset Header",
     "context=msos20 wDescriptorType=0001", 8, "8", kMsos20ConfigurationSubsetFields,
     "Microsoft OS 2.0 Descriptors, table 11"},
    {"msos20.function_subset", "Microsoft OS 2.0 Function Subset Header",
     "context=msos20 wDescriptorType=0002", 8, "8", kMsos20FunctionSubsetFields,
     "Microsoft OS 2.0 Descriptors, table 12"},
    {"msos20.compatible_id", "Microsoft OS 2.0 Compatible ID",
     "context=msos20 wDescriptorType=0003", 20, "20", kMsos20CompatibleIdFields,
     "Microsoft OS 2.0 Descriptors, table 13"},
    {"msos20.registry_property", "Microsoft OS 2.0 Registry Property",
     "context=msos20 wDescriptorType=0004", 10, "10+wPropertyNameLength+wPropertyDataLength",
     kMsos20RegistryPropertyFields, "Microsoft OS 2.0 Descriptors, table 14"},
    {"msos20.minimum_recovery_time", "Microsoft OS 2.0 Minimum USB Recovery Time",
     "context=msos20 wDescriptorType=0005", 6, "6", kMsos20MinimumRecoveryTimeFields,
     "Microsoft OS 2.0 Descriptors, table 16"},
    {"msos20.model_id", "Microsoft OS 2.0 Model ID", "context=msos20 wDescriptorType=0006", 20,
     "20", kMsos20ModelIdFields, "Microsoft OS 2.0 Descriptors, table 17"},
    {"msos20.ccgp_device", "Microsoft OS 2.0 CCGP Device", "context=msos20 wDescriptorType=0007", 4,
     "4", kMsos20CcgpDeviceFields, "Microsoft OS 2.0 Descriptors, table 18"},
    {"msos20.vendor_revision", "Microsoft OS 2.0 Vendor Revision",
     "context=msos20 wDescriptorType=0008", 6, "6", kMsos20VendorRevisionFields,
     "Microsoft OS 2.0 Descriptors, table 19"},
    {"webusb.url", "WebUSB URL", "context=webusb type=03", 3, "", kUrlFields, "WebUSB, 4.3.1"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> MicrosoftTable() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
