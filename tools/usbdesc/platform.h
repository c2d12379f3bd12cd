// The few operating-system calls of the program. One header, a POSIX and a Windows source, chosen
// by CMake. Every text is UTF-8 on Windows and the system's own bytes elsewhere.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

namespace usb_support::usbdesc {

/// The arguments of main without the program's name.
std::vector<std::string> CommandLine(int argc, char** argv);

/// Makes a standard stream hand on every byte as it is.
void UseBinaryMode(std::FILE* stream);

/// Opens a file for reading its bytes. Null when that fails; errno then says why.
std::FILE* OpenForReading(std::string const& name);

/// The value of an environment variable; the empty text when it is not set.
std::string EnvironmentVariable(char const* name);

/// True when the stream is a terminal (on Windows: a console).
bool IsTerminal(std::FILE* stream);

/// Makes the terminal behind the stream obey escape codes; true when it does.
bool EnableEscapeCodes(std::FILE* stream);

}  // namespace usb_support::usbdesc
