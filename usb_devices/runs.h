// Splits runs of descriptors into answers to requests.
//
// A run consists of parts. A device, device qualifier, configuration, other-speed configuration or
// BOS descriptor begins a part, and the next of them ends it; bytes before the first are a part of
// type 0. The chain of bLength leads from one to the next. Where it breaks, the wTotalLength of a
// configuration or BOS whose bytes are complete shows where the next descriptor begins, so that one
// bad descriptor does not hide the configurations after it; a part without such a wTotalLength
// continues to the end of the run.
//
// A device descriptor begins a new device, so a run may hold several.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

#include <usb_devices/bytes.h>
#include <usb_devices/device.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// The longest run that is read from a file.
inline constexpr std::size_t kMaxRunSize = std::size_t{1} << 20;

/// A part of a run: one of the descriptors above with all that follows it.
struct Part {
  std::uint8_t type;   ///< bDescriptorType of its first descriptor, or 0
  std::size_t offset;  ///< bytes of the run before it
  ByteSpan bytes;      ///< of the run; never empty
};

/// The parts of a run, in order; together they are the whole run.
USB_DEVICES_API std::vector<Part> SplitRun(ByteSpan run);

/// Adds the parts of a run that belongs to one device. The first of a type is the answer for index
/// 0, the next for index 1, after those that the device has. A part without a type or beyond index
/// 254 (255 is not an index) has no request. Throws ReadError for a part of more than
/// kMaxAnswerSize bytes.
USB_DEVICES_API void AddRun(DeviceBuilder& device, ByteSpan run, Source const& source);

/// The devices of a run; none when it is empty. Throws ReadError as AddRun does.
USB_DEVICES_API std::vector<Device> DevicesOf(ByteSpan run, Source const& source);

/// The answers of a device as a run from which DevicesOf makes the same device: one after the
/// other, in their order. Nothing when a run cannot represent the device: with a speed, strings,
/// HID reports or requests that were not answered, or bytes that would be split differently.
USB_DEVICES_API std::optional<Bytes> RunOf(Device const& device);

}  // namespace usb_devices
