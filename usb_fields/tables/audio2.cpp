// USB Audio 2.0 with its data formats.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// Audio 2.0, A.8, table A-8
constexpr Code kCsType[] = {
    {0x20, "CS_UNDEFINED"}, {0x21, "CS_DEVICE"},    {0x22, "CS_CONFIGURATION"},
    {0x23, "CS_STRING"},    {0x24, "CS_INTERFACE"}, {0x25, "CS_ENDPOINT"},
};

// Audio 2.0, A.9, table A-9
constexpr Code kAcSubtype[] = {
    {0x00, "AC_DESCRIPTOR_UNDEFINED"},
    {0x01, "HEADER"},
    {0x02, "INPUT_TERMINAL"},
    {0x03, "OUTPUT_TERMINAL"},
    {0x04, "MIXER_UNIT"},
    {0x05, "SELECTOR_UNIT"},
    {0x06, "FEATURE_UNIT"},
    {0x07, "EFFECT_UNIT"},
    {0x08, "PROCESSING_UNIT"},
    {0x09, "EXTENSION_UNIT"},
    {0x0A, "CLOCK_SOURCE"},
    {0x0B, "CLOCK_SELECTOR"},
    {0x0C, "CLOCK_MULTIPLIER"},
    {0x0D, "SAMPLE_RATE_CONVERTER"},
};

// Audio 2.0, A.7, table A-7
constexpr Code kCategory[] = {
    {0x00, "FUNCTION_SUBCLASS_UNDEFINED"},
    {0x01, "DESKTOP_SPEAKER"},
    {0x02, "HOME_THEATER"},
    {0x03, "MICROPHONE"},
    {0x04, "HEADSET"},
    {0x05, "TELEPHONE"},
    {0x06, "CONVERTER"},
    {0x07, "VOICE/SOUND_RECORDER"},
    {0x08, "I/O_BOX"},
    {0x09, "MUSICAL_INSTRUMENT"},
    {0x0A, "PRO-AUDIO"},
    {0x0B, "AUDIO/VIDEO"},
    {0x0C, "CONTROL_PANEL"},
    {0xFF, "OTHER"},
};

// Audio 2.0, 4.7.2, table 4-5
constexpr Bit kHeaderControls[] = {
    {1, 0, "Latency Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {7, 2, "Reserved"},
};

// Audio Terminal Types 2.0, 2
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
    {0x0608, "ADAT Lightpipe"},
    {0x0609, "TDIF"},
    {0x060A, "MADI"},
    {0x0700, "Embedded Undefined"},
    {0x0701, "Level Calibration Noise Source"},
    {0x0702, "Equalization Noise"},
    {0x0703, "CD player"},
    {0x0704, "DAT"},
    {0x0705, "DCC"},
    {0x0706, "Compressed Audio Player"},
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
    {0x0714, "Piano"},
    {0x0715, "Guitar"},
    {0x0716, "Drums/Rhythm"},
    {0x0717, "Other Musical Instrument"},
};

// Audio 2.0, 4.1
constexpr Bit kChannelConfig[] = {
    {0, "Front Left (FL)"},
    {1, "Front Right (FR)"},
    {2, "Front Center (FC)"},
    {3, "Low Frequency Effects (LFE)"},
    {4, "Back Left (BL)"},
    {5, "Back Right (BR)"},
    {6, "Front Left of Center (FLC)"},
    {7, "Front Right of Center (FRC)"},
    {8, "Back Center (BC)"},
    {9, "Side Left (SL)"},
    {10, "Side Right (SR)"},
    {11, "Top Center (TC)"},
    {12, "Top Front Left (TFL)"},
    {13, "Top Front Center (TFC)"},
    {14, "Top Front Right (TFR)"},
    {15, "Top Back Left (TBL)"},
    {16, "Top Back Center (TBC)"},
    {17, "Top Back Right (TBR)"},
    {18, "Top Front Left of Center (TFLC)"},
    {19, "Top Front Right of Center (TFRC)"},
    {20, "Left Low Frequency Effects (LLFE)"},
    {21, "Right Low Frequency Effects (RLFE)"},
    {22, "Top Side Left (TSL)"},
    {23, "Top Side Right (TSR)"},
    {24, "Bottom Center (BC)"},
    {25, "Back Left of Center (BLC)"},
    {26, "Back Right of Center (BRC)"},
    {30, 27, "Reserved"},
    {31, "Raw Data (RD)"},
};

