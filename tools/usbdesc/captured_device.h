// The device under test of this program: descriptors that were captured earlier, in place of a
// device that answers.
//
// A run of captured descriptors falls into parts. A device, device qualifier, configuration,
// other-speed configuration or BOS descriptor begins a part, and the next of them ends it; whatever
// stands before the first is a part of type 0. The chain of bLength leads from one to the next.
// Where it breaks, wTotalLength of a configuration or BOS whose bytes are all there says where the
// next descriptor begins, so that one bad descriptor does not hide the configurations behind it; a
// part without such a wTotalLength goes on to the end of the run.
//
// A device descriptor begins a new device, so a run may hold several.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

#include <tools/usbdesc/input.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/helper/test_objects.h>

namespace usb_support::usbdesc {

/// A piece of a run: one of the descriptors above with all that follows it.
struct Part {
  std::uint8_t type;       ///< bDescriptorType of its first descriptor, or 0
  std::uint16_t offset;    ///< bytes of the run before it
  CDescriptorRange bytes;  ///< points into the run; never empty
};

/// What a configuration or BOS announces in wTotalLength, and how many bytes of it there are.
struct WrongTotal {
  std::size_t announced;
  std::size_t found;
};

/// A wTotalLength that is not the length of its configuration or BOS: the part is shorter, or goes
/// on with descriptors that only a configuration or a BOS has. Nothing for any other part.
std::optional<WrongTotal> FindWrongTotal(Part const& part);

/// True for a descriptor with a bLength that does not reach past the end of the run.
bool IsWhole(CDescriptorRangeIterator const& it) noexcept;

/// The parts of a run, in order; together they are the whole run.
std::vector<Part> SplitRun(CDescriptorRange const& run);

/// Answers for descriptors from the parts that it was captured in. The run must outlive it.
class CapturedDevice final : public CDevice {
 public:
  explicit CapturedDevice(std::vector<Part> parts);

  std::vector<Part> const& Parts() const noexcept { return parts_; }

  /// How many descriptors of a type GET_DESCRIPTOR can ask for: at most 255.
  unsigned Count(std::uint8_t type) const noexcept;

  /// The part of descriptor `index` of a type; null when there is none.
  Part const* Find(std::uint8_t type, std::uint8_t index) const noexcept;

  /// What the device sends when it is asked for descriptor `index` of a type: at most `length`
  /// bytes, with everything that it has behind the descriptor. Empty when there is none; a device
  /// stalls then.
  Bytes GetDescriptor(std::uint8_t type, std::uint8_t index, std::uint16_t length) const;

  /// How many parts the device has looked at since it was made. A run may have 32,767 parts, so no
  /// question may look at them all; a test holds this.
  std::size_t Visits() const noexcept { return visits_; }

 private:
  std::vector<Part> parts_;
  std::map<std::uint8_t, std::vector<std::size_t>> placesByType_;
  mutable std::size_t visits_ = 0;
};

/// The devices of a run; always at least one, which may have no parts.
std::vector<CapturedDevice> DevicesOf(CDescriptorRange const& run);

}  // namespace usb_support::usbdesc
