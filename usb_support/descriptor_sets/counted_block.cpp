#include <usb_support/descriptor_sets/counted_block.h>

#include <atomic>
#include <cstring>
#include <new>
#include <utility>

namespace usb_support {

// The bytes follow the header in the same allocation.
struct CountedBlock::Header {
  std::atomic<std::uint32_t> owners{1};
  std::uint16_t length;

  explicit Header(std::uint16_t bytes) noexcept : length(bytes) {}

  unsigned char* Bytes() noexcept { return reinterpret_cast<unsigned char*>(this + 1); }
};

CountedBlock::CountedBlock(unsigned char const* bytes, std::uint16_t length)
    : header_(new (::operator new(sizeof(Header) + length)) Header(length)) {
  if (length != 0) {
    std::memcpy(header_->Bytes(), bytes, length);
  }
}

CountedBlock::CountedBlock(CountedBlock const& other) noexcept : header_(other.header_) {
  if (header_ != nullptr) {
    header_->owners.fetch_add(1, std::memory_order_relaxed);
  }
}

CountedBlock& CountedBlock::operator=(CountedBlock const& other) noexcept {
  CountedBlock copy(other);
  std::swap(header_, copy.header_);
  return *this;
}

CountedBlock::~CountedBlock() {
  if (header_ != nullptr && header_->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
    header_->~Header();
    ::operator delete(header_);
  }
}

unsigned char* CountedBlock::Bytes() const noexcept {
  return header_ != nullptr ? header_->Bytes() : nullptr;
}

std::uint16_t CountedBlock::Length() const noexcept {
  return header_ != nullptr ? header_->length : std::uint16_t{0};
}

std::uint16_t CountedBlock::LengthFrom(void const* address) const noexcept {
  auto const offset =
      reinterpret_cast<std::uintptr_t>(address) - reinterpret_cast<std::uintptr_t>(Bytes());
  return offset < Length() ? static_cast<std::uint16_t>(Length() - offset) : std::uint16_t{0};
}

}  // namespace usb_support
