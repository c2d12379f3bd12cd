// The form of the dump: the text around the bytes and the label of each line, for the code that
// writes a dump and the code that reads one back. Not installed.
#pragma once

#include <cstddef>
#include <string_view>

#include <usb_support/suite_interfaces/format_info.h>

namespace usb_support {

/// The look of the line above a dump.
inline constexpr CFormatInfo kDumpTitleLook{TQColor{0, 0, 255, 255}, TEXT_STRENGTH_BOLD};

/// Characters of an offset: hexadecimal digits, with spaces before them.
inline constexpr std::size_t kDumpOffsetWidth = 4;

/// A line is: beforeOffset, offset, afterOffset, bytes, afterBytes, separator, label. After the
/// last label follows the offset of the bytes that form no valid descriptor, in the same form, and
/// on the next line those bytes and kIncompleteMark.
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
