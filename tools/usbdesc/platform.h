// The operating-system calls that only the program needs; it shares the others with the stand-in
// (standalone_suite/platform/host.h). One header, a POSIX and a Windows source, chosen
// by CMake. Every text is UTF-8 on Windows and in the system's own bytes elsewhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <optional>
#include <string>
#include <vector>

#include <usb_devices/files.h>

namespace usb_support::usbdesc {

/// The arguments of main without the program's name.
std::vector<std::string> Arguments(int argc, char** argv);

/// Reserves the file numbers of standard streams that the program was started without, so that no
/// file that is opened later becomes standard output. Reading and writing them still fails. Call
/// this function first.
void KeepStandardStreams();

/// Makes a standard stream pass on every byte unchanged.
void UseBinaryMode(std::FILE* stream);

/// The number of characters in a line of the stream's terminal; 0 when the stream is not a
/// terminal, or when the number is not known.
std::size_t TerminalColumns(std::FILE* stream);

using usb_devices::PathOf;

/// Identifies a regular file under any name: device and inode, or on Windows the serial number of
/// the volume and the index of the file.
struct FileIdentity {
  std::uint64_t volume;
  std::uint64_t file;

  friend bool operator==(FileIdentity const&, FileIdentity const&) = default;
};

/// The identity of a file, or of the file of a stream; nothing when the file does not exist or is
/// not a regular one.
std::optional<FileIdentity> IdentityOf(std::filesystem::path const& path);
std::optional<FileIdentity> IdentityOf(std::FILE* stream);

}  // namespace usb_support::usbdesc
