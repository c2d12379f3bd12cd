#include <usb_support/descriptors/records.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

#include <tests/support/exact_bytes.h>
#include <usb_support/descriptors/device_speed.h>

namespace usb_support {
namespace {

using testing_support::Bytes;
using testing_support::ExactBytes;

struct Field {
  char const* name;
  std::size_t offset;
  std::size_t width;
  std::size_t (*widthInRecord)();
  std::uint64_t (*read)(void const* record);
};

// A row of a standard's table: where the field lies and how many bytes it has.
#define FIELD(Record, member, offset, width)                                                 \
  Field {                                                                                    \
#Record "::" #member, offset, width, [] { return sizeof(std::declval<Record>().member); }, \
        [](void const* record) -> std::uint64_t {                                         \
          return static_cast<Record const*>(record)->member;                              \
        } \
  }

std::vector<Field> AllFields() {
  return {
      FIELD(TQ_USB_COMMON_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_COMMON_DESCRIPTOR, bDescriptorType, 1, 1),

      FIELD(TQ_USB_DEVICE_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, bcdUSB, 2, 2),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, bDeviceClass, 4, 1),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, bDeviceSubClass, 5, 1),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, bDeviceProtocol, 6, 1),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, bMaxPacketSize0, 7, 1),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, idVendor, 8, 2),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, idProduct, 10, 2),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, bcdDevice, 12, 2),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, iManufacturer, 14, 1),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, iProduct, 15, 1),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, iSerialNumber, 16, 1),
      FIELD(TQ_USB_DEVICE_DESCRIPTOR, bNumConfigurations, 17, 1),

      FIELD(TQ_USB_CONFIGURATION_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_CONFIGURATION_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_CONFIGURATION_DESCRIPTOR, wTotalLength, 2, 2),
      FIELD(TQ_USB_CONFIGURATION_DESCRIPTOR, bNumInterfaces, 4, 1),
      FIELD(TQ_USB_CONFIGURATION_DESCRIPTOR, bConfigurationValue, 5, 1),
      FIELD(TQ_USB_CONFIGURATION_DESCRIPTOR, iConfiguration, 6, 1),
      FIELD(TQ_USB_CONFIGURATION_DESCRIPTOR, bmAttributes, 7, 1),
      FIELD(TQ_USB_CONFIGURATION_DESCRIPTOR, bMaxPower, 8, 1),

      FIELD(TQ_USB_STRING_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_STRING_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_STRING_DESCRIPTOR, bString[0], 2, 2),

      FIELD(TQ_USB_INTERFACE_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_INTERFACE_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceNumber, 2, 1),
      FIELD(TQ_USB_INTERFACE_DESCRIPTOR, bAlternateSetting, 3, 1),
      FIELD(TQ_USB_INTERFACE_DESCRIPTOR, bNumEndpoints, 4, 1),
      FIELD(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceClass, 5, 1),
      FIELD(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceSubClass, 6, 1),
      FIELD(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceProtocol, 7, 1),
      FIELD(TQ_USB_INTERFACE_DESCRIPTOR, iInterface, 8, 1),

      FIELD(TQ_USB_ENDPOINT_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_ENDPOINT_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_ENDPOINT_DESCRIPTOR, bEndpointAddress, 2, 1),
      FIELD(TQ_USB_ENDPOINT_DESCRIPTOR, bmAttributes, 3, 1),
      FIELD(TQ_USB_ENDPOINT_DESCRIPTOR, wMaxPacketSize, 4, 2),
      FIELD(TQ_USB_ENDPOINT_DESCRIPTOR, bInterval, 6, 1),

      FIELD(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bcdUSB, 2, 2),
      FIELD(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bDeviceClass, 4, 1),
      FIELD(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bDeviceSubClass, 5, 1),
      FIELD(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bDeviceProtocol, 6, 1),
      FIELD(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bMaxPacketSize0, 7, 1),
      FIELD(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bNumConfigurations, 8, 1),
      FIELD(TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, bReserved, 9, 1),

      FIELD(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bFirstInterface, 2, 1),
      FIELD(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bInterfaceCount, 3, 1),
      FIELD(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bFunctionClass, 4, 1),
      FIELD(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bFunctionSubClass, 5, 1),
      FIELD(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, bFunctionProtocol, 6, 1),
      FIELD(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, iFunction, 7, 1),

      FIELD(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR, bDescriptorSubtype, 2, 1),

      FIELD(TQ_USB_HUB_DESCRIPTOR, bDescLength, 0, 1),
      FIELD(TQ_USB_HUB_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_HUB_DESCRIPTOR, bNbrPorts, 2, 1),
      FIELD(TQ_USB_HUB_DESCRIPTOR, wHubCharacteristics, 3, 2),
      FIELD(TQ_USB_HUB_DESCRIPTOR, bPwrOn2PwrGood, 5, 1),
      FIELD(TQ_USB_HUB_DESCRIPTOR, bHubContrCurrent, 6, 1),
      FIELD(TQ_USB_HUB_DESCRIPTOR, DeviceRemovable[0], 7, 1),

      FIELD(TQ_USB_30_HUB_DESCRIPTOR, bDescLength, 0, 1),
      FIELD(TQ_USB_30_HUB_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_30_HUB_DESCRIPTOR, bNbrPorts, 2, 1),
      FIELD(TQ_USB_30_HUB_DESCRIPTOR, wHubCharacteristics, 3, 2),
      FIELD(TQ_USB_30_HUB_DESCRIPTOR, bPwrOn2PwrGood, 5, 1),
      FIELD(TQ_USB_30_HUB_DESCRIPTOR, bHubContrCurrent, 6, 1),
      FIELD(TQ_USB_30_HUB_DESCRIPTOR, bHubHdrDecLat, 7, 1),
      FIELD(TQ_USB_30_HUB_DESCRIPTOR, wHubDelay, 8, 2),
      FIELD(TQ_USB_30_HUB_DESCRIPTOR, DeviceRemovable, 10, 2),

      FIELD(TQ_USB_BOS_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_BOS_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_BOS_DESCRIPTOR, wTotalLength, 2, 2),
      FIELD(TQ_USB_BOS_DESCRIPTOR, bNumDeviceCaps, 4, 1),

      FIELD(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR, bDevCapabilityType, 2, 1),

      FIELD(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR, bDevCapabilityType, 2, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR, bmAttributes, 3, 4),

      FIELD(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bDevCapabilityType, 2, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bmAttributes, 3, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, wSpeedsSupported, 4, 2),
      FIELD(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bFunctionalitySupport, 6, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, bU1DevExitLat, 7, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, wU2DevExitLat, 8, 2),

      FIELD(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, bDevCapabilityType, 2, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, bReserved, 3, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, ContainerID[0], 4, 1),
      FIELD(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, ContainerID[15], 19, 1),

      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bLength, 0, 1),
      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bDescriptorType, 1, 1),
      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bDevCapabilityType, 2, 1),
      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bReserved, 3, 1),
      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bmAttributes, 4, 4),
      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bmProviderPorts, 8, 2),
      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bmConsumerPorts, 10, 2),
      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bcdBCVersion, 12, 2),
      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bcdPDVersion, 14, 2),
      FIELD(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, bcdUSBTypeCVersion, 16, 2),

      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bDevCapabilityType, 2, 1),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, iBattery, 3, 1),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, iSerial, 4, 1),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, iManufacturer, 5, 1),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bBatteryId, 6, 1),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, bReserved, 7, 1),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, dwChargedThreshold, 8, 4),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, dwWeakThreshold, 12, 4),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, dwBatteryDesignCapacity, 16, 4),
      FIELD(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, dwBatteryLastFullchargeCapacity, 20, 4),

      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bDevCapabilityType, 2, 1),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bReserved, 3, 1),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, bmCapabilities, 4, 2),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, wMinVoltage, 6, 2),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, wMaxVoltage, 8, 2),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, wReserved, 10, 2),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, dwMaxOperatingPower, 12, 4),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, dwMaxPeakPower, 16, 4),
      FIELD(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, dwMaxPeakPowerTime, 20, 4),

      FIELD(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bLength, 0, 1),
      FIELD(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bDescriptorType, 1, 1),
      FIELD(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bDevCapabilityType, 2, 1),
      FIELD(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bReserved1, 3, 1),
      FIELD(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bmCapabilities, 4, 2),
      FIELD(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bNumOfPDObjects, 6, 1),
      FIELD(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, bReserved2, 7, 1),
      FIELD(TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, wPowerDataObject[0], 8, 4),
  };
}

