// Devices as JSON.
//
//   {"usbdesc": 1,
//    "inputs": [{"name": "mouse.bin",
//                "devices": [{"name": "", "speed": "low",
//                             "runs": [{"type": 1, "index": 0, "request": "800600010000",
//                                       "source": {"file": "mouse.bin", "offset": 0},
//                                       "outcome": "answered", "hex": "12 01 ..."}]}]}]}
//
// `request` is the SETUP packet without its length. A run without one has the request that `type`,
// `index` and `language` (of a string) or `interface` name; a run with neither is split as a raw
// file is (runs.h). `outcome` may be missing, which means "answered"; with another one there is a
// `note` instead of `hex`. Other members are ignored.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// The contents of an input.
struct Input {
  std::string name;
  std::vector<Device> devices;
};

/// The JSON text of inputs, with complete devices; bytes of a name that are not UTF-8 are escaped.
USB_DEVICES_API std::string WriteJson(std::vector<Input> const& inputs);

/// The inputs in a text, which messages call `name`. Throws TextError where the text is not JSON,
/// and ReadError with the member where its structure is wrong.
USB_DEVICES_API std::vector<Input> ReadJson(std::string_view text, std::string const& name = {});

}  // namespace usb_devices
