// The export macro of the library. A shared build defines USB_DEVICES_BUILDING for its own sources;
// a static build defines USB_DEVICES_STATIC for itself and for everything that links it.
#pragma once

#if defined(USB_DEVICES_STATIC)
#define USB_DEVICES_API
#elif !defined(_WIN32)
/// For every class and function that usb_devices exports.
#define USB_DEVICES_API __attribute__((visibility("default")))
#elif defined(USB_DEVICES_BUILDING)
#define USB_DEVICES_API __declspec(dllexport)
#else
#define USB_DEVICES_API __declspec(dllimport)
#endif
