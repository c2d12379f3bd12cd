// The first inputs of every target: the sample captures, short texts that show the forms of the
// files, inputs that found a fault, and a small set that covers what the fuzzers have reached.
#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace usb_support::fuzz {

/// Inputs by name.
using Seeds = std::map<std::string, std::string>;

/// The seeds of a target, which has the name of its source file, from the source tree in `source`.
Seeds SeedsOf(std::string const& target, std::filesystem::path const& source);

}  // namespace usb_support::fuzz
