// The base support library's string: owns its characters, never null.
#pragma once

#include <string>

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/sv_wrapper.h>

/// An owned text. A null pointer or an unset view reads as the empty text.
class CSafeString {
 public:
  CSafeString() = default;
  /// A copy of the text. Throws std::bad_alloc.
  BASE_SUPPORT_API CSafeString(char const* text);
  BASE_SUPPORT_API explicit CSafeString(basic_sv_wrapper<char> text);

  /// The text, terminated; valid until the string changes or ends.
  char const* c_str() const noexcept { return text_.c_str(); }

  /// The text as a standard string; valid as long as this object.
  std::string const& get() const noexcept { return text_; }

  /// True for the same characters.
  friend bool operator==(CSafeString const& a, CSafeString const& b) noexcept {
    return a.text_ == b.text_;
  }

 private:
  std::string text_;
};
