#include <tools/usbdesc/captured_sets.h>

#include <algorithm>
#include <optional>

#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

constexpr std::uint16_t kSuperSpeedRelease = 0x0300;
constexpr std::uint8_t kSuperSpeedPacketSize = 9;

// Reads descriptor `index` of a type into `set`, where it was found into `source`, and what the
// device sent beyond wTotalLength into `behind`.
template <typename Set>
RETURN_CODE ReadCompound(Set& set, std::uint8_t type, std::uint8_t index, Part& source,
                         Bytes& behind) {
  set.Reset();
  behind.clear();
  Part const* const found = DeviceUnderTest().Find(type, index);
  if (found == nullptr) {
    return RC_STALL_ERROR;
  }
  source = *found;
  // The header itself is held whatever it says; its length is the device's word, too.
  auto const header = ReadRecord<TQ_USB_BOS_DESCRIPTOR>(source.bytes.begin());
  std::uint16_t const total = std::max<std::uint16_t>(header.wTotalLength, header.bLength);
  std::uint16_t const length = std::min(total, source.bytes.Length());
  set.SetDescriptor(source.bytes.Bytes(), length);
  behind.assign(source.bytes.Bytes() + length, source.bytes.Bytes() + source.bytes.Length());
  return RC_SUCCESS;
}

// The device descriptor of the device under test; a short one is none.
std::optional<TQ_USB_DEVICE_DESCRIPTOR> ReadDeviceDescriptor() {
  constexpr std::uint16_t kSize = sizeof(TQ_USB_DEVICE_DESCRIPTOR);
  Bytes const sent = DeviceUnderTest().GetDescriptor(kDeviceType, 0, kSize);
  auto const descriptor = ReadRecord<TQ_USB_DEVICE_DESCRIPTOR>(RangeOver(sent).begin());
  return descriptor.bLength >= kSize ? std::optional(descriptor) : std::nullopt;
}

}  // namespace

CapturedDevice& DeviceUnderTest() {
  CTestServices* services = nullptr;
  CDevice* device = nullptr;
  UsbHelper().InitializePointers(services, device, true, TEST_STATUS_INTERNAL_ERROR);
  return dynamic_cast<CapturedDevice&>(*device);
}

CapturedConfiguration::CapturedConfiguration(std::uint8_t configIndex, bool otherSpeed)
    : CConfigDescriptorSet(configIndex) {
  OtherSpeed(otherSpeed);
}

RETURN_CODE CapturedConfiguration::Read() {
  RETURN_CODE const result = DoReadDescriptor();
  if (result == RC_SUCCESS) {
    // A capture may hold a configuration alone.
    static_cast<void>(DoGetDeviceDescriptor());
  }
  return result;
}

std::uint8_t CapturedConfiguration::Type() const noexcept {
  return OtherSpeed() ? kOtherSpeedConfigurationType : kConfigurationType;
}

TQ_USB_CONFIGURATION_DESCRIPTOR CapturedConfiguration::Header() const noexcept {
  return ReadRecord<TQ_USB_CONFIGURATION_DESCRIPTOR>(begin());
}

bool CapturedConfiguration::IsSuperSpeed() const noexcept {
  return HasDeviceDescriptor() && !OtherSpeed() &&
         DeviceDescriptor().bcdUSB >= kSuperSpeedRelease &&
         DeviceDescriptor().bMaxPacketSize0 == kSuperSpeedPacketSize;
}

RETURN_CODE CapturedConfiguration::DoReadDescriptor() {
  return ReadCompound(*this, Type(), ConfigIndex(), source_, behind_);
}

RETURN_CODE CapturedConfiguration::DoGetDeviceDescriptor() {
  std::optional<TQ_USB_DEVICE_DESCRIPTOR> const descriptor = ReadDeviceDescriptor();
  if (!descriptor) {
    return RC_STALL_ERROR;
  }
  StoreDeviceDescriptor(*descriptor);
  return RC_SUCCESS;
}

RETURN_CODE CapturedBos::Read() {
  RETURN_CODE const result = DoReadDescriptor();
  if (result == RC_SUCCESS) {
    static_cast<void>(DoGetDeviceDescriptor());
  }
  return result;
}

TQ_USB_BOS_DESCRIPTOR CapturedBos::Header() const noexcept {
  return ReadRecord<TQ_USB_BOS_DESCRIPTOR>(begin());
}

RETURN_CODE CapturedBos::DoReadDescriptor() {
  return ReadCompound(*this, kBosType, index_, source_, behind_);
}

RETURN_CODE CapturedBos::DoGetDeviceDescriptor() {
  std::optional<TQ_USB_DEVICE_DESCRIPTOR> const descriptor = ReadDeviceDescriptor();
  if (!descriptor) {
    return RC_STALL_ERROR;
  }
  StoreDeviceDescriptor(*descriptor);
  return RC_SUCCESS;
}

}  // namespace usb_support::usbdesc
