// Standard descriptors and hubs: USB 2.0, chapters 9 and 11; USB 3.2, chapters 9 and 10.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// USB 2.0, 9.6.3, table 9-10
constexpr Bit kConfigAttributes[] = {
    {7, "Reserved (set to one)"},
    {6, "Self-powered"},
    {5, "Remote Wakeup"},
    {4, 0, "Reserved"},
};

// USB Feature Specification: Interface Power Management (never released)
constexpr Bit kInterfacePowerCaps[] = {
    {0, "D0 supported"},   {1, "D1 supported"},   {2, "D2 supported"}, {3, "D3 supported"},
    {4, "Wakeup from D1"}, {5, "Wakeup from D2"}, {7, 6, "Reserved"},
};

// OTG Supplement 1.3, 6.4
constexpr Bit kOtgAttributes[] = {
    {0, "SRP support"},
    {1, "HNP support"},
    {7, 2, "Reserved"},
};

// OTG and Embedded Host Supplement 2.0 (version 1.1a), 6.1, table 6-1
constexpr Bit kOtg2Attributes[] = {
    {0, "SRP support"},
    {1, "HNP support"},
    {2, "ADP support"},
    {7, 3, "Reserved"},
};

// USB 3.2, 9.6.7, table 9-27
constexpr Bit kSsCompanionBulk[] = {
    {4, 0, "MaxStreams", kPowerStreams},
    {4, 0, 0, "No streams"},
    {7, 5, "Reserved"},
};

// USB 3.2, 9.6.7, table 9-27
constexpr Bit kSsCompanionIsoch[] = {
    {1, 0, "Mult", kPlusOneBursts},
    {6, 2, "Reserved"},
    {7, "SSP ISO Companion"},
};

// USB 3.2, 9.6.7, table 9-27
constexpr Bit kSsCompanionOther[] = {
    {7, 0, "Reserved"},
};

// USB 2.0, 11.23.2.1, table 11-13
constexpr Bit kHubCharacteristics[] = {
    {1, 0, "Logical Power Switching Mode"},
    {1, 0, 0, "Ganged"},
    {1, 0, 1, "Individual"},
    {1, 0, 2, "Reserved (no power switching, USB 1.0)"},
    {1, 0, 3, "Reserved (no power switching, USB 1.0)"},
    {2, "Compound device"},
    {4, 3, "Over-current Protection Mode"},
    {4, 3, 0, "Global"},
    {4, 3, 1, "Individual port"},
    {4, 3, 2, "No over-current protection"},
    {4, 3, 3, "No over-current protection"},
    {6, 5, "TT Think Time"},
    {6, 5, 0, "At most 8 FS bit times"},
    {6, 5, 1, "At most 16 FS bit times"},
    {6, 5, 2, "At most 24 FS bit times"},
    {6, 5, 3, "At most 32 FS bit times"},
    {7, "Port Indicators Supported"},
    {15, 8, "Reserved"},
};

// USB 2.0, 11.23.2.1, table 11-13
constexpr Bit kHubDeviceRemovable[] = {
    {0, "Port {8i+0}: device is non-removable"}, {1, "Port {8i+1}: device is non-removable"},
    {2, "Port {8i+2}: device is non-removable"}, {3, "Port {8i+3}: device is non-removable"},
    {4, "Port {8i+4}: device is non-removable"}, {5, "Port {8i+5}: device is non-removable"},
    {6, "Port {8i+6}: device is non-removable"}, {7, "Port {8i+7}: device is non-removable"},
};

// USB 2.0, 11.23.2.1, table 11-13
constexpr Bit kHubPortPower[] = {
    {7, 0, "All ones (USB 1.0 compatibility)"},
};

