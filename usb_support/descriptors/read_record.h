// The only access to the fields of descriptors that a device supplied: reads a whole record and
// never a byte outside the run that the iterator walks.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

#include <usb_support/descriptors/descriptor_range_iterator.h>
#include <usb_support/descriptors/records.h>

namespace usb_support {

/// The record at `it` as a copy. A field beyond the end of the run reads as 0; a field beyond
/// the descriptor's own bLength but inside the run reads as it is.
template <typename Record>
[[nodiscard]] Record ReadRecord(CDescriptorRangeIterator const& it) noexcept {
  static_assert(kIsWireRecord<Record>,
                "Record is a descriptor as it is on the wire: packed, of whole bytes.");
  Record record{};
  if (it.Remaining() >= sizeof(Record)) {
    std::memcpy(&record, it.operator->(), sizeof(Record));
  } else {
    std::copy_n(reinterpret_cast<unsigned char const*>(it.operator->()), it.Remaining(),
                reinterpret_cast<unsigned char*>(&record));
  }
  return record;
}

/// The byte at `offset` of the descriptor at `it`, by the same rules.
inline std::uint8_t ReadByte(CDescriptorRangeIterator const& it, std::size_t offset) noexcept {
  return it.Remaining() > offset ? reinterpret_cast<unsigned char const*>(it.operator->())[offset]
                                 : std::uint8_t{0};
}

/// True when the descriptor at `it` has the type `type`. A descriptor at the run's end without a
/// second byte has no type and matches none, not even 0.
inline bool HasType(CDescriptorRangeIterator const& it, std::uint8_t type) noexcept {
  return it.Remaining() >= sizeof(TQ_USB_COMMON_DESCRIPTOR) && it->bDescriptorType == type;
}

}  // namespace usb_support
