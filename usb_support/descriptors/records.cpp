// Holds the layout of every record to the wire format: the numbers are the offsets of the
// standards' own tables.
#include <usb_support/descriptors/records.h>

namespace usb_support {
namespace {

static_assert(kIsWireRecord<TQ_USB_COMMON_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_COMMON_DESCRIPTOR) == 2);
static_assert(offsetof(TQ_USB_COMMON_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_COMMON_DESCRIPTOR, bDescriptorType) == 1);

static_assert(kIsWireRecord<TQ_USB_DEVICE_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_DEVICE_DESCRIPTOR) == 18);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, bcdUSB) == 2);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, bDeviceClass) == 4);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, bDeviceSubClass) == 5);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, bDeviceProtocol) == 6);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, bMaxPacketSize0) == 7);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, idVendor) == 8);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, idProduct) == 10);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, bcdDevice) == 12);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, iManufacturer) == 14);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, iProduct) == 15);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, iSerialNumber) == 16);
static_assert(offsetof(TQ_USB_DEVICE_DESCRIPTOR, bNumConfigurations) == 17);

static_assert(kIsWireRecord<TQ_USB_CONFIGURATION_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_CONFIGURATION_DESCRIPTOR) == 9);
static_assert(offsetof(TQ_USB_CONFIGURATION_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_CONFIGURATION_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_CONFIGURATION_DESCRIPTOR, wTotalLength) == 2);
static_assert(offsetof(TQ_USB_CONFIGURATION_DESCRIPTOR, bNumInterfaces) == 4);
static_assert(offsetof(TQ_USB_CONFIGURATION_DESCRIPTOR, bConfigurationValue) == 5);
static_assert(offsetof(TQ_USB_CONFIGURATION_DESCRIPTOR, iConfiguration) == 6);
static_assert(offsetof(TQ_USB_CONFIGURATION_DESCRIPTOR, bmAttributes) == 7);
static_assert(offsetof(TQ_USB_CONFIGURATION_DESCRIPTOR, bMaxPower) == 8);

static_assert(kIsWireRecord<TQ_USB_STRING_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_STRING_DESCRIPTOR) == 4);
static_assert(offsetof(TQ_USB_STRING_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_STRING_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_STRING_DESCRIPTOR, bString) == 2);

static_assert(kIsWireRecord<TQ_USB_INTERFACE_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_INTERFACE_DESCRIPTOR) == 9);
static_assert(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceNumber) == 2);
static_assert(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bAlternateSetting) == 3);
static_assert(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bNumEndpoints) == 4);
static_assert(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceClass) == 5);
static_assert(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceSubClass) == 6);
static_assert(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceProtocol) == 7);
static_assert(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, iInterface) == 8);

static_assert(kIsWireRecord<TQ_USB_ENDPOINT_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_ENDPOINT_DESCRIPTOR) == 7);
static_assert(offsetof(TQ_USB_ENDPOINT_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_ENDPOINT_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_ENDPOINT_DESCRIPTOR, bEndpointAddress) == 2);
static_assert(offsetof(TQ_USB_ENDPOINT_DESCRIPTOR, bmAttributes) == 3);
static_assert(offsetof(TQ_USB_ENDPOINT_DESCRIPTOR, wMaxPacketSize) == 4);
static_assert(offsetof(TQ_USB_ENDPOINT_DESCRIPTOR, bInterval) == 6);

static_assert(kIsWireRecord<TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR) == 10);
static_assert(offsetof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bcdUSB) == 2);
static_assert(offsetof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bDeviceClass) == 4);
static_assert(offsetof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bDeviceSubClass) == 5);
static_assert(offsetof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bDeviceProtocol) == 6);
static_assert(offsetof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bMaxPacketSize0) == 7);
static_assert(offsetof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bNumConfigurations) == 8);
static_assert(offsetof(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bReserved) == 9);

static_assert(kIsWireRecord<TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR) == 8);
static_assert(offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bFirstInterface) == 2);
static_assert(offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bInterfaceCount) == 3);
static_assert(offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bFunctionClass) == 4);
static_assert(offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bFunctionSubClass) == 5);
static_assert(offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bFunctionProtocol) == 6);
static_assert(offsetof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, iFunction) == 7);

static_assert(kIsWireRecord<TQ_USB_CLASS_SPECIFIC_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR) == 3);
static_assert(offsetof(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR, bDescriptorSubtype) == 2);