// USB 3.2, 10.15.2.1, SuperSpeed Hub Descriptor
constexpr Bit kHubCharacteristicsSs[] = {
    {1, 0, "Logical Power Switching Mode"},
    {1, 0, 0, "Ganged"},
    {1, 0, 1, "Individual"},
    {1, 0, 2, "Reserved"},
    {1, 0, 3, "Reserved"},
    {2, "Compound device"},
    {4, 3, "Over-current Protection Mode"},
    {4, 3, 0, "Global"},
    {4, 3, 1, "Individual port"},
    {4, 3, 2, "No over-current protection"},
    {4, 3, 3, "No over-current protection"},
    {15, 5, "Reserved"},
};

// USB 3.2, 10.15.2.1, SuperSpeed Hub Descriptor
constexpr Code kHubHeaderDecodeLatency[] = {
    {0x00, "Much less than 0.1 us"},
    {0x01, "0.1 us"},
    {0x02, "0.2 us"},
    {0x03, "0.3 us"},
    {0x04, "0.4 us"},
    {0x05, "0.5 us"},
    {0x06, "0.6 us"},
    {0x07, "0.7 us"},
    {0x08, "0.8 us"},
    {0x09, "0.9 us"},
    {0x0A, "1.0 us"},
    {0x0B, 0xFF, "Reserved"},
};

// USB 2.0, 11.23.2.1, table 11-13
constexpr Bit kHubDeviceRemovable16[] = {
    {0, "Reserved"},
    {1, "Port 1: device is non-removable"},
    {2, "Port 2: device is non-removable"},
    {3, "Port 3: device is non-removable"},
    {4, "Port 4: device is non-removable"},
    {5, "Port 5: device is non-removable"},
    {6, "Port 6: device is non-removable"},
    {7, "Port 7: device is non-removable"},
    {8, "Port 8: device is non-removable"},
    {9, "Port 9: device is non-removable"},
    {10, "Port 10: device is non-removable"},
    {11, "Port 11: device is non-removable"},
    {12, "Port 12: device is non-removable"},
    {13, "Port 13: device is non-removable"},
    {14, "Port 14: device is non-removable"},
    {15, "Port 15: device is non-removable"},
};

// Device: USB 2.0, 9.6.1, table 9-8; USB 3.2, 9.6.1, table 9-11
constexpr Field kUsb2DeviceFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bcdUSB", 2, Bcd()},
    {"bDeviceClass", 1, Enum(Names::kClass)},
    {"bDeviceSubClass", 1, Enum(Names::kSubclass)},
    {"bDeviceProtocol", 1, Enum(Names::kProtocol)},
    {"bMaxPacketSize0", 1, Dec(kBytes), {.when = "speed <= high"}},
    {"bMaxPacketSize0", 1, Dec(kPowerBytes), {.when = "speed >= super"}},
    {"idVendor", 2, Hex()},
    {"idProduct", 2, Hex()},
    {"bcdDevice", 2, Bcd()},
    {"iManufacturer", 1, StringIndex()},
    {"iProduct", 1, StringIndex()},
    {"iSerialNumber", 1, StringIndex()},
    {"bNumConfigurations", 1, Dec()},
};

// Configuration: USB 2.0, 9.6.3, table 9-10; USB 3.2, 9.6.3, table 9-22
constexpr Field kUsb2ConfigurationFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"wTotalLength", 2, Dec(kBytes)},
    {"bNumInterfaces", 1, Dec()},
    {"bConfigurationValue", 1, Dec()},
    {"iConfiguration", 1, StringIndex()},
    {"bmAttributes", 1, Bits(kConfigAttributes)},
    {"bMaxPower", 1, Dec(k2MilliAmps), {.when = "speed <= high"}},
    {"bMaxPower", 1, Dec(k8MilliAmps), {.when = "speed >= super"}},
};

// Other Speed Configuration: USB 2.0, 9.6.4, table 9-11
constexpr Field kUsb2OtherSpeedConfigurationFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"wTotalLength", 2, Dec(kBytes)},
    {"bNumInterfaces", 1, Dec()},
    {"bConfigurationValue", 1, Dec()},
    {"iConfiguration", 1, StringIndex()},
    {"bmAttributes", 1, Bits(kConfigAttributes)},
    {"bMaxPower", 1, Dec(k2MilliAmps)},
};

