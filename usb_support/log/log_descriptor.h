// Writes a run of descriptors to the suite's log.
#pragma once

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/platform/export.h>

/// Logs the title, bold, as "// title:" on a line of its own, and then the range as source code
/// (CDescriptorRange::OutputString). An empty title gives no line; it must not be null. Bytes that
/// form no valid descriptor are part of the dump. Throws TQRunTimeException, before anything is
/// written, when no CUsbHelper is registered.
USB_SUPPORT_API void TQHelper_LogDescriptor(CDescriptorRange const& range, char const* title);
