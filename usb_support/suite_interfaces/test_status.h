// The suite's verdict and severity flags. A value is a set of bits, so any 32-bit value may occur.
#pragma once

#include <cstdint>

/// Verdict and severity of a test step or of a log line. The enumerators are the values that
/// usb_support uses; a test program may pass any other.
enum TEST_STATUS : std::uint32_t {
  TEST_STATUS_PLAIN = 0,                    ///< a plain log line
  TEST_STATUS_VENDOR_LIST = 0x08000000,     ///< a message about the vendor list file
  TEST_STATUS_INFORMATION = 0x20000000,     ///< informational diagnostics
  TEST_STATUS_INTERNAL_ERROR = 0x40000000,  ///< every run-time exception that the library throws
  TEST_STATUS_FAILURE = 0x80000000,         ///< the default failure of an assertion
};
