// File names of the command line as paths.
#pragma once

#include <filesystem>
#include <string_view>

namespace usb_support::usbdesc {

/// The path that a name stands for: UTF-8 on Windows, the system's own bytes elsewhere.
std::filesystem::path PathOf(std::string_view name);

}  // namespace usb_support::usbdesc