// Audio 2.0, 4.7.2.4, table 4-9
constexpr Bit kInputTerminalControls[] = {
    {1, 0, "Copy Protect Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Connector Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Overload Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Cluster Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Underflow Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {11, 10, "Overflow Control"},
    {11, 10, 0, "Not present"},
    {11, 10, 1, "Present, read-only"},
    {11, 10, 2, "Not allowed"},
    {11, 10, 3, "Present, host programmable"},
    {15, 12, "Reserved"},
};

// Audio 2.0, 4.7.2.5, table 4-10
constexpr Bit kOutputTerminalControls[] = {
    {1, 0, "Copy Protect Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Connector Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Overload Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Underflow Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Overflow Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {15, 10, "Reserved"},
};

// Audio 2.0, 4.7.2.6, table 4-11
constexpr Bit kMixerControls[] = {
    {1, 0, "Cluster Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Underflow Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Overflow Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Reserved"},
};

// Audio 2.0, 4.7.2.7, table 4-12
constexpr Bit kSelectorControls[] = {
    {1, 0, "Selector Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {7, 2, "Reserved"},
};

// Audio 2.0, 4.7.2.8, table 4-13
constexpr Bit kFeatureControls[] = {
    {1, 0, "Mute Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Volume Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Bass Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Mid Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Treble Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {11, 10, "Graphic Equalizer Control"},
    {11, 10, 0, "Not present"},
    {11, 10, 1, "Present, read-only"},
    {11, 10, 2, "Not allowed"},
    {11, 10, 3, "Present, host programmable"},
    {13, 12, "Automatic Gain Control"},
    {13, 12, 0, "Not present"},
    {13, 12, 1, "Present, read-only"},
    {13, 12, 2, "Not allowed"},
    {13, 12, 3, "Present, host programmable"},
    {15, 14, "Delay Control"},
    {15, 14, 0, "Not present"},
    {15, 14, 1, "Present, read-only"},
    {15, 14, 2, "Not allowed"},
    {15, 14, 3, "Present, host programmable"},
    {17, 16, "Bass Boost Control"},
    {17, 16, 0, "Not present"},
    {17, 16, 1, "Present, read-only"},
    {17, 16, 2, "Not allowed"},
    {17, 16, 3, "Present, host programmable"},
    {19, 18, "Loudness Control"},
    {19, 18, 0, "Not present"},
    {19, 18, 1, "Present, read-only"},
    {19, 18, 2, "Not allowed"},
    {19, 18, 3, "Present, host programmable"},
    {21, 20, "Input Gain Control"},
    {21, 20, 0, "Not present"},
    {21, 20, 1, "Present, read-only"},
    {21, 20, 2, "Not allowed"},
    {21, 20, 3, "Present, host programmable"},
    {23, 22, "Input Gain Pad Control"},
    {23, 22, 0, "Not present"},
    {23, 22, 1, "Present, read-only"},
    {23, 22, 2, "Not allowed"},
    {23, 22, 3, "Present, host programmable"},
    {25, 24, "Phase Inverter Control"},
    {25, 24, 0, "Not present"},
    {25, 24, 1, "Present, read-only"},
    {25, 24, 2, "Not allowed"},
    {25, 24, 3, "Present, host programmable"},
    {27, 26, "Underflow Control"},
    {27, 26, 0, "Not present"},
    {27, 26, 1, "Present, read-only"},
    {27, 26, 2, "Not allowed"},
    {27, 26, 3, "Present, host programmable"},
    {29, 28, "Overflow Control"},
    {29, 28, 0, "Not present"},
    {29, 28, 1, "Present, read-only"},
    {29, 28, 2, "Not allowed"},
    {29, 28, 3, "Present, host programmable"},
    {31, 30, "Reserved"},
};

// Audio 2.0, A.11, table A-11
constexpr Code kEffectType[] = {
    {0x0000, "EFFECT_UNDEFINED"},      {0x0001, "PARAM_EQ_SECTION_EFFECT"},
    {0x0002, "REVERBERATION_EFFECT"},  {0x0003, "MOD_DELAY_EFFECT"},
    {0x0004, "DYN_RANGE_COMP_EFFECT"},
};

// Audio 2.0, 4.7.2.10.1, table 4-16
constexpr Bit kParamEqSectionControls[] = {
    {1, 0, "Enable Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Center Frequency Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Q Factor Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Gain Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Underflow Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {11, 10, "Overflow Control"},
    {11, 10, 0, "Not present"},
    {11, 10, 1, "Present, read-only"},
    {11, 10, 2, "Not allowed"},
    {11, 10, 3, "Present, host programmable"},
    {31, 12, "Reserved"},
};

// Audio 2.0, 4.7.2.10.2, table 4-17
constexpr Bit kReverberationControls[] = {
    {1, 0, "Enable Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Type Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Level Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Time Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Delay Feedback Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {11, 10, "Pre-Delay Control"},
    {11, 10, 0, "Not present"},
    {11, 10, 1, "Present, read-only"},
    {11, 10, 2, "Not allowed"},
    {11, 10, 3, "Present, host programmable"},
    {13, 12, "Density Control"},
    {13, 12, 0, "Not present"},
    {13, 12, 1, "Present, read-only"},
    {13, 12, 2, "Not allowed"},
    {13, 12, 3, "Present, host programmable"},
    {15, 14, "Hi-Freq Roll-Off Control"},
    {15, 14, 0, "Not present"},
    {15, 14, 1, "Present, read-only"},
    {15, 14, 2, "Not allowed"},
    {15, 14, 3, "Present, host programmable"},
    {17, 16, "Underflow Control"},
    {17, 16, 0, "Not present"},
    {17, 16, 1, "Present, read-only"},
    {17, 16, 2, "Not allowed"},
    {17, 16, 3, "Present, host programmable"},
    {19, 18, "Overflow Control"},
    {19, 18, 0, "Not present"},
    {19, 18, 1, "Present, read-only"},
    {19, 18, 2, "Not allowed"},
    {19, 18, 3, "Present, host programmable"},
    {31, 20, "Reserved"},
};

// Audio 2.0, 4.7.2.10.3, table 4-18
constexpr Bit kModDelayControls[] = {
    {1, 0, "Enable Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Balance Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Rate Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Depth Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Time Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {11, 10, "Feedback Level Control"},
    {11, 10, 0, "Not present"},
    {11, 10, 1, "Present, read-only"},
    {11, 10, 2, "Not allowed"},
    {11, 10, 3, "Present, host programmable"},
    {13, 12, "Underflow Control"},
    {13, 12, 0, "Not present"},
    {13, 12, 1, "Present, read-only"},
    {13, 12, 2, "Not allowed"},
    {13, 12, 3, "Present, host programmable"},
    {15, 14, "Overflow Control"},
    {15, 14, 0, "Not present"},
    {15, 14, 1, "Present, read-only"},
    {15, 14, 2, "Not allowed"},
    {15, 14, 3, "Present, host programmable"},
    {31, 16, "Reserved"},
};

// Audio 2.0, 4.7.2.10.4, table 4-19
constexpr Bit kDynRangeCompControls[] = {
    {1, 0, "Enable Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Compression Ratio Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "MaxAmpl Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Threshold Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Attack Time Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {11, 10, "Release Time Control"},
    {11, 10, 0, "Not present"},
    {11, 10, 1, "Present, read-only"},
    {11, 10, 2, "Not allowed"},
    {11, 10, 3, "Present, host programmable"},
    {13, 12, "Underflow Control"},
    {13, 12, 0, "Not present"},
    {13, 12, 1, "Present, read-only"},
    {13, 12, 2, "Not allowed"},
    {13, 12, 3, "Present, host programmable"},
    {15, 14, "Overflow Control"},
    {15, 14, 0, "Not present"},
    {15, 14, 1, "Present, read-only"},
    {15, 14, 2, "Not allowed"},
    {15, 14, 3, "Present, host programmable"},
    {31, 16, "Reserved"},
};

// Audio 2.0, A.12, table A-12
constexpr Code kProcessType[] = {
    {0x0000, "PROCESS_UNDEFINED"},
    {0x0001, "UP/DOWNMIX_PROCESS"},
    {0x0002, "DOLBY_PROLOGIC_PROCESS"},
    {0x0003, "STEREO_EXTENDER_PROCESS"},
};

// Audio 2.0, 4.7.2.11, table 4-20
constexpr Bit kProcessingControls[] = {
    {1, 0, "Enable Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {15, 2, "Process-specific"},
};

// Audio 2.0, 4.7.2.11.1, table 4-21
constexpr Bit kUpdownMixControls[] = {
    {1, 0, "Enable Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Mode Select Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Cluster Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Underflow Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Overflow Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {15, 10, "Reserved"},
};

// Audio 2.0, 4.7.2.11.2, table 4-22
constexpr Bit kDolbyPrologicControls[] = {
    {1, 0, "Enable Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Mode Select Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Cluster Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Underflow Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Overflow Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {15, 10, "Reserved"},
};

// Audio 2.0, 4.7.2.11.3, table 4-23
constexpr Bit kStereoExtenderControls[] = {
    {1, 0, "Enable Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Width Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Cluster Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Underflow Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Overflow Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {15, 10, "Reserved"},
};

// Audio 2.0, 4.7.2.12, table 4-24
constexpr Bit kExtensionControls[] = {
    {1, 0, "Enable Control"},
    {1, 0, 0, "Not allowed"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Cluster Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Underflow Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Overflow Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
};

// Audio 2.0, 4.7.2.1, table 4-6
constexpr Bit kClockSourceAttributes[] = {
    {1, 0, "Clock Type"},
    {1, 0, 0, "External Clock"},
    {1, 0, 1, "Internal fixed Clock"},
    {1, 0, 2, "Internal variable Clock"},
    {1, 0, 3, "Internal programmable Clock"},
    {2, 2, "Clock synchronized to SOF"},
    {2, 2, 0, "Free running"},
    {2, 2, 1, "Synchronized to Start of Frame"},
    {7, 3, "Reserved"},
};

// Audio 2.0, 4.7.2.1, table 4-6
constexpr Bit kClockSourceControls[] = {
    {1, 0, "Clock Frequency Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Clock Validity Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {7, 4, "Reserved"},
};

// Audio 2.0, 4.7.2.2, table 4-7
constexpr Bit kClockSelectorControls[] = {
    {1, 0, "Clock Selector Control"},        {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},         {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"}, {7, 2, "Reserved"},
};

// Audio 2.0, 4.7.2.3, table 4-8
constexpr Bit kClockMultiplierControls[] = {
    {1, 0, "Clock Numerator Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Not allowed"},
    {3, 2, "Clock Denominator Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Not allowed"},
    {7, 4, "Reserved"},
};

// Audio 2.0, A.10, table A-10
constexpr Code kAsSubtype[] = {
    {0x00, "AS_DESCRIPTOR_UNDEFINED"},
    {0x01, "AS_GENERAL"},
    {0x02, "FORMAT_TYPE"},
    {0x03, "ENCODER"},
    {0x04, "DECODER"},
};

// Audio 2.0, 4.9.2, table 4-27
constexpr Bit kAsControls[] = {
    {1, 0, "Active Alternate Setting Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Not allowed"},
    {3, 2, "Valid Alternate Settings Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Not allowed"},
    {7, 4, "Reserved"},
};

// Audio Data Formats 2.0, A.1
constexpr Code kFormatType[] = {
    {0x00, "FORMAT_TYPE_UNDEFINED"}, {0x01, "FORMAT_TYPE_I"},       {0x02, "FORMAT_TYPE_II"},
    {0x03, "FORMAT_TYPE_III"},       {0x04, "FORMAT_TYPE_IV"},      {0x81, "EXT_FORMAT_TYPE_I"},
    {0x82, "EXT_FORMAT_TYPE_II"},    {0x83, "EXT_FORMAT_TYPE_III"},
};

// Audio Data Formats 2.0, A.2.1
constexpr Bit kFormatsTypeI[] = {
    {0, "PCM"},   {1, "PCM8"},         {2, "IEEE_FLOAT"},       {3, "ALAW"},
    {4, "MULAW"}, {30, 5, "Reserved"}, {31, "TYPE_I_RAW_DATA"},
};

// Audio Data Formats 2.0, A.2.2
constexpr Bit kFormatsTypeIi[] = {
    {0, "MPEG"}, {1, "AC-3"}, {2, "WMA"}, {3, "DTS"}, {30, 4, "Reserved"}, {31, "TYPE_II_RAW_DATA"},
};

// Audio Data Formats 2.0, A.2.3
constexpr Bit kFormatsTypeIii[] = {
    {0, "IEC61937_AC-3"},
    {1, "IEC61937_MPEG-1_Layer1"},
    {2, "IEC61937_MPEG-1_Layer2/3 or IEC61937_MPEG-2_NOEXT"},
    {3, "IEC61937_MPEG-2_EXT"},
    {4, "IEC61937_MPEG-2_AAC_ADTS"},
    {5, "IEC61937_MPEG-2_Layer1_LS"},
    {6, "IEC61937_MPEG-2_Layer2/3_LS"},
    {7, "IEC61937_DTS-I"},
    {8, "IEC61937_DTS-II"},
    {9, "IEC61937_DTS-III"},
    {10, "IEC61937_ATRAC"},
    {11, "IEC61937_ATRAC2/3"},
    {12, "TYPE_III_WMA"},
    {31, 13, "Reserved"},
};

// Audio Data Formats 2.0, A.2.4
constexpr Bit kFormatsTypeIv[] = {
    {0, "PCM"},
    {1, "PCM8"},
    {2, "IEEE_FLOAT"},
    {3, "ALAW"},
    {4, "MULAW"},
    {5, "MPEG"},
    {6, "AC-3"},
    {7, "WMA"},
    {8, "IEC61937_AC-3"},
    {9, "IEC61937_MPEG-1_Layer1"},
    {10, "IEC61937_MPEG-1_Layer2/3 or IEC61937_MPEG-2_NOEXT"},
    {11, "IEC61937_MPEG-2_EXT"},
    {12, "IEC61937_MPEG-2_AAC_ADTS"},
    {13, "IEC61937_MPEG-2_Layer1_LS"},
    {14, "IEC61937_MPEG-2_Layer2/3_LS"},
    {15, "IEC61937_DTS-I"},
    {16, "IEC61937_DTS-II"},
    {17, "IEC61937_DTS-III"},
    {18, "IEC61937_ATRAC"},
    {19, "IEC61937_ATRAC2/3"},
    {20, "TYPE_III_WMA"},
    {21, "IEC60958_PCM"},
    {31, 22, "Reserved"},
};

// Audio Data Formats 2.0, A.3
constexpr Code kSideBandProtocol[] = {
    {0x00, "PROTOCOL_UNDEFINED"},
    {0x01, "PRES_TIMESTAMP_PROTOCOL"},
};

// Audio 2.0, A.15, table A-15
constexpr Code kEncoderType[] = {
    {0x00, "ENCODER_UNDEFINED"}, {0x01, "OTHER_ENCODER"}, {0x02, "MPEG_ENCODER"},
    {0x03, "AC-3_ENCODER"},      {0x04, "WMA_ENCODER"},   {0x05, "DTS_ENCODER"},
};

// Audio 2.0, 4.9.4.1, table 4-28
constexpr Bit kEncoderControls[] = {
    {1, 0, "Bit Rate Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Quality Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "VBR Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Type Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Underflow Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {11, 10, "Overflow Control"},
    {11, 10, 0, "Not present"},
    {11, 10, 1, "Present, read-only"},
    {11, 10, 2, "Not allowed"},
    {11, 10, 3, "Present, host programmable"},
    {13, 12, "Encoder Error Control"},
    {13, 12, 0, "Not present"},
    {13, 12, 1, "Present, read-only"},
    {13, 12, 2, "Not allowed"},
    {13, 12, 3, "Present, host programmable"},
    {15, 14, "Param1 Control"},
    {15, 14, 0, "Not present"},
    {15, 14, 1, "Present, read-only"},
    {15, 14, 2, "Not allowed"},
    {15, 14, 3, "Present, host programmable"},
    {17, 16, "Param2 Control"},
    {17, 16, 0, "Not present"},
    {17, 16, 1, "Present, read-only"},
    {17, 16, 2, "Not allowed"},
    {17, 16, 3, "Present, host programmable"},
    {19, 18, "Param3 Control"},
    {19, 18, 0, "Not present"},
    {19, 18, 1, "Present, read-only"},
    {19, 18, 2, "Not allowed"},
    {19, 18, 3, "Present, host programmable"},
    {21, 20, "Param4 Control"},
    {21, 20, 0, "Not present"},
    {21, 20, 1, "Present, read-only"},
    {21, 20, 2, "Not allowed"},
    {21, 20, 3, "Present, host programmable"},
    {23, 22, "Param5 Control"},
    {23, 22, 0, "Not present"},
    {23, 22, 1, "Present, read-only"},
    {23, 22, 2, "Not allowed"},
    {23, 22, 3, "Present, host programmable"},
    {25, 24, "Param6 Control"},
    {25, 24, 0, "Not present"},
    {25, 24, 1, "Present, read-only"},
    {25, 24, 2, "Not allowed"},
    {25, 24, 3, "Present, host programmable"},
    {27, 26, "Param7 Control"},
    {27, 26, 0, "Not present"},
    {27, 26, 1, "Present, read-only"},
    {27, 26, 2, "Not allowed"},
    {27, 26, 3, "Present, host programmable"},
    {29, 28, "Param8 Control"},
    {29, 28, 0, "Not present"},
    {29, 28, 1, "Present, read-only"},
    {29, 28, 2, "Not allowed"},
    {29, 28, 3, "Present, host programmable"},
    {31, 30, "Reserved"},
};

// Audio 2.0, A.16, table A-16
constexpr Code kDecoderType[] = {
    {0x00, "DECODER_UNDEFINED"}, {0x01, "OTHER_DECODER"}, {0x02, "MPEG_DECODER"},
    {0x03, "AC-3_DECODER"},      {0x04, "WMA_DECODER"},   {0x05, "DTS_DECODER"},
};

// Audio 2.0, 4.9.5.1, table 4-29
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
    {10, "Support for 1/2 Fs"},
    {15, 11, "Reserved"},
};

// Audio 2.0, 4.9.5.1, table 4-29
constexpr Bit kMpegFeatures[] = {
    {3, 0, "Reserved"},
    {5, 4, "Internal Dynamic Range Control"},
    {5, 4, 0, "Not supported"},
    {5, 4, 1, "Supported but not scalable"},
    {5, 4, 2, "Scalable, common boost and cut scaling value"},
    {5, 4, 3, "Scalable, separate boost and cut scaling value"},
    {7, 6, "Reserved"},
};

// Audio 2.0, 4.9.5.1, table 4-29
constexpr Bit kDecoderControls[] = {
    {1, 0, "Underflow Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Overflow Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Decoder Error Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Reserved"},
};

// Audio 2.0, 4.9.5.2
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

// Audio 2.0, 4.9.5.2, table 4-30
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

// Audio 2.0, 4.9.5.3, table 4-31
constexpr Bit kWmaProfile[] = {
    {0, "WMA Profile 1, L1"},       {1, "WMA Profile 2, L2"},      {2, "WMA Profile 3, L3"},
    {3, "WMA Profile Other, L"},    {4, "WMA Speech 1, S1"},       {5, "WMA Speech 2, S2"},
    {6, "WMAPro Profile 1, M1"},    {7, "WMAPro Profile 2, M2"},   {8, "WMAPro Profile 3, M3"},
    {9, "WMAPro Profile Other, M"}, {10, "WMA lossless decoding"}, {15, 11, "Reserved"},
};

// Audio 2.0, 4.9.5.4, table 4-32
constexpr Bit kDtsCapabilities[] = {
    {0, "Core"},       {1, "Lossless"},    {2, "LBR"}, {3, "MultipleStreamMixing"},
    {4, "DualDecode"}, {7, 5, "Reserved"},
};

// Audio 2.0, 4.9.5.4, table 4-32
constexpr Bit kDtsDecoderControls[] = {
    {1, 0, "Reserved"},
    {3, 2, "Underflow Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Overflow Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Decoder Error Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
};

// Audio 2.0, A.13, table A-13
constexpr Code kEpSubtype[] = {
    {0x00, "DESCRIPTOR_UNDEFINED"},
    {0x01, "EP_GENERAL"},
};

// Audio 2.0, 4.10.1.2, table 4-34
constexpr Bit kEpAttributes[] = {
    {6, 0, "Reserved"},
    {7, "MaxPacketsOnly"},
};

// Audio 2.0, 4.10.1.2, table 4-34
constexpr Bit kEpControls[] = {
    {1, 0, "Pitch Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Data Overrun Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Data Underrun Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Reserved"},
};

// Audio 2.0, 4.10.1.2, table 4-34
constexpr Code kLockDelayUnits[] = {
    {0x00, "Undefined"},
    {0x01, "Milliseconds"},
    {0x02, "Decoded PCM samples"},
    {0x03, 0xFF, "Reserved"},
};

// Audio Control 2.0: Header: Audio 2.0, 4.7.2, table 4-5
constexpr Field kAcHeaderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bcdADC", 2, Bcd()},
    {"bCategory", 1, Enum(kCategory)},
    {"wTotalLength", 2, Dec(kBytes)},
    {"bmControls", 1, Bits(kHeaderControls)},
};

// Audio Control 2.0: Input Terminal: Audio 2.0, 4.7.2.4, table 4-9
constexpr Field kInputTerminalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"bCSourceID", 1, Dec()},
    {"bNrChannels", 1, Dec()},
    {"bmChannelConfig", 4, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bmControls", 2, Bits(kInputTerminalControls)},
    {"iTerminal", 1, StringIndex()},
};

// Audio Control 2.0: Output Terminal: Audio 2.0, 4.7.2.5, table 4-10
constexpr Field kOutputTerminalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"bCSourceID", 1, Dec()},
    {"bmControls", 2, Bits(kOutputTerminalControls)},
    {"iTerminal", 1, StringIndex()},
};

// Audio Control 2.0: Mixer Unit: Audio 2.0, 4.7.2.6, table 4-11
constexpr Field kMixerUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"bmChannelConfig", 4, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bmMixerControls", 1, Hex(), {.repeat = "bLength-13-bNrInPins"}},
    {"bmControls", 1, Bits(kMixerControls)},
    {"iMixer", 1, StringIndex()},
};

// Audio Control 2.0: Selector Unit: Audio 2.0, 4.7.2.7, table 4-12
constexpr Field kSelectorUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bmControls", 1, Bits(kSelectorControls)},
    {"iSelector", 1, StringIndex()},
};

// Audio Control 2.0: Feature Unit: Audio 2.0, 4.7.2.8, table 4-13
constexpr Field kFeatureUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kFeatureControls), {.repeat = "(bLength-6)/4"}},
    {"iFeature", 1, StringIndex()},
};

// Audio Control 2.0: Effect Unit: Audio 2.0, 4.7.2.10, table 4-15
constexpr Field kEffectUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Hex(), {.repeat = "(bLength-8)/4"}},
    {"iEffects", 1, StringIndex()},
};

// Audio Control 2.0: Effect Unit, Parametric Equalizer Section: Audio 2.0, 4.7.2.10.1, table 4-16
constexpr Field kEffectUnitParamEqSectionFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kParamEqSectionControls), {.repeat = "(bLength-8)/4"}},
    {"iEffects", 1, StringIndex()},
};

// Audio Control 2.0: Effect Unit, Reverberation: Audio 2.0, 4.7.2.10.2, table 4-17
constexpr Field kEffectUnitReverberationFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kReverberationControls), {.repeat = "(bLength-8)/4"}},
    {"iEffects", 1, StringIndex()},
};

