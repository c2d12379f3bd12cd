// The record of an overlapped request: Windows' own, and elsewhere one of the same layout.
#pragma once

#if defined(_WIN32)

#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#else

#include <cstdint>

/// As in the Win32 API (minwinbase.h).
struct OVERLAPPED {
  std::uintptr_t Internal;      ///< status of the request, the system's
  std::uintptr_t InternalHigh;  ///< bytes transferred, the system's
  std::uint32_t Offset;         ///< low half of the place in a file
  std::uint32_t OffsetHigh;     ///< high half of the place in a file
  void* hEvent;                 ///< signalled when the request ends; null: none
};

#endif
