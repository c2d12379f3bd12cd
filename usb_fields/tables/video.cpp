// USB Video Class 1.0 to 1.5 with its payloads.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// UVC 1.5, A.4
constexpr Code kCsType[] = {
    {0x20, "CS_UNDEFINED"}, {0x21, "CS_DEVICE"},    {0x22, "CS_CONFIGURATION"},
    {0x23, "CS_STRING"},    {0x24, "CS_INTERFACE"}, {0x25, "CS_ENDPOINT"},
};

// UVC 1.5, A.5
constexpr Code kVcSubtype[] = {
    {0x00, "VC_DESCRIPTOR_UNDEFINED"}, {0x01, "VC_HEADER"},        {0x02, "VC_INPUT_TERMINAL"},
    {0x03, "VC_OUTPUT_TERMINAL"},      {0x04, "VC_SELECTOR_UNIT"}, {0x05, "VC_PROCESSING_UNIT"},
    {0x06, "VC_EXTENSION_UNIT"},       {0x07, "VC_ENCODING_UNIT"},
};

// UVC 1.5, B.1; UVC 1.5, B.2
constexpr Code kTerminalType[] = {
    {0x0100, "Vendor Specific (TT_VENDOR_SPECIFIC)"},
    {0x0101, "Streaming (TT_STREAMING)"},
    {0x0200, "Vendor Specific Input (ITT_VENDOR_SPECIFIC)"},
    {0x0201, "Camera (ITT_CAMERA)"},
    {0x0202, "Media Transport Input (ITT_MEDIA_TRANSPORT_INPUT)"},
    {0x0300, "Vendor Specific Output (OTT_VENDOR_SPECIFIC)"},
    {0x0301, "Display (OTT_DISPLAY)"},
    {0x0302, "Media Transport Output (OTT_MEDIA_TRANSPORT_OUTPUT)"},
    {0x0400, "Vendor Specific External (EXTERNAL_VENDOR_SPECIFIC)"},
    {0x0401, "Composite Video Connector (COMPOSITE_CONNECTOR)"},
    {0x0402, "S-Video Connector (SVIDEO_CONNECTOR)"},
    {0x0403, "Component Video Connector (COMPONENT_CONNECTOR)"},
};

// UVC 1.5, 3.7.2.3, table 3-6
constexpr Bit kCameraControls[] = {
    {0, "Scanning Mode"},
    {1, "Auto-Exposure Mode"},
    {2, "Auto-Exposure Priority"},
    {3, "Exposure Time (Absolute)"},
    {4, "Exposure Time (Relative)"},
    {5, "Focus (Absolute)"},
    {6, "Focus (Relative)"},
    {7, "Iris (Absolute)"},
    {8, "Iris (Relative)"},
    {9, "Zoom (Absolute)"},
    {10, "Zoom (Relative)"},
    {11, "PanTilt (Absolute)"},
    {12, "PanTilt (Relative)"},
    {13, "Roll (Absolute)"},
    {14, "Roll (Relative)"},
    {16, 15, "Reserved"},
    {17, "Focus, Auto"},
    {18, "Privacy"},
    {19, "Focus, Simple"},
    {20, "Window"},
    {21, "Region of Interest"},
    {63, 22, "Reserved"},
};

// UVC 1.5 Media Transport Terminal, 3.1, table 3-1
constexpr Bit kMediaTransportControls[] = {
    {0, "Transport Control"},
    {1, "Absolute Track Number Control"},
    {2, "Media Information"},
    {3, "Time Code Information"},
};

// UVC 1.5 Media Transport Terminal, 3.1, table 3-1
constexpr Bit kTransportModes[] = {
    {0, "Play Forward"},
    {1, "Pause"},
    {2, "Rewind"},
    {3, "Fast Forward"},
    {4, "High Speed Rewind"},
    {5, "Stop"},
    {6, "Eject"},
    {7, "Play Next Frame"},
    {8, "Play Slowest Forward"},
    {9, "Play Slow Forward 4"},
    {10, "Play Slow Forward 3"},
    {11, "Play Slow Forward 2"},
    {12, "Play Slow Forward 1"},
    {13, "Play X1"},
    {14, "Play Fast Forward 1"},
    {15, "Play Fast Forward 2"},
    {16, "Play Fast Forward 3"},
    {17, "Play Fast Forward 4"},
    {18, "Play Fastest Forward"},
    {19, "Play Previous Frame"},
    {20, "Play Slowest Reverse"},
    {21, "Play Slow Reverse 4"},
    {22, "Play Slow Reverse 3"},
    {23, "Play Slow Reverse 2"},
    {24, "Play Slow Reverse 1"},
    {25, "Play X1 Reverse"},
    {26, "Play Fast Reverse 1"},
    {27, "Play Fast Reverse 2"},
    {28, "Play Fast Reverse 3"},
    {29, "Play Fast Reverse 4"},
    {30, "Play Fastest Reverse"},
    {31, "Record Start"},
    {32, "Record Pause"},
};

// UVC 1.5, 3.7.2.5, table 3-8
constexpr Bit kProcessingControls[] = {
    {0, "Brightness"},
    {1, "Contrast"},
    {2, "Hue"},
    {3, "Saturation"},
    {4, "Sharpness"},
    {5, "Gamma"},
    {6, "White Balance Temperature"},
    {7, "White Balance Component"},
    {8, "Backlight Compensation"},
    {9, "Gain"},
    {10, "Power Line Frequency"},
    {11, "Hue, Auto"},
    {12, "White Balance Temperature, Auto"},
    {13, "White Balance Component, Auto"},
    {14, "Digital Multiplier"},
    {15, "Digital Multiplier Limit"},
    {16, "Analog Video Standard"},
    {17, "Analog Video Lock Status"},
    {18, "Contrast, Auto"},
    {63, 19, "Reserved"},
};

// UVC 1.5, 3.7.2.5, table 3-8
constexpr Bit kVideoStandards[] = {
    {0, "None"},          {1, "NTSC - 525/60"}, {2, "PAL - 625/50"}, {3, "SECAM - 625/50"},
    {4, "NTSC - 625/50"}, {5, "PAL - 525/60"},  {7, 6, "Reserved"},
};

// UVC 1.5, 3.7.2.6, table 3-9
constexpr Bit kEncodingControls[] = {
    {0, "Select Layer"},
    {1, "Profile and Toolset"},
    {2, "Video Resolution"},
    {3, "Minimum Frame Interval"},
    {4, "Slice Mode"},
    {5, "Rate Control Mode"},
    {6, "Average Bit Rate"},
    {7, "CPB Size"},
    {8, "Peak Bit Rate"},
    {9, "Quantization Parameter"},
    {10, "Synchronization and Long-Term Reference Frame"},
    {11, "Long-Term Buffer"},
    {12, "Picture Long-Term Reference"},
    {13, "LTR Validation"},
    {14, "Level IDC"},
    {15, "SEI Message"},
    {16, "QP Range"},
    {17, "Priority ID"},
    {18, "Start or Stop Layer/View"},
    {19, "Error Resiliency"},
    {23, 20, "Reserved"},
};

