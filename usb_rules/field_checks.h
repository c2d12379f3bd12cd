// The requirements in the tables of usb_fields, so that no rule repeats them: reserved bits,
// reserved codes, decimal digits. Internal to the library.
#pragma once

#include <cstdint>
#include <string>

#include <usb_fields/table.h>

namespace usb_rules::detail {

/// A requirement of a table on a descriptor or a field.
enum class Check : std::uint8_t {
  kLength,    ///< the descriptor has the length that the table gives
  kReserved,  ///< reserved bits and fields are zero, or one where the table requires one
  kCodes,     ///< the code is not marked as reserved in the table
  kDigits,    ///< a release number contains only decimal digits
  kCount,
};

/// The checks of a row, one bit each.
unsigned ChecksOf(usb_fields::Field const& field);

constexpr unsigned BitOf(Check check) {
  return 1U << static_cast<unsigned>(check);
}

/// The bits `high` to `low`.
constexpr std::uint64_t MaskOf(unsigned high, unsigned low) {
  return (high - low == 63 ? ~std::uint64_t{0} : (std::uint64_t{1} << (high - low + 1)) - 1) << low;
}

/// The reserved bits without the value that the table requires.
std::uint64_t WrongReserved(usb_fields::Field const& field, std::uint64_t value);

/// The bits with a code that the table marks as reserved.
std::uint64_t WrongCodes(usb_fields::Field const& field, std::uint64_t value);

/// True for a code that the table contains and does not mark as reserved. For a field of bits: true
/// for every value that is not marked as reserved.
bool IsKnownCode(usb_fields::Field const& field, std::uint64_t value);

bool HasDecimalDigits(std::uint64_t value);

/// The bits of a field that break a check; none for kLength.
std::uint64_t WrongBits(Check check, usb_fields::Field const& field, std::uint64_t value);

/// The fault in a field: the bits, their value, and the expected value.
struct FieldFault {
  bool isBits = false;  ///< only a part of the field is wrong
  std::uint8_t high = 0;
  std::uint8_t low = 0;
  std::uint64_t value = 0;
  std::string expected;
};

/// Describes the first of the `wrong` bits of a field of `size` bytes.
/// Requires: WrongBits returned them.
FieldFault FaultOf(Check check, usb_fields::Field const& field, std::uint64_t value,
                   std::uint64_t wrong, unsigned size);

/// "0 to 3 or 0Fh": the codes of a field that are not reserved.
std::string CodesOf(usb_fields::Field const& field);

/// True for fields that are shown in hexadecimal.
bool IsShownInHexadecimal(usb_fields::Field const& field);

/// A number with 'h' after it when it is hexadecimal and more than 9.
std::string NumberText(std::int64_t number, bool isHexadecimal);

}  // namespace usb_rules::detail
