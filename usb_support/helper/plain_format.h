// Prints the formats that the library's messages are made of, several times as fast as the C
// library does. Not installed.
#pragma once

#include <cstdarg>
#include <cstddef>
#include <cstdint>

namespace usb_support {

/// What PrintPlain answers when the text is not its business: the C library prints it.
inline constexpr std::size_t kNotPlain = SIZE_MAX;

/// Prints %s, %u, %d, %x, %X and %% as vsnprintf does, with a width of up to two digits or '*',
/// filled with blanks or, for numbers, zeros. Returns the number of characters in front of the
/// terminator, or kNotPlain when the format asks for anything else or all of it does not fit into
/// `room` characters; what stands at `start` is then of no use. `arguments` is used up.
std::size_t PrintPlain(char* start, std::size_t room, char const* format, std::va_list arguments);

}  // namespace usb_support
