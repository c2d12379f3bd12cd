// The standard USB descriptors as packed records, byte for byte as they travel on the wire, so that
// a pointer into a descriptor buffer can be read through a record at any alignment.
//
// A record says nothing about how many bytes are really there. For bytes that a device supplied,
// read through ReadRecord (read_record.h), which never reads past the end of the run.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <type_traits>

static_assert(std::endian::native == std::endian::little,
              "the words of the records are little-endian");

#pragma pack(push, 1)

/// Header of any descriptor (USB 2.0, 9.5).
struct TQ_USB_COMMON_DESCRIPTOR {
  std::uint8_t bLength;  ///< length of the whole descriptor in bytes; 0 is invalid
  std::uint8_t bDescriptorType;
};

/// Device (USB 2.0, table 9-8).
struct TQ_USB_DEVICE_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint16_t bcdUSB;
  std::uint8_t bDeviceClass;
  std::uint8_t bDeviceSubClass;
  std::uint8_t bDeviceProtocol;
  std::uint8_t bMaxPacketSize0;
  std::uint16_t idVendor;
  std::uint16_t idProduct;
  std::uint16_t bcdDevice;
  std::uint8_t iManufacturer;
  std::uint8_t iProduct;
  std::uint8_t iSerialNumber;
  std::uint8_t bNumConfigurations;
};

/// Configuration, and with type 7 other-speed configuration (USB 2.0, tables 9-10 and 9-11).
struct TQ_USB_CONFIGURATION_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint16_t wTotalLength;  ///< bytes of the configuration with all that follows it
  std::uint8_t bNumInterfaces;
  std::uint8_t bConfigurationValue;
  std::uint8_t iConfiguration;
  std::uint8_t bmAttributes;
  std::uint8_t bMaxPower;
};

/// String (USB 2.0, tables 9-15 and 9-16). The text goes on for `bLength` bytes in all.
struct TQ_USB_STRING_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint16_t bString[1];  ///< first UTF-16 code unit; in string 0 the first language identifier
};

/// Interface (USB 2.0, table 9-12).
struct TQ_USB_INTERFACE_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bInterfaceNumber;
  std::uint8_t bAlternateSetting;
  std::uint8_t bNumEndpoints;
  std::uint8_t bInterfaceClass;
  std::uint8_t bInterfaceSubClass;
  std::uint8_t bInterfaceProtocol;
  std::uint8_t iInterface;
};

/// Endpoint (USB 2.0, table 9-13).
struct TQ_USB_ENDPOINT_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bEndpointAddress;  ///< bit 7: 1 IN, 0 OUT; bits 3..0: number
  std::uint8_t bmAttributes;      ///< bits 1..0: 0 control, 1 isochronous, 2 bulk, 3 interrupt
  std::uint16_t wMaxPacketSize;
  std::uint8_t bInterval;
};

/// Device qualifier (USB 2.0, table 9-9).
struct TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint16_t bcdUSB;
  std::uint8_t bDeviceClass;
  std::uint8_t bDeviceSubClass;
  std::uint8_t bDeviceProtocol;
  std::uint8_t bMaxPacketSize0;
  std::uint8_t bNumConfigurations;
  std::uint8_t bReserved;
};

/// Interface association (USB 3.2, 9.6.4).
struct TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bFirstInterface;
  std::uint8_t bInterfaceCount;
  std::uint8_t bFunctionClass;
  std::uint8_t bFunctionSubClass;
  std::uint8_t bFunctionProtocol;
  std::uint8_t iFunction;
};

/// Start of a class-specific descriptor (USB Video Class 1.5, 3.7.2 and 3.9.2).
struct TQ_USB_CLASS_SPECIFIC_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDescriptorSubtype;
};

/// Hub (USB 2.0, table 11-13). DeviceRemovable and then PortPwrCtrlMask go on with one bit for each
/// port, each rounded up to whole bytes.
struct TQ_USB_HUB_DESCRIPTOR {
  std::uint8_t bDescLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bNbrPorts;
  std::uint16_t wHubCharacteristics;
  std::uint8_t bPwrOn2PwrGood;
  std::uint8_t bHubContrCurrent;
  std::uint8_t DeviceRemovable[1];
};

/// Enhanced SuperSpeed hub (USB 3.2, chapter 10).
struct TQ_USB_30_HUB_DESCRIPTOR {
  std::uint8_t bDescLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bNbrPorts;
  std::uint16_t wHubCharacteristics;
  std::uint8_t bPwrOn2PwrGood;
  std::uint8_t bHubContrCurrent;
  std::uint8_t bHubHdrDecLat;
  std::uint16_t wHubDelay;
  std::uint16_t DeviceRemovable;
};

/// Binary Object Store (USB 3.2, 9.6.2).
struct TQ_USB_BOS_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint16_t wTotalLength;  ///< bytes of the BOS with all its capabilities
  std::uint8_t bNumDeviceCaps;
};

/// Header of a device capability (USB 3.2, 9.6.2).
struct TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDevCapabilityType;
};

/// USB 2.0 Extension capability, code 0x02 (USB 3.2, 9.6.2.1).
struct TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDevCapabilityType;
  std::uint32_t bmAttributes;
};

