// Wireless USB 1.0.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// Wireless USB 1.0, 7.4
constexpr Code kWusbEncryptionType[] = {
    {0x00, "UNSECURE"}, {0x01, "WIRED"}, {0x02, "CCM_1"}, {0x03, "RSA_1"}, {0x04, 0xFF, "Reserved"},
};

// Wireless USB 1.0, 7.4
constexpr Bit kWusbCompAttributes[] = {
    {1, 0, "Dynamic switching"}, {1, 0, 0, "No"},    {1, 0, 1, "Switch"},
    {1, 0, 2, "Scale"},          {7, 2, "Reserved"},
};

// Wireless USB 1.0, chapter 8
constexpr Code kWusbWireAdapterType[] = {
    {0x21, "Wire Adapter"},
    {0x22, "RPipe"},
    {0x23, "Radio Control Interface"},
};

// Wireless USB 1.0, 8.5.2.11
constexpr Bit kWusbRpipeCharacteristics[] = {
    {0, "Control"}, {1, "Isochronous"}, {2, "Bulk"}, {3, "Interrupt"}, {7, 4, "Reserved"},
};

// Security: Wireless USB 1.0, 7.4
constexpr Field kSecurityFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"wTotalLength", 2, Dec(kBytes)},
    {"bNumEncryptionTypes", 1, Dec()},
};

// Key: Wireless USB 1.0, 7.4
constexpr Field kKeyFields[] = {
    {"bLength", 1, Dec()},        {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"tTKID", 3, Bytes()},        {"bReserved", 1, Hex()},
    {"KeyData", "rest", Bytes()},
};

// Encryption Type: Wireless USB 1.0, 7.4
constexpr Field kEncryptionTypeFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bEncryptionType", 1, Enum(kWusbEncryptionType)},
    {"bEncryptionValue", 1, Dec()},
    {"bAuthKeyIndex", 1, Dec()},
};

// Wireless Endpoint Companion: Wireless USB 1.0, 7.4
constexpr Field kEndpointCompanionFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bMaxBurst", 1, Dec()},
    {"bMaxSequence", 1, Dec()},
    {"wMaxStreamDelay", 2, Dec()},
    {"wOverTheAirPacketSize", 2, Dec(kBytes)},
    {"bOverTheAirInterval", 1, Dec()},
    {"bmCompAttributes", 1, Bits(kWusbCompAttributes)},
};

// Wire Adapter: Wireless USB 1.0, 8.5.2.7
constexpr Field kWireAdapterFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kWusbWireAdapterType)},
    {"bcdWAVersion", 2, Bcd()},
    {"bNumPorts", 1, Dec()},
    {"bmAttributes", 1, Hex()},
    {"wNumRPipes", 2, Dec()},
    {"wRPipeMaxBlock", 2, Dec()},
    {"bRPipeBlockSize", 1, Dec()},
    {"bPwrOn2PwrGood", 1, Dec(k2Milliseconds)},
    {"bNumMMCIEs", 1, Dec()},
    {"DeviceRemovable", "rest", Bytes()},
};

// RPipe: Wireless USB 1.0, 8.5.2.11
constexpr Field kRpipeFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kWusbWireAdapterType)},
    {"wRPipeIndex", 2, Dec()},
    {"wRequests", 2, Dec()},
    {"wBlocks", 2, Dec()},
    {"wMaxPacketSize", 2, Dec()},
    {"bMaxBurst", 1, Dec(), {.when = "protocol == 1"}},
    {"bHSHubAddress", 1, Dec(), {.when = "protocol != 1"}},
    {"bDeviceInfoIndex", 1, Dec(), {.when = "protocol == 1"}},
    {"bHSHubPort", 1, Dec(), {.when = "protocol != 1"}},
    {"bSpeed", 1, Hex()},
    {"bReserved", 1, Hex(), {.when = "protocol == 1"}},
    {"bDeviceAddress", 1, Dec(), {.when = "protocol != 1"}},
    {"bEndpointAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
    {"bDataSequence", 1, Dec()},
    {"dwCurrentWindow", 4, Hex()},
    {"bMaxDataSequence", 1, Dec()},
    {"bInterval", 1, Dec()},
    {"bOverTheAirInterval", 1, Dec()},
    {"bmAttribute", 1, Hex()},
    {"bmCharacteristics", 1, Bits(kWusbRpipeCharacteristics)},
    {"bmRetryOptions", 1, Hex()},
    {"wNumTransactionErrors", 2, Dec()},
};

// Radio Control Interface: Wireless USB 1.0, 8.6.1.2
constexpr Field kRadioControlFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kWusbWireAdapterType)},
    {"bcdRCIVersion", 2, Bcd()},
};

constexpr Layout kLayouts[] = {
    {"wusb.security", "Security", "type=0C", 5, "5", kSecurityFields, "Wireless USB 1.0, 7.4"},
    {"wusb.key", "Key", "type=0D", 6, "", kKeyFields, "Wireless USB 1.0, 7.4"},
    {"wusb.encryption_type", "Encryption Type", "type=0E", 5, "5", kEncryptionTypeFields,
     "Wireless USB 1.0, 7.4"},
    {"wusb.endpoint_companion", "Wireless Endpoint Companion", "type=11", 10, "10",
     kEndpointCompanionFields, "Wireless USB 1.0, 7.4"},
    {"wusb.wire_adapter", "Wire Adapter", "type=21 class=E0 subclass=02", 14, "",
     kWireAdapterFields, "Wireless USB 1.0, 8.5.2.7"},
    {"wusb.rpipe", "RPipe", "type=22 class=E0 subclass=02", 28, "28", kRpipeFields,
     "Wireless USB 1.0, 8.5.2.11"},
    {"wusb.radio_control", "Radio Control Interface", "type=23 class=E0 subclass=01 protocol=02", 4,
     "4", kRadioControlFields, "Wireless USB 1.0, 8.6.1.2"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> WirelessTable() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
