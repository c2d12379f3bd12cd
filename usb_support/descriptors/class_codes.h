// The class codes of devices and interfaces: bDeviceClass, bInterfaceClass and bFunctionClass.
#pragma once

#include <cstdint>

namespace usb_support {

/// Base classes (usb.org, "Defined Class Codes"). The comment says where a code may be: in the
/// device descriptor, in interface descriptors and associations, or in both.
inline constexpr std::uint8_t kPerInterfaceClass = 0x00;         ///< device: see the interfaces
inline constexpr std::uint8_t kAudioClass = 0x01;                ///< interface
inline constexpr std::uint8_t kCommunicationsClass = 0x02;       ///< both
inline constexpr std::uint8_t kHidClass = 0x03;                  ///< interface
inline constexpr std::uint8_t kPhysicalClass = 0x05;             ///< interface
inline constexpr std::uint8_t kImageClass = 0x06;                ///< interface
inline constexpr std::uint8_t kPrinterClass = 0x07;              ///< interface
inline constexpr std::uint8_t kMassStorageClass = 0x08;          ///< interface
inline constexpr std::uint8_t kHubClass = 0x09;                  ///< both
inline constexpr std::uint8_t kCdcDataClass = 0x0A;              ///< interface
inline constexpr std::uint8_t kSmartCardClass = 0x0B;            ///< interface
inline constexpr std::uint8_t kContentSecurityClass = 0x0D;      ///< interface
inline constexpr std::uint8_t kVideoClass = 0x0E;                ///< interface
inline constexpr std::uint8_t kPersonalHealthcareClass = 0x0F;   ///< interface
inline constexpr std::uint8_t kAudioVideoClass = 0x10;           ///< interface
inline constexpr std::uint8_t kBillboardClass = 0x11;            ///< device
inline constexpr std::uint8_t kTypeCBridgeClass = 0x12;          ///< interface
inline constexpr std::uint8_t kBulkDisplayClass = 0x13;          ///< interface
inline constexpr std::uint8_t kMctpClass = 0x14;                 ///< interface
inline constexpr std::uint8_t kI3cClass = 0x3C;                  ///< interface
inline constexpr std::uint8_t kDiagnosticClass = 0xDC;           ///< both
inline constexpr std::uint8_t kWirelessControllerClass = 0xE0;   ///< interface
inline constexpr std::uint8_t kMiscellaneousClass = 0xEF;        ///< both
inline constexpr std::uint8_t kApplicationSpecificClass = 0xFE;  ///< interface
inline constexpr std::uint8_t kVendorSpecificClass = 0xFF;       ///< both

}  // namespace usb_support
