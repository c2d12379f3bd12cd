// The BOS and its capabilities: USB 3.2, 9.6.2; USB PD 2.0; Billboard 1.2.2; platforms.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// USB 3.2, 9.6.2, table 9-14; usb.org, BOS descriptor types
constexpr Code kCapabilityType[] = {
    {0x00, "Reserved"},
    {0x01, "Wireless USB"},
    {0x02, "USB 2.0 Extension"},
    {0x03, "SuperSpeed USB"},
    {0x04, "Container ID"},
    {0x05, "Platform"},
    {0x06, "Power Delivery Capability"},
    {0x07, "Battery Info Capability"},
    {0x08, "PD Consumer Port Capability"},
    {0x09, "PD Provider Port Capability"},
    {0x0A, "SuperSpeedPlus"},
    {0x0B, "Precision Time Measurement"},
    {0x0C, "Wireless USB Extension"},
    {0x0D, "Billboard"},
    {0x0E, "Authentication"},
    {0x0F, "Billboard Ex (AUM)"},
    {0x10, "Configuration Summary"},
    {0x11, "FWStatus"},
    {0x12, "To be defined"},
};

// Wireless USB 1.0, 7.4.1
constexpr Bit kWirelessAttributes[] = {
    {0, "Reserved"},        {1, "P2P-DRD"},           {3, 2, "Beacon Behavior"},
    {3, 2, 0, "Reserved"},  {3, 2, 1, "Self beacon"}, {3, 2, 2, "Directed beacon"},
    {3, 2, 3, "No beacon"}, {7, 4, "Reserved"},
};

// Wireless USB 1.0, 7.4.1
constexpr Bit kWirelessPhyrates[] = {
    {0, "53.3 Mbps"}, {1, "80 Mbps"},  {2, "106.7 Mbps"}, {3, "160 Mbps"},     {4, "200 Mbps"},
    {5, "320 Mbps"},  {6, "400 Mbps"}, {7, "480 Mbps"},   {15, 8, "Reserved"},
};

// Wireless USB 1.0, 7.4.1
constexpr Bit kWirelessTxpower[] = {
    {3, 0, "Number of steps"},
    {7, 4, "Step size"},
};

// USB 2.0 ECN LPM, 3, table 3-1, with Errata; USB 3.2, 9.6.2.1, table 9-15; Errata for USB 2.0 ECN
// LPM, table X-X1
constexpr Bit kUsb2ExtensionAttributes[] = {
    {0, "Reserved"},
    {1, "LPM"},
    {2, "BESL and Alternate HIRD definitions supported"},
    {3, "Recommended Baseline BESL valid"},
    {4, "Recommended Deep BESL valid"},
    {7, 5, "Reserved"},
    {11, 8, "Recommended Baseline BESL"},
    {11, 8, 0, "125 us"},
    {11, 8, 1, "150 us"},
    {11, 8, 2, "200 us"},
    {11, 8, 3, "300 us"},
    {11, 8, 4, "400 us"},
    {11, 8, 5, "500 us"},
    {11, 8, 6, "1000 us"},
    {11, 8, 7, "2000 us"},
    {11, 8, 8, "3000 us"},
    {11, 8, 9, "4000 us"},
    {11, 8, 10, "5000 us"},
    {11, 8, 11, "6000 us"},
    {11, 8, 12, "7000 us"},
    {11, 8, 13, "8000 us"},
    {11, 8, 14, "9000 us"},
    {11, 8, 15, "10000 us"},
    {15, 12, "Recommended Deep BESL"},
    {15, 12, 0, "125 us"},
    {15, 12, 1, "150 us"},
    {15, 12, 2, "200 us"},
    {15, 12, 3, "300 us"},
    {15, 12, 4, "400 us"},
    {15, 12, 5, "500 us"},
    {15, 12, 6, "1000 us"},
    {15, 12, 7, "2000 us"},
    {15, 12, 8, "3000 us"},
    {15, 12, 9, "4000 us"},
    {15, 12, 10, "5000 us"},
    {15, 12, 11, "6000 us"},
    {15, 12, 12, "7000 us"},
    {15, 12, 13, "8000 us"},
    {15, 12, 14, "9000 us"},
    {15, 12, 15, "10000 us"},
    {31, 16, "Reserved"},
};

