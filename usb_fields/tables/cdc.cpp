// CDC 1.2 and its subclasses.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// CDC 1.2, 5.2.3, table 12
constexpr Code kCsType[] = {
    {0x24, "CS_INTERFACE"},
    {0x25, "CS_ENDPOINT"},
};

// CDC 1.2, 5.2.3, table 13; CDC MBIM 1.0, 6.4
constexpr Code kSubtype[] = {
    {0x00, "Header"},
    {0x01, "Call Management"},
    {0x02, "Abstract Control Management"},
    {0x03, "Direct Line Management"},
    {0x04, "Telephone Ringer"},
    {0x05, "Telephone Call and Line State Reporting Capabilities"},
    {0x06, "Union"},
    {0x07, "Country Selection"},
    {0x08, "Telephone Operational Modes"},
    {0x09, "USB Terminal"},
    {0x0A, "Network Channel Terminal"},
    {0x0B, "Protocol Unit"},
    {0x0C, "Extension Unit"},
    {0x0D, "Multi-Channel Management"},
    {0x0E, "CAPI Control Management"},
    {0x0F, "Ethernet Networking"},
    {0x10, "ATM Networking"},
    {0x11, "Wireless Handset Control Model"},
    {0x12, "Mobile Direct Line Model"},
    {0x13, "MDLM Detail"},
    {0x14, "Device Management Model"},
    {0x15, "OBEX"},
    {0x16, "Command Set"},
    {0x17, "Command Set Detail"},
    {0x18, "Telephone Control Model"},
    {0x19, "OBEX Service Identifier"},
    {0x1A, "NCM"},
    {0x1B, "MBIM"},
    {0x1C, "MBIM Extended"},
    {0x80, 0xFE, "Vendor specific"},
};

// CDC PSTN 1.2, 5.3.1, table 3
constexpr Bit kCallManagementCapabilities[] = {
    {0, "Device handles call management itself"},
    {1, "Call management over a Data Class interface"},
    {7, 2, "Reserved"},
};

// CDC PSTN 1.2, 5.3.2, table 4
constexpr Bit kAbstractControlCapabilities[] = {
    {0, "Set_Comm_Feature, Clear_Comm_Feature, Get_Comm_Feature"},
    {1, "Set_Line_Coding, Set_Control_Line_State, Get_Line_Coding, Serial_State"},
    {2, "Send_Break"},
    {3, "Network_Connection"},
    {7, 4, "Reserved"},
};

// CDC PSTN 1.2, 5.3.3, table 5
constexpr Bit kDirectLineCapabilities[] = {
    {0, "Pulse_Setup, Send_Pulse, Set_Pulse_Time"},
    {1, "Set_Aux_Line_State, Ring_Aux_Jack, Aux_Jack_Hook_State"},
    {2, "Extra Pulse_Setup request required"},
    {7, 3, "Reserved"},
};

// CDC PSTN 1.2, 5.3.6, table 8
constexpr Bit kCallLineStateCapabilities[] = {
    {0, "Interrupted dialtone"},
    {1, "Ringback, busy and fast busy"},
    {2, "Caller ID"},
    {3, "Incoming distinctive ringing patterns"},
    {4, "Remote DTMF digits"},
    {5, "Line state change notification"},
    {31, 6, "Reserved"},
};

// CDC PSTN 1.2, 5.3.5, table 7
constexpr Bit kTelephoneOperationalModes[] = {
    {0, "Simple mode"},
    {1, "Standalone mode"},
    {2, "Computer centric mode"},
    {7, 3, "Reserved"},
};

// CDC 1.1, 5.2.3.10, table 35 (CDC ISDN 1.2)
constexpr Bit kUsbTerminalOptions[] = {
    {0, "Protocol wrapper used"},
    {7, 1, "Reserved"},
};

// CDC 1.1, 5.2.3.11, table 36 (CDC ISDN 1.2)
constexpr Code kPhysicalInterface[] = {
    {0x00, "None"},
    {0x01, "ISDN"},
    {0xC9, 0xFF, "Vendor specific"},
};

