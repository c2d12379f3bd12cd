// Finds where and why a run of descriptors stops being valid.
#pragma once

#include <cstdint>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/platform/export.h>

namespace usb_support {

/// Why a chain of descriptors ends where it does.
enum class RunEnd : std::uint8_t {
  kComplete,        ///< at the end of the run: every descriptor is whole
  kZeroLength,      ///< at a descriptor whose bLength is 0
  kHeaderCutShort,  ///< at a descriptor of which only the first byte exists
  kPastEnd,         ///< at a descriptor whose bLength reaches past the end of the run
};

/// Where and why a run stops being valid.
struct RunDiagnosis {
  RunEnd reason;            ///< kComplete exactly when the whole run is valid
  std::uint16_t offset;     ///< bytes before the place: the length of the valid part
  std::uint16_t bytesLeft;  ///< bytes from there to the end of the run
};

/// Walks the range once. The offset is always that of ValidUntil(), and the reason is kComplete
/// exactly when the range is Valid(). Allocates nothing and throws nothing.
[[nodiscard]] USB_SUPPORT_API RunDiagnosis DiagnoseRun(CDescriptorRange const& range) noexcept;

/// The reason in words for a log line, such as "zero length"; lives as long as the library.
USB_SUPPORT_API char const* RunEndText(RunEnd reason) noexcept;

}  // namespace usb_support
