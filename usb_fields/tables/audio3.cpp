// USB Audio 3.0 with its data formats.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// Audio 3.0, A.8, table A-8
constexpr Code kCsType[] = {
    {0x20, "CS_UNDEFINED"}, {0x21, "CS_DEVICE"},   {0x22, "CS_CONFIGURATION"}, {0x23, "CS_STRING"},
    {0x24, "CS_INTERFACE"}, {0x25, "CS_ENDPOINT"}, {0x26, "CS_CLUSTER"},
};

// Audio 3.0, A.15, table A-15
constexpr Code kAcSubtype[] = {
    {0x00, "AC_DESCRIPTOR_UNDEFINED"},
    {0x01, "HEADER"},
    {0x02, "INPUT_TERMINAL"},
    {0x03, "OUTPUT_TERMINAL"},
    {0x04, "EXTENDED_TERMINAL"},
    {0x05, "MIXER_UNIT"},
    {0x06, "SELECTOR_UNIT"},
    {0x07, "FEATURE_UNIT"},
    {0x08, "EFFECT_UNIT"},
    {0x09, "PROCESSING_UNIT"},
    {0x0A, "EXTENSION_UNIT"},
    {0x0B, "CLOCK_SOURCE"},
    {0x0C, "CLOCK_SELECTOR"},
    {0x0D, "CLOCK_MULTIPLIER"},
    {0x0E, "SAMPLE_RATE_CONVERTER"},
    {0x0F, "CONNECTORS"},
    {0x10, "POWER_DOMAIN"},
};

// Audio 3.0, A.7, table A-7
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
    {0x0D, "HEADPHONE"},
    {0x0E, "GENERIC_SPEAKER"},
    {0x0F, "HEADSET_ADAPTER"},
    {0x10, "SPEAKERPHONE"},
    {0x11, 0xFE, "Reserved"},
    {0xFF, "OTHER"},
};

