// USB Audio 1.0 with its data formats.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// Audio 1.0, A.4, table A-4
constexpr Code kCsType[] = {
    {0x20, "CS_UNDEFINED"}, {0x21, "CS_DEVICE"},    {0x22, "CS_CONFIGURATION"},
    {0x23, "CS_STRING"},    {0x24, "CS_INTERFACE"}, {0x25, "CS_ENDPOINT"},
};

// Audio 1.0, A.5, table A-5
constexpr Code kAcSubtype[] = {
    {0x00, "AC_DESCRIPTOR_UNDEFINED"},
    {0x01, "HEADER"},
    {0x02, "INPUT_TERMINAL"},
    {0x03, "OUTPUT_TERMINAL"},
    {0x04, "MIXER_UNIT"},
    {0x05, "SELECTOR_UNIT"},
    {0x06, "FEATURE_UNIT"},
    {0x07, "PROCESSING_UNIT"},
    {0x08, "EXTENSION_UNIT"},
};

// Audio Terminal Types 1.0, 2
constexpr Code kTerminalType[] = {
    {0x0100, "USB Undefined"},
    {0x0101, "USB streaming"},
    {0x01FF, "USB vendor specific"},
    {0x0200, "Input Undefined"},
    {0x0201, "Microphone"},
    {0x0202, "Desktop microphone"},
    {0x0203, "Personal microphone"},
    {0x0204, "Omni-directional microphone"},
    {0x0205, "Microphone array"},
    {0x0206, "Processing microphone array"},
    {0x0300, "Output Undefined"},
    {0x0301, "Speaker"},
    {0x0302, "Headphones"},
    {0x0303, "Head Mounted Display Audio"},
    {0x0304, "Desktop speaker"},
    {0x0305, "Room speaker"},
    {0x0306, "Communication speaker"},
    {0x0307, "Low frequency effects speaker"},
    {0x0400, "Bi-directional Undefined"},
    {0x0401, "Handset"},
    {0x0402, "Headset"},
    {0x0403, "Speakerphone, no echo reduction"},
    {0x0404, "Echo-suppressing speakerphone"},
    {0x0405, "Echo-canceling speakerphone"},
    {0x0500, "Telephony Undefined"},
    {0x0501, "Phone line"},
    {0x0502, "Telephone"},
    {0x0503, "Down Line Phone"},
    {0x0600, "External Undefined"},
    {0x0601, "Analog connector"},
    {0x0602, "Digital audio interface"},
    {0x0603, "Line connector"},
    {0x0604, "Legacy audio connector"},
    {0x0605, "S/PDIF interface"},
    {0x0606, "1394 DA stream"},
    {0x0607, "1394 DV stream soundtrack"},
    {0x0700, "Embedded Undefined"},
    {0x0701, "Level Calibration Noise Source"},
    {0x0702, "Equalization Noise"},
    {0x0703, "CD player"},
    {0x0704, "DAT"},
    {0x0705, "DCC"},
    {0x0706, "MiniDisk"},
    {0x0707, "Analog Tape"},
    {0x0708, "Phonograph"},
    {0x0709, "VCR Audio"},
    {0x070A, "Video Disc Audio"},
    {0x070B, "DVD Audio"},
    {0x070C, "TV Tuner Audio"},
    {0x070D, "Satellite Receiver Audio"},
    {0x070E, "Cable Tuner Audio"},
    {0x070F, "DSS Audio"},
    {0x0710, "Radio Receiver"},
    {0x0711, "Radio Transmitter"},
    {0x0712, "Multi-track Recorder"},
    {0x0713, "Synthesizer"},
};

// Audio 1.0, 3.7.2.3
constexpr Bit kChannelConfig[] = {
    {0, "Left Front (L)"},      {1, "Right Front (R)"},
    {2, "Center Front (C)"},    {3, "Low Frequency Enhancement (LFE)"},
    {4, "Left Surround (LS)"},  {5, "Right Surround (RS)"},
    {6, "Left of Center (LC)"}, {7, "Right of Center (RC)"},
    {8, "Surround (S)"},        {9, "Side Left (SL)"},
    {10, "Side Right (SR)"},    {11, "Top (T)"},
    {15, 12, "Reserved"},
};

