// Sums up an input in one line.
#pragma once

#include <tools/usbdesc/device.h>
#include <tools/usbdesc/log_text.h>

namespace usb_support::usbdesc {

/// What is to be reported of an input as a whole.
struct RunSummary {
  /// "// hex: 4 descriptors, 1 configuration, 1 interface, 43 bytes, lengths good", after what the
  /// input was recognised as. In place of "lengths good" it reports why and where the chain of
  /// lengths breaks ("lengths bad: ..."), and after that which wTotalLength is not the length of its
  /// configuration or BOS. Whole descriptors up to the break are counted; an interface counts once,
  /// whatever its alternate settings. Several devices, other answers than descriptors, and requests
  /// without an answer are counted where there are any.
  Line line;

  /// There are bytes, every chain of lengths is whole, and every wTotalLength is right.
  bool isGood;
};

RunSummary Summarise(ShownInput const& input);

}  // namespace usb_support::usbdesc