// Audio Control 2.0: Effect Unit, Modulation Delay: Audio 2.0, 4.7.2.10.3, table 4-18
constexpr Field kEffectUnitModDelayFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kModDelayControls), {.repeat = "(bLength-8)/4"}},
    {"iEffects", 1, StringIndex()},
};

// Audio Control 2.0: Effect Unit, Dynamic Range Compressor: Audio 2.0, 4.7.2.10.4, table 4-19
constexpr Field kEffectUnitDynRangeCompFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kDynRangeCompControls), {.repeat = "(bLength-8)/4"}},
    {"iEffects", 1, StringIndex()},
};

// Audio Control 2.0: Processing Unit: Audio 2.0, 4.7.2.11, table 4-20
constexpr Field kProcessingUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"bmChannelConfig", 4, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bmControls", 2, Bits(kProcessingControls)},
    {"iProcessing", 1, StringIndex()},
    {"Process-specific", "rest", Bytes()},
};

// Audio Control 2.0: Processing Unit, Up/Down-mix: Audio 2.0, 4.7.2.11.1, table 4-21
constexpr Field kProcessingUnitUpdownMixFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"bSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"bmChannelConfig", 4, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bmControls", 2, Bits(kUpdownMixControls)},
    {"iProcessing", 1, StringIndex()},
    {"bNrModes", 1, Dec()},
    {"daModes", 4, Bits(kChannelConfig), {.repeat = "bNrModes"}},
};

