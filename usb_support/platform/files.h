// The system calls on files that the standard library does not have.
#pragma once

#include <filesystem>
#include <optional>
#include <string_view>

namespace usb_support::platform {

/// A path from UTF-8, the encoding of the suite's paths on every system; nothing for one that the
/// system cannot convert (Windows, text that is not UTF-8).
std::optional<std::filesystem::path> PathOf(std::string_view utf8);

/// Moves a file, in place of any file at the target and also to another volume. At the target is
/// the old file or the whole new one at any time, however many move there. Throws
/// std::filesystem::filesystem_error (operation "rename", both paths) when that fails; both files
/// are then as they were. A source on another volume that cannot be removed stays.
void MoveFileReplacing(std::filesystem::path const& from, std::filesystem::path const& to);

}  // namespace usb_support::platform
