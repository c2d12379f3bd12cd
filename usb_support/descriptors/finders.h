// Ready-made finders and predicates for the sub-range operations of CDescriptorRange: capabilities
// of a BOS by their type, class-specific descriptors by type and subtype, and interfaces.
//
//   bos.GetSubRanges(CapabilityFinder(kContainerIdCapability), CDescriptorRange::AlwaysTrue);
//   interface.Count(ClassSpecificFinder(kClassSpecificInterfaceType, 4),
//                   CDescriptorRange::AlwaysTrue);
//
// A finder is a small value without references; it reads no byte outside the run.
#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/first_match.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/descriptors/records.h>

namespace usb_support {

/// True for a descriptor of type `type` whose third byte exists and is `subtype`.
inline bool HasSubtype(CDescriptorRangeIterator const& it, std::uint8_t type,
                       std::uint8_t subtype) noexcept {
  return HasType(it, type) && it.Remaining() >= sizeof(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR) &&
         ReadRecord<TQ_USB_CLASS_SPECIFIC_DESCRIPTOR>(it).bDescriptorSubtype == subtype;
}

/// True for alternate setting 0 of an interface.
inline bool IsFirstSetting(CDescriptorRangeIterator const& it) noexcept {
  return HasType(it, kInterfaceType) &&
         ReadByte(it, offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bAlternateSetting)) == 0;
}

/// Finds the first class-specific descriptor of a type (0x24 interface, 0x25 endpoint) and subtype;
/// (true, last) when there is none. Throws TQRunTimeException when the walk reaches a zero bLength.
class ClassSpecificFinder {
 public:
  /// Finds descriptors with this bDescriptorType and bDescriptorSubtype.
  ClassSpecificFinder(std::uint8_t type, std::uint8_t subtype) noexcept
      : type_(type),
        subtype_(subtype) {}

  /// Searches [first, last), as a RangeFinder does.
  std::pair<bool, CDescriptorRangeIterator> operator()(CDescriptorRangeIterator first,
                                                       CDescriptorRangeIterator last) const {
    return FirstMatch(first, last, [this](CDescriptorRangeIterator const& it) {
      return HasSubtype(it, type_, subtype_);
    });
  }

 private:
  std::uint8_t type_;
  std::uint8_t subtype_;
};

/// Finds the first device capability of a type (the kSomeCapability codes of records.h), as above.
class CapabilityFinder : public ClassSpecificFinder {
 public:
  /// Finds capabilities with this bDevCapabilityType.
  explicit CapabilityFinder(std::uint8_t capabilityType) noexcept
      : ClassSpecificFinder(kDeviceCapabilityType, capabilityType) {}
};

/// The first valid capability of a type as a range of its own; empty when there is none.
inline CDescriptorRange FindCapability(CDescriptorRange const& bos, std::uint8_t capabilityType) {
  return CDescriptorRange::SubRange(bos.begin(), bos.ValidUntil(), CapabilityFinder(capabilityType),
                                    CDescriptorRange::AlwaysTrue);
}

}  // namespace usb_support
