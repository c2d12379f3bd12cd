#include <usb_support/descriptors/range_diagnosis.h>

#include <array>
#include <cstddef>

namespace usb_support {
namespace {

RunEnd ReasonAt(CDescriptorRangeIterator const& stop) noexcept {
  if (stop.Remaining() == 0) {
    return RunEnd::kComplete;
  }
  if (stop->bLength == 0) {
    return RunEnd::kZeroLength;
  }
  return stop.Remaining() < sizeof(TQ_USB_COMMON_DESCRIPTOR) ? RunEnd::kHeaderCutShort
                                                             : RunEnd::kPastEnd;
}

}  // namespace

RunDiagnosis DiagnoseRun(CDescriptorRange const& range) noexcept {
  CDescriptorRangeIterator const stop = range.ValidUntil();
  return {ReasonAt(stop), static_cast<std::uint16_t>(stop - range.begin()),
          static_cast<std::uint16_t>(stop.Remaining())};
}

char const* RunEndText(RunEnd reason) noexcept {
  constexpr std::array<char const*, 4> kTexts = {"complete", "zero length", "header cut short",
                                                 "past the end"};
  auto const index = static_cast<std::size_t>(reason);
  return index < kTexts.size() ? kTexts[index] : "unknown";
}

}  // namespace usb_support
