// The label of a descriptor, written in place: what CUsbHelper::GenerateDescriptorLabel returns as
// a string. Not installed.
#pragma once

#include <cstddef>

#include <usb_support/descriptors/records.h>
#include <usb_support/text/text_writer.h>

namespace usb_support {

/// The longest label.
inline constexpr std::size_t kMostLabelCharacters = 128;

/// Writes the label and returns the position after it. The caller guarantees the record (see
/// GenerateDescriptorLabel); the interface may be null.
TextWriter WriteDescriptorLabel(TextWriter out, TQ_USB_COMMON_DESCRIPTOR const& descriptor,
                                TQ_USB_INTERFACE_DESCRIPTOR const* currentInterface) noexcept;

}  // namespace usb_support
