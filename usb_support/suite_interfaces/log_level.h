// How much a log line matters, and what kind of line it is.
#pragma once

#include <cstdint>

#include <usb_support/suite_interfaces/test_status.h>

/// Verbosity of a log line: a line is shown when its level is at most the verbosity of the run.
/// Compared as an unsigned byte.
enum ELogLevel : std::uint8_t {
  LOG_LEVEL_0 = 0,
  LOG_LEVEL_1 = 1,
  LOG_LEVEL_2 = 2,
  LOG_LEVEL_3 = 3,
  LOG_LEVEL_4 = 4,
  LOG_LEVEL_5 = 5,
  LOG_LEVEL_6 = 6,
};

/// The kind of a log line: the bits of the status that it was written with.
enum LOG_TYPE : std::uint32_t {};

/// The log type of a line written with `status`: the same 32 bits.
constexpr LOG_TYPE LogTypeOf(TEST_STATUS status) noexcept {
  return static_cast<LOG_TYPE>(static_cast<std::uint32_t>(status));
}
