#include <usb_rules/field_checks.h>

#include <algorithm>
#include <cinttypes>
#include <cstdio>
#include <utility>
#include <vector>

namespace usb_rules::detail {
namespace {

using usb_fields::Bit;
using usb_fields::Code;
using usb_fields::Field;
using usb_fields::Form;

bool IsReservedName(std::string_view name) {
  return name.starts_with("Reserved");
}

// bReserved, wReserved, Reserved1: a field that is reserved for later use.
bool IsReservedField(Field const& field) {
  std::string_view const name = field.name;
  return IsReservedName(name) || name == "bReserved" || name == "wReserved";
}

bool IsReservedValue(Bit const& bit, std::uint64_t value) {
  return bit.isValue && bit.name == "Reserved" &&
         (value & MaskOf(bit.high, bit.low)) >> bit.low == bit.value;
}

}  // namespace

unsigned ChecksOf(Field const& field) {
  unsigned checks = field.meaning.form == Form::kBcd ? BitOf(Check::kDigits) : 0;
  checks |= IsReservedField(field) ? BitOf(Check::kReserved) : 0;
  for (Bit const& bit : field.meaning.bits) {
    checks |= bit.IsReserved() ? BitOf(Check::kReserved) : 0;
    checks |= bit.isValue && bit.name == "Reserved" ? BitOf(Check::kCodes) : 0;
  }
  for (Code const& code : field.meaning.codes) {
    checks |= IsReservedName(code.name) ? BitOf(Check::kCodes) : 0;
  }
  return checks;
}

std::uint64_t WrongReserved(Field const& field, std::uint64_t value) {
  std::uint64_t wrong = IsReservedField(field) ? value : 0;
  for (Bit const& bit : field.meaning.bits) {
    if (bit.IsReserved()) {
      wrong |= (value ^ bit.ReservedValue() << bit.low) & MaskOf(bit.high, bit.low);
    }
  }
  return wrong;
}

std::uint64_t WrongCodes(Field const& field, std::uint64_t value) {
  std::uint64_t wrong = 0;
  for (Bit const& bit : field.meaning.bits) {
    wrong |= IsReservedValue(bit, value) ? MaskOf(bit.high, bit.low) : 0;
  }
  for (Code const& code : field.meaning.codes) {
    bool const isIt = value >= code.first && value <= code.last;
    wrong |= isIt && IsReservedName(code.name) ? ~std::uint64_t{0} : 0;
  }
  return wrong;
}

bool IsKnownCode(Field const& field, std::uint64_t value) {
  if (field.meaning.form == Form::kBits) {
    return WrongCodes(field, value) == 0;
  }
  for (Code const& code : field.meaning.codes) {
    if (value >= code.first && value <= code.last) {
      return !IsReservedName(code.name);
    }
  }
  return false;
}

bool HasDecimalDigits(std::uint64_t value) {
  for (; value != 0; value >>= 4U) {
    if ((value & 0xFU) > 9) {
      return false;
    }
  }
  return true;
}

std::uint64_t WrongBits(Check check, Field const& field, std::uint64_t value) {
  switch (check) {
    case Check::kReserved:
      return WrongReserved(field, value);
    case Check::kCodes:
      return WrongCodes(field, value);
    case Check::kDigits:
      return HasDecimalDigits(value) ? 0 : ~std::uint64_t{0};
    default:
      return 0;
  }
}

FieldFault FaultOf(Check check, Field const& field, std::uint64_t value, std::uint64_t wrong,
                   unsigned size) {
  FieldFault fault;
  fault.value = value;
  fault.expected = check == Check::kDigits  ? "only decimal digits"
                   : check == Check::kCodes ? CodesOf(field)
                                            : "0";
  for (Bit const& bit : field.meaning.bits) {
    std::uint64_t const mask = MaskOf(bit.high, bit.low);
    bool const isIt = check == Check::kCodes ? IsReservedValue(bit, value)
                                             : bit.IsReserved() && (wrong & mask) != 0;
    if (isIt) {
      fault.isBits = true;
      fault.high = static_cast<std::uint8_t>(std::min(8 * size - 1, unsigned{bit.high}));
      fault.low = bit.low;
      fault.value = (value & mask) >> bit.low;
      fault.expected = check == Check::kCodes ? "a value that is not reserved"
                                              : std::to_string(bit.ReservedValue());
      break;
    }
  }
  return fault;
}

std::string CodesOf(Field const& field) {
  constexpr std::size_t kMost = 8;
  bool const isHexadecimal = IsShownInHexadecimal(field);
  std::vector<std::pair<std::int64_t, std::int64_t>> ranges;
  for (Code const& code : field.meaning.codes) {
    auto const first = static_cast<std::int64_t>(code.first);
    auto const last = static_cast<std::int64_t>(code.last);
    if (IsReservedName(code.name)) {
      continue;
    }
    if (!ranges.empty() && ranges.back().second + 1 == first) {
      ranges.back().second = last;
    } else {
      ranges.emplace_back(first, last);
    }
  }
  if (ranges.empty() || ranges.size() > kMost) {
    return "a code that is not reserved";
  }
  std::string text;
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    text.append(i == 0 ? "" : i + 1 == ranges.size() ? " or " : ", ");
    text.append(NumberText(ranges[i].first, isHexadecimal));
    if (ranges[i].first != ranges[i].second) {
      text.append(" to ").append(NumberText(ranges[i].second, isHexadecimal));
    }
  }
  return text;
}

bool IsShownInHexadecimal(Field const& field) {
  Form const form = field.meaning.form;
  return form == Form::kHexadecimal || form == Form::kBcd || form == Form::kBits ||
         form == Form::kEnumeration || field.name == "bDescriptorType";
}

std::string NumberText(std::int64_t number, bool isHexadecimal) {
  char text[32];
  std::snprintf(text, sizeof text, isHexadecimal && number > 9 ? "%" PRIX64 "h" : "%" PRId64,
                number);
  return text;
}

}  // namespace usb_rules::detail
