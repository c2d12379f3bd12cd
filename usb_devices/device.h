// A device as its descriptors tell: what it answered when it was asked for each of them.
//
// A Request is the SETUP packet of a read without its length. It says all that GET_DESCRIPTOR can
// tell apart: type and index, the language of a string, the interface of a HID report, the class
// request of a hub descriptor, the vendor's own request of a Microsoft OS set.
//
//   Device const device = ...;
//   if (std::optional<ByteSpan> const bos = device.Bytes(Request::Descriptor(kBosType))) {
//     Show(*bos);  // may be empty: the device answered with no bytes
//   }
//   Answer const* const string = device.Find(Request::String(2, 0x0409));
//   // null: nobody asked; else string->outcome tells an answer from a stall and from a failure
//
// Memory: a device owns its bytes. Spans and pointers are good until it is moved from, assigned to
// or gone.
// Threads: a device never changes, so any number of threads may look at one.
// Failure: looking throws nothing. Making throws std::bad_alloc only.
#pragma once

#include <compare>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <usb_devices/bytes.h>
#include <usb_devices/export.h>

namespace usb_devices {

/// Descriptor types (USB 3.2, table 9-6; HID 1.11, 7.1; USB 2.0, 11.23.2.1; USB 3.2, 10.15.2.1).
inline constexpr std::uint8_t kDeviceType = 0x01;
inline constexpr std::uint8_t kConfigurationType = 0x02;
inline constexpr std::uint8_t kStringType = 0x03;
inline constexpr std::uint8_t kInterfaceType = 0x04;
inline constexpr std::uint8_t kEndpointType = 0x05;
inline constexpr std::uint8_t kQualifierType = 0x06;
inline constexpr std::uint8_t kOtherSpeedConfigurationType = 0x07;
inline constexpr std::uint8_t kBosType = 0x0F;
inline constexpr std::uint8_t kHidType = 0x21;
inline constexpr std::uint8_t kHidReportType = 0x22;
inline constexpr std::uint8_t kHubType = 0x29;
inline constexpr std::uint8_t kSuperSpeedHubType = 0x2A;

/// The most bytes of one answer: wLength has 16 bits.
inline constexpr std::size_t kMaxAnswerSize = 65535;

/// The speed at which a device is connected.
enum class Speed : std::uint8_t { kUnknown, kLow, kFull, kHigh, kSuper, kSuperPlus };

/// "low", "full", "high", "super", "super-plus"; "unknown".
USB_DEVICES_API std::string_view NameOf(Speed speed) noexcept;

/// The speed with a name; nothing when there is none.
USB_DEVICES_API std::optional<Speed> SpeedOf(std::string_view name) noexcept;

/// What was asked: a SETUP packet without wLength (USB 3.2, table 9-2).
struct Request {
  std::uint8_t requestType = 0;  ///< bmRequestType
  std::uint8_t request = 0;      ///< bRequest
  std::uint16_t value = 0;       ///< wValue: the type in the high byte, the index in the low one
  std::uint16_t index = 0;       ///< wIndex: a language, an interface, or 0

  // clang-tidy 14 takes the zero that the result is compared with for a null pointer.
  auto operator<=>(Request const&) const = default;  // NOLINT(modernize-use-nullptr)

  /// GET_DESCRIPTOR to the device.
  static constexpr Request Descriptor(std::uint8_t type, std::uint8_t index = 0) noexcept {
    return {kFromDevice, kGetDescriptor, Value(type, index), 0};
  }
  /// GET_DESCRIPTOR for a string; string 0, the list of languages, has language 0.
  static constexpr Request String(std::uint8_t index, std::uint16_t language) noexcept {
    return {kFromDevice, kGetDescriptor, Value(kStringType, index), language};
  }
  /// The string that a device with Microsoft OS 1.0 descriptors has: index EEh, without a language.
  static constexpr Request MicrosoftString() noexcept { return String(0xEE, 0); }
  /// GET_DESCRIPTOR to an interface (HID 1.11, 7.1.1).
  static constexpr Request OfInterface(std::uint8_t type, std::uint8_t interfaceNumber,
                                       std::uint8_t index = 0) noexcept {
    return {kFromInterface, kGetDescriptor, Value(type, index), interfaceNumber};
  }
  static constexpr Request HidReport(std::uint8_t interfaceNumber) noexcept {
    return OfInterface(kHidReportType, interfaceNumber);
  }
  /// The class request for a hub descriptor: kHubType or kSuperSpeedHubType (USB 2.0, 11.24.2.5).
  static constexpr Request Hub(std::uint8_t type) noexcept {
    return {kFromClass, kGetDescriptor, Value(type, 0), 0};
  }
  /// A vendor's own read, as of a Microsoft OS 2.0 set (index 7), an extended compat ID of
  /// Microsoft OS 1.0 (index 4) or a WebUSB URL (index 2).
  static constexpr Request Vendor(std::uint8_t code, std::uint16_t value,
                                  std::uint16_t index) noexcept {
    return {kFromVendor, code, value, index};
  }
  /// The place of bytes that came from somewhere without a request, numbered from 0. No read has
  /// this form: its direction is to the device.
  static constexpr Request Unknown(std::uint16_t number) noexcept { return {0, 0, number, 0}; }

