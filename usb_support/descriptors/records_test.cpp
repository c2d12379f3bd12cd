#include <usb_support/descriptors/records.h>

#include <cstddef>
#include <cstdint>
#include <initializer_list>

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
  std::size_t widthInRecord;
  std::uint64_t (*read)(void const* record);
};

// Each byte has its own value, so that each field shows where it was read and in which byte order.
template <typename Record>
void Check(std::initializer_list<Field> fields) {
  for (std::size_t misalignment = 0; misalignment < 8; ++misalignment) {
    Bytes bytes(misalignment);
    for (std::size_t at = 0; at < sizeof(Record); ++at) {
      bytes.push_back(static_cast<unsigned char>(at + 1));
    }
    ExactBytes const block(bytes);
    for (Field const& field : fields) {
      std::uint64_t expected = 0;
      for (std::size_t at = 0; at < field.width; ++at) {
        expected |= static_cast<std::uint64_t>(field.offset + at + 1) << (8 * at);
      }
      EXPECT_EQ(field.widthInRecord, field.width) << field.name;
      EXPECT_EQ(field.read(block.data() + misalignment), expected) << field.name;
    }
  }
}

// A row of a standard's table: the offset of the field and its number of bytes.
#define AT(member, offset, width)                                                                 \
  Field {                                                                                         \
#member, offset, width, sizeof(static_cast <R const*>(nullptr)->member),                      \
        [](void const* record) -> std::uint64_t { return static_cast<R const*>(record)->member; } \
  }

