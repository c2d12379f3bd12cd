// Bytes for a test in a heap block of exactly their length, so that a sanitizer sees one byte read
// past the end.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>

namespace usb_fields::testing_support {

class HeapBytes {
 public:
  explicit HeapBytes(std::span<std::uint8_t const> bytes)
      : block_(new std::uint8_t[bytes.size()]),
        size_(bytes.size()) {
    std::ranges::copy(bytes, block_.get());
  }

  std::span<std::uint8_t const> Span() const { return {block_.get(), size_}; }

 private:
  std::unique_ptr<std::uint8_t[]> block_;
  std::size_t size_;
};

}  // namespace usb_fields::testing_support
