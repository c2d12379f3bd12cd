// An input and its devices as the views take them, built once.
//
// What a device answered when it was asked for a device, device qualifier, configuration,
// other-speed configuration or BOS descriptor is a part; so are bytes that belong to no known
// request. The bytes are the input's, which must outlive what is made of it.
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
  std::string name;  ///< fit to be shown
  std::string form;  ///< what it was recognised as (usb_devices/input.h); empty for the fake device
  std::vector<usb_devices::Device> devices;  ///< at least one
};

/// What a configuration or BOS announces in wTotalLength, and how many bytes of it there are.
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
  CDescriptorRange valid;  ///< the set up to where its chain of lengths breaks
  CDescriptorRange after;  ///< what follows the set

  bool IsConfiguration() const noexcept {
    return type == kConfigurationType || type == kOtherSpeedConfigurationType;
  }
  bool IsBos() const noexcept { return type == kBosType; }

  /// "configuration 1" by its bConfigurationValue, "other-speed configuration 1" or "BOS".
  std::string Name() const;
};

/// A wTotalLength that is not the length of its configuration or BOS: the part is shorter, or goes
/// on with descriptors that only a configuration or a BOS has. Nothing for any other part.
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
  /// All bytes one after the other, where nothing else is known of the devices and a range can span
  /// them.
  std::optional<usb_devices::Bytes> run{};
  std::vector<ShownDevice> devices{};
};

ShownInput Show(Input const& input);

/// The name by which a device of an input can be read: "trace.pcapng#1.7". One without a
/// name of its own is "mouse.bin#2" when there are several.
std::string NameOf(Input const& input, std::size_t device);

/// True for an answer that is a part.
bool IsPart(usb_devices::Answer const& answer) noexcept;

/// True when the answer to a request is descriptors, one after the other by their lengths: not a
/// HID report descriptor, and not an answer to a vendor's request.
bool IsChain(usb_devices::Request const& request) noexcept;

/// The texts of the strings by index, in the first language that the device has each of them in.
std::map<std::uint8_t, std::string> StringsOf(usb_devices::Device const& device);

}  // namespace usb_support::usbdesc
