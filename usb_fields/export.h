// The export macro of the library. A shared build defines USB_FIELDS_BUILDING for its own sources;
// a static build defines USB_FIELDS_STATIC for itself and for everything that links it.
#pragma once

#if defined(USB_FIELDS_STATIC)
#define USB_FIELDS_API
#elif !defined(_WIN32)
/// For every class and function that usb_fields exports.
#define USB_FIELDS_API __attribute__((visibility("default")))
#elif defined(USB_FIELDS_BUILDING)
#define USB_FIELDS_API __declspec(dllexport)
#else
#define USB_FIELDS_API __declspec(dllimport)
#endif
