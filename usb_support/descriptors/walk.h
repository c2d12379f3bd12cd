// The simplest way to read descriptors one by one: views for range-based for loops.
//
//   for (Descriptor const d : Walk(configuration, kEndpointType)) {
//     auto const endpoint = d.As<TQ_USB_ENDPOINT_DESCRIPTOR>();
//     std::printf("%u: %u bytes\n", d.Offset(), MaxPacketBytes(endpoint));
//   }
//
// A view ends at the first descriptor whose bLength is 0 or reaches past the end of the run,
// exactly where CDescriptorRange::ValidUntil() is. It finds that place during the walk, so a loop
// reads every descriptor once. Nothing here throws, allocates or writes to the log, whatever a
// device sent.
//
// Descriptors and views are small values that own nothing: they are valid as long as the bytes of
// the range, and any number of threads may read them. A set owns its bytes, so a view over a
// temporary set does not compile.
#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <span>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/descriptor_range_iterator.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/descriptors/records.h>

namespace usb_support {

/// One whole descriptor of a run, or none.
class Descriptor {
 public:
  /// None: false, with length, type and offset 0 and no bytes.
  Descriptor() noexcept = default;

  /// The first descriptor of a range; none when the range is empty or that descriptor is not whole.
  explicit Descriptor(CDescriptorRange const& range) noexcept
      : Descriptor(range.begin(), std::uint16_t{0}) {}

  /// True for a descriptor, false for none.
  explicit operator bool() const noexcept { return at_.Remaining() != 0; }

  /// bLength: 1 to 255, and all these bytes are there.
  std::uint8_t Length() const noexcept { return Byte(0); }

  /// bDescriptorType. A descriptor of one byte at the end of the run has the type 0 here.
  std::uint8_t Type() const noexcept { return Byte(1); }

  /// True for a descriptor that has this bDescriptorType.
  bool Is(std::uint8_t type) const noexcept { return HasType(at_, type); }

  /// A copy as a record. A field beyond bLength reads as it is in the run, and a field beyond the
  /// end of the run as 0.
  template <typename Record>
  [[nodiscard]] Record As() const noexcept {
    return ReadRecord<Record>(at_);
  }

  /// The byte at `offset`, by the same rule.
  std::uint8_t Byte(std::size_t offset) const noexcept { return ReadByte(at_, offset); }

  /// Where the descriptor is: bytes from the start of the range that was walked.
  std::uint16_t Offset() const noexcept { return offset_; }

  /// The bytes of this descriptor alone.
  std::span<unsigned char const> Bytes() const noexcept {
    return {reinterpret_cast<unsigned char const*>(at_.operator->()), Length()};
  }

  /// The same as a range, for the operations of CDescriptorRange.
  CDescriptorRange Range() const noexcept {
    CDescriptorRangeIterator at = at_;
    return {at.operator->(), Length()};
  }

  /// The same as an iterator, for the finders; it goes on to the end of the run.
  CDescriptorRangeIterator At() const noexcept { return at_; }

  /// The next descriptor of the run; none after the last whole one, and after none.
  [[nodiscard]] Descriptor Next() const noexcept {
    Descriptor next = *this;
    if (at_.Remaining() != 0) {
      std::uint8_t const length = next.at_.StepOverWholeDescriptor();
      next.offset_ = static_cast<std::uint16_t>(offset_ + length);
      if (!next.at_.HoldsWholeDescriptor()) {
        next = Descriptor();
      }
    }
    return next;
  }

  /// True for the same place in the same run, and when both are none.
  friend bool operator==(Descriptor const& a, Descriptor const& b) noexcept {
    return a.at_ == b.at_;
  }

 private:
  Descriptor(CDescriptorRangeIterator at, std::uint16_t offset) noexcept {
    if (at.HoldsWholeDescriptor()) {
      at_ = at;
      offset_ = offset;
    }
  }

  CDescriptorRangeIterator at_;  // empty for none
  std::uint16_t offset_ = 0;
};

/// What a view does with a descriptor that it reaches.
enum class Choice : std::uint8_t {
  kTake,  ///< it is in the view
  kSkip,  ///< it is not, and the view continues
  kEnd,   ///< it is not, and the view ends before it
};

/// Some descriptors of a run, in order: those from `first` on that the function object `Choose`
/// selects. The functions below make these views.
template <typename Choose>
class DescriptorView {
 public:
  /// Is at a descriptor of the view; at the end it is none.
  class Iterator {
   public:
    using iterator_category = std::input_iterator_tag;  // *it is a value, not a reference
    using iterator_concept = std::forward_iterator_tag;
    using value_type = Descriptor;
    using difference_type = std::ptrdiff_t;
    using pointer = Descriptor const*;
    using reference = Descriptor;

    Iterator() = default;
    Iterator(Descriptor first, Choose choose) noexcept : current_(first), choose_(choose) {
      SkipOthers();
    }

    Descriptor operator*() const noexcept { return current_; }
    Descriptor const* operator->() const noexcept { return &current_; }

    Iterator& operator++() noexcept {
      current_ = current_.Next();
      SkipOthers();
      return *this;
    }

