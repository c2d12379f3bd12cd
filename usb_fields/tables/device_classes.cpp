// Smart cards (CCID), DFU, mass storage, printers, personal healthcare, IrDA, audio/video devices.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// CCID 1.1, 5.1, table 5.1-1
constexpr Code kCcidDescriptorType[] = {
    {0x21, "Smart Card Device Class"},
};

// CCID 1.1, 5.1, table 5.1-1
constexpr Bit kCcidVoltage[] = {
    {0, "5.0 V"},
    {1, "3.0 V"},
    {2, "1.8 V"},
    {7, 3, "Reserved"},
};

// CCID 1.1, 5.1, table 5.1-1
constexpr Bit kCcidProtocols[] = {
    {0, "T=0"},
    {1, "T=1"},
    {15, 2, "Reserved"},
    {31, 16, "Reserved"},
};

// CCID 1.1, 5.1, table 5.1-1
constexpr Bit kCcidSynchProtocols[] = {
    {0, "2-wire"}, {1, "3-wire"}, {2, "I2C"}, {15, 3, "Reserved"}, {31, 16, "Reserved"},
};

// CCID 1.1, 5.1, table 5.1-1
constexpr Bit kCcidMechanical[] = {
    {0, "Card accept mechanism"},  {1, "Card ejection mechanism"},
    {2, "Card capture mechanism"}, {3, "Card lock/unlock mechanism"},
    {31, 4, "Reserved"},
};

// CCID 1.1, 5.1, table 5.1-1
constexpr Bit kCcidFeatures[] = {
    {0, "Reserved"},
    {1, "Automatic parameter configuration based on ATR data"},
    {2, "Automatic activation of ICC on inserting"},
    {3, "Automatic ICC voltage selection"},
    {4, "Automatic ICC clock frequency change"},
    {5, "Automatic baud rate change"},
    {6, "Automatic parameters negotiation made by the CCID"},
    {7, "Automatic PPS made by the CCID"},
    {8, "CCID can set ICC in clock stop mode"},
    {9, "NAD value other than 00 accepted (T=1)"},
    {10, "Automatic IFSD exchange as first exchange (T=1)"},
    {11, "USB-ICC (ICCD only)"},
    {15, 12, "Reserved"},
    {18, 16, "Level of exchange"},
    {18, 16, 0, "Character"},
    {18, 16, 1, "TPDU"},
    {18, 16, 2, "Short APDU"},
    {18, 16, 4, "Short and extended APDU"},
    {19, "Reserved"},
    {20, "USB wake up on ICC insertion and removal"},
    {31, 21, "Reserved"},
};

// CCID 1.1, 5.1, table 5.1-1
constexpr Code kCcidClassDefault[] = {
    {0xFF, "Echo the class of the APDU"},
};

// CCID 1.1, 5.1, table 5.1-1
constexpr Bit kCcidLcdLayout[] = {
    {7, 0, "Characters per line"},
    {15, 8, "Lines"},
};

// CCID 1.1, 5.1, table 5.1-1
constexpr Bit kCcidPinSupport[] = {
    {0, "PIN verification"},
    {1, "PIN modification"},
    {7, 2, "Reserved"},
};

// DFU 1.1, 4.1.3, table 4.2
constexpr Code kDfuDescriptorType[] = {
    {0x21, "DFU Functional"},
};

// DFU 1.1, 4.1.3, table 4.2
constexpr Bit kDfuAttributes[] = {
    {0, "bitCanDnload: download capable"},
    {1, "bitCanUpload: upload capable"},
    {2, "bitManifestationTolerant: able to communicate after manifestation"},
    {3, "bitWillDetach: detaches itself on DFU_DETACH"},
    {7, 4, "Reserved"},
};

// UAS (INCITS 471), Pipe Usage descriptor
constexpr Code kStorageDescriptorType[] = {
    {0x24, "Pipe Usage"},
};