// Audio 3.0, 4.5.2, table 4-15
constexpr Bit kHeaderControls[] = {
    {1, 0, "Latency Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {31, 2, "Reserved"},
};

// Audio Terminal Types 3.0, 2
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

// Audio 3.0, 4.5.2.1, table 4-16; 4.5.2.2, table 4-17
constexpr Bit kTerminalControls[] = {
    {1, 0, "Insertion Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Overload Control"},
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
    {31, 8, "Reserved"},
};

// Audio 3.0, 4.5.2.5, table 4-29
constexpr Bit kMixerControls[] = {
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
    {31, 4, "Reserved"},
};

// Audio 3.0, 4.5.2.6, table 4-30
constexpr Bit kSelectorControls[] = {
    {1, 0, "Selector Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {31, 2, "Reserved"},
};

// Audio 3.0, 4.5.2.7, table 4-31
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

// Audio 3.0, A.19, table A-19
constexpr Code kEffectType[] = {
    {0x0000, "EFFECT_UNDEFINED"},      {0x0001, "PARAM_EQ_SECTION_EFFECT"},
    {0x0002, "REVERBERATION_EFFECT"},  {0x0003, "MOD_DELAY_EFFECT"},
    {0x0004, "DYN_RANGE_COMP_EFFECT"},
};

// Audio 3.0, 4.5.2.9.1, table 4-34
constexpr Bit kParamEqSectionControls[] = {
    {1, 0, "Center Frequency Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Q Factor Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Gain Control"},
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
    {31, 10, "Reserved"},
};

// Audio 3.0, 4.5.2.9.2, table 4-35
constexpr Bit kReverberationControls[] = {
    {1, 0, "Type Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Level Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Time Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {7, 6, "Delay Feedback Control"},
    {7, 6, 0, "Not present"},
    {7, 6, 1, "Present, read-only"},
    {7, 6, 2, "Not allowed"},
    {7, 6, 3, "Present, host programmable"},
    {9, 8, "Pre-Delay Control"},
    {9, 8, 0, "Not present"},
    {9, 8, 1, "Present, read-only"},
    {9, 8, 2, "Not allowed"},
    {9, 8, 3, "Present, host programmable"},
    {11, 10, "Density Control"},
    {11, 10, 0, "Not present"},
    {11, 10, 1, "Present, read-only"},
    {11, 10, 2, "Not allowed"},
    {11, 10, 3, "Present, host programmable"},
    {13, 12, "Hi-Freq Roll-Off Control"},
    {13, 12, 0, "Not present"},
    {13, 12, 1, "Present, read-only"},
    {13, 12, 2, "Not allowed"},
    {13, 12, 3, "Present, host programmable"},
    {15, 14, "Underflow Control"},
    {15, 14, 0, "Not present"},
    {15, 14, 1, "Present, read-only"},
    {15, 14, 2, "Not allowed"},
    {15, 14, 3, "Present, host programmable"},
    {17, 16, "Overflow Control"},
    {17, 16, 0, "Not present"},
    {17, 16, 1, "Present, read-only"},
    {17, 16, 2, "Not allowed"},
    {17, 16, 3, "Present, host programmable"},
    {31, 18, "Reserved"},
};

// Audio 3.0, 4.5.2.9.3, table 4-36
constexpr Bit kModDelayControls[] = {
    {1, 0, "Shall be set to 0b11"},
    {1, 0, 0, "Not allowed"},
    {1, 0, 1, "Not allowed"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "As required"},
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

// Audio 3.0, 4.5.2.9.4, table 4-37
constexpr Bit kDynRangeCompControls[] = {
    {1, 0, "Shall be set to 0b11"},
    {1, 0, 0, "Not allowed"},
    {1, 0, 1, "Not allowed"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "As required"},
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

// Audio 3.0, A.20, table A-20
constexpr Code kProcessType[] = {
    {0x0000, "PROCESS_UNDEFINED"},
    {0x0001, "UP/DOWNMIX_PROCESS"},
    {0x0002, "STEREO_EXTENDER_PROCESS"},
    {0x0003, "MULTI_FUNCTION_PROCESS"},
};

// Audio 3.0, 4.5.2.10.1, table 4-39
constexpr Bit kUpdownMixControls[] = {
    {1, 0, "Mode Select Control"},
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
    {31, 6, "Reserved"},
};

// Audio 3.0, 4.5.2.10.2, table 4-40
constexpr Bit kStereoExtenderControls[] = {
    {1, 0, "Width Control"},
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
    {31, 6, "Reserved"},
};

// Audio 3.0, 4.5.2.10.3, table 4-41
constexpr Bit kMultiFunctionControls[] = {
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
    {31, 4, "Reserved"},
};

// Audio 3.0, 4.5.2.10.3, table 4-41
constexpr Bit kMultiFunctionAlgorithms[] = {
    {0, "Algorithm Undefined"},
    {1, "Beam Forming"},
    {2, "Acoustic Echo Cancellation"},
    {3, "Active Noise Cancellation"},
    {4, "Blind Source Separation"},
    {5, "Noise Suppression/Reduction"},
    {31, 6, "Reserved"},
};

// Audio 3.0, 4.5.2.11, table 4-42
constexpr Bit kExtensionControls[] = {
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
    {31, 4, "Reserved"},
};

// Audio 3.0, 4.5.2.12, table 4-43
constexpr Bit kClockSourceAttributes[] = {
    {0, 0, "Clock Type"},        {0, 0, 0, "External Clock"},
    {0, 0, 1, "Internal Clock"}, {1, 1, "Synchronization Type"},
    {1, 1, 0, "Asynchronous"},   {1, 1, 1, "Clock synchronized to SOF"},
    {7, 2, "Reserved"},
};

// Audio 3.0, 4.5.2.12, table 4-43
constexpr Bit kClockSourceControls[] = {
    {1, 0, "Clock Frequency Control"},
    {1, 0, 0, "Not allowed"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Clock Validity Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {31, 4, "Reserved"},
};

// Audio 3.0, 4.5.2.13, table 4-44
constexpr Bit kClockSelectorControls[] = {
    {1, 0, "Clock Selector Control"},        {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},         {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"}, {31, 2, "Reserved"},
};

// Audio 3.0, 4.5.2.14, table 4-45
constexpr Bit kClockMultiplierControls[] = {
    {1, 0, "Clock Numerator Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Clock Denominator Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {31, 4, "Reserved"},
};

// Audio 3.0, A.9, table A-9
constexpr Code kClusterSubtype[] = {
    {0x00, "SUBTYPE_UNDEFINED"},
};

// Audio 3.0, A.10, table A-10
constexpr Code kClusterSegment[] = {
    {0x00, "SEGMENT_UNDEFINED"},      {0x01, "CLUSTER_DESCRIPTION"},
    {0x1F, "CLUSTER_VENDOR_DEFINED"}, {0x20, "CHANNEL_INFORMATION"},
    {0x21, "CHANNEL_AMBISONIC"},      {0x22, "CHANNEL_DESCRIPTION"},
    {0xFE, "CHANNEL_VENDOR_DEFINED"}, {0xFF, "END_SEGMENT"},
};

// Audio 3.0, A.11, table A-11
constexpr Code kChannelPurpose[] = {
    {0x00, "PURPOSE_UNDEFINED"},
    {0x01, "GENERIC_AUDIO"},
    {0x02, "VOICE"},
    {0x03, "SPEECH"},
    {0x04, "AMBIENT"},
    {0x05, "REFERENCE"},
    {0x06, "ULTRASONIC"},
    {0x07, "VIBROKINETIC"},
    {0xFF, "NON_AUDIO"},
};

// Audio 3.0, A.12, table A-12
constexpr Code kChannelRelationship[] = {
    {0x00, "RELATIONSHIP_UNDEFINED"},
    {0x01, "MONO"},
    {0x02, "LEFT"},
    {0x03, "RIGHT"},
    {0x04, "ARRAY"},
    {0x20, "PATTERN_X"},
    {0x21, "PATTERN_Y"},
    {0x22, "PATTERN_A"},
    {0x23, "PATTERN_B"},
    {0x24, "PATTERN_M"},
    {0x25, "PATTERN_S"},
    {0x80, "Front Left"},
    {0x81, "Front Right"},
    {0x82, "Front Center"},
    {0x83, "Front Left of Center"},
    {0x84, "Front Right of Center"},
    {0x85, "Front Wide Left"},
    {0x86, "Front Wide Right"},
    {0x87, "Side Left"},
    {0x88, "Side Right"},
    {0x89, "Surround Array Left"},
    {0x8A, "Surround Array Right"},
    {0x8B, "Back Left"},
    {0x8C, "Back Right"},
    {0x8D, "Back Center"},
    {0x8E, "Back Left of Center"},
    {0x8F, "Back Right of Center"},
    {0x90, "Back Wide Left"},
    {0x91, "Back Wide Right"},
    {0x92, "Top Center"},
    {0x93, "Top Front Left"},
    {0x94, "Top Front Right"},
    {0x95, "Top Front Center"},
    {0x96, "Top Front Left of Center"},
    {0x97, "Top Front Right of Center"},
    {0x98, "Top Front Wide Left"},
    {0x99, "Top Front Wide Right"},
    {0x9A, "Top Side Left"},
    {0x9B, "Top Side Right"},
    {0x9C, "Top Surround Array Left"},
    {0x9D, "Top Surround Array Right"},
    {0x9E, "Top Back Left"},
    {0x9F, "Top Back Right"},
    {0xA0, "Top Back Center"},
    {0xA1, "Top Back Left Of Center"},
    {0xA2, "Top Back Right Of Center"},
    {0xA3, "Top Back Wide Left"},
    {0xA4, "Top Back Wide Right"},
    {0xA5, "Bottom Center"},
    {0xA6, "Bottom Front Left"},
    {0xA7, "Bottom Front Right"},
    {0xA8, "Bottom Front Center"},
    {0xA9, "Bottom Front Left Of Center"},
    {0xAA, "Bottom Front Right Of Center"},
    {0xAB, "Bottom Front Wide Left"},
    {0xAC, "Bottom Front Wide Right"},
    {0xAD, "Bottom Side Left"},
    {0xAE, "Bottom Side Right"},
    {0xAF, "Bottom Surround Array Left"},
    {0xB0, "Bottom Surround Array Right"},
    {0xB1, "Bottom Back Left"},
    {0xB2, "Bottom Back Right"},
    {0xB3, "Bottom Back Center"},
    {0xB4, "Bottom Back Left Of Center"},
    {0xB5, "Bottom Back Right Of Center"},
    {0xB6, "Bottom Back Wide Left"},
    {0xB7, "Bottom Back Wide Right"},
    {0xB8, "Low Frequency Effects"},
    {0xB9, "Low Frequency Effects Left"},
    {0xBA, "Low Frequency Effects Right"},
    {0xBB, "Headphone Left"},
    {0xBC, "Headphone Right"},
};

// Audio 3.0, A.13, table A-13
constexpr Code kAmbisonicOrdering[] = {
    {0x00, "ORD_TYPE_UNDEFINED"},
    {0x01, "AMBISONIC_CHANNEL_NUMBER (ACN)"},
    {0x02, "FURSE_MALHAM"},
    {0x03, "SINGLE_INDEX DESIGNATION (SID)"},
};

// Audio 3.0, A.14, table A-14
constexpr Code kAmbisonicNormalization[] = {
    {0x00, "NORM_TYPE_UNDEFINED"},
    {0x01, "maxN"},
    {0x02, "SN3D"},
    {0x03, "N3D"},
    {0x04, "SN2D"},
    {0x05, "N2D"},
};

// Audio 3.0, A.18, table A-18
constexpr Code kExtendedTerminalSegment[] = {
    {0x00, "SEGMENT_UNDEFINED"},
    {0x1F, "TERMINAL_VENDOR_DEFINED"},
    {0x20, "CHANNEL_BANDWIDTH"},
    {0x21, "CHANNEL_MAGNITUDE_RESPONSE"},
    {0x22, "CHANNEL_MAGNITUDE/PHASE_RESPONSE"},
    {0x23, "CHANNEL_POSITION_XYZ"},
    {0x24, "CHANNEL_POSITION_R\xCE\x98\xCE\xA6"},
    {0xFE, "CHANNEL_VENDOR_DEFINED"},
    {0xFF, "END_SEGMENT"},
};

// Audio 3.0, A.24, table A-40
constexpr Code kConnectorType[] = {
    {0x00, "UNDEFINED"},
    {0x01, "2.5 MM PHONE CONNECTOR"},
    {0x02, "3.5 MM PHONE CONNECTOR"},
    {0x03, "6.35 MM PHONE CONNECTOR"},
    {0x04, "XLR/6.35MM COMBO CONNECTOR"},
    {0x05, "XLR"},
    {0x06, "OPTICAL/3.5MM COMBO CONNECTOR"},
    {0x07, "RCA"},
    {0x08, "BNC"},
    {0x09, "BANANA"},
    {0x0A, "BINDING POST"},
    {0x0B, "SPEAKON"},
    {0x0C, "SPRING CLIP"},
    {0x0D, "SCREW TYPE"},
    {0x0E, "DIN"},
    {0x0F, "MINI DIN"},
    {0x10, "EUROBLOCK"},
    {0x11, "USB TYPE-C"},
    {0x12, "RJ-11"},
    {0x13, "RJ-45"},
    {0x14, "TOSLINK"},
    {0x15, "HDMI"},
    {0x16, "Mini-HDMI"},
    {0x17, "Micro-HDMI"},
    {0x18, "DP"},
    {0x19, "MINI-DP"},
    {0x1A, "D-SUB"},
    {0x1B, "THUNDERBOLT"},
    {0x1C, "LIGHTNING"},
    {0x1D, "WIRELESS"},
    {0x1E, "USB STANDARD A"},
    {0x1F, "USB STANDARD B"},
    {0x20, "USB MINI-B"},
    {0x21, "USB MICRO-B"},
    {0x22, "USB MICRO-AB"},
    {0x23, "USB 3.0 MICRO-B"},
    {0xFF, "OTHER"},
};

// Audio 3.0, 4.5.2.4, table 4-28
constexpr Bit kConnectorAttributes[] = {
    {1, 0, "Gender"},      {1, 0, 0, "Gender Neutral"},
    {1, 0, 1, "Male"},     {1, 0, 2, "Female"},
    {1, 0, 3, "Reserved"}, {2, 2, "Insertion/Removal Reporting"},
    {2, 2, 0, "No"},       {2, 2, 1, "Yes"},
    {7, 3, "Reserved"},
};

// Audio 3.0, 4.5.2.4
constexpr Bit kConnectorColor[] = {
    {23, 0, "RGB color"},
    {31, 24, "Color"},
    {31, 24, 0, "Color specified (RGB in bits 23..0)"},
    {31, 24, 1, "Color unspecified"},
};

// Audio 3.0, A.17, table A-17
constexpr Code kStringSubtype[] = {
    {0x00, "SUBTYPE_UNDEFINED"},
};

// Audio 3.0, A.16, table A-16
constexpr Code kAsSubtype[] = {
    {0x00, "AS_DESCRIPTOR_UNDEFINED"},
    {0x01, "AS_GENERAL"},
    {0x02, "AS_VALID_FREQ_RANGE"},
};

// Audio 3.0, 4.7.2, table 4-49
constexpr Bit kAsControls[] = {
    {1, 0, "Active Alternate Setting Control"},
    {1, 0, 0, "Not present"},
    {1, 0, 1, "Present, read-only"},
    {1, 0, 2, "Not allowed"},
    {1, 0, 3, "Present, host programmable"},
    {3, 2, "Valid Alternate Settings Control"},
    {3, 2, 0, "Not present"},
    {3, 2, 1, "Present, read-only"},
    {3, 2, 2, "Not allowed"},
    {3, 2, 3, "Present, host programmable"},
    {5, 4, "Audio Data Format Control"},
    {5, 4, 0, "Not present"},
    {5, 4, 1, "Present, read-only"},
    {5, 4, 2, "Not allowed"},
    {5, 4, 3, "Present, host programmable"},
    {31, 6, "Reserved"},
};

// Audio Data Formats 3.0, A.1, table A-2
constexpr Bit kFormats[] = {
    {0, "PCM"},
    {1, "PCM8"},
    {2, "IEEE_FLOAT"},
    {3, "ALAW"},
    {4, "MULAW"},
    {5, "DSD"},
    {6, "RAW_DATA"},
    {7, "PCM_IEC60958"},
    {8, "AC-3"},
    {9, "MPEG-1_Layer1"},
    {10, "MPEG-1_Layer2/3 or MPEG-2_NOEXT"},
    {11, "MPEG-2_EXT"},
    {12, "MPEG-2_AAC_ADTS"},
    {13, "MPEG-2_Layer1_LS"},
    {14, "MPEG-2_Layer2/3_LS"},
    {15, "DTS-I"},
    {16, "DTS-II"},
    {17, "DTS-III"},
    {18, "ATRAC"},
    {19, "ATRAC2/3"},
    {20, "WMA"},
    {21, "E-AC-3"},
    {22, "MAT"},
    {23, "DTS-IV"},
    {24, "MPEG-4_HE_AAC"},
    {25, "MPEG-4_HE_AAC_V2"},
    {26, "MPEG-4_AAC_LC"},
    {27, "DRA"},
    {28, "MPEG-4_HE_AAC_SURROUND"},
    {29, "MPEG-4_AAC_LC_SURROUND"},
    {30, "MPEG-H_3D_AUDIO"},
    {31, "AC4"},
    {32, "MPEG-4_AAC_ELD"},
    {63, 33, "Reserved"},
};

// Audio 3.0, A.21, table A-21
constexpr Code kEpSubtype[] = {
    {0x00, "DESCRIPTOR_UNDEFINED"},
    {0x01, "EP_GENERAL"},
};

// Audio 3.0, 4.8.1.2, table 4-52
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
    {31, 6, "Reserved"},
};

// Audio 3.0, 4.8.1.2, table 4-52
constexpr Code kLockDelayUnits[] = {
    {0x00, "Undefined"},
    {0x01, "Milliseconds"},
    {0x02, "Decoded PCM samples"},
    {0x03, 0xFF, "Reserved"},
};

// Audio Control 3.0: Header: Audio 3.0, 4.5.2, table 4-15
constexpr Field kAcHeaderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bCategory", 1, Enum(kCategory)},
    {"wTotalLength", 2, Dec(kBytes)},
    {"bmControls", 4, Bits(kHeaderControls)},
};

// Audio Control 3.0: Input Terminal: Audio 3.0, 4.5.2.1, table 4-16
constexpr Field kInputTerminalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"bCSourceID", 1, Dec()},
    {"bmControls", 4, Bits(kTerminalControls)},
    {"wClusterDescrID", 2, Dec(kClusterDescriptorId)},
    {"wExTerminalDescrID", 2, Dec(kExtendedTerminalDescriptorId)},
    {"wConnectorsDescrID", 2, Dec(kConnectorsDescriptorId)},
    {"wTerminalDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Output Terminal: Audio 3.0, 4.5.2.2, table 4-17
constexpr Field kOutputTerminalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"bCSourceID", 1, Dec()},
    {"bmControls", 4, Bits(kTerminalControls)},
    {"wExTerminalDescrID", 2, Dec(kExtendedTerminalDescriptorId)},
    {"wConnectorsDescrID", 2, Dec(kConnectorsDescriptorId)},
    {"wTerminalDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Mixer Unit: Audio 3.0, 4.5.2.5, table 4-29
constexpr Field kMixerUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"wClusterDescrID", 2, Dec(kClusterDescriptorId)},
    {"bmMixerControls", 1, Hex(), {.repeat = "bLength-13-bNrInPins"}},
    {"bmControls", 4, Bits(kMixerControls)},
    {"wMixerDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Selector Unit: Audio 3.0, 4.5.2.6, table 4-30
constexpr Field kSelectorUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bmControls", 4, Bits(kSelectorControls)},
    {"wSelectorDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Feature Unit: Audio 3.0, 4.5.2.7, table 4-31
constexpr Field kFeatureUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kFeatureControls), {.repeat = "(bLength-7)/4"}},
    {"wFeatureDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Effect Unit: Audio 3.0, 4.5.2.9, table 4-33
constexpr Field kEffectUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Hex(), {.repeat = "(bLength-9)/4"}},
    {"wEffectDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Effect Unit, Parametric Equalizer Section: Audio 3.0, 4.5.2.9.1, table 4-34
constexpr Field kEffectUnitParamEqSectionFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kParamEqSectionControls), {.repeat = "(bLength-9)/4"}},
    {"wEffectDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Effect Unit, Reverberation: Audio 3.0, 4.5.2.9.2, table 4-35
constexpr Field kEffectUnitReverberationFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kReverberationControls), {.repeat = "(bLength-9)/4"}},
    {"wEffectDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Effect Unit, Modulation Delay: Audio 3.0, 4.5.2.9.3, table 4-36
constexpr Field kEffectUnitModDelayFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kModDelayControls), {.repeat = "(bLength-9)/4"}},
    {"wEffectDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Effect Unit, Dynamic Range Compressor: Audio 3.0, 4.5.2.9.4, table 4-37
constexpr Field kEffectUnitDynRangeCompFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wEffectType", 2, Enum(kEffectType)},
    {"bSourceID", 1, Dec()},
    {"bmaControls", 4, Bits(kDynRangeCompControls), {.repeat = "(bLength-9)/4"}},
    {"wEffectDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Processing Unit: Audio 3.0, 4.5.2.10, table 4-38
constexpr Field kProcessingUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"wProcessingDescrStr", 2, Dec(kClassSpecificStringId)},
    {"Process-specific", "rest", Bytes()},
};

// Audio Control 3.0: Processing Unit, Up/Down-mix: Audio 3.0, 4.5.2.10.1, table 4-39
constexpr Field kProcessingUnitUpdownMixFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"wProcessingDescrStr", 2, Dec(kClassSpecificStringId)},
    {"bmControls", 4, Bits(kUpdownMixControls)},
    {"bNrModes", 1, Dec()},
    {"waClusterDescrID", 2, Dec(kClusterDescriptorId), {.repeat = "bNrModes"}},
};