// UVC 1.5, A.7
constexpr Code kEpSubtype[] = {
    {0x00, "EP_UNDEFINED"},
    {0x01, "EP_GENERAL"},
    {0x02, "EP_ENDPOINT"},
    {0x03, "EP_INTERRUPT"},
};

// UVC 1.5, A.6; UVC 1.0, A.6
constexpr Code kVsSubtype[] = {
    {0x00, "VS_UNDEFINED"},
    {0x01, "VS_INPUT_HEADER"},
    {0x02, "VS_OUTPUT_HEADER"},
    {0x03, "VS_STILL_IMAGE_FRAME"},
    {0x04, "VS_FORMAT_UNCOMPRESSED"},
    {0x05, "VS_FRAME_UNCOMPRESSED"},
    {0x06, "VS_FORMAT_MJPEG"},
    {0x07, "VS_FRAME_MJPEG"},
    {0x08, "VS_FORMAT_MPEG1 (UVC 1.0)"},
    {0x09, "VS_FORMAT_MPEG2PS (UVC 1.0)"},
    {0x0A, "VS_FORMAT_MPEG2TS"},
    {0x0B, "VS_FORMAT_MPEG4SL (UVC 1.0)"},
    {0x0C, "VS_FORMAT_DV"},
    {0x0D, "VS_COLORFORMAT"},
    {0x0E, "VS_FORMAT_VENDOR (UVC 1.0)"},
    {0x0F, "VS_FRAME_VENDOR (UVC 1.0)"},
    {0x10, "VS_FORMAT_FRAME_BASED"},
    {0x11, "VS_FRAME_FRAME_BASED"},
    {0x12, "VS_FORMAT_STREAM_BASED"},
    {0x13, "VS_FORMAT_H264"},
    {0x14, "VS_FRAME_H264"},
    {0x15, "VS_FORMAT_H264_SIMULCAST"},
    {0x16, "VS_FORMAT_VP8"},
    {0x17, "VS_FRAME_VP8"},
    {0x18, "VS_FORMAT_VP8_SIMULCAST"},
};

// UVC 1.5, 3.9.2.1, table 3-14
constexpr Bit kEndpointAddress[] = {
    {3, 0, "Endpoint number"}, {6, 4, "Reserved"}, {7, 7, "Direction"},
    {7, 7, 0, "OUT"},          {7, 7, 1, "IN"},
};

// UVC 1.5, 3.9.2.1, table 3-14
constexpr Bit kInputHeaderInfo[] = {
    {0, "Dynamic Format Change supported"},
    {7, 1, "Reserved"},
};

// UVC 1.5, 3.9.2.1, table 3-14
constexpr Code kStillCaptureMethod[] = {
    {0x00, "None"},
    {0x01, "Method 1"},
    {0x02, "Method 2"},
    {0x03, "Method 3"},
};

// UVC 1.5, 3.9.2.1, table 3-14
constexpr Code kTriggerSupport[] = {
    {0x00, "Not supported"},
    {0x01, "Supported"},
};

// UVC 1.5, 3.9.2.1, table 3-14
constexpr Code kTriggerUsage[] = {
    {0x00, "Initiate still image capture"},
    {0x01, "General purpose button event"},
};

// UVC 1.5, 3.9.2.1, table 3-14
constexpr Bit kInputFormatControls[] = {
    {0, "wKeyFrameRate"},   {1, "wPFrameRate"},        {2, "wCompQuality"},
    {3, "wCompWindowSize"}, {4, "Generate Key Frame"}, {5, "Update Frame Segment"},
    {63, 6, "Reserved"},
};

// UVC 1.5, 3.9.2.2, table 3-15
constexpr Bit kOutputFormatControls[] = {
    {0, "wKeyFrameRate"},   {1, "wPFrameRate"},  {2, "wCompQuality"},
    {3, "wCompWindowSize"}, {63, 4, "Reserved"},
};

// UVC 1.5 Uncompressed Payload, 2.2, table 2-1; UVC 1.5 Frame Based Payload (FourCC GUID)
constexpr UuidName kFormatGuid[] = {
    {"32595559-0000-0010-8000-00aa00389b71", "YUY2"},
    {"3231564e-0000-0010-8000-00aa00389b71", "NV12"},
    {"3032344d-0000-0010-8000-00aa00389b71", "M420"},
    {"30323449-0000-0010-8000-00aa00389b71", "I420"},
    {"34363248-0000-0010-8000-00aa00389b71", "H264"},
    {"35363248-0000-0010-8000-00aa00389b71", "H265"},
    {"43564548-0000-0010-8000-00aa00389b71", "HEVC"},
    {"47504a4d-0000-0010-8000-00aa00389b71", "MJPG"},
    {"32315659-0000-0010-8000-00aa00389b71", "YV12"},
    {"59565955-0000-0010-8000-00aa00389b71", "UYVY"},
    {"30303859-0000-0010-8000-00aa00389b71", "Y800"},
    {"20203859-0000-0010-8000-00aa00389b71", "Y8"},
    {"20303159-0000-0010-8000-00aa00389b71", "Y10"},
    {"20323159-0000-0010-8000-00aa00389b71", "Y12"},
    {"20363159-0000-0010-8000-00aa00389b71", "Y16"},
    {"20385942-0000-0010-8000-00aa00389b71", "BY8"},
    {"31384142-0000-0010-8000-00aa00389b71", "BA81"},
    {"47524247-0000-0010-8000-00aa00389b71", "GBRG"},
    {"47425247-0000-0010-8000-00aa00389b71", "GRBG"},
    {"42474752-0000-0010-8000-00aa00389b71", "RGGB"},
    {"36314742-0000-0010-8000-00aa00389b71", "BG16"},
    {"36314247-0000-0010-8000-00aa00389b71", "GB16"},
    {"36314752-0000-0010-8000-00aa00389b71", "RG16"},
    {"36315247-0000-0010-8000-00aa00389b71", "GR16"},
    {"50424752-0000-0010-8000-00aa00389b71", "RGBP"},
    {"20493859-0000-0010-8000-00aa00389b71", "Y8I"},
    {"49323159-0000-0010-8000-00aa00389b71", "Y12I"},
    {"2036315a-0000-0010-8000-00aa00389b71", "Z16"},
    {"30315752-0000-0010-8000-00aa00389b71", "RW10"},
    {"00000032-0000-0010-8000-00aa00389b71", "L8"},
    {"00000032-0002-0010-8000-00aa00389b71", "L8 infrared"},
    {"e436eb7d-524f-11ce-9f53-0020af0ba770", "RGB24"},
    {"e436eb7e-524f-11ce-9f53-0020af0ba770", "RGB32"},
};