// UAS (INCITS 471), Pipe Usage descriptor
constexpr Code kStoragePipeId[] = {
    {0x00, "Reserved"},
    {0x01, "Command pipe"},
    {0x02, "Status pipe"},
    {0x03, "Data-in pipe"},
    {0x04, "Data-out pipe"},
    {0x05, 0xDF, "Reserved"},
    {0xE0, 0xEF, "Vendor specific"},
    {0xF0, 0xFF, "Reserved"},
};

// IPP over USB 1.0, class-specific descriptor
constexpr Code kPrinterDescriptorType[] = {
    {0x21, "IPP Printer"},
};

// IPP over USB 1.0, class-specific descriptor
constexpr Code kPrinterCapabilitiesType[] = {
    {0x00, "Basic capabilities"},
    {0x01, 0x1F, "Reserved"},
    {0x20, 0xFF, "Vendor-specific"},
};

// IPP over USB 1.0, class-specific descriptor
constexpr Bit kPrinterBasicCapabilities[] = {
    {0, "Print"},
    {1, "Scan"},
    {2, "Fax"},
    {3, "Other"},
    {4, "Any HTTP over USB"},
    {6, 5, "Authentication"},
    {6, 5, 0, "None"},
    {6, 5, 1, "Username and password"},
    {6, 5, 2, "Reserved"},
    {6, 5, 3, "Negotiable"},
    {15, 7, "Reserved"},
};

// PHDC 1.0, 8, table 15; appendix A, 5, table 20
constexpr Code kPhdcDescriptorType[] = {
    {0x20, "PHDC Class Function"},
    {0x21, "PHDC QoS"},
    {0x22, "PHDC Meta-Data"},
    {0x30, "PHDC 11073 PHD Function Extension"},
};

// PHDC 1.0, appendix A, 2, table 18
constexpr Code kPhdcDataCode[] = {
    {0x01, "Vendor-defined"},
    {0x02, "ISO/IEEE 11073-20601"},
};

// PHDC 1.0, 5.2.1, table 7
constexpr Bit kPhdcCapability[] = {
    {0, "Meta-Data Message Preamble"},
    {7, 1, "Reserved"},
};

// ISO/IEEE 11073-10101, MDC_PART_INFRA
constexpr Code kPhdcSpecialization[] = {
    {0x1004, "Pulse oximeter"},
    {0x1006, "Basic ECG"},
    {0x1007, "Blood pressure monitor"},
    {0x1008, "Thermometer"},
    {0x100D, "Respiration rate monitor"},
    {0x100F, "Weighing scale"},
    {0x1011, "Glucose meter"},
    {0x1012, "Coagulation meter"},
    {0x1013, "Insulin pump"},
    {0x1014, "Body composition analyzer"},
    {0x1015, "Peak flow monitor"},
    {0x1018, "Sleep apnea breathing therapy equipment"},
    {0x1019, "Continuous glucose monitor"},
    {0x1029, "Cardiovascular fitness and activity monitor"},
    {0x102A, "Strength fitness equipment"},
    {0x1047, "Independent living activity hub"},
    {0x1048, "Medication monitor"},
};

// PHDC 1.0, 5.2.3, table 8
constexpr Bit kPhdcQosBins[] = {
    {0, "Low latency, good reliability"},
    {1, "Medium latency, good reliability"},
    {2, "Medium latency, better reliability"},
    {3, "Medium latency, best reliability"},
    {4, "High latency, best reliability"},
    {5, "Very high latency, best reliability"},
    {7, 6, "Reserved"},
};

// USB IrDA Bridge 1.0, 7.2
constexpr Code kIrdaDescriptorType[] = {
    {0x21, "IrDA Bridge"},
};

// USB IrDA Bridge 1.0, 7.2
constexpr Bit kIrdaDataSize[] = {
    {0, "64 bytes"},   {1, "128 bytes"},  {2, "256 bytes"},   {3, "512 bytes"},
    {4, "1024 bytes"}, {5, "2048 bytes"}, {7, 6, "Reserved"},
};

