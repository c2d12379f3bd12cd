// The tree as JSON, in the shape of docs/usbdesc-tree.schema.json: what each descriptor is, and what
// is under it.
#pragma once

#include <string>
#include <string_view>

#include <tools/usbdesc/outline.h>

namespace usb_support::usbdesc {

/// A device as a JSON object on one line, without a line end.
std::string TreeJson(std::string_view name, Outline const& outline);

}  // namespace usb_support::usbdesc