// CDC 1.2, 4.7, table 7; CDC NCM 1.0, 4.3
constexpr Code kDataProtocol[] = {
    {0x00, "No class specific protocol"},
    {0x01, "Network Transfer Block (NCM)"},
    {0x02, "Network Transfer Block (MBIM)"},
    {0x30, "Physical interface protocol for ISDN BRI (I.430)"},
    {0x31, "HDLC"},
    {0x32, "Transparent"},
    {0x50, "Management protocol for Q.921 (Q.921M)"},
    {0x51, "Data link protocol for Q.931 (Q.921)"},
    {0x52, "TEI-multiplexor for Q.921 (Q.921TM)"},
    {0x90, "V.42bis data compression"},
    {0x91, "Euro-ISDN protocol control (Q.931)"},
    {0x92, "V.24 rate adaptation to ISDN (V.120)"},
    {0x93, "CAPI 2.0 commands"},
    {0xFD, "Host based driver"},
    {0xFE, "Protocol Unit Functional Descriptors"},
    {0xFF, "Vendor specific"},
};

// CDC 1.1, 5.2.3.14, table 39 (CDC ISDN 1.2)
constexpr Bit kMultiChannelCapabilities[] = {
    {0, "Unit parameters in non-volatile memory"},
    {1, "Clear_Unit_Parameter"},
    {2, "Set_Unit_Parameter"},
    {7, 3, "Reserved"},
};

// CDC 1.1, 5.2.3.15, table 40 (CDC ISDN 1.2)
constexpr Bit kCapiCapabilities[] = {
    {0, 0, "CAPI profile"},
    {0, 0, 0, "Simple CAPI device"},
    {0, 0, 1, "Intelligent CAPI device"},
    {7, 1, "Reserved"},
};

// CDC ECM 1.2, 5.4, table 4
constexpr Bit kEthernetStatistics[] = {
    {0, "XMIT_OK"},
    {1, "RCV_OK"},
    {2, "XMIT_ERROR"},
    {3, "RCV_ERROR"},
    {4, "RCV_NO_BUFFER"},
    {5, "DIRECTED_BYTES_XMIT"},
    {6, "DIRECTED_FRAMES_XMIT"},
    {7, "MULTICAST_BYTES_XMIT"},
    {8, "MULTICAST_FRAMES_XMIT"},
    {9, "BROADCAST_BYTES_XMIT"},
    {10, "BROADCAST_FRAMES_XMIT"},
    {11, "DIRECTED_BYTES_RCV"},
    {12, "DIRECTED_FRAMES_RCV"},
    {13, "MULTICAST_BYTES_RCV"},
    {14, "MULTICAST_FRAMES_RCV"},
    {15, "BROADCAST_BYTES_RCV"},
    {16, "BROADCAST_FRAMES_RCV"},
    {17, "RCV_CRC_ERROR"},
    {18, "TRANSMIT_QUEUE_LENGTH"},
    {19, "RCV_ERROR_ALIGNMENT"},
    {20, "XMIT_ONE_COLLISION"},
    {21, "XMIT_MORE_COLLISIONS"},
    {22, "XMIT_DEFERRED"},
    {23, "XMIT_MAX_COLLISIONS"},
    {24, "RCV_OVERRUN"},
    {25, "XMIT_UNDERRUN"},
    {26, "XMIT_HEARTBEAT_FAILURE"},
    {27, "XMIT_TIMES_CRS_LOST"},
    {28, "XMIT_LATE_COLLISIONS"},
    {31, 29, "Reserved"},
};

// CDC ECM 1.2, 5.4, table 3
constexpr Bit kMulticastFilters[] = {
    {14, 0, "Number of multicast address filters"},
    {15, 15, "Filtering"},
    {15, 15, 0, "Perfect multicast address filtering"},
    {15, 15, 1, "Imperfect multicast address filtering (hashing)"},
};

// CDC 1.1, 5.2.3.17, table 43 (CDC ATM 1.2)
constexpr Bit kAtmDataCapabilities[] = {
    {0, "Reserved"},
    {1, "Type 1: concatenated ATM cells"},
    {2, "Type 2: ATM header template and concatenated ATM cell payloads"},
    {3, "Type 3: AAL 5 SDU"},
    {7, 4, "Reserved"},
};