// UVC 1.5 Uncompressed Payload, 3.1.1, table 3-1
constexpr Bit kInterlaceFlags[] = {
    {0, "Interlaced stream or variable"},
    {1, 1, "Fields per frame"},
    {1, 1, 0, "2 fields"},
    {1, 1, 1, "1 field"},
    {2, "Field 1 first"},
    {3, "Reserved"},
    {5, 4, "Field pattern"},
    {5, 4, 0, "Field 1 only"},
    {5, 4, 1, "Field 2 only"},
    {5, 4, 2, "Regular pattern of fields 1 and 2"},
    {5, 4, 3, "Random pattern of fields 1 and 2"},
    {7, 6, "Reserved"},
};

// UVC 1.5 Uncompressed Payload, 3.1.1, table 3-1
constexpr Code kCopyProtect[] = {
    {0x00, "No restrictions"},
    {0x01, "Restrict duplication"},
};

// UVC 1.5 Uncompressed Payload, 3.1.2, table 3-2
constexpr Bit kFrameCapabilities[] = {
    {0, "Still image supported"},
    {1, "Fixed frame-rate"},
    {7, 2, "Reserved"},
};

// UVC 1.5 Uncompressed Payload, 3.1.2, table 3-2
constexpr Code kFrameIntervalType[] = {
    {0x00, "Continuous frame interval"},
    {0x01, 0xFF, "Number of discrete frame intervals"},
};

// UVC 1.5 MJPEG Payload, 3.1.1, table 3-1
constexpr Bit kMjpegFlags[] = {
    {0, "FixedSizeSamples"},
    {7, 1, "Reserved"},
};

// UVC 1.5 DV Payload, 3.1.1, table 3-1
constexpr Bit kDvFormatType[] = {
    {6, 0, "Format"}, {6, 0, 0, "SD-DV"}, {6, 0, 1, "SDL-DV"}, {6, 0, 2, "HD-DV"},
    {7, 7, "Rate"},   {7, 7, 0, "50 Hz"}, {7, 7, 1, "60 Hz"},
};

// UVC 1.5, 3.9.2.6, table 3-19
constexpr Code kColorPrimaries[] = {
    {0x00, "Unspecified"},     {0x01, "BT.709, sRGB"}, {0x02, "BT.470-2 (M)"},
    {0x03, "BT.470-2 (B, G)"}, {0x04, "SMPTE 170M"},   {0x05, "SMPTE 240M"},
};

// UVC 1.5, 3.9.2.6, table 3-19
constexpr Code kTransferCharacteristics[] = {
    {0x00, "Unspecified"},     {0x01, "BT.709"},     {0x02, "BT.470-2 (M)"},
    {0x03, "BT.470-2 (B, G)"}, {0x04, "SMPTE 170M"}, {0x05, "SMPTE 240M"},
    {0x06, "Linear (V = Lc)"}, {0x07, "sRGB"},
};

// UVC 1.5, 3.9.2.6, table 3-19
constexpr Code kMatrixCoefficients[] = {
    {0x00, "Unspecified"},         {0x01, "BT.709"},     {0x02, "FCC"}, {0x03, "BT.470-2 (B, G)"},
    {0x04, "SMPTE 170M (BT.601)"}, {0x05, "SMPTE 240M"},
};

// UVC 1.5 Frame Based Payload, 3.1.1, table 3-1
constexpr Code kVariableSize[] = {
    {0x00, "Fixed size"},
    {0x01, "Variable size"},
};

// UVC 1.5 H.264 Payload, 3.1.1, table 3-1
constexpr Bit kH264SliceModes[] = {
    {0, "Maximum number of MBs per slice mode"},
    {1, "Target compressed size per slice mode"},
    {2, "Number of slices per frame mode"},
    {3, "Number of Macroblock rows per slice mode"},
    {7, 4, "Reserved"},
};

// UVC 1.5 H.264 Payload, 3.1.1, table 3-1
constexpr Bit kH264SyncFrameTypes[] = {
    {0, "Reset"},
    {1, "IDR frame with SPS and PPS headers"},
    {2, "IDR frame that is a long-term reference frame"},
    {3, "Non-IDR random-access I frame"},
    {4, "Non-IDR random-access I frame that is a long-term reference frame"},
    {5, "P frame that is a long-term reference frame"},
    {6, "Gradual Decoder Refresh frames"},
    {7, "Reserved"},
};

// UVC 1.5 H.264 Payload, 3.1.1, table 3-1
constexpr Code kResolutionScaling[] = {
    {0x00, "Not supported"},
    {0x01, "1.5 or 2.0 in both directions"},
    {0x02, "1.0, 1.5 or 2.0 in either direction"},
    {0x03, "Resolutions of the Frame Descriptors"},
    {0x04, "Arbitrary scaling"},
};

// UVC 1.5 H.264 Payload, 3.1.1, table 3-1
constexpr Bit kH264RateControlModes[] = {
    {0, "VBR with underflow allowed"},
    {1, "CBR"},
    {2, "Constant QP"},
    {3, "Global VBR with underflow allowed"},
    {4, "VBR without underflow"},
    {5, "Global VBR without underflow"},
    {7, 6, "Reserved"},
};

// UVC 1.5 H.264 Payload, 3.1.2, table 3-2
constexpr Code kH264Profile[] = {
    {0x4200, "Baseline Profile"},
    {0x4240, "Constrained Baseline Profile"},
    {0x4D00, "Main Profile"},
    {0x5300, "Scalable Baseline Profile"},
    {0x5304, "Scalable Constrained Baseline Profile"},
    {0x5600, "Scalable High Profile"},
    {0x5604, "Scalable Constrained High Profile"},
    {0x6400, "High Profile"},
    {0x640C, "Constrained High Profile"},
    {0x7600, "Multiview High Profile"},
    {0x8000, "Stereo High Profile"},
};

// UVC 1.5 H.264 Payload, 3.1.2, table 3-2
constexpr Bit kH264Usages[] = {
    {0, "Real-time/UCConfig mode 0"},
    {1, "Real-time/UCConfig mode 1"},
    {2, "Real-time/UCConfig mode 2Q"},
    {3, "Real-time/UCConfig mode 2S"},
    {4, "Real-time/UCConfig mode 3"},
    {7, 5, "Reserved"},
    {15, 8, "Broadcast modes"},
    {16, "File Storage mode with I and P slices"},
    {17, "File Storage mode with I, P and B slices"},
    {18, "File storage all-I-frame mode"},
    {23, 19, "Reserved"},
    {24, "MVC Stereo High Mode"},
    {25, "MVC Multiview Mode"},
    {31, 26, "Reserved"},
};