TEST(Records, FieldsLieWhereTheWireHasThem) {
  {
    using R = TQ_USB_COMMON_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1)});
  }
  {
    using R = TQ_USB_DEVICE_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bcdUSB, 2, 2),
              AT(bDeviceClass, 4, 1), AT(bDeviceSubClass, 5, 1), AT(bDeviceProtocol, 6, 1),
              AT(bMaxPacketSize0, 7, 1), AT(idVendor, 8, 2), AT(idProduct, 10, 2),
              AT(bcdDevice, 12, 2), AT(iManufacturer, 14, 1), AT(iProduct, 15, 1),
              AT(iSerialNumber, 16, 1), AT(bNumConfigurations, 17, 1)});
  }
  {
    using R = TQ_USB_CONFIGURATION_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(wTotalLength, 2, 2),
              AT(bNumInterfaces, 4, 1), AT(bConfigurationValue, 5, 1), AT(iConfiguration, 6, 1),
              AT(bmAttributes, 7, 1), AT(bMaxPower, 8, 1)});
  }
  {
    using R = TQ_USB_STRING_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bString[0], 2, 2)});
  }
  {
    using R = TQ_USB_INTERFACE_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bInterfaceNumber, 2, 1),
              AT(bAlternateSetting, 3, 1), AT(bNumEndpoints, 4, 1), AT(bInterfaceClass, 5, 1),
              AT(bInterfaceSubClass, 6, 1), AT(bInterfaceProtocol, 7, 1), AT(iInterface, 8, 1)});
  }
  {
    using R = TQ_USB_ENDPOINT_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bEndpointAddress, 2, 1),
              AT(bmAttributes, 3, 1), AT(wMaxPacketSize, 4, 2), AT(bInterval, 6, 1)});
  }
  {
    using R = TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bcdUSB, 2, 2),
              AT(bDeviceClass, 4, 1), AT(bDeviceSubClass, 5, 1), AT(bDeviceProtocol, 6, 1),
              AT(bMaxPacketSize0, 7, 1), AT(bNumConfigurations, 8, 1), AT(bReserved, 9, 1)});
  }
  {
    using R = TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bFirstInterface, 2, 1),
              AT(bInterfaceCount, 3, 1), AT(bFunctionClass, 4, 1), AT(bFunctionSubClass, 5, 1),
              AT(bFunctionProtocol, 6, 1), AT(iFunction, 7, 1)});
  }
  {
    using R = TQ_USB_CLASS_SPECIFIC_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bDescriptorSubtype, 2, 1)});
  }
  {
    using R = TQ_USB_HUB_DESCRIPTOR;
    Check<R>({AT(bDescLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bNbrPorts, 2, 1),
              AT(wHubCharacteristics, 3, 2), AT(bPwrOn2PwrGood, 5, 1), AT(bHubContrCurrent, 6, 1),
              AT(DeviceRemovable[0], 7, 1)});
  }
  {
    using R = TQ_USB_30_HUB_DESCRIPTOR;
    Check<R>({AT(bDescLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bNbrPorts, 2, 1),
              AT(wHubCharacteristics, 3, 2), AT(bPwrOn2PwrGood, 5, 1), AT(bHubContrCurrent, 6, 1),
              AT(bHubHdrDecLat, 7, 1), AT(wHubDelay, 8, 2), AT(DeviceRemovable, 10, 2)});
  }
  {
    using R = TQ_USB_BOS_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(wTotalLength, 2, 2),
              AT(bNumDeviceCaps, 4, 1)});
  }
  {
    using R = TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bDevCapabilityType, 2, 1)});
  }
  {
    using R = TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bDevCapabilityType, 2, 1),
              AT(bmAttributes, 3, 4)});
  }
  {
    using R = TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bDevCapabilityType, 2, 1),
              AT(bmAttributes, 3, 1), AT(wSpeedsSupported, 4, 2), AT(bFunctionalitySupport, 6, 1),
              AT(bU1DevExitLat, 7, 1), AT(wU2DevExitLat, 8, 2)});
  }
  {
    using R = TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bDevCapabilityType, 2, 1),
              AT(bReserved, 3, 1), AT(ContainerID[0], 4, 1), AT(ContainerID[15], 19, 1)});
  }
  {
    using R = TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bDevCapabilityType, 2, 1),
              AT(bReserved, 3, 1), AT(bmAttributes, 4, 4), AT(bmProviderPorts, 8, 2),
              AT(bmConsumerPorts, 10, 2), AT(bcdBCVersion, 12, 2), AT(bcdPDVersion, 14, 2),
              AT(bcdUSBTypeCVersion, 16, 2)});
  }
  {
    using R = TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bDevCapabilityType, 2, 1),
              AT(iBattery, 3, 1), AT(iSerial, 4, 1), AT(iManufacturer, 5, 1), AT(bBatteryId, 6, 1),
              AT(bReserved, 7, 1), AT(dwChargedThreshold, 8, 4), AT(dwWeakThreshold, 12, 4),
              AT(dwBatteryDesignCapacity, 16, 4), AT(dwBatteryLastFullchargeCapacity, 20, 4)});
  }
  {
    using R = TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bDevCapabilityType, 2, 1),
              AT(bReserved, 3, 1), AT(bmCapabilities, 4, 2), AT(wMinVoltage, 6, 2),
              AT(wMaxVoltage, 8, 2), AT(wReserved, 10, 2), AT(dwMaxOperatingPower, 12, 4),
              AT(dwMaxPeakPower, 16, 4), AT(dwMaxPeakPowerTime, 20, 4)});
  }
  {
    using R = TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR;
    Check<R>({AT(bLength, 0, 1), AT(bDescriptorType, 1, 1), AT(bDevCapabilityType, 2, 1),
              AT(bReserved1, 3, 1), AT(bmCapabilities, 4, 2), AT(bNumOfPDObjects, 6, 1),
              AT(bReserved2, 7, 1), AT(wPowerDataObject[0], 8, 4)});
  }
}

#undef AT

TEST(Records, AlignedTypesAreNotWireRecords) {
  struct Aligned {
    std::uint16_t word;
  };
  EXPECT_FALSE(kIsWireRecord<Aligned>);
}

TEST(Records, TypeCodes) {
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

TEST(Records, CapabilityCodes) {
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