// Device Qualifier: USB 2.0, 9.6.2, table 9-9
constexpr Field kUsb2DeviceQualifierFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bcdUSB", 2, Bcd()},
    {"bDeviceClass", 1, Enum(Names::kClass)},
    {"bDeviceSubClass", 1, Enum(Names::kSubclass)},
    {"bDeviceProtocol", 1, Enum(Names::kProtocol)},
    {"bMaxPacketSize0", 1, Dec(kBytes)},
    {"bNumConfigurations", 1, Dec()},
    {"bReserved", 1, Hex()},
};

// String: USB 2.0, 9.6.7, table 9-16; USB 3.2, 9.6.9, table 9-30
constexpr Field kUsb2StringFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bString", "rest", Utf16()},
};

// String 0: Language IDs: USB 2.0, 9.6.7, table 9-15; USB 3.2, 9.6.9, table 9-29
constexpr Field kUsb2StringZeroFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"wLANGID", 2, Enum(Names::kLanguage), {.repeat = "end", .group = 'a'}},
};

// Interface: USB 2.0, 9.6.5, table 9-12; USB 3.2, 9.6.5, table 9-24
constexpr Field kUsb2InterfaceFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bInterfaceNumber", 1, Dec()},
    {"bAlternateSetting", 1, Dec()},
    {"bNumEndpoints", 1, Dec()},
    {"bInterfaceClass", 1, Enum(Names::kClass)},
    {"bInterfaceSubClass", 1, Enum(Names::kSubclass)},
    {"bInterfaceProtocol", 1, Enum(Names::kProtocol)},
    {"iInterface", 1, StringIndex()},
};

// Endpoint: USB 2.0, 9.6.6, table 9-13; USB 3.2, 9.6.6, table 9-25
constexpr Field kUsb2EndpointFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bEndpointAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
    {"bmAttributes", 1, Bits(kEndpointAttrIsoch), {.when = "bmAttributes[1..0] == 1"}},
    {"bmAttributes",
     1,
     Bits(kEndpointAttrIntSs),
     {.when = "bmAttributes[1..0] == 3 && speed >= super"}},
    {"bmAttributes",
     1,
     Bits(kEndpointAttrInt),
     {.when = "bmAttributes[1..0] == 3 && speed <= high"}},
    {"bmAttributes", 1, Bits(kEndpointAttrOther), {.when = "bmAttributes[0..0] == 0"}},
    {"wMaxPacketSize", 2, Bits(kEndpointMaxpacketFs), {.when = "speed <= full"}},
    {"wMaxPacketSize",
     2,
     Bits(kEndpointMaxpacketHsPeriodic, "{12..11+1} x {10..0} a microframe"),
     {.when = "speed == high && bmAttributes[0..0] == 1"}},
    {"wMaxPacketSize",
     2,
     Bits(kEndpointMaxpacketFs),
     {.when = "speed == high && bmAttributes[0..0] == 0"}},
    {"wMaxPacketSize", 2, Dec(kBytes), {.when = "speed >= super"}},
    {"bInterval", 1, Dec(kMilliseconds), {.when = "bmAttributes[1..0] == 3 && speed <= full"}},
    {"bInterval",
     1,
     Dec(kPowerOfMilliseconds),
     {.when = "bmAttributes[1..0] == 1 && speed <= full"}},
    {"bInterval",
     1,
     Dec(kPowerOf125Microseconds),
     {.when = "bmAttributes[0..0] == 1 && speed >= high"}},
    {"bInterval",
     1,
     Dec(kMicroframesBetweenNaks),
     {.when = "bmAttributes[0..0] == 0 && speed == high"}},
    {"bInterval", 1, Dec(), {.when = "bmAttributes[0..0] == 0 && speed != high"}},
};

