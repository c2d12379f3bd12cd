// The differences between two devices, field by field, by place and name. Descriptors are matched
// by their identity (interface and alternate setting, endpoint address, unit ...), not by offset.
//
//   ~ configuration 1, bMaxPower: 500 mA -> 100 mA (1Ah)
//   + configuration 1, interface 2 (HID (Human Interface Device), Keyboard), 3 descriptors
//
// Changes refer to the bytes of both devices, which must outlive them. The time is linear in the
// number of descriptors, apart from sorting.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/outline.h>
#include <usb_devices/device.h>
#include <usb_fields/context.h>

namespace usb_support::usbdesc {

enum class ChangeKind : std::uint8_t {
  kChanged,    ///< a field, or bytes that no field describes
  kAdded,      ///< a descriptor or an answer that only the second device has
  kRemoved,    ///< one that only the first device has
  kMoved,      ///< a descriptor that has another parent now
  kReordered,  ///< the items below one descriptor have another order
};

/// "changed", "added" ...
std::string_view NameOf(ChangeKind kind) noexcept;

/// One side of a change.
struct ChangeSide {
  std::string text{};        ///< value, detail, place or order, for people
  ByteSpan bytes{};          ///< of the value or the descriptor
  std::size_t item = kNone;  ///< in the outline of this side; kNone: not one descriptor
  std::size_t offset = 0;    ///< of the bytes in their source; not used without bytes
};

struct Change {
  ChangeKind kind = ChangeKind::kChanged;
  std::string place{};  ///< "configuration 1, interface 2"
  std::string
      field{};  ///< "bMaxPower", "baSourceID[1]"; empty: bytes that no field describes, or all
  /// For an addition or removal: the number of descriptors below it. Each of them is a separate
  /// change that follows, with `isWithin`.
  std::size_t below = 0;
  bool isWithin = false;
  ChangeSide before{};  ///< empty for an addition
  ChangeSide after{};   ///< empty for a removal
};

/// The differences between two outlines; empty when there are none. Changes are in the order of the
/// first device, followed by descriptors that have moved, are missing or are new. Comparing in the
/// opposite direction gives the same changes with the sides exchanged, apart from the order.
std::vector<Change> Compare(Outline const& before, Outline const& after);

/// A rule that one device keeps and the other breaks.
struct RuleChange {
  std::string rule;       ///< its id
  std::string sentence;   ///< its requirement
  bool isBroken = false;  ///< the second device breaks it; false: the first one does
};

/// The lines of the changes, "no difference" when there are none, and those of the rules.
Line DiffText(std::vector<Change> const& changes, std::vector<RuleChange> const& rules = {});

/// The JSON object of docs/usbdesc-diff.schema.json on one line. Without `rules` it has no member
/// for them.
std::string DiffJson(std::string const& nameBefore, std::string const& nameAfter,
                     std::vector<Change> const& changes,
                     std::optional<std::vector<RuleChange>> const& rules = std::nullopt);

}  // namespace usb_support::usbdesc
