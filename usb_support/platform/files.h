// The system calls on files that the standard library does not have.
#pragma once

#include <filesystem>

namespace usb_support::platform {

/// Moves a file, in place of any file at the target and also to another volume. Raises
/// std::filesystem::filesystem_error (operation "rename", both paths) when that fails; the file is
/// then still where it was.
void MoveFileReplacing(std::filesystem::path const& from, std::filesystem::path const& to);

}  // namespace usb_support::platform