// Endpoint (Audio 1.0, MIDI 1.0): USB 2.0, 9.6.6, table 9-13; Audio 1.0, 4.6.1.1, table 4-20
constexpr Field kUsb2EndpointAudio1Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bEndpointAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
    {"bmAttributes", 1, Bits(kEndpointAttrIsoch), {.when = "bmAttributes[1..0] == 1"}},
    {"bmAttributes",
     1,
     Bits(kEndpointAttrIntSs),
     {.when = "bmAttributes[1..0] == 3 && speed >= super"}},
    {"bmAttributes",
     1,
     Bits(kEndpointAttrInt),
     {.when = "bmAttributes[1..0] == 3 && speed <= high"}},
    {"bmAttributes", 1, Bits(kEndpointAttrOther), {.when = "bmAttributes[0..0] == 0"}},
    {"wMaxPacketSize", 2, Bits(kEndpointMaxpacketFs), {.when = "speed <= full"}},
    {"wMaxPacketSize",
     2,
     Bits(kEndpointMaxpacketHsPeriodic, "{12..11+1} x {10..0} a microframe"),
     {.when = "speed == high && bmAttributes[0..0] == 1"}},
    {"wMaxPacketSize",
     2,
     Bits(kEndpointMaxpacketFs),
     {.when = "speed == high && bmAttributes[0..0] == 0"}},
    {"wMaxPacketSize", 2, Dec(kBytes), {.when = "speed >= super"}},
    {"bInterval", 1, Dec(kMilliseconds), {.when = "bmAttributes[1..0] == 3 && speed <= full"}},
    {"bInterval",
     1,
     Dec(kPowerOfMilliseconds),
     {.when = "bmAttributes[1..0] == 1 && speed <= full"}},
    {"bInterval",
     1,
     Dec(kPowerOf125Microseconds),
     {.when = "bmAttributes[0..0] == 1 && speed >= high"}},
    {"bInterval",
     1,
     Dec(kMicroframesBetweenNaks),
     {.when = "bmAttributes[0..0] == 0 && speed == high"}},
    {"bInterval", 1, Dec(), {.when = "bmAttributes[0..0] == 0 && speed != high"}},
    {"bRefresh", 1, Dec(kPowerMilliseconds)},
    {"bSynchAddress", 1, Hex()},
};

// Interface Association: USB 2.0 ECN Interface Association, table 9-Z; USB 3.2, 9.6.4, table 9-23
constexpr Field kUsb2InterfaceAssociationFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bFirstInterface", 1, Dec()},
    {"bInterfaceCount", 1, Dec()},
    {"bFunctionClass", 1, Enum(Names::kClass)},
    {"bFunctionSubClass", 1, Enum(Names::kSubclass)},
    {"bFunctionProtocol", 1, Enum(Names::kProtocol)},
    {"iFunction", 1, StringIndex()},
};

// Interface Power: USB Feature Specification: Interface Power Management (never released)
constexpr Field kUsb2InterfacePowerFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bmCapabilitiesFlags", 1, Bits(kInterfacePowerCaps)},
    {"bBusPowerSavingD1", 1, Hex()},
    {"bSelfPowerSavingD1", 1, Hex()},
    {"bBusPowerSavingD2", 1, Hex()},
    {"bSelfPowerSavingD2", 1, Hex()},
    {"bBusPowerSavingD3", 1, Hex()},
    {"bSelfPowerSavingD3", 1, Hex()},
    {"TransitionTimeFromD1", 2, Hex()},
    {"TransitionTimeFromD2", 2, Hex()},
    {"TransitionTimeFromD3", 2, Hex()},
};

// OTG (1.x): OTG Supplement 1.3, 6.4
constexpr Field kUsb2OtgFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bmAttributes", 1, Bits(kOtgAttributes)},
};

