// A mark for the compilers that follow lifetimes.
#pragma once

#if defined(__has_cpp_attribute)
#if __has_cpp_attribute(clang::lifetimebound)
#define USB_SUPPORT_LIFETIMEBOUND [[clang::lifetimebound]]
#elif __has_cpp_attribute(msvc::lifetimebound)
#define USB_SUPPORT_LIFETIMEBOUND [[msvc::lifetimebound]]
#endif
#endif
#if !defined(USB_SUPPORT_LIFETIMEBOUND)
/// After a parameter, or after the `const` of a member function: the result refers into that
/// object, so a temporary one is a fault that the compiler reports.
#define USB_SUPPORT_LIFETIMEBOUND
#endif