// Audio Control 3.0: Processing Unit, Stereo Extender: Audio 3.0, 4.5.2.10.2, table 4-40
constexpr Field kProcessingUnitStereoExtenderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"wProcessingDescrStr", 2, Dec(kClassSpecificStringId)},
    {"bmControls", 4, Bits(kStereoExtenderControls)},
};

// Audio Control 3.0: Processing Unit, Multi-Function: Audio 3.0, 4.5.2.10.3, table 4-41
constexpr Field kProcessingUnitMultiFunctionFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wProcessType", 2, Enum(kProcessType)},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"wProcessingDescrStr", 2, Dec(kClassSpecificStringId)},
    {"bmControls", 4, Bits(kMultiFunctionControls)},
    {"wClusterDescrID", 2, Dec(kClusterDescriptorId)},
    {"bmAlgorithms", 4, Bits(kMultiFunctionAlgorithms)},
};

// Audio Control 3.0: Extension Unit: Audio 3.0, 4.5.2.11, table 4-42
constexpr Field kExtensionUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"wExtensionCode", 2, Hex()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"wExtensionDescrStr", 2, Dec(kClassSpecificStringId)},
    {"bmControls", 4, Bits(kExtensionControls)},
    {"wClusterDescrID", 2, Dec(kClusterDescriptorId)},
};

