// Reads the fields of one descriptor.
//
//   Context context{.speed = Speed::kHigh};
//   for (each descriptor of a run) {
//     ReadFields(bytes, context, [](FieldValue const& field) { ... });
//     context.Follow(bytes);
//   }
//
// Nothing here throws or allocates, whatever the bytes are, and nothing outside them is read. Any
// thread may read. Results refer to the caller's bytes and to constant tables.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <type_traits>

#include <usb_fields/byte_view.h>
#include <usb_fields/compile.h>
#include <usb_fields/context.h>
#include <usb_fields/export.h>
#include <usb_fields/table.h>

namespace usb_fields {

/// One field that was read from a descriptor.
struct FieldValue {
  Field const* field = nullptr;  ///< its row: name and meaning
  std::uint16_t index = 0;       ///< the number of the repetition, from 0
  std::uint16_t offset = 0;      ///< from the start of the descriptor
  std::uint16_t size = 0;        ///< in bytes, as in the standard
  std::uint64_t value = 0;       ///< of up to 8 bytes, little-endian; missing bytes are 0
  ByteView descriptor;           ///< the whole descriptor

  /// The bytes of the field; fewer than `size` when it is cut.
  std::span<std::uint8_t const> Bytes() const noexcept { return descriptor.Slice(offset, size); }

  /// True when the descriptor ends before the field does.
  bool IsCut() const noexcept { return offset + std::size_t{size} > descriptor.Size(); }
};

/// The result of reading a descriptor.
struct Reading {
  Layout const* layout = nullptr;  ///< null when no table describes the descriptor
  std::uint16_t length = 0;        ///< the descriptor's length, limited to the bytes present
  std::uint16_t described = 0;     ///< how many of them, from the start, belong to fields
  bool isCut = false;              ///< a field is missing or not whole
  bool isGuessed = false;          ///< read with a layout of another class that seems to fit
  std::int32_t exactLength = -1;   ///< the length that the standard requires; -1: none, or cut

  /// The number of bytes that belong to no field.
  std::size_t NotDescribed() const noexcept { return std::size_t{length} - described; }
};

/// The layout of a descriptor, in the reader's form.
struct LayoutMatch {
  detail::Compiled const* compiled = nullptr;  ///< null when no table describes the descriptor
  bool isGuessed = false;                      ///< a layout of another class that seems to fit

  /// The layout as in its table, or null.
  Layout const* Get() const noexcept { return compiled != nullptr ? compiled->layout : nullptr; }
};

/// The layout of the descriptor at the start of `bytes`, which may continue after it.
USB_FIELDS_API LayoutMatch FindLayout(std::span<std::uint8_t const> bytes,
                                      Context const& context) noexcept;

/// The layouts of all tables, in the order of the standards.
USB_FIELDS_API std::span<detail::Compiled const* const> AllLayouts() noexcept;

/// The length that the descriptor at the start of `bytes` states, even when `bytes` is shorter; 0
/// when it states none.
USB_FIELDS_API std::size_t DescriptorLength(std::span<std::uint8_t const> bytes,
                                            Context const& context) noexcept;

/// Passes each field of the descriptor at the start of `bytes` to `visit`, in the order of the
/// layout. The first field that is cut, even if it has no bytes left, is the last one passed. For a
/// descriptor without a layout, only its length and type are passed.
///
/// Requires: the descriptor has at most 65,535 bytes; later bytes are ignored.
template <typename Visit>
Reading ReadFields(std::span<std::uint8_t const> bytes, LayoutMatch match, Context const& context,
                   Visit&& visit);

/// The same with the layout that FindLayout finds.
template <typename Visit>
Reading ReadFields(std::span<std::uint8_t const> bytes, Context const& context, Visit&& visit) {
  return ReadFields(bytes, FindLayout(bytes, context), context, visit);
}

namespace detail {

/// A layout with the length and type, for a descriptor that no table describes.
USB_FIELDS_API Compiled const& UnknownLayout(Context const& context) noexcept;

/// The values that expressions and conditions refer to.
class Values {
 public:
  Values(Compiled const& layout, Context const& context) noexcept : layout_(&layout) {
    if (layout.usesFacts) {
      SetFacts(context);
    }
  }

  void Set(std::size_t slot, std::uint64_t value) noexcept { values_[slot] = value; }

  /// The value of an expression. A division by 0 gives 0.
  std::int64_t Evaluate(std::uint16_t first) const noexcept {
    Op const* const op = &layout_->ops[first];
    // Most expressions are the value of one field.
    return op[0].code == OpCode::kValue && op[1].code == OpCode::kEnd ? ValueOf(op[0])
                                                                      : EvaluateSteps(op);
  }

  /// True when all tests of the row's condition hold.
  bool Hold(Row const& row) const noexcept {
    Test const* test = layout_->tests.data() + row.firstTest;
    for (Test const* const end = test + row.testCount; test != end; ++test) {
      if (!test->Holds(values_[test->slot])) {
        return false;
      }
    }
    return true;
  }

 private:
  USB_FIELDS_API std::int64_t EvaluateSteps(Op const* op) const noexcept;

  std::int64_t ValueOf(Op const& op) const noexcept {
    // The shifts drop the bits above `high` and those below `low`.
    unsigned const above = 63u - op.high;
    return static_cast<std::int64_t>(values_[op.number] << above >> (above + op.low));
  }

