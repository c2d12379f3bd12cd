// A mark for compilers that track lifetimes.
#pragma once

#if defined(__has_cpp_attribute)
#if __has_cpp_attribute(clang::lifetimebound)
#define USB_SUPPORT_LIFETIMEBOUND [[clang::lifetimebound]]
#elif __has_cpp_attribute(msvc::lifetimebound)
#define USB_SUPPORT_LIFETIMEBOUND [[msvc::lifetimebound]]
#endif
#endif
#if !defined(USB_SUPPORT_LIFETIMEBOUND)
/// After a parameter, or after the `const` of a member function: the result refers to that object,
/// so the compiler reports a temporary one as a fault.
#define USB_SUPPORT_LIFETIMEBOUND
#endif
