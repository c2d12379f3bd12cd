// Text broken into lines.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace usb_support::usbdesc {

/// The columns of a terminal of unknown width.
inline constexpr std::size_t kTerminalColumns = 80;

/// The words of a text in lines of at most `columns`, each with `indent` spaces before it and a line
/// end after it. A longer word is alone on its line.
std::string Wrapped(std::string_view text, std::size_t indent,
                    std::size_t columns = kTerminalColumns);

}  // namespace usb_support::usbdesc
