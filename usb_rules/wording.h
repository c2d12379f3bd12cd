// Terms of rules in words, for findings: "number of Endpoint descriptors of the interface (bulk and
// IN)", "an isochronous endpoint". Not for other use.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>

#include <usb_rules/expression.h>

namespace usb_rules::detail {

/// A value in words: what a comparison is about.
std::string WordsOf(Programs const& programs, std::int32_t term);

/// A condition in words: what is expected when it should be `isTrue`.
std::string WishOf(Programs const& programs, std::int32_t term, bool isTrue = true);

/// A type of descriptors in words: "30h (SuperSpeed Endpoint Companion)".
std::string TypeText(std::int64_t type);

/// "high".
std::string SpeedText(std::int64_t speed);

/// True of the type of a descriptor.
bool IsTypeTerm(Programs const& programs, std::int32_t term);

/// "logical max" of "logicalMax".
std::string SplitWords(std::string_view name);

/// True when a value that a term gives is shown in hexadecimal.
bool IsHexadecimalTerm(Programs const& programs, std::int32_t term);

}  // namespace usb_rules::detail
