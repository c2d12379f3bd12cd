// Lists the devices of an input: the name by which each can be read, and what is known about it.
#pragma once

#include <string>

#include <tools/usbdesc/device.h>

namespace usb_support::usbdesc {

/// Logs two lines for each device:
///
///   trace.pcapng#1.7  046d:0825  high speed  Some Maker, Some Webcam
///     device, configuration 0, BOS (stalled), 4 strings
void LogList(Input const& input);

/// The input as a JSON object (docs/usbdesc-list.schema.json), without a line end.
std::string ListJson(Input const& input);

}  // namespace usb_support::usbdesc
