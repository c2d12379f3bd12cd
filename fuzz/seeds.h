// What every target is run with first: the sample captures, short texts that show the forms of the
// files, inputs that found a fault, and a small set that reaches what the fuzzers have reached.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace usb_support::fuzz {

/// Inputs by name.
using Seeds = std::map<std::string, std::string>;

/// The seeds of a target, named as its source file is, from the source tree in `source`.
Seeds SeedsOf(std::string const& target, std::filesystem::path const& source);

}  // namespace usb_support::fuzz
