#include <usb_support/descriptors/descriptor_range.h>

#include <cstring>
#include <stdexcept>

namespace {

unsigned char* AddressUnder(CDescriptorRangeIterator& it) {
  return reinterpret_cast<unsigned char*>(it.operator->());
}

unsigned short CutDistance(CDescriptorRangeIterator const& first,
                           CDescriptorRangeIterator const& last) {
  return static_cast<unsigned short>(last - first);
}

}  // namespace

CDescriptorRange::CDescriptorRange(CDescriptorRangeIterator first,
                                   CDescriptorRangeIterator last) noexcept
    : CDescriptorRange(AddressUnder(first), CutDistance(first, last)) {
}

void CDescriptorRange::Reset() {
  Reset(nullptr, 0);
}

void CDescriptorRange::Reset(CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
  if (AddressUnder(first) == nullptr || AddressUnder(last) == nullptr ||
      AddressUnder(first) >= AddressUnder(last)) {
    Reset();
  } else {
    Reset(AddressUnder(first), CutDistance(first, last));
  }
}

void CDescriptorRange::Reset(void* const bytes, unsigned short length) {
  bytes_ = length != 0 ? static_cast<unsigned char*>(bytes) : nullptr;
  length_ = bytes_ != nullptr ? length : std::uint16_t{0};
}

TQ_USB_COMMON_DESCRIPTOR const& CDescriptorRange::operator[](std::uint64_t index) const {
  CDescriptorRangeIterator it = begin() + index;
  return *it.operator->();
}

bool CDescriptorRange::SubRangeOf(CDescriptorRange const& other) const noexcept {
  auto const start = reinterpret_cast<std::uintptr_t>(bytes_);
  auto const otherStart = reinterpret_cast<std::uintptr_t>(other.bytes_);
  return start >= otherStart && start + length_ <= otherStart + other.length_;
}

std::pair<bool, CDescriptorRangeIterator> CDescriptorRange::AlwaysTrue(
    CDescriptorRangeIterator first, CDescriptorRangeIterator /*last*/) {
  return {true, first};
}

bool operator==(CDescriptorRange const& a, CDescriptorRange const& b) noexcept {
  // Only a null range is empty.
  return a.Length() == b.Length() &&
         (a.IsEmpty() || std::memcmp(a.Bytes(), b.Bytes(), a.Length()) == 0);
}

bool operator!=(CDescriptorRange const& a, CDescriptorRange const& b) noexcept {
  return !(a == b);
}

CDescriptorRange usb_support::RangeOver(std::span<unsigned char const> bytes) {
  if (bytes.size() > 0xFFFF) {
    throw std::length_error("A descriptor range spans at most 65535 bytes.");
  }
  return {const_cast<unsigned char*>(bytes.data()), static_cast<unsigned short>(bytes.size())};
}