// USB IrDA Bridge 1.0, 7.2
constexpr Bit kIrdaWindowSize[] = {
    {0, "1 frame"},  {1, "2 frames"}, {2, "3 frames"}, {3, "4 frames"},
    {4, "5 frames"}, {5, "6 frames"}, {6, "7 frames"}, {7, "Reserved"},
};

// USB IrDA Bridge 1.0, 7.2
constexpr Bit kIrdaMinTurnaroundTime[] = {
    {0, "10 ms"},  {1, "5 ms"},    {2, "1 ms"},    {3, "0.5 ms"},
    {4, "0.1 ms"}, {5, "0.05 ms"}, {6, "0.01 ms"}, {7, "0 ms"},
};

// USB IrDA Bridge 1.0, 7.2
constexpr Bit kIrdaBaudRate[] = {
    {0, "2400 b/s"},   {1, "9600 b/s"}, {2, "19200 b/s"},  {3, "38400 b/s"}, {4, "57600 b/s"},
    {5, "115200 b/s"}, {6, "576 kb/s"}, {7, "1.152 Mb/s"}, {8, "4 Mb/s"},    {15, 9, "Reserved"},
};

// USB IrDA Bridge 1.0, 7.2
constexpr Bit kIrdaAdditionalBofs[] = {
    {0, "48 BOFs"}, {1, "24 BOFs"}, {2, "12 BOFs"}, {3, "6 BOFs"},
    {4, "3 BOFs"},  {5, "2 BOFs"},  {6, "1 BOF"},   {7, "0 BOFs"},
};

// USB IrDA Bridge 1.0, 7.2
constexpr Code kIrdaRateSniff[] = {
    {0x00, "Not supported"},
    {0x01, "Rate sniff supported"},
};

// AV 1.0, A.13.1, table A-18
constexpr Code kAvDescriptorType[] = {
    {0x21, "AVControl Interface"},
    {0x22, "Terminal"},
    {0x23, "Unit"},
    {0x24, "AVData Entity"},
    {0x25, "AVControl"},
    {0x26, "Ranges"},
    {0x27, "VideoBulkStreamConfig"},
    {0x28, "VideoIsoStreamConfig"},
    {0x29, "AudioStreamConfig"},
};

// AV 1.0, A.13.2, table A-19
constexpr Code kAvTerminalType[] = {
    {0x0001, "Input"},
    {0x0002, "Output"},
};

// AV 1.0, A.13.3, table A-20
constexpr Code kAvUnitType[] = {
    {0x0001, "Mixer"},      {0x0002, "Selector"},  {0x0003, "Feature"}, {0x0004, "Effect"},
    {0x0005, "Processing"}, {0x0006, "Converter"}, {0x0007, "Router"},
};

// AV 1.0, A.13.4, table A-21
constexpr Code kAvEntityType[] = {
    {0x0001, "Generic"},         {0x0002, "FrameBuffer"}, {0x0003, "Video Streaming"},
    {0x0004, "Audio Streaming"}, {0x0005, "HDMI"},
};

// AV 1.0, 8.4.5, table 8-7
constexpr Code kAvClockDomain[] = {
    {0x0000, "No Clock Domain"},
    {0x0001, "Clock Source"},
    {0x0002, "Clock Sink"},
    {0x0003, 0xFFFF, "Reserved"},
};

// AV 1.0, 8.4.4, table 8-4
constexpr Bit kAvRwn[] = {
    {1, 0, "CUR property"},      {1, 0, 0, "R (read-only)"}, {1, 0, 1, "RW (read-write)"},
    {1, 0, 2, "W (write-only)"}, {1, 0, 3, "Reserved"},      {2, "NEXT property implemented"},
    {15, 3, "Reserved"},
};

// AV 1.0, A.13.5, table A-22
constexpr Code kAvRangeType[] = {
    {0x0001, "RANGE"},
    {0x0002, "VALUELIST"},
};

// AV 1.0, 8.4.6, table 8-8
constexpr Bit kAvVideoAttributes[] = {
    {0, "Reserved"},
    {1, "HDCP Protocol supported"},
    {15, 2, "Reserved"},
};

