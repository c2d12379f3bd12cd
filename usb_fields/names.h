// Names of the codes that the standards share: classes, languages, HID usages. Constant tables; any
// thread may read them. For a code without a name in a standard the name is empty.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/export.h>

namespace usb_fields {

/// The name of a class: "Audio".
USB_FIELDS_API std::string_view ClassName(std::uint8_t classCode) noexcept;

/// The name of a subclass: "Audio Streaming".
USB_FIELDS_API std::string_view SubclassName(std::uint8_t classCode,
                                             std::uint8_t subclass) noexcept;

/// The name of a protocol: "Audio 2.0".
USB_FIELDS_API std::string_view ProtocolName(std::uint8_t classCode, std::uint8_t subclass,
                                             std::uint8_t protocol) noexcept;

/// The names of all three, if they have any, in `buffer`: "Audio, Audio Streaming, Audio 2.0". 256
/// characters are enough.
USB_FIELDS_API std::string_view TripleName(std::uint8_t classCode, std::uint8_t subclass,
                                           std::uint8_t protocol, std::span<char> buffer) noexcept;

/// The name of a language identifier: "English (United States)".
USB_FIELDS_API std::string_view LanguageName(std::uint16_t language) noexcept;

/// The name of a HID usage page: "Generic Desktop".
USB_FIELDS_API std::string_view UsagePageName(std::uint16_t page) noexcept;

/// The name of a HID usage: "Mouse". Names with a number ("Button 3") are written to `buffer`; 64
/// characters are enough.
USB_FIELDS_API std::string_view UsageName(std::uint16_t page, std::uint16_t usage,
                                          std::span<char> buffer) noexcept;

}  // namespace usb_fields
