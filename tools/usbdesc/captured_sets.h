// The descriptor sets of the device under test: what a test program derives from the library's
// sets, so that they can read themselves from its kind of device.
//
// Both read from the device that UsbHelper() knows, which must be a CapturedDevice.
#pragma once

#include <cstdint>
#include <vector>

#include <tools/usbdesc/captured_device.h>
#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>

namespace usb_support::usbdesc {

/// One configuration of the device under test: at most wTotalLength bytes.
class CapturedConfiguration final : public CConfigDescriptorSet {
 public:
  CapturedConfiguration(std::uint8_t configIndex, bool otherSpeed);

  /// Fills the set; RC_STALL_ERROR, and an empty set, when the device has no such configuration.
  /// A device descriptor is stored with it when the device has one.
  RETURN_CODE Read();

  /// 2, or 7 for the configuration at the other speed.
  std::uint8_t Type() const noexcept;

  /// The header; a configuration always has its own fields, zero where bytes are missing.
  TQ_USB_CONFIGURATION_DESCRIPTOR Header() const noexcept;

  /// What the device sent after the held bytes, up to its next part.
  std::vector<unsigned char> const& Behind() const noexcept { return behind_; }

  /// The part of the run that the set was read from; empty before Read.
  Part const& Source() const noexcept { return source_; }

  /// True when the descriptors are those of a device that runs at SuperSpeed or faster: bcdUSB is
  /// 3.0 or more and bMaxPacketSize0 is 9 (USB 3.2, 9.6.1). False when that is not known.
  bool IsSuperSpeed() const noexcept;

 protected:
  RETURN_CODE DoReadDescriptor() override;
  RETURN_CODE DoGetDeviceDescriptor() override;

 private:
  Part source_{};
  std::vector<unsigned char> behind_;
};

/// A BOS of the device under test: at most wTotalLength bytes.
class CapturedBos final : public CBOSDescriptorSet {
 public:
  /// `index` is 0 for the BOS of a device; a capture may hold more.
  explicit CapturedBos(std::uint8_t index) noexcept : index_(index) {}

  /// As CapturedConfiguration::Read.
  RETURN_CODE Read();

  /// As those of CapturedConfiguration.
  TQ_USB_BOS_DESCRIPTOR Header() const noexcept;
  std::vector<unsigned char> const& Behind() const noexcept { return behind_; }
  Part const& Source() const noexcept { return source_; }

 protected:
  RETURN_CODE DoReadDescriptor() override;
  RETURN_CODE DoGetDeviceDescriptor() override;

 private:
  std::uint8_t index_;
  Part source_{};
  std::vector<unsigned char> behind_;
};

/// The device that UsbHelper() knows.
CapturedDevice& DeviceUnderTest();

/// Leaves of a set's range what is well-formed, so that the lists of a set that is cut short log
/// nothing.
template <typename Set>
void KeepValidPart(Set& set) {
  set.Reset(set.begin(), set.ValidUntil());
}

}  // namespace usb_support::usbdesc