// AV 1.0, 8.4.8, table 8-10
constexpr Bit kAvAudioAttributes[] = {
    {0, 0, "Audio Format"},
    {0, 0, 0, "Simple"},
    {0, 0, 1, "Extended"},
    {1, "HDCP Protocol supported"},
    {2, "Timestamp Protocol supported"},
    {15, 3, "Reserved"},
};

// AVFormat 2 1.0, A.1 and A.2, tables
constexpr Code kAvAudioSampleFormat[] = {
    {0x0001, "PCM"},
    {0x0002, "IEEE_FLOAT"},
    {0x0003, "IEC61937_AC-3"},
    {0x0004, "IEC61937_MPEG-1_Layer1"},
    {0x0005, "IEC61937_MPEG-1_Layer2/3 or IEC61937_MPEG-2_NOEXT"},
    {0x0006, "IEC61937_MPEG-2_EXT"},
    {0x0007, "IEC61937_MPEG-2_AAC_ADTS"},
    {0x0008, "IEC61937_MPEG-2_Layer1_LS"},
    {0x0009, "IEC61937_MPEG-2_Layer2/3_LS"},
    {0x000A, "IEC61937_DTS-I"},
    {0x000B, "IEC61937_DTS-II"},
    {0x000C, "IEC61937_DTS-III"},
    {0x000D, "IEC61937_DTS-IV"},
    {0x000E, "IEC61937_ATRAC"},
    {0x000F, "IEC61937_ATRAC2/3"},
    {0x0010, "IEC61937_WMA"},
    {0x0011, "IEC61937_WMA_PRO"},
    {0x0012, "IEC61937_E-AC-3"},
    {0x0013, "IEC61937_MAT_MLP"},
    {0x0014, "IEC61937_MPEG-4_AAC_LATM"},
    {0x0015, "IEC61937_MPEG-4_HE_AAC_LATM"},
    {0x0016, "IEC61937_MPEG-4_HE_AAC_V2_LATM"},
};

// Smart Card Device Class (CCID): CCID 1.1, 5.1, table 5.1-1
constexpr Field kCcidCcidFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCcidDescriptorType)},
    {"bcdCCID", 2, Bcd()},
    {"bMaxSlotIndex", 1, Dec()},
    {"bVoltageSupport", 1, Bits(kCcidVoltage)},
    {"dwProtocols", 4, Bits(kCcidProtocols)},
    {"dwDefaultClock", 4, Dec(kKHz)},
    {"dwMaximumClock", 4, Dec(kKHz)},
    {"bNumClockSupported", 1, Dec()},
    {"dwDataRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxDataRate", 4, Dec(kBitsPerSecond)},
    {"bNumDataRatesSupported", 1, Dec()},
    {"dwMaxIFSD", 4, Dec(kBytes)},
    {"dwSynchProtocols", 4, Bits(kCcidSynchProtocols)},
    {"dwMechanical", 4, Bits(kCcidMechanical)},
    {"dwFeatures", 4, Bits(kCcidFeatures)},
    {"dwMaxCCIDMessageLength", 4, Dec(kBytes)},
    {"bClassGetResponse", 1, Enum(kCcidClassDefault)},
    {"bClassEnvelope", 1, Enum(kCcidClassDefault)},
    {"wLcdLayout", 2, Bits(kCcidLcdLayout, "{15..8} lines of {7..0} characters")},
    {"bPINSupport", 1, Bits(kCcidPinSupport)},
    {"bMaxCCIDBusySlots", 1, Dec()},
};

// DFU Functional (DFU 1.0): DFU 1.0, 4.1.3
constexpr Field kDfuFunctional10Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDfuDescriptorType)},
    {"bmAttributes", 1, Bits(kDfuAttributes)},
    {"wDetachTimeOut", 2, Dec(kMilliseconds)},
    {"wTransferSize", 2, Dec(kBytes)},
};

// DFU Functional: DFU 1.1, 4.1.3, table 4.2
constexpr Field kDfuFunctionalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDfuDescriptorType)},
    {"bmAttributes", 1, Bits(kDfuAttributes)},
    {"wDetachTimeOut", 2, Dec(kMilliseconds)},
    {"wTransferSize", 2, Dec(kBytes)},
    {"bcdDFUVersion", 2, Bcd()},
};

