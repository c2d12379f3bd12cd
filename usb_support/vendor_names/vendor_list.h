// Reads the text of a vendor list. Not installed.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace usb_support {

/// The fault of an entry, which is then skipped.
enum class EntryFault : unsigned char {
  kNotAnObject,
  kNoName,
  kNameNotText,
  kNameEmpty,
  kNoId,
  kIdNotText,
  kIdEmpty,
  kIdInvalid,
};

/// A faulty entry. The texts are in the list.
struct FaultyEntry {
  EntryFault fault;
  char const* name;  ///< of the vendor, if the entry has one; otherwise empty
  char const* id;    ///< the text of an invalid ID; otherwise empty
};

/// The result of a search for one vendor.
struct VendorSearch {
  unsigned parseError = 0;      ///< RapidJSON's number; 0 when the whole text is JSON
  std::size_t errorOffset = 0;  ///< in bytes
  bool isArray = false;
  std::optional<std::string_view> name;  ///< of the first entry with the ID; in the list
};

/// Searches the text of a list for `vid`, and passes every faulty entry before the match to `take`,
/// in file order. Results and error numbers are those of RapidJSON's default flags, except that
/// nesting deeper than 256 levels ends the parse (error 16, termination). The text is parsed in
/// place, and the results point into it; the search keeps nothing else.
VendorSearch SearchVendorList(std::string& text, int vid,
                              std::function<void(FaultyEntry const&)> const& take);

}  // namespace usb_support