// OTG (2.0 and later): OTG and Embedded Host Supplement 2.0 (version 1.1a), 6.1, table 6-1
constexpr Field kUsb2Otg2Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bmAttributes", 1, Bits(kOtg2Attributes)},
    {"bcdOTG", 2, Bcd()},
};

// Debug: USB2 Debug Device 0.9, debug descriptor
constexpr Field kUsb2DebugFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDebugInEndpoint", 1, Hex()},
    {"bDebugOutEndpoint", 1, Hex()},
};

// eUSB2 Isochronous Endpoint Companion: USB 2.0 ECN Double Isochronous IN Bandwidth, 9.6.6.1
constexpr Field kUsb2Eusb2IsochEndpointCompanionFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"wMaxPacketSize", 2, Dec(kBytes)},
    {"dwBytesPerInterval", 4, Dec(kBytes)},
};

// SuperSpeed Endpoint Companion: USB 3.2, 9.6.7, table 9-27
constexpr Field kUsb3EndpointCompanionFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bMaxBurst", 1, Dec(kPlusOnePackets)},
    {"bmAttributes", 1, Bits(kSsCompanionBulk), {.when = "endpoint.bmAttributes[1..0] == 2"}},
    {"bmAttributes", 1, Bits(kSsCompanionIsoch), {.when = "endpoint.bmAttributes[1..0] == 1"}},
    {"bmAttributes", 1, Bits(kSsCompanionOther), {.when = "endpoint.bmAttributes[1..0] == 0"}},
    {"bmAttributes", 1, Bits(kSsCompanionOther), {.when = "endpoint.bmAttributes[1..0] == 3"}},
    {"wBytesPerInterval", 2, Dec(kBytes)},
};

// SuperSpeedPlus Isochronous Endpoint Companion: USB 3.2, 9.6.8, table 9-28
constexpr Field kUsb3SspIsochEndpointCompanionFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"wReserved", 2, Hex()},
    {"dwBytesPerInterval", 4, Dec(kBytes)},
};

// Hub: USB 2.0, 11.23.2.1, table 11-13
constexpr Field kHubUsb2Fields[] = {
    {"bDescLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bNbrPorts", 1, Dec()},
    {"wHubCharacteristics", 2, Bits(kHubCharacteristics)},
    {"bPwrOn2PwrGood", 1, Dec(k2Milliseconds)},
    {"bHubContrCurrent", 1, Dec(kMilliAmps)},
    {"DeviceRemovable", 1, Bits(kHubDeviceRemovable), {.repeat = "(bNbrPorts/8+1)", .group = 'a'}},
    {"PortPwrCtrlMask", 1, Bits(kHubPortPower), {.repeat = "(bNbrPorts/8+1)", .group = 'b'}},
};

// Enhanced SuperSpeed Hub: USB 3.2, 10.15.2.1, SuperSpeed Hub Descriptor
constexpr Field kHubUsb3Fields[] = {
    {"bDescLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bNbrPorts", 1, Dec()},
    {"wHubCharacteristics", 2, Bits(kHubCharacteristicsSs)},
    {"bPwrOn2PwrGood", 1, Dec(k2Milliseconds)},
    {"bHubContrCurrent", 1, Dec(k4MilliAmps)},
    {"bHubHdrDecLat", 1, Enum(kHubHeaderDecodeLatency)},
    {"wHubDelay", 2, Dec(kNanoseconds)},
    {"DeviceRemovable", 2, Bits(kHubDeviceRemovable16)},
};