// Audio Control 2.0: Processing Unit, Dolby Prologic: Audio 2.0, 4.7.2.11.2, table 4-22
constexpr Field kProcessingUnitDolbyPrologicFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"bSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"bmChannelConfig", 4, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bmControls", 2, Bits(kDolbyPrologicControls)},
    {"iProcessing", 1, StringIndex()},
    {"bNrModes", 1, Dec()},
    {"daModes", 4, Bits(kChannelConfig), {.repeat = "bNrModes"}},
};

// Audio Control 2.0: Processing Unit, Stereo Extender: Audio 2.0, 4.7.2.11.3, table 4-23
constexpr Field kProcessingUnitStereoExtenderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"bSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"bmChannelConfig", 4, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bmControls", 2, Bits(kStereoExtenderControls)},
    {"iProcessing", 1, StringIndex()},
};

// Audio Control 2.0: Extension Unit: Audio 2.0, 4.7.2.12, table 4-24
constexpr Field kExtensionUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wExtensionCode", 2, Hex()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bNrChannels", 1, Dec()},
    {"bmChannelConfig", 4, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
    {"bmControls", 1, Bits(kExtensionControls)},
    {"iExtension", 1, StringIndex()},
};

// Audio Control 2.0: Clock Source: Audio 2.0, 4.7.2.1, table 4-6
constexpr Field kClockSourceFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bClockID", 1, Dec()},
    {"bmAttributes", 1, Bits(kClockSourceAttributes)},
    {"bmControls", 1, Bits(kClockSourceControls)},
    {"bAssocTerminal", 1, Dec()},
    {"iClockSource", 1, StringIndex()},
};

