// The search of every finder of the library: step by step to the first descriptor that matches.
#pragma once

#include <utility>

#include <usb_support/descriptors/descriptor_range_iterator.h>

namespace usb_support {

/// The first position in [first, last) for which `matches(position)` is true, `last` when there is
/// none; like every finder of the library it always returns true. Throws what `matches` throws, and
/// TQRunTimeException when the walk reaches a zero bLength.
template <typename Matches>
std::pair<bool, CDescriptorRangeIterator> FirstMatch(CDescriptorRangeIterator first,
                                                     CDescriptorRangeIterator last,
                                                     Matches const& matches) {
  while (first != last && !matches(first)) {
    ++first;
  }
  return {true, first};
}

}  // namespace usb_support