// UVC 1.5 H.264 Payload, 3.1.2, table 3-2
constexpr Bit kH264Capabilities[] = {
    {0, "CAVLC only"},
    {1, "CABAC only"},
    {2, "Constant frame rate"},
    {3, "Separate QP for luma/chroma"},
    {4, "Separate QP for Cb/Cr"},
    {5, "No picture reordering"},
    {6, "Long-term reference frame"},
    {15, 7, "Reserved"},
};

// UVC 1.5 H.264 Payload, 3.1.2, table 3-2
constexpr Bit kH264SvcCapabilities[] = {
    {2, 0, "Maximum number of temporal layers minus 1"},
    {3, "Rewrite support"},
    {6, 4, "Maximum number of CGS layers minus 1"},
    {9, 7, "Maximum number of MGS sublayers"},
    {10, "Additional SNR scalability support in spatial enhancement layers"},
    {13, 11, "Maximum number of spatial layers minus 1"},
    {31, 14, "Reserved"},
};

// UVC 1.5 H.264 Payload, 3.1.2, table 3-2
constexpr Bit kH264MvcCapabilities[] = {
    {2, 0, "Maximum number of temporal layers minus 1"},
    {10, 3, "Maximum number of view components minus 1"},
    {31, 11, "Reserved"},
};

// UVC 1.5 VP8 Payload, 3.1.1, table 3-1
constexpr Bit kVp8SyncFrameTypes[] = {
    {0, "Reset"},
    {1, "Intra frame"},
    {2, "Golden frame"},
    {3, "Alternate reference frame"},
    {4, "Gradual Decoder Refresh frames"},
    {7, 5, "Reserved"},
};

// UVC 1.5 VP8 Payload, 3.1.1, table 3-1
constexpr Bit kVp8RateControlModes[] = {
    {0, "VBR"}, {1, "CBR"}, {2, "Constant QP"}, {3, "Global VBR"}, {7, 4, "Reserved"},
};

// UVC 1.5 VP8 Payload, 3.1.2, table 3-2
constexpr Bit kVp8Usages[] = {
    {0, "Reserved"},
    {1, "Real-time"},
    {2, "Real-time with temporal layering structure"},
    {15, 3, "Reserved"},
    {16, "File Storage mode with I and P frames"},
    {17, "Reserved"},
    {18, "File storage all-I-frame mode"},
    {31, 19, "Reserved"},
};

// UVC 1.5 VP8 Payload, 3.1.2, table 3-2
constexpr Bit kVp8Capabilities[] = {
    {1, 0, "Reserved"},  {2, "Constant frame rate"}, {3, "Separate QP for luma/chroma"},
    {5, 4, "Reserved"},  {6, "Golden frame"},        {7, "Alternate reference frame"},
    {15, 8, "Reserved"},
};

// UVC 1.5 VP8 Payload, 3.1.2, table 3-2
constexpr Bit kVp8Scalability[] = {
    {2, 0, "Maximum number of temporal enhancement layers minus 1"},
    {31, 3, "Reserved"},
};

// Video Control: Header: UVC 1.5, 3.7.2, table 3-3
constexpr Field kVcHeaderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVcSubtype)},
    {"bcdUVC", 2, Bcd()},
    {"wTotalLength", 2, Dec(kBytes)},
    {"dwClockFrequency", 4, Dec(kHz)},
    {"bInCollection", 1, Dec()},
    {"baInterfaceNr", 1, Dec(), {.repeat = "bInCollection"}},
};

// Video Control: Input Terminal: UVC 1.5, 3.7.2.1, table 3-4
constexpr Field kInputTerminalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"iTerminal", 1, StringIndex()},
};

// Video Control: Camera Terminal: UVC 1.5, 3.7.2.3, table 3-6
constexpr Field kInputTerminalCameraFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"iTerminal", 1, StringIndex()},
    {"wObjectiveFocalLengthMin", 2, Dec()},
    {"wObjectiveFocalLengthMax", 2, Dec()},
    {"wOcularFocalLength", 2, Dec()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kCameraControls)},
};

// Video Control: Media Transport Input Terminal: UVC 1.5 Media Transport Terminal, 3.1, table 3-1
constexpr Field kInputTerminalMediaFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"iTerminal", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kMediaTransportControls)},
    {"bTransportModeSize", 1, Dec(kBytes)},
    {"bmTransportModes", "bTransportModeSize", Bits(kTransportModes)},
};

// Video Control: Output Terminal: UVC 1.5, 3.7.2.2, table 3-5
constexpr Field kOutputTerminalFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"iTerminal", 1, StringIndex()},
};

// Video Control: Media Transport Output Terminal: UVC 1.5 Media Transport Terminal, 3.2, table 3-2
constexpr Field kOutputTerminalMediaFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVcSubtype)},
    {"bTerminalID", 1, Dec()},
    {"wTerminalType", 2, Enum(kTerminalType)},
    {"bAssocTerminal", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"iTerminal", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kMediaTransportControls)},
    {"bTransportModeSize", 1, Dec(kBytes)},
    {"bmTransportModes", "bTransportModeSize", Bits(kTransportModes)},
};

// Video Control: Selector Unit: UVC 1.5, 3.7.2.4, table 3-7
constexpr Field kSelectorUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"iSelector", 1, StringIndex()},
};

// Video Control: Processing Unit: UVC 1.5, 3.7.2.5, table 3-8
constexpr Field kProcessingUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"wMaxMultiplier", 2, Dec(kHundredths)},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bits(kProcessingControls)},
    {"iProcessing", 1, StringIndex()},
    {"bmVideoStandards", 1, Bits(kVideoStandards), {.when = "bcdUVC >= 0x110"}},
};

// Video Control: Extension Unit: UVC 1.5, 3.7.2.7, table 3-10
constexpr Field kExtensionUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVcSubtype)},
    {"bUnitID", 1, Dec()},
    {"guidExtensionCode", 16, Uuid()},
    {"bNumControls", 1, Dec()},
    {"bNrInPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInPins"}},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", "bControlSize", Bytes()},
    {"iExtension", 1, StringIndex()},
};

// Video Control: Encoding Unit: UVC 1.5, 3.7.2.6, table 3-9
constexpr Field kEncodingUnitFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVcSubtype)},
    {"bUnitID", 1, Dec()},
    {"bSourceID", 1, Dec()},
    {"iEncoding", 1, StringIndex()},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmControls", 3, Bits(kEncodingControls)},
    {"bmControlsRuntime", 3, Bits(kEncodingControls)},
};

