#include <usb_support/suite_interfaces/simple_buffer.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <new>
#include <utility>

namespace {

constexpr std::size_t kMaxCapacity = PTRDIFF_MAX;

// Large enough for most log lines, so that a new buffer seldom grows at all.
constexpr std::size_t kMinCapacity = 64;

std::size_t GrownCapacity(std::size_t capacity, std::size_t size) {
  if (size > kMaxCapacity) {
    throw std::bad_alloc();
  }
  std::size_t const doubled = capacity > kMaxCapacity / 2 ? kMaxCapacity : capacity * 2;
  return std::max({size, doubled, kMinCapacity});
}

}  // namespace

CSimpleBuffer::CSimpleBuffer(CSimpleBuffer const& other) : CSimpleBuffer() {
  *this = other;
}

CSimpleBuffer::CSimpleBuffer(CSimpleBuffer&& other) noexcept
    : bytes_(std::exchange(other.bytes_, nullptr)),
      size_(std::exchange(other.size_, 0)),
      capacity_(std::exchange(other.capacity_, 0)) {
}

CSimpleBuffer& CSimpleBuffer::operator=(CSimpleBuffer const& other) {
  if (this != &other) {
    char* const bytes = GetBuffer(other.size_);
    if (other.size_ != 0) {
      std::memcpy(bytes, other.bytes_, other.size_);
    }
  }
  return *this;
}

CSimpleBuffer& CSimpleBuffer::operator=(CSimpleBuffer&& other) noexcept {
  if (this != &other) {
    delete[] bytes_;
    bytes_ = std::exchange(other.bytes_, nullptr);
    size_ = std::exchange(other.size_, 0);
    capacity_ = std::exchange(other.capacity_, 0);
  }
  return *this;
}

CSimpleBuffer::~CSimpleBuffer() {
  delete[] bytes_;
}

char* CSimpleBuffer::GetBuffer(std::size_t size) {
  if (bytes_ == nullptr || size > capacity_) {
    std::size_t const capacity = GrownCapacity(capacity_, size);
    char* const bytes = new char[capacity];
    delete[] bytes_;
    bytes_ = bytes;
    capacity_ = capacity;
  }
  size_ = size;
  return bytes_;
}

char const* CSimpleBuffer::Contents() const noexcept {
  return size_ == 0 ? "" : bytes_;
}