// Audio Control 2.0: Clock Selector: Audio 2.0, 4.7.2.2, table 4-7
constexpr Field kClockSelectorFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bClockID", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baCSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bmControls", 1, Bits(kClockSelectorControls)},
    {"iClockSelector", 1, StringIndex()},
};

// Audio Control 2.0: Clock Multiplier: Audio 2.0, 4.7.2.3, table 4-8
constexpr Field kClockMultiplierFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bClockID", 1, Dec()},
    {"bCSourceID", 1, Dec()},
    {"bmControls", 1, Bits(kClockMultiplierControls)},
    {"iClockMultiplier", 1, StringIndex()},
};

// Audio Control 2.0: Sampling Rate Converter Unit: Audio 2.0, 4.7.2.9, table 4-14
constexpr Field kSamplingRateConverterFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"bCSourceInID", 1, Dec()},
    {"bCSourceOutID", 1, Dec()},
    {"iSRC", 1, StringIndex()},
};

// Audio Control 2.0: Interrupt Endpoint: Audio 2.0, 4.8.2.1, table 4-25
constexpr Field kAcInterruptEndpointFields[] = {
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
    {"bInterval", 1, Dec(), {.when = "bmAttributes[0..0] == 0"}},
};

// Audio Streaming 2.0: General: Audio 2.0, 4.9.2, table 4-27
constexpr Field kAsGeneralFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bTerminalLink", 1, Dec()},
    {"bmControls", 1, Bits(kAsControls)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"bmFormats", 4, Bits(kFormatsTypeI), {.when = "bFormatType == 1"}},
    {"bmFormats", 4, Bits(kFormatsTypeIi), {.when = "bFormatType == 2"}},
    {"bmFormats", 4, Bits(kFormatsTypeIii), {.when = "bFormatType == 3"}},
    {"bmFormats", 4, Bits(kFormatsTypeIv), {.when = "bFormatType == 4"}},
    {"bmFormats", 4, Bits(kFormatsTypeI), {.when = "bFormatType == 0x81"}},
    {"bmFormats", 4, Bits(kFormatsTypeIi), {.when = "bFormatType == 0x82"}},
    {"bmFormats", 4, Bits(kFormatsTypeIii), {.when = "bFormatType == 0x83"}},
    {"bmFormats", 4, Hex(), {.when = "bFormatType == 0"}},
    {"bmFormats", 4, Hex(), {.when = "bFormatType >= 5 && bFormatType <= 0x80"}},
    {"bmFormats", 4, Hex(), {.when = "bFormatType >= 0x84"}},
    {"bNrChannels", 1, Dec()},
    {"bmChannelConfig", 4, Bits(kChannelConfig)},
    {"iChannelNames", 1, StringIndex()},
};