// USB 3.2, 9.6.2.2, table 9-16
constexpr Bit kSsAttributes[] = {
    {0, "Reserved"},
    {1, "LTM Capable"},
    {7, 2, "Reserved"},
};

// USB 3.2, 9.6.2.2, table 9-16
constexpr Bit kSsSpeeds[] = {
    {0, "Low-speed"},      {1, "Full-speed"},   {2, "High-speed"},
    {3, "Gen 1 (5 Gbps)"}, {15, 4, "Reserved"},
};

// USB 3.2, 9.6.2.2, table 9-16
constexpr Code kSsFunctionality[] = {
    {0x00, "Low-speed"},
    {0x01, "Full-speed"},
    {0x02, "High-speed"},
    {0x03, "SuperSpeed (5 Gbps)"},
};

// USB 3.2, 9.6.2.2, table 9-16
constexpr Code kU1ExitLatency[] = {
    {0x00, "Zero"},           {0x01, "Less than 1 us"},  {0x02, "Less than 2 us"},
    {0x03, "Less than 3 us"}, {0x04, "Less than 4 us"},  {0x05, "Less than 5 us"},
    {0x06, "Less than 6 us"}, {0x07, "Less than 7 us"},  {0x08, "Less than 8 us"},
    {0x09, "Less than 9 us"}, {0x0A, "Less than 10 us"}, {0x0B, 0xFF, "Reserved"},
};

// USB 3.2, 9.6.2.2, table 9-16
constexpr Code kU2ExitLatency[] = {
    {0x0000, "Zero"},
    {0x0001, 0x07FF, "Less than this number of us"},
    {0x0800, 0xFFFF, "Reserved"},
};

// WebUSB, 4.1; Microsoft OS 2.0 Descriptors, table 4
constexpr UuidName kPlatformUuid[] = {
    {"3408b638-09a9-47a0-8bfd-a0768815b665", "WebUSB"},
    {"d8dd60df-4589-4cc7-9cd2-659d9e648a9f", "Microsoft OS 2.0"},
    {"010aec63-f574-52cd-9dda-2852550d94f0", "fwupd DS20"},
};

// Microsoft OS 2.0 Descriptors
constexpr Code kMsos20WindowsVersion[] = {
    {0x06030000, "Windows 8.1 or later"},
    {0x0A000000, "Windows 10 or later"},
};

// USB PD 2.0, 9.2.1, table 9-2
constexpr Bit kPdAttributes[] = {
    {0, "Reserved"},
    {1, "Battery Charging"},
    {2, "USB Power Delivery"},
    {3, "Provider"},
    {4, "Consumer"},
    {5, "CHARGING_POLICY feature supported"},
    {6, "USB Type-C Current"},
    {7, "Reserved"},
    {8, "AC Supply"},
    {9, "Battery"},
    {10, "Other power source"},
    {13, 11, "NumBatteries"},
    {14, "Uses VBUS"},
    {31, 15, "Reserved"},
};

// USB PD 2.0, 9.2.1, table 9-2
constexpr Bit kPdPorts[] = {
    {0, "DFP 0"},   {1, "DFP 1"},   {2, "DFP 2"},   {3, "DFP 3"},   {4, "DFP 4"},   {5, "DFP 5"},
    {6, "DFP 6"},   {7, "DFP 7"},   {8, "DFP 8"},   {9, "DFP 9"},   {10, "DFP 10"}, {11, "DFP 11"},
    {12, "DFP 12"}, {13, "DFP 13"}, {14, "DFP 14"}, {15, "DFP 15"},
};

