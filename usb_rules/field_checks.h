// What a row of a table of usb_fields asks of its field, so that no rule has to write it again:
// reserved bits, reserved codes, decimal digits. Not for other use.
#pragma once

#include <cstdint>
#include <string>

#include <usb_fields/table.h>

namespace usb_rules::detail {

/// What a table asks of a descriptor or of a field.
enum class Check : std::uint8_t {
  kLength,    ///< the descriptor has the length that the table gives
  kReserved,  ///< reserved bits, and fields that are reserved, are zero, or one where it says so
  kCodes,     ///< the code is not one that the table calls reserved
  kDigits,    ///< a release has decimal digits only
  kCount,
};

/// The checks of a row, a bit each.
unsigned ChecksOf(usb_fields::Field const& field);

constexpr unsigned BitOf(Check check) {
  return 1U << static_cast<unsigned>(check);
}

/// The bits `high` to `low`.
constexpr std::uint64_t MaskOf(unsigned high, unsigned low) {
  return (high - low == 63 ? ~std::uint64_t{0} : (std::uint64_t{1} << (high - low + 1)) - 1) << low;
}

/// The reserved bits that are not as the table has them.
std::uint64_t WrongReserved(usb_fields::Field const& field, std::uint64_t value);

/// The bits with a code that the table calls reserved.
std::uint64_t WrongCodes(usb_fields::Field const& field, std::uint64_t value);

/// True for a code that the table has and does not call reserved. Of bits: for each value that it
/// does not call reserved.
bool IsKnownCode(usb_fields::Field const& field, std::uint64_t value);

bool HasDecimalDigits(std::uint64_t value);

/// The bits of a field that break a check; of kLength none.
std::uint64_t WrongBits(Check check, usb_fields::Field const& field, std::uint64_t value);

/// What is wrong in a field: the bits, with their value, and what was expected of them.
struct FieldFault {
  bool isBits = false;  ///< not the whole field
  std::uint8_t high = 0;
  std::uint8_t low = 0;
  std::uint64_t value = 0;
  std::string expected;
};

/// Describes the first of the `wrong` bits of a field of `size` bytes. Requires: WrongBits gave
/// them.
FieldFault FaultOf(Check check, usb_fields::Field const& field, std::uint64_t value,
                   std::uint64_t wrong, unsigned size);

/// "0 to 3 or 0Fh": the codes of a field that are not reserved.
std::string CodesOf(usb_fields::Field const& field);

/// True for fields that are shown in hexadecimal.
bool IsShownInHexadecimal(usb_fields::Field const& field);

/// A number with 'h' after it when it is hexadecimal and more than 9.
std::string NumberText(std::int64_t number, bool isHexadecimal);

}  // namespace usb_rules::detail
