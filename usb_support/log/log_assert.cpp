#include <usb_support/log/log_assert.h>

#include <array>
#include <cstddef>
#include <cstdint>
#include <iterator>

#include <usb_support/helper/usb_helper.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>

namespace {

constexpr std::uint32_t kSeverityBits = 0xC8000000;

TEST_STATUS LogStatusOf(TEST_STATUS status) {
  std::uint32_t const severity = status & kSeverityBits;
  return severity != 0 ? static_cast<TEST_STATUS>(severity) : TEST_STATUS_FAILURE;
}

// The pieces of "document: 1.2.3" in order: each part that is given, with what is before it. Nine
// separators and ten parts; unused ones at the end are empty.
constexpr std::size_t kParts = 10;
static_assert(std::size(TQAssertionNumbers{}.parts) == kParts);
using NumberPieces = std::array<char const*, 2 * kParts - 1>;

NumberPieces PiecesOf(TQAssertionNumbers const& number) {
  std::size_t last = kParts - 1;
  while (last > 0 && number.parts[last] == nullptr) {
    --last;
  }
  NumberPieces pieces;
  pieces.fill("");
  pieces[0] = number.parts[0];
  for (std::size_t part = 1; part <= last; ++part) {
    pieces[2 * part - 1] = part == 1 ? ": " : ".";
    pieces[2 * part] = number.parts[part];
  }
  return pieces;
}

}  // namespace

void LogAssert(TEST_STATUS status, unsigned index, TQAssertionNumbers const* numbers,
               char const* const* messages) {
  NumberPieces const p = PiecesOf(numbers[index]);
  usb_support::LogFormatted(CAppState::Log(), LogStatusOf(status),
                            "(%s%s%s%s%s%s%s%s%s%s%s%s%s%s%s%s%s%s%s) %s", p[0], p[1], p[2], p[3],
                            p[4], p[5], p[6], p[7], p[8], p[9], p[10], p[11], p[12], p[13], p[14],
                            p[15], p[16], p[17], p[18], messages[index]);
  FlushOutput(false);
}

void CUsbHelper::DoLogAssert(TEST_STATUS status, unsigned index, TQAssertionNumbers const* numbers,
                             char const* const* messages) const {
  LogAssert(status, index, numbers, messages);
}