// USB PD 2.0, 9.2.3, table 9-4, and 9.2.4, table 9-5
constexpr Bit kPdPortCapabilities[] = {
    {0, "Battery Charging"},
    {1, "USB Power Delivery"},
    {2, "USB Type-C Current"},
    {15, 3, "Reserved"},
};

// USB PD 3.1, 6.4.1
constexpr Bit kPdSourcePdoFixed[] = {
    {9, 0, "Maximum Current", k10MilliAmps},
    {19, 10, "Voltage", k50MilliVolts},
    {21, 20, "Peak Current"},
    {22, "Reserved"},
    {23, "EPR Capable"},
    {24, "Unchunked Extended Messages Supported"},
    {25, "Dual-Role Data"},
    {26, "USB Communications Capable"},
    {27, "Unconstrained Power"},
    {28, "USB Suspend Supported"},
    {29, "Dual-Role Power"},
    {31, 30, "Supply type"},
    {31, 30, 0, "Fixed"},
    {31, 30, 1, "Battery"},
    {31, 30, 2, "Variable"},
    {31, 30, 3, "Augmented"},
};

// USB PD 3.1, 6.4.1
constexpr Bit kPdSourcePdoBattery[] = {
    {9, 0, "Maximum Allowable Power", k250MilliWatts},
    {19, 10, "Minimum Voltage", k50MilliVolts},
    {29, 20, "Maximum Voltage", k50MilliVolts},
    {31, 30, "Supply type"},
    {31, 30, 0, "Fixed"},
    {31, 30, 1, "Battery"},
    {31, 30, 2, "Variable"},
    {31, 30, 3, "Augmented"},
};

// USB PD 3.1, 6.4.1
constexpr Bit kPdSourcePdoVariable[] = {
    {9, 0, "Maximum Current", k10MilliAmps},
    {19, 10, "Minimum Voltage", k50MilliVolts},
    {29, 20, "Maximum Voltage", k50MilliVolts},
    {31, 30, "Supply type"},
    {31, 30, 0, "Fixed"},
    {31, 30, 1, "Battery"},
    {31, 30, 2, "Variable"},
    {31, 30, 3, "Augmented"},
};

// USB PD 3.1, 6.4.1
constexpr Bit kPdSourcePdoPps[] = {
    {6, 0, "Maximum Current", k50MilliAmps},
    {7, "Reserved"},
    {15, 8, "Minimum Voltage", k100MilliVolts},
    {16, "Reserved"},
    {24, 17, "Maximum Voltage", k100MilliVolts},
    {26, 25, "Reserved"},
    {27, "PPS Power Limited"},
    {29, 28, "APDO type"},
    {29, 28, 0, "SPR Programmable Power Supply"},
    {31, 30, "Supply type"},
    {31, 30, 0, "Fixed"},
    {31, 30, 1, "Battery"},
    {31, 30, 2, "Variable"},
    {31, 30, 3, "Augmented"},
};

// USB PD 3.1, 6.4.1
constexpr Bit kPdSourcePdoApdo[] = {
    {27, 0, "APDO fields"},
    {29, 28, "APDO type"},
    {29, 28, 1, "EPR Adjustable Voltage Supply"},
    {29, 28, 2, "SPR Adjustable Voltage Supply"},
    {29, 28, 3, "Reserved"},
    {31, 30, "Supply type"},
    {31, 30, 0, "Fixed"},
    {31, 30, 1, "Battery"},
    {31, 30, 2, "Variable"},
    {31, 30, 3, "Augmented"},
};

// USB 3.2, 9.6.2.5, table 9-19
constexpr Bit kSspAttributes[] = {
    {4, 0, "Sublink Speed Attribute Count, less 1"},
    {8, 5, "Sublink Speed ID Count, less 1"},
    {31, 9, "Reserved"},
};

