// The standard USB descriptors as packed records, byte for byte as on the wire, so that a pointer
// into a descriptor buffer can be read through a record at any alignment.
//
// A record does not guarantee that its bytes exist. Read bytes that a device supplied through
// ReadRecord (read_record.h), which never reads past the end of the run.
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
  std::uint8_t bLength;          ///< length of the whole descriptor in bytes; 0 is invalid
  std::uint8_t bDescriptorType;  ///< one of the kSomeType codes below
};

/// Device (USB 2.0, table 9-8).
struct TQ_USB_DEVICE_DESCRIPTOR {
  std::uint8_t bLength;          ///< 18
  std::uint8_t bDescriptorType;  ///< 0x01
  std::uint16_t bcdUSB;          ///< release of USB, BCD: 0x0210 is 2.1
  std::uint8_t bDeviceClass;     ///< class code; 0: that of each interface; 0xFF: vendor-specific
  std::uint8_t bDeviceSubClass;  ///< subclass of the class
  std::uint8_t bDeviceProtocol;  ///< protocol of class and subclass
  std::uint8_t bMaxPacketSize0;  ///< endpoint zero's packet in bytes; from SuperSpeed on 9, for 2^9
  std::uint16_t idVendor;        ///< the vendor's number, from the USB-IF
  std::uint16_t idProduct;       ///< the vendor's number for the product
  std::uint16_t bcdDevice;       ///< release of the device, BCD
  std::uint8_t iManufacturer;    ///< string index; 0: none
  std::uint8_t iProduct;         ///< string index; 0: none
  std::uint8_t iSerialNumber;    ///< string index; 0: none
  std::uint8_t bNumConfigurations;  ///< at the current speed
};

/// Configuration, and with type 7 other-speed configuration (USB 2.0, tables 9-10 and 9-11).
struct TQ_USB_CONFIGURATION_DESCRIPTOR {
  std::uint8_t bLength;              ///< 9
  std::uint8_t bDescriptorType;      ///< 0x02, or 0x07 for the other speed
  std::uint16_t wTotalLength;        ///< bytes of the configuration with all that follows it
  std::uint8_t bNumInterfaces;       ///< alternate settings not counted
  std::uint8_t bConfigurationValue;  ///< the value by which SET_CONFIGURATION selects it
  std::uint8_t iConfiguration;       ///< string index; 0: none
  std::uint8_t bmAttributes;         ///< bits: 7 always 1, 6 self-powered, 5 remote wakeup
  std::uint8_t bMaxPower;            ///< units of 2 mA, from SuperSpeed on 8 mA
};

/// String (USB 2.0, tables 9-15 and 9-16). The text continues up to `bLength` bytes in all.
struct TQ_USB_STRING_DESCRIPTOR {
  std::uint8_t bLength;          ///< 2, and 2 for each code unit
  std::uint8_t bDescriptorType;  ///< 0x03
  std::uint16_t bString[1];  ///< first UTF-16 code unit; in string 0 the first language identifier
};

/// Interface (USB 2.0, table 9-12).
struct TQ_USB_INTERFACE_DESCRIPTOR {
  std::uint8_t bLength;             ///< 9
  std::uint8_t bDescriptorType;     ///< 0x04
  std::uint8_t bInterfaceNumber;    ///< from 0 within the configuration
  std::uint8_t bAlternateSetting;   ///< an interface starts with 0
  std::uint8_t bNumEndpoints;       ///< without endpoint zero
  std::uint8_t bInterfaceClass;     ///< class code; 0xFF: vendor-specific
  std::uint8_t bInterfaceSubClass;  ///< subclass of the class
  std::uint8_t bInterfaceProtocol;  ///< protocol of class and subclass
  std::uint8_t iInterface;          ///< string index; 0: none
};

