// The tree as JSON (docs/usbdesc-tree.schema.json): each descriptor, and the descriptors below it.
#pragma once

#include <string>
#include <string_view>

#include <tools/usbdesc/outline.h>

namespace usb_support::usbdesc {

/// A device as a JSON object on one line, without a line end.
std::string TreeJson(std::string_view name, Outline const& outline);

}  // namespace usb_support::usbdesc
