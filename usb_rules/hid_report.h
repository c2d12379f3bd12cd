// The items of HID report descriptors (HID 1.11, 6.2.2), and the facts about them that rules use.
// Internal to the library.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>

#include <usb_fields/byte_view.h>

namespace usb_rules::detail {

/// The maximum number of bytes of a report descriptor that are read: its length has 16 bits.
inline constexpr std::size_t kMostReportBytes = 0xFFFF;

inline constexpr std::size_t kReportValues = 11;
inline constexpr std::size_t kReportItemValues = 21;

/// One item with the state of the item tables before it.
struct ReportItem {
  std::size_t offset = 0;
  std::size_t length = 0;
  std::array<std::uint64_t, kReportItemValues> values{};  ///< as vocabulary.cpp names them
  bool isLong = false;
  bool isData = false;  ///< input, output or feature
};

/// The facts after the last item.
struct ReportFacts {
  std::array<std::uint64_t, kReportValues> values{};  ///< as vocabulary.cpp names them
};

ReportFacts ReadReport(usb_fields::ByteView bytes,
                       std::function<void(ReportItem const&)> const& visit);

}  // namespace usb_rules::detail
