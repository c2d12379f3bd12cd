// The switches by which the operator supplies a configuration descriptor, and the pause that the
// suite's control-transfer test device needs. The settings are read at every call; a missing or
// unreadable one is off. Nothing here throws.
#pragma once

#include <usb_support/platform/export.h>

/// True when the setting "UseCustomDescriptor" is found and its low 32 bits are not 0.
USB_SUPPORT_API bool UseCustomConfigDescriptor();

/// True when a custom descriptor is in use and the setting "CustomDescriptorBinary" is found with
/// low 32 bits that are not 0. Never true without UseCustomConfigDescriptor().
USB_SUPPORT_API bool IsBinaryCustomConfigDescriptorFile();

/// Sleeps for 1 microsecond: the pause between control transfers to a SuperMUTT device.
USB_SUPPORT_API void SuperMUTTControlTransferDelay();
