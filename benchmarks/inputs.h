// The runs of descriptors that the benchmarks work on. Every run is a valid chain: where a sample
// or a capture is deliberately damaged, its valid part is taken.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include <usb_support/descriptors/descriptor_range.h>

namespace usb_support::benchmarks {

/// A run in the form that the hand-written loops use.
struct BareRun {
  unsigned char const* bytes;
  std::size_t length;
};

/// Runs that one row of the table works on, one after the other.
struct Input {
  std::string name;
  std::vector<std::vector<unsigned char>> runs;

  std::vector<CDescriptorRange> Ranges() const;
  std::vector<BareRun> BareRuns() const;

  /// Of all runs together.
  std::size_t Bytes() const;
};

/// A configuration of exactly `size` bytes, 25 to 65,535, with descriptors of the lengths that real
/// devices have: keyboards, serial ports, cameras and disks, one after the other.
Input GeneratedConfiguration(std::size_t size);

/// The samples in examples/captures.
Input Samples();

/// The captures in the folder that USB_SUPPORT_CAPTURES_DIR names; without runs when it is not set.
/// Throws std::runtime_error when it names no folder with captures.
Input Captures();

/// The inputs of the table: generated configurations, the samples, and the captures if there are
/// any.
std::vector<Input> const& TableInputs();

}  // namespace usb_support::benchmarks
