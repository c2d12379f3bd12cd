// How a log line looks: its colour and the strength of its letters.
#pragma once

#include <cstdint>

#include <usb_support/platform/export.h>

/// A colour as four 32-bit parts of 0 to 255.
struct TQColor {
  std::uint32_t red;    ///< 0 to 255
  std::uint32_t green;  ///< 0 to 255
  std::uint32_t blue;   ///< 0 to 255
  std::uint32_t alpha;  ///< 0 (invisible) to 255 (opaque)

  friend constexpr bool operator==(TQColor const&, TQColor const&) = default;
};

/// Weight of the letters, on the usual scale of 100 to 900.
enum ETextStrength : std::uint32_t {
  TEXT_STRENGTH_NORMAL = 400,
  TEXT_STRENGTH_BOLD = 700,
};

/// Colour and strength of a log line; two are equal when both agree.
class CFormatInfo {
 public:
  /// A look of this colour and strength.
  constexpr CFormatInfo(TQColor color, ETextStrength strength) noexcept
      : color_(color),
        strength_(strength) {}

  /// The colour and the strength.
  constexpr TQColor Color() const noexcept { return color_; }
  constexpr ETextStrength Strength() const noexcept { return strength_; }

  friend constexpr bool operator==(CFormatInfo const&, CFormatInfo const&) = default;

 private:
  TQColor color_;
  ETextStrength strength_;
};

/// The look of an error line. From the base support library.
BASE_SUPPORT_API CFormatInfo DefaultErrorFormat();
