// An input and its devices in the form that the views use, built once.
//
// A part is a device's answer to a request for a device, device qualifier, configuration,
// other-speed configuration or BOS descriptor; so are bytes that belong to no known request. The
// input owns the bytes and must outlive everything made from it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <vector>

#include <usb_devices/device.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/records.h>

namespace usb_support::usbdesc {

/// What was read from one input.
struct Input {
  std::string name;  ///< safe to show
  std::string form;  ///< the recognised form (usb_devices/input.h); empty for the fake device
  std::vector<usb_devices::Device> devices;  ///< at least one
};

/// The wTotalLength of a configuration or BOS, and the number of bytes that exist.
struct WrongTotal {
  std::size_t announced;
  std::size_t found;
};

/// One of the answers above.
struct Part {
  std::uint8_t type;       ///< bDescriptorType of its first descriptor, or 0
  std::size_t offset;      ///< where it begins in the input
  CDescriptorRange bytes;  ///< the whole part; never empty
  /// Its first descriptor; of a configuration or BOS also what wTotalLength covers. Empty for type
  /// 0.
  CDescriptorRange set;
  CDescriptorRange valid;  ///< the set up to the break in its chain of lengths
  CDescriptorRange after;  ///< what follows the set

  bool IsConfiguration() const noexcept {
    return type == kConfigurationType || type == kOtherSpeedConfigurationType;
  }
  bool IsBos() const noexcept { return type == kBosType; }

  /// "configuration 1" by its bConfigurationValue, "other-speed configuration 1" or "BOS".
  std::string Name() const;
};

/// A wTotalLength that is not the length of its configuration or BOS: the part is shorter, or
/// continues with descriptors that only a configuration or a BOS has. Nothing for any other part.
std::optional<WrongTotal> FindWrongTotal(Part const& part);

/// One device of an input.
struct ShownDevice {
  std::string name;  ///< of its input, and its own when the input has several
  usb_devices::Device const* source = nullptr;
  std::vector<Part> parts{};
  /// The device descriptor; nothing when there is none, or a short one.
  std::optional<TQ_USB_DEVICE_DESCRIPTOR> descriptor{};
};

/// An input with its devices.
struct ShownInput {
  Input const& input;
  /// All bytes one after the other, if nothing else is known about the devices and a range can span
  /// them.
  std::optional<usb_devices::Bytes> run{};
  std::vector<ShownDevice> devices{};
};

ShownInput Show(Input const& input);

/// The name by which a device of an input can be read: "trace.pcapng#1.7". A device without
/// a name is "mouse.bin#2" when there are several.
std::string NameOf(Input const& input, std::size_t device);

/// True for an answer that is a part.
bool IsPart(usb_devices::Answer const& answer) noexcept;

/// True when the answer to a request is descriptors, one after the other by their lengths: not a
/// HID report descriptor, and not an answer to a vendor's request.
bool IsChain(usb_devices::Request const& request) noexcept;

/// The texts of the strings by index, in the first language that the device has each of them in.
std::map<std::uint8_t, std::string> StringsOf(usb_devices::Device const& device);

}  // namespace usb_support::usbdesc