// UAS Pipe Usage: UAS (INCITS 471), Pipe Usage descriptor
constexpr Field kStoragePipeUsageFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kStorageDescriptorType)},
    {"bPipeID", 1, Enum(kStoragePipeId)},
    {"Reserved", 1, Hex()},
};

// IPP Printer (IPP over USB): IPP over USB 1.0, class-specific descriptor
constexpr Field kPrinterIppFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kPrinterDescriptorType)},
    {"bcdReleaseNumber", 1, Hex()},
    {"bNumDescriptors", 1, Dec()},
    {"bCapabilitiesType",
     1,
     Enum(kPrinterCapabilitiesType),
     {.repeat = "bNumDescriptors", .group = 'a'}},
    {"bCapabilitiesLength", 1, Dec(kBytes), {.repeat = "bNumDescriptors", .group = 'a'}},
    {"wBasicCapabilities",
     2,
     Bits(kPrinterBasicCapabilities),
     {.repeat = "bNumDescriptors", .when = "bCapabilitiesType == 0", .group = 'a'}},
    {"iIPPVersionsSupported",
     1,
     StringIndex(),
     {.repeat = "bNumDescriptors", .when = "bCapabilitiesType == 0", .group = 'a'}},
    {"iIPPPrinterUUID",
     1,
     StringIndex(),
     {.repeat = "bNumDescriptors", .when = "bCapabilitiesType == 0", .group = 'a'}},
    {"bCapabilitiesData",
     "bCapabilitiesLength",
     Bytes(),
     {.repeat = "bNumDescriptors", .when = "bCapabilitiesType != 0", .group = 'a'}},
};

// PHDC Class Function: PHDC 1.0, 5.2.1, table 7
constexpr Field kPhdcClassFunctionFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kPhdcDescriptorType)},
    {"bPHDCDataCode", 1, Enum(kPhdcDataCode)},
    {"bmCapability", 1, Bits(kPhdcCapability)},
};

// PHDC 11073 PHD Function Extension: PHDC 1.0, appendix A, 4, table 19
constexpr Field kPhdcFunction11073Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kPhdcDescriptorType)},
    {"bReserved", 1, Hex()},
    {"bNumDevSpecs", 1, Dec()},
    {"wDevSpecializations", 2, Enum(kPhdcSpecialization), {.repeat = "bNumDevSpecs"}},
};

// PHDC QoS: PHDC 1.0, 5.2.3, table 8
constexpr Field kPhdcQosFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kPhdcDescriptorType)},
    {"bQoSEncodingVersion", 1, Hex()},
    {"bmLatencyReliability", 1, Bits(kPhdcQosBins), {.when = "bQoSEncodingVersion == 1"}},
    {"bmLatencyReliability", 1, Hex(), {.when = "bQoSEncodingVersion != 1"}},
};

// PHDC Meta-Data: PHDC 1.0, 5.2.4, table 10
constexpr Field kPhdcMetadataFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kPhdcDescriptorType)},
    {"bOpaqueData", "rest", Bytes()},
};

// IrDA Bridge: USB IrDA Bridge 1.0, 7.2
constexpr Field kIrdaBridgeFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kIrdaDescriptorType)},
    {"bcdSpecRevision", 2, Bcd()},
    {"bmDataSize", 1, Bits(kIrdaDataSize)},
    {"bmWindowSize", 1, Bits(kIrdaWindowSize)},
    {"bmMinTurnaroundTime", 1, Bits(kIrdaMinTurnaroundTime)},
    {"wBaudRate", 2, Bits(kIrdaBaudRate)},
    {"bmAdditionalBOFs", 1, Bits(kIrdaAdditionalBofs)},
    {"bIrdaRateSniff", 1, Enum(kIrdaRateSniff)},
    {"bMaxUnicastList", 1, Dec()},
};