// Audio Control 3.0: Clock Source: Audio 3.0, 4.5.2.12, table 4-43
constexpr Field kClockSourceFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bClockID", 1, Dec()},
    {"bmAttributes", 1, Bits(kClockSourceAttributes)},
    {"bmControls", 4, Bits(kClockSourceControls)},
    {"bReferenceTerminal", 1, Dec()},
    {"wCSourceDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Clock Selector: Audio 3.0, 4.5.2.13, table 4-44
constexpr Field kClockSelectorFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bClockID", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baCSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bmControls", 4, Bits(kClockSelectorControls)},
    {"wCSelectorDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Clock Multiplier: Audio 3.0, 4.5.2.14, table 4-45
constexpr Field kClockMultiplierFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bClockID", 1, Dec()},
    {"bCSourceID", 1, Dec()},
    {"bmControls", 4, Bits(kClockMultiplierControls)},
    {"wCMultiplierDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Sampling Rate Converter Unit: Audio 3.0, 4.5.2.8, table 4-32
constexpr Field kSamplingRateConverterFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"bCSourceInID", 1, Dec()},
    {"bCSourceOutID", 1, Dec()},
    {"wSRCDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Power Domain: Audio 3.0, 4.5.2.15, table 4-46
constexpr Field kPowerDomainFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"bPowerDomainID", 1, Dec()},
    {"waRecoveryTime", 2, Dec(k50Microseconds), {.repeat = "2"}},
    {"bNrEntities", 1, Dec()},
    {"baEntityID", 1, Dec(), {.repeat = "bNrEntities"}},
    {"wPDomainDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio Control 3.0: Interrupt Endpoint: Audio 3.0, 4.6.2.1, table 4-47
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

// Audio 3.0: Cluster, Header: Audio 3.0, 4.3.1, table 4-3
constexpr Field kClusterFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kClusterSubtype)},
    {"wDescriptorID", 2, Dec()},
    {"bNrChannels", 1, Dec()},
    {"Segments", "rest", Bytes()},
};

