// Shows the meaning of every field of the descriptors: as a listing of at most 100 columns, or as
// JSON (docs/usbdesc-decode.schema.json).
#pragma once

#include <string>

#include <tools/usbdesc/decoded.h>
#include <tools/usbdesc/log_text.h>
#include <usb_fields/usb_ids.h>

namespace usb_support::usbdesc {

/// The listing of a device: a line for each descriptor, its fields below it, and bytes that are not
/// described at the end. `names` are those of vendors and products. `columns` is the number of
/// characters in a line, limited to 72 to 100; 0: 100.
Line DecodedText(DecodedDevice const& device, usb_fields::UsbIds const& names,
                 std::size_t columns = 0);

/// An input as a JSON object on one line, without a line end.
std::string DecodedJson(DecodedInput const& input, usb_fields::UsbIds const& names);

}  // namespace usb_support::usbdesc