// Audio Streaming 2.0: Format Type (other): Audio Data Formats 2.0, 2.3
constexpr Field kFormatTypeFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"Format-specific", "rest", Bytes()},
};

// Audio Streaming 2.0: Format Type I: Audio Data Formats 2.0, 2.3.1.6, table 2-2
constexpr Field kFormatTypeIFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"bSubslotSize", 1, Dec(kBytes)},
    {"bBitResolution", 1, Dec(kBits)},
};

// Audio Streaming 2.0: Format Type II: Audio Data Formats 2.0, 2.3.2, table 2-3
constexpr Field kFormatTypeIiFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"wMaxBitRate", 2, Dec(kKilobitsPerSecond)},
    {"wSlotsPerFrame", 2, Dec()},
};

// Audio Streaming 2.0: Format Type III: Audio Data Formats 2.0, 2.3.3.1, table 2-4
constexpr Field kFormatTypeIiiFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"bSubslotSize", 1, Dec(kBytes)},
    {"bBitResolution", 1, Dec(kBits)},
};

// Audio Streaming 2.0: Format Type IV: Audio Data Formats 2.0, 2.3.4.1, table 2-5
constexpr Field kFormatTypeIvFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
};

// Audio Streaming 2.0: Extended Format Type I: Audio Data Formats 2.0, 2.4, table 2-6
constexpr Field kExtFormatTypeIFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"bSubslotSize", 1, Dec(kBytes)},
    {"bBitResolution", 1, Dec(kBits)},
    {"bHeaderLength", 1, Dec(kBytes)},
    {"bControlSize", 1, Dec(kBytes)},
    {"bSideBandProtocol", 1, Enum(kSideBandProtocol)},
};

// Audio Streaming 2.0: Extended Format Type II: Audio Data Formats 2.0, 2.4, table 2-7
constexpr Field kExtFormatTypeIiFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"wMaxBitRate", 2, Dec(kKilobitsPerSecond)},
    {"wSamplesPerFrame", 2, Dec()},
    {"bHeaderLength", 1, Dec(kBytes)},
    {"bSideBandProtocol", 1, Enum(kSideBandProtocol)},
};

// Audio Streaming 2.0: Extended Format Type III: Audio Data Formats 2.0, 2.4, table 2-8
constexpr Field kExtFormatTypeIiiFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bFormatType", 1, Enum(kFormatType)},
    {"bSubslotSize", 1, Dec(kBytes)},
    {"bBitResolution", 1, Dec(kBits)},
    {"bHeaderLength", 1, Dec(kBytes)},
    {"bSideBandProtocol", 1, Enum(kSideBandProtocol)},
};

// Audio Streaming 2.0: Encoder: Audio 2.0, 4.9.4.1, table 4-28
constexpr Field kEncoderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bEncoderID", 1, Dec()},
    {"bEncoder", 1, Enum(kEncoderType)},
    {"Reserved", 3, Bytes()},
    {"bmControls", 4, Bits(kEncoderControls)},
    {"iParam1", 1, StringIndex()},
    {"iParam2", 1, StringIndex()},
    {"iParam3", 1, StringIndex()},
    {"iParam4", 1, StringIndex()},
    {"iParam5", 1, StringIndex()},
    {"iParam6", 1, StringIndex()},
    {"iParam7", 1, StringIndex()},
    {"iParam8", 1, StringIndex()},
    {"iEncoder", 1, StringIndex()},
};

// Audio Streaming 2.0: Decoder (other): Audio 2.0, 4.9.5
constexpr Field kDecoderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bDecoderID", 1, Dec()},
    {"bDecoder", 1, Enum(kDecoderType)},
    {"Decoder-specific", "rest", Bytes()},
};

// Audio Streaming 2.0: MPEG Decoder: Audio 2.0, 4.9.5.1, table 4-29
constexpr Field kDecoderMpegFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bDecoderID", 1, Dec()},
    {"bDecoder", 1, Enum(kDecoderType)},
    {"bmMPEGCapabilities", 2, Bits(kMpegCapabilities)},
    {"bmMPEGFeatures", 1, Bits(kMpegFeatures)},
    {"bmControls", 1, Bits(kDecoderControls)},
    {"iDecoder", 1, StringIndex()},
};

// Audio Streaming 2.0: AC-3 Decoder: Audio 2.0, 4.9.5.2, table 4-30
constexpr Field kDecoderAc3Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bDecoderID", 1, Dec()},
    {"bDecoder", 1, Enum(kDecoderType)},
    {"bmBSID", 4, Bits(kAc3Bsid)},
    {"bmAC3Features", 1, Bits(kAc3Features)},
    {"bmControls", 1, Bits(kDecoderControls)},
    {"iDecoder", 1, StringIndex()},
};

// Audio Streaming 2.0: WMA Decoder: Audio 2.0, 4.9.5.3, table 4-31
constexpr Field kDecoderWmaFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bDecoderID", 1, Dec()},
    {"bDecoder", 1, Enum(kDecoderType)},
    {"bmWMAProfile", 2, Bits(kWmaProfile)},
    {"bmControls", 1, Bits(kDecoderControls)},
    {"iDecoder", 1, StringIndex()},
};