// Audio 3.0: Cluster, Segment (other): Audio 3.0, 4.3.2.1, table 4-4
constexpr Field kClusterSegmentFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kClusterSegment)},
    {"Segment-specific", "rest", Bytes()},
};

// Audio 3.0: Cluster, End Segment: Audio 3.0, 4.3.2.1.1, table 4-5
constexpr Field kClusterSegmentEndFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kClusterSegment)},
};

// Audio 3.0: Cluster, Cluster Description Segment: Audio 3.0, 4.3.2.1.2.1, table 4-6
constexpr Field kClusterSegmentDescriptionFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kClusterSegment)},
    {"wCDDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio 3.0: Cluster, Vendor-defined Segment (common block): Audio 3.0, 4.3.2.1.2.2, table 4-7
constexpr Field kClusterSegmentVendorFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kClusterSegment)},
    {"Vendor-defined", "rest", Bytes()},
};

// Audio 3.0: Cluster, Information Segment: Audio 3.0, 4.3.2.1.3.1, table 4-9
constexpr Field kClusterSegmentInformationFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kClusterSegment)},
    {"bChPurpose", 1, Enum(kChannelPurpose)},
    {"bChRelationship", 1, Enum(kChannelRelationship)},
    {"bChGroupID", 1, Dec()},
};

// Audio 3.0: Cluster, Ambisonic Segment: Audio 3.0, 4.3.2.1.3.2, table 4-10
constexpr Field kClusterSegmentAmbisonicFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kClusterSegment)},
    {"bCompOrdering", 1, Enum(kAmbisonicOrdering)},
    {"bACN", 1, Dec()},
    {"bAmbNorm", 1, Enum(kAmbisonicNormalization)},
    {"bChGroupID", 1, Dec()},
};

// Audio 3.0: Cluster, Channel Description Segment: Audio 3.0, 4.3.2.1.3.3, table 4-11
constexpr Field kClusterSegmentChannelDescriptionFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kClusterSegment)},
    {"wChDescrStr", 2, Dec(kClassSpecificStringId)},
};

// Audio 3.0: Cluster, Vendor-defined Segment (channel block): Audio 3.0, 4.3.2.1.3.4, table 4-12
constexpr Field kClusterSegmentChannelVendorFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kClusterSegment)},
    {"Vendor-defined", "rest", Bytes()},
};

// Audio Control 3.0: Extended Terminal, Header: Audio 3.0, 4.5.2.3.1, table 4-18
constexpr Field kExtendedTerminalFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"wDescriptorID", 2, Dec()},
    {"bNrChannels", 1, Dec()},
    {"Segments", "rest", Bytes()},
};

// Audio 3.0: Extended Terminal, Segment (other): Audio 3.0, 4.5.2.3.3, table 4-19
constexpr Field kTerminalSegmentFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kExtendedTerminalSegment)},
    {"Segment-specific", "rest", Bytes()},
};

// Audio 3.0: Extended Terminal, End Segment: Audio 3.0, 4.5.2.3.3.1, table 4-20
constexpr Field kTerminalSegmentEndFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kExtendedTerminalSegment)},
};

// Audio 3.0: Extended Terminal, Vendor-defined Segment (common block): Audio 3.0, 4.5.2.3.3.2.1,
// table 4-21
constexpr Field kTerminalSegmentVendorFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kExtendedTerminalSegment)},
    {"Vendor-defined", "rest", Bytes()},
};

// Audio 3.0: Extended Terminal, Bandwidth Segment: Audio 3.0, 4.5.2.3.3.3.1, table 4-22
constexpr Field kTerminalSegmentBandwidthFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kExtendedTerminalSegment)},
    {"dMinFreq", 4, Dec(kHz)},
    {"dMaxFreq", 4, Dec(kHz)},
};

// Audio 3.0: Extended Terminal, Magnitude Segment: Audio 3.0, 4.5.2.3.3.3.2, table 4-23
constexpr Field kTerminalSegmentMagnitudeFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kExtendedTerminalSegment)},
    {"dFreq", 4, Dec(kHz), {.repeat = "(wLength-3)/6", .group = 'a'}},
    {"wMagnitude", 2, Signed(kDecibels256), {.repeat = "(wLength-3)/6", .group = 'a'}},
};

