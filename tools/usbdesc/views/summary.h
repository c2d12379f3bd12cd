// Sums up an input in one line.
#pragma once

#include <cstddef>
#include <string>

#include <tools/usbdesc/device.h>
#include <tools/usbdesc/log_text.h>

namespace usb_support::usbdesc {

/// The report about an input as a whole.
struct RunSummary {
  /// "// hex: 4 descriptors, 1 configuration, 1 interface, 43 bytes, lengths good", after the
  /// recognised form of the input. Instead of "lengths good" it reports why and where the chain of
  /// lengths breaks ("lengths bad: ..."), and then which wTotalLength is not the length of its
  /// configuration or BOS. Whole descriptors up to the break are counted; an interface counts once,
  /// with all its alternate settings. Several devices, answers other than descriptors, and requests
  /// without an answer are counted if there are any.
  Line line;

  /// True when there are bytes, every chain of lengths is whole, and every wTotalLength is right.
  bool isGood;
};

RunSummary Summarise(ShownInput const& input);

/// The totals of many inputs.
struct InputCounts {
  std::size_t good = 0;
  std::size_t broken = 0;   ///< a device in them breaks a rule, or their lengths are bad
  std::size_t invalid = 0;  ///< could not be read, or contained nothing to judge

  std::size_t All() const noexcept { return good + broken + invalid; }

  /// "626 inputs: 605 good, 20 with failures, 1 not valid".
  std::string Text() const;
};

}  // namespace usb_support::usbdesc
