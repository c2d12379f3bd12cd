// The progress marker: one line on a terminal that shows the progress of the program.
#pragma once

#include <cstddef>
#include <cstdio>

namespace usb_support::usbdesc {

/// The smallest number of files with a marker.
inline constexpr std::size_t kManyFiles = 20;

/// Shows "usbdesc: 57 of 192" on a terminal, each time in place of the last. Nothing is written
/// when the stream is not a terminal or when there are few files. Code that writes to the same
/// terminal clears the marker first; the destructor clears it, too.
class Progress {
 public:
  /// Requires: the stream is open for writing and outlives the marker.
  Progress(std::FILE* stream, std::size_t count);
  Progress(Progress const&) = delete;
  Progress& operator=(Progress const&) = delete;
  ~Progress();

  /// Shows the number of the next file.
  /// Requires: called once for each file.
  void Next();

  /// Removes the marker from the terminal; no effect when there is none.
  void Clear();

 private:
  std::FILE* stream_;
  std::size_t count_;
  bool isShown_;
  std::size_t number_ = 0;
  std::size_t width_ = 0;
};

}  // namespace usb_support::usbdesc