/// Endpoint (USB 2.0, table 9-13).
struct TQ_USB_ENDPOINT_DESCRIPTOR {
  std::uint8_t bLength;           ///< 7
  std::uint8_t bDescriptorType;   ///< 0x05
  std::uint8_t bEndpointAddress;  ///< bit 7: 1 IN, 0 OUT; bits 3..0: number
  std::uint8_t bmAttributes;      ///< bits 1..0: 0 control, 1 isochronous, 2 bulk, 3 interrupt
  std::uint16_t wMaxPacketSize;   ///< bits 10..0: bytes; 12..11: more transactions per microframe
  std::uint8_t bInterval;  ///< between two polls; the unit depends on speed and transfer type
};

/// Device qualifier (USB 2.0, table 9-9).
struct TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR {
  std::uint8_t bLength;             ///< 10
  std::uint8_t bDescriptorType;     ///< 0x06
  std::uint16_t bcdUSB;             ///< release of USB, BCD; at least 0x0200
  std::uint8_t bDeviceClass;        ///< class code at the other speed
  std::uint8_t bDeviceSubClass;     ///< subclass of the class
  std::uint8_t bDeviceProtocol;     ///< protocol of class and subclass
  std::uint8_t bMaxPacketSize0;     ///< bytes in a packet of endpoint zero at the other speed
  std::uint8_t bNumConfigurations;  ///< at the other speed
  std::uint8_t bReserved;           ///< 0
};

/// Interface association (USB 3.2, 9.6.4).
struct TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR {
  std::uint8_t bLength;            ///< 8
  std::uint8_t bDescriptorType;    ///< 0x0B
  std::uint8_t bFirstInterface;    ///< number of the function's first interface
  std::uint8_t bInterfaceCount;    ///< number of consecutive interfaces that belong to it
  std::uint8_t bFunctionClass;     ///< class code of the function
  std::uint8_t bFunctionSubClass;  ///< subclass of the class
  std::uint8_t bFunctionProtocol;  ///< protocol of class and subclass
  std::uint8_t iFunction;          ///< string index; 0: none
};

/// Start of a class-specific descriptor (USB Video Class 1.5, 3.7.2 and 3.9.2).
struct TQ_USB_CLASS_SPECIFIC_DESCRIPTOR {
  std::uint8_t bLength;             ///< depends on the subtype
  std::uint8_t bDescriptorType;     ///< 0x24 interface, 0x25 endpoint
  std::uint8_t bDescriptorSubtype;  ///< the kind of descriptor; depends on the interface class
};

/// Hub (USB 2.0, table 11-13). DeviceRemovable and then PortPwrCtrlMask follow, with one bit for
/// each port, each rounded up to whole bytes.
struct TQ_USB_HUB_DESCRIPTOR {
  std::uint8_t bDescLength;           ///< 7, and both bit maps
  std::uint8_t bDescriptorType;       ///< 0x29
  std::uint8_t bNbrPorts;             ///< downstream ports
  std::uint16_t wHubCharacteristics;  ///< power switching, over-current, TT think time, indicators
  std::uint8_t bPwrOn2PwrGood;        ///< units of 2 ms until a port's power is good
  std::uint8_t bHubContrCurrent;      ///< maximum mA that the hub controller takes
  std::uint8_t DeviceRemovable[1];    ///< bit n: the device at port n is not removable; bit 0 is 0
};

/// Enhanced SuperSpeed hub (USB 3.2, chapter 10).
struct TQ_USB_30_HUB_DESCRIPTOR {
  std::uint8_t bDescLength;           ///< 12
  std::uint8_t bDescriptorType;       ///< 0x2A
  std::uint8_t bNbrPorts;             ///< downstream ports
  std::uint16_t wHubCharacteristics;  ///< power switching, compound device, over-current protection
  std::uint8_t bPwrOn2PwrGood;        ///< units of 2 ms until a port's power is good
  std::uint8_t bHubContrCurrent;      ///< maximum current that the hub controller takes
  std::uint8_t bHubHdrDecLat;         ///< time to decode a packet header, units of 0.1 us
  std::uint16_t wHubDelay;            ///< ns that the hub delays a header packet
  std::uint16_t DeviceRemovable;      ///< bit n: the device at port n is not removable; bit 0 is 0
};

