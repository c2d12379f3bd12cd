// The beginning of text files. Not installed.
#pragma once

#include <string_view>

namespace usb_support {

/// The byte order mark in UTF-8 (U+FEFF), which may precede a text and is not part of it.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace usb_support
