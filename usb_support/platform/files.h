// The system calls on files that the standard library does not have.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace usb_support::platform {

/// A path from UTF-8, the encoding of the suite's paths on every system; nothing for one that the
/// system cannot convert (Windows, text that is not UTF-8).
std::optional<std::filesystem::path> PathOf(std::string_view utf8);

/// Moves a file, in place of any file at the target and also to another volume. At any time the
/// target is the old file or the whole new one, however many threads or processes move files there.
/// Throws std::filesystem::filesystem_error (operation "rename", both paths) on failure; both files
/// are then unchanged. A source on another volume that cannot be removed remains.
void MoveFileReplacing(std::filesystem::path const& from, std::filesystem::path const& to);

}  // namespace usb_support::platform