// AV: AVControl Interface: AV 1.0, 8.4.1, table 8-1
constexpr Field kAvControlIfFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"bBCDAVFunction", 2, Bcd()},
};

// AV: Terminal: AV 1.0, 8.4.2, table 8-2
constexpr Field kAvTerminalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"wTerminalType", 2, Enum(kAvTerminalType)},
    {"wEntityID", 2, Dec()},
    {"wAssocEntityID", 2, Dec()},
    {"wSourceID", 2, Dec()},
};

// AV: Unit: AV 1.0, 8.4.3, table 8-3
constexpr Field kAvUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"wUnitType", 2, Enum(kAvUnitType)},
    {"wEntityID", 2, Dec()},
    {"wSourceID1", 2, Dec()},
    {"wSourceID2", 2, Dec()},
};

// AV: AVData Entity: AV 1.0, 8.4.5, table 8-7
constexpr Field kAvAvdataFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"wEntityType", 2, Enum(kAvEntityType)},
    {"wEntityID", 2, Dec()},
    {"wClockDomain", 2, Enum(kAvClockDomain)},
    {"wClockDomainID", 2, Dec()},
};

// AV: AVControl: AV 1.0, 8.4.4, table 8-4
constexpr Field kAvAvcontrolFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"wControlSelector", 2, Hex()},
    {"wRWN", 2, Bits(kAvRwn)},
};

// AV: Ranges: RANGE: AV 1.0, 8.4.4.1, table 8-5
constexpr Field kAvRangesRangeFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"wRangeType", 2, Enum(kAvRangeType)},
    {"dwMin", 4, Dec()},
    {"dwMax", 4, Dec()},
    {"dwResolution", 4, Dec()},
};

// AV: Ranges: VALUELIST: AV 1.0, 8.4.4.1, table 8-6
constexpr Field kAvRangesValuelistFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"wRangeType", 2, Enum(kAvRangeType)},
    {"dwValue", 4, Dec(), {.repeat = "end"}},
};

// AV: VideoBulkStreamConfig: AV 1.0, 8.4.6, table 8-8
constexpr Field kAvVideoBulkStreamConfigFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"bmAttributes", 2, Bits(kAvVideoAttributes)},
    {"wChannels", 2, Dec()},
    {"wVideoFrameRate", 2, Dec(kHz)},
    {"wFrameOrganization", 2, Hex()},
    {"wFrameFormat", 2, Hex()},
    {"wVideoSampleFormat", 2, Hex()},
    {"wSubSlotSize", 2, Dec(kBytes)},
    {"wBitResolution", 2, Dec(kBits)},
    {"wVideoCompression", 2, Hex()},
};

// AV: VideoIsoStreamConfig: AV 1.0, 8.4.7, table 8-9
constexpr Field kAvVideoIsoStreamConfigFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"bmAttributes", 2, Bits(kAvVideoAttributes)},
    {"wChannels", 2, Dec()},
    {"wVideoFrameRate", 2, Dec(kHz)},
    {"wFrameOrganization", 2, Hex()},
    {"wFrameFormat", 2, Hex()},
    {"wVideoSampleFormat", 2, Hex()},
    {"wSubSlotSize", 2, Dec(kBytes)},
    {"wBitResolution", 2, Dec(kBits)},
    {"wVideoSIPSize", 2, Dec(kBytes)},
};

// AV: AudioStreamConfig: AV 1.0, 8.4.8, table 8-10
constexpr Field kAvAudioStreamConfigFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kAvDescriptorType)},
    {"bmAttributes", 2, Bits(kAvAudioAttributes)},
    {"wChannels", 2, Dec()},
    {"dAudioFrameRateMin", 4, Dec(kHz)},
    {"dAudioFrameRateMax", 4, Dec(kHz)},
    {"wAudioSampleFormat", 2, Enum(kAvAudioSampleFormat)},
    {"wSubSlotSize", 2, Dec(kBytes)},
    {"wBitResolution", 2, Dec(kBits)},
};