// USB 3.2, 9.6.2.5, table 9-19
constexpr Bit kSspFunctionality[] = {
    {3, 0, "Sublink Speed Attribute ID"},
    {7, 4, "Reserved"},
    {11, 8, "Min Rx Lane Count"},
    {15, 12, "Min Tx Lane Count"},
};

// USB 3.2, 9.6.2.5, table 9-19
constexpr Bit kSspSublinkSpeed[] = {
    {3, 0, "Sublink Speed Attribute ID (SSID)"},
    {5, 4, "Lane Speed Exponent (LSE)"},
    {5, 4, 0, "bits per second"},
    {5, 4, 1, "Kb/s"},
    {5, 4, 2, "Mb/s"},
    {5, 4, 3, "Gb/s"},
    {7, 6, "Sublink Type (ST)"},
    {7, 6, 0, "Symmetric, Rx"},
    {7, 6, 1, "Asymmetric, Rx"},
    {7, 6, 2, "Symmetric, Tx"},
    {7, 6, 3, "Asymmetric, Tx"},
    {13, 8, "Reserved"},
    {15, 14, "Link Protocol (LP)"},
    {15, 14, 0, "SuperSpeed"},
    {15, 14, 1, "SuperSpeedPlus"},
    {15, 14, 2, "Reserved"},
    {15, 14, 3, "Reserved"},
    {31, 16, "Lane Speed Mantissa (LSM)"},
};

// Billboard 1.2.2, 3.1.6.2, table 3-6
constexpr Bit kBillboardVconn[] = {
    {2, 0, "VCONN power needed for full functionality"},
    {2, 0, 0, "1 W"},
    {2, 0, 1, "1.5 W"},
    {2, 0, 2, "2 W"},
    {2, 0, 3, "3 W"},
    {2, 0, 4, "4 W"},
    {2, 0, 5, "5 W"},
    {2, 0, 6, "6 W"},
    {2, 0, 7, "Reserved unless no power is required"},
    {14, 3, "Reserved"},
    {15, "No VCONN power required"},
};

// Billboard 1.2.2, 3.1.6.2, table 3-6
constexpr Bit kBillboardConfigured[] = {
    {1, 0, "State of mode {4i+0}"},
    {1, 0, 0, "Unspecified error"},
    {1, 0, 1, "Configuration not attempted or exited"},
    {1, 0, 2, "Configuration attempted but unsuccessful, not entered"},
    {1, 0, 3, "Configuration successful"},
    {3, 2, "State of mode {4i+1}"},
    {3, 2, 0, "Unspecified error"},
    {3, 2, 1, "Configuration not attempted or exited"},
    {3, 2, 2, "Configuration attempted but unsuccessful, not entered"},
    {3, 2, 3, "Configuration successful"},
    {5, 4, "State of mode {4i+2}"},
    {5, 4, 0, "Unspecified error"},
    {5, 4, 1, "Configuration not attempted or exited"},
    {5, 4, 2, "Configuration attempted but unsuccessful, not entered"},
    {5, 4, 3, "Configuration successful"},
    {7, 6, "State of mode {4i+3}"},
    {7, 6, 0, "Unspecified error"},
    {7, 6, 1, "Configuration not attempted or exited"},
    {7, 6, 2, "Configuration attempted but unsuccessful, not entered"},
    {7, 6, 3, "Configuration successful"},
};

// Billboard 1.2.2, 3.1.6.2, table 3-6
constexpr Bit kBillboardFailure[] = {
    {0, "Lack of power"},
    {1, "No USB PD communication"},
    {7, 2, "Reserved"},
};

// USB Type-C Authentication 1.0, Authentication Capability Descriptor
constexpr Bit kAuthenticationAttributes[] = {
    {0, "Firmware can be updated"},
    {1, "Interfaces change when updated"},
    {7, 2, "Reserved"},
};

