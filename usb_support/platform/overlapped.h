// The record of an overlapped request: that of Windows, and elsewhere one with the same layout.
#pragma once

#if defined(_WIN32)

// Defined only for this include, unless the program has defined them itself.
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#define USB_SUPPORT_DEFINED_WIN32_LEAN_AND_MEAN
#endif
#ifndef NOMINMAX
#define NOMINMAX
#define USB_SUPPORT_DEFINED_NOMINMAX
#endif
#include <windows.h>
#ifdef USB_SUPPORT_DEFINED_WIN32_LEAN_AND_MEAN
#undef WIN32_LEAN_AND_MEAN
#undef USB_SUPPORT_DEFINED_WIN32_LEAN_AND_MEAN
#endif
#ifdef USB_SUPPORT_DEFINED_NOMINMAX
#undef NOMINMAX
#undef USB_SUPPORT_DEFINED_NOMINMAX
#endif

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