// Audio 3.0: Extended Terminal, Magnitude/Phase Segment: Audio 3.0, 4.5.2.3.3.3.3, table 4-24
constexpr Field kTerminalSegmentMagnitudePhaseFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kExtendedTerminalSegment)},
    {"dFreq", 4, Dec(kHz), {.repeat = "(wLength-3)/8", .group = 'a'}},
    {"wMagnitude", 2, Signed(kDecibels256), {.repeat = "(wLength-3)/8", .group = 'a'}},
    {"wPhase", 2, Signed(kPi32768), {.repeat = "(wLength-3)/8", .group = 'a'}},
};

// Audio 3.0: Extended Terminal, Position XYZ Segment: Audio 3.0, 4.5.2.3.3.3.4, table 4-25
constexpr Field kTerminalSegmentPositionXyzFields[] = {
    {"wLength", 2, Dec(kBytes)},     {"bSegmentType", 1, Enum(kExtendedTerminalSegment)},
    {"dX", 4, Signed(kMicrometres)}, {"dY", 4, Signed(kMicrometres)},
    {"dZ", 4, Signed(kMicrometres)},
};

// Audio 3.0: Extended Terminal, Position R Theta Phi Segment: Audio 3.0, 4.5.2.3.3.3.5, table 4-26
constexpr Field kTerminalSegmentPositionSphericalFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kExtendedTerminalSegment)},
    {"dR", 4, Signed(kMicrometres)},
    {"d\xCE\x98", 4, Signed(kMicroradians)},
    {"d\xCE\xA6", 4, Signed(kMicroradians)},
};

// Audio 3.0: Extended Terminal, Vendor-defined Segment (channel block): Audio 3.0, 4.5.2.3.3.3.6,
// table 4-27
constexpr Field kTerminalSegmentChannelVendorFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bSegmentType", 1, Enum(kExtendedTerminalSegment)},
    {"Vendor-defined", "rest", Bytes()},
};

// Audio Control 3.0: Connectors: Audio 3.0, 4.5.2.4, table 4-28
constexpr Field kConnectorsFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAcSubtype)},
    {"wDescriptorID", 2, Dec()},
    {"bNrConnectors", 1, Dec()},
    {"baConID", 1, Dec(), {.repeat = "bNrConnectors", .group = 'a'}},
    {"waClusterDescrID", 2, Dec(kClusterDescriptorId), {.repeat = "bNrConnectors", .group = 'a'}},
    {"baConType", 1, Enum(kConnectorType), {.repeat = "bNrConnectors", .group = 'a'}},
    {"bmaConAttributes", 1, Bits(kConnectorAttributes), {.repeat = "bNrConnectors", .group = 'a'}},
    {"waConDescrStr", 2, Dec(kClassSpecificStringId), {.repeat = "bNrConnectors", .group = 'a'}},
    {"daConColor", 4, Bits(kConnectorColor), {.repeat = "bNrConnectors", .group = 'a'}},
};

// Audio 3.0: Class-specific String: Audio 3.0, 4.9, table 4-54
constexpr Field kStringFields[] = {
    {"wLength", 2, Dec(kBytes)},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kStringSubtype)},
    {"wStrDescrID", 2, Dec()},
    {"iLangID", 1, Dec(kLanguageIndex)},
    {"String", "rest", Utf16()},
};

// Audio Streaming 3.0: General: Audio 3.0, 4.7.2, table 4-49
constexpr Field kAsGeneralFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"bTerminalLink", 1, Dec()},
    {"bmControls", 4, Bits(kAsControls)},
    {"wClusterDescrID", 2, Dec(kClusterDescriptorId)},
    {"bmFormats", 8, Bits(kFormats)},
    {"bSubslotSize", 1, Dec(kBytes)},
    {"bBitResolution", 1, Dec(kBits)},
    {"bmAuxProtocols", 2, Hex()},
    {"bControlSize", 1, Dec(kBytes)},
};

// Audio Streaming 3.0: Valid Frequency Range: Audio 3.0, 4.7.3, table 4-50
constexpr Field kAsValidFreqRangeFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kAsSubtype)},
    {"dMin", 4, Dec(kHz)},
    {"dMax", 4, Dec(kHz)},
};

// Audio Streaming 3.0: Isochronous Endpoint: Audio 3.0, 4.8.1.1, table 4-51; 4.8.2.1, table 4-53
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

// Audio Streaming 3.0: Isochronous Data Endpoint, General: Audio 3.0, 4.8.1.2, table 4-52
constexpr Field kAsIsocEndpointGeneralFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kEpSubtype)},
    {"bmControls", 4, Bits(kEpControls)},
    {"bLockDelayUnits", 1, Enum(kLockDelayUnits)},
    {"wLockDelay", 2, Dec(), {.when = "bLockDelayUnits == 0"}},
    {"wLockDelay", 2, Dec(kMilliseconds), {.when = "bLockDelayUnits == 1"}},
    {"wLockDelay", 2, Dec(kSamples), {.when = "bLockDelayUnits == 2"}},
    {"wLockDelay", 2, Dec(), {.when = "bLockDelayUnits >= 3"}},
};