    Iterator operator++(int) noexcept {
      Iterator const before = *this;
      ++*this;
      return before;
    }

    friend bool operator==(Iterator const& a, Iterator const& b) noexcept {
      return a.current_ == b.current_;
    }

   private:
    void SkipOthers() noexcept {
      while (current_) {
        Choice const choice = choose_(current_);
        if (choice == Choice::kTake) {
          return;
        }
        current_ = choice == Choice::kEnd ? Descriptor() : current_.Next();
      }
    }

    Descriptor current_;
    Choose choose_;
  };

  /// `first` may be none; the view is then empty.
  explicit DescriptorView(Descriptor first, Choose choose = {}) noexcept
      : first_(first),
        choose_(choose) {}

  Iterator begin() const noexcept { return {first_, choose_}; }
  Iterator end() const noexcept { return {}; }

  /// True when the view has no descriptor.
  [[nodiscard]] bool empty() const noexcept { return begin() == end(); }

  /// The first descriptor of the view, or none.
  [[nodiscard]] Descriptor front() const noexcept { return *begin(); }

 private:
  Descriptor first_;
  Choose choose_;
};

namespace walk_detail {

// True for a descriptor that ends the interface before it.
inline bool EndsInterface(Descriptor const& d) noexcept {
  return d.Is(kInterfaceType) || d.Is(kInterfaceAssociationType) || d.Is(kConfigurationType) ||
         d.Is(kOtherSpeedConfigurationType);
}

struct Every {
  Choice operator()(Descriptor const&) const noexcept { return Choice::kTake; }
};

struct OfType {
  std::uint8_t type = 0;

  Choice operator()(Descriptor const& d) const noexcept {
    return d.Is(type) ? Choice::kTake : Choice::kSkip;
  }
};

struct SettingOf {
  std::uint8_t interfaceNumber = 0;

  Choice operator()(Descriptor const& d) const noexcept {
    bool const isSetting =
        d.Is(kInterfaceType) &&
        d.Byte(offsetof(TQ_USB_INTERFACE_DESCRIPTOR, bInterfaceNumber)) == interfaceNumber;
    return isSetting ? Choice::kTake : Choice::kSkip;
  }
};

struct EndpointOfSetting {
  Choice operator()(Descriptor const& d) const noexcept {
    return EndsInterface(d) ? Choice::kEnd : d.Is(kEndpointType) ? Choice::kTake : Choice::kSkip;
  }
};

struct CompanionOfEndpoint {
  Choice operator()(Descriptor const& d) const noexcept {
    if (EndsInterface(d) || d.Is(kEndpointType)) {
      return Choice::kEnd;
    }
    bool const isCompanion = d.Is(kSuperSpeedEndpointCompanionType) ||
                             d.Is(kSuperSpeedPlusIsochEndpointCompanionType) ||
                             d.Is(kEusb2IsochEndpointCompanionType);
    return isCompanion ? Choice::kTake : Choice::kSkip;
  }
};

// A range that owns its bytes, as a temporary.
template <typename T>
concept TemporaryOwner =
    std::derived_from<T, CDescriptorRange> && !std::same_as<T, CDescriptorRange>;

}  // namespace walk_detail

/// Every descriptor of a range.
[[nodiscard]] inline auto Walk(CDescriptorRange const& range) noexcept {
  return DescriptorView<walk_detail::Every>(Descriptor(range));
}

/// Every descriptor of one type (a k...Type code of records.h).
[[nodiscard]] inline auto Walk(CDescriptorRange const& range, std::uint8_t type) noexcept {
  return DescriptorView<walk_detail::OfType>(Descriptor(range), {type});
}

/// The interface descriptors of one interface of a configuration: its alternate settings.
[[nodiscard]] inline auto AlternateSettings(CDescriptorRange const& configuration,
                                            std::uint8_t interfaceNumber) noexcept {
  return DescriptorView<walk_detail::SettingOf>(Descriptor(configuration), {interfaceNumber});
}

/// A set owns the bytes: give it a name before you walk it.
template <walk_detail::TemporaryOwner Set, typename... Rest>
void Walk(Set&& set, Rest...) = delete;
template <walk_detail::TemporaryOwner Set>
void AlternateSettings(Set&& set, std::uint8_t interfaceNumber) = delete;

/// The endpoint descriptors after an interface descriptor, up to the next interface or interface
/// association.
[[nodiscard]] inline auto Endpoints(Descriptor const& setting) noexcept {
  return DescriptorView<walk_detail::EndpointOfSetting>(setting.Next());
}

/// The companions of an endpoint (SuperSpeed, SuperSpeedPlus isochronous, eUSB2 isochronous): those
/// after its descriptor, up to the next endpoint, interface or interface association.
[[nodiscard]] inline auto Companions(Descriptor const& endpoint) noexcept {
  return DescriptorView<walk_detail::CompanionOfEndpoint>(endpoint.Next());
}

/// The first descriptor of a type, or none. Unlike CDescriptorRange::FindFirst it never throws.
[[nodiscard]] inline Descriptor Find(CDescriptorRange const& range, std::uint8_t type) noexcept {
  return Walk(range, type).front();
}

}  // namespace usb_support
