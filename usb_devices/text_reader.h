// Reads descriptors from a text, in all common forms.
//
//   12 01 00 02                            hexadecimal bytes, two digits each; also od -An -tx1
//   12010002                               a stream of hexadecimal digits; also xxd -p
//   12:01:00:02                            with colons
//   0x12 0x01                              with prefixes
//   "\x12\x01@"                            escapes, in quotes with other characters between them
//   uint8_t const device[] = {0x12, 1};    C arrays, also those of xxd -i and of Wireshark; the
//                                          declaration and the braces may be missing
//   device = [0x12, 1]                     Python lists
//   00000000: 1201 0002  ....              xxd
//   00000000  12 01 00 02  |....|          hexdump -C
//   000000 12 01 00 02                     od -Ax -tx1, also od -tx1 with its octal offsets
//   0000   12 01 00 02   ....              Wireshark, with and without the characters
//      0h:  12 01 00 02 : Device           a listing of this project
//   /*    0h */  0x12, 0x01, // Device     its source-code form
//   {"usbdesc": 1, ...}                    its JSON, which json.h reads
//   Bus 001 Device 002: ID 046d:0825       a listing of lsusb -v, which lsusb_reader.h reads
//
// A comment runs from "#" or "//" to the end of the line or is between "/*" and "*/", in every form
// except the dumps of other programs. Lines end in "\n", "\r\n" or "\r"; a byte order mark is
// allowed. Offsets and the characters beside a dump are checked; an offset of 0 begins another run.
//
// In a listing and in the source-code form these comments describe the lines after them:
//
//   // device 1.7, speed high:
//   // request 80 06 00 01 00 00, device:
//   // request 80 06 00 0F 00 00, BOS: stalled
//
// The six bytes are the SETUP packet without its length. Any other comment that ends in ":" is the
// title of a run. The line that ends in "(incomplete)" is the part of a run that forms no
// descriptor: hexadecimal bytes in both forms, and the end of the run.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <usb_devices/device.h>
#include <usb_devices/export.h>
#include <usb_devices/text_forms.h>

namespace usb_devices {

/// The contents of a text.
struct TextReading {
  TextForm form = TextForm::kHexadecimal;
  std::vector<TextRun> runs;
};

/// True when there is a byte and every byte is printable ASCII, white space or part of valid
/// UTF-8; a character that is cut off at the end counts as whole.
USB_DEVICES_API bool LooksLikeText(std::string_view content);

/// The form that a text seems to have, by its beginning.
USB_DEVICES_API TextForm RecogniseText(std::string_view text);

/// Reads a text in the form that it seems to have, or in the given one; messages call it `name`. A
/// text that contains only comments has no runs. Not for JSON and lsusb, which have readers of
/// their own. Throws TextError, or ReadError for a run that is too long.
USB_DEVICES_API TextReading ReadText(std::string_view text, std::string const& name = {},
                                     std::optional<TextForm> form = std::nullopt);

/// The devices of the runs of a text. A run with a request belongs to the device that a line
/// before it began; a run without one holds further devices (runs.h), and the arrays of one
/// text are one run after another. Throws ReadError.
USB_DEVICES_API std::vector<Device> DevicesOf(TextReading const& reading, std::string const& name);

}  // namespace usb_devices
