// Waits on driver events with a typed result, over the suite's own operations.
//
//   CDriverEvent request(TQE_EVENT_TYPE_DEFAULT);
//   if (WaitResult const result = Wait(request, std::chrono::seconds(5)); !result) {
//     PrintErrorDetail(result.code, TEST_STATUS_FAILURE);
//   }
//
// A time limit below 0 is 0; one above 0xFFFFFFFE ms (about 49 days) is reduced to that; kForever
// is no limit. These waits throw and log what CDriverEvent's operations throw and log.
#pragma once

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <usb_support/events/driver_event.h>
#include <usb_support/status/return_code.h>

namespace usb_support {

/// How a wait ended.
enum class WaitEnd : std::uint8_t {
  kSignalled,  ///< an event, or all of them, were signalled
  kTimedOut,   ///< the time limit was reached
  kAbandoned,  ///< the one event was abandoned; a wait on several reports kFailed instead
  kFailed,     ///< the system refused the wait: no event, a closed one, none or more than 64
};

/// The result of a wait; true when it was satisfied.
struct [[nodiscard]] WaitResult {
  WaitEnd end;        ///< how it ended
  RETURN_CODE code;   ///< what the suite's operation returned
  std::size_t index;  ///< which event satisfied a wait for any; otherwise 0

  explicit operator bool() const noexcept { return end == WaitEnd::kSignalled; }
};

/// A time limit that never ends a wait.
inline constexpr std::chrono::milliseconds kForever = std::chrono::milliseconds::max();

namespace wait_detail {

inline unsigned Timeout(std::chrono::milliseconds limit) noexcept {
  constexpr std::chrono::milliseconds::rep kLongest = 0xFFFFFFFE;
  return limit == kForever ? 0xFFFFFFFFu
                           : static_cast<unsigned>(std::clamp<std::chrono::milliseconds::rep>(
                                 limit.count(), 0, kLongest));
}

inline WaitResult ResultOf(RETURN_CODE code) noexcept {
  switch (code) {
    case RC_WAIT_TIMEOUT:
      return {WaitEnd::kTimedOut, code, 0};
    case RC_WAIT_ABANDONED:
      return {WaitEnd::kAbandoned, code, 0};
    default:
      return Failed(code) ? WaitResult{WaitEnd::kFailed, code, 0}
                          : WaitResult{WaitEnd::kSignalled, code, static_cast<std::size_t>(code)};
  }
}

}  // namespace wait_detail

/// CDriverEvent::WaitOnEvent.
inline WaitResult Wait(CDriverEvent& event, std::chrono::milliseconds limit) {
  return wait_detail::ResultOf(event.WaitOnEvent(wait_detail::Timeout(limit)));
}

/// CDriverEvent::WaitOnMultipleEvents for any of the events: the lowest index wins, and only its
/// signal is taken.
inline WaitResult WaitForAny(std::vector<CDriverEvent*> const& events,
                             std::chrono::milliseconds limit) {
  return wait_detail::ResultOf(
      CDriverEvent::WaitOnMultipleEvents(events, wait_detail::Timeout(limit), WAIT_FOR_ANY_EVENT));
}

/// CDriverEvent::WaitOnMultipleEvents for all of the events at once.
inline WaitResult WaitForAll(std::vector<CDriverEvent*> const& events,
                             std::chrono::milliseconds limit) {
  return wait_detail::ResultOf(
      CDriverEvent::WaitOnMultipleEvents(events, wait_detail::Timeout(limit), WAIT_FOR_ALL_EVENTS));
}

}  // namespace usb_support
