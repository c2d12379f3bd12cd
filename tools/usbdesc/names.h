// File names of the command line: as paths, and as text within a line.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>

namespace usb_support::usbdesc {

/// The path that a name stands for: UTF-8 on Windows, the system's own bytes elsewhere.
std::filesystem::path PathOf(std::string_view name);

/// The text with "?" for every control character and every byte that is not UTF-8, so that it stays
/// on its line whatever a name holds.
std::string OneLine(std::string_view text);

}  // namespace usb_support::usbdesc
