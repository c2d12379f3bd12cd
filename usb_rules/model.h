// The descriptors of a device with their fields and their relations. Internal to the library.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <vector>

#include <usb_fields/byte_view.h>
#include <usb_rules/expression.h>
#include <usb_rules/subject.h>
#include <usb_rules/verdict.h>
#include <usb_rules/vocabulary.h>

namespace usb_rules::detail {

inline constexpr std::int32_t kNone = -1;

/// One field that was read.
struct Cell {
  std::uint8_t row = 0;
  std::uint8_t slot = 0;
  std::uint16_t index = 0;  ///< of a repeated field
  std::uint16_t offset = 0;
  std::uint16_t size = 0;
  bool isCut = false;
  std::uint64_t value = 0;
};

/// One descriptor.
struct Item {
  usb_fields::ByteView bytes;  ///< those that exist
  std::uint16_t run = 0;
  std::uint16_t layout = 0;
  std::uint8_t type = 0;
  std::uint8_t subtype = 0;
  std::uint16_t declared = 0;  ///< its bLength
  std::uint16_t described = 0;
  bool isCut = false;       ///< it ends before its last field
  std::int32_t exact = -1;  ///< the length that the standard gives, or -1
  std::uint16_t least = 0;
  std::uint32_t offset = 0;  ///< from the start of the run
  std::uint32_t firstCell = 0;
  std::uint32_t cellCount = 0;
  std::uint32_t firstSlot = 0;
  std::int32_t setting = kNone;
  std::int32_t endpoint = kNone;
  std::int32_t heading = kNone;  ///< the format of a video stream
};

/// One answer of the device.
struct RunOfItems {
  Source source = Source::kDevice;
  std::uint16_t index = 0;
  Run const* run = nullptr;
  std::int32_t first = 0;
  std::int32_t last = 0;  ///< one after the last
  bool isWhole = true;    ///< every descriptor in it could be read
};

/// The setting that an interface descriptor begins.
struct Setting {
  std::int32_t end = 0;             ///< one after its last item
  std::int32_t next = kNone;        ///< the next setting of the same interface
  std::int32_t head = kNone;        ///< the first setting of the same interface
  std::int32_t function = kNone;    ///< the setting of the control interface
  std::int32_t inFunction = kNone;  ///< the next setting of the same function
  std::int32_t association = kNone;
  std::int32_t owner = kNone;  ///< the setting whose union names this interface
};

/// A device, read once.
class Model {
 public:
  explicit Model(Subject const& subject, Speed speed);

  Subject const& GetSubject() const noexcept { return subject_; }
  std::span<Item const> Items() const noexcept { return items_; }
  Item const& At(std::int32_t item) const noexcept {
    return items_[static_cast<std::size_t>(item)];
  }
  RunOfItems const& RunOf(std::int32_t item) const noexcept { return runs_[At(item).run]; }
  std::span<RunOfItems const> Runs() const noexcept { return runs_; }
  std::span<Cell const> CellsOf(std::int32_t item) const noexcept {
    return std::span(cells_).subspan(At(item).firstCell, At(item).cellCount);
  }
  /// The first cell of a slot, or null.
  Cell const* FirstCell(std::int32_t item, Slot slot) const noexcept {
    std::int32_t const cell = slot.IsThere() ? firstCells_[At(item).firstSlot + slot.row] : kNone;
    return cell == kNone ? nullptr : &cells_[static_cast<std::size_t>(cell)];
  }
  /// The number of repetitions of a slot.
  int Repetitions(std::int32_t item, Slot slot) const noexcept;
  /// The cell of an occurrence, or null. Fields that do not repeat have one.
  Cell const* CellOf(std::int32_t item, Slot slot, std::uint16_t index) const noexcept {
    Cell const* const first = FirstCell(item, slot);
    return first == nullptr || !slot.repeats || first->index == index
               ? first
               : LaterCell(item, *first, index);
  }
  /// The setting that the interface descriptor `item` begins.
  Setting const& SettingOf(std::int32_t item) const noexcept {
    return settings_[static_cast<std::size_t>(item)];
  }
  /// The first descriptor of a source, or kNone.
  std::int32_t Head(Source source) const noexcept {
    return heads_[static_cast<std::size_t>(source)];
  }
  Speed GetSpeed() const noexcept { return speed_; }
  /// Whether at least one interface should return a HID report descriptor, or group terminal
  /// blocks.
  bool HasHid() const noexcept { return hasHid_; }
  bool HasGroupTerminalBlocks() const noexcept { return hasBlocks_; }
  /// The speed that the descriptors of a run are for.
  Speed SpeedOf(std::int32_t item) const noexcept;

 private:
  void Add(Source source, std::uint16_t index, Run const& run, bool walks);
  void AddItem(std::span<std::uint8_t const> bytes, std::uint32_t offset,
               usb_fields::Context const& context);
  void FinishItem(Item& item);
  Cell const* LaterCell(std::int32_t item, Cell const& first, std::uint16_t index) const noexcept;
  void AddText(StringRun const& text, std::uint16_t index);
  void AddReport(InterfaceRun const& report);
  std::uint64_t ListedLength(std::uint8_t interfaceNumber) const noexcept;
  void Connect(RunOfItems const& run);
  void ConnectInterfaces(RunOfItems const& run);

  Subject const& subject_;
  Speed speed_;
  std::vector<Item> items_;
  std::vector<Cell> cells_;
  std::vector<std::int32_t> firstCells_;  // one for each slot of each item
  std::vector<Setting> settings_;         // one for each item, used for interface descriptors
  std::vector<RunOfItems> runs_;
  bool hasHid_ = false;
  bool hasBlocks_ = false;
  std::array<std::int32_t, static_cast<std::size_t>(Source::kCount)> heads_;
};

}  // namespace usb_rules::detail
