// Reads any input that a user names: a raw file, a text in any of its forms, a folder, a traffic
// capture, a device that is plugged in. The form is recognised by the content, and returned.
#pragma once

#include <cstdio>
#include <string>
#include <string_view>
#include <vector>

#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// The contents of an input.
struct InputReading {
  std::string form;                ///< "raw", "folder", "traffic", "live" or a form of text ("xxd")
  std::vector<Device> devices;     ///< none when the input contains only comments
  std::vector<std::string> notes;  ///< what is missing, for people
};

/// The names that a form can have: "raw", "text" (its form is recognised), "folder",
/// "traffic", "live", and those of text_forms.h.
USB_DEVICES_API std::vector<std::string> InputForms();

/// Reads a file, a folder, or a device that is plugged in: "usb:1-7", "usb:046d:0825". "FILE#NAME"
/// is the device of that name in a file, as in "trace.pcapng#1.7", or the one of that number,
/// counted from 1, when no device has the name; unless there is a file of the whole name. With an
/// empty form the content decides. Reads at most 1 MiB of raw bytes, 16 MiB of text and 1 GiB of
/// traffic.
///
/// Requires: `form` is empty or one of InputForms().
/// Throws ReadError.
USB_DEVICES_API InputReading ReadInput(std::string const& name, std::string_view form = {});

/// Reads the rest of a stream: raw bytes, text, or up to 64 MiB of traffic. Throws ReadError, which
/// calls the stream `name`.
USB_DEVICES_API InputReading ReadInput(std::FILE* stream, std::string const& name,
                                       std::string_view form = {});

}  // namespace usb_devices
