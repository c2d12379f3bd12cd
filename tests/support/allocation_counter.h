// Counts the allocations of a test's thread. On Windows a program's operator new does not replace
// that of its DLLs, so nothing could be counted there; tests check the macro.
#pragma once

#include <cstddef>

#if defined(__has_feature)
#if __has_feature(address_sanitizer)
#define USB_SUPPORT_TEST_ADDRESS_SANITIZER
#endif
#endif
#if defined(__SANITIZE_ADDRESS__) && !defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)
#define USB_SUPPORT_TEST_ADDRESS_SANITIZER
#endif

#if !defined(_WIN32)
#define USB_SUPPORT_TEST_COUNTS_ALLOCATIONS
#endif

namespace usb_support::testing_support {

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)

/// Counts from its construction to its end; one at a time on a thread.
class AllocationCount {
 public:
  AllocationCount() noexcept;
  AllocationCount(AllocationCount const&) = delete;
  AllocationCount& operator=(AllocationCount const&) = delete;
  ~AllocationCount();

  std::size_t Value() const noexcept;
};

/// Allocations of one run of `action`.
template <typename Action>
std::size_t AllocationsOf(Action const& action) {
  AllocationCount const count;
  action();
  return count.Value();
}

/// Allocations of a hundred runs after a first one.
template <typename Action>
std::size_t SteadyAllocationsOf(Action const& action) {
  action();
  return AllocationsOf([&action] {
    for (int run = 0; run < 100; ++run) {
      action();
    }
  });
}

#endif

}  // namespace usb_support::testing_support
