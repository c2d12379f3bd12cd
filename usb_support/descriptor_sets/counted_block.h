// A reference-counted block of bytes, in which a descriptor set holds its descriptors.
#pragma once

#include <cstddef>
#include <cstdint>

#include <usb_support/platform/export.h>

namespace usb_support {

/// A share in a block, or none. Copying shares; the last share frees. A block is one allocation,
/// with nothing after its last byte.
class USB_SUPPORT_API CountedBlock {
 public:
  CountedBlock() noexcept = default;

  /// A block of `length` bytes copied from `bytes`, which may be in any other block. Throws
  /// std::bad_alloc.
  CountedBlock(unsigned char const* bytes, std::uint16_t length);

  /// Shares the block of `other`, and releases its own.
  CountedBlock(CountedBlock const& other) noexcept;
  CountedBlock& operator=(CountedBlock const& other) noexcept;
  ~CountedBlock();

  /// First byte; null without a block, not null for a block of no bytes.
  unsigned char* Bytes() const noexcept;

  /// Length of the block in bytes; 0 without one.
  std::uint16_t Length() const noexcept;

  /// The number of its bytes from `address` on: 0 when `address` is not in the block.
  std::uint16_t LengthFrom(void const* address) const noexcept;

 private:
  struct Header;

  Header* header_ = nullptr;
};

}  // namespace usb_support