// Audio 1.0, 4.3.2.5, table 4-7
constexpr Bit kFeatureControls[] = {
    {0, "Mute"},           {1, "Volume"},
    {2, "Bass"},           {3, "Mid"},
    {4, "Treble"},         {5, "Graphic Equalizer"},
    {6, "Automatic Gain"}, {7, "Delay"},
    {8, "Bass Boost"},     {9, "Loudness"},
    {63, 10, "Reserved"},
};

// Audio 1.0, A.7, table A-7
constexpr Code kProcessType[] = {
    {0x0000, "PROCESS_UNDEFINED"},      {0x0001, "UP/DOWNMIX_PROCESS"},
    {0x0002, "DOLBY_PROLOGIC_PROCESS"}, {0x0003, "3D_STEREO_EXTENDER_PROCESS"},
    {0x0004, "REVERBERATION_PROCESS"},  {0x0005, "CHORUS_PROCESS"},
    {0x0006, "DYN_RANGE_COMP_PROCESS"},
};

// Audio 1.0, 4.3.2.6, table 4-8
constexpr Bit kProcessingControls[] = {
    {0, "Enable Processing"},
};

// Audio 1.0, 4.3.2.6.1, table 4-9
constexpr Bit kUpdownMixControls[] = {
    {0, "Enable Processing"},
    {1, "Mode Select"},
    {63, 2, "Reserved"},
};

// Audio 1.0, 4.3.2.6.2, table 4-10
constexpr Bit kDolbyPrologicControls[] = {
    {0, "Enable Processing"},
    {1, "Mode Select"},
    {63, 2, "Reserved"},
};

// Audio 1.0, 4.3.2.6.3, table 4-11
constexpr Bit kStereoExtenderControls[] = {
    {0, "Enable Processing"},
    {1, "Spaciousness"},
    {63, 2, "Reserved"},
};

// Audio 1.0, 4.3.2.6.4, table 4-12
constexpr Bit kReverberationControls[] = {
    {0, "Enable Processing"}, {1, "Reverb Type"},           {2, "Reverb Level"},
    {3, "Reverb Time"},       {4, "Reverb Delay Feedback"}, {63, 5, "Reserved"},
};

// Audio 1.0, 4.3.2.6.5, table 4-13
constexpr Bit kChorusControls[] = {
    {0, "Enable Processing"},       {1, "Chorus Level"}, {2, "Chorus Modulation Rate"},
    {3, "Chorus Modulation Depth"}, {63, 4, "Reserved"},
};

// Audio 1.0, 4.3.2.6.6, table 4-14
constexpr Bit kDynRangeCompControls[] = {
    {0, "Enable Processing"}, {1, "Compression Ratio"}, {2, "MaxAmpl"},      {3, "Threshold"},
    {4, "Attack time"},       {5, "Release time"},      {63, 6, "Reserved"},
};

// Audio 1.0, 4.3.2.7, table 4-15
constexpr Bit kExtensionControls[] = {
    {0, "Enable Processing"},
    {63, 1, "Reserved"},
};

// Audio 1.0, A.6, table A-6
constexpr Code kAsSubtype[] = {
    {0x00, "AS_DESCRIPTOR_UNDEFINED"},
    {0x01, "AS_GENERAL"},
    {0x02, "FORMAT_TYPE"},
    {0x03, "FORMAT_SPECIFIC"},
};

// Audio Data Formats 1.0, A.1, tables
constexpr Code kFormatTag[] = {
    {0x0000, "TYPE_I_UNDEFINED"},
    {0x0001, "PCM"},
    {0x0002, "PCM8"},
    {0x0003, "IEEE_FLOAT"},
    {0x0004, "ALAW"},
    {0x0005, "MULAW"},
    {0x1000, "TYPE_II_UNDEFINED"},
    {0x1001, "MPEG"},
    {0x1002, "AC-3"},
    {0x2000, "TYPE_III_UNDEFINED"},
    {0x2001, "IEC1937_AC-3"},
    {0x2002, "IEC1937_MPEG-1_Layer1"},
    {0x2003, "IEC1937_MPEG-1_Layer2/3 or IEC1937_MPEG-2_NOEXT"},
    {0x2004, "IEC1937_MPEG-2_EXT"},
    {0x2005, "IEC1937_MPEG-2_Layer1_LS"},
    {0x2006, "IEC1937_MPEG-2_Layer2/3_LS"},
};