static_assert(kIsWireRecord<TQ_USB_HUB_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_HUB_DESCRIPTOR) == 8);
static_assert(offsetof(TQ_USB_HUB_DESCRIPTOR, bDescLength) == 0);
static_assert(offsetof(TQ_USB_HUB_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_HUB_DESCRIPTOR, bNbrPorts) == 2);
static_assert(offsetof(TQ_USB_HUB_DESCRIPTOR, wHubCharacteristics) == 3);
static_assert(offsetof(TQ_USB_HUB_DESCRIPTOR, bPwrOn2PwrGood) == 5);
static_assert(offsetof(TQ_USB_HUB_DESCRIPTOR, bHubContrCurrent) == 6);
static_assert(offsetof(TQ_USB_HUB_DESCRIPTOR, DeviceRemovable) == 7);

static_assert(kIsWireRecord<TQ_USB_30_HUB_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_30_HUB_DESCRIPTOR) == 12);
static_assert(offsetof(TQ_USB_30_HUB_DESCRIPTOR, bDescLength) == 0);
static_assert(offsetof(TQ_USB_30_HUB_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_30_HUB_DESCRIPTOR, bNbrPorts) == 2);
static_assert(offsetof(TQ_USB_30_HUB_DESCRIPTOR, wHubCharacteristics) == 3);
static_assert(offsetof(TQ_USB_30_HUB_DESCRIPTOR, bPwrOn2PwrGood) == 5);
static_assert(offsetof(TQ_USB_30_HUB_DESCRIPTOR, bHubContrCurrent) == 6);
static_assert(offsetof(TQ_USB_30_HUB_DESCRIPTOR, bHubHdrDecLat) == 7);
static_assert(offsetof(TQ_USB_30_HUB_DESCRIPTOR, wHubDelay) == 8);
static_assert(offsetof(TQ_USB_30_HUB_DESCRIPTOR, DeviceRemovable) == 10);

static_assert(kIsWireRecord<TQ_USB_BOS_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_BOS_DESCRIPTOR) == 5);
static_assert(offsetof(TQ_USB_BOS_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_BOS_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_BOS_DESCRIPTOR, wTotalLength) == 2);
static_assert(offsetof(TQ_USB_BOS_DESCRIPTOR, bNumDeviceCaps) == 4);

static_assert(kIsWireRecord<TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR) == 3);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR, bDevCapabilityType) == 2);

static_assert(kIsWireRecord<TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR) == 7);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR, bDevCapabilityType) ==
              2);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR, bmAttributes) == 3);

static_assert(kIsWireRecord<TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR) == 10);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bDevCapabilityType) ==
              2);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bmAttributes) == 3);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, wSpeedsSupported) == 4);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bFunctionalitySupport) ==
              6);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bU1DevExitLat) == 7);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, wU2DevExitLat) == 8);

static_assert(kIsWireRecord<TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR) == 20);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, bDevCapabilityType) == 2);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, bReserved) == 3);
static_assert(offsetof(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, ContainerID) == 4);

static_assert(kIsWireRecord<TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2>);
static_assert(sizeof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2) == 18);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bLength) == 0);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bDevCapabilityType) == 2);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bReserved) == 3);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bmAttributes) == 4);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bmProviderPorts) == 8);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bmConsumerPorts) == 10);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bcdBCVersion) == 12);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bcdPDVersion) == 14);
static_assert(offsetof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bcdUSBTypeCVersion) == 16);

static_assert(kIsWireRecord<TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR) == 24);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bDevCapabilityType) == 2);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, iBattery) == 3);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, iSerial) == 4);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, iManufacturer) == 5);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bBatteryId) == 6);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bReserved) == 7);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, dwChargedThreshold) == 8);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, dwWeakThreshold) == 12);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, dwBatteryDesignCapacity) == 16);
static_assert(offsetof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR,
                       dwBatteryLastFullchargeCapacity) == 20);

static_assert(kIsWireRecord<TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR) == 24);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bDevCapabilityType) == 2);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bReserved) == 3);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bmCapabilities) == 4);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, wMinVoltage) == 6);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, wMaxVoltage) == 8);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, wReserved) == 10);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, dwMaxOperatingPower) == 12);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, dwMaxPeakPower) == 16);
static_assert(offsetof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, dwMaxPeakPowerTime) == 20);

static_assert(kIsWireRecord<TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR>);
static_assert(sizeof(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR) == 12);
static_assert(offsetof(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bLength) == 0);
static_assert(offsetof(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bDescriptorType) == 1);
static_assert(offsetof(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bDevCapabilityType) == 2);
static_assert(offsetof(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bReserved1) == 3);
static_assert(offsetof(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bmCapabilities) == 4);
static_assert(offsetof(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bNumOfPDObjects) == 6);
static_assert(offsetof(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bReserved2) == 7);
static_assert(offsetof(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, wPowerDataObject) == 8);

}  // namespace
}  // namespace usb_support
