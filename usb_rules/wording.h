// Terms of rules in words, for findings: "number of endpoints in the alternate setting (bulk and
// IN)", "an isochronous endpoint". Internal to the library.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <usb_rules/expression.h>

namespace usb_rules::detail {

/// A value in words: the subject of a comparison.
std::string WordsOf(Programs const& programs, std::int32_t term);

/// A condition in words: the expectation when the condition should be `isTrue`.
std::string WishOf(Programs const& programs, std::int32_t term, bool isTrue = true);

/// A type of descriptors in words: "30h (SuperSpeed Endpoint Companion)".
std::string TypeText(std::int64_t type);

/// "high speed".
std::string SpeedText(std::int64_t speed);

/// True for the type of a descriptor.
bool IsTypeTerm(Programs const& programs, std::int32_t term);

/// The name of a field in words: "logical maximum" for "logicalMax".
std::string FieldWords(std::string_view name);

/// The expectation of a comparison of a flag, such as "well-formed UTF-16"; otherwise empty.
std::string_view FlagWords(Programs const& programs, Term const& term);

/// True when the value of a term is shown in hexadecimal.
bool IsHexadecimalTerm(Programs const& programs, std::int32_t term);

}  // namespace usb_rules::detail