// CDC 1.1, 5.2.3.17, table 43 (CDC ATM 1.2)
constexpr Bit kAtmDeviceStatistics[] = {
    {0, "DS_CELLS_RECEIVED"},    {1, "US_CELLS_SENT"},    {2, "DS_CELLS_HEC_ERROR_CORRECTED"},
    {3, "VC_DS_CELLS_RECEIVED"}, {4, "VC_US_CELLS_SENT"}, {7, 5, "Reserved"},
};

// CDC WMC 1.1, 6.5.2.5
constexpr Bit kObexRole[] = {
    {0, 0, "Role"},
    {0, 0, 0, "OBEX server"},
    {0, 0, 1, "OBEX client"},
    {7, 1, "Reserved"},
};

// CDC NCM 1.0, 5.2.1, table 5-2
constexpr Bit kNcmCapabilities[] = {
    {0, "SetEthernetPacketFilter"},
    {1, "GetNetAddress, SetNetAddress"},
    {2, "SendEncapsulatedCommand, GetEncapsulatedResponse"},
    {3, "GetMaxDatagramSize, SetMaxDatagramSize"},
    {4, "GetCrcMode, SetCrcMode"},
    {5, "8-byte GetNtbInputSize, SetNtbInputSize"},
    {7, 6, "Reserved"},
};

// CDC MBIM 1.0, 6.4
constexpr Bit kMbimCapabilities[] = {
    {2, 0, "Reserved"}, {3, "GetMaxDatagramSize, SetMaxDatagramSize"},
    {4, "Reserved"},    {5, "8-byte GetNtbInputSize, SetNtbInputSize"},
    {7, 6, "Reserved"},
};

// CDC: Header: CDC 1.2, 5.2.3.1, table 15
constexpr Field kHeaderFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdCDC", 2, Bcd()},
};

// CDC: Header (Data Class): CDC 1.2, 5.2.3, tables 14 and 15
constexpr Field kDataHeaderFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdCDC", 2, Bcd()},
};

// CDC: Call Management: CDC PSTN 1.2, 5.3.1, table 3
constexpr Field kCallManagementFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bmCapabilities", 1, Bits(kCallManagementCapabilities)},
    {"bDataInterface", 1, Dec()},
};

// CDC: Abstract Control Management: CDC PSTN 1.2, 5.3.2, table 4
constexpr Field kAbstractControlManagementFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bmCapabilities", 1, Bits(kAbstractControlCapabilities)},
};

// CDC: Direct Line Management: CDC PSTN 1.2, 5.3.3, table 5
constexpr Field kDirectLineManagementFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bmCapabilities", 1, Bits(kDirectLineCapabilities)},
};

// CDC: Telephone Ringer: CDC PSTN 1.2, 5.3.4, table 6
constexpr Field kTelephoneRingerFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bRingerVolSteps", 1, Dec()},
    {"bNumRingerPatterns", 1, Dec()},
};

// CDC: Telephone Call and Line State Reporting Capabilities: CDC PSTN 1.2, 5.3.6, table 8
constexpr Field kTelephoneCallLineStateFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bmCapabilities", 4, Bits(kCallLineStateCapabilities)},
};

// CDC: Union: CDC 1.2, 5.2.3.2, table 16
constexpr Field kUnionFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bControlInterface", 1, Dec()},
    {"bSubordinateInterface", 1, Dec(), {.repeat = "end"}},
};

// CDC: Country Selection: CDC 1.2, 5.2.3.3, table 17
constexpr Field kCountrySelectionFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"iCountryCodeRelDate", 1, StringIndex()},
    {"wCountryCode", 2, Hex(), {.repeat = "end"}},
};

// CDC: Telephone Operational Modes: CDC PSTN 1.2, 5.3.5, table 7
constexpr Field kTelephoneOperationalModesFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bmCapabilities", 1, Bits(kTelephoneOperationalModes)},
};

// CDC: USB Terminal: CDC 1.1, 5.2.3.10, table 35 (CDC ISDN 1.2)
constexpr Field kUsbTerminalFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bEntityId", 1, Dec()},
    {"bInInterfaceNo", 1, Dec()},
    {"bOutInterfaceNo", 1, Dec()},
    {"bmOptions", 1, Bits(kUsbTerminalOptions)},
    {"bChildId", 1, Dec(), {.repeat = "end"}},
};

