// Checks a rule of a test in one line: the rule is one constant with its number and its message,
// and a broken rule is logged.
//
//   constexpr usb_support::Rule kTotalLength{
//       {{"USB 2.0", "9", "6", "3"}},
//       "wTotalLength differs from the bytes that the configuration has."};
//   bool good = usb_support::Check(kTotalLength, header.wTotalLength == set.Length());
#pragma once

#include <usb_support/log/log_assert.h>
#include <usb_support/platform/export.h>
#include <usb_support/suite_interfaces/test_status.h>

namespace usb_support {

/// What a test checks. The texts must live as long as the rule.
struct Rule {
  TQAssertionNumbers number;  ///< where the rule comes from
  char const* message;        ///< the fault when the rule is broken; not null
};

/// Logs the rule with LogAssert when `isKept` is false; returns `isKept`.
USB_SUPPORT_API bool Check(Rule const& rule, bool isKept, TEST_STATUS status = TEST_STATUS_FAILURE);

}  // namespace usb_support
