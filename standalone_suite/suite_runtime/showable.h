// Makes text from outside safe to show: a file name, a key of a settings file, a vendor's name or a
// line of a log may contain bytes that control a terminal, that end a line, or that change the
// order in which a line is read.
//
// Such a byte is shown as "\x1B", such a character as "\u202E": control characters (U+0000 to
// U+001F, U+007F to U+009F), the separators of lines and paragraphs (U+2028, U+2029), the controls
// of direction (U+202A to U+202E, U+2066 to U+2069), and every byte that is not UTF-8. All other
// text stays as it is, even a backslash: the result is for people and cannot be converted back. Any
// thread may call these.
#pragma once

#include <string>
#include <string_view>

#include <usb_support/platform/export.h>

namespace usb_support::standalone {

/// The text as a part of one line: line ends and tabs are shown as "\x0A", "\x0D" and "\x09".
SUITE_RUNTIME_API std::string Showable(std::string_view text);

/// Appends the text as lines: tabs and line ends ("\n" and "\r\n") stay as they are.
SUITE_RUNTIME_API void AppendShowableLines(std::string& output, std::string_view text);

}  // namespace usb_support::standalone
