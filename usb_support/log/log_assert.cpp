#include <usb_support/log/log_assert.h>

#include <cstddef>
#include <cstdint>
#include <iterator>

#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>

namespace {

constexpr std::uint32_t kSeverityBits = 0xC8000000;

TEST_STATUS LogStatusOf(TEST_STATUS status) {
  std::uint32_t const severity = status & kSeverityBits;
  return severity != 0 ? static_cast<TEST_STATUS>(severity) : TEST_STATUS_FAILURE;
}

std::size_t HighestPart(TQAssertionNumbers const& number) {
  std::size_t part = std::size(number.parts) - 1;
  while (part > 0 && number.parts[part] == nullptr) {
    --part;
  }
  return part;
}

}  // namespace

void LogAssert(TEST_STATUS status, unsigned index, TQAssertionNumbers const* numbers,
               char const* const* messages) {
  using usb_support::LogFormatted;
  TEST_STATUS const logStatus = LogStatusOf(status);
  char const* const message = messages[index];
  auto const& p = numbers[index].parts;
  char const* const s = ": ";
  TQLogger& log = CAppState::Log();
  switch (HighestPart(numbers[index])) {
    case 9:
      LogFormatted(log, logStatus, "(%s%s%s.%s.%s.%s.%s.%s.%s.%s.%s) %s", p[0], s, p[1], p[2], p[3],
                   p[4], p[5], p[6], p[7], p[8], p[9], message);
      break;
    case 8:
      LogFormatted(log, logStatus, "(%s%s%s.%s.%s.%s.%s.%s.%s.%s) %s", p[0], s, p[1], p[2], p[3],
                   p[4], p[5], p[6], p[7], p[8], message);
      break;
    case 7:
      LogFormatted(log, logStatus, "(%s%s%s.%s.%s.%s.%s.%s.%s) %s", p[0], s, p[1], p[2], p[3], p[4],
                   p[5], p[6], p[7], message);
      break;
    case 6:
      LogFormatted(log, logStatus, "(%s%s%s.%s.%s.%s.%s.%s) %s", p[0], s, p[1], p[2], p[3], p[4],
                   p[5], p[6], message);
      break;
    case 5:
      LogFormatted(log, logStatus, "(%s%s%s.%s.%s.%s.%s) %s", p[0], s, p[1], p[2], p[3], p[4], p[5],
                   message);
      break;
    case 4:
      LogFormatted(log, logStatus, "(%s%s%s.%s.%s.%s) %s", p[0], s, p[1], p[2], p[3], p[4],
                   message);
      break;
    case 3:
      LogFormatted(log, logStatus, "(%s%s%s.%s.%s) %s", p[0], s, p[1], p[2], p[3], message);
      break;
    case 2:
      LogFormatted(log, logStatus, "(%s%s%s.%s) %s", p[0], s, p[1], p[2], message);
      break;
    case 1:
      LogFormatted(log, logStatus, "(%s%s%s) %s", p[0], s, p[1], message);
      break;
    default:
      LogFormatted(log, logStatus, "(%s) %s", p[0], message);
      break;
  }
  FlushOutput(false);
}