// Audio Data Formats 1.0, A.2
constexpr Code kFormatType[] = {
    {0x00, "FORMAT_TYPE_UNDEFINED"},
    {0x01, "FORMAT_TYPE_I"},
    {0x02, "FORMAT_TYPE_II"},
    {0x03, "FORMAT_TYPE_III"},
};

// Audio Data Formats 1.0, 2.2.5
constexpr Code kSamFreqType[] = {
    {0x00, "Continuous sampling frequency"},
    {0x01, 0xFF, "Number of discrete sampling frequencies"},
};

// Audio Data Formats 1.0, 2.3.8.1, table 2-7
constexpr Bit kMpegCapabilities[] = {
    {0, "Layer I"},
    {1, "Layer II"},
    {2, "Layer III"},
    {3, "MPEG-1 only"},
    {4, "MPEG-1 dual-channel"},
    {5, "MPEG-2 second stereo"},
    {6, "MPEG-2 7.1 channel augmentation"},
    {7, "Adaptive multi-channel prediction"},
    {9, 8, "MPEG-2 multilingual support"},
    {9, 8, 0, "Not supported"},
    {9, 8, 1, "Supported at Fs"},
    {9, 8, 2, "Reserved"},
    {9, 8, 3, "Supported at Fs and 1/2 Fs"},
    {15, 10, "Reserved"},
};

// Audio Data Formats 1.0, 2.3.8.1, table 2-7
constexpr Bit kMpegFeatures[] = {
    {3, 0, "Reserved"},
    {5, 4, "Internal Dynamic Range Control"},
    {5, 4, 0, "Not supported"},
    {5, 4, 1, "Supported but not scalable"},
    {5, 4, 2, "Scalable, common boost and cut scaling value"},
    {5, 4, 3, "Scalable, separate boost and cut scaling value"},
    {7, 6, "Reserved"},
};

// Audio Data Formats 1.0, 2.3.8.2.1
constexpr Bit kAc3Bsid[] = {
    {0, "BSID mode 0"},   {1, "BSID mode 1"},   {2, "BSID mode 2"},   {3, "BSID mode 3"},
    {4, "BSID mode 4"},   {5, "BSID mode 5"},   {6, "BSID mode 6"},   {7, "BSID mode 7"},
    {8, "BSID mode 8"},   {9, "BSID mode 9"},   {10, "BSID mode 10"}, {11, "BSID mode 11"},
    {12, "BSID mode 12"}, {13, "BSID mode 13"}, {14, "BSID mode 14"}, {15, "BSID mode 15"},
    {16, "BSID mode 16"}, {17, "BSID mode 17"}, {18, "BSID mode 18"}, {19, "BSID mode 19"},
    {20, "BSID mode 20"}, {21, "BSID mode 21"}, {22, "BSID mode 22"}, {23, "BSID mode 23"},
    {24, "BSID mode 24"}, {25, "BSID mode 25"}, {26, "BSID mode 26"}, {27, "BSID mode 27"},
    {28, "BSID mode 28"}, {29, "BSID mode 29"}, {30, "BSID mode 30"}, {31, "BSID mode 31"},
};

// Audio Data Formats 1.0, 2.3.8.2.1
constexpr Bit kAc3Features[] = {
    {0, "RF mode"},
    {1, "Line mode"},
    {2, "Custom0 mode"},
    {3, "Custom1 mode"},
    {5, 4, "Internal Dynamic Range Control"},
    {5, 4, 0, "Not supported"},
    {5, 4, 1, "Supported but not scalable"},
    {5, 4, 2, "Scalable, common boost and cut scaling value"},
    {5, 4, 3, "Scalable, separate boost and cut scaling value"},
    {7, 6, "Reserved"},
};

