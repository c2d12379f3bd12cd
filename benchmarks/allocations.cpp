#include <benchmarks/allocations.h>

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

usb_support::benchmarks::Allocations total;

}  // namespace

usb_support::benchmarks::Allocations usb_support::benchmarks::AllocationsSoFar() noexcept {
  return total;
}

// The other forms of new and delete come down to these.

void* operator new(std::size_t size) {
  ++total.blocks;
  total.bytes += size;
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
