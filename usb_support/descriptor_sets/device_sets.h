// Descriptor sets that read themselves from a device.
//
// A test program derives its device from DescriptorDevice and writes one function: the request. The
// sets read through it in two steps, the header for the total length and then everything, and take
// the library's fake descriptors instead where the debug capabilities demand it.
//
//   class MyDevice final : public usb_support::DescriptorDevice {
//     RETURN_CODE GetDescriptor(std::uint8_t type, std::uint8_t index, std::uint16_t length,
//                               std::vector<unsigned char>& answer) override;
//   };
//
//   MyDevice device;
//   usb_support::DeviceConfiguration configuration(device, 0);
//   RETURN_CODE const result = configuration.Read();
//
// A device and its sets belong to one thread. A set refers to its device, which must outlive the
// set.
#pragma once

#include <concepts>
#include <cstdint>
#include <vector>

#include <usb_support/descriptor_sets/bos_descriptor_set.h>
#include <usb_support/descriptor_sets/config_descriptor_set.h>
#include <usb_support/descriptors/records.h>
#include <usb_support/helper/test_objects.h>
#include <usb_support/platform/export.h>
#include <usb_support/platform/lifetime.h>
#include <usb_support/status/return_code.h>

namespace usb_support {

/// A device under test that answers GET_DESCRIPTOR (USB 2.0, 9.4.3).
class DescriptorDevice : public CDevice {
 public:
  /// The request: sets `answer` to the bytes that the device sends of descriptor `index` of type
  /// `type`, at most `length`. The reads below return its failures, such as RC_STALL_ERROR.
  virtual RETURN_CODE GetDescriptor(std::uint8_t type, std::uint8_t index, std::uint16_t length,
                                    std::vector<unsigned char>& answer) = 0;

  /// Reads the device descriptor, or takes the fake one. Bytes that the device does not send are 0;
  /// RC_TRANSFER_INSUFFICIENT_DATA when it sends nothing.
  [[nodiscard]] USB_SUPPORT_API RETURN_CODE
  ReadDeviceDescriptor(TQ_USB_DEVICE_DESCRIPTOR& descriptor);

  /// Reads a descriptor with everything that its wTotalLength covers (a configuration, an
  /// other-speed configuration or a BOS), or takes the fake one. `bytes` is set to what the device
  /// sent, never more than was requested. RC_TRANSFER_INSUFFICIENT_DATA when it sends no
  /// wTotalLength.
  [[nodiscard]] USB_SUPPORT_API RETURN_CODE ReadCompound(std::uint8_t type, std::uint8_t index,
                                                         std::vector<unsigned char>& bytes);

 private:
  RETURN_CODE Request(std::uint8_t type, std::uint8_t index, std::uint16_t length,
                      std::vector<unsigned char>& answer);
};

/// A set that reads itself: DeviceConfiguration or DeviceBos.
template <typename Set>
class DeviceSet : public Set {
 public:
  /// An empty set; for a configuration, the one of index 0.
  explicit DeviceSet(DescriptorDevice& device USB_SUPPORT_LIFETIMEBOUND) : device_(&device) {
    if constexpr (kIsConfiguration) {
      this->ConfigIndex(0);
    }
  }

  /// An empty set for the configuration of this index.
  DeviceSet(DescriptorDevice& device USB_SUPPORT_LIFETIMEBOUND,
            std::uint8_t configIndex) requires std::derived_from<Set, CConfigDescriptorSet>
      : Set(configIndex), device_(&device) {}

  /// The stored device descriptor; all zero, and HasDeviceDescriptor() false, before Read().
  using Set::DeviceDescriptor;
  using Set::HasDeviceDescriptor;

  /// Reads the descriptor and the device descriptor. After a failure the set is empty.
  [[nodiscard]] RETURN_CODE Read() {
    RETURN_CODE result = this->DoReadDescriptor();
    if (!Failed(result)) {
      result = this->DoGetDeviceDescriptor();
    }
    if (Failed(result)) {
      this->Reset();
    }
    return result;
  }

 protected:
  RETURN_CODE DoReadDescriptor() override {
    std::uint8_t type = kBosType;
    std::uint8_t index = 0;
    if constexpr (kIsConfiguration) {
      type = this->OtherSpeed() ? kOtherSpeedConfigurationType : kConfigurationType;
      index = this->ConfigIndex();
    }
    std::vector<unsigned char> bytes;
    RETURN_CODE const result = device_->ReadCompound(type, index, bytes);
    if (!Failed(result)) {
      this->SetDescriptor(bytes.data(), static_cast<unsigned short>(bytes.size()));
    }
    return result;
  }

  RETURN_CODE DoGetDeviceDescriptor() override {
    TQ_USB_DEVICE_DESCRIPTOR descriptor{};
    RETURN_CODE const result = device_->ReadDeviceDescriptor(descriptor);
    if (!Failed(result)) {
      this->StoreDeviceDescriptor(descriptor);
    }
    return result;
  }

 private:
  static constexpr bool kIsConfiguration = std::derived_from<Set, CConfigDescriptorSet>;

  DescriptorDevice* device_;
};

/// A configuration that reads itself; ConfigIndex() and OtherSpeed() choose which one.
using DeviceConfiguration = DeviceSet<CConfigDescriptorSet>;

/// A BOS that reads itself.
using DeviceBos = DeviceSet<CBOSDescriptorSet>;

/// The configuration of this index in a run of descriptors, such as a file of a Linux host: from
/// its header for wTotalLength bytes, or to the end when there are fewer. A total below the
/// header's own bLength counts as that. Empty when there is no such configuration.
[[nodiscard]] USB_SUPPORT_API CDescriptorRange ConfigurationAt(CDescriptorRange const& descriptors,
                                                               std::uint8_t index);

/// The first BOS in a run of descriptors, in the same way.
[[nodiscard]] USB_SUPPORT_API CDescriptorRange BosAt(CDescriptorRange const& descriptors);

/// Answers GET_DESCRIPTOR from a run of descriptors, as a captured device does: RC_STALL_ERROR when
/// there is no descriptor `index` of type `type`; otherwise its bytes, with those that its
/// wTotalLength covers, at most `length` of them.
USB_SUPPORT_API RETURN_CODE AnswerFrom(CDescriptorRange const& descriptors, std::uint8_t type,
                                       std::uint8_t index, std::uint16_t length,
                                       std::vector<unsigned char>& answer);

/// Fills a set with a copy of a range. Throws std::bad_alloc; then the set is unchanged.
template <typename Record>
void Fill(CDescriptorSet<Record>& set, CDescriptorRange const& range) {
  set.SetDescriptor(range.Bytes(), range.Length());
}

}  // namespace usb_support