/// SuperSpeed USB capability, code 0x03 (USB 3.2, 9.6.2.2).
struct TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDevCapabilityType;
  std::uint8_t bmAttributes;
  std::uint16_t wSpeedsSupported;
  std::uint8_t bFunctionalitySupport;
  std::uint8_t bU1DevExitLat;
  std::uint16_t wU2DevExitLat;
};

/// Container ID capability, code 0x04 (USB 3.2, 9.6.2.3).
struct TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDevCapabilityType;
  std::uint8_t bReserved;
  std::uint8_t ContainerID[16];
};

/// Power Delivery capability, code 0x06 (USB PD 2.0, Power Delivery Capability Descriptor).
struct TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2 {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDevCapabilityType;
  std::uint8_t bReserved;
  std::uint32_t bmAttributes;
  std::uint16_t bmProviderPorts;
  std::uint16_t bmConsumerPorts;
  std::uint16_t bcdBCVersion;
  std::uint16_t bcdPDVersion;
  std::uint16_t bcdUSBTypeCVersion;
};

/// Battery Info capability, code 0x07 (USB PD 2.0, Battery Info Capability Descriptor).
struct TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDevCapabilityType;
  std::uint8_t iBattery;
  std::uint8_t iSerial;
  std::uint8_t iManufacturer;
  std::uint8_t bBatteryId;
  std::uint8_t bReserved;
  std::uint32_t dwChargedThreshold;               ///< mWh
  std::uint32_t dwWeakThreshold;                  ///< mWh
  std::uint32_t dwBatteryDesignCapacity;          ///< mWh
  std::uint32_t dwBatteryLastFullchargeCapacity;  ///< mWh
};

/// PD Consumer Port capability, code 0x08 (USB PD 2.0, PD Consumer Port Capability Descriptor).
struct TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDevCapabilityType;
  std::uint8_t bReserved;
  std::uint16_t bmCapabilities;
  std::uint16_t wMinVoltage;  ///< units of 50 mV
  std::uint16_t wMaxVoltage;  ///< units of 50 mV
  std::uint16_t wReserved;
  std::uint32_t dwMaxOperatingPower;  ///< units of 10 mW
  std::uint32_t dwMaxPeakPower;       ///< units of 10 mW
  std::uint32_t dwMaxPeakPowerTime;   ///< units of 100 ms
};

/// PD Provider Port capability, code 0x09 (USB PD 2.0, PD Provider Port Capability Descriptor).
/// The objects go on, four bytes each, for `bNumOfPDObjects`.
struct TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDevCapabilityType;
  std::uint8_t bReserved1;
  std::uint16_t bmCapabilities;
  std::uint8_t bNumOfPDObjects;
  std::uint8_t bReserved2;
  std::uint32_t wPowerDataObject[1];
};

#pragma pack(pop)

namespace usb_support {

/// Descriptor types (USB 3.2, 9.4 and chapter 10; USB 2.0, tables 9-5 and 11-13; eUSB2 for 0x12).
inline constexpr std::uint8_t kDeviceType = 0x01;
inline constexpr std::uint8_t kConfigurationType = 0x02;
inline constexpr std::uint8_t kStringType = 0x03;
inline constexpr std::uint8_t kInterfaceType = 0x04;
inline constexpr std::uint8_t kEndpointType = 0x05;
inline constexpr std::uint8_t kDeviceQualifierType = 0x06;
inline constexpr std::uint8_t kOtherSpeedConfigurationType = 0x07;
inline constexpr std::uint8_t kInterfaceAssociationType = 0x0B;
inline constexpr std::uint8_t kBosType = 0x0F;
inline constexpr std::uint8_t kDeviceCapabilityType = 0x10;
inline constexpr std::uint8_t kEusb2IsochEndpointCompanionType = 0x12;
inline constexpr std::uint8_t kClassSpecificInterfaceType = 0x24;
inline constexpr std::uint8_t kClassSpecificEndpointType = 0x25;
inline constexpr std::uint8_t kHubType = 0x29;
inline constexpr std::uint8_t kSuperSpeedHubType = 0x2A;
inline constexpr std::uint8_t kSuperSpeedEndpointCompanionType = 0x30;
inline constexpr std::uint8_t kSuperSpeedPlusIsochEndpointCompanionType = 0x31;

/// Device capability types (USB 3.2, 9.6.2; USB PD 2.0 for 0x06 to 0x09).
inline constexpr std::uint8_t kUsb20ExtensionCapability = 0x02;
inline constexpr std::uint8_t kSuperSpeedCapability = 0x03;
inline constexpr std::uint8_t kContainerIdCapability = 0x04;
inline constexpr std::uint8_t kPowerDeliveryCapability = 0x06;
inline constexpr std::uint8_t kBatteryInfoCapability = 0x07;
inline constexpr std::uint8_t kPdConsumerPortCapability = 0x08;
inline constexpr std::uint8_t kPdProviderPortCapability = 0x09;

/// True for a type that can lie over bytes of any alignment and be copied as bytes.
template <typename Record>
inline constexpr bool kIsWireRecord =
    alignof(Record) == 1 &&
    std::is_trivially_copyable_v<Record>&& std::is_standard_layout_v<Record>;

}  // namespace usb_support
