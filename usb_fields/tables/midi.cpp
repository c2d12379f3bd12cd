// MIDI 1.0 and 2.0.
#include <usb_fields/tables/shared.h>
#include <usb_fields/tables/tables.h>
#include <usb_fields/tables/units.h>

namespace usb_fields::detail {
namespace {

// MIDI Devices 2.0, A.1
constexpr Code kCsType[] = {
    {0x20, "CS_UNDEFINED"}, {0x21, "CS_DEVICE"},   {0x22, "CS_CONFIGURATION"}, {0x23, "CS_STRING"},
    {0x24, "CS_INTERFACE"}, {0x25, "CS_ENDPOINT"}, {0x26, "CS_GR_TRM_BLOCK"},
};

// MIDI Devices 1.0, A.1; MIDI Devices 2.0, A.1
constexpr Code kMsSubtype[] = {
    {0x00, "MS_DESCRIPTOR_UNDEFINED"}, {0x01, "MS_HEADER"}, {0x02, "MIDI_IN_JACK"},
    {0x03, "MIDI_OUT_JACK"},           {0x04, "ELEMENT"},
};

// MIDI Devices 1.0, A.3; MIDI Devices 2.0, A.5
constexpr Code kJackType[] = {
    {0x00, "JACK_TYPE_UNDEFINED"},
    {0x01, "EMBEDDED"},
    {0x02, "EXTERNAL"},
};

// MIDI Devices 1.0, 6.1.2.4, table 6-5
constexpr Bit kElementCaps[] = {
    {0, "Custom Undefined Type"},
    {1, "MIDI CLOCK"},
    {2, "MTC"},
    {3, "MMC"},
    {4, "GM1"},
    {5, "GM2"},
    {6, "GS"},
    {7, "XG"},
    {8, "EFX"},
    {9, "MIDI Patch Bay"},
    {10, "DLS1"},
    {11, "DLS2"},
};

// MIDI Devices 1.0, A.2; MIDI Devices 2.0, A.2
constexpr Code kEpSubtype[] = {
    {0x00, "DESCRIPTOR_UNDEFINED"},
    {0x01, "MS_GENERAL"},
    {0x02, "MS_GENERAL_2_0"},
};

// MIDI Devices 2.0, A.3
constexpr Code kGtbSubtype[] = {
    {0x00, "GR_TRM_BLOCK_UNDEFINED"},
    {0x01, "GR_TRM_BLOCK_HEADER"},
    {0x02, "GR_TRM_BLOCK"},
};

// MIDI Devices 2.0, A.6
constexpr Code kGtbType[] = {
    {0x00, "BIDIRECTIONAL"},
    {0x01, "INPUT_ONLY"},
    {0x02, "OUTPUT_ONLY"},
};

// MIDI Devices 2.0, A.8
constexpr Code kGroupNumber[] = {
    {0x00, "GROUP_1"},  {0x01, "GROUP_2"},  {0x02, "GROUP_3"},  {0x03, "GROUP_4"},
    {0x04, "GROUP_5"},  {0x05, "GROUP_6"},  {0x06, "GROUP_7"},  {0x07, "GROUP_8"},
    {0x08, "GROUP_9"},  {0x09, "GROUP_10"}, {0x0A, "GROUP_11"}, {0x0B, "GROUP_12"},
    {0x0C, "GROUP_13"}, {0x0D, "GROUP_14"}, {0x0E, "GROUP_15"}, {0x0F, "GROUP_16"},
};

// MIDI Devices 2.0, A.7
constexpr Code kProtocol[] = {
    {0x00, "USE_MIDI_CI"},
    {0x01, "MIDI_1_0_UP_TO_64_BITS"},
    {0x02, "MIDI_1_0_UP_TO_64_BITS_AND_JRTS"},
    {0x03, "MIDI_1_0_UP_TO_128_BITS"},
    {0x04, "MIDI_1_0_UP_TO_128_BITS_AND_JRTS"},
    {0x11, "MIDI_2_0"},
    {0x12, "MIDI_2_0_AND_JRTS"},
};

// MIDI Streaming: Header: MIDI Devices 1.0, 6.1.2.1, table 6-2; MIDI Devices 2.0, 5.2.2.1, table
// 5-2
constexpr Field kMsHeaderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kMsSubtype)},
    {"bcdMSC", 2, Bcd()},
    {"wTotalLength", 2, Dec(kBytes)},
};

// MIDI Streaming: MIDI IN Jack: MIDI Devices 1.0, 6.1.2.2, table 6-3
constexpr Field kInJackFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kMsSubtype)},
    {"bJackType", 1, Enum(kJackType)},
    {"bJackID", 1, Dec()},
    {"iJack", 1, StringIndex()},
};

// MIDI Streaming: MIDI OUT Jack: MIDI Devices 1.0, 6.1.2.3, table 6-4
constexpr Field kOutJackFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kMsSubtype)},
    {"bJackType", 1, Enum(kJackType)},
    {"bJackID", 1, Dec()},
    {"bNrInputPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInputPins", .group = 'a'}},
    {"BaSourcePin", 1, Dec(), {.repeat = "bNrInputPins", .group = 'a'}},
    {"iJack", 1, StringIndex()},
};

