// The export macro of the library. A shared build defines USB_RULES_BUILDING for its own sources;
// a static build defines USB_RULES_STATIC for itself and for everything that links it.
#pragma once

#if defined(USB_RULES_STATIC)
#define USB_RULES_API
#elif !defined(_WIN32)
/// For every class and function that usb_rules exports.
#define USB_RULES_API __attribute__((visibility("default")))
#elif defined(USB_RULES_BUILDING)
#define USB_RULES_API __declspec(dllexport)
#else
#define USB_RULES_API __declspec(dllimport)
#endif
