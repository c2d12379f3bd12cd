// Sums up a run of descriptors in one line.
#pragma once

#include <string>

#include <usb_support/descriptors/descriptor_range.h>

namespace usb_support::usbdesc {

/// "// 4 descriptors, 1 configuration, 1 interface, 43 bytes, valid", or in place of "valid" why
/// and where the run stops to be valid. Counts what is valid; an interface counts once, whatever
/// its alternate settings.
std::string Summarise(CDescriptorRange const& run);

}  // namespace usb_support::usbdesc
