#include <usb_support/descriptor_sets/config_descriptor_set.h>

#include <cstdint>
#include <optional>

#include <usb_support/descriptor_sets/function_cut.h>
#include <usb_support/descriptors/finders.h>
#include <usb_support/descriptors/range_lister.h>

using usb_support::CutPlace;
using usb_support::InterfaceNumber;
using usb_support::IsAssociation;
using usb_support::IsFirstSetting;
using usb_support::NextFirstInterface;
using usb_support::RangeLister;

CConfigDescriptorSet::CConfigDescriptorSet(unsigned char configIndex) : configIndex_(configIndex) {
}

CConfigDescriptorSet::CConfigDescriptorSet(CConfigDescriptorSet const&) = default;
CConfigDescriptorSet& CConfigDescriptorSet::operator=(CConfigDescriptorSet const&) = default;
CConfigDescriptorSet::CConfigDescriptorSet(CConfigDescriptorSet&&) = default;
CConfigDescriptorSet& CConfigDescriptorSet::operator=(CConfigDescriptorSet&&) = default;
CConfigDescriptorSet::~CConfigDescriptorSet() = default;

CDescriptorRange::RangeVector CConfigDescriptorSet::GetInterfaceList() {
  return RangeLister::Split(*this, [](CDescriptorRangeIterator const& it) {
    if (IsFirstSetting(it)) {
      return CutPlace::kStart;
    }
    return IsAssociation(it) ? CutPlace::kEnd : CutPlace::kInside;
  });
}

// Cuts as function_selector does.
CDescriptorRange::RangeVector CConfigDescriptorSet::GetFunctionList() {
  std::optional<std::uint8_t> nextInterface;
  return RangeLister::Split(*this, [&](CDescriptorRangeIterator const& it) {
    bool const isStart =
        IsAssociation(it) ||
        (IsFirstSetting(it) && (!nextInterface || InterfaceNumber(it) == *nextInterface));
    if (!isStart) {
      return CutPlace::kInside;
    }
    nextInterface = NextFirstInterface(it);
    return CutPlace::kStart;
  });
}
