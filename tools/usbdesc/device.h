// The devices of an input, built once: every view is a function of one of them.
//
// A run of captured descriptors falls into parts. A device, device qualifier, configuration,
// other-speed configuration or BOS descriptor begins a part, and the next of them ends it; whatever
// is before the first is a part of type 0. The chain of bLength leads from one to the next. Where
// it breaks, wTotalLength of a configuration or BOS whose bytes are all there tells where the next
// descriptor begins, so that one bad descriptor does not hide the configurations after it; a part
// without such a wTotalLength goes on to the end of the run.
//
// A device descriptor begins a new device, so a run may hold several. The bytes are the run's,
// which must outlive its devices.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <usb_fields/context.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/records.h>

namespace usb_support::usbdesc {

/// What a configuration or BOS announces in wTotalLength, and how many bytes of it there are.
struct WrongTotal {
  std::size_t announced;
  std::size_t found;
};

/// A piece of a run: one of the descriptors above with all that follows it.
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

/// The parts of a run, in order; together they are the whole run.
std::vector<Part> SplitRun(CDescriptorRange const& run);

/// One device of an input.
struct Device {
  std::string name;  ///< of its input, and its number when the input has several
  std::vector<Part> parts{};
  /// The device descriptor; nothing when there is none, or a short one.
  std::optional<TQ_USB_DEVICE_DESCRIPTOR> descriptor{};
};

/// The devices of a run; always at least one, which may have no parts.
std::vector<Device> DevicesOf(CDescriptorRange const& run, std::string const& name);

/// The speed at which the device was asked, as far as its descriptors tell.
usb_fields::Speed SpeedOf(Device const& device) noexcept;

}  // namespace usb_support::usbdesc