// USB 3.2 ECN USB FW Update, 9.6.2.7, table 9-21
constexpr Bit kFwStatusAttributes[] = {
    {0, "Get FW Image Hash support"},
    {1, "Disallow FW Update support"},
    {31, 2, "Reserved"},
};

// Binary Device Object Store (BOS): USB 3.2, 9.6.2, table 9-12
constexpr Field kHeaderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"wTotalLength", 2, Dec(kBytes)},
    {"bNumDeviceCaps", 1, Dec()},
};

// Device Capability (any other): USB 3.2, 9.6.2, table 9-13
constexpr Field kCapabilityFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"Capability-Dependent", "rest", Bytes()},
};

// Wireless USB Device Capability: Wireless USB 1.0, 7.4.1
constexpr Field kWirelessUsbFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bmAttributes", 1, Bits(kWirelessAttributes)},
    {"wPHYRates", 2, Bits(kWirelessPhyrates)},
    {"bmTFITXPowerInfo", 1, Bits(kWirelessTxpower)},
    {"bmFFITXPowerInfo", 1, Bits(kWirelessTxpower)},
    {"bmBandGroup", 2, Hex()},
    {"bReserved", 1, Hex()},
};

// USB 2.0 Extension: USB 2.0 ECN LPM, 3, table 3-1, with Errata; USB 3.2, 9.6.2.1, table 9-15
constexpr Field kUsb2ExtensionFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bmAttributes", 4, Bits(kUsb2ExtensionAttributes)},
};

// SuperSpeed USB Device Capability: USB 3.2, 9.6.2.2, table 9-16
constexpr Field kSuperspeedFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bmAttributes", 1, Bits(kSsAttributes)},
    {"wSpeedsSupported", 2, Bits(kSsSpeeds)},
    {"bFunctionalitySupport", 1, Enum(kSsFunctionality)},
    {"bU1DevExitLat", 1, Enum(kU1ExitLatency)},
    {"wU2DevExitLat", 2, Enum(kU2ExitLatency)},
};

// Container ID: USB 3.2, 9.6.2.3, table 9-17
constexpr Field kContainerIdFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bReserved", 1, Hex()},
    {"ContainerID", 16, Uuid()},
};

// Platform: USB 3.2, 9.6.2.4, table 9-18
constexpr Field kPlatformFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bReserved", 1, Hex()},
    {"PlatformCapabilityUUID", 16, Uuid(kPlatformUuid)},
    {"CapabilityData", "rest", Bytes()},
};

// Platform: WebUSB: WebUSB, 4.1
constexpr Field kPlatformWebusbFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bReserved", 1, Hex()},
    {"PlatformCapabilityUUID", 16, Uuid(kPlatformUuid)},
    {"bcdVersion", 2, Bcd()},
    {"bVendorCode", 1, Hex()},
    {"iLandingPage", 1, Dec()},
};

// Platform: Microsoft OS 2.0: Microsoft OS 2.0 Descriptors, tables 4 and 5
constexpr Field kPlatformMsos20Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bReserved", 1, Hex()},
    {"MS_OS_20_Platform_Capability_ID", 16, Uuid(kPlatformUuid)},
    {"dwWindowsVersion", 4, Enum(kMsos20WindowsVersion), {.repeat = "end", .group = 'a'}},
    {"wMSOSDescriptorSetTotalLength", 2, Dec(), {.repeat = "end", .group = 'a'}},
    {"bMS_VendorCode", 1, Hex(), {.repeat = "end", .group = 'a'}},
    {"bAltEnumCode", 1, Hex(), {.repeat = "end", .group = 'a'}},
};

// Platform: fwupd DS20: fwupd BOS DS20 specification
constexpr Field kPlatformDs20Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bReserved", 1, Hex()},
    {"PlatformCapabilityUUID", 16, Uuid(kPlatformUuid)},
    {"dwVersion", 4, Hex()},
    {"wLength", 2, Dec()},
    {"bVendorCode", 1, Hex()},
    {"bAltEnumCmd", 1, Hex()},
};

