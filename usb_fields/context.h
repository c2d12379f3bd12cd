// Everything that a descriptor's meaning depends on besides its own bytes. A context is a small
// value: copy it freely; it refers only to constant tables.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/export.h>

namespace usb_fields {

/// The speed at which the device was read, in ascending order.
enum class Speed : std::uint8_t { kUnknown, kLow, kFull, kHigh, kSuper, kSuperPlus };

/// The request that a descriptor was read with.
enum class Request : std::uint8_t {
  kDescriptor,           ///< GET_DESCRIPTOR: a configuration, a BOS, a string ...
  kMsOs10,               ///< the vendor request of Microsoft OS 1.0
  kMsOs20,               ///< the vendor request of Microsoft OS 2.0
  kWebUsb,               ///< the vendor request of WebUSB
  kHidPhysical,          ///< GET_DESCRIPTOR of HID physical descriptors
  kAudioHighCapability,  ///< Get High Capability Descriptor of audio 3.0
  kAudioString,          ///< Get String of audio 3.0
  kGroupTerminalBlocks,  ///< GET_DESCRIPTOR of MIDI 2.0 group terminal blocks
};

/// Whether an interface of another class has the class-specific descriptors of CDC.
enum class CdcGuess : std::uint8_t { kNotSeen, kNo, kYes };

/// The context at one place in a run of descriptors. Pass each descriptor to Follow after reading
/// it.
struct Context {
  Speed speed = Speed::kUnknown;           ///< at which the device was read; see SpeedHere
  Request request = Request::kDescriptor;  ///< the request that the run answers
  std::int16_t index = -1;                 ///< the descriptor index of the request; -1: not known
  /// For descriptors within a descriptor (the segments of audio 3.0): the id of the outer layout.
  std::string_view parent = {};

  bool isOtherSpeed = false;            ///< in an other-speed configuration
  bool hasInterface = false;            ///< an interface descriptor has been read
  bool hasEndpoint = false;             ///< and after it an endpoint descriptor
  std::uint8_t interfaceClass = 0;      ///< of the current interface
  std::uint8_t interfaceSubclass = 0;   ///< of the current interface
  std::uint8_t interfaceProtocol = 0;   ///< of the current interface
  std::uint8_t endpointAttributes = 0;  ///< bmAttributes of the last endpoint
  std::uint16_t videoRelease = 0;       ///< bcdUVC of the last video control header
  CdcGuess cdc = CdcGuess::kNotSeen;    ///< decided by the first class-specific descriptor

  /// The speed that the descriptors at this place are for; in an other-speed configuration not the
  /// one at which the device was read. Unknown is treated as high.
  Speed SpeedHere() const noexcept {
    Speed const read = speed == Speed::kUnknown ? Speed::kHigh : speed;
    return !isOtherSpeed ? read : read <= Speed::kFull ? Speed::kHigh : Speed::kFull;
  }

  /// Updates the context with a descriptor; `bytes` may continue after it.
  USB_FIELDS_API void Follow(std::span<std::uint8_t const> bytes) noexcept;
};

}  // namespace usb_fields
