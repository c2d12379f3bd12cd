#include <usb_support/descriptor_sets/bos_descriptor_set.h>

#include <cstdint>

namespace {

// Bit 3 of wSpeedsSupported (USB 3.2, 9.6.2.2): operation at 5 Gb/s.
constexpr std::uint8_t kSuperSpeedOperation = 0x08;

// Selectors keep a reference to it, so it must never be destroyed.
usb_support::RangePredicate const& EmptyPredicate() {
  static auto const* const predicate = new usb_support::RangePredicate;
  return *predicate;
}

}  // namespace

// Deliberately, the type is not used: see the header.
capability_type_selector::capability_type_selector(unsigned char /*capabilityType*/)
    : CRangeSelector(EmptyPredicate()) {
}

capability_type_selector::~capability_type_selector() = default;

CBOSDescriptorSet::CBOSDescriptorSet() = default;
CBOSDescriptorSet::CBOSDescriptorSet(CBOSDescriptorSet const&) = default;
CBOSDescriptorSet& CBOSDescriptorSet::operator=(CBOSDescriptorSet const&) = default;
CBOSDescriptorSet::CBOSDescriptorSet(CBOSDescriptorSet&&) = default;
CBOSDescriptorSet& CBOSDescriptorSet::operator=(CBOSDescriptorSet&&) = default;
CBOSDescriptorSet::~CBOSDescriptorSet() = default;

std::tuple<bool, unsigned short> CBOSDescriptorSet::BcdUsb() {
  return {HasDeviceDescriptor(),
          HasDeviceDescriptor() ? DeviceDescriptor().bcdUSB : static_cast<unsigned short>(0)};
}

unsigned short CBOSDescriptorSet::VID() const noexcept {
  return HasDeviceDescriptor() ? DeviceDescriptor().idVendor : static_cast<unsigned short>(0);
}

unsigned short CBOSDescriptorSet::PID() const noexcept {
  return HasDeviceDescriptor() ? DeviceDescriptor().idProduct : static_cast<unsigned short>(0);
}

CDescriptorRange::RangeVector CBOSDescriptorSet::GetDescriptorsOfType(
    unsigned char capabilityType) {
  return GetSubRanges(capability_type_selector(capabilityType));
}

template <typename Capability>
Capability* CBOSDescriptorSet::First(unsigned char capabilityType) const {
  RangeVector const found = GetSubRanges(capability_type_selector(capabilityType));
  return found->empty() ? nullptr : reinterpret_cast<Capability*>(found->front().Bytes());
}

TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR* CBOSDescriptorSet::Get20ExtensionDesc() const {
  return First<TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR>(
      usb_support::kUsb20ExtensionCapability);
}

TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR* CBOSDescriptorSet::GetSSDesc() const {
  return First<TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR>(
      usb_support::kSuperSpeedCapability);
}

TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR* CBOSDescriptorSet::GetContainer() const {
  return First<TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR>(
      usb_support::kContainerIdCapability);
}

TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2* CBOSDescriptorSet::GetPDCap() const {
  return First<TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2>(
      usb_support::kPowerDeliveryCapability);
}

TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR* CBOSDescriptorSet::GetBattery() const {
  return First<TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR>(usb_support::kBatteryInfoCapability);
}

TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR* CBOSDescriptorSet::GetConsumer() const {
  return First<TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR>(usb_support::kPdConsumerPortCapability);
}

TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR* CBOSDescriptorSet::GetProvider() const {
  return First<TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR>(usb_support::kPdProviderPortCapability);
}

unsigned char* CBOSDescriptorSet::ContainerID() const {
  auto* const container = GetContainer();
  return container != nullptr ? container->ContainerID : nullptr;
}

bool CBOSDescriptorSet::SupportsSuperSpeed() const {
  auto const* const superSpeed = GetSSDesc();
  return superSpeed != nullptr && (superSpeed->wSpeedsSupported & kSuperSpeedOperation) != 0;
}
