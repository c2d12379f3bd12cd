// Logs one assertion of a test: the number of the rule in the document that it comes from, and what
// was found.
#pragma once

#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/test_status.h>

/// Number of an assertion: the first text names the document or test, up to nine others are the
/// numbers in it ({"TD", "9", "4", "1"} is shown as "TD: 9.4.1"); null after the last one. The
/// texts are the test program's and must live as long as the table.
struct TQAssertionNumbers {
  char const* parts[10];  ///< the document, then its numbers
};

/// Writes "(number) message" with entry `index` of both tables, then flushes the log without
/// waiting. Of `status` only the bits 0xC8000000 count; with none of them set the line is a failure
/// (0x80000000). Nothing is read as a format.
/// Requires: the message and all texts of the number up to the last one are not null.
USB_SUPPORT_API void LogAssert(TEST_STATUS status, unsigned index,
                               TQAssertionNumbers const* numbers, char const* const* messages);