// Audio 1.0, A.8, table A-8
constexpr Code kEpSubtype[] = {
    {0x00, "DESCRIPTOR_UNDEFINED"},
    {0x01, "EP_GENERAL"},
};

// Audio 1.0, 4.6.1.2, table 4-21
constexpr Bit kEpAttributes[] = {
    {0, "Sampling Frequency"},
    {1, "Pitch"},
    {6, 2, "Reserved"},
    {7, "MaxPacketsOnly"},
};

// Audio 1.0, 4.6.1.2, table 4-21
constexpr Code kLockDelayUnits[] = {
    {0x00, "Undefined"},
    {0x01, "Milliseconds"},
    {0x02, "Decoded PCM samples"},
    {0x03, 0xFF, "Reserved"},
};

// Audio Control 1.0: Header: Audio 1.0, 4.3.2, table 4-2
constexpr Field kAcHeaderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bcdADC", 2, Bcd()},
    {"wTotalLength", 2, Dec(kBytes)},
    {"bInCollection", 1, Dec()},
    {"baInterfaceNr", 1, Dec(), {.repeat = "bInCollection"}},
};

// Audio Control 1.0: Input Terminal: Audio 1.0, 4.3.2.1, table 4-3
constexpr Field kInputTerminalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"iTerminal", 1, StringIndex()},
};

// Audio Control 1.0: Output Terminal: Audio 1.0, 4.3.2.2, table 4-4
constexpr Field kOutputTerminalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"iTerminal", 1, StringIndex()},
};

// Audio Control 1.0: Mixer Unit: Audio 1.0, 4.3.2.3, table 4-5
constexpr Field kMixerUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bmControls", 1, Hex(), {.repeat = "bLength-10-bNrInPins"}},
    {"iMixer", 1, StringIndex()},
};

// Audio Control 1.0: Selector Unit: Audio 1.0, 4.3.2.4, table 4-6
constexpr Field kSelectorUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"iSelector", 1, StringIndex()},
};

// Audio Control 1.0: Feature Unit: Audio 1.0, 4.3.2.5, table 4-7
constexpr Field kFeatureUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmaControls", "bControlSize", Bits(kFeatureControls), {.repeat = "(bLength-7)/bControlSize"}},
    {"iFeature", 1, StringIndex()},
};

// Audio Control 1.0: Processing Unit: Audio 1.0, 4.3.2.6, table 4-8
constexpr Field kProcessingUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kProcessingControls)},
    {"iProcessing", 1, StringIndex()},
    {"Process-specific", "rest", Bytes()},
};

// Audio Control 1.0: Processing Unit, Up/Down-mix: Audio 1.0, 4.3.2.6.1, table 4-9
constexpr Field kProcessingUnitUpdownMixFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"bSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kUpdownMixControls)},
    {"iProcessing", 1, StringIndex()},
    {"bNrModes", 1, Dec()},
    {"waModes", 2, Bits(kChannelConfig), {.repeat = "bNrModes"}},
};

// Audio Control 1.0: Processing Unit, Dolby Prologic: Audio 1.0, 4.3.2.6.2, table 4-10
constexpr Field kProcessingUnitDolbyPrologicFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"bSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kDolbyPrologicControls)},
    {"iProcessing", 1, StringIndex()},
    {"bNrModes", 1, Dec()},
    {"waModes", 2, Bits(kChannelConfig), {.repeat = "bNrModes"}},
};

// Audio Control 1.0: Processing Unit, 3D-Stereo Extender: Audio 1.0, 4.3.2.6.3, table 4-11
constexpr Field kProcessingUnit3dStereoExtenderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"bSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kStereoExtenderControls)},
    {"iProcessing", 1, StringIndex()},
};

// Audio Control 1.0: Processing Unit, Reverberation: Audio 1.0, 4.3.2.6.4, table 4-12
constexpr Field kProcessingUnitReverberationFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"bSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kReverberationControls)},
    {"iProcessing", 1, StringIndex()},
};

// Audio Control 1.0: Processing Unit, Chorus: Audio 1.0, 4.3.2.6.5, table 4-13
constexpr Field kProcessingUnitChorusFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"bSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kChorusControls)},
    {"iProcessing", 1, StringIndex()},
};