// Power Delivery Capability: USB PD 2.0, 9.2.1, table 9-2
constexpr Field kPowerDeliveryFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bReserved", 1, Hex()},
    {"bmAttributes", 4, Bits(kPdAttributes)},
    {"bmProviderPorts", 2, Bits(kPdPorts)},
    {"bmConsumerPorts", 2, Bits(kPdPorts)},
    {"bcdBCVersion", 2, Bcd()},
    {"bcdPDVersion", 2, Bcd()},
    {"bcdUSBTypeCVersion", 2, Bcd()},
};

// Battery Info Capability: USB PD 2.0, 9.2.2, table 9-3
constexpr Field kBatteryInfoFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"iBattery", 1, StringIndex()},
    {"iSerial", 1, StringIndex()},
    {"iManufacturer", 1, StringIndex()},
    {"bBatteryId", 1, Dec()},
    {"bReserved", 1, Hex()},
    {"dwChargedThreshold", 4, Dec(kMilliWattHours)},
    {"dwWeakThreshold", 4, Dec(kMilliWattHours)},
    {"dwBatteryDesignCapacity", 4, Dec(kMilliWattHours)},
    {"dwBatteryLastFullchargeCapacity", 4, Dec(kMilliWattHours)},
};

// PD Consumer Port Capability: USB PD 2.0, 9.2.3, table 9-4
constexpr Field kPdConsumerPortFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bReserved", 1, Hex()},
    {"bmCapabilities", 2, Bits(kPdPortCapabilities)},
    {"wMinVoltage", 2, Dec(k50MilliVolts)},
    {"wMaxVoltage", 2, Dec(k50MilliVolts)},
    {"wReserved", 2, Hex()},
    {"dwMaxOperatingPower", 4, Dec(k10MilliWatts)},
    {"dwMaxPeakPower", 4, Dec(k10MilliWatts)},
    {"dwMaxPeakPowerTime", 4, Dec(k100Milliseconds)},
};

// PD Provider Port Capability: USB PD 2.0, 9.2.4, table 9-5
constexpr Field kPdProviderPortFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bReserved", 1, Hex()},
    {"bmCapabilities", 2, Bits(kPdPortCapabilities)},
    {"bNumOfPDObjects", 1, Dec()},
    {"bReserved", 1, Hex()},
    {"wPowerDataObject",
     4,
     Bits(kPdSourcePdoFixed),
     {.repeat = "bNumOfPDObjects", .when = "wPowerDataObject[31..30] == 0", .group = 'a'}},
    {"wPowerDataObject",
     4,
     Bits(kPdSourcePdoBattery),
     {.repeat = "bNumOfPDObjects", .when = "wPowerDataObject[31..30] == 1", .group = 'a'}},
    {"wPowerDataObject",
     4,
     Bits(kPdSourcePdoVariable),
     {.repeat = "bNumOfPDObjects", .when = "wPowerDataObject[31..30] == 2", .group = 'a'}},
    {"wPowerDataObject",
     4,
     Bits(kPdSourcePdoPps),
     {.repeat = "bNumOfPDObjects", .when = "wPowerDataObject[31..28] == 0xC", .group = 'a'}},
    {"wPowerDataObject",
     4,
     Bits(kPdSourcePdoApdo),
     {.repeat = "bNumOfPDObjects", .when = "wPowerDataObject[31..28] >= 0xD", .group = 'a'}},
};

// SuperSpeedPlus USB Device Capability: USB 3.2, 9.6.2.5, table 9-19
constexpr Field kSuperspeedPlusFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bReserved", 1, Hex()},
    {"bmAttributes", 4, Bits(kSspAttributes)},
    {"wFunctionalitySupport", 2, Bits(kSspFunctionality)},
    {"wReserved", 2, Hex()},
    {"bmSublinkSpeedAttr",
     4,
     Bits(kSspSublinkSpeed, "Attribute {3..0}: {31..16} {5..4}, {7..6}, {15..14}"),
     {.repeat = "(bmAttributes[4..0]+1)", .group = 'a'}},
};

