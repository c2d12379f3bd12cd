// Tables of names that do not belong to a single field. Internal to the library.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/table.h>

namespace usb_fields::detail {

/// The name of a class, a subclass or a protocol; kAny for a code that the name does not depend on.
struct ClassRow {
  static constexpr std::int16_t kAny = -1;

  std::uint8_t classCode;
  std::int16_t subclass;
  std::int16_t protocol;
  std::string_view name;
};

/// Sorted by class, subclass and protocol, kAny first.
std::span<ClassRow const> ClassRows() noexcept;

/// Language identifiers, sorted.
std::span<Code const> LanguageCodes() noexcept;

/// HID usage pages, sorted.
std::span<Code const> UsagePageCodes() noexcept;

/// HID usages with their page in the upper 16 bits, sorted. A name may contain "{n}",
/// the usage in decimal, or "{x}", the usage in hexadecimal.
std::span<Code const> UsageCodes() noexcept;

}  // namespace usb_fields::detail
