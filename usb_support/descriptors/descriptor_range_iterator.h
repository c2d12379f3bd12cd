// The cursor of every walk over a run of USB descriptors: a step goes forward by the descriptor's
// own bLength.
//
// An iterator is a value of two words. It never owns the bytes; they must stay alive and unchanged
// while it is used. A step never leaves the run: it throws where the chain of lengths is broken,
// and a last descriptor that claims more bytes than are left steps exactly to the run's end.
#pragma once

#include <cstddef>
#include <cstdint>
#include <iterator>

#include <usb_support/descriptors/records.h>
#include <usb_support/platform/export.h>

namespace usb_support {
class Descriptor;
}

/// Steps from descriptor to descriptor. Two iterators are equal only when they are at the same
/// address with the same number of bytes left.
class USB_SUPPORT_API CDescriptorRangeIterator {
 public:
  /// A forward iterator, so standard algorithms may pass over a run more than once. `operator-`
  /// counts bytes, so the number of descriptors between two iterators is std::distance, not their
  /// difference.
  using iterator_category = std::forward_iterator_tag;
  using value_type = TQ_USB_COMMON_DESCRIPTOR;
  using difference_type = std::int64_t;
  using pointer = TQ_USB_COMMON_DESCRIPTOR*;
  using reference = TQ_USB_COMMON_DESCRIPTOR&;

  /// An iterator over nothing: null, no bytes left.
  CDescriptorRangeIterator() noexcept = default;

  /// An iterator on `descriptor` with `remaining` bytes from there to the end of the run.
  /// Neither is checked.
  CDescriptorRangeIterator(TQ_USB_COMMON_DESCRIPTOR* descriptor, std::uint64_t remaining) noexcept
      : current_(descriptor),
        remaining_(remaining) {}

  /// The descriptor under the cursor.
  /// Requires: the iterator is not at the end.
  TQ_USB_COMMON_DESCRIPTOR* operator->() noexcept { return current_; }
  TQ_USB_COMMON_DESCRIPTOR const* operator->() const noexcept { return current_; }
  TQ_USB_COMMON_DESCRIPTOR& operator*() noexcept { return *current_; }
  TQ_USB_COMMON_DESCRIPTOR const& operator*() const noexcept { return *current_; }

  /// The address of the descriptor, not of the iterator (std::addressof gives that one).
  TQ_USB_COMMON_DESCRIPTOR* operator&() noexcept { return current_; }
  TQ_USB_COMMON_DESCRIPTOR const* operator&() const noexcept { return current_; }

  /// Bytes from the cursor to the end of the run; 0 at the end.
  std::uint64_t Remaining() const noexcept { return remaining_; }

  /// Steps to the next descriptor. Throws TQRunTimeException at the end of the run and on a
  /// descriptor whose bLength is 0; the iterator then stays where it was.
  CDescriptorRangeIterator& operator++() {
    if (remaining_ == 0) [[unlikely]] {
      RaiseOutOfRange();
    }
    std::uint64_t const length = current_->bLength;
    if (IsOutside(length)) [[unlikely]] {
      // Out of line, so that no compiler turns the clamp into a selection that every step of every
      // walk would wait for.
      *this = StepFromBadLength(*this);
      return *this;
    }
    current_ = Advanced(current_, length);
    remaining_ -= length;
    return *this;
  }

  /// Steps, and returns the iterator as it was before.
  CDescriptorRangeIterator operator++(int) {
    CDescriptorRangeIterator const before = *this;
    ++*this;
    return before;
  }

  /// A copy that has made `count` steps. Throws as a step does; this iterator never changes.
  CDescriptorRangeIterator operator+(std::uint64_t count) const {
    CDescriptorRangeIterator result = *this;
    for (; count != 0; --count) {
      ++result;
    }
    return result;
  }

  /// Distance in bytes, negative when this iterator is before `other`.
  std::int64_t operator-(CDescriptorRangeIterator const& other) const noexcept {
    return static_cast<std::int64_t>(reinterpret_cast<std::uintptr_t>(current_) -
                                     reinterpret_cast<std::uintptr_t>(other.current_));
  }

  /// True for the same address with the same number of bytes left.
  bool operator==(CDescriptorRangeIterator const& other) const noexcept {
    return current_ == other.current_ && remaining_ == other.remaining_;
  }
  bool operator!=(CDescriptorRangeIterator const& other) const noexcept {
    return current_ != other.current_ || remaining_ != other.remaining_;
  }

 private:
  friend class CDescriptorRange;
  friend class usb_support::Descriptor;

  static TQ_USB_COMMON_DESCRIPTOR* Advanced(TQ_USB_COMMON_DESCRIPTOR* from,
                                            std::uint64_t bytes) noexcept {
    return reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR*>(reinterpret_cast<unsigned char*>(from) +
                                                       bytes);
  }

  // True for a bLength that is 0 or reaches past the end of the run, in one comparison.
  bool IsOutside(std::uint64_t length) const noexcept { return length - 1 >= remaining_; }

  // True when a step from here is neither refused nor clamped.
  bool HoldsWholeDescriptor() const noexcept {
    return remaining_ != 0 && !IsOutside(current_->bLength);
  }

  // Returns the number of bytes that it stepped.
  // Requires: HoldsWholeDescriptor().
  std::uint8_t StepOverWholeDescriptor() noexcept {
    std::uint8_t const length = current_->bLength;
    current_ = Advanced(current_, length);
    remaining_ -= length;
    return length;
  }

  [[noreturn]] static void RaiseOutOfRange();

  // Refuses a zero length; a step over a last descriptor that claims too much goes to the run's
  // end. The range decides whether such a descriptor is valid.
  static CDescriptorRangeIterator StepFromBadLength(CDescriptorRangeIterator it);

  TQ_USB_COMMON_DESCRIPTOR* current_ = nullptr;
  std::uint64_t remaining_ = 0;
};
