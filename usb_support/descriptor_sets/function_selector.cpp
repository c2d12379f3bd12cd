#include <usb_support/descriptor_sets/function_selector.h>

#include <cstdint>

#include <usb_support/descriptors/finders.h>
#include <usb_support/descriptors/first_match.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/helper/formatting.h>

namespace {

using usb_support::FirstMatch;
using usb_support::HasType;
using usb_support::IsFirstSetting;
using usb_support::ReadRecord;

bool IsAssociation(CDescriptorRangeIterator const& it) {
  return HasType(it, usb_support::kInterfaceAssociationType);
}

// Number of the interface that begins the function behind the head's.
std::uint8_t NextFirstInterface(CDescriptorRangeIterator const& head) {
  if (HasType(head, usb_support::kInterfaceType)) {
    return static_cast<std::uint8_t>(
        ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(head).bInterfaceNumber + 1);
  }
  if (IsAssociation(head)) {
    auto const association = ReadRecord<TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR>(head);
    return static_cast<std::uint8_t>(association.bFirstInterface + association.bInterfaceCount);
  }
  usb_support::Raise(TEST_STATUS_INTERNAL_ERROR,
                     "Descriptor has type 0x%02X: not valid for USB Function.",
                     ReadRecord<TQ_USB_COMMON_DESCRIPTOR>(head).bDescriptorType);
}

}  // namespace

std::pair<bool, CDescriptorRangeIterator> start_function::operator()(
    CDescriptorRangeIterator first, CDescriptorRangeIterator last) const {
  auto const found = FirstMatch(first, last, [](CDescriptorRangeIterator const& it) {
    return IsAssociation(it) || IsFirstSetting(it);
  });
  if (found.second != last) {
    head_->descriptor = found.second;
  }
  return found;
}

std::pair<bool, CDescriptorRangeIterator> end_function::operator()(
    CDescriptorRangeIterator first, CDescriptorRangeIterator last) const {
  return FirstMatch(first, last, [this](CDescriptorRangeIterator const& it) {
    return IsAssociation(it) ||
           (IsFirstSetting(it) && ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(it).bInterfaceNumber ==
                                      NextFirstInterface(head_->descriptor));
  });
}

function_selector::function_selector(function_head* head)
    : CRangeSelector(start_function(head), end_function(head)) {
}

function_selector::~function_selector() = default;