  constexpr std::uint8_t Type() const noexcept { return static_cast<std::uint8_t>(value >> 8); }
  constexpr std::uint8_t Index() const noexcept { return static_cast<std::uint8_t>(value); }

  /// False for Unknown only.
  constexpr bool IsKnown() const noexcept { return requestType != 0 || request != 0; }

  /// GET_DESCRIPTOR in any of its forms, so that Type and Index mean what they say.
  constexpr bool IsGetDescriptor() const noexcept {
    return request == kGetDescriptor &&
           (requestType == kFromDevice || requestType == kFromInterface ||
            requestType == kFromClass);
  }
  /// GET_DESCRIPTOR to the device.
  constexpr bool IsStandard() const noexcept {
    return request == kGetDescriptor && requestType == kFromDevice;
  }
  constexpr bool IsString() const noexcept { return IsStandard() && Type() == kStringType; }
  /// GET_DESCRIPTOR to an interface, whose number is in `index`.
  constexpr bool IsOfInterface() const noexcept {
    return request == kGetDescriptor && requestType == kFromInterface;
  }

 private:
  static constexpr std::uint8_t kGetDescriptor = 6;
  static constexpr std::uint8_t kFromDevice = 0x80;
  static constexpr std::uint8_t kFromInterface = 0x81;
  static constexpr std::uint8_t kFromClass = 0xA0;
  static constexpr std::uint8_t kFromVendor = 0xC0;

  static constexpr std::uint16_t Value(std::uint8_t type, std::uint8_t index) noexcept {
    return static_cast<std::uint16_t>(type << 8 | index);
  }
};

/// What people call a request: "configuration 0", "string 2, language 0409h", "HID report of
/// interface 1". Two requests of one name may differ in a reserved field only.
USB_DEVICES_API std::string NameOf(Request const& request);

/// What became of a request.
enum class Outcome : std::uint8_t {
  kAnswered,  ///< with the bytes, which may be none
  kStalled,   ///< the device refused: it has no such descriptor
  kFailed,    ///< the transfer failed, or it could not be made
};

/// "answered", "stalled", "failed".
USB_DEVICES_API std::string_view NameOf(Outcome outcome) noexcept;

/// Where an answer came from.
struct Source {
  std::string name;          ///< of the file or the device, as the user knows it
  std::uint64_t offset = 0;  ///< bytes before it, in a file of bytes
  std::uint64_t line = 0;    ///< of a text, from 1; 0 elsewhere
  std::uint64_t packet = 0;  ///< number in a traffic capture, from 1; 0 elsewhere
};

/// What a device said to one request.
struct Answer {
  Request request;
  usb_devices::Outcome outcome = usb_devices::Outcome::kAnswered;
  usb_devices::Bytes bytes;  ///< at most kMaxAnswerSize; none unless answered
  usb_devices::Source source;
  std::string note;  ///< why it failed, for people; or empty
};

/// One device. Made by a DeviceBuilder; cheap to move.
class USB_DEVICES_API Device {
 public:
  /// A device of which nothing is known.
  Device() = default;

  /// How the place that it was read from names it: "1.7" in a traffic capture; may be empty.
  std::string const& Name() const noexcept { return name_; }

  usb_devices::Speed Speed() const noexcept { return speed_; }

  /// Every answer, in the order in which they were found.
  std::span<Answer const> Answers() const noexcept { return answers_; }

  /// What became of a request; null when nothing is known of it.
  Answer const* Find(Request const& request) const noexcept;

  /// The answered bytes; nothing when the request is missing, stalled or failed.
  std::optional<ByteSpan> Bytes(Request const& request) const noexcept;

  /// At most `length` bytes of an answer, as a device sends them.
  std::optional<ByteSpan> Bytes(Request const& request, std::uint16_t length) const noexcept;

  /// The answers to GET_DESCRIPTOR to the device for a type, by index and language.
  std::vector<Answer const*> OfType(std::uint8_t type) const;

  /// True when the speeds and the answers are the same: requests, outcomes and bytes. Names,
  /// sources, notes and order do not count.
  bool HasSameAnswers(Device const& other) const noexcept;

 private:
  friend class DeviceBuilder;

  std::string name_;
  usb_devices::Speed speed_ = usb_devices::Speed::kUnknown;
  std::vector<Answer> answers_;
  std::map<Request, std::size_t> places_;
};

/// Puts a device together.
class USB_DEVICES_API DeviceBuilder {
 public:
  void SetName(std::string name) { device_.name_ = std::move(name); }
  void SetSpeed(Speed speed) noexcept { device_.speed_ = speed; }

  /// False when there is an answer to the same request; the first one stays.
  ///
  /// Requires: at most kMaxAnswerSize bytes, and none unless answered.
  bool Add(Answer answer);

  /// Adds bytes that belong to no known request. False when there are 65,536 such already.
  ///
  /// Requires: at most kMaxAnswerSize bytes.
  bool AddUnknown(Bytes bytes, Source source);

  bool Has(Request const& request) const noexcept { return device_.Find(request) != nullptr; }
  bool IsEmpty() const noexcept { return device_.answers_.empty(); }

  /// The device; the builder begins anew.
  Device Build();

 private:
  Device device_;
  std::uint32_t unknown_ = 0;
};

}  // namespace usb_devices
