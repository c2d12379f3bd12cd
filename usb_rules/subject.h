// The input of a judgement: the descriptors of one device as spans. A subject is a plain value; it
// owns nothing, and the bytes must exist during the judgement. They may have any content.
//
//   usb_rules::Subject subject;
//   subject.device = {.bytes = device, .presence = usb_rules::Presence::kGiven};
//   subject.configurations = configurations;  // a span of Run
//   usb_rules::Judgement const judgement = usb_rules::Judge(subject);
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/context.h>

namespace usb_rules {

using usb_fields::Speed;

/// The state of one answer of a device.
enum class Presence : std::uint8_t {
  kNotCaptured,  ///< the descriptor was not requested, or the answer was not stored
  kRefused,      ///< the device has no such descriptor: it answered with a STALL
  kGiven,        ///< the bytes are given
};

/// The answer to one request.
struct Run {
  std::span<std::uint8_t const> bytes = {};
  Presence presence = Presence::kNotCaptured;
  std::size_t fileOffset = 0;    ///< offset of the bytes in their source
  std::string_view origin = {};  ///< the source, for messages
};

/// A string descriptor, or the fact that the device has none with this index. Index 0 lists the
/// languages.
struct StringRun {
  std::uint8_t index = 0;
  std::uint16_t language = 0;
  Run run;
};

/// The answer to a request to an interface.
struct InterfaceRun {
  std::uint8_t interfaceNumber = 0;
  Run run;
};

/// A device with its answers. Answers that were not captured are left out, and rules that need them
/// are not run.
struct Subject {
  Run device;
  std::span<Run const> configurations = {};  ///< of the current speed, in order of index
  Presence configurationsPresence = Presence::kNotCaptured;  ///< kGiven: all that exist are given
  std::span<Run const> otherSpeedConfigurations = {};
  Presence otherSpeed = Presence::kNotCaptured;  ///< of all of otherSpeedConfigurations
  Run qualifier;
  Run bos;
  Run hub;
  std::span<StringRun const> strings = {};
  Presence stringsPresence = Presence::kNotCaptured;  ///< kGiven: all that exist are in `strings`
  std::span<InterfaceRun const> reports = {};         ///< HID report descriptors
  std::span<InterfaceRun const> groupTerminalBlocks = {};  ///< of MIDI 2.0 (MIDI 2.0, 5.4)
  Speed speed = Speed::kUnknown;  ///< from the source or the user; kUnknown: it is inferred
};

}  // namespace usb_rules