// Precision Time Measurement: USB 3.2, 9.6.2.6, table 9-20
constexpr Field kPtmFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
};

// Wireless USB Extension: Wireless USB 1.1
constexpr Field kWirelessUsbExtFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
};

// Billboard Capability: Billboard 1.2.2, 3.1.6.2, table 3-6
constexpr Field kBillboardFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"iAddtionalInfoURL", 1, StringIndex()},
    {"bNumberOfAlternateOrUSB4Modes", 1, Dec()},
    {"bPreferredAlternateOrUSB4Mode", 1, Dec()},
    {"VCONN Power", 2, Bits(kBillboardVconn)},
    {"bmConfigured", 1, Bits(kBillboardConfigured), {.repeat = "32"}},
    {"bcdVersion", 2, Bcd()},
    {"bAdditionalFailureInfo", 1, Bits(kBillboardFailure)},
    {"bReserved", 1, Hex()},
    {"wSVID", 2, Hex(), {.repeat = "bNumberOfAlternateOrUSB4Modes", .group = 'a'}},
    {"bAlternateOrUSB4Mode", 1, Dec(), {.repeat = "bNumberOfAlternateOrUSB4Modes", .group = 'a'}},
    {"iAlternateOrUSB4ModeString",
     1,
     StringIndex(),
     {.repeat = "bNumberOfAlternateOrUSB4Modes", .group = 'a'}},
};

// Authentication Capability: USB Type-C Authentication 1.0, Authentication Capability Descriptor
constexpr Field kAuthenticationFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bmAttributes", 1, Bits(kAuthenticationAttributes)},
    {"bcdProtocolVersion", 1, Bcd()},
    {"bcdCapability", 1, Hex()},
};

// Billboard AUM Capability (Billboard Ex): Billboard 1.2.2, 3.1.6.3
constexpr Field kBillboardAumFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bIndex", 1, Dec()},
    {"dwAlternateModeVdo", 4, Hex()},
};

// Configuration Summary: USB 3.2, 9.6.2.7, table 9-21
constexpr Field kConfigurationSummaryFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bcdVersion", 2, Bcd()},
    {"bClass", 1, Enum(Names::kClass)},
    {"bSubClass", 1, Enum(Names::kSubclass)},
    {"bProtocol", 1, Enum(Names::kProtocol)},
    {"bConfigurationCount", 1, Dec()},
    {"bConfigurationIndex", 1, Dec(), {.repeat = "bConfigurationCount", .group = 'a'}},
};

// FWStatus Capability: USB 3.2 ECN USB FW Update, 9.6.2.7, table 9-21
constexpr Field kFwStatusFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bDevCapabilityType", 1, Enum(kCapabilityType)},
    {"bcdDescriptorVersion", 1, Bcd()},
    {"bmAttributes", 4, Bits(kFwStatusAttributes)},
};

