// The operating-system calls that only the program needs; it shares the others with the stand-in
// (standalone_suite/platform/host.h). One header, a POSIX and a Windows source, chosen
// by CMake. Every text is UTF-8 on Windows and the system's own bytes elsewhere.
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

/// Gives every standard stream that the program was started without a number that no other file can
/// get: what is opened later must not be taken for standard output. Reading and writing it fails as
/// before. To be called first.
void KeepStandardStreams();

/// Makes a standard stream hand on every byte as it is.
void UseBinaryMode(std::FILE* stream);

/// How many characters fit into a line of the terminal that a stream is; 0 when it is none, or when
/// that is not known.
std::size_t TerminalColumns(std::FILE* stream);

using usb_devices::PathOf;

/// What tells one regular file from every other, under whatever name: device and inode, or on
/// Windows the serial number of the volume and the index of the file.
struct FileIdentity {
  std::uint64_t volume;
  std::uint64_t file;

  friend bool operator==(FileIdentity const&, FileIdentity const&) = default;
};

/// The identity of a file, or of the file that a stream is open on; nothing when there is no such
/// file or it is not a regular one.
std::optional<FileIdentity> IdentityOf(std::filesystem::path const& path);
std::optional<FileIdentity> IdentityOf(std::FILE* stream);

}  // namespace usb_support::usbdesc