#undef FIELD

// The byte at each offset is the offset itself plus 1, so every field of a width has a value of its
// own that says where it was read and in which byte order.
std::uint64_t PatternAt(std::size_t offset, std::size_t width) {
  std::uint64_t value = 0;
  for (std::size_t at = 0; at < width; ++at) {
    value |= static_cast<std::uint64_t>(offset + at + 1) << (8 * at);
  }
  return value;
}

TEST(Records, FieldsLieWhereTheWireHasThemAtAnyAlignment) {
  std::size_t const largest = 24;
  for (std::size_t misalignment = 0; misalignment < 8; ++misalignment) {
    Bytes bytes(misalignment);
    for (std::size_t at = 0; at < largest; ++at) {
      bytes.push_back(static_cast<unsigned char>(at + 1));
    }
    ExactBytes const block(bytes);
    for (Field const& field : AllFields()) {
      SCOPED_TRACE(field.name);
      EXPECT_EQ(field.widthInRecord(), field.width);
      EXPECT_EQ(field.read(block.data() + misalignment), PatternAt(field.offset, field.width));
    }
  }
}

TEST(Records, AlignedTypesAreNoWireRecords) {
  struct Aligned {
    std::uint16_t word;
  };
  EXPECT_FALSE(kIsWireRecord<Aligned>);
}

