#include <usb_support/platform/events.h>

#include <usb_support/platform/overlapped.h>

namespace usb_support::platform {

static_assert(kWaitAbandoned == WAIT_ABANDONED);
static_assert(kWaitTimeout == WAIT_TIMEOUT);
static_assert(kWaitFailed == WAIT_FAILED);
static_assert(kNoLimit == INFINITE);
static_assert(kMostEvents == MAXIMUM_WAIT_OBJECTS);

EventHandle MakeEvent(bool manualReset) {
  return ::CreateEventW(nullptr, manualReset ? TRUE : FALSE, FALSE, nullptr);
}

bool SignalEvent(EventHandle event) {
  return ::SetEvent(event) != FALSE;
}

bool ResetEvent(EventHandle event) {
  return ::ResetEvent(event) != FALSE;
}

bool CloseEvent(EventHandle event) {
  return ::CloseHandle(event) != FALSE;
}

std::uint32_t WaitForOne(EventHandle event, std::uint32_t timeoutMs) {
  return ::WaitForSingleObject(event, timeoutMs);
}

std::uint32_t WaitForSeveral(std::span<EventHandle const> events, bool all,
                             std::uint32_t timeoutMs) {
  return ::WaitForMultipleObjects(static_cast<DWORD>(events.size()), events.data(),
                                  all ? TRUE : FALSE, timeoutMs);
}

std::uint32_t LastError() {
  return ::GetLastError();
}

}  // namespace usb_support::platform