constexpr Layout kLayouts[] = {
    {"bos.header", "Binary Device Object Store (BOS)", "type=0F", 5, "5", kHeaderFields,
     "USB 3.2, 9.6.2, table 9-12"},
    {"bos.capability", "Device Capability (any other)", "type=10", 3, "", kCapabilityFields,
     "USB 3.2, 9.6.2, table 9-13"},
    {"bos.wireless_usb", "Wireless USB Device Capability", "type=10 capability=01", 11, "11",
     kWirelessUsbFields, "Wireless USB 1.0, 7.4.1"},
    {"bos.usb2_extension", "USB 2.0 Extension", "type=10 capability=02", 7, "7",
     kUsb2ExtensionFields,
     "USB 2.0 ECN LPM, 3, table 3-1, with Errata; USB 3.2, 9.6.2.1, table 9-15"},
    {"bos.superspeed", "SuperSpeed USB Device Capability", "type=10 capability=03", 10, "10",
     kSuperspeedFields, "USB 3.2, 9.6.2.2, table 9-16"},
    {"bos.container_id", "Container ID", "type=10 capability=04", 20, "20", kContainerIdFields,
     "USB 3.2, 9.6.2.3, table 9-17"},
    {"bos.platform", "Platform", "type=10 capability=05", 20, "", kPlatformFields,
     "USB 3.2, 9.6.2.4, table 9-18"},
    {"bos.platform.webusb", "Platform: WebUSB",
     "type=10 capability=05 guid=3408b638-09a9-47a0-8bfd-a0768815b665", 24, "24",
     kPlatformWebusbFields, "WebUSB, 4.1"},
    {"bos.platform.msos20", "Platform: Microsoft OS 2.0",
     "type=10 capability=05 guid=d8dd60df-4589-4cc7-9cd2-659d9e648a9f", 28, "",
     kPlatformMsos20Fields, "Microsoft OS 2.0 Descriptors, tables 4 and 5"},
    {"bos.platform.ds20", "Platform: fwupd DS20",
     "type=10 capability=05 guid=010aec63-f574-52cd-9dda-2852550d94f0", 28, "28",
     kPlatformDs20Fields, "fwupd BOS DS20 specification"},
    {"bos.power_delivery", "Power Delivery Capability", "type=10 capability=06", 18, "18",
     kPowerDeliveryFields, "USB PD 2.0, 9.2.1, table 9-2"},
    {"bos.battery_info", "Battery Info Capability", "type=10 capability=07", 24, "24",
     kBatteryInfoFields, "USB PD 2.0, 9.2.2, table 9-3"},
    {"bos.pd_consumer_port", "PD Consumer Port Capability", "type=10 capability=08", 24, "24",
     kPdConsumerPortFields, "USB PD 2.0, 9.2.3, table 9-4"},
    {"bos.pd_provider_port", "PD Provider Port Capability", "type=10 capability=09", 8,
     "8+bNumOfPDObjects*4", kPdProviderPortFields, "USB PD 2.0, 9.2.4, table 9-5"},
    {"bos.superspeed_plus", "SuperSpeedPlus USB Device Capability", "type=10 capability=0A", 16,
     "12+(bmAttributes[4..0]+1)*4", kSuperspeedPlusFields, "USB 3.2, 9.6.2.5, table 9-19"},
    {"bos.ptm", "Precision Time Measurement", "type=10 capability=0B", 3, "3", kPtmFields,
     "USB 3.2, 9.6.2.6, table 9-20"},
    {"bos.wireless_usb_ext", "Wireless USB Extension", "type=10 capability=0C", 3, "",
     kWirelessUsbExtFields, "Wireless USB 1.1"},
    {"bos.billboard", "Billboard Capability", "type=10 capability=0D", 44,
     "44+bNumberOfAlternateOrUSB4Modes*4", kBillboardFields, "Billboard 1.2.2, 3.1.6.2, table 3-6"},
    {"bos.authentication", "Authentication Capability", "type=10 capability=0E", 6, "6",
     kAuthenticationFields, "USB Type-C Authentication 1.0, Authentication Capability Descriptor"},
    {"bos.billboard_aum", "Billboard AUM Capability (Billboard Ex)", "type=10 capability=0F", 8,
     "8", kBillboardAumFields, "Billboard 1.2.2, 3.1.6.3"},
    {"bos.configuration_summary", "Configuration Summary", "type=10 capability=10", 9,
     "9+bConfigurationCount", kConfigurationSummaryFields, "USB 3.2, 9.6.2.7, table 9-21"},
    {"bos.fw_status", "FWStatus Capability", "type=10 capability=11", 8, "8", kFwStatusFields,
     "USB 3.2 ECN USB FW Update, 9.6.2.7, table 9-21"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> BosTable() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