TEST(Records, EndpointAtAnOddAddressHasItsPacketSizeFromBytes4And5) {
  // A webcam's isochronous video endpoint: three transactions of 1024 bytes a microframe.
  ExactBytes const block({0xEE, 0x07, 0x05, 0x81, 0x05, 0x00, 0x14, 0x01});
  // The heap aligns the block, so its second byte lies at an odd address.
  auto const* const endpoint =
      reinterpret_cast<TQ_USB_ENDPOINT_DESCRIPTOR const*>(block.data() + 1);
  ASSERT_EQ(reinterpret_cast<std::uintptr_t>(endpoint) % 2, 1u);
  EXPECT_EQ(+endpoint->wMaxPacketSize, 0x1400);
  EXPECT_EQ(+endpoint->bEndpointAddress, 0x81);
  EXPECT_EQ(+endpoint->bmAttributes, 0x05);
  EXPECT_EQ(+endpoint->bInterval, 1);
}

TEST(Records, FirstByteZeroIsALengthOfZero) {
  ExactBytes const block({0x00, 0x04});
  EXPECT_EQ(+block.Descriptor()->bLength, 0);
  EXPECT_EQ(+block.Descriptor()->bDescriptorType, 4);
}

TEST(Records, DeviceDescriptorOfAWebcam) {
  ExactBytes const block({0x12, 0x01, 0x00, 0x02, 0xEF, 0x02, 0x01, 0x40, 0x6D, 0x04, 0x25, 0x08,
                          0x12, 0x00, 0x00, 0x00, 0x02, 0x01});
  auto const& device = *reinterpret_cast<TQ_USB_DEVICE_DESCRIPTOR const*>(block.data());
  EXPECT_EQ(+device.bLength, 18);
  EXPECT_EQ(+device.bDescriptorType, 0x01);
  EXPECT_EQ(+device.bcdUSB, 0x0200);
  EXPECT_EQ(+device.bDeviceClass, 0xEF);
  EXPECT_EQ(+device.bDeviceSubClass, 0x02);
  EXPECT_EQ(+device.bDeviceProtocol, 0x01);
  EXPECT_EQ(+device.bMaxPacketSize0, 64);
  EXPECT_EQ(+device.idVendor, 0x046D);
  EXPECT_EQ(+device.idProduct, 0x0825);
  EXPECT_EQ(+device.bcdDevice, 0x0012);
  EXPECT_EQ(+device.iManufacturer, 0);
  EXPECT_EQ(+device.iProduct, 0);
  EXPECT_EQ(+device.iSerialNumber, 2);
  EXPECT_EQ(+device.bNumConfigurations, 1);
}