// Audio Streaming 2.0: DTS Decoder: Audio 2.0, 4.9.5.4, table 4-32
constexpr Field kDecoderDtsFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bDecoderID", 1, Dec()},
    {"bDecoder", 1, Enum(kDecoderType)},
    {"bmCapabilities", 1, Bits(kDtsCapabilities)},
    {"bmControls", 1, Bits(kDtsDecoderControls)},
    {"iDecoder", 1, StringIndex()},
};

// Audio Streaming 2.0: Isochronous Endpoint: Audio 2.0, 4.10.1.1, table 4-33; 4.10.2.1, table 4-35
constexpr Field kAsIsocEndpointFields[] = {
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
    {"bInterval", 1, Dec(), {.when = "bmAttributes[0..0] == 0"}},
};

// Audio Streaming 2.0: Isochronous Data Endpoint, General: Audio 2.0, 4.10.1.2, table 4-34
constexpr Field kAsIsocEndpointGeneralFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kEpSubtype)},
    {"bmAttributes", 1, Bits(kEpAttributes)},
    {"bmControls", 1, Bits(kEpControls)},
    {"bLockDelayUnits", 1, Enum(kLockDelayUnits)},
    {"wLockDelay", 2, Dec(), {.when = "bLockDelayUnits == 0"}},
    {"wLockDelay", 2, Dec(kMilliseconds), {.when = "bLockDelayUnits == 1"}},
    {"wLockDelay", 2, Dec(kSamples), {.when = "bLockDelayUnits == 2"}},
    {"wLockDelay", 2, Dec(), {.when = "bLockDelayUnits >= 3"}},
};