// Video Control: Interrupt Endpoint: UVC 1.5, 3.8.2.2, table 3-12
constexpr Field kVcInterruptEndpointFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kEpSubtype)},
    {"wMaxTransferSize", 2, Dec(kBytes)},
};

// Video Streaming: Input Header: UVC 1.5, 3.9.2.1, table 3-14
constexpr Field kVsInputHeaderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVsSubtype)},
    {"bNumFormats", 1, Dec()},
    {"wTotalLength", 2, Dec(kBytes)},
    {"bEndpointAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
    {"bmInfo", 1, Bits(kInputHeaderInfo)},
    {"bTerminalLink", 1, Dec()},
    {"bStillCaptureMethod", 1, Enum(kStillCaptureMethod)},
    {"bTriggerSupport", 1, Enum(kTriggerSupport)},
    {"bTriggerUsage", 1, Enum(kTriggerUsage)},
    {"bControlSize", 1, Dec(kBytes)},
    {"bmaControls", "bControlSize", Bits(kInputFormatControls), {.repeat = "bNumFormats"}},
};

// Video Streaming: Output Header: UVC 1.5, 3.9.2.2, table 3-15
constexpr Field kVsOutputHeaderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVsSubtype)},
    {"bNumFormats", 1, Dec()},
    {"wTotalLength", 2, Dec(kBytes)},
    {"bEndpointAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
    {"bTerminalLink", 1, Dec()},
    {"bControlSize", 1, Dec(kBytes), {.when = "bcdUVC >= 0x110"}},
    {"bmaControls",
     "bControlSize",
     Bits(kOutputFormatControls),
     {.repeat = "bNumFormats", .when = "bcdUVC >= 0x110"}},
};

// Video Streaming: Still Image Frame: UVC 1.5, 3.9.2.5, table 3-18
constexpr Field kStillImageFrameFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVsSubtype)},
    {"bEndpointAddress", 1, Bits(kEndpointAddress, "Endpoint {3..0} {7..7}")},
    {"bNumImageSizePatterns", 1, Dec()},
    {"wWidth", 2, Dec(kPixels), {.repeat = "bNumImageSizePatterns", .group = 'a'}},
    {"wHeight", 2, Dec(kPixels), {.repeat = "bNumImageSizePatterns", .group = 'a'}},
    {"bNumCompressionPattern", 1, Dec()},
    {"bCompression", 1, Dec(), {.repeat = "bNumCompressionPattern"}},
};

// Video Streaming: Uncompressed Format: UVC 1.5 Uncompressed Payload, 3.1.1, table 3-1
constexpr Field kFormatUncompressedFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"bNumFrameDescriptors", 1, Dec()},
    {"guidFormat", 16, Uuid(kFormatGuid)},
    {"bBitsPerPixel", 1, Dec()},
    {"bDefaultFrameIndex", 1, Dec()},
    {"bAspectRatioX", 1, Dec()},
    {"bAspectRatioY", 1, Dec()},
    {"bmInterlaceFlags", 1, Bits(kInterlaceFlags)},
    {"bCopyProtect", 1, Enum(kCopyProtect)},
};

// Video Streaming: Uncompressed Frame: UVC 1.5 Uncompressed Payload, 3.1.2, tables 3-2 to 3-4
constexpr Field kFrameUncompressedFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFrameIndex", 1, Dec()},
    {"bmCapabilities", 1, Bits(kFrameCapabilities)},
    {"wWidth", 2, Dec(kPixels)},
    {"wHeight", 2, Dec(kPixels)},
    {"dwMinBitRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxBitRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxVideoFrameBufferSize", 4, Dec(kBytes)},
    {"dwDefaultFrameInterval", 4, Dec(k100Nanoseconds)},
    {"bFrameIntervalType", 1, Enum(kFrameIntervalType)},
    {"dwMinFrameInterval", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwMaxFrameInterval", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwFrameIntervalStep", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwFrameInterval",
     4,
     Dec(k100Nanoseconds),
     {.repeat = "bFrameIntervalType", .when = "bFrameIntervalType != 0"}},
};

// Video Streaming: MJPEG Format: UVC 1.5 MJPEG Payload, 3.1.1, table 3-1
constexpr Field kFormatMjpegFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"bNumFrameDescriptors", 1, Dec()},
    {"bmFlags", 1, Bits(kMjpegFlags)},
    {"bDefaultFrameIndex", 1, Dec()},
    {"bAspectRatioX", 1, Dec()},
    {"bAspectRatioY", 1, Dec()},
    {"bmInterlaceFlags", 1, Bits(kInterlaceFlags)},
    {"bCopyProtect", 1, Enum(kCopyProtect)},
};

// Video Streaming: MJPEG Frame: UVC 1.5 MJPEG Payload, 3.1.2, tables 3-2 to 3-4
constexpr Field kFrameMjpegFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFrameIndex", 1, Dec()},
    {"bmCapabilities", 1, Bits(kFrameCapabilities)},
    {"wWidth", 2, Dec(kPixels)},
    {"wHeight", 2, Dec(kPixels)},
    {"dwMinBitRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxBitRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxVideoFrameBufferSize", 4, Dec(kBytes)},
    {"dwDefaultFrameInterval", 4, Dec(k100Nanoseconds)},
    {"bFrameIntervalType", 1, Enum(kFrameIntervalType)},
    {"dwMinFrameInterval", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwMaxFrameInterval", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwFrameIntervalStep", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwFrameInterval",
     4,
     Dec(k100Nanoseconds),
     {.repeat = "bFrameIntervalType", .when = "bFrameIntervalType != 0"}},
};

// Video Streaming: MPEG-1 System Stream Format: UVC 1.0 MPEG1-SS and MPEG2-PS Payload, 3.1.1
constexpr Field kFormatMpeg1Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"wPacketLength", 2, Dec(kBytes)},
    {"wPackLength", 2, Dec(kBytes)},
    {"bPackDataType", 1, Hex()},
};

// Video Streaming: MPEG-2 PS Format: UVC 1.0 MPEG1-SS and MPEG2-PS Payload, 3.1.2
constexpr Field kFormatMpeg2psFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"wPacketLength", 2, Dec(kBytes)},
    {"wPackLength", 2, Dec(kBytes)},
    {"bPackDataType", 1, Hex()},
};

// Video Streaming: MPEG-2 TS Format: UVC 1.5 MPEG-2 TS Payload, 3.1.1, table 3-1
constexpr Field kFormatMpeg2tsFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"bDataOffset", 1, Dec(kBytes)},
    {"bPacketLength", 1, Dec(kBytes)},
    {"bStrideLength", 1, Dec(kBytes)},
    {"guidStrideFormat", 16, Uuid(), {.when = "bcdUVC >= 0x110"}},
};

