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

// A wait in progress: a record on the stack of its thread.
struct Waiter {
  std::span<Event* const> events;
  bool all;
  std::uint32_t result = kWaitTimeout;  // until a signal satisfies the wait
  std::condition_variable satisfied{};  // its own, so that no other thread wakes
  Waiter* previous = nullptr;
  Waiter* next = nullptr;
};

// The waits in progress, the longest first.
class Waiters {
 public:
  Waiter* First() const { return first_; }

  void Append(Waiter& waiter) {
    waiter.previous = last_;
    (last_ != nullptr ? last_->next : first_) = &waiter;
    last_ = &waiter;
  }

  void Remove(Waiter& waiter) {
    (waiter.previous != nullptr ? waiter.previous->next : first_) = waiter.next;
    (waiter.next != nullptr ? waiter.next->previous : last_) = waiter.previous;
  }

 private:
  Waiter* first_ = nullptr;
  Waiter* last_ = nullptr;
};

// All events share one lock, so that a wait for all can check and take them together.
struct Events {
  std::mutex lock;
  std::unordered_map<EventHandle, std::unique_ptr<Event>> byHandle;
  Waiters waiters;  // no signalled event satisfies one of them

  Event* Find(EventHandle handle) {
    auto const found = byHandle.find(handle);
    return found != byHandle.end() ? found->second.get() : nullptr;
  }
};

// Never destroyed: static objects may own events until the very end.
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

// Takes the signals that a wait asks for, if they are set; returns the result of the wait, or
// kWaitTimeout.
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

// Ends every wait that the event now satisfies. The thread that signals does this itself: otherwise
// a signal that is reset, or taken by another thread, before a woken thread runs would be lost.
void SatisfyWaiters(Waiters& waiters, Event const& signalled) {
  Waiter* waiter = waiters.First();
  while (waiter != nullptr && signalled.signalled) {
    Waiter* const next = waiter->next;
    waiter->result = TryTake(waiter->events, waiter->all);
    if (waiter->result != kWaitTimeout) {
      waiters.Remove(*waiter);
      waiter->satisfied.notify_one();
    }
    waiter = next;
  }
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

bool SignalEvent(EventHandle handle) {
  Events& events = AllEvents();
  std::lock_guard const guard(events.lock);
  Event* const event = events.Find(handle);
  if (event == nullptr) {
    return Fail(kErrorInvalidHandle, false);
  }
  event->signalled = true;
  SatisfyWaiters(events.waiters, *event);
  return true;
}

bool ResetEvent(EventHandle handle) {
  Events& events = AllEvents();
  std::lock_guard const guard(events.lock);
  Event* const event = events.Find(handle);
  if (event == nullptr) {
    return Fail(kErrorInvalidHandle, false);
  }
  event->signalled = false;
  return true;
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
  Waiter waiter{.events = {waited, handles.size()}, .all = all};
  waiter.result = TryTake(waiter.events, all);
  if (waiter.result != kWaitTimeout || timeoutMs == 0) {
    return waiter.result;
  }
  events.waiters.Append(waiter);
  auto const isSatisfied = [&waiter] { return waiter.result != kWaitTimeout; };
  if (timeoutMs == kNoLimit) {
    waiter.satisfied.wait(guard, isSatisfied);
  } else if (!waiter.satisfied.wait_until(guard, deadline, isSatisfied)) {
    events.waiters.Remove(waiter);
  }
  return waiter.result;
}

std::uint32_t LastError() {
  return lastError;
}

}  // namespace usb_support::platform
