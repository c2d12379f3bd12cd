// Makes the lists of sub-ranges. Not installed.
//
// One pass finds the end of the valid part and cuts on the way.
#pragma once

#include <cstddef>
#include <vector>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/walk.h>

namespace usb_support {

/// The role of a descriptor in the sub-ranges of a list.
enum class CutPlace : unsigned char {
  kInside,  ///< belongs to the open sub-range, if there is one
  kStart,   ///< ends the open sub-range and starts the next one
  kEnd,     ///< ends the open sub-range, and is in none
};

class RangeLister {
 public:
  using RangeVector = CDescriptorRange::RangeVector;

  /// An empty list with the library's deleter.
  static RangeVector NewList() {
    return {new std::vector<CDescriptorRange>, CDescriptorRange::TheRangeVectDeleter};
  }

  /// Logs the line about an invalid range when the valid part ends before the range does.
  static void LogUnlessValid(CDescriptorRange const& range, std::size_t validLength) {
    if (validLength != range.Length()) [[unlikely]] {
      range.LogInvalid(static_cast<unsigned short>(validLength));
    }
  }

  /// The sub-ranges from every start up to the next start or end, or to the end of the valid part.
  /// Calls `placeOf` once for every valid descriptor, in order.
  template <typename PlaceOf>
  static RangeVector Split(CDescriptorRange const& range, PlaceOf placeOf) {
    RangeVector ranges = NewList();
    Descriptor start;
    std::size_t end = 0;
    auto const close = [&] {
      if (start) {
        ranges->emplace_back(start.At().operator->(),
                             static_cast<unsigned short>(end - start.Offset()));
      }
    };
    for (Descriptor d(range); d; d = d.Next()) {
      CutPlace const place = placeOf(d.At());
      if (place != CutPlace::kInside) {
        close();
        start = place == CutPlace::kStart ? d : Descriptor();
      }
      end += d.Length();
    }
    close();
    LogUnlessValid(range, end);
    return ranges;
  }
};

}  // namespace usb_support