/// Binary Object Store (USB 3.2, 9.6.2).
struct TQ_USB_BOS_DESCRIPTOR {
  std::uint8_t bLength;          ///< 5
  std::uint8_t bDescriptorType;  ///< 0x0F
  std::uint16_t wTotalLength;    ///< bytes of the BOS with all its capabilities
  std::uint8_t bNumDeviceCaps;   ///< number of device capabilities that follow
};

/// Header of a device capability (USB 3.2, 9.6.2).
struct TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR {
  std::uint8_t bLength;             ///< depends on the capability
  std::uint8_t bDescriptorType;     ///< 0x10
  std::uint8_t bDevCapabilityType;  ///< one of the kSomeCapability codes below, or another
};

/// USB 2.0 Extension capability, code 0x02 (USB 3.2, 9.6.2.1).
struct TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR {
  std::uint8_t bLength;             ///< 7
  std::uint8_t bDescriptorType;     ///< 0x10
  std::uint8_t bDevCapabilityType;  ///< 0x02
  std::uint32_t bmAttributes;       ///< bit 1: link power management
};

/// SuperSpeed USB capability, code 0x03 (USB 3.2, 9.6.2.2).
struct TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR {
  std::uint8_t bLength;                ///< 10
  std::uint8_t bDescriptorType;        ///< 0x10
  std::uint8_t bDevCapabilityType;     ///< 0x03
  std::uint8_t bmAttributes;           ///< bit 1: latency tolerance messages
  std::uint16_t wSpeedsSupported;      ///< bits: 0 low, 1 full, 2 high speed, 3 5 Gb/s
  std::uint8_t bFunctionalitySupport;  ///< bit number of the lowest speed with all functions
  std::uint8_t bU1DevExitLat;          ///< maximum us from U1 to U0, 0 to 10
  std::uint16_t wU2DevExitLat;         ///< maximum us from U2 to U0, 0 to 2047
};

/// Container ID capability, code 0x04 (USB 3.2, 9.6.2.3).
struct TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR {
  std::uint8_t bLength;             ///< 20
  std::uint8_t bDescriptorType;     ///< 0x10
  std::uint8_t bDevCapabilityType;  ///< 0x04
  std::uint8_t bReserved;           ///< 0
  std::uint8_t ContainerID[16];     ///< UUID of the device
};

/// Power Delivery capability, code 0x06 (USB PD 2.0, Power Delivery Capability Descriptor).
struct TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2 {
  std::uint8_t bLength;              ///< 18
  std::uint8_t bDescriptorType;      ///< 0x10
  std::uint8_t bDevCapabilityType;   ///< 0x06
  std::uint8_t bReserved;            ///< 0
  std::uint32_t bmAttributes;        ///< bits: 1 battery charging, 2 USB PD, 3 provider, 4 consumer
  std::uint16_t bmProviderPorts;     ///< bit n: port n can provide power
  std::uint16_t bmConsumerPorts;     ///< bit n: port n can consume power
  std::uint16_t bcdBCVersion;        ///< release of Battery Charging, BCD
  std::uint16_t bcdPDVersion;        ///< release of USB PD, BCD
  std::uint16_t bcdUSBTypeCVersion;  ///< release of USB Type-C, BCD
};

/// Battery Info capability, code 0x07 (USB PD 2.0, Battery Info Capability Descriptor).
struct TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR {
  std::uint8_t bLength;                           ///< 24
  std::uint8_t bDescriptorType;                   ///< 0x10
  std::uint8_t bDevCapabilityType;                ///< 0x07
  std::uint8_t iBattery;                          ///< string index: the battery's name
  std::uint8_t iSerial;                           ///< string index: the battery's serial number
  std::uint8_t iManufacturer;                     ///< string index: the battery's maker
  std::uint8_t bBatteryId;                        ///< its number in status messages
  std::uint8_t bReserved;                         ///< 0
  std::uint32_t dwChargedThreshold;               ///< mWh above which it counts as charged
  std::uint32_t dwWeakThreshold;                  ///< mWh above which the device can power up
  std::uint32_t dwBatteryDesignCapacity;          ///< mWh when new
  std::uint32_t dwBatteryLastFullchargeCapacity;  ///< mWh when last full
};

