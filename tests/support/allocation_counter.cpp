#include <tests/support/allocation_counter.h>

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)

#include <cstdlib>
#include <new>

#if defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)
#include <sanitizer/allocator_interface.h>
#endif

namespace {

thread_local bool counting = false;
thread_local std::size_t allocations = 0;

}  // namespace

namespace usb_support::testing_support {

AllocationCount::AllocationCount() noexcept {
  allocations = 0;
  counting = true;
}

AllocationCount::~AllocationCount() {
  counting = false;
}

std::size_t AllocationCount::Value() const noexcept {
  return allocations;
}

}  // namespace usb_support::testing_support

#if !defined(USB_SUPPORT_TEST_ADDRESS_SANITIZER)

// The other forms of new and delete call these two.

void* operator new(std::size_t size) {
  allocations += counting ? 1u : 0u;
  void* const block = std::malloc(size != 0 ? size : 1);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

void operator delete(void* block) noexcept {
  std::free(block);
}

void operator delete(void* block, std::size_t) noexcept {
  std::free(block);
}

#else

namespace {

// The sanitizer's own operator new stays in use and reports its calls.
void CountAllocation(void const volatile* /*block*/, std::size_t /*size*/) {
  allocations += counting ? 1u : 0u;
}

void IgnoreRelease(void const volatile* /*block*/) {
}

[[maybe_unused]] int const installed =
    __sanitizer_install_malloc_and_free_hooks(CountAllocation, IgnoreRelease);

}  // namespace

#endif

#endif
