// Records that the suite has no names for, laid out like those of records.h and read in the same
// way:
//
//   auto const hid = descriptor.As<HidDescriptor>();
#pragma once

#include <cstdint>

#include <usb_support/descriptors/records.h>

namespace usb_support {

#pragma pack(push, 1)

/// SuperSpeed endpoint companion (USB 3.2, 9.6.7, table 9-27).
struct SuperSpeedEndpointCompanionDescriptor {
  std::uint8_t bLength;             ///< 6
  std::uint8_t bDescriptorType;     ///< 0x30
  std::uint8_t bMaxBurst;           ///< packets in a burst less 1: 0 to 15
  std::uint8_t bmAttributes;        ///< bulk: bits 4..0 streams, 2^n; isochronous: 7 SSP, 1..0 mult
  std::uint16_t wBytesPerInterval;  ///< bytes in a service interval, periodic endpoints only
};

/// SuperSpeedPlus isochronous endpoint companion (USB 3.2, 9.6.8, table 9-28).
struct SuperSpeedPlusIsochEndpointCompanionDescriptor {
  std::uint8_t bLength;              ///< 8
  std::uint8_t bDescriptorType;      ///< 0x31
  std::uint16_t wReserved;           ///< 0
  std::uint32_t dwBytesPerInterval;  ///< bytes in a service interval
};

/// SuperSpeedPlus USB capability, code 0x0A (USB 3.2, 9.6.2.5, table 9-19). More sublink attributes
/// follow, four bytes each: bits 4..0 of bmAttributes are their number less 1.
struct SuperSpeedPlusCapabilityDescriptor {
  std::uint8_t bLength;                 ///< 16, and 4 for each further sublink attribute
  std::uint8_t bDescriptorType;         ///< 0x10
  std::uint8_t bDevCapabilityType;      ///< 0x0A
  std::uint8_t bReserved;               ///< 0
  std::uint32_t bmAttributes;           ///< bits: 8..5 sublink speed IDs less 1, 4..0 see above
  std::uint16_t wFunctionalitySupport;  ///< bits: 3..0 speed ID, 11..8 Rx lanes, 15..12 Tx lanes
  std::uint16_t wReserved;              ///< 0
  std::uint32_t bmSublinkSpeedAttr[1];  ///< the first sublink attribute
};

/// Platform capability, code 0x05 (USB 3.2, 9.6.2.4). The platform's own data follows.
struct PlatformCapabilityDescriptor {
  std::uint8_t bLength;                     ///< 20, and the platform's data
  std::uint8_t bDescriptorType;             ///< 0x10
  std::uint8_t bDevCapabilityType;          ///< 0x05
  std::uint8_t bReserved;                   ///< 0
  std::uint8_t PlatformCapabilityUUID[16];  ///< the platform that it is for
};

/// Billboard capability, code 0x0D (USB Billboard 1.2.2, table 3-6). The modes follow, four bytes
/// each: wSVID, bAlternateOrUSB4Mode, iAlternateOrUSB4ModeString.
struct BillboardCapabilityDescriptor {
  std::uint8_t bLength;                        ///< 44, and 4 for each mode
  std::uint8_t bDescriptorType;                ///< 0x10
  std::uint8_t bDevCapabilityType;             ///< 0x0D
  std::uint8_t iAddtionalInfoURL;              ///< string index (the standard's own spelling)
  std::uint8_t bNumberOfAlternateOrUSB4Modes;  ///< how many modes follow
  std::uint8_t bPreferredAlternateOrUSB4Mode;  ///< number of the preferred one
  std::uint16_t VCONNPower;                    ///< bits: 15 no VCONN needed, 2..0 power
  std::uint8_t bmConfigured[32];               ///< two bits for each mode: result of set-up
  std::uint16_t bcdVersion;                    ///< release of Billboard, BCD
  std::uint8_t bAdditionalFailureInfo;         ///< bits: 0 lack of power, 1 no USB PD
  std::uint8_t bReserved;                      ///< 0
};

/// HID (HID 1.11, 6.2.1). Type and length repeat, three bytes each, for `bNumDescriptors`.
struct HidDescriptor {
  std::uint8_t bLength;                  ///< 6, and 3 for each class descriptor
  std::uint8_t bDescriptorType;          ///< 0x21
  std::uint16_t bcdHID;                  ///< release of HID, BCD
  std::uint8_t bCountryCode;             ///< 0: not localised
  std::uint8_t bNumDescriptors;          ///< class descriptors, at least 1
  std::uint8_t bClassDescriptorType;     ///< of the first: 0x22 report, 0x23 physical
  std::uint16_t wClassDescriptorLength;  ///< of the first, in bytes
};

/// CDC header (CDC 1.2, 5.2.3.1, table 15).
struct CdcHeaderDescriptor {
  std::uint8_t bFunctionLength;     ///< 5
  std::uint8_t bDescriptorType;     ///< 0x24
  std::uint8_t bDescriptorSubtype;  ///< 0x00
  std::uint16_t bcdCDC;             ///< release of CDC, BCD
};

/// CDC union (CDC 1.2, 5.2.3.2, table 16). More subordinate interfaces follow, one byte each, to
/// the end.
struct CdcUnionDescriptor {
  std::uint8_t bFunctionLength;           ///< 4, and 1 for each subordinate interface
  std::uint8_t bDescriptorType;           ///< 0x24
  std::uint8_t bDescriptorSubtype;        ///< 0x06
  std::uint8_t bControlInterface;         ///< number of the controlling interface
  std::uint8_t bSubordinateInterface[1];  ///< number of the first subordinate interface
};

#pragma pack(pop)

static_assert(kHasWireSize<SuperSpeedEndpointCompanionDescriptor, 6>, "USB 3.2, table 9-27");
static_assert(kHasWireSize<SuperSpeedPlusIsochEndpointCompanionDescriptor, 8>,
              "USB 3.2, table 9-28");
static_assert(kHasWireSize<SuperSpeedPlusCapabilityDescriptor, 16>, "USB 3.2, table 9-19");
static_assert(kHasWireSize<PlatformCapabilityDescriptor, 20>, "USB 3.2, 9.6.2.4");
static_assert(kHasWireSize<BillboardCapabilityDescriptor, 44>, "USB Billboard 1.2.2, table 3-6");
static_assert(kHasWireSize<HidDescriptor, 9>, "HID 1.11, 6.2.1");
static_assert(kHasWireSize<CdcHeaderDescriptor, 5>, "CDC 1.2, table 15");
static_assert(kHasWireSize<CdcUnionDescriptor, 5>, "CDC 1.2, table 16");

/// Descriptor and capability types of these records.
inline constexpr std::uint8_t kHidType = 0x21;  ///< HID
inline constexpr std::uint8_t kPlatformCapability = 0x05;
inline constexpr std::uint8_t kSuperSpeedPlusCapability = 0x0A;
inline constexpr std::uint8_t kBillboardCapability = 0x0D;

/// Subtypes of CDC functional descriptors (CDC 1.2, table 13).
inline constexpr std::uint8_t kCdcHeaderSubtype = 0x00;
inline constexpr std::uint8_t kCdcUnionSubtype = 0x06;

}  // namespace usb_support