// Video Streaming: DV Format: UVC 1.5 DV Payload, 3.1.1, table 3-1
constexpr Field kFormatDvFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"dwMaxVideoFrameBufferSize", 4, Dec(kBytes)},
    {"bFormatType", 1, Bits(kDvFormatType)},
};

// Video Streaming: Color Matching: UVC 1.5, 3.9.2.6, table 3-19
constexpr Field kColorMatchingFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kVsSubtype)},
    {"bColorPrimaries", 1, Enum(kColorPrimaries)},
    {"bTransferCharacteristics", 1, Enum(kTransferCharacteristics)},
    {"bMatrixCoefficients", 1, Enum(kMatrixCoefficients)},
};

// Video Streaming: Vendor Format: UVC 1.0 Vendor Payload, 3.1.1
constexpr Field kFormatVendorFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"bNumFrameDescriptors", 1, Dec()},
    {"guidMajorFormat", 16, Uuid()},
    {"guidSubFormat", 16, Uuid()},
    {"guidSpecifier", 16, Uuid()},
    {"bPayloadClass", 1, Hex()},
    {"bDefaultFrameIndex", 1, Dec()},
    {"bCopyProtect", 1, Enum(kCopyProtect)},
};

// Video Streaming: Vendor Frame: UVC 1.0 Vendor Payload, 3.1.2
constexpr Field kFrameVendorFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFrameIndex", 1, Dec()},
    {"bmCapabilities", 1, Bits(kFrameCapabilities)},
    {"wWidth", 2, Dec(kPixels)},
    {"wHeight", 2, Dec(kPixels)},
    {"dwMinBitRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxBitRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxVideoFrameBufferSize", 4, Dec(kBytes)},
    {"dwDefaultFrameInterval", 4, Dec(k100Nanoseconds)},
    {"bFrameIntervalType", 1, Enum(kFrameIntervalType)},
    {"dwMinFrameInterval", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwMaxFrameInterval", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwFrameIntervalStep", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwFrameInterval",
     4,
     Dec(k100Nanoseconds),
     {.repeat = "bFrameIntervalType", .when = "bFrameIntervalType != 0"}},
};

// Video Streaming: Frame Based Format: UVC 1.5 Frame Based Payload, 3.1.1, table 3-1
constexpr Field kFormatFrameBasedFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"bNumFrameDescriptors", 1, Dec()},
    {"guidFormat", 16, Uuid(kFormatGuid)},
    {"bBitsPerPixel", 1, Dec()},
    {"bDefaultFrameIndex", 1, Dec()},
    {"bAspectRatioX", 1, Dec()},
    {"bAspectRatioY", 1, Dec()},
    {"bmInterlaceFlags", 1, Bits(kInterlaceFlags)},
    {"bCopyProtect", 1, Enum(kCopyProtect)},
    {"bVariableSize", 1, Enum(kVariableSize)},
};

// Video Streaming: Frame Based Frame: UVC 1.5 Frame Based Payload, 3.1.2, tables 3-2 to 3-4
constexpr Field kFrameFrameBasedFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFrameIndex", 1, Dec()},
    {"bmCapabilities", 1, Bits(kFrameCapabilities)},
    {"wWidth", 2, Dec(kPixels)},
    {"wHeight", 2, Dec(kPixels)},
    {"dwMinBitRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxBitRate", 4, Dec(kBitsPerSecond)},
    {"dwDefaultFrameInterval", 4, Dec(k100Nanoseconds)},
    {"bFrameIntervalType", 1, Enum(kFrameIntervalType)},
    {"dwBytesPerLine", 4, Dec(kBytes)},
    {"dwMinFrameInterval", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwMaxFrameInterval", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwFrameIntervalStep", 4, Dec(k100Nanoseconds), {.when = "bFrameIntervalType == 0"}},
    {"dwFrameInterval",
     4,
     Dec(k100Nanoseconds),
     {.repeat = "bFrameIntervalType", .when = "bFrameIntervalType != 0"}},
};

// Video Streaming: Stream Based Format: UVC 1.5 Stream Based Payload, 3.1.1, table 3-1
constexpr Field kFormatStreamBasedFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"guidFormat", 16, Uuid(kFormatGuid)},
    {"dwPacketLength", 4, Dec(kBytes)},
};

// Video Streaming: H.264 Format: UVC 1.5 H.264 Payload, 3.1.1, table 3-1
constexpr Field kFormatH264Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"bNumFrameDescriptors", 1, Dec()},
    {"bDefaultFrameIndex", 1, Dec()},
    {"bMaxCodecConfigDelay", 1, Dec(kFrames)},
    {"bmSupportedSliceModes", 1, Bits(kH264SliceModes)},
    {"bmSupportedSyncFrameTypes", 1, Bits(kH264SyncFrameTypes)},
    {"bResolutionScaling", 1, Enum(kResolutionScaling)},
    {"Reserved1", 1, Hex()},
    {"bmSupportedRateControlModes", 1, Bits(kH264RateControlModes)},
    {"wMaxMBperSecOneResolutionNoScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsNoScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsNoScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsNoScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecOneResolutionTemporalScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsTemporalScalablility", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsTemporalScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsTemporalScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecOneResolutionTemporalQualityScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsTemporalQualityScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsTemporalQualityScalablity", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsTemporalQualityScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecOneResolutionsTemporalSpatialScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsTemporalSpatialScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsTemporalSpatialScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsTemporalSpatialScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecOneResolutionFullScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsFullScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsFullScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsFullScalability", 2, Dec(k1000Macroblocks)},
};

// Video Streaming: H.264 Frame: UVC 1.5 H.264 Payload, 3.1.2, table 3-2
constexpr Field kFrameH264Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFrameIndex", 1, Dec()},
    {"wWidth", 2, Dec(kPixels)},
    {"wHeight", 2, Dec(kPixels)},
    {"wSARwidth", 2, Dec()},
    {"wSARheight", 2, Dec()},
    {"wProfile", 2, Enum(kH264Profile)},
    {"bLevelIDC", 1, Dec(kTenths)},
    {"wConstrainedToolset", 2, Hex()},
    {"bmSupportedUsages", 4, Bits(kH264Usages)},
    {"bmCapabilities", 2, Bits(kH264Capabilities)},
    {"bmSVCCapabilities", 4, Bits(kH264SvcCapabilities)},
    {"bmMVCCapabilities", 4, Bits(kH264MvcCapabilities)},
    {"dwMinBitRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxBitRate", 4, Dec(kBitsPerSecond)},
    {"dwDefaultFrameInterval", 4, Dec(k100Nanoseconds)},
    {"bNumFrameIntervals", 1, Dec()},
    {"dwFrameInterval", 4, Dec(k100Nanoseconds), {.repeat = "bNumFrameIntervals"}},
};