constexpr Layout kLayouts[] = {
    {"uac2.ac_header", "Audio Control 2.0: Header",
     "type=24 subtype=01 class=01 subclass=01 protocol=20", 9, "9", kAcHeaderFields,
     "Audio 2.0, 4.7.2, table 4-5"},
    {"uac2.input_terminal", "Audio Control 2.0: Input Terminal",
     "type=24 subtype=02 class=01 subclass=01 protocol=20", 17, "17", kInputTerminalFields,
     "Audio 2.0, 4.7.2.4, table 4-9"},
    {"uac2.output_terminal", "Audio Control 2.0: Output Terminal",
     "type=24 subtype=03 class=01 subclass=01 protocol=20", 12, "12", kOutputTerminalFields,
     "Audio 2.0, 4.7.2.5, table 4-10"},
    {"uac2.mixer_unit", "Audio Control 2.0: Mixer Unit",
     "type=24 subtype=04 class=01 subclass=01 protocol=20", 13, "", kMixerUnitFields,
     "Audio 2.0, 4.7.2.6, table 4-11"},
    {"uac2.selector_unit", "Audio Control 2.0: Selector Unit",
     "type=24 subtype=05 class=01 subclass=01 protocol=20", 7, "7+bNrInPins", kSelectorUnitFields,
     "Audio 2.0, 4.7.2.7, table 4-12"},
    {"uac2.feature_unit", "Audio Control 2.0: Feature Unit",
     "type=24 subtype=06 class=01 subclass=01 protocol=20", 6, "6+(bLength-6)/4*4",
     kFeatureUnitFields, "Audio 2.0, 4.7.2.8, table 4-13"},
    {"uac2.effect_unit", "Audio Control 2.0: Effect Unit",
     "type=24 subtype=07 class=01 subclass=01 protocol=20", 8, "8+(bLength-8)/4*4",
     kEffectUnitFields, "Audio 2.0, 4.7.2.10, table 4-15"},
    {"uac2.effect_unit_param_eq_section",
     "Audio Control 2.0: Effect Unit, Parametric Equalizer Section",
     "type=24 subtype=07 class=01 subclass=01 protocol=20 wEffectType=0001", 8, "8+(bLength-8)/4*4",
     kEffectUnitParamEqSectionFields, "Audio 2.0, 4.7.2.10.1, table 4-16"},
    {"uac2.effect_unit_reverberation", "Audio Control 2.0: Effect Unit, Reverberation",
     "type=24 subtype=07 class=01 subclass=01 protocol=20 wEffectType=0002", 8, "8+(bLength-8)/4*4",
     kEffectUnitReverberationFields, "Audio 2.0, 4.7.2.10.2, table 4-17"},
    {"uac2.effect_unit_mod_delay", "Audio Control 2.0: Effect Unit, Modulation Delay",
     "type=24 subtype=07 class=01 subclass=01 protocol=20 wEffectType=0003", 8, "8+(bLength-8)/4*4",
     kEffectUnitModDelayFields, "Audio 2.0, 4.7.2.10.3, table 4-18"},
    {"uac2.effect_unit_dyn_range_comp", "Audio Control 2.0: Effect Unit, Dynamic Range Compressor",
     "type=24 subtype=07 class=01 subclass=01 protocol=20 wEffectType=0004", 8, "8+(bLength-8)/4*4",
     kEffectUnitDynRangeCompFields, "Audio 2.0, 4.7.2.10.4, table 4-19"},
    {"uac2.processing_unit", "Audio Control 2.0: Processing Unit",
     "type=24 subtype=08 class=01 subclass=01 protocol=20", 16, "", kProcessingUnitFields,
     "Audio 2.0, 4.7.2.11, table 4-20"},
    {"uac2.processing_unit_updown_mix", "Audio Control 2.0: Processing Unit, Up/Down-mix",
     "type=24 subtype=08 class=01 subclass=01 protocol=20 wProcessType=0001", 17,
     "17+bNrInPins+4*bNrModes", kProcessingUnitUpdownMixFields,
     "Audio 2.0, 4.7.2.11.1, table 4-21"},
    {"uac2.processing_unit_dolby_prologic", "Audio Control 2.0: Processing Unit, Dolby Prologic",
     "type=24 subtype=08 class=01 subclass=01 protocol=20 wProcessType=0002", 17,
     "17+bNrInPins+4*bNrModes", kProcessingUnitDolbyPrologicFields,
     "Audio 2.0, 4.7.2.11.2, table 4-22"},
    {"uac2.processing_unit_stereo_extender", "Audio Control 2.0: Processing Unit, Stereo Extender",
     "type=24 subtype=08 class=01 subclass=01 protocol=20 wProcessType=0003", 16, "16+bNrInPins",
     kProcessingUnitStereoExtenderFields, "Audio 2.0, 4.7.2.11.3, table 4-23"},
    {"uac2.extension_unit", "Audio Control 2.0: Extension Unit",
     "type=24 subtype=09 class=01 subclass=01 protocol=20", 15, "15+bNrInPins",
     kExtensionUnitFields, "Audio 2.0, 4.7.2.12, table 4-24"},
    {"uac2.clock_source", "Audio Control 2.0: Clock Source",
     "type=24 subtype=0A class=01 subclass=01 protocol=20", 8, "8", kClockSourceFields,
     "Audio 2.0, 4.7.2.1, table 4-6"},
    {"uac2.clock_selector", "Audio Control 2.0: Clock Selector",
     "type=24 subtype=0B class=01 subclass=01 protocol=20", 7, "7+bNrInPins", kClockSelectorFields,
     "Audio 2.0, 4.7.2.2, table 4-7"},
    {"uac2.clock_multiplier", "Audio Control 2.0: Clock Multiplier",
     "type=24 subtype=0C class=01 subclass=01 protocol=20", 7, "7", kClockMultiplierFields,
     "Audio 2.0, 4.7.2.3, table 4-8"},
    {"uac2.sampling_rate_converter", "Audio Control 2.0: Sampling Rate Converter Unit",
     "type=24 subtype=0D class=01 subclass=01 protocol=20", 8, "8", kSamplingRateConverterFields,
     "Audio 2.0, 4.7.2.9, table 4-14"},
    {"uac2.ac_interrupt_endpoint", "Audio Control 2.0: Interrupt Endpoint",
     "type=05 class=01 subclass=01 protocol=20", 7, "7", kAcInterruptEndpointFields,
     "Audio 2.0, 4.8.2.1, table 4-25"},
    {"uac2.as_general", "Audio Streaming 2.0: General",
     "type=24 subtype=01 class=01 subclass=02 protocol=20", 16, "16", kAsGeneralFields,
     "Audio 2.0, 4.9.2, table 4-27"},
    {"uac2.format_type", "Audio Streaming 2.0: Format Type (other)",
     "type=24 subtype=02 class=01 subclass=02 protocol=20", 4, "", kFormatTypeFields,
     "Audio Data Formats 2.0, 2.3"},
    {"uac2.format_type_i", "Audio Streaming 2.0: Format Type I",
     "type=24 subtype=02 class=01 subclass=02 protocol=20 bFormatType=01", 6, "6",
     kFormatTypeIFields, "Audio Data Formats 2.0, 2.3.1.6, table 2-2"},
    {"uac2.format_type_ii", "Audio Streaming 2.0: Format Type II",
     "type=24 subtype=02 class=01 subclass=02 protocol=20 bFormatType=02", 8, "8",
     kFormatTypeIiFields, "Audio Data Formats 2.0, 2.3.2, table 2-3"},
    {"uac2.format_type_iii", "Audio Streaming 2.0: Format Type III",
     "type=24 subtype=02 class=01 subclass=02 protocol=20 bFormatType=03", 6, "6",
     kFormatTypeIiiFields, "Audio Data Formats 2.0, 2.3.3.1, table 2-4"},
    {"uac2.format_type_iv", "Audio Streaming 2.0: Format Type IV",
     "type=24 subtype=02 class=01 subclass=02 protocol=20 bFormatType=04", 4, "4",
     kFormatTypeIvFields, "Audio Data Formats 2.0, 2.3.4.1, table 2-5"},
    {"uac2.ext_format_type_i", "Audio Streaming 2.0: Extended Format Type I",
     "type=24 subtype=02 class=01 subclass=02 protocol=20 bFormatType=81", 9, "9",
     kExtFormatTypeIFields, "Audio Data Formats 2.0, 2.4, table 2-6"},
    {"uac2.ext_format_type_ii", "Audio Streaming 2.0: Extended Format Type II",
     "type=24 subtype=02 class=01 subclass=02 protocol=20 bFormatType=82", 10, "10",
     kExtFormatTypeIiFields, "Audio Data Formats 2.0, 2.4, table 2-7"},
    {"uac2.ext_format_type_iii", "Audio Streaming 2.0: Extended Format Type III",
     "type=24 subtype=02 class=01 subclass=02 protocol=20 bFormatType=83", 8, "8",
     kExtFormatTypeIiiFields, "Audio Data Formats 2.0, 2.4, table 2-8"},
    {"uac2.encoder", "Audio Streaming 2.0: Encoder",
     "type=24 subtype=03 class=01 subclass=02 protocol=20", 21, "21", kEncoderFields,
     "Audio 2.0, 4.9.4.1, table 4-28"},
    {"uac2.decoder", "Audio Streaming 2.0: Decoder (other)",
     "type=24 subtype=04 class=01 subclass=02 protocol=20", 5, "", kDecoderFields,
     "Audio 2.0, 4.9.5"},
    {"uac2.decoder_mpeg", "Audio Streaming 2.0: MPEG Decoder",
     "type=24 subtype=04 class=01 subclass=02 protocol=20 bDecoder=02", 10, "10",
     kDecoderMpegFields, "Audio 2.0, 4.9.5.1, table 4-29"},
    {"uac2.decoder_ac3", "Audio Streaming 2.0: AC-3 Decoder",
     "type=24 subtype=04 class=01 subclass=02 protocol=20 bDecoder=03", 12, "12", kDecoderAc3Fields,
     "Audio 2.0, 4.9.5.2, table 4-30"},
    {"uac2.decoder_wma", "Audio Streaming 2.0: WMA Decoder",
     "type=24 subtype=04 class=01 subclass=02 protocol=20 bDecoder=04", 9, "9", kDecoderWmaFields,
     "Audio 2.0, 4.9.5.3, table 4-31"},
    {"uac2.decoder_dts", "Audio Streaming 2.0: DTS Decoder",
     "type=24 subtype=04 class=01 subclass=02 protocol=20 bDecoder=05", 8, "8", kDecoderDtsFields,
     "Audio 2.0, 4.9.5.4, table 4-32"},
    {"uac2.as_isoc_endpoint", "Audio Streaming 2.0: Isochronous Endpoint",
     "type=05 class=01 subclass=02 protocol=20", 7, "7", kAsIsocEndpointFields,
     "Audio 2.0, 4.10.1.1, table 4-33; 4.10.2.1, table 4-35"},
    {"uac2.as_isoc_endpoint_general", "Audio Streaming 2.0: Isochronous Data Endpoint, General",
     "type=25 subtype=01 class=01 subclass=02 protocol=20", 8, "8", kAsIsocEndpointGeneralFields,
     "Audio 2.0, 4.10.1.2, table 4-34"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> Audio2Table() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