  void SetFacts(Context const& context) noexcept {
    auto const set = [this](Fact fact, std::uint64_t value) {
      values_[kMostRows + static_cast<std::size_t>(fact)] = value;
    };
    set(Fact::kSpeed, static_cast<std::uint64_t>(context.SpeedHere()));
    set(Fact::kClass, context.interfaceClass);
    set(Fact::kSubclass, context.interfaceSubclass);
    set(Fact::kProtocol, context.interfaceProtocol);
    set(Fact::kEndpointAttributes, context.endpointAttributes);
    set(Fact::kVideoRelease, context.videoRelease);
  }

  Compiled const* layout_;
  std::array<std::uint64_t, kSlots> values_;  // each is written before it is read
};

/// Reads one descriptor.
template <typename Visit>
class FieldReader {
 public:
  FieldReader(ByteView bytes, Compiled const& layout, Values& values, Visit& visit) noexcept
      : bytes_(bytes),
        layout_(layout),
        values_(values),
        visit_(visit) {}

  Reading Read() {
    std::size_t const count = layout_.rows.size();
    std::size_t i = 0;
    if (layout_.plainSize <= bytes_.Size()) {
      i = layout_.plainRows;
      for (Row const& row : layout_.rows.first(i)) {
        Hand(row, 0, row.fixedSize, bytes_.Word(offset_) & row.mask);
      }
    }
    while (i < count && !IsCut()) {
      i += Next(i);
    }
    Reading reading;
    reading.layout = layout_.layout;
    reading.length = static_cast<std::uint16_t>(bytes_.Size());
    reading.described = static_cast<std::uint16_t>(std::min(offset_, bytes_.Size()));
    reading.isCut = IsCut();
    if (!reading.isCut) {
      reading.exactLength = layout_.length == 0
                                ? layout_.exactLength
                                : static_cast<std::int32_t>(values_.Evaluate(layout_.length));
    }
    return reading;
  }

 private:
  bool IsCut() const noexcept { return offset_ > bytes_.Size(); }

  // Each of these returns the number of rows that it has handled.

  std::size_t Next(std::size_t i) {
    Row const& row = layout_.rows[i];
    if (row.isPlain) {
      Hand(row, 0, row.fixedSize, bytes_.Number(offset_, row.fixedSize));
      return 1;
    }
    return row.untilEnd || row.repeat != 0 ? Repeat(i) : One(i, 0);
  }

  std::size_t Repeat(std::size_t first) {
    Row const* const rows = layout_.rows.data() + first;
    std::size_t const count = rows->groupRows;
    std::int64_t const times = rows->untilEnd ? INT64_MAX : values_.Evaluate(rows->repeat);
    for (std::size_t i = 0; i < count; ++i) {
      values_.Set(rows[i].slot, 0);
    }
    for (std::int64_t n = 0; n < times && !IsCut(); ++n) {
      if (rows->untilEnd && offset_ == bytes_.Size()) {
        break;
      }
      std::size_t const before = offset_;
      for (std::size_t i = 0; i < count && !IsCut();) {
        i += One(first + i, static_cast<std::uint16_t>(n));
      }
      if (offset_ == before) {
        break;  // rows without bytes would repeat forever
      }
    }
    return count;
  }

  // Reads a field, or the first of its alternatives whose condition holds, if any.
  std::size_t One(std::size_t first, std::uint16_t index) {
    Row const* row = layout_.rows.data() + first;
    std::size_t const done = row->alternatives + std::size_t{1};
    Row const* const end = row + done;
    std::size_t const size = SizeOf(*row);
    std::uint64_t const value = bytes_.Number(offset_, size);
    values_.Set(row->slot, value);  // a condition may name the field itself
    for (; size != 0 && row != end; ++row) {
      if (values_.Hold(*row)) {
        Hand(*row, index, size, value);
        return done;
      }
    }
    values_.Set(end[-1].slot, 0);
    return done;
  }

  std::size_t SizeOf(Row const& row) const noexcept {
    if (row.fixedSize != 0) {
      return row.fixedSize;
    }
    return row.isRest ? bytes_.Size() - offset_
                      : static_cast<std::size_t>(
                            std::clamp<std::int64_t>(values_.Evaluate(row.size), 0, 0xFFFF));
  }

  void Hand(Row const& row, std::uint16_t index, std::size_t size, std::uint64_t value) {
    values_.Set(row.slot, value);
    visit_(FieldValue{row.field, index, static_cast<std::uint16_t>(offset_),
                      static_cast<std::uint16_t>(size), value, bytes_});
    offset_ += size;
  }

  ByteView bytes_;
  Compiled const& layout_;
  Values& values_;  // by reference, so that the other members can be kept in registers
  Visit& visit_;
  std::size_t offset_ = 0;
};

}  // namespace detail

template <typename Visit>
Reading ReadFields(std::span<std::uint8_t const> bytes, LayoutMatch match, Context const& context,
                   Visit&& visit) {
  ByteView const view(bytes.first(std::min<std::size_t>(bytes.size(), 0xFFFF)));
  detail::Compiled const& layout =
      match.compiled != nullptr ? *match.compiled : detail::UnknownLayout(context);
  std::size_t length = view.Size();
  if (layout.lengthSize != 0) {
    length = static_cast<std::size_t>(
        std::min<std::uint64_t>(view.Number(0, layout.lengthSize), length));
  }
  detail::Values values(layout, context);
  detail::FieldReader<std::remove_reference_t<Visit>> reader(view.First(length), layout, values,
                                                             visit);
  Reading reading = reader.Read();
  if (match.compiled == nullptr) {
    reading.layout = nullptr;
  }
  reading.isGuessed = match.isGuessed;
  return reading;
}

}  // namespace usb_fields
