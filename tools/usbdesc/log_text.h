// What the program writes to the suite's log.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include <tools/usbdesc/captured_sets.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/suite_interfaces/test_status.h>

namespace usb_support::usbdesc {

/// "1 byte", "2 bytes".
std::string Counted(std::size_t count, char const* name);

/// "0x" and two, or with `digits` 4 four, hexadecimal digits.
std::string HexText(unsigned value, int digits = 2);

/// "offset 1Bh", counted from the start of the file.
std::string OffsetText(std::size_t offset);

/// "offset 1Bh (9h in the configuration)": a place in the file, and in a set of that name that
/// starts at `start`; without the brackets when both are the same.
std::string OffsetText(std::size_t start, std::size_t inSet, std::string_view set);

/// Writes a text in the look of plain lines, as it is, at the verbosity of lines of `status`.
void LogPlain(std::string_view text, TEST_STATUS status = TEST_STATUS_PLAIN);

/// Writes "// title", bold, after an empty line. A title is where a name from outside belongs: no
/// part of it is taken for a part of a dump when the output is coloured.
void LogHeading(std::string_view title);

/// Writes "// title:" in the same way.
void LogTitle(std::string_view title);

/// LogTitle, and the dump of a range: a listing, or the body of a C byte array, in which the bytes
/// that form no whole descriptor are numbers of the array, too.
void LogDump(CDescriptorRange const& run, std::string_view title, bool asCode);

/// "configuration 1" by its bConfigurationValue, or "other-speed configuration 1".
std::string NameOf(CapturedConfiguration const& configuration);

}  // namespace usb_support::usbdesc
