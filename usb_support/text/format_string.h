// A printf format whose arguments are checked at compile time, with every compiler: a format that
// does not fit its arguments, or that uses a conversion that the library does not know, does not
// compile.
#pragma once

#include <concepts>
#include <cstddef>
#include <string_view>
#include <type_traits>

namespace usb_support {

/// Thrown at compile time only; its name in the compiler's message names the fault.
struct FormatDoesNotFitItsArguments {};

namespace format_check {

enum class Kind : unsigned char { kText, kUnsigned, kSigned, kUnsupported };

template <typename Arg>
constexpr Kind KindOf() {
  using Plain = std::decay_t<Arg>;
  if constexpr (std::same_as<Plain, char const*> || std::same_as<Plain, char*>) {
    return Kind::kText;
  } else if constexpr (std::same_as<Plain, unsigned char> || std::same_as<Plain, unsigned short> ||
                       std::same_as<Plain, unsigned int>) {
    return Kind::kUnsigned;
  } else if constexpr (std::same_as<Plain, int>) {
    return Kind::kSigned;
  } else if constexpr (std::is_enum_v<Plain>) {
    // A status is printed as its 32 bits.
    return KindOf<std::underlying_type_t<Plain>>();
  } else {
    return Kind::kUnsupported;
  }
}

// Conversions: %s (text); %u %x %X (unsigned); %d (int); %% (none). Flags, width, precision and a
// width of '*' (int) as in C.
template <std::size_t Count>
constexpr bool Fits(std::string_view format, Kind const (&kinds)[Count], std::size_t arguments) {
  std::size_t used = 0;
  auto const take = [&](Kind kind) { return used < arguments && kinds[used++] == kind; };
  auto const skipWhile = [&](std::size_t at, std::string_view set) {
    while (at < format.size() && set.find(format[at]) != std::string_view::npos) {
      ++at;
    }
    return at;
  };
  for (std::size_t at = 0; at < format.size(); ++at) {
    if (format[at] == '\0') {
      return false;
    }
    if (format[at] != '%') {
      continue;
    }
    if (++at < format.size() && format[at] == '%') {
      continue;
    }
    at = skipWhile(at, "-+ #0");
    if (at < format.size() && format[at] == '*') {
      ++at;
      if (!take(Kind::kSigned)) {
        return false;
      }
    } else {
      at = skipWhile(at, "0123456789");
    }
    if (at < format.size() && format[at] == '.') {
      at = skipWhile(at + 1, "0123456789");
    }
    if (at >= format.size()) {
      return false;
    }
    Kind wanted = Kind::kUnsupported;
    switch (format[at]) {
      case 's':
        wanted = Kind::kText;
        break;
      case 'u':
      case 'x':
      case 'X':
        wanted = Kind::kUnsigned;
        break;
      case 'd':
        wanted = Kind::kSigned;
        break;
      default:
        return false;
    }
    if (!take(wanted)) {
      return false;
    }
  }
  return used == arguments;
}

}  // namespace format_check

/// A format for arguments of the types `Args`. Made from a string literal only.
template <typename... Args>
class FormatString {
 public:
  /// Does not compile when the literal does not fit the arguments.
  template <std::size_t Size>
  consteval FormatString(char const (&literal)[Size]) : text_(literal, Size - 1) {
    constexpr format_check::Kind kinds[sizeof...(Args) + 1] = {format_check::KindOf<Args>()...,
                                                               format_check::Kind::kUnsupported};
    if (!format_check::Fits(text_, kinds, sizeof...(Args))) {
      throw FormatDoesNotFitItsArguments();
    }
  }

  /// The literal, terminated; lives as long as the program.
  constexpr char const* c_str() const noexcept { return text_.data(); }
  constexpr bool empty() const noexcept { return text_.empty(); }

 private:
  std::string_view text_;
};

/// Lets the arguments, not the format, determine the types (as std::type_identity does).
template <typename... Args>
using FormatFor = FormatString<std::type_identity_t<Args>...>;

}  // namespace usb_support
