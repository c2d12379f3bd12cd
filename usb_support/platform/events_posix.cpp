#include <usb_support/platform/events.h>

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <memory>
#include <mutex>
#include <new>
#include <unordered_map>

namespace usb_support::platform {
namespace {

// The numbers of the Win32 API (winerror.h).
constexpr std::uint32_t kErrorInvalidHandle = 6;
constexpr std::uint32_t kErrorNotEnoughMemory = 8;
constexpr std::uint32_t kErrorInvalidParameter = 87;

struct Event {
  bool manualReset;
  bool signalled = false;
};

// All events share one lock, so that a wait for all can look at them and take them at once.
struct Events {
  std::mutex lock;
  std::condition_variable changed;
  std::unordered_map<EventHandle, std::unique_ptr<Event>> byHandle;

  Event* Find(EventHandle handle) {
    auto const found = byHandle.find(handle);
    return found != byHandle.end() ? found->second.get() : nullptr;
  }
};

// Never destroyed: static objects may hold events to the very end.
Events& AllEvents() {
  static auto* const events = new Events;
  return *events;
}

thread_local std::uint32_t lastError = 0;

template <typename Result>
Result Fail(std::uint32_t error, Result result) {
  lastError = error;
  return result;
}

bool SetState(EventHandle handle, bool signalled) {
  Events& events = AllEvents();
  std::lock_guard const guard(events.lock);
  Event* const event = events.Find(handle);
  if (event == nullptr) {
    return Fail(kErrorInvalidHandle, false);
  }
  event->signalled = signalled;
  if (signalled) {
    events.changed.notify_all();
  }
  return true;
}

// Takes what a wait asks for, if it is there; the result of the wait, or kWaitTimeout.
std::uint32_t TryTake(std::span<Event* const> events, bool all) {
  auto const isSignalled = [](Event const* event) { return event->signalled; };
  auto const take = [](Event* event) { event->signalled = event->manualReset; };
  if (all) {
    if (!std::ranges::all_of(events, isSignalled)) {
      return kWaitTimeout;
    }
    std::ranges::for_each(events, take);
    return 0;
  }
  auto const found = std::ranges::find_if(events, isSignalled);
  if (found == events.end()) {
    return kWaitTimeout;
  }
  take(*found);
  return static_cast<std::uint32_t>(found - events.begin());
}

}  // namespace

EventHandle MakeEvent(bool manualReset) {
  try {
    auto event = std::make_unique<Event>(Event{manualReset});
    EventHandle handle = event.get();
    Events& events = AllEvents();
    std::lock_guard const guard(events.lock);
    events.byHandle.emplace(handle, std::move(event));
    return handle;
  } catch (std::bad_alloc const&) {
    return Fail(kErrorNotEnoughMemory, EventHandle{});
  }
}

bool SignalEvent(EventHandle event) {
  return SetState(event, true);
}

bool ResetEvent(EventHandle event) {
  return SetState(event, false);
}

bool CloseEvent(EventHandle event) {
  Events& events = AllEvents();
  std::lock_guard const guard(events.lock);
  return events.byHandle.erase(event) != 0 || Fail(kErrorInvalidHandle, false);
}

std::uint32_t WaitForOne(EventHandle event, std::uint32_t timeoutMs) {
  return WaitForSeveral({&event, 1}, false, timeoutMs);
}

std::uint32_t WaitForSeveral(std::span<EventHandle const> handles, bool all,
                             std::uint32_t timeoutMs) {
  if (handles.empty() || handles.size() > kMostEvents) {
    return Fail(kErrorInvalidParameter, kWaitFailed);
  }
  auto const deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeoutMs);
  Events& events = AllEvents();
  std::unique_lock guard(events.lock);
  Event* waited[kMostEvents];
  for (std::size_t i = 0; i < handles.size(); ++i) {
    waited[i] = events.Find(handles[i]);
    if (waited[i] == nullptr) {
      return Fail(kErrorInvalidHandle, kWaitFailed);
    }
  }
  std::span<Event* const> const wanted(waited, handles.size());
  for (;;) {
    std::uint32_t const result = TryTake(wanted, all);
    if (result != kWaitTimeout || timeoutMs == 0) {
      return result;
    }
    if (timeoutMs == kNoLimit) {
      events.changed.wait(guard);
    } else if (events.changed.wait_until(guard, deadline) == std::cv_status::timeout) {
      return TryTake(wanted, all);
    }
  }
}

std::uint32_t LastError() {
  return lastError;
}

}  // namespace usb_support::platform
