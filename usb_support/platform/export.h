// Export macros, one for each library, such as USB_SUPPORT_API. A target of a shared build defines
// the macro with _BUILDING in place of _API for its own sources; a static build defines the one with
// _STATIC for itself and for everything that links it.
#pragma once

#if defined(_WIN32)
#define USB_SUPPORT_DLL_EXPORT __declspec(dllexport)
#define USB_SUPPORT_DLL_IMPORT __declspec(dllimport)
#else
/// For exported names, as the library itself sees them.
#define USB_SUPPORT_DLL_EXPORT __attribute__((visibility("default")))
/// For exported names, as users of the library see them.
#define USB_SUPPORT_DLL_IMPORT __attribute__((visibility("default")))
#endif

#if defined(USB_SUPPORT_STATIC)
#define USB_SUPPORT_API
#elif defined(USB_SUPPORT_BUILDING)
#define USB_SUPPORT_API USB_SUPPORT_DLL_EXPORT
#else
/// On every class and function that usb_support exports.
#define USB_SUPPORT_API USB_SUPPORT_DLL_IMPORT
#endif

// For class templates that the library instantiates: on the `extern template` declaration and on
// the instantiation. Microsoft's compiler needs the export on the latter, all others on the former.
#if defined(_MSC_VER) && defined(USB_SUPPORT_BUILDING)
#define USB_SUPPORT_TEMPLATE_API
#define USB_SUPPORT_TEMPLATE_DEFINITION_API USB_SUPPORT_API
#else
/// On the `extern template` declaration.
#define USB_SUPPORT_TEMPLATE_API USB_SUPPORT_API
/// On the instantiation.
#define USB_SUPPORT_TEMPLATE_DEFINITION_API
#endif

#if defined(SUITE_RUNTIME_STATIC)
#define SUITE_RUNTIME_API
#elif defined(SUITE_RUNTIME_BUILDING)
#define SUITE_RUNTIME_API USB_SUPPORT_DLL_EXPORT
#else
/// On every class and function that the suite runtime exports.
#define SUITE_RUNTIME_API USB_SUPPORT_DLL_IMPORT
#endif

#if defined(BASE_SUPPORT_STATIC)
#define BASE_SUPPORT_API
#elif defined(BASE_SUPPORT_BUILDING)
#define BASE_SUPPORT_API USB_SUPPORT_DLL_EXPORT
#else
/// On every class and function that the base support library exports.
#define BASE_SUPPORT_API USB_SUPPORT_DLL_IMPORT
#endif
