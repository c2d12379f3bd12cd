// Bytes for a test in a heap block of exactly their length, so that a sanitizer sees one byte read
// past the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <span>
#include <vector>

#include <usb_support/descriptors/descriptor_range.h>

namespace usb_support::testing_support {

using Bytes = std::vector<unsigned char>;

/// `parts` one behind the other.
inline Bytes Joined(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (Bytes const& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

/// A descriptor of `length` bytes, the ones behind its header counting up from 1.
inline Bytes MakeDescriptor(unsigned char length, unsigned char type) {
  Bytes descriptor(length);
  for (std::size_t at = 0; at < descriptor.size(); ++at) {
    descriptor[at] = at == 0 ? length : at == 1 ? type : static_cast<unsigned char>(at - 1);
  }
  return descriptor;
}

class ExactBytes {
 public:
  explicit ExactBytes(Bytes const& bytes)
      : block_(new unsigned char[bytes.size()]),
        size_(bytes.size()) {
    if (size_ != 0) {
      std::memcpy(block_.get(), bytes.data(), size_);
    }
  }

  unsigned char* data() const { return block_.get(); }
  std::size_t size() const { return size_; }

  /// The whole block as a range.
  /// Requires: at most 65,535 bytes.
  CDescriptorRange Range() const { return {block_.get(), static_cast<unsigned short>(size_)}; }

  TQ_USB_COMMON_DESCRIPTOR* Descriptor(std::size_t offset = 0) const {
    return reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR*>(block_.get() + offset);
  }

  /// Iterator on `offset` with the rest of the block before it.
  CDescriptorRangeIterator At(std::size_t offset) const {
    return {Descriptor(offset), size_ - offset};
  }

 private:
  std::unique_ptr<unsigned char[]> block_;
  std::size_t size_;
};

}  // namespace usb_support::testing_support
