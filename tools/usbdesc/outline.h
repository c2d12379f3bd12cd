// The descriptors of a device as an outline: each with its context, its parent, and a key that
// identifies it among its neighbours at any offset. Views that compare devices or show one as a
// page use it.
//
//   Outline const outline(Decode(device));
//   for (OutlineItem const& item : outline.Items()) {
//     item.name;  // "interface 2", "endpoint 81h IN", "Video Control, processing unit 2"
//   }
//
// The device owns the bytes and must outlive the outline. Any bytes are accepted; only
// std::bad_alloc is thrown. The time is linear in the bytes.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tools/usbdesc/decoded.h>
#include <usb_devices/device.h>
#include <usb_fields/context.h>

namespace usb_support::usbdesc {

using ByteSpan = std::span<std::uint8_t const>;

/// No item.
inline constexpr std::size_t kNone = static_cast<std::size_t>(-1);

/// A descriptor, or a HID report descriptor as a whole.
struct OutlineItem {
  std::size_t run = 0;            ///< index of the answer that it is in
  std::size_t offset = 0;         ///< from the start of the answer
  ByteSpan bytes{};               ///< of the descriptor, as far as they exist
  ByteSpan rest{};                ///< the answer from the descriptor on
  usb_fields::Context context{};  ///< to read it in
  std::size_t parent = kNone;     ///< the item that it belongs to, of the same answer
  std::size_t level = 0;          ///< how many items are above it
  /// Distinguishes it from the others below the same parent, and is the same in another device for
  /// the corresponding descriptor: it contains numbers and addresses, but neither offset nor
  /// content.
  std::string key{};
  std::string name{};  ///< for people
  bool isHidReport = false;
};

/// The answer to one request.
struct OutlineRun {
  usb_devices::Answer const* answer = nullptr;
  std::string key{};      ///< distinguishes it from other answers, wherever they are
  std::string name{};     ///< for people
  std::size_t first = 0;  ///< its items are those from here on
  std::size_t count = 0;
  std::string_view breakReason{};  ///< why the chain of lengths breaks; empty when it does not
  std::size_t breakOffset = 0;     ///< where, in the answer
  ByteSpan tail{};                 ///< the bytes from there on, unless they are in an item
};

class Outline {
 public:
  explicit Outline(DecodedDevice device);

  usb_fields::SpeedGuess const& Speed() const noexcept { return device_.speed; }
  /// The texts of the strings by index.
  std::map<std::uint8_t, std::string> const& Strings() const noexcept { return device_.strings; }
  /// By their requests: device, configurations, strings ...
  std::vector<OutlineRun> const& Runs() const noexcept { return runs_; }
  /// Run after run, in the order of the bytes.
  std::vector<OutlineItem> const& Items() const noexcept { return items_; }

  /// The offset of a byte of an item in the source of its answer.
  std::size_t FileOffset(OutlineItem const& item, std::size_t inItem = 0) const noexcept;
  /// "configuration 1, interface 2, endpoint 81h IN".
  std::string PlaceOf(OutlineItem const& item) const;

 private:
  void AddRun(DecodedRun const& decoded);
  void AddDescriptors(DecodedRun const& decoded, OutlineRun& run);
  void NumberTwins();

  DecodedDevice device_;
  std::vector<OutlineRun> runs_;
  std::vector<OutlineItem> items_;
};

/// The description of one descriptor without its neighbours: "a HID keyboard" for an interface.
std::string DetailOf(OutlineItem const& item);

}  // namespace usb_support::usbdesc
