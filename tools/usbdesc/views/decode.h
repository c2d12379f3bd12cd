// Shows what every field of the descriptors means: as a listing of at most 100 columns, or as JSON
// in the shape of docs/usbdesc-decode.schema.json.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include <tools/usbdesc/log_text.h>
#include <usb_fields/context.h>
#include <usb_fields/usb_ids.h>

namespace usb_support::usbdesc {

/// What a device answered to one request. The bytes are the caller's.
struct DecodedRun {
  std::uint8_t type = 0;                    ///< of its first descriptor; 0: not known
  std::optional<std::uint8_t> index{};      ///< of the request, where it is known
  std::optional<std::uint16_t> language{};  ///< of the request for a string
  usb_fields::Request request = usb_fields::Request::kDescriptor;
  std::string file;        ///< where the bytes are from
  std::size_t offset = 0;  ///< how many bytes are before them there
  std::span<std::uint8_t const> bytes{};
};

struct DecodedDevice {
  usb_fields::Speed speed = usb_fields::Speed::kUnknown;
  std::vector<DecodedRun> runs{};
};

struct DecodedInput {
  std::string name;
  std::vector<DecodedDevice> devices{};
};

/// The listing of a device: a line for each descriptor, its fields below it, and what is not
/// described at the end. `names` are those of vendors and products.
Line DecodedText(DecodedDevice const& device, usb_fields::UsbIds const& names);

/// An input as a JSON object on one line, without a line end.
std::string DecodedJson(DecodedInput const& input, usb_fields::UsbIds const& names);

}  // namespace usb_support::usbdesc
