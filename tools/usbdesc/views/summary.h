// Sums up a run of descriptors in one line.
#pragma once

#include <vector>

#include <tools/usbdesc/device.h>
#include <tools/usbdesc/log_text.h>
#include <usb_support/descriptors/descriptor_range.h>

namespace usb_support::usbdesc {

/// What there is to say about a run as a whole.
struct RunSummary {
  /// "// 4 descriptors, 1 configuration, 1 interface, 43 bytes, lengths good". In place of "lengths
  /// good" it says why and where the chain of lengths breaks ("lengths bad: ..."), and after that
  /// which wTotalLength is not the length of its configuration or BOS. Whole descriptors up to the
  /// break are counted; an interface counts once, whatever its alternate settings.
  Line line;

  /// There are bytes, their chain of lengths is whole, and every wTotalLength is right.
  bool isGood;
};

/// `devices` are those of the run.
RunSummary Summarise(CDescriptorRange const& run, std::vector<Device> const& devices);

}  // namespace usb_support::usbdesc
