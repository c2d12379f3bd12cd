// The style and the script of the pages. The build makes the source from page.css and page.js.
#pragma once

#include <string_view>

namespace usb_support::usbdesc {

std::string_view HtmlStyle() noexcept;
std::string_view HtmlScript() noexcept;

}  // namespace usb_support::usbdesc