// Audio Control 1.0: Processing Unit, Dynamic Range Compressor: Audio 1.0, 4.3.2.6.6, table 4-14
constexpr Field kProcessingUnitDynRangeCompFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"bSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kDynRangeCompControls)},
    {"iProcessing", 1, StringIndex()},
};

// Audio Control 1.0: Extension Unit: Audio 1.0, 4.3.2.7, table 4-15
constexpr Field kExtensionUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wExtensionCode", 2, Hex()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"wChannelConfig", 2, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kExtensionControls)},
    {"iExtension", 1, StringIndex()},
};

// Audio Control 1.0: Interrupt Endpoint (9 bytes): Audio 1.0, 4.4.2.1, table 4-17
constexpr Field kAcInterruptEndpointFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bEndpointAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
    {"bmAttributes", 1, Bits(kEndpointAttrIsoch), {.when = "bmAttributes[1..0] == 1"}},
    {"bmAttributes", 1, Bits(kEndpointAttrInt), {.when = "bmAttributes[1..0] == 3"}},
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
    {"bInterval", 1, Dec(), {.when = "bmAttributes[0..0] == 0"}},
    {"bRefresh", 1, Dec()},
    {"bSynchAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
};

// Audio Streaming 1.0: General: Audio 1.0, 4.5.2, table 4-19
constexpr Field kAsGeneralFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bTerminalLink", 1, Dec()},
    {"bDelay", 1, Dec(kFrames)},
    {"wFormatTag", 2, Enum(kFormatTag)},
};

// Audio Streaming 1.0: Format Type (other): Audio Data Formats 1.0, 2.2 to 2.4
constexpr Field kFormatTypeFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"Format-specific", "rest", Bytes()},
};

// Audio Streaming 1.0: Format Type I, discrete frequencies: Audio Data Formats 1.0, 2.2.5, tables
// 2-1 to 2-3
constexpr Field kFormatTypeIFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"bNrChannels", 1, Dec()},
    {"bSubframeSize", 1, Dec(kBytes)},
    {"bBitResolution", 1, Dec(kBits)},
    {"bSamFreqType", 1, Enum(kSamFreqType)},
    {"tSamFreq", 3, Dec(kHz), {.repeat = "bSamFreqType"}},
};

// Audio Streaming 1.0: Format Type I, continuous frequency range: Audio Data Formats 1.0, 2.2.5,
// tables 2-1 to 2-3
constexpr Field kFormatTypeIContinuousFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"bNrChannels", 1, Dec()},
    {"bSubframeSize", 1, Dec(kBytes)},
    {"bBitResolution", 1, Dec(kBits)},
    {"bSamFreqType", 1, Enum(kSamFreqType)},
    {"tLowerSamFreq", 3, Dec(kHz)},
    {"tUpperSamFreq", 3, Dec(kHz)},
};

// Audio Streaming 1.0: Format Type II, discrete frequencies: Audio Data Formats 1.0, 2.3.6
constexpr Field kFormatTypeIiFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"wMaxBitRate", 2, Dec(kKilobitsPerSecond)},
    {"wSamplesPerFrame", 2, Dec()},
    {"bSamFreqType", 1, Enum(kSamFreqType)},
    {"tSamFreq", 3, Dec(kHz), {.repeat = "bSamFreqType"}},
};

// Audio Streaming 1.0: Format Type II, continuous frequency range: Audio Data Formats 1.0, 2.3.6
constexpr Field kFormatTypeIiContinuousFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"wMaxBitRate", 2, Dec(kKilobitsPerSecond)},
    {"wSamplesPerFrame", 2, Dec()},
    {"bSamFreqType", 1, Enum(kSamFreqType)},
    {"tLowerSamFreq", 3, Dec(kHz)},
    {"tUpperSamFreq", 3, Dec(kHz)},
};

// Audio Streaming 1.0: Format Type III, discrete frequencies: Audio Data Formats 1.0, 2.4.1
constexpr Field kFormatTypeIiiFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"bNrChannels", 1, Dec()},
    {"bSubframeSize", 1, Dec(kBytes)},
    {"bBitResolution", 1, Dec(kBits)},
    {"bSamFreqType", 1, Enum(kSamFreqType)},
    {"tSamFreq", 3, Dec(kHz), {.repeat = "bSamFreqType"}},
};

