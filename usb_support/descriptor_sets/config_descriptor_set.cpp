#include <usb_support/descriptor_sets/config_descriptor_set.h>

#include <utility>

#include <usb_support/descriptor_sets/function_selector.h>
#include <usb_support/descriptors/finders.h>
#include <usb_support/descriptors/first_match.h>
#include <usb_support/descriptors/read_record.h>

namespace {

using Found = std::pair<bool, CDescriptorRangeIterator>;

Found StartOfInterface(CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
  return usb_support::FirstMatch(first, last, usb_support::IsFirstSetting);
}

Found EndOfInterface(CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
  return usb_support::FirstMatch(first, last, [](CDescriptorRangeIterator const& it) {
    return usb_support::IsFirstSetting(it) ||
           usb_support::HasType(it, usb_support::kInterfaceAssociationType);
  });
}

}  // namespace

CConfigDescriptorSet::CConfigDescriptorSet(unsigned char configIndex) : configIndex_(configIndex) {
}

CConfigDescriptorSet::CConfigDescriptorSet(CConfigDescriptorSet const&) = default;
CConfigDescriptorSet& CConfigDescriptorSet::operator=(CConfigDescriptorSet const&) = default;
CConfigDescriptorSet::CConfigDescriptorSet(CConfigDescriptorSet&&) = default;
CConfigDescriptorSet& CConfigDescriptorSet::operator=(CConfigDescriptorSet&&) = default;
CConfigDescriptorSet::~CConfigDescriptorSet() = default;

CDescriptorRange::RangeVector CConfigDescriptorSet::GetInterfaceList() {
  return GetSubRanges(StartOfInterface, EndOfInterface);
}

CDescriptorRange::RangeVector CConfigDescriptorSet::GetFunctionList() {
  function_head head;
  return GetSubRanges(function_selector(&head));
}
