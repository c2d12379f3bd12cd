// The Binary Object Store of the device under test, with all its device capabilities.
//
// When a set is not empty, its capability accessors throw std::bad_function_call and HasBOS returns
// false: these operations are defined so, and test programs rely on it. To find a capability in a
// set that holds one, use FindCapability or CapabilityFinder (descriptors/finders.h); to know
// whether a BOS was read, !IsEmpty().
#pragma once

#include <tuple>

#include <usb_support/descriptor_sets/descriptor_set.h>
#include <usb_support/descriptors/range_selector.h>
#include <usb_support/platform/export.h>
#include <usb_support/platform/lifetime.h>

/// The selector of the capability accessors: built on an empty predicate, whatever the type.
class USB_SUPPORT_API capability_type_selector : public CRangeSelector {
 public:
  /// The type is not used.
  explicit capability_type_selector(unsigned char capabilityType);
  capability_type_selector(capability_type_selector const&) = default;
  capability_type_selector& operator=(capability_type_selector const&) = default;
  ~capability_type_selector() override;
};

/// Holds a BOS with everything that its wTotalLength covers.
class USB_SUPPORT_API CBOSDescriptorSet : public CCompoundDescriptorSet<TQ_USB_BOS_DESCRIPTOR> {
 public:
  /// An empty set.
  CBOSDescriptorSet();

  /// Copies and moves as described in descriptor_set.h.
  CBOSDescriptorSet(CBOSDescriptorSet const&);
  CBOSDescriptorSet& operator=(CBOSDescriptorSet const&);
  CBOSDescriptorSet(CBOSDescriptorSet&&);
  CBOSDescriptorSet& operator=(CBOSDescriptorSet&&);
  ~CBOSDescriptorSet() override;

  /// (true, bcdUSB) of the stored device descriptor; (false, 0) when there is none.
  std::tuple<bool, unsigned short> BcdUsb();

  /// idVendor and idProduct of the stored device descriptor; 0 when there is none.
  unsigned short VID() const noexcept;
  unsigned short PID() const noexcept;

  /// True when the set is EMPTY, deliberately; the same as IsEmpty().
  bool HasBOS() const noexcept { return IsEmpty(); }

  /// The range of the set.
  [[nodiscard]] CDescriptorRange const& GetRange() const noexcept USB_SUPPORT_LIFETIMEBOUND {
    return *this;
  }

  /// The held BOS header; null when the set is empty.
  [[nodiscard]] TQ_USB_BOS_DESCRIPTOR const* GetBOS() const noexcept USB_SUPPORT_LIFETIMEBOUND {
    return Descriptor();
  }

  /// The sub-ranges of capability_type_selector: none for an empty set and for one whose first
  /// descriptor is not valid; for any other it throws std::bad_function_call, and so do the
  /// accessors below.
  [[nodiscard]] RangeVector GetDescriptorsOfType(unsigned char capabilityType);

  /// The first capability of a kind; null when there is none.
  [[nodiscard]] TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR* Get20ExtensionDesc() const
      USB_SUPPORT_LIFETIMEBOUND;
  [[nodiscard]] TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR* GetSSDesc() const
      USB_SUPPORT_LIFETIMEBOUND;
  [[nodiscard]] TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR* GetContainer() const
      USB_SUPPORT_LIFETIMEBOUND;
  [[nodiscard]] TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2* GetPDCap() const
      USB_SUPPORT_LIFETIMEBOUND;
  [[nodiscard]] TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR* GetBattery() const
      USB_SUPPORT_LIFETIMEBOUND;
  [[nodiscard]] TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR* GetConsumer() const USB_SUPPORT_LIFETIMEBOUND;
  [[nodiscard]] TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR* GetProvider() const USB_SUPPORT_LIFETIMEBOUND;

  /// The 16 bytes of the container's UUID; null when there is no container.
  [[nodiscard]] unsigned char* ContainerID() const USB_SUPPORT_LIFETIMEBOUND;

  /// True when the SuperSpeed capability states that 5 Gb/s operation is supported.
  bool SupportsSuperSpeed() const;

 private:
  template <typename Capability>
  Capability* First(unsigned char capabilityType) const;
};
