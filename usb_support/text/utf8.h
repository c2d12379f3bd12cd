// What files of text begin with. Not installed.
#pragma once

#include <string_view>

namespace usb_support {

/// The byte order mark in UTF-8 (U+FEFF), which a text may begin with and which is no part of it.
inline constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";

}  // namespace usb_support
