// The bytes as a vendor list and the number of a vendor: the name that is found and the faulty
// entries.
#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <fuzz/json_model.h>
#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <usb_support/vendor_names/vendor_list.h>

namespace usb_support::fuzz {
namespace {

using model::Json;

constexpr std::size_t kDeepestNesting = 256;

// The first member of a name counts.
Json const* MemberOf(Json const& entry, std::string_view name) {
  auto const found = std::find(entry.keys.begin(), entry.keys.end(), name);
  return found == entry.keys.end()
             ? nullptr
             : &entry.values[static_cast<std::size_t>(found - entry.keys.begin())];
}

std::string UpToZero(std::string const& text) {
  return text.c_str();
}

// Decimal digits of a number up to 65,535; -1 for anything else.
int NumberOf(std::string const& id) {
  int value = 0;
  for (char const c : id) {
    if (c < '0' || c > '9') {
      return -1;
    }
    value = value * 10 + (c - '0');
    if (value > 0xFFFF) {
      return -1;
    }
  }
  return value;
}

// The result of a search, with copies of all texts.
struct Found {
  struct Entry {
    EntryFault fault;
    std::string name;
    std::string id;
  };
  unsigned parseError = 0;
  std::size_t errorOffset = 0;
  bool isArray = false;
  std::vector<Entry> faultyEntries;
  std::optional<std::string> name;
};

Found Search(std::string text, int vid) {
  Found found;
  VendorSearch const search = SearchVendorList(text, vid, [&found](FaultyEntry const& entry) {
    found.faultyEntries.push_back({entry.fault, entry.name, entry.id});
  });
  found.parseError = search.parseError;
  found.errorOffset = search.errorOffset;
  found.isArray = search.isArray;
  found.name = search.name;
  return found;
}

// The contents of the list, computed independently.
Found Expected(Json const& root, int vid) {
  Found search;
  search.isArray = root.kind == Json::Kind::kArray;
  for (Json const& entry : search.isArray ? root.values : std::vector<Json>()) {
    Json const* const name = MemberOf(entry, "name");
    Json const* const id = MemberOf(entry, "field_vid");
    bool const hasName = name != nullptr && name->kind == Json::Kind::kText;
    bool const hasId = id != nullptr && id->kind == Json::Kind::kText;
    std::string const nameText = hasName ? UpToZero(name->text) : "";
    std::string const idText = hasId ? UpToZero(id->text) : "";
    std::optional<EntryFault> fault;
    if (entry.kind != Json::Kind::kObject) {
      fault = EntryFault::kNotAnObject;
    } else if (!hasName) {
      fault = name == nullptr ? EntryFault::kNoName : EntryFault::kNameNotText;
    } else if (nameText.empty()) {
      fault = EntryFault::kNameEmpty;
    } else if (!hasId) {
      fault = id == nullptr ? EntryFault::kNoId : EntryFault::kIdNotText;
    } else if (idText.empty()) {
      fault = EntryFault::kIdEmpty;
    } else if (NumberOf(idText) < 0) {
      fault = EntryFault::kIdInvalid;
    } else if (NumberOf(idText) == vid) {
      search.name = nameText;
      break;
    }
    if (fault) {
      search.faultyEntries.push_back({*fault, nameText, idText});
    }
  }
  return search;
}

void CheckSearch(Found const& search, model::JsonText const& json, std::string const& text,
                 int vid) {
  RequireEqual(search.parseError, json.Error(), "error of the parser");
  Require(search.errorOffset <= text.size(), "the fault is in the text");
  if (!json.IsJson()) {
    return;
  }
  Found const expected = Expected(json.Root(), vid);
  RequireEqual(search.isArray, expected.isArray, "an array");
  RequireEqual(search.name, expected.name, "name of the vendor");
  RequireEqual(search.faultyEntries.size(), expected.faultyEntries.size(), "faulty entries");
  for (std::size_t i = 0; i < expected.faultyEntries.size(); ++i) {
    Found::Entry const& is = search.faultyEntries[i];
    Found::Entry const& should = expected.faultyEntries[i];
    RequireEqual(static_cast<int>(is.fault), static_cast<int>(should.fault), "fault");
    // The texts of an entry that is not an object are those of none.
    if (should.fault != EntryFault::kNotAnObject) {
      RequireEqual(is.name, should.name, "name of a faulty entry");
    }
    if (should.fault == EntryFault::kIdInvalid) {
      RequireEqual(is.id, should.id, "ID of a faulty entry");
    }
  }
}

}  // namespace

// Bytes: the vendor (2), one that is not used, the text.
void VendorList(Input input) {
  constexpr std::size_t kFirst = 3;
  if (input.size() < kFirst) {
    return;
  }
  Suite const suite;
  int const vid = input[0] << 8 | input[1];
  std::string const text = TextOf(input.subspan(kFirst));
  Found const search = Search(text, vid);
  CheckSearch(search, model::JsonText(text, false, kDeepestNesting), text, vid);
  suite.ExpectNothingLogged();
}

}  // namespace usb_support::fuzz