// CDC: Network Channel Terminal: CDC 1.1, 5.2.3.11, table 36 (CDC ISDN 1.2)
constexpr Field kNetworkChannelTerminalFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bEntityId", 1, Dec()},
    {"iName", 1, StringIndex()},
    {"bChannelIndex", 1, Dec()},
    {"bPhysicalInterface", 1, Enum(kPhysicalInterface)},
};

// CDC: Protocol Unit: CDC 1.1, 5.2.3.12, table 37 (CDC ISDN 1.2)
constexpr Field kProtocolUnitFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bEntityId", 1, Dec()},
    {"bProtocol", 1, Enum(kDataProtocol)},
    {"bChildId", 1, Dec(), {.repeat = "end"}},
};

// CDC: Extension Unit: CDC 1.1, 5.2.3.13, table 38 (CDC ISDN 1.2)
constexpr Field kExtensionUnitFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bEntityId", 1, Dec()},
    {"bExtensionCode", 1, Hex()},
    {"iName", 1, StringIndex()},
    {"bChildId", 1, Dec(), {.repeat = "end"}},
};

// CDC: Multi-Channel Management: CDC 1.1, 5.2.3.14, table 39 (CDC ISDN 1.2)
constexpr Field kMultiChannelManagementFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bmCapabilities", 1, Bits(kMultiChannelCapabilities)},
};

// CDC: CAPI Control Management: CDC 1.1, 5.2.3.15, table 40 (CDC ISDN 1.2)
constexpr Field kCapiControlManagementFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bmCapabilities", 1, Bits(kCapiCapabilities)},
};

// CDC: Ethernet Networking: CDC ECM 1.2, 5.4, table 3
constexpr Field kEthernetNetworkingFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"iMACAddress", 1, StringIndex()},
    {"bmEthernetStatistics", 4, Bits(kEthernetStatistics)},
    {"wMaxSegmentSize", 2, Dec(kBytes)},
    {"wNumberMCFilters", 2, Bits(kMulticastFilters)},
    {"bNumberPowerFilters", 1, Dec()},
};

// CDC: ATM Networking: CDC 1.1, 5.2.3.17, table 43 (CDC ATM 1.2)
constexpr Field kAtmNetworkingFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"iEndSystemIdentifier", 1, StringIndex()},
    {"bmDataCapabilities", 1, Bits(kAtmDataCapabilities)},
    {"bmATMDeviceStatistics", 1, Bits(kAtmDeviceStatistics)},
    {"wType2MaxSegmentSize", 2, Dec(kBytes)},
    {"wType3MaxSegmentSize", 2, Dec(kBytes)},
    {"wMaxVC", 2, Dec()},
};

// CDC: Wireless Handset Control Model: CDC WMC 1.1, 6.1.2.3
constexpr Field kWirelessHandsetControlFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdVersion", 2, Bcd()},
};

// CDC: Mobile Direct Line Model: CDC WMC 1.1, 6.7.2.3
constexpr Field kMobileDirectLineFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdVersion", 2, Bcd()},
    {"bGUID", 16, UuidBigEndian()},
};

// CDC: Mobile Direct Line Model Detail: CDC WMC 1.1, 6.7.2.4
constexpr Field kMobileDirectLineDetailFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bGuidDescriptorType", 1, Hex()},
    {"bDetailData", "rest", Bytes()},
};

// CDC: Device Management: CDC WMC 1.1, 6.6.2.3
constexpr Field kDeviceManagementFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdVersion", 2, Bcd()},
    {"wMaxCommand", 2, Dec(kBytes)},
};

// CDC: OBEX: CDC WMC 1.1, 6.5.2.3
constexpr Field kObexFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdVersion", 2, Bcd()},
};

// CDC: Command Set: CDC WMC 1.1, 8.1.2.2
constexpr Field kCommandSetFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdVersion", 2, Bcd()},
    {"iCommandSet", 1, StringIndex()},
    {"bGUID", 16, UuidBigEndian()},
};

// CDC: Command Set Detail: CDC WMC 1.1, 8.1.2.3
constexpr Field kCommandSetDetailFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bGuidDescriptorType", 1, Hex()},
    {"bDetailData", "rest", Bytes()},
};

