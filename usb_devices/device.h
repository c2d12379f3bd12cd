// A device as described by its descriptors: its answers to the requests for them.
//
// A Request is the SETUP packet of a read without its length. It has everything that distinguishes
// GET_DESCRIPTOR requests: type and index, the language of a string, the interface of a HID report,
// the class request of a hub descriptor, the vendor's own request of a Microsoft OS set.
//
//   Device const device = ...;
//   if (std::optional<ByteSpan> const bos = device.Bytes(Request::Descriptor(kBosType))) {
//     Show(*bos);  // may be empty: the device answered with no bytes
//   }
//   Answer const* const string = device.Find(Request::String(2, 0x0409));
//   // null: nobody asked; otherwise string->outcome distinguishes answer, stall and failure
//
// Memory: a device owns its bytes. Spans and pointers are valid until the device is moved from,
// assigned to or destroyed. Threads: a device never changes, so any number of threads may read it.
// Failure: reading throws nothing. Making throws only std::bad_alloc.
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

/// Descriptor types (USB 3.2, table 9-6; HID 1.11, 7.1; CDC 1.2, table 12; USB 2.0, 11.23.2.1;
/// USB 3.2, 10.15.2.1).
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
inline constexpr std::uint8_t kClassInterfaceType = 0x24;
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

/// A request: a SETUP packet without wLength (USB 3.2, table 9-2).
struct Request {
  std::uint8_t requestType = 0;  ///< bmRequestType
  std::uint8_t request = 0;      ///< bRequest
  std::uint16_t value = 0;       ///< wValue: the type in the high byte, the index in the low one
  std::uint16_t index = 0;       ///< wIndex: a language, an interface, or 0

  // clang-tidy 14 mistakes the zero that the result is compared with for a null pointer.
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
  /// A vendor's own read, such as that of a Microsoft OS 2.0 set (index 7), an extended compat ID of
  /// Microsoft OS 1.0 (index 4) or a WebUSB URL (index 2).
  static constexpr Request Vendor(std::uint8_t code, std::uint16_t value,
                                  std::uint16_t index) noexcept {
    return {kFromVendor, code, value, index};
  }
  /// Stands for bytes whose request is not known, numbered from 0. No read has this form: its
  /// direction is to the device.
  static constexpr Request Unknown(std::uint16_t number) noexcept { return {0, 0, number, 0}; }

  constexpr std::uint8_t Type() const noexcept { return static_cast<std::uint8_t>(value >> 8); }
  constexpr std::uint8_t Index() const noexcept { return static_cast<std::uint8_t>(value); }

  /// False for Unknown only.
  constexpr bool IsKnown() const noexcept { return requestType != 0 || request != 0; }

  /// True for GET_DESCRIPTOR in any of its forms, so that Type and Index have a meaning.
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

/// The name of a request for people: "configuration 0", "string 2, language 0409h", "HID report of
/// interface 1". Two requests with the same name can differ only in a reserved field.
USB_DEVICES_API std::string NameOf(Request const& request);

/// The outcome of a request.
enum class Outcome : std::uint8_t {
  kAnswered,  ///< with the bytes, which may be none
  kStalled,   ///< the device refused: it has no such descriptor
  kFailed,    ///< the transfer failed, or it could not be made
};

/// "answered", "stalled", "failed".
USB_DEVICES_API std::string_view NameOf(Outcome outcome) noexcept;

/// The source of an answer.
struct Source {
  std::string name;          ///< of the file or the device, as known to the user
  std::uint64_t offset = 0;  ///< bytes before it, in a file of bytes
  std::uint64_t line = 0;    ///< of a text, from 1; 0 elsewhere
  std::uint64_t packet = 0;  ///< number in a traffic capture, from 1; 0 elsewhere
};

/// The answer of a device to one request.
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
  /// A device about which nothing is known.
  Device() = default;

  /// Its name in the source that it was read from: "1.7" in a traffic capture; may be empty.
  std::string const& Name() const noexcept { return name_; }

  usb_devices::Speed Speed() const noexcept { return speed_; }

  /// Every answer, in the order in which they were found.
  std::span<Answer const> Answers() const noexcept { return answers_; }

  /// The answer to a request; null when nothing is known about it.
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

/// Builds a device.
class USB_DEVICES_API DeviceBuilder {
 public:
  void SetName(std::string name) { device_.name_ = std::move(name); }
  void SetSpeed(Speed speed) noexcept { device_.speed_ = speed; }

  /// Returns false when there is already an answer to the same request; the first one stays.
  ///
  /// Requires: at most kMaxAnswerSize bytes, and none unless answered.
  bool Add(Answer answer);

  /// Adds bytes that belong to no known request. Returns false when there are already 65,536 of
  /// them.
  ///
  /// Requires: at most kMaxAnswerSize bytes.
  bool AddUnknown(Bytes bytes, Source source);

  bool Has(Request const& request) const noexcept { return device_.Find(request) != nullptr; }
  bool IsEmpty() const noexcept { return device_.answers_.empty(); }

  /// The device; the builder is then empty again.
  Device Build();

 private:
  Device device_;
  std::uint32_t unknown_ = 0;
};

}  // namespace usb_devices
