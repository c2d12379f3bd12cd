// The base support library's string view: it does not own the characters, need not be terminated,
// and distinguishes "not set" from "empty".
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

/// Pointer, length and a flag that tells whether a text was given at all.
/// The characters must outlive the view.
template <typename CharT>
class basic_sv_wrapper {
 public:
  /// A view that is not set: null, length 0.
  constexpr basic_sv_wrapper() noexcept = default;

  /// A view of `length` characters from `text`.
  constexpr basic_sv_wrapper(CharT const* text, std::size_t length) noexcept
      : data_(text),
        length_(length),
        hasValue_(text != nullptr) {}

  /// A view of a terminated text; a null pointer gives a view that is not set.
  constexpr basic_sv_wrapper(CharT const* text) noexcept
      : basic_sv_wrapper(text, text == nullptr ? 0 : std::char_traits<CharT>::length(text)) {}

  /// A view of the same characters, set even when there are none.
  constexpr basic_sv_wrapper(std::basic_string_view<CharT> text) noexcept
      : data_(text.data()),
        length_(text.size()),
        hasValue_(true) {}

  /// A view of the string's characters, set even when there are none.
  basic_sv_wrapper(std::basic_string<CharT> const& text) noexcept
      : basic_sv_wrapper(std::basic_string_view<CharT>(text)) {}

  /// The first character (null for a view that is not set), how many there are, and whether there
  /// are none.
  constexpr CharT const* data() const noexcept { return data_; }
  constexpr std::size_t size() const noexcept { return length_; }
  constexpr bool empty() const noexcept { return length_ == 0; }

  /// False only for a view that was never given a text.
  constexpr bool has_value() const noexcept { return hasValue_; }

  /// The same characters; the empty view for one that is not set.
  constexpr std::basic_string_view<CharT> view() const noexcept {
    return length_ == 0 ? std::basic_string_view<CharT>()
                        : std::basic_string_view<CharT>(data_, length_);
  }

 private:
  CharT const* data_ = nullptr;
  std::size_t length_ = 0;
  bool hasValue_ = false;
};
