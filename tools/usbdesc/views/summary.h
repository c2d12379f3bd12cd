// Sums up an input in one line.
#pragma once

#include <cstddef>
#include <string>

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

/// What became of many inputs.
struct InputCounts {
  std::size_t good = 0;
  std::size_t broken = 0;   ///< what they hold breaks a rule, or their lengths are bad
  std::size_t invalid = 0;  ///< could not be read, or had nothing to judge

  std::size_t All() const noexcept { return good + broken + invalid; }

  /// "626 inputs: 605 good, 20 with failures, 1 not valid".
  std::string Text() const;
};

}  // namespace usb_support::usbdesc
