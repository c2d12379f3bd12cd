// The system calls for driver events: events that one thread sets and another waits on.
//
// On Windows these are calls of kernel32; elsewhere POSIX threads give them the same meaning, so
// that everything built on them runs and is tested on both. Any thread may call any of them.
#pragma once

#include <cstdint>
#include <span>

namespace usb_support::platform {

/// An event; null is none.
using EventHandle = void*;

// Results of a wait, besides the index of the event that satisfied it (Win32: WaitForSingleObject).
inline constexpr std::uint32_t kWaitAbandoned = 0x00000080;
inline constexpr std::uint32_t kWaitTimeout = 0x00000102;
inline constexpr std::uint32_t kWaitFailed = 0xFFFFFFFF;

/// A time limit that never ends a wait.
inline constexpr std::uint32_t kNoLimit = 0xFFFFFFFF;

/// The most events that one wait takes (Win32: MAXIMUM_WAIT_OBJECTS).
inline constexpr std::uint32_t kMostEvents = 64;

/// Makes a non-signalled event without a name. A manual-reset event stays signalled until it is
/// reset; any other is reset by the one wait that it satisfies. Null when the system has none left.
EventHandle MakeEvent(bool manualReset);

/// Signals or resets an event. A signal immediately ends the waits that it satisfies, as in
/// kernel32: all waits on a manual-reset event, even when it is reset directly afterwards, and one
/// wait on any other event, which outside Windows is the longest one. False for anything that is
/// not an event.
bool SignalEvent(EventHandle event);
bool ResetEvent(EventHandle event);

/// Ends an event. False for anything that is not an event.
/// Requires: nobody waits on it.
bool CloseEvent(EventHandle event);

/// Waits until the event is signalled, at most `timeoutMs` milliseconds: 0, kWaitTimeout, or
/// kWaitFailed for anything that is not an event.
std::uint32_t WaitForOne(EventHandle event, std::uint32_t timeoutMs);

/// Waits until one of the events is signalled (the lowest index wins, and its signal is taken) or,
/// with `all`, until all are signalled at the same time (all signals are taken together; the result
/// is 0). kWaitTimeout when the limit is reached, with no signal taken; kWaitFailed for no events,
/// more than kMostEvents, or anything that is not an event.
std::uint32_t WaitForSeveral(std::span<EventHandle const> events, bool all,
                             std::uint32_t timeoutMs);

/// The system's error number of the calling thread's last failed call.
std::uint32_t LastError();

}  // namespace usb_support::platform