TEST(Records, ConfigurationAssociationAndInterfaceOfAWebcam) {
  ExactBytes const block({0x09, 0x02, 0xA2, 0x09, 0x04, 0x01, 0x00, 0x80, 0xFA,
                          0x08, 0x0B, 0x00, 0x02, 0x0E, 0x03, 0x00, 0x00, 0x09,
                          0x04, 0x00, 0x00, 0x01, 0x0E, 0x01, 0x00, 0x00});
  auto const& configuration =
      *reinterpret_cast<TQ_USB_CONFIGURATION_DESCRIPTOR const*>(block.data());
  EXPECT_EQ(+configuration.wTotalLength, 2466);
  EXPECT_EQ(+configuration.bNumInterfaces, 4);
  EXPECT_EQ(+configuration.bConfigurationValue, 1);
  EXPECT_EQ(+configuration.iConfiguration, 0);
  EXPECT_EQ(+configuration.bmAttributes, 0x80);
  EXPECT_EQ(+configuration.bMaxPower, 250);  // 500 mA in units of 2 mA

  auto const& association =
      *reinterpret_cast<TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR const*>(block.data() + 9);
  EXPECT_EQ(+association.bFirstInterface, 0);
  EXPECT_EQ(+association.bInterfaceCount, 2);
  EXPECT_EQ(+association.bFunctionClass, 0x0E);
  EXPECT_EQ(+association.bFunctionSubClass, 0x03);
  EXPECT_EQ(+association.bFunctionProtocol, 0);
  EXPECT_EQ(+association.iFunction, 0);

  auto const& interface = *reinterpret_cast<TQ_USB_INTERFACE_DESCRIPTOR const*>(block.data() + 17);
  EXPECT_EQ(+interface.bInterfaceNumber, 0);
  EXPECT_EQ(+interface.bAlternateSetting, 0);
  EXPECT_EQ(+interface.bNumEndpoints, 1);
  EXPECT_EQ(+interface.bInterfaceClass, 0x0E);
  EXPECT_EQ(+interface.bInterfaceSubClass, 0x01);
  EXPECT_EQ(+interface.bInterfaceProtocol, 0);
  EXPECT_EQ(+interface.iInterface, 0);
}

TEST(Records, BosOfAHub) {
  ExactBytes const block({0x05, 0x0F, 0x2A, 0x00, 0x03, 0x07, 0x10, 0x02, 0x1E, 0xA2, 0x00,
                          0x00, 0x0A, 0x10, 0x03, 0x00, 0x0E, 0x00, 0x01, 0x0A, 0xE7, 0x00,
                          0x14, 0x10, 0x04, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00,
                          0x00, 0x00, 0x00, 0x00, 0x4A, 0xA9, 0xD0, 0xCF, 0xB6});
  auto const& bos = *reinterpret_cast<TQ_USB_BOS_DESCRIPTOR const*>(block.data());
  EXPECT_EQ(+bos.wTotalLength, 42);
  EXPECT_EQ(+bos.bNumDeviceCaps, 3);

  auto const& extension =
      *reinterpret_cast<TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR const*>(block.data() +
                                                                                    5);
  EXPECT_EQ(+extension.bDevCapabilityType, 2);
  EXPECT_EQ(+extension.bmAttributes, 0x0000A21Eu);

  auto const& superSpeed =
      *reinterpret_cast<TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR const*>(block.data() +
                                                                                   12);
  EXPECT_EQ(+superSpeed.bDevCapabilityType, 3);
  EXPECT_EQ(+superSpeed.bmAttributes, 0);
  EXPECT_EQ(+superSpeed.wSpeedsSupported, 0x000E);
  EXPECT_EQ(+superSpeed.bFunctionalitySupport, 1);
  EXPECT_EQ(+superSpeed.bU1DevExitLat, 10);   // less than 10 us
  EXPECT_EQ(+superSpeed.wU2DevExitLat, 231);  // less than 231 us

  auto const& container =
      *reinterpret_cast<TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR const*>(block.data() + 22);
  EXPECT_EQ(+container.bDevCapabilityType, 4);
  EXPECT_EQ(+container.ContainerID[10], 0);
  EXPECT_EQ(+container.ContainerID[11], 0x4A);
  EXPECT_EQ(+container.ContainerID[15], 0xB6);
}

