#include <usb_support/descriptor_sets/function_selector.h>

#include <usb_support/descriptor_sets/function_cut.h>
#include <usb_support/descriptors/finders.h>
#include <usb_support/descriptors/first_match.h>

using usb_support::FirstMatch;
using usb_support::InterfaceNumber;
using usb_support::IsAssociation;
using usb_support::IsFirstSetting;
using usb_support::NextFirstInterface;

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
           (IsFirstSetting(it) && InterfaceNumber(it) == NextFirstInterface(head_->descriptor));
  });
}

function_selector::function_selector(function_head* head)
    : CRangeSelector(start_function(head), end_function(head)) {
}

function_selector::~function_selector() = default;
