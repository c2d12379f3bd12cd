// The few operating-system calls of the stand-in. One header, a POSIX and a Windows source, chosen
// by CMake; no other file depends on the operating system. Every text is UTF-8. Any thread may
// call.
#pragma once

#include <cstdio>
#include <string>

namespace usb_support::standalone {

/// The value of an environment variable; the empty text when it is not set.
std::string EnvironmentVariable(char const* name);

/// The folder for the current user's data of this product, named `usb_support`: in %LOCALAPPDATA%
/// on Windows; in $XDG_DATA_HOME when that is an absolute path, else in ~/.local/share, elsewhere.
/// The folder need not exist. The empty text when the system does not define its place.
std::string UserDataFolder();

/// True when the stream is an interactive terminal.
bool IsTerminal(std::FILE* stream);

/// Makes the terminal of the stream interpret ANSI escape sequences; true when it does.
/// Requires: IsTerminal(stream).
bool EnableAnsiColours(std::FILE* stream);

}  // namespace usb_support::standalone