// CDC: Telephone Control Model: CDC WMC 1.1, 6.3.2.3
constexpr Field kTelephoneControlFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdVersion", 2, Bcd()},
    {"wMaxCommand", 2, Dec(kBytes)},
};

// CDC: OBEX Service Identifier: CDC WMC 1.1, 6.5.2.5
constexpr Field kObexServiceIdentifierFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bmRole", 1, Bits(kObexRole)},
    {"bUUID", 16, UuidBigEndian()},
    {"wVersion", 2, Hex()},
};

// CDC: NCM: CDC NCM 1.0, 5.2.1, table 5-2
constexpr Field kNcmFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdNcmVersion", 2, Bcd()},
    {"bmNetworkCapabilities", 1, Bits(kNcmCapabilities)},
};

// CDC: MBIM: CDC MBIM 1.0, 6.4
constexpr Field kMbimFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdMBIMVersion", 2, Bcd()},
    {"wMaxControlMessage", 2, Dec(kBytes)},
    {"bNumberFilters", 1, Dec()},
    {"bMaxFilterSize", 1, Dec(kBytes)},
    {"wMaxSegmentSize", 2, Dec(kBytes)},
    {"bmNetworkCapabilities", 1, Bits(kMbimCapabilities)},
};

// CDC: MBIM Extended: CDC MBIM 1.0 errata 1, 6.5
constexpr Field kMbimExtendedFields[] = {
    {"bFunctionLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kSubtype)},
    {"bcdMBIMExtendedVersion", 2, Bcd()},
    {"bMaxOutstandingCommandMessages", 1, Dec()},
    {"wMTU", 2, Dec(kBytes)},
};

constexpr Layout kLayouts[] = {
    {"cdc.header", "CDC: Header", "type=24 subtype=00 class=02", 5, "5", kHeaderFields,
     "CDC 1.2, 5.2.3.1, table 15"},
    {"cdc.data_header", "CDC: Header (Data Class)", "type=24 subtype=00 class=0A", 5, "5",
     kDataHeaderFields, "CDC 1.2, 5.2.3, tables 14 and 15"},
    {"cdc.call_management", "CDC: Call Management", "type=24 subtype=01 class=02", 5, "5",
     kCallManagementFields, "CDC PSTN 1.2, 5.3.1, table 3"},
    {"cdc.abstract_control_management", "CDC: Abstract Control Management",
     "type=24 subtype=02 class=02", 4, "4", kAbstractControlManagementFields,
     "CDC PSTN 1.2, 5.3.2, table 4"},
    {"cdc.direct_line_management", "CDC: Direct Line Management", "type=24 subtype=03 class=02", 4,
     "4", kDirectLineManagementFields, "CDC PSTN 1.2, 5.3.3, table 5"},
    {"cdc.telephone_ringer", "CDC: Telephone Ringer", "type=24 subtype=04 class=02", 5, "5",
     kTelephoneRingerFields, "CDC PSTN 1.2, 5.3.4, table 6"},
    {"cdc.telephone_call_line_state", "CDC: Telephone Call and Line State Reporting Capabilities",
     "type=24 subtype=05 class=02", 7, "7", kTelephoneCallLineStateFields,
     "CDC PSTN 1.2, 5.3.6, table 8"},
    {"cdc.union", "CDC: Union", "type=24 subtype=06 class=02", 5, "", kUnionFields,
     "CDC 1.2, 5.2.3.2, table 16"},
    {"cdc.country_selection", "CDC: Country Selection", "type=24 subtype=07 class=02", 6,
     "6 + (bFunctionLength - 6) / 2 * 2", kCountrySelectionFields, "CDC 1.2, 5.2.3.3, table 17"},
    {"cdc.telephone_operational_modes", "CDC: Telephone Operational Modes",
     "type=24 subtype=08 class=02", 4, "4", kTelephoneOperationalModesFields,
     "CDC PSTN 1.2, 5.3.5, table 7"},
    {"cdc.usb_terminal", "CDC: USB Terminal", "type=24 subtype=09 class=02", 8, "",
     kUsbTerminalFields, "CDC 1.1, 5.2.3.10, table 35 (CDC ISDN 1.2)"},
    {"cdc.network_channel_terminal", "CDC: Network Channel Terminal", "type=24 subtype=0A class=02",
     7, "7", kNetworkChannelTerminalFields, "CDC 1.1, 5.2.3.11, table 36 (CDC ISDN 1.2)"},
    {"cdc.protocol_unit", "CDC: Protocol Unit", "type=24 subtype=0B class=02", 6, "",
     kProtocolUnitFields, "CDC 1.1, 5.2.3.12, table 37 (CDC ISDN 1.2)"},
    {"cdc.extension_unit", "CDC: Extension Unit", "type=24 subtype=0C class=02", 7, "",
     kExtensionUnitFields, "CDC 1.1, 5.2.3.13, table 38 (CDC ISDN 1.2)"},
    {"cdc.multi_channel_management", "CDC: Multi-Channel Management", "type=24 subtype=0D class=02",
     4, "4", kMultiChannelManagementFields, "CDC 1.1, 5.2.3.14, table 39 (CDC ISDN 1.2)"},
    {"cdc.capi_control_management", "CDC: CAPI Control Management", "type=24 subtype=0E class=02",
     4, "4", kCapiControlManagementFields, "CDC 1.1, 5.2.3.15, table 40 (CDC ISDN 1.2)"},
    {"cdc.ethernet_networking", "CDC: Ethernet Networking", "type=24 subtype=0F class=02", 13, "13",
     kEthernetNetworkingFields, "CDC ECM 1.2, 5.4, table 3"},
    {"cdc.atm_networking", "CDC: ATM Networking", "type=24 subtype=10 class=02", 12, "12",
     kAtmNetworkingFields, "CDC 1.1, 5.2.3.17, table 43 (CDC ATM 1.2)"},
    {"cdc.wireless_handset_control", "CDC: Wireless Handset Control Model",
     "type=24 subtype=11 class=02", 5, "5", kWirelessHandsetControlFields, "CDC WMC 1.1, 6.1.2.3"},
    {"cdc.mobile_direct_line", "CDC: Mobile Direct Line Model", "type=24 subtype=12 class=02", 21,
     "21", kMobileDirectLineFields, "CDC WMC 1.1, 6.7.2.3"},
    {"cdc.mobile_direct_line_detail", "CDC: Mobile Direct Line Model Detail",
     "type=24 subtype=13 class=02", 5, "", kMobileDirectLineDetailFields, "CDC WMC 1.1, 6.7.2.4"},
    {"cdc.device_management", "CDC: Device Management", "type=24 subtype=14 class=02", 7, "7",
     kDeviceManagementFields, "CDC WMC 1.1, 6.6.2.3"},
    {"cdc.obex", "CDC: OBEX", "type=24 subtype=15 class=02", 5, "5", kObexFields,
     "CDC WMC 1.1, 6.5.2.3"},
    {"cdc.command_set", "CDC: Command Set", "type=24 subtype=16 class=02", 22, "22",
     kCommandSetFields, "CDC WMC 1.1, 8.1.2.2"},
    {"cdc.command_set_detail", "CDC: Command Set Detail", "type=24 subtype=17 class=02", 5, "",
     kCommandSetDetailFields, "CDC WMC 1.1, 8.1.2.3"},
    {"cdc.telephone_control", "CDC: Telephone Control Model", "type=24 subtype=18 class=02", 7, "7",
     kTelephoneControlFields, "CDC WMC 1.1, 6.3.2.3"},
    {"cdc.obex_service_identifier", "CDC: OBEX Service Identifier", "type=24 subtype=19 class=02",
     22, "22", kObexServiceIdentifierFields, "CDC WMC 1.1, 6.5.2.5"},
    {"cdc.ncm", "CDC: NCM", "type=24 subtype=1A class=02", 6, "6", kNcmFields,
     "CDC NCM 1.0, 5.2.1, table 5-2"},
    {"cdc.mbim", "CDC: MBIM", "type=24 subtype=1B class=02", 12, "12", kMbimFields,
     "CDC MBIM 1.0, 6.4"},
    {"cdc.mbim_extended", "CDC: MBIM Extended", "type=24 subtype=1C class=02", 8, "8",
     kMbimExtendedFields, "CDC MBIM 1.0 errata 1, 6.5"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> CdcTable() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
