// The finder of descriptors of one type.
#pragma once

#include <utility>

#include <usb_support/descriptors/descriptor_range_iterator.h>
#include <usb_support/descriptors/first_match.h>
#include <usb_support/descriptors/read_record.h>

/// Finds the first descriptor whose bDescriptorType is the held type; (true, last) when there is
/// none. Throws TQRunTimeException when the walk reaches a zero bLength.
class DescriptorType {
 public:
  /// Finds descriptors with this bDescriptorType.
  explicit DescriptorType(unsigned char type) noexcept : type_(type) {}

  /// Searches [first, last), as a RangeFinder does.
  std::pair<bool, CDescriptorRangeIterator> operator()(CDescriptorRangeIterator first,
                                                       CDescriptorRangeIterator last) const {
    return usb_support::FirstMatch(first, last, [this](CDescriptorRangeIterator const& it) {
      return usb_support::HasType(it, type_);
    });
  }

 private:
  unsigned char type_;
};
