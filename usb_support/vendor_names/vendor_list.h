// Reads the text of a vendor list. Not installed.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace usb_support {

/// What is wrong with an entry; it is then skipped.
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

/// A faulty entry that comes before the match.
struct FaultyEntry {
  EntryFault fault;
  std::string name;  ///< of the vendor, where the entry has one
  std::string id;    ///< the text of an invalid ID
};

/// What a list says about one vendor.
struct VendorSearch {
  unsigned parseError = 0;      ///< RapidJSON's number; 0 when the whole text is JSON
  std::size_t errorOffset = 0;  ///< in bytes
  bool isArray = false;
  std::vector<FaultyEntry> faultyEntries;  ///< in file order, up to the match
  std::optional<std::string> name;         ///< of the first entry with the ID
};

/// Searches the text of a list for `vid`. Results and error numbers are those of RapidJSON's
/// default flags, except that nesting deeper than 256 levels ends the parse (error 16,
/// termination). The text is parsed in place, so hand it over.
VendorSearch SearchVendorList(std::string text, int vid);

}  // namespace usb_support
