// Bytes for a test in a heap block of exactly their length, so that a sanitizer sees one byte read
// past the end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <utility>
#include <vector>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/suite_interfaces/test_status.h>

namespace usb_support::testing_support {

using Bytes = std::vector<unsigned char>;

/// The bytes of a text such as "09 02 19 00"; throws when it is malformed.
inline Bytes Hex(std::string_view text) {
  Bytes bytes;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (text[at] != ' ') {
      auto const digit = [&](std::size_t place) {
        std::size_t const value = std::string_view("0123456789ABCDEF").find(text.at(place));
        return value < 16 ? static_cast<unsigned>(value) : throw std::invalid_argument("no digit");
      };
      bytes.push_back(static_cast<unsigned char>(digit(at) * 16 + digit(at + 1)));
      ++at;
    }
  }
  return bytes;
}

/// Bytes `first` to `last`, which it leaves out.
inline Bytes Part(Bytes const& bytes, std::size_t first, std::size_t last) {
  return {bytes.begin() + static_cast<std::ptrdiff_t>(first),
          bytes.begin() + static_cast<std::ptrdiff_t>(last)};
}

/// The bytes of a range.
inline Bytes BytesOf(CDescriptorRange const& range) {
  return {range.Bytes(), range.Bytes() + range.Length()};
}

/// The exceptions of ranges, and their status.
inline constexpr auto kInternalError = static_cast<TEST_STATUS>(0x40000000);
inline constexpr char kOutOfRange[] = "Invalid Descriptor Range Iterator: out of range.";
inline constexpr char kZeroLength[] = "Invalid descriptor:  bLength must be greater than 0.";

/// True for a descriptor of this type.
inline RangePredicate IsOfType(unsigned char type) {
  return [type](CDescriptorRangeIterator const& it) { return it->bDescriptorType == type; };
}

using Piece = std::pair<std::size_t, std::size_t>;  ///< offset and length

/// Where the ranges of a list are in the whole.
inline std::vector<Piece> PiecesOf(CDescriptorRange const& whole,
                                   CDescriptorRange::RangeVector const& ranges) {
  std::vector<Piece> pieces;
  for (CDescriptorRange const& range : *ranges) {
    pieces.emplace_back(static_cast<std::size_t>(range.Bytes() - whole.Bytes()), range.Length());
  }
  return pieces;
}

/// `parts` one after the other.
inline Bytes Joined(std::initializer_list<Bytes> parts) {
  Bytes all;
  for (Bytes const& part : parts) {
    all.insert(all.end(), part.begin(), part.end());
  }
  return all;
}

/// A descriptor of `length` bytes, the ones after its header counting up from 1.
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

/// Fills a set with bytes that no longer exist when this returns.
void Put(auto& set, Bytes const& bytes) {
  ExactBytes const source(bytes);
  set.SetDescriptor(source.data(), static_cast<unsigned short>(source.size()));
}

}  // namespace usb_support::testing_support