/// PD Consumer Port capability, code 0x08 (USB PD 2.0, PD Consumer Port Capability Descriptor).
struct TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR {
  std::uint8_t bLength;               ///< 24
  std::uint8_t bDescriptorType;       ///< 0x10
  std::uint8_t bDevCapabilityType;    ///< 0x08
  std::uint8_t bReserved;             ///< 0
  std::uint16_t bmCapabilities;       ///< bits: 0 battery charging, 1 USB PD, 2 USB Type-C current
  std::uint16_t wMinVoltage;          ///< units of 50 mV
  std::uint16_t wMaxVoltage;          ///< units of 50 mV
  std::uint16_t wReserved;            ///< 0
  std::uint32_t dwMaxOperatingPower;  ///< units of 10 mW
  std::uint32_t dwMaxPeakPower;       ///< units of 10 mW
  std::uint32_t dwMaxPeakPowerTime;   ///< units of 100 ms
};

/// PD Provider Port capability, code 0x09 (USB PD 2.0, PD Provider Port Capability Descriptor).
/// More objects follow, four bytes each, `bNumOfPDObjects` in all.
struct TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR {
  std::uint8_t bLength;               ///< 8, and 4 for each object
  std::uint8_t bDescriptorType;       ///< 0x10
  std::uint8_t bDevCapabilityType;    ///< 0x09
  std::uint8_t bReserved1;            ///< 0
  std::uint16_t bmCapabilities;       ///< bits: 0 battery charging, 1 USB PD, 2 USB Type-C current
  std::uint8_t bNumOfPDObjects;       ///< number of power data objects
  std::uint8_t bReserved2;            ///< 0
  std::uint32_t wPowerDataObject[1];  ///< the first power data object, as in a PD message
};

#pragma pack(pop)

