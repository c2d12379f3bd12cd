// Reads the dumps of other programs. Internal to the library.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <usb_devices/text_scanner.h>

namespace usb_devices::detail {

/// The dumps of other programs, with an offset in each line.
std::vector<TextRun> ReadDump(NamedText const& text, TextForm form);

/// The form of the dump that a line begins; nothing when it begins none.
std::optional<TextForm> RecogniseDump(std::string_view line);

}  // namespace usb_devices::detail