// Audio Streaming 1.0: Format Type III, continuous frequency range: Audio Data Formats 1.0, 2.4.1
constexpr Field kFormatTypeIiiContinuousFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"bNrChannels", 1, Dec()},
    {"bSubframeSize", 1, Dec(kBytes)},
    {"bBitResolution", 1, Dec(kBits)},
    {"bSamFreqType", 1, Enum(kSamFreqType)},
    {"tLowerSamFreq", 3, Dec(kHz)},
    {"tUpperSamFreq", 3, Dec(kHz)},
};

// Audio Streaming 1.0: Format-Specific (other): Audio Data Formats 1.0, 2.3.8
constexpr Field kFormatSpecificFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"wFormatTag", 2, Enum(kFormatTag)},
    {"Format-specific", "rest", Bytes()},
};

// Audio Streaming 1.0: Format-Specific, MPEG: Audio Data Formats 1.0, 2.3.8.1, table 2-7
constexpr Field kFormatSpecificMpegFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"wFormatTag", 2, Enum(kFormatTag)},
    {"bmMPEGCapabilities", 2, Bits(kMpegCapabilities)},
    {"bmMPEGFeatures", 1, Bits(kMpegFeatures)},
};

// Audio Streaming 1.0: Format-Specific, AC-3: Audio Data Formats 1.0, 2.3.8.2.1
constexpr Field kFormatSpecificAc3Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"wFormatTag", 2, Enum(kFormatTag)},
    {"bmBSID", 4, Bits(kAc3Bsid)},
    {"bmAC3Features", 1, Bits(kAc3Features)},
};

// Audio Streaming 1.0: Isochronous Endpoint (9 bytes): Audio 1.0, 4.6.1.1, table 4-20; 4.6.2.1,
// table 4-22
constexpr Field kAsIsocEndpointFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kDescriptorType)},
    {"bEndpointAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
    {"bmAttributes", 1, Bits(kEndpointAttrIsoch), {.when = "bmAttributes[1..0] == 1"}},
    {"bmAttributes", 1, Bits(kEndpointAttrInt), {.when = "bmAttributes[1..0] == 3"}},
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
    {"bInterval", 1, Dec(), {.when = "bmAttributes[0..0] == 0"}},
    {"bRefresh", 1, Dec(kPowerMilliseconds)},
    {"bSynchAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
};

// Audio Streaming 1.0: Isochronous Data Endpoint, General: Audio 1.0, 4.6.1.2, table 4-21
constexpr Field kAsIsocEndpointGeneralFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kEpSubtype)},
    {"bmAttributes", 1, Bits(kEpAttributes)},
    {"bLockDelayUnits", 1, Enum(kLockDelayUnits)},
    {"wLockDelay", 2, Dec(), {.when = "bLockDelayUnits == 0"}},
    {"wLockDelay", 2, Dec(kMilliseconds), {.when = "bLockDelayUnits == 1"}},
    {"wLockDelay", 2, Dec(kSamples), {.when = "bLockDelayUnits == 2"}},
    {"wLockDelay", 2, Dec(), {.when = "bLockDelayUnits >= 3"}},
};

