// One configuration of the device under test, with everything that its wTotalLength covers.
#pragma once

#include <usb_support/descriptor_sets/descriptor_set.h>
#include <usb_support/platform/export.h>

/// Holds a configuration and knows which one it is: the index of the GET_DESCRIPTOR request
/// and whether the other-speed configuration was meant. Neither changes with the held bytes.
class USB_SUPPORT_API CConfigDescriptorSet
    : public CCompoundDescriptorSet<TQ_USB_CONFIGURATION_DESCRIPTOR> {
 public:
  /// An empty set; 0xFF is no index.
  CConfigDescriptorSet(unsigned char configIndex = 0xFF);

  /// Copies and moves as descriptor_set.h says, index and speed included.
  CConfigDescriptorSet(CConfigDescriptorSet const&);
  CConfigDescriptorSet& operator=(CConfigDescriptorSet const&);
  CConfigDescriptorSet(CConfigDescriptorSet&&);
  CConfigDescriptorSet& operator=(CConfigDescriptorSet&&);
  ~CConfigDescriptorSet() override;

  /// The index of the GET_DESCRIPTOR request; 0xFF is none.
  unsigned char ConfigIndex() const noexcept { return configIndex_; }
  void ConfigIndex(unsigned char configIndex) noexcept { configIndex_ = configIndex; }

  /// True when the other-speed configuration is meant.
  bool OtherSpeed() const noexcept { return otherSpeed_; }
  void OtherSpeed(bool otherSpeed) noexcept { otherSpeed_ = otherSpeed; }

  /// One range an interface, from its alternate setting 0 up to the next interface or interface
  /// association: alternate settings, endpoints and class-specific descriptors are inside,
  /// interface associations never are. Only valid descriptors are looked at; logs as GetSubRanges
  /// does.
  [[nodiscard]] RangeVector GetInterfaceList();

  /// One range a function, as function_selector.h says. Logs as GetSubRanges does.
  [[nodiscard]] RangeVector GetFunctionList();

 private:
  unsigned char configIndex_;
  bool otherSpeed_ = false;
};