// MIDI Streaming: Element: MIDI Devices 1.0, 6.1.2.4, table 6-5
constexpr Field kElementFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kMsSubtype)},
    {"bElementID", 1, Dec()},
    {"bNrInputPins", 1, Dec()},
    {"baSourceID", 1, Dec(), {.repeat = "bNrInputPins", .group = 'a'}},
    {"BaSourcePin", 1, Dec(), {.repeat = "bNrInputPins", .group = 'a'}},
    {"bNrOutputPins", 1, Dec()},
    {"bInTerminalLink", 1, Dec()},
    {"bOutTerminalLink", 1, Dec()},
    {"bElCapsSize", 1, Dec(kBytes)},
    {"bmElementCaps", "bElCapsSize", Bits(kElementCaps)},
    {"iElement", 1, StringIndex()},
};

// MIDI Streaming: Endpoint (9 bytes): MIDI Devices 1.0, 6.2.1, table 6-6; 6.2.3, table 6-8
constexpr Field kEndpointFields[] = {
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

// MIDI Streaming: Endpoint, General: MIDI Devices 1.0, 6.2.2, table 6-7
constexpr Field kEndpointGeneralFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kEpSubtype)},
    {"bNumEmbMIDIJack", 1, Dec()},
    {"baAssocJackID", 1, Dec(), {.repeat = "bNumEmbMIDIJack"}},
};

// MIDI Streaming 2.0: Endpoint, General 2.0: MIDI Devices 2.0, 5.3.2, table 5-4
constexpr Field kMidi2EndpointGeneralFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kEpSubtype)},
    {"bNumGrpTrmBlock", 1, Dec()},
    {"baAssoGrpTrmBlkID", 1, Dec(), {.repeat = "bNumGrpTrmBlock"}},
};

// MIDI Streaming 2.0: Group Terminal Block Header: MIDI Devices 2.0, 5.4.1, table 5-5
constexpr Field kMidi2GroupTerminalBlockHeaderFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kGtbSubtype)},
    {"wTotalLength", 2, Dec(kBytes)},
};

// MIDI Streaming 2.0: Group Terminal Block: MIDI Devices 2.0, 5.4.2.1, table 5-6
constexpr Field kMidi2GroupTerminalBlockFields[] = {
    {"bLength", 1, Dec()},
    {"bDescriptorType", 1, Enum(kCsType)},
    {"bDescriptorSubtype", 1, Enum(kGtbSubtype)},
    {"bGrpTrmBlkID", 1, Dec()},
    {"bGrpTrmBlkType", 1, Enum(kGtbType)},
    {"nGroupTrm", 1, Enum(kGroupNumber)},
    {"nNumGroupTrm", 1, Dec()},
    {"iBlockItem", 1, StringIndex()},
    {"bMIDIProtocol", 1, Enum(kProtocol)},
    {"wMaxInputBandwidth", 2, Dec(k4KilobytesPerSecond)},
    {"wMaxOutputBandwidth", 2, Dec(k4KilobytesPerSecond)},
};

constexpr Layout kLayouts[] = {
    {"midi.ms_header", "MIDI Streaming: Header", "type=24 subtype=01 class=01 subclass=03", 7, "7",
     kMsHeaderFields, "MIDI Devices 1.0, 6.1.2.1, table 6-2; MIDI Devices 2.0, 5.2.2.1, table 5-2"},
    {"midi.in_jack", "MIDI Streaming: MIDI IN Jack", "type=24 subtype=02 class=01 subclass=03", 6,
     "6", kInJackFields, "MIDI Devices 1.0, 6.1.2.2, table 6-3"},
    {"midi.out_jack", "MIDI Streaming: MIDI OUT Jack", "type=24 subtype=03 class=01 subclass=03", 7,
     "7+2*bNrInputPins", kOutJackFields, "MIDI Devices 1.0, 6.1.2.3, table 6-4"},
    {"midi.element", "MIDI Streaming: Element", "type=24 subtype=04 class=01 subclass=03", 10,
     "10+2*bNrInputPins+bElCapsSize", kElementFields, "MIDI Devices 1.0, 6.1.2.4, table 6-5"},
    {"midi.endpoint", "MIDI Streaming: Endpoint (9 bytes)",
     "type=05 class=01 subclass=03 protocol=00 bLength=09", 9, "9", kEndpointFields,
     "MIDI Devices 1.0, 6.2.1, table 6-6; 6.2.3, table 6-8"},
    {"midi.endpoint_general", "MIDI Streaming: Endpoint, General",
     "type=25 subtype=01 class=01 subclass=03", 4, "4+bNumEmbMIDIJack", kEndpointGeneralFields,
     "MIDI Devices 1.0, 6.2.2, table 6-7"},
    {"midi2.endpoint_general", "MIDI Streaming 2.0: Endpoint, General 2.0",
     "type=25 subtype=02 class=01 subclass=03", 4, "4+bNumGrpTrmBlock", kMidi2EndpointGeneralFields,
     "MIDI Devices 2.0, 5.3.2, table 5-4"},
    {"midi2.group_terminal_block_header", "MIDI Streaming 2.0: Group Terminal Block Header",
     "context=midi2_gtb type=26 subtype=01 class=01 subclass=03", 5, "5",
     kMidi2GroupTerminalBlockHeaderFields, "MIDI Devices 2.0, 5.4.1, table 5-5"},
    {"midi2.group_terminal_block", "MIDI Streaming 2.0: Group Terminal Block",
     "context=midi2_gtb type=26 subtype=02 class=01 subclass=03", 13, "13",
     kMidi2GroupTerminalBlockFields, "MIDI Devices 2.0, 5.4.2.1, table 5-6"},
};

constexpr auto kCompiled = CompileAll<kLayouts>();

}  // namespace

std::span<Compiled const> MidiTable() noexcept {
  return kCompiled;
}

}  // namespace usb_fields::detail
