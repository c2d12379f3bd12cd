// Counts what the program and its shared libraries allocate through operator new. One thread.
#pragma once

#include <cstdint>

namespace usb_support::benchmarks {

struct Allocations {
  std::uint64_t blocks = 0;
  std::uint64_t bytes = 0;
};

/// What was allocated since the program began.
Allocations AllocationsSoFar() noexcept;

}  // namespace usb_support::benchmarks
