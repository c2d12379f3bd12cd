// Counts the allocations of a test's thread and lets them fail; otherwise operator new is the usual
// one.
//
// On Windows a program's operator new does not reach into its DLLs, so nothing could be seen there;
// and the address sanitizer's own operator new, which finds mismatched deletes, cannot be made to
// fail. A test that needs either asks for the macro that says that it is there.
#pragma once

#include <cstddef>
#include <new>

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
#if !defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)
#define USB_SUPPORT_TEST_FAILS_ALLOCATIONS
#endif
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

/// Allocations of a hundred runs behind a first one.
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

#if defined(USB_SUPPORT_TEST_FAILS_ALLOCATIONS)

/// Lets every allocation of the thread fail from its construction to its end.
class AllocationFailure {
 public:
  AllocationFailure() noexcept;
  AllocationFailure(AllocationFailure const&) = delete;
  AllocationFailure& operator=(AllocationFailure const&) = delete;
  ~AllocationFailure();
};

/// True when `action`, run without memory, raises std::bad_alloc.
template <typename Action>
bool RunsOutOfMemory(Action const& action) {
  try {
    AllocationFailure const noMemory;
    action();
  } catch (std::bad_alloc const&) {
    return true;
  }
  return false;
}

#endif

}  // namespace usb_support::testing_support