constexpr Layout kLayouts[] = {
    {"ccid.ccid", "Smart Card Device Class (CCID)", "type=21 class=0B", 54, "54", kCcidCcidFields,
     "CCID 1.1, 5.1, table 5.1-1"},
    {"dfu.functional_1_0", "DFU Functional (DFU 1.0)", "type=21 class=FE subclass=01 bLength=07", 7,
     "7", kDfuFunctional10Fields, "DFU 1.0, 4.1.3"},
    {"dfu.functional", "DFU Functional", "type=21 class=FE subclass=01", 9, "9",
     kDfuFunctionalFields, "DFU 1.1, 4.1.3, table 4.2"},
    {"storage.pipe_usage", "UAS Pipe Usage", "type=24 class=08 subclass=06 protocol=62", 4, "4",
     kStoragePipeUsageFields, "UAS (INCITS 471), Pipe Usage descriptor"},
    {"printer.ipp", "IPP Printer (IPP over USB)", "type=21 class=07 subclass=01 protocol=04", 10,
     "", kPrinterIppFields, "IPP over USB 1.0, class-specific descriptor"},
    {"phdc.class_function", "PHDC Class Function", "type=20 class=0F", 4, "4",
     kPhdcClassFunctionFields, "PHDC 1.0, 5.2.1, table 7"},
    {"phdc.function_11073", "PHDC 11073 PHD Function Extension", "type=30 class=0F endpoint=none",
     4, "4+bNumDevSpecs*2", kPhdcFunction11073Fields, "PHDC 1.0, appendix A, 4, table 19"},
    {"phdc.qos", "PHDC QoS", "type=21 class=0F", 4, "4", kPhdcQosFields,
     "PHDC 1.0, 5.2.3, table 8"},
    {"phdc.metadata", "PHDC Meta-Data", "type=22 class=0F", 2, "", kPhdcMetadataFields,
     "PHDC 1.0, 5.2.4, table 10"},
    {"irda.bridge", "IrDA Bridge", "type=21 class=FE subclass=02", 12, "12", kIrdaBridgeFields,
     "USB IrDA Bridge 1.0, 7.2"},
    {"av.control_if", "AV: AVControl Interface", "type=21 class=10", 4, "4", kAvControlIfFields,
     "AV 1.0, 8.4.1, table 8-1"},
    {"av.terminal", "AV: Terminal", "type=22 class=10", 10, "10", kAvTerminalFields,
     "AV 1.0, 8.4.2, table 8-2"},
    {"av.unit", "AV: Unit", "type=23 class=10", 10, "10", kAvUnitFields,
     "AV 1.0, 8.4.3, table 8-3"},
    {"av.avdata", "AV: AVData Entity", "type=24 class=10", 10, "10", kAvAvdataFields,
     "AV 1.0, 8.4.5, table 8-7"},
    {"av.avcontrol", "AV: AVControl", "type=25 class=10", 6, "6", kAvAvcontrolFields,
     "AV 1.0, 8.4.4, table 8-4"},
    {"av.ranges_range", "AV: Ranges: RANGE", "type=26 class=10 wRangeType=0001", 16, "16",
     kAvRangesRangeFields, "AV 1.0, 8.4.4.1, table 8-5"},
    {"av.ranges_valuelist", "AV: Ranges: VALUELIST", "type=26 class=10 wRangeType=0002", 8, "",
     kAvRangesValuelistFields, "AV 1.0, 8.4.4.1, table 8-6"},
    {"av.video_bulk_stream_config", "AV: VideoBulkStreamConfig", "type=27 class=10", 20, "20",
     kAvVideoBulkStreamConfigFields, "AV 1.0, 8.4.6, table 8-8"},
    {"av.video_iso_stream_config", "AV: VideoIsoStreamConfig", "type=28 class=10", 20, "20",
     kAvVideoIsoStreamConfigFields, "AV 1.0, 8.4.7, table 8-9"},
    {"av.audio_stream_config", "AV: AudioStreamConfig", "type=29 class=10", 20, "20",
     kAvAudioStreamConfigFields, "AV 1.0, 8.4.8, table 8-10"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> DeviceClassesTable() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