namespace usb_support {

/// Descriptor types (USB 3.2, 9.4 and chapter 10; USB 2.0, tables 9-5 and 11-13; eUSB2 for 0x12).
/// The debuggers show the names in the comments (debugger/make_views.py).
inline constexpr std::uint8_t kDeviceType = 0x01;                   ///< Device
inline constexpr std::uint8_t kConfigurationType = 0x02;            ///< Configuration
inline constexpr std::uint8_t kStringType = 0x03;                   ///< String
inline constexpr std::uint8_t kInterfaceType = 0x04;                ///< Interface
inline constexpr std::uint8_t kEndpointType = 0x05;                 ///< Endpoint
inline constexpr std::uint8_t kDeviceQualifierType = 0x06;          ///< Device Qualifier
inline constexpr std::uint8_t kOtherSpeedConfigurationType = 0x07;  ///< Other Speed Configuration
inline constexpr std::uint8_t kInterfaceAssociationType = 0x0B;     ///< Interface Association
inline constexpr std::uint8_t kBosType = 0x0F;                      ///< BOS
inline constexpr std::uint8_t kDeviceCapabilityType = 0x10;         ///< BOS Capability
inline constexpr std::uint8_t kEusb2IsochEndpointCompanionType =
    0x12;  ///< eUSB2 Isochronous Endpoint Companion
inline constexpr std::uint8_t kClassSpecificInterfaceType = 0x24;  ///< Class-Specific Interface
inline constexpr std::uint8_t kClassSpecificEndpointType = 0x25;   ///< Class-Specific Endpoint
inline constexpr std::uint8_t kHubType = 0x29;                     ///< Hub
inline constexpr std::uint8_t kSuperSpeedHubType = 0x2A;           ///< SuperSpeed Hub
inline constexpr std::uint8_t kSuperSpeedEndpointCompanionType =
    0x30;  ///< SuperSpeed Endpoint Companion
inline constexpr std::uint8_t kSuperSpeedPlusIsochEndpointCompanionType =
    0x31;  ///< SuperSpeedPlus Isochronous Endpoint Companion

/// Device capability types (USB 3.2, 9.6.2; USB PD 2.0 for 0x06 to 0x09).
inline constexpr std::uint8_t kUsb20ExtensionCapability = 0x02;
inline constexpr std::uint8_t kSuperSpeedCapability = 0x03;
inline constexpr std::uint8_t kContainerIdCapability = 0x04;
inline constexpr std::uint8_t kPowerDeliveryCapability = 0x06;
inline constexpr std::uint8_t kBatteryInfoCapability = 0x07;
inline constexpr std::uint8_t kPdConsumerPortCapability = 0x08;
inline constexpr std::uint8_t kPdProviderPortCapability = 0x09;

/// True for a type that has no alignment and can be copied as bytes.
template <typename Record>
inline constexpr bool kIsWireRecord =
    alignof(Record) == 1 &&
    std::is_trivially_copyable_v<Record>&& std::is_standard_layout_v<Record>;

/// True for a record that has this many bytes on the wire. Packed fields in the order of the
/// standard's table have only one layout.
template <typename Record, std::size_t kBytes>
inline constexpr bool kHasWireSize = kIsWireRecord<Record> && sizeof(Record) == kBytes;

// The sizes of the standards' tables; an open-ended record has the first element of its last field.
static_assert(kHasWireSize<TQ_USB_COMMON_DESCRIPTOR, 2>, "USB 2.0, 9.5");
static_assert(kHasWireSize<TQ_USB_DEVICE_DESCRIPTOR, 18>, "USB 2.0, table 9-8");
static_assert(kHasWireSize<TQ_USB_CONFIGURATION_DESCRIPTOR, 9>, "USB 2.0, table 9-10");
static_assert(kHasWireSize<TQ_USB_STRING_DESCRIPTOR, 4>, "USB 2.0, tables 9-15 and 9-16");
static_assert(kHasWireSize<TQ_USB_INTERFACE_DESCRIPTOR, 9>, "USB 2.0, table 9-12");
static_assert(kHasWireSize<TQ_USB_ENDPOINT_DESCRIPTOR, 7>, "USB 2.0, table 9-13");
static_assert(kHasWireSize<TQ_USB_DEVICE_QUALIFIER_DESCRIPTOR, 10>, "USB 2.0, table 9-9");
static_assert(kHasWireSize<TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR, 8>, "USB 3.2, 9.6.4");
static_assert(kHasWireSize<TQ_USB_CLASS_SPECIFIC_DESCRIPTOR, 3>, "USB Video Class 1.5, 3.7.2");
static_assert(kHasWireSize<TQ_USB_HUB_DESCRIPTOR, 8>, "USB 2.0, table 11-13");
static_assert(kHasWireSize<TQ_USB_30_HUB_DESCRIPTOR, 12>, "USB 3.2, chapter 10");
static_assert(kHasWireSize<TQ_USB_BOS_DESCRIPTOR, 5>, "USB 3.2, 9.6.2");
static_assert(kHasWireSize<TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR, 3>, "USB 3.2, 9.6.2");
static_assert(kHasWireSize<TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR, 7>,
              "USB 3.2, 9.6.2.1");
static_assert(kHasWireSize<TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR, 10>,
              "USB 3.2, 9.6.2.2");
static_assert(kHasWireSize<TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR, 20>,
              "USB 3.2, 9.6.2.3");
static_assert(kHasWireSize<TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2, 18>,
              "USB PD 2.0, Power Delivery Capability Descriptor");
static_assert(kHasWireSize<TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR, 24>,
              "USB PD 2.0, Battery Info Capability Descriptor");
static_assert(kHasWireSize<TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR, 24>,
              "USB PD 2.0, PD Consumer Port Capability Descriptor");
static_assert(kHasWireSize<TQ_USB_PD_PROVIDER_PORT_DESCRIPTOR, 12>,
              "USB PD 2.0, PD Provider Port Capability Descriptor");

}  // namespace usb_support
