#include <usb_support/descriptors/descriptor_range_iterator.h>

#include <usb_support/text/formatting.h>

static_assert(sizeof(CDescriptorRangeIterator) == 2 * sizeof(std::uint64_t));

void CDescriptorRangeIterator::RaiseOutOfRange() {
  usb_support::Raise(TEST_STATUS_INTERNAL_ERROR,
                     "Invalid Descriptor Range Iterator: out of range.");
}

CDescriptorRangeIterator CDescriptorRangeIterator::StepFromBadLength(CDescriptorRangeIterator it) {
  if (it->bLength == 0) {
    usb_support::Raise(TEST_STATUS_INTERNAL_ERROR,
                       "Invalid descriptor:  bLength must be greater than 0.");
  }
  return {Advanced(it.current_, it.remaining_), 0};
}
