// The English text of every status code, and the function that logs it. Both functions may be
// called from any thread; neither fails on any code.
#pragma once

#include <usb_support/platform/export.h>
#include <usb_support/status/return_code.h>
#include <usb_support/suite_interfaces/test_status.h>

/// The text of `code`; never null. A success code gives "Success" or "Success (with warning)". Bits
/// 24 to 30 of a failure do not affect it. For a failure without a text: `defaultText` itself when
/// it is neither null nor empty, else the empty text and a line "No status text discovered for
/// status: 0x..." in the log. The texts of the library live as long as it does.
USB_SUPPORT_API char const* GetStatusDetail(RETURN_CODE code, char const* defaultText);

/// Writes the code's text and a full stop to the log at the severity of `status`, then flushes the
/// log. Always true.
USB_SUPPORT_API bool PrintErrorDetail(RETURN_CODE code, TEST_STATUS status);
