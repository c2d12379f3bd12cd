// Makes and counts the sub-ranges of a descriptor range. Not installed.
//
// Where the library knows the cut itself, one pass finds the end of the valid part and cuts on the
// way. The line about an invalid range comes once, as soon as its place is known.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include <usb_support/descriptors/descriptor_range.h>

namespace usb_support {

/// What a descriptor means for the sub-ranges of a list.
enum class CutPlace : unsigned char {
  kInside,  ///< belongs to the sub-range that is open, if one is
  kStart,   ///< ends the sub-range that is open and starts the next
  kEnd,     ///< ends the sub-range that is open, and is in none
};

class RangeLister {
 public:
  using RangeVector = CDescriptorRange::RangeVector;

  /// Hands every valid descriptor with its length to `visit`; where they end.
  template <typename Visit>
  static CDescriptorRangeIterator Walk(CDescriptorRange const& range, Visit const& visit) {
    // It never leaves this function by reference, so that it stays in registers.
    CDescriptorRangeIterator it = range.begin();
    while (it.remaining_ != 0) {
      std::uint8_t const length = it.current_->bLength;
      if (it.IsOutside(length)) {
        break;
      }
      CDescriptorRangeIterator const next(CDescriptorRangeIterator::Advanced(it.current_, length),
                                          it.remaining_ - length);
      visit(it, length);
      it = next;
    }
    return it;
  }

  /// The sub-ranges from every start up to the next start or end, or to the end of the valid part.
  /// Asks `placeOf` about every valid descriptor once, in order.
  template <typename PlaceOf>
  static RangeVector Split(CDescriptorRange const& range, PlaceOf placeOf) {
    RangeVector ranges = NewList();
    std::size_t const expected = range.Length() / kBytesOfInterface + 1;
    unsigned char* start = nullptr;
    auto const validEnd = Walk(range, [&](CDescriptorRangeIterator it, std::uint8_t) {
      CutPlace const place = placeOf(it);
      if (place == CutPlace::kInside) {
        return;
      }
      unsigned char* const here = AddressUnder(it);
      if (start != nullptr) {
        Append(*ranges, expected, start, static_cast<unsigned short>(here - start));
      }
      start = place == CutPlace::kStart ? here : nullptr;
    });
    if (start != nullptr) {
      Append(*ranges, expected, start, static_cast<unsigned short>(AddressUnder(validEnd) - start));
    }
    LogUnlessValid(range, validEnd);
    return ranges;
  }

  /// Every valid descriptor that `matches`, each as a range of its own; `expected` is how many
  /// there may be.
  template <typename Matches>
  static RangeVector Each(CDescriptorRange const& range, std::size_t expected,
                          Matches const& matches) {
    RangeVector ranges = NewList();
    auto const validEnd = Walk(range, [&](CDescriptorRangeIterator it, std::uint8_t length) {
      if (matches(it)) {
        Append(*ranges, expected, AddressUnder(it), length);
      }
    });
    LogUnlessValid(range, validEnd);
    return ranges;
  }

  /// How many valid descriptors match, cut to 16 bits.
  template <typename Matches>
  static unsigned short CountEach(CDescriptorRange const& range, Matches const& matches) {
    unsigned int count = 0;
    auto const validEnd = Walk(
        range, [&](CDescriptorRangeIterator it, std::uint8_t) { count += matches(it) ? 1u : 0u; });
    LogUnlessValid(range, validEnd);
    return static_cast<unsigned short>(count);
  }

  /// The sub-ranges that `cut(first, last)` gives one behind the other, up to the first empty one;
  /// each is handed to `take`.
  template <typename Cut, typename Take>
  static void ForEach(CDescriptorRange const& range, Cut const& cut, Take const& take) {
    CDescriptorRangeIterator const validEnd = range.ValidUntil();
    LogUnlessValid(range, validEnd);
    for (CDescriptorRangeIterator current = range.begin(); current != validEnd;) {
      CDescriptorRange const subRange = cut(current, validEnd);
      if (subRange.IsEmpty()) {
        return;
      }
      take(subRange);
      auto const next = reinterpret_cast<std::uintptr_t>(subRange.Bytes()) + subRange.Length();
      while (reinterpret_cast<std::uintptr_t>(current.operator->()) < next) {
        ++current;
      }
    }
  }

  template <typename Cut>
  static RangeVector List(CDescriptorRange const& range, Cut const& cut) {
    RangeVector ranges = NewList();
    ForEach(range, cut, [&](CDescriptorRange const& subRange) { ranges->push_back(subRange); });
    return ranges;
  }

  template <typename Cut>
  static unsigned short Count(CDescriptorRange const& range, Cut const& cut) {
    unsigned int count = 0;
    ForEach(range, cut, [&](CDescriptorRange const&) { ++count; });
    return static_cast<unsigned short>(count);
  }

 private:
  // Most configurations have an interface in every so many bytes.
  static constexpr std::size_t kBytesOfInterface = 32;

  static RangeVector NewList() {
    return {new std::vector<CDescriptorRange>, CDescriptorRange::TheRangeVectDeleter};
  }

  static unsigned char* AddressUnder(CDescriptorRangeIterator it) noexcept {
    return reinterpret_cast<unsigned char*>(it.current_);
  }

  // Makes room in one piece, and none for a list that stays empty.
  static void Append(std::vector<CDescriptorRange>& ranges, std::size_t expected,
                     unsigned char* bytes, unsigned short length) {
    if (ranges.capacity() == 0) [[unlikely]] {
      ranges.reserve(expected);
    }
    ranges.emplace_back(bytes, length);
  }

  static void LogUnlessValid(CDescriptorRange const& range, CDescriptorRangeIterator validEnd) {
    if (validEnd.remaining_ != 0) [[unlikely]] {
      range.LogInvalid(validEnd);
    }
  }
};

}  // namespace usb_support
