// The one door to bytes that a device sent: no read leaves the view.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>
#include <type_traits>

namespace usb_fields {

/// Bytes that may say anything. What is beyond the end reads as 0.
class ByteView {
 public:
  constexpr ByteView() noexcept = default;

  /// The bytes stay the caller's.
  constexpr explicit ByteView(std::span<std::uint8_t const> bytes) noexcept
      : bytes_(bytes),
        words_(bytes.size() >= 8 ? bytes.size() - 7 : 0) {}

  /// How many bytes there are.
  constexpr std::size_t Size() const noexcept { return bytes_.size(); }

  /// The byte at `offset`.
  constexpr std::uint8_t At(std::size_t offset) const noexcept {
    return offset < bytes_.size() ? bytes_[offset] : std::uint8_t{0};
  }

  /// The first `size` bytes, or all when there are fewer.
  constexpr ByteView First(std::size_t size) const noexcept {
    ByteView view = *this;
    view.bytes_ = bytes_.first(std::min(size, bytes_.size()));
    return view;
  }

  /// The little-endian number of the first 8 of the `size` bytes at `offset`.
  constexpr std::uint64_t Number(std::size_t offset, std::size_t size) const noexcept {
    std::size_t const left = bytes_.size() - std::min(offset, bytes_.size());
    return Word(offset) & MaskOf(std::min(size, left));
  }

  /// The little-endian number of the 8 bytes at `offset`, for a caller that masks it with MaskOf
  /// of bytes that are there: the others are 0, or are those of the view that First was asked of.
  constexpr std::uint64_t Word(std::size_t offset) const noexcept {
    std::uint64_t word = 0;
    if (std::endian::native == std::endian::little && !std::is_constant_evaluated() &&
        offset < words_) {
      std::memcpy(&word, bytes_.data() + offset, sizeof(word));
      return word;
    }
    for (std::size_t i = sizeof(word); i-- != 0;) {
      word = word << 8 | At(offset + i);
    }
    return word;
  }

  /// The bits of a number of `size` bytes; of 8, when there are more.
  static constexpr std::uint64_t MaskOf(std::size_t size) noexcept {
    return kMasks[std::min<std::size_t>(size, 8)];
  }

  /// As many of the `size` bytes from `offset` on as there are.
  constexpr std::span<std::uint8_t const> Slice(std::size_t offset,
                                                std::size_t size) const noexcept {
    std::size_t const from = std::min(offset, bytes_.size());
    return bytes_.subspan(from, std::min(size, bytes_.size() - from));
  }

 private:
  // The bytes of a number of 0 to 8 bytes.
  static constexpr std::uint64_t kMasks[] = {
      0x00,         0xFF,           0xFFFF,           0xFFFFFF,          0xFFFFFFFF,
      0xFFFFFFFFFF, 0xFFFFFFFFFFFF, 0xFFFFFFFFFFFFFF, 0xFFFFFFFFFFFFFFFF};

  std::span<std::uint8_t const> bytes_;
  std::size_t words_ = 0;  // at so many offsets 8 bytes are there; the last may be after bytes_
};

}  // namespace usb_fields