constexpr Layout kLayouts[] = {
    {"uac3.ac_header", "Audio Control 3.0: Header",
     "type=24 subtype=01 class=01 subclass=01 protocol=30", 10, "10", kAcHeaderFields,
     "Audio 3.0, 4.5.2, table 4-15"},
    {"uac3.input_terminal", "Audio Control 3.0: Input Terminal",
     "type=24 subtype=02 class=01 subclass=01 protocol=30", 20, "20", kInputTerminalFields,
     "Audio 3.0, 4.5.2.1, table 4-16"},
    {"uac3.output_terminal", "Audio Control 3.0: Output Terminal",
     "type=24 subtype=03 class=01 subclass=01 protocol=30", 19, "19", kOutputTerminalFields,
     "Audio 3.0, 4.5.2.2, table 4-17"},
    {"uac3.mixer_unit", "Audio Control 3.0: Mixer Unit",
     "type=24 subtype=05 class=01 subclass=01 protocol=30", 13, "", kMixerUnitFields,
     "Audio 3.0, 4.5.2.5, table 4-29"},
    {"uac3.selector_unit", "Audio Control 3.0: Selector Unit",
     "type=24 subtype=06 class=01 subclass=01 protocol=30", 11, "11+bNrInPins", kSelectorUnitFields,
     "Audio 3.0, 4.5.2.6, table 4-30"},
    {"uac3.feature_unit", "Audio Control 3.0: Feature Unit",
     "type=24 subtype=07 class=01 subclass=01 protocol=30", 7, "7+(bLength-7)/4*4",
     kFeatureUnitFields, "Audio 3.0, 4.5.2.7, table 4-31"},
    {"uac3.effect_unit", "Audio Control 3.0: Effect Unit",
     "type=24 subtype=08 class=01 subclass=01 protocol=30", 9, "9+(bLength-9)/4*4",
     kEffectUnitFields, "Audio 3.0, 4.5.2.9, table 4-33"},
    {"uac3.effect_unit_param_eq_section",
     "Audio Control 3.0: Effect Unit, Parametric Equalizer Section",
     "type=24 subtype=08 class=01 subclass=01 protocol=30 wEffectType=0001", 9, "9+(bLength-9)/4*4",
     kEffectUnitParamEqSectionFields, "Audio 3.0, 4.5.2.9.1, table 4-34"},
    {"uac3.effect_unit_reverberation", "Audio Control 3.0: Effect Unit, Reverberation",
     "type=24 subtype=08 class=01 subclass=01 protocol=30 wEffectType=0002", 9, "9+(bLength-9)/4*4",
     kEffectUnitReverberationFields, "Audio 3.0, 4.5.2.9.2, table 4-35"},
    {"uac3.effect_unit_mod_delay", "Audio Control 3.0: Effect Unit, Modulation Delay",
     "type=24 subtype=08 class=01 subclass=01 protocol=30 wEffectType=0003", 9, "9+(bLength-9)/4*4",
     kEffectUnitModDelayFields, "Audio 3.0, 4.5.2.9.3, table 4-36"},
    {"uac3.effect_unit_dyn_range_comp", "Audio Control 3.0: Effect Unit, Dynamic Range Compressor",
     "type=24 subtype=08 class=01 subclass=01 protocol=30 wEffectType=0004", 9, "9+(bLength-9)/4*4",
     kEffectUnitDynRangeCompFields, "Audio 3.0, 4.5.2.9.4, table 4-37"},
    {"uac3.processing_unit", "Audio Control 3.0: Processing Unit",
     "type=24 subtype=09 class=01 subclass=01 protocol=30", 9, "", kProcessingUnitFields,
     "Audio 3.0, 4.5.2.10, table 4-38"},
    {"uac3.processing_unit_updown_mix", "Audio Control 3.0: Processing Unit, Up/Down-mix",
     "type=24 subtype=09 class=01 subclass=01 protocol=30 wProcessType=0001", 14,
     "14+bNrInPins+2*bNrModes", kProcessingUnitUpdownMixFields,
     "Audio 3.0, 4.5.2.10.1, table 4-39"},
    {"uac3.processing_unit_stereo_extender", "Audio Control 3.0: Processing Unit, Stereo Extender",
     "type=24 subtype=09 class=01 subclass=01 protocol=30 wProcessType=0002", 13, "13+bNrInPins",
     kProcessingUnitStereoExtenderFields, "Audio 3.0, 4.5.2.10.2, table 4-40"},
    {"uac3.processing_unit_multi_function", "Audio Control 3.0: Processing Unit, Multi-Function",
     "type=24 subtype=09 class=01 subclass=01 protocol=30 wProcessType=0003", 19, "19+bNrInPins",
     kProcessingUnitMultiFunctionFields, "Audio 3.0, 4.5.2.10.3, table 4-41"},
    {"uac3.extension_unit", "Audio Control 3.0: Extension Unit",
     "type=24 subtype=0A class=01 subclass=01 protocol=30", 15, "15+bNrInPins",
     kExtensionUnitFields, "Audio 3.0, 4.5.2.11, table 4-42"},
    {"uac3.clock_source", "Audio Control 3.0: Clock Source",
     "type=24 subtype=0B class=01 subclass=01 protocol=30", 12, "12", kClockSourceFields,
     "Audio 3.0, 4.5.2.12, table 4-43"},
    {"uac3.clock_selector", "Audio Control 3.0: Clock Selector",
     "type=24 subtype=0C class=01 subclass=01 protocol=30", 11, "11+bNrInPins",
     kClockSelectorFields, "Audio 3.0, 4.5.2.13, table 4-44"},
    {"uac3.clock_multiplier", "Audio Control 3.0: Clock Multiplier",
     "type=24 subtype=0D class=01 subclass=01 protocol=30", 11, "11", kClockMultiplierFields,
     "Audio 3.0, 4.5.2.14, table 4-45"},
    {"uac3.sampling_rate_converter", "Audio Control 3.0: Sampling Rate Converter Unit",
     "type=24 subtype=0E class=01 subclass=01 protocol=30", 9, "9", kSamplingRateConverterFields,
     "Audio 3.0, 4.5.2.8, table 4-32"},
    {"uac3.power_domain", "Audio Control 3.0: Power Domain",
     "type=24 subtype=10 class=01 subclass=01 protocol=30", 11, "11+bNrEntities",
     kPowerDomainFields, "Audio 3.0, 4.5.2.15, table 4-46"},
    {"uac3.ac_interrupt_endpoint", "Audio Control 3.0: Interrupt Endpoint",
     "type=05 class=01 subclass=01 protocol=30", 7, "7", kAcInterruptEndpointFields,
     "Audio 3.0, 4.6.2.1, table 4-47"},
    {"uac3.cluster", "Audio 3.0: Cluster, Header",
     "context=uac3_hc type=26 subtype=00 class=01 protocol=30", 7, "", kClusterFields,
     "Audio 3.0, 4.3.1, table 4-3"},
    {"uac3.cluster_segment", "Audio 3.0: Cluster, Segment (other)",
     "context=uac3_hc parent=uac3.cluster", 3, "", kClusterSegmentFields,
     "Audio 3.0, 4.3.2.1, table 4-4"},
    {"uac3.cluster_segment_end", "Audio 3.0: Cluster, End Segment",
     "context=uac3_hc parent=uac3.cluster bSegmentType=FF", 3, "3", kClusterSegmentEndFields,
     "Audio 3.0, 4.3.2.1.1, table 4-5"},
    {"uac3.cluster_segment_description", "Audio 3.0: Cluster, Cluster Description Segment",
     "context=uac3_hc parent=uac3.cluster bSegmentType=01", 5, "5",
     kClusterSegmentDescriptionFields, "Audio 3.0, 4.3.2.1.2.1, table 4-6"},
    {"uac3.cluster_segment_vendor", "Audio 3.0: Cluster, Vendor-defined Segment (common block)",
     "context=uac3_hc parent=uac3.cluster bSegmentType=1F", 3, "", kClusterSegmentVendorFields,
     "Audio 3.0, 4.3.2.1.2.2, table 4-7"},
    {"uac3.cluster_segment_information", "Audio 3.0: Cluster, Information Segment",
     "context=uac3_hc parent=uac3.cluster bSegmentType=20", 6, "6",
     kClusterSegmentInformationFields, "Audio 3.0, 4.3.2.1.3.1, table 4-9"},
    {"uac3.cluster_segment_ambisonic", "Audio 3.0: Cluster, Ambisonic Segment",
     "context=uac3_hc parent=uac3.cluster bSegmentType=21", 7, "7", kClusterSegmentAmbisonicFields,
     "Audio 3.0, 4.3.2.1.3.2, table 4-10"},
    {"uac3.cluster_segment_channel_description", "Audio 3.0: Cluster, Channel Description Segment",
     "context=uac3_hc parent=uac3.cluster bSegmentType=22", 5, "5",
     kClusterSegmentChannelDescriptionFields, "Audio 3.0, 4.3.2.1.3.3, table 4-11"},
    {"uac3.cluster_segment_channel_vendor",
     "Audio 3.0: Cluster, Vendor-defined Segment (channel block)",
     "context=uac3_hc parent=uac3.cluster bSegmentType=FE", 3, "",
     kClusterSegmentChannelVendorFields, "Audio 3.0, 4.3.2.1.3.4, table 4-12"},
    {"uac3.extended_terminal", "Audio Control 3.0: Extended Terminal, Header",
     "context=uac3_hc type=24 subtype=04 class=01 subclass=01 protocol=30", 7, "",
     kExtendedTerminalFields, "Audio 3.0, 4.5.2.3.1, table 4-18"},
    {"uac3.terminal_segment", "Audio 3.0: Extended Terminal, Segment (other)",
     "context=uac3_hc parent=uac3.extended_terminal", 3, "", kTerminalSegmentFields,
     "Audio 3.0, 4.5.2.3.3, table 4-19"},
    {"uac3.terminal_segment_end", "Audio 3.0: Extended Terminal, End Segment",
     "context=uac3_hc parent=uac3.extended_terminal bSegmentType=FF", 3, "3",
     kTerminalSegmentEndFields, "Audio 3.0, 4.5.2.3.3.1, table 4-20"},
    {"uac3.terminal_segment_vendor",
     "Audio 3.0: Extended Terminal, Vendor-defined Segment (common block)",
     "context=uac3_hc parent=uac3.extended_terminal bSegmentType=1F", 3, "",
     kTerminalSegmentVendorFields, "Audio 3.0, 4.5.2.3.3.2.1, table 4-21"},
    {"uac3.terminal_segment_bandwidth", "Audio 3.0: Extended Terminal, Bandwidth Segment",
     "context=uac3_hc parent=uac3.extended_terminal bSegmentType=20", 11, "11",
     kTerminalSegmentBandwidthFields, "Audio 3.0, 4.5.2.3.3.3.1, table 4-22"},
    {"uac3.terminal_segment_magnitude", "Audio 3.0: Extended Terminal, Magnitude Segment",
     "context=uac3_hc parent=uac3.extended_terminal bSegmentType=21", 3, "3+(wLength-3)/6*6",
     kTerminalSegmentMagnitudeFields, "Audio 3.0, 4.5.2.3.3.3.2, table 4-23"},
    {"uac3.terminal_segment_magnitude_phase",
     "Audio 3.0: Extended Terminal, Magnitude/Phase Segment",
     "context=uac3_hc parent=uac3.extended_terminal bSegmentType=22", 3, "3+(wLength-3)/8*8",
     kTerminalSegmentMagnitudePhaseFields, "Audio 3.0, 4.5.2.3.3.3.3, table 4-24"},
    {"uac3.terminal_segment_position_xyz", "Audio 3.0: Extended Terminal, Position XYZ Segment",
     "context=uac3_hc parent=uac3.extended_terminal bSegmentType=23", 15, "15",
     kTerminalSegmentPositionXyzFields, "Audio 3.0, 4.5.2.3.3.3.4, table 4-25"},
    {"uac3.terminal_segment_position_spherical",
     "Audio 3.0: Extended Terminal, Position R\xCE\x98\xCE\xA6 Segment",
     "context=uac3_hc parent=uac3.extended_terminal bSegmentType=24", 15, "15",
     kTerminalSegmentPositionSphericalFields, "Audio 3.0, 4.5.2.3.3.3.5, table 4-26"},
    {"uac3.terminal_segment_channel_vendor",
     "Audio 3.0: Extended Terminal, Vendor-defined Segment (channel block)",
     "context=uac3_hc parent=uac3.extended_terminal bSegmentType=FE", 3, "",
     kTerminalSegmentChannelVendorFields, "Audio 3.0, 4.5.2.3.3.3.6, table 4-27"},
    {"uac3.connectors", "Audio Control 3.0: Connectors",
     "context=uac3_hc type=24 subtype=0F class=01 subclass=01 protocol=30", 7, "7+bNrConnectors*11",
     kConnectorsFields, "Audio 3.0, 4.5.2.4, table 4-28"},
    {"uac3.string", "Audio 3.0: Class-specific String",
     "context=uac3_string type=23 subtype=00 class=01 protocol=30", 7, "", kStringFields,
     "Audio 3.0, 4.9, table 4-54"},
    {"uac3.as_general", "Audio Streaming 3.0: General",
     "type=24 subtype=01 class=01 subclass=02 protocol=30", 23, "23", kAsGeneralFields,
     "Audio 3.0, 4.7.2, table 4-49"},
    {"uac3.as_valid_freq_range", "Audio Streaming 3.0: Valid Frequency Range",
     "type=24 subtype=02 class=01 subclass=02 protocol=30", 11, "11", kAsValidFreqRangeFields,
     "Audio 3.0, 4.7.3, table 4-50"},
    {"uac3.as_isoc_endpoint", "Audio Streaming 3.0: Isochronous Endpoint",
     "type=05 class=01 subclass=02 protocol=30", 7, "7", kAsIsocEndpointFields,
     "Audio 3.0, 4.8.1.1, table 4-51; 4.8.2.1, table 4-53"},
    {"uac3.as_isoc_endpoint_general", "Audio Streaming 3.0: Isochronous Data Endpoint, General",
     "type=25 subtype=01 class=01 subclass=02 protocol=30", 10, "10", kAsIsocEndpointGeneralFields,
     "Audio 3.0, 4.8.1.2, table 4-52"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> Audio3Table() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
