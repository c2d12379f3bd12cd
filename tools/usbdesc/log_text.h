// What the program writes to the suite's log.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <tools/usbdesc/captured_sets.h>
#include <usb_support/descriptors/descriptor_range.h>

namespace usb_support::usbdesc {

/// "1 byte", "2 bytes".
std::string Counted(std::size_t count, char const* name);

/// Two, or with `digits` 4 four, hexadecimal digits behind "0x".
std::string HexText(unsigned value, int digits = 2);

/// Writes a text in the look of plain lines, as it is.
void LogPlain(std::string_view text);

/// Writes "// title:", bold, behind an empty line.
void LogTitle(std::string_view title);

/// LogTitle, and the dump of a range: a listing, or the body of a C byte array.
void LogDump(CDescriptorRange const& run, std::string_view title, bool asCode);

/// "configuration 1" by its bConfigurationValue, or "other-speed configuration 1".
std::string NameOf(CapturedConfiguration const& configuration);

}  // namespace usb_support::usbdesc