constexpr Layout kLayouts[] = {
    {"uac1.ac_header", "Audio Control 1.0: Header",
     "type=24 subtype=01 class=01 subclass=01 protocol=00", 8, "8+bInCollection", kAcHeaderFields,
     "Audio 1.0, 4.3.2, table 4-2"},
    {"uac1.input_terminal", "Audio Control 1.0: Input Terminal",
     "type=24 subtype=02 class=01 subclass=01 protocol=00", 12, "12", kInputTerminalFields,
     "Audio 1.0, 4.3.2.1, table 4-3"},
    {"uac1.output_terminal", "Audio Control 1.0: Output Terminal",
     "type=24 subtype=03 class=01 subclass=01 protocol=00", 9, "9", kOutputTerminalFields,
     "Audio 1.0, 4.3.2.2, table 4-4"},
    {"uac1.mixer_unit", "Audio Control 1.0: Mixer Unit",
     "type=24 subtype=04 class=01 subclass=01 protocol=00", 10, "", kMixerUnitFields,
     "Audio 1.0, 4.3.2.3, table 4-5"},
    {"uac1.selector_unit", "Audio Control 1.0: Selector Unit",
     "type=24 subtype=05 class=01 subclass=01 protocol=00", 6, "6+bNrInPins", kSelectorUnitFields,
     "Audio 1.0, 4.3.2.4, table 4-6"},
    {"uac1.feature_unit", "Audio Control 1.0: Feature Unit",
     "type=24 subtype=06 class=01 subclass=01 protocol=00", 7,
     "7+(bLength-7)/bControlSize*bControlSize", kFeatureUnitFields,
     "Audio 1.0, 4.3.2.5, table 4-7"},
    {"uac1.processing_unit", "Audio Control 1.0: Processing Unit",
     "type=24 subtype=07 class=01 subclass=01 protocol=00", 13, "", kProcessingUnitFields,
     "Audio 1.0, 4.3.2.6, table 4-8"},
    {"uac1.processing_unit_updown_mix", "Audio Control 1.0: Processing Unit, Up/Down-mix",
     "type=24 subtype=07 class=01 subclass=01 protocol=00 wProcessType=0001", 14,
     "14+bNrInPins+bControlSize+2*bNrModes", kProcessingUnitUpdownMixFields,
     "Audio 1.0, 4.3.2.6.1, table 4-9"},
    {"uac1.processing_unit_dolby_prologic", "Audio Control 1.0: Processing Unit, Dolby Prologic",
     "type=24 subtype=07 class=01 subclass=01 protocol=00 wProcessType=0002", 14,
     "14+bNrInPins+bControlSize+2*bNrModes", kProcessingUnitDolbyPrologicFields,
     "Audio 1.0, 4.3.2.6.2, table 4-10"},
    {"uac1.processing_unit_3d_stereo_extender",
     "Audio Control 1.0: Processing Unit, 3D-Stereo Extender",
     "type=24 subtype=07 class=01 subclass=01 protocol=00 wProcessType=0003", 13,
     "13+bNrInPins+bControlSize", kProcessingUnit3dStereoExtenderFields,
     "Audio 1.0, 4.3.2.6.3, table 4-11"},
    {"uac1.processing_unit_reverberation", "Audio Control 1.0: Processing Unit, Reverberation",
     "type=24 subtype=07 class=01 subclass=01 protocol=00 wProcessType=0004", 13,
     "13+bNrInPins+bControlSize", kProcessingUnitReverberationFields,
     "Audio 1.0, 4.3.2.6.4, table 4-12"},
    {"uac1.processing_unit_chorus", "Audio Control 1.0: Processing Unit, Chorus",
     "type=24 subtype=07 class=01 subclass=01 protocol=00 wProcessType=0005", 13,
     "13+bNrInPins+bControlSize", kProcessingUnitChorusFields, "Audio 1.0, 4.3.2.6.5, table 4-13"},
    {"uac1.processing_unit_dyn_range_comp",
     "Audio Control 1.0: Processing Unit, Dynamic Range Compressor",
     "type=24 subtype=07 class=01 subclass=01 protocol=00 wProcessType=0006", 13,
     "13+bNrInPins+bControlSize", kProcessingUnitDynRangeCompFields,
     "Audio 1.0, 4.3.2.6.6, table 4-14"},
    {"uac1.extension_unit", "Audio Control 1.0: Extension Unit",
     "type=24 subtype=08 class=01 subclass=01 protocol=00", 13, "13+bNrInPins+bControlSize",
     kExtensionUnitFields, "Audio 1.0, 4.3.2.7, table 4-15"},
    {"uac1.ac_interrupt_endpoint", "Audio Control 1.0: Interrupt Endpoint (9 bytes)",
     "type=05 class=01 subclass=01 protocol=00 bLength=09", 9, "9", kAcInterruptEndpointFields,
     "Audio 1.0, 4.4.2.1, table 4-17"},
    {"uac1.as_general", "Audio Streaming 1.0: General",
     "type=24 subtype=01 class=01 subclass=02 protocol=00", 7, "7", kAsGeneralFields,
     "Audio 1.0, 4.5.2, table 4-19"},
    {"uac1.format_type", "Audio Streaming 1.0: Format Type (other)",
     "type=24 subtype=02 class=01 subclass=02 protocol=00", 4, "", kFormatTypeFields,
     "Audio Data Formats 1.0, 2.2 to 2.4"},
    {"uac1.format_type_i", "Audio Streaming 1.0: Format Type I, discrete frequencies",
     "type=24 subtype=02 class=01 subclass=02 protocol=00 bFormatType=01", 8, "8+3*bSamFreqType",
     kFormatTypeIFields, "Audio Data Formats 1.0, 2.2.5, tables 2-1 to 2-3"},
    {"uac1.format_type_i_continuous",
     "Audio Streaming 1.0: Format Type I, continuous frequency range",
     "type=24 subtype=02 class=01 subclass=02 protocol=00 bFormatType=01 bSamFreqType=00", 14, "14",
     kFormatTypeIContinuousFields, "Audio Data Formats 1.0, 2.2.5, tables 2-1 to 2-3"},
    {"uac1.format_type_ii", "Audio Streaming 1.0: Format Type II, discrete frequencies",
     "type=24 subtype=02 class=01 subclass=02 protocol=00 bFormatType=02", 9, "9+3*bSamFreqType",
     kFormatTypeIiFields, "Audio Data Formats 1.0, 2.3.6"},
    {"uac1.format_type_ii_continuous",
     "Audio Streaming 1.0: Format Type II, continuous frequency range",
     "type=24 subtype=02 class=01 subclass=02 protocol=00 bFormatType=02 bSamFreqType=00", 15, "15",
     kFormatTypeIiContinuousFields, "Audio Data Formats 1.0, 2.3.6"},
    {"uac1.format_type_iii", "Audio Streaming 1.0: Format Type III, discrete frequencies",
     "type=24 subtype=02 class=01 subclass=02 protocol=00 bFormatType=03", 8, "8+3*bSamFreqType",
     kFormatTypeIiiFields, "Audio Data Formats 1.0, 2.4.1"},
    {"uac1.format_type_iii_continuous",
     "Audio Streaming 1.0: Format Type III, continuous frequency range",
     "type=24 subtype=02 class=01 subclass=02 protocol=00 bFormatType=03 bSamFreqType=00", 14, "14",
     kFormatTypeIiiContinuousFields, "Audio Data Formats 1.0, 2.4.1"},
    {"uac1.format_specific", "Audio Streaming 1.0: Format-Specific (other)",
     "type=24 subtype=03 class=01 subclass=02 protocol=00", 5, "", kFormatSpecificFields,
     "Audio Data Formats 1.0, 2.3.8"},
    {"uac1.format_specific_mpeg", "Audio Streaming 1.0: Format-Specific, MPEG",
     "type=24 subtype=03 class=01 subclass=02 protocol=00 wFormatTag=1001", 8, "8",
     kFormatSpecificMpegFields, "Audio Data Formats 1.0, 2.3.8.1, table 2-7"},
    {"uac1.format_specific_ac3", "Audio Streaming 1.0: Format-Specific, AC-3",
     "type=24 subtype=03 class=01 subclass=02 protocol=00 wFormatTag=1002", 10, "10",
     kFormatSpecificAc3Fields, "Audio Data Formats 1.0, 2.3.8.2.1"},
    {"uac1.as_isoc_endpoint", "Audio Streaming 1.0: Isochronous Endpoint (9 bytes)",
     "type=05 class=01 subclass=02 protocol=00 bLength=09", 9, "9", kAsIsocEndpointFields,
     "Audio 1.0, 4.6.1.1, table 4-20; 4.6.2.1, table 4-22"},
    {"uac1.as_isoc_endpoint_general", "Audio Streaming 1.0: Isochronous Data Endpoint, General",
     "type=25 subtype=01 class=01 subclass=02 protocol=00", 7, "7", kAsIsocEndpointGeneralFields,
     "Audio 1.0, 4.6.1.2, table 4-21"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> Audio1Table() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
