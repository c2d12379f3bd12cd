// A device with the meaning of its descriptors, built once: decode and the reports are functions of
// it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <usb_devices/device.h>
#include <usb_fields/fields.h>

namespace usb_support::usbdesc {

/// The answer of a device to one request, or the lack of one. The device owns the bytes.
struct DecodedRun {
  std::uint8_t type = 0;                           ///< of its first descriptor; 0: not known
  std::optional<std::uint8_t> index{};             ///< of the request, where it is known
  std::optional<std::uint16_t> language{};         ///< of the request for a string
  std::optional<std::uint16_t> interfaceNumber{};  ///< of a request to an interface
  usb_fields::Request request = usb_fields::Request::kDescriptor;
  std::string file;        ///< where the bytes are from
  std::size_t offset = 0;  ///< how many bytes are before them there
  std::span<std::uint8_t const> bytes{};
  usb_devices::Answer const* answer = nullptr;  ///< everything else that is known about it

  /// True for the report descriptor of a HID interface, which is items and not descriptors.
  bool IsHidReport() const noexcept;
};

struct DecodedDevice {
  std::string name;                ///< as the device has it, may be empty
  usb_fields::SpeedGuess speed{};  ///< without a reason when it is given
  std::vector<DecodedRun> runs{};
  std::map<std::uint8_t, std::string> strings{};  ///< texts by string index
};

struct DecodedInput {
  std::string name;
  std::vector<DecodedDevice> devices{};
};

/// The speed at which the device was read, as its source gives it or its descriptors show it.
usb_fields::SpeedGuess SpeedOf(usb_devices::Device const& device);

/// "low", "super-plus", "unknown": as in usb_devices.
std::string_view NameOf(usb_fields::Speed speed) noexcept;

/// "high", or with a reason "full, because bMaxPacketSize0 is less than 64".
std::string SpeedText(usb_fields::Speed speed, std::string_view reason);

/// The same, and for an unknown speed also the one as which the fields are read.
std::string SpeedText(usb_fields::SpeedGuess const& speed);

/// A device at a speed, or at the one of SpeedOf for kUnknown. `device` must outlive it.
DecodedDevice Decode(usb_devices::Device const& device,
                     usb_fields::Speed speed = usb_fields::Speed::kUnknown);

/// Where and why the chain of lengths of a run ends: "complete", "zero length", "length of one
/// byte", "past the end".
struct ChainEnd {
  std::string_view reason;
  std::size_t offset;
  std::size_t left;
};

/// Passes every descriptor of a run to `visit(offset, bytes, context)`, with the bytes from there
/// to the end of the run, up to the end of the chain of lengths.
template <typename Visit>
ChainEnd ForEachDescriptor(DecodedRun const& run, usb_fields::Speed speed, Visit const& visit) {
  usb_fields::Context context{.speed = speed, .request = run.request};
  context.index = run.index ? static_cast<std::int16_t>(*run.index) : std::int16_t{-1};
  std::span<std::uint8_t const> rest = run.bytes;
  while (!rest.empty()) {
    std::size_t const offset = run.bytes.size() - rest.size();
    std::size_t const length = usb_fields::DescriptorLength(rest, context);
    if (length > rest.size()) {
      visit(offset, rest, context);
      return {"past the end", offset, rest.size()};
    }
    if (length < 2) {
      return {length == 0 ? "zero length" : "length of one byte", offset, rest.size()};
    }
    visit(offset, rest, context);
    context.Follow(rest);
    rest = rest.subspan(length);
  }
  return {"complete", run.bytes.size(), 0};
}

}  // namespace usb_support::usbdesc
