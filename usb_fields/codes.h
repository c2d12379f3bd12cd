// The descriptor types and class codes that code needs by name; the tables have all of them. Not
// installed.
#pragma once

#include <cstdint>

namespace usb_fields::codes {

inline constexpr std::uint8_t kDeviceType = 0x01;
inline constexpr std::uint8_t kConfigurationType = 0x02;
inline constexpr std::uint8_t kInterfaceType = 0x04;
inline constexpr std::uint8_t kEndpointType = 0x05;
inline constexpr std::uint8_t kOtherSpeedConfigurationType = 0x07;
inline constexpr std::uint8_t kAssociationType = 0x0B;
inline constexpr std::uint8_t kBosType = 0x0F;
inline constexpr std::uint8_t kHidType = 0x21;
inline constexpr std::uint8_t kReportType = 0x22;
inline constexpr std::uint8_t kClassSpecificInterfaceType = 0x24;
inline constexpr std::uint8_t kCompanionType = 0x30;
inline constexpr std::uint8_t kPlusCompanionType = 0x31;

inline constexpr std::uint8_t kAudioClass = 0x01;
inline constexpr std::uint8_t kHidClass = 0x03;
inline constexpr std::uint8_t kHubClass = 0x09;
inline constexpr std::uint8_t kVideoClass = 0x0E;
inline constexpr std::uint8_t kHealthcareClass = 0x0F;

}  // namespace usb_fields::codes