TEST(Records, StringIsUtf16LittleEndian) {
  // "USB", and the languages of string 0 with US English.
  ExactBytes const text({0x08, 0x03, 0x55, 0x00, 0x53, 0x00, 0x42, 0x00});
  EXPECT_EQ(+reinterpret_cast<TQ_USB_STRING_DESCRIPTOR const*>(text.data())->bString[0], u'U');
  ExactBytes const languages({0x04, 0x03, 0x09, 0x04});
  EXPECT_EQ(+reinterpret_cast<TQ_USB_STRING_DESCRIPTOR const*>(languages.data())->bString[0],
            0x0409);
}

TEST(Records, TypeCodesAreTheStandardsOwn) {
  EXPECT_EQ(kDeviceType, 0x01);
  EXPECT_EQ(kConfigurationType, 0x02);
  EXPECT_EQ(kStringType, 0x03);
  EXPECT_EQ(kInterfaceType, 0x04);
  EXPECT_EQ(kEndpointType, 0x05);
  EXPECT_EQ(kDeviceQualifierType, 0x06);
  EXPECT_EQ(kOtherSpeedConfigurationType, 0x07);
  EXPECT_EQ(kInterfaceAssociationType, 0x0B);
  EXPECT_EQ(kBosType, 0x0F);
  EXPECT_EQ(kDeviceCapabilityType, 0x10);
  EXPECT_EQ(kEusb2IsochEndpointCompanionType, 0x12);
  EXPECT_EQ(kClassSpecificInterfaceType, 0x24);
  EXPECT_EQ(kClassSpecificEndpointType, 0x25);
  EXPECT_EQ(kHubType, 0x29);
  EXPECT_EQ(kSuperSpeedHubType, 0x2A);
  EXPECT_EQ(kSuperSpeedEndpointCompanionType, 0x30);
  EXPECT_EQ(kSuperSpeedPlusIsochEndpointCompanionType, 0x31);
}

TEST(Records, CapabilityCodesAreTheStandardsOwn) {
  EXPECT_EQ(kUsb20ExtensionCapability, 0x02);
  EXPECT_EQ(kSuperSpeedCapability, 0x03);
  EXPECT_EQ(kContainerIdCapability, 0x04);
  EXPECT_EQ(kPowerDeliveryCapability, 0x06);
  EXPECT_EQ(kBatteryInfoCapability, 0x07);
  EXPECT_EQ(kPdConsumerPortCapability, 0x08);
  EXPECT_EQ(kPdProviderPortCapability, 0x09);
}

TEST(DeviceSpeed, IsOneByteWithTheSuitesValues) {
  EXPECT_EQ(sizeof(TQE_USB_DEVICE_SPEED), 1u);
  EXPECT_EQ(static_cast<unsigned>(TQE_USB_DEVICE_SPEED_SUPER), 3u);
  EXPECT_EQ(static_cast<unsigned>(TQE_USB_DEVICE_SPEED_UNKNOWN), 0xFFu);
}

}  // namespace
}  // namespace usb_support
