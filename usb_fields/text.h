// The values of fields as text for people, in the caller's buffer:
//
//   char buffer[kMostText];
//   TextOf(field, buffer);     // "500 mA" of bMaxPower 250
//   NumberOf(field, buffer);   // "250"
//   for (BitsReader bits(field); bits.Next();) {
//     bits.Value().name;       // "Self-powered", and its value and text
//   }
//
// Texts are UTF-8 without control characters, whatever a device sent. A text that does not fit into
// the buffer ends with "...". Nothing here throws or allocates. Returned texts refer to the buffer,
// to the BitsReader, or to constant tables.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/export.h>
#include <usb_fields/reader.h>

namespace usb_fields {

/// A buffer of this size holds every text of a descriptor of up to 255 bytes.
inline constexpr std::size_t kMostText = 2048;

/// The meaning of a value: "500 mA", "Self-powered, Remote Wakeup", "2.00", "Audio Streaming".
/// Empty when the number needs no text, when it has no meaning in the standard, or when the field
/// is cut.
USB_FIELDS_API std::string_view TextOf(FieldValue const& field, std::span<char> buffer) noexcept;

/// The value as a number: "250", "-3", "0x046D"; bytes as "05 24 00". For a field that is cut, its
/// bytes.
USB_FIELDS_API std::string_view NumberOf(FieldValue const& field, std::span<char> buffer) noexcept;

/// A run of bits of a field.
struct BitsValue {
  std::string_view name;    ///< as in the standard
  std::uint8_t high = 0;    ///< the highest bit
  std::uint8_t low = 0;     ///< the lowest bit
  std::uint64_t value = 0;  ///< the bits as a number
  std::string_view text;    ///< the meaning, often empty
  bool isReserved = false;  ///< the bits are reserved
};

/// Walks over the bits of a field in the order of the standard. Reserved bits are skipped unless
/// they differ from the value that the standard requires. A field that does not consist of bits has
/// none.
class BitsReader {
 public:
  /// Requires: the bytes and tables of `field` outlive the reader.
  explicit BitsReader(FieldValue const& field) noexcept : field_(field) {}
  BitsReader(BitsReader const&) = delete;
  BitsReader& operator=(BitsReader const&) = delete;

  /// Moves to the next run of bits; returns false when there is none.
  USB_FIELDS_API bool Next() noexcept;

  /// The current run. Its texts are valid until the next call of Next().
  BitsValue const& Value() const noexcept { return value_; }

 private:
  FieldValue field_;
  std::size_t next_ = 0;
  BitsValue value_;
  std::array<char, 128> name_{};
  std::array<char, 64> text_{};
};

}  // namespace usb_fields
