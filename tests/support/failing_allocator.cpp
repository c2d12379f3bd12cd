#include <tests/support/failing_allocator.h>

#if !defined(_WIN32)

#include <atomic>
#include <cstdint>
#include <cstdlib>

namespace {

using usb_support::testing_support::AllocatedBlock;
using usb_support::testing_support::Shortage;

std::atomic<std::size_t> outstanding{0};

thread_local std::size_t allocationsUntilFailure = 0;  // 0: none fails
thread_local auto shortageOfThread = Shortage::kOnce;
thread_local bool hasFailed = false;
thread_local std::size_t mostBytes = SIZE_MAX;
thread_local AllocatedBlock lastAllocation;

bool IsToFail() noexcept {
  if (allocationsUntilFailure == 0) {
    return false;
  }
  if (allocationsUntilFailure > 1) {
    --allocationsUntilFailure;
    return false;
  }
  hasFailed = true;
  allocationsUntilFailure = shortageOfThread == Shortage::kOnce ? 0 : 1;
  return true;
}

void* Allocate(std::size_t size) noexcept {
  void* const block = size > mostBytes || IsToFail() ? nullptr : std::malloc(size != 0 ? size : 1);
  outstanding += block != nullptr ? 1u : 0u;
  lastAllocation = {block, size};
  return block;
}

void Release(void* block) noexcept {
  outstanding -= block != nullptr ? 1u : 0u;
  std::free(block);
}

void* AllocateOrThrow(std::size_t size) {
  void* const block = Allocate(size);
  if (block == nullptr) {
    throw std::bad_alloc();
  }
  return block;
}

}  // namespace

namespace usb_support::testing_support {

std::size_t OutstandingAllocations() noexcept {
  return outstanding;
}

AllocatedBlock LastAllocation() noexcept {
  return lastAllocation;
}

FailingAllocator::FailingAllocator(std::size_t failing, Shortage shortage) noexcept {
  allocationsUntilFailure = failing;
  shortageOfThread = shortage;
  hasFailed = false;
}

FailingAllocator::~FailingAllocator() {
  allocationsUntilFailure = 0;
}

SmallBlocksOnly::SmallBlocksOnly(std::size_t most) noexcept {
  mostBytes = most;
}

SmallBlocksOnly::~SmallBlocksOnly() {
  mostBytes = SIZE_MAX;
}

bool FailingAllocator::HasFailed() const noexcept {
  return hasFailed;
}

}  // namespace usb_support::testing_support

// Every form except the aligned ones, which nothing uses: a sanitizer's forms do not call the plain
// one.

void* operator new(std::size_t size) {
  return AllocateOrThrow(size);
}

void* operator new[](std::size_t size) {
  return AllocateOrThrow(size);
}

void* operator new(std::size_t size, std::nothrow_t const&) noexcept {
  return Allocate(size);
}

void* operator new[](std::size_t size, std::nothrow_t const&) noexcept {
  return Allocate(size);
}

void operator delete(void* block) noexcept {
  Release(block);
}

void operator delete[](void* block) noexcept {
  Release(block);
}

void operator delete(void* block, std::nothrow_t const&) noexcept {
  Release(block);
}

void operator delete[](void* block, std::nothrow_t const&) noexcept {
  Release(block);
}

void operator delete(void* block, std::size_t) noexcept {
  Release(block);
}

void operator delete[](void* block, std::size_t) noexcept {
  Release(block);
}

#endif