// Video Streaming: H.264 Simulcast Format: UVC 1.5 H.264 Payload, 3.1.1, table 3-1
constexpr Field kFormatH264SimulcastFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"bNumFrameDescriptors", 1, Dec()},
    {"bDefaultFrameIndex", 1, Dec()},
    {"bMaxCodecConfigDelay", 1, Dec(kFrames)},
    {"bmSupportedSliceModes", 1, Bits(kH264SliceModes)},
    {"bmSupportedSyncFrameTypes", 1, Bits(kH264SyncFrameTypes)},
    {"bResolutionScaling", 1, Enum(kResolutionScaling)},
    {"Reserved1", 1, Hex()},
    {"bmSupportedRateControlModes", 1, Bits(kH264RateControlModes)},
    {"wMaxMBperSecOneResolutionNoScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsNoScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsNoScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsNoScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecOneResolutionTemporalScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsTemporalScalablility", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsTemporalScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsTemporalScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecOneResolutionTemporalQualityScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsTemporalQualityScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsTemporalQualityScalablity", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsTemporalQualityScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecOneResolutionsTemporalSpatialScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsTemporalSpatialScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsTemporalSpatialScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsTemporalSpatialScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecOneResolutionFullScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecTwoResolutionsFullScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecThreeResolutionsFullScalability", 2, Dec(k1000Macroblocks)},
    {"wMaxMBperSecFourResolutionsFullScalability", 2, Dec(k1000Macroblocks)},
};

// Video Streaming: VP8 Format: UVC 1.5 VP8 Payload, 3.1.1, table 3-1
constexpr Field kFormatVp8Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"bNumFrameDescriptors", 1, Dec()},
    {"bDefaultFrameIndex", 1, Dec()},
    {"bMaxCodecConfigDelay", 1, Dec(kFrames)},
    {"bSupportedPartitionCount", 1, Dec()},
    {"bmSupportedSyncFrameTypes", 1, Bits(kVp8SyncFrameTypes)},
    {"bResolutionScaling", 1, Enum(kResolutionScaling)},
    {"bmSupportedRateControlModes", 1, Bits(kVp8RateControlModes)},
    {"wMaxMBperSec", 2, Dec()},
};

// Video Streaming: VP8 Frame: UVC 1.5 VP8 Payload, 3.1.2, table 3-2
constexpr Field kFrameVp8Fields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFrameIndex", 1, Dec()},
    {"wWidth", 2, Dec(kPixels)},
    {"wHeight", 2, Dec(kPixels)},
    {"bmSupportedUsages", 4, Bits(kVp8Usages)},
    {"bmCapabilities", 2, Bits(kVp8Capabilities)},
    {"bmScalabilityCapabilities", 4, Bits(kVp8Scalability)},
    {"dwMinBitRate", 4, Dec(kBitsPerSecond)},
    {"dwMaxBitRate", 4, Dec(kBitsPerSecond)},
    {"dwDefaultFrameInterval", 4, Dec(k100Nanoseconds)},
    {"bNumFrameIntervals", 1, Dec()},
    {"dwFrameInterval", 4, Dec(k100Nanoseconds), {.repeat = "bNumFrameIntervals"}},
};

// Video Streaming: VP8 Simulcast Format: UVC 1.5 VP8 Payload, 3.1.1, table 3-1
constexpr Field kFormatVp8SimulcastFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubType", 1, Enum(kVsSubtype)},
    {"bFormatIndex", 1, Dec()},
    {"bNumFrameDescriptors", 1, Dec()},
    {"bDefaultFrameIndex", 1, Dec()},
    {"bMaxCodecConfigDelay", 1, Dec(kFrames)},
    {"bSupportedPartitionCount", 1, Dec()},
    {"bmSupportedSyncFrameTypes", 1, Bits(kVp8SyncFrameTypes)},
    {"bResolutionScaling", 1, Enum(kResolutionScaling)},
    {"bmSupportedRateControlModes", 1, Bits(kVp8RateControlModes)},
    {"wMaxMBperSec", 2, Dec()},
};