constexpr Layout kLayouts[] = {
    {"usb2.device", "Device", "type=01", 18, "18", kUsb2DeviceFields,
     "USB 2.0, 9.6.1, table 9-8; USB 3.2, 9.6.1, table 9-11"},
    {"usb2.configuration", "Configuration", "type=02", 9, "9", kUsb2ConfigurationFields,
     "USB 2.0, 9.6.3, table 9-10; USB 3.2, 9.6.3, table 9-22"},
    {"usb2.other_speed_configuration", "Other Speed Configuration", "type=07", 9, "9",
     kUsb2OtherSpeedConfigurationFields, "USB 2.0, 9.6.4, table 9-11"},
    {"usb2.device_qualifier", "Device Qualifier", "type=06", 10, "10", kUsb2DeviceQualifierFields,
     "USB 2.0, 9.6.2, table 9-9"},
    {"usb2.string", "String", "type=03", 2, "2+(bLength-2)/2*2", kUsb2StringFields,
     "USB 2.0, 9.6.7, table 9-16; USB 3.2, 9.6.9, table 9-30"},
    {"usb2.string_zero", "String 0: Language IDs", "type=03 index=00", 2, "2+(bLength-2)/2*2",
     kUsb2StringZeroFields, "USB 2.0, 9.6.7, table 9-15; USB 3.2, 9.6.9, table 9-29"},
    {"usb2.interface", "Interface", "type=04", 9, "9", kUsb2InterfaceFields,
     "USB 2.0, 9.6.5, table 9-12; USB 3.2, 9.6.5, table 9-24"},
    {"usb2.endpoint", "Endpoint", "type=05", 7, "7", kUsb2EndpointFields,
     "USB 2.0, 9.6.6, table 9-13; USB 3.2, 9.6.6, table 9-25"},
    {"usb2.endpoint.audio1", "Endpoint (Audio 1.0, MIDI 1.0)",
     "type=05 class=01 protocol=00 bLength=09", 9, "9", kUsb2EndpointAudio1Fields,
     "USB 2.0, 9.6.6, table 9-13; Audio 1.0, 4.6.1.1, table 4-20"},
    {"usb2.interface_association", "Interface Association", "type=0B", 8, "8",
     kUsb2InterfaceAssociationFields,
     "USB 2.0 ECN Interface Association, table 9-Z; USB 3.2, 9.6.4, table 9-23"},
    {"usb2.interface_power", "Interface Power", "type=08", 15, "15", kUsb2InterfacePowerFields,
     "USB Feature Specification: Interface Power Management (never released)"},
    {"usb2.otg", "OTG (1.x)", "type=09 bLength=03", 3, "3", kUsb2OtgFields,
     "OTG Supplement 1.3, 6.4"},
    {"usb2.otg2", "OTG (2.0 and later)", "type=09 bLength=05", 5, "5", kUsb2Otg2Fields,
     "OTG and Embedded Host Supplement 2.0 (version 1.1a), 6.1, table 6-1"},
    {"usb2.debug", "Debug", "type=0A", 4, "4", kUsb2DebugFields,
     "USB2 Debug Device 0.9, debug descriptor"},
    {"usb2.eusb2_isoch_endpoint_companion", "eUSB2 Isochronous Endpoint Companion", "type=12", 8,
     "8", kUsb2Eusb2IsochEndpointCompanionFields,
     "USB 2.0 ECN Double Isochronous IN Bandwidth, 9.6.6.1"},
    {"usb3.endpoint_companion", "SuperSpeed Endpoint Companion", "type=30", 6, "6",
     kUsb3EndpointCompanionFields, "USB 3.2, 9.6.7, table 9-27"},
    {"usb3.ssp_isoch_endpoint_companion", "SuperSpeedPlus Isochronous Endpoint Companion",
     "type=31", 8, "8", kUsb3SspIsochEndpointCompanionFields, "USB 3.2, 9.6.8, table 9-28"},
    {"hub.usb2", "Hub", "type=29", 9, "7+(bNbrPorts/8+1)*2", kHubUsb2Fields,
     "USB 2.0, 11.23.2.1, table 11-13"},
    {"hub.usb3", "Enhanced SuperSpeed Hub", "type=2A", 12, "12", kHubUsb3Fields,
     "USB 3.2, 10.15.2.1, SuperSpeed Hub Descriptor"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> FrameworkTable() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
