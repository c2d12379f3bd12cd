// What every target is run with first: the sample captures, and short texts that show the forms of
// the files.
#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>

namespace usb_support::fuzz {

/// Inputs by name.
using Seeds = std::map<std::string, std::string>;

/// The seeds of a target, named as its source file is; `captures` holds the sample captures.
Seeds SeedsOf(std::string_view target, std::filesystem::path const& captures);

}  // namespace usb_support::fuzz
