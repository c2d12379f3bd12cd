// One configuration of the device under test, with everything that its wTotalLength covers.
#pragma once

#include <usb_support/descriptor_sets/descriptor_set.h>
#include <usb_support/platform/export.h>

/// Holds a configuration and knows which one it is: the index of the GET_DESCRIPTOR request, and
/// whether it is the other-speed configuration. Neither changes with the held bytes.
class USB_SUPPORT_API CConfigDescriptorSet
    : public CCompoundDescriptorSet<TQ_USB_CONFIGURATION_DESCRIPTOR> {
 public:
  /// An empty set; the index 0xFF means none.
  CConfigDescriptorSet(unsigned char configIndex = 0xFF);

  /// Copies and moves as described in descriptor_set.h, index and speed included.
  CConfigDescriptorSet(CConfigDescriptorSet const&);
  CConfigDescriptorSet& operator=(CConfigDescriptorSet const&);
  CConfigDescriptorSet(CConfigDescriptorSet&&);
  CConfigDescriptorSet& operator=(CConfigDescriptorSet&&);
  ~CConfigDescriptorSet() override;

  /// The index of the GET_DESCRIPTOR request; 0xFF is none.
  unsigned char ConfigIndex() const noexcept { return configIndex_; }
  void ConfigIndex(unsigned char configIndex) noexcept { configIndex_ = configIndex; }

  /// True for the other-speed configuration.
  bool OtherSpeed() const noexcept { return otherSpeed_; }
  void OtherSpeed(bool otherSpeed) noexcept { otherSpeed_ = otherSpeed; }

  /// One range per interface, from its alternate setting 0 up to the next interface or interface
  /// association: it includes alternate settings, endpoints and class-specific descriptors, but
  /// never interface associations. Only valid descriptors are used; logs as GetSubRanges does.
  [[nodiscard]] RangeVector GetInterfaceList();

  /// One range per function, as described in function_selector.h. Logs as GetSubRanges does.
  [[nodiscard]] RangeVector GetFunctionList();

 private:
  unsigned char configIndex_;
  bool otherSpeed_ = false;
};