constexpr Layout kLayouts[] = {
    {"video.vc_header", "Video Control: Header", "type=24 subtype=01 class=0E subclass=01", 12,
     "12+bInCollection", kVcHeaderFields, "UVC 1.5, 3.7.2, table 3-3"},
    {"video.input_terminal", "Video Control: Input Terminal",
     "type=24 subtype=02 class=0E subclass=01", 8, "", kInputTerminalFields,
     "UVC 1.5, 3.7.2.1, table 3-4"},
    {"video.input_terminal_camera", "Video Control: Camera Terminal",
     "type=24 subtype=02 class=0E subclass=01 wTerminalType=0201", 15, "15+bControlSize",
     kInputTerminalCameraFields, "UVC 1.5, 3.7.2.3, table 3-6"},
    {"video.input_terminal_media", "Video Control: Media Transport Input Terminal",
     "type=24 subtype=02 class=0E subclass=01 wTerminalType=0202", 10,
     "10+bControlSize+bTransportModeSize", kInputTerminalMediaFields,
     "UVC 1.5 Media Transport Terminal, 3.1, table 3-1"},
    {"video.output_terminal", "Video Control: Output Terminal",
     "type=24 subtype=03 class=0E subclass=01", 9, "", kOutputTerminalFields,
     "UVC 1.5, 3.7.2.2, table 3-5"},
    {"video.output_terminal_media", "Video Control: Media Transport Output Terminal",
     "type=24 subtype=03 class=0E subclass=01 wTerminalType=0302", 11,
     "11+bControlSize+bTransportModeSize", kOutputTerminalMediaFields,
     "UVC 1.5 Media Transport Terminal, 3.2, table 3-2"},
    {"video.selector_unit", "Video Control: Selector Unit",
     "type=24 subtype=04 class=0E subclass=01", 6, "6+bNrInPins", kSelectorUnitFields,
     "UVC 1.5, 3.7.2.4, table 3-7"},
    {"video.processing_unit", "Video Control: Processing Unit",
     "type=24 subtype=05 class=0E subclass=01", 9, "9+bControlSize+(bcdUVC>=0x0110)",
     kProcessingUnitFields, "UVC 1.5, 3.7.2.5, table 3-8"},
    {"video.extension_unit", "Video Control: Extension Unit",
     "type=24 subtype=06 class=0E subclass=01", 24, "24+bNrInPins+bControlSize",
     kExtensionUnitFields, "UVC 1.5, 3.7.2.7, table 3-10"},
    {"video.encoding_unit", "Video Control: Encoding Unit",
     "type=24 subtype=07 class=0E subclass=01", 13, "13", kEncodingUnitFields,
     "UVC 1.5, 3.7.2.6, table 3-9"},
    {"video.vc_interrupt_endpoint", "Video Control: Interrupt Endpoint",
     "type=25 subtype=03 class=0E subclass=01", 5, "5", kVcInterruptEndpointFields,
     "UVC 1.5, 3.8.2.2, table 3-12"},
    {"video.vs_input_header", "Video Streaming: Input Header",
     "type=24 subtype=01 class=0E subclass=02", 13, "13+bNumFormats*bControlSize",
     kVsInputHeaderFields, "UVC 1.5, 3.9.2.1, table 3-14"},
    {"video.vs_output_header", "Video Streaming: Output Header",
     "type=24 subtype=02 class=0E subclass=02", 8,
     "8+(bcdUVC>=0x0110)*(1+bNumFormats*bControlSize)", kVsOutputHeaderFields,
     "UVC 1.5, 3.9.2.2, table 3-15"},
    {"video.still_image_frame", "Video Streaming: Still Image Frame",
     "type=24 subtype=03 class=0E subclass=02", 6,
     "6+bNumImageSizePatterns*4+bNumCompressionPattern", kStillImageFrameFields,
     "UVC 1.5, 3.9.2.5, table 3-18"},
    {"video.format_uncompressed", "Video Streaming: Uncompressed Format",
     "type=24 subtype=04 class=0E subclass=02", 27, "27", kFormatUncompressedFields,
     "UVC 1.5 Uncompressed Payload, 3.1.1, table 3-1"},
    {"video.frame_uncompressed", "Video Streaming: Uncompressed Frame",
     "type=24 subtype=05 class=0E subclass=02", 26,
     "26+bFrameIntervalType*4+(bFrameIntervalType==0)*12", kFrameUncompressedFields,
     "UVC 1.5 Uncompressed Payload, 3.1.2, tables 3-2 to 3-4"},
    {"video.format_mjpeg", "Video Streaming: MJPEG Format",
     "type=24 subtype=06 class=0E subclass=02", 11, "11", kFormatMjpegFields,
     "UVC 1.5 MJPEG Payload, 3.1.1, table 3-1"},
    {"video.frame_mjpeg", "Video Streaming: MJPEG Frame", "type=24 subtype=07 class=0E subclass=02",
     26, "26+bFrameIntervalType*4+(bFrameIntervalType==0)*12", kFrameMjpegFields,
     "UVC 1.5 MJPEG Payload, 3.1.2, tables 3-2 to 3-4"},
    {"video.format_mpeg1", "Video Streaming: MPEG-1 System Stream Format",
     "type=24 subtype=08 class=0E subclass=02", 9, "9", kFormatMpeg1Fields,
     "UVC 1.0 MPEG1-SS and MPEG2-PS Payload, 3.1.1"},
    {"video.format_mpeg2ps", "Video Streaming: MPEG-2 PS Format",
     "type=24 subtype=09 class=0E subclass=02", 9, "9", kFormatMpeg2psFields,
     "UVC 1.0 MPEG1-SS and MPEG2-PS Payload, 3.1.2"},
    {"video.format_mpeg2ts", "Video Streaming: MPEG-2 TS Format",
     "type=24 subtype=0A class=0E subclass=02", 7, "7+(bcdUVC>=0x0110)*16", kFormatMpeg2tsFields,
     "UVC 1.5 MPEG-2 TS Payload, 3.1.1, table 3-1"},
    {"video.format_dv", "Video Streaming: DV Format", "type=24 subtype=0C class=0E subclass=02", 9,
     "9", kFormatDvFields, "UVC 1.5 DV Payload, 3.1.1, table 3-1"},
    {"video.color_matching", "Video Streaming: Color Matching",
     "type=24 subtype=0D class=0E subclass=02", 6, "6", kColorMatchingFields,
     "UVC 1.5, 3.9.2.6, table 3-19"},
    {"video.format_vendor", "Video Streaming: Vendor Format",
     "type=24 subtype=0E class=0E subclass=02", 56, "56", kFormatVendorFields,
     "UVC 1.0 Vendor Payload, 3.1.1"},
    {"video.frame_vendor", "Video Streaming: Vendor Frame",
     "type=24 subtype=0F class=0E subclass=02", 26,
     "26+bFrameIntervalType*4+(bFrameIntervalType==0)*12", kFrameVendorFields,
     "UVC 1.0 Vendor Payload, 3.1.2"},
    {"video.format_frame_based", "Video Streaming: Frame Based Format",
     "type=24 subtype=10 class=0E subclass=02", 28, "28", kFormatFrameBasedFields,
     "UVC 1.5 Frame Based Payload, 3.1.1, table 3-1"},
    {"video.frame_frame_based", "Video Streaming: Frame Based Frame",
     "type=24 subtype=11 class=0E subclass=02", 26,
     "26+bFrameIntervalType*4+(bFrameIntervalType==0)*12", kFrameFrameBasedFields,
     "UVC 1.5 Frame Based Payload, 3.1.2, tables 3-2 to 3-4"},
    {"video.format_stream_based", "Video Streaming: Stream Based Format",
     "type=24 subtype=12 class=0E subclass=02", 24, "24", kFormatStreamBasedFields,
     "UVC 1.5 Stream Based Payload, 3.1.1, table 3-1"},
    {"video.format_h264", "Video Streaming: H.264 Format",
     "type=24 subtype=13 class=0E subclass=02", 52, "52", kFormatH264Fields,
     "UVC 1.5 H.264 Payload, 3.1.1, table 3-1"},
    {"video.frame_h264", "Video Streaming: H.264 Frame", "type=24 subtype=14 class=0E subclass=02",
     44, "44+bNumFrameIntervals*4", kFrameH264Fields, "UVC 1.5 H.264 Payload, 3.1.2, table 3-2"},
    {"video.format_h264_simulcast", "Video Streaming: H.264 Simulcast Format",
     "type=24 subtype=15 class=0E subclass=02", 52, "52", kFormatH264SimulcastFields,
     "UVC 1.5 H.264 Payload, 3.1.1, table 3-1"},
    {"video.format_vp8", "Video Streaming: VP8 Format", "type=24 subtype=16 class=0E subclass=02",
     13, "13", kFormatVp8Fields, "UVC 1.5 VP8 Payload, 3.1.1, table 3-1"},
    {"video.frame_vp8", "Video Streaming: VP8 Frame", "type=24 subtype=17 class=0E subclass=02", 31,
     "31+bNumFrameIntervals*4", kFrameVp8Fields, "UVC 1.5 VP8 Payload, 3.1.2, table 3-2"},
    {"video.format_vp8_simulcast", "Video Streaming: VP8 Simulcast Format",
     "type=24 subtype=18 class=0E subclass=02", 13, "13", kFormatVp8SimulcastFields,
     "UVC 1.5 VP8 Payload, 3.1.1, table 3-1"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> VideoTable() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
