// The form of the dump: what is around the bytes and the label of each line. Who writes a dump and
// who reads one back have it from here. Not installed.
#pragma once

#include <string_view>

namespace usb_support {

/// A line is: before, offset in hexadecimal (at least four characters, filled with spaces), after,
/// bytes, afterBytes, separator, label.
struct DumpForm {
  std::string_view beforeOffset;  ///< starts the line
  std::string_view afterOffset;   ///< between the offset and the bytes
  std::string_view afterBytes;    ///< between the bytes and the separator
  std::string_view separator;     ///< between the bytes and the label
};

inline constexpr DumpForm kListingForm{"", "h:  ", "", " : "};
inline constexpr DumpForm kCodeForm{"/* ", "h */  ", ",", " // "};

/// After the bytes that form no valid descriptor.
inline constexpr std::string_view kIncompleteMark = " (incomplete)";

}  // namespace usb_support
