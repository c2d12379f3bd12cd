// GetVendorName on a list of 15,000 vendors compared with a bare parse of the same file: the file
// is read in one piece, and RapidJSON's reader parses it in place for a handler that keeps a view
// of every text. A second row without a goal: the same parse for a handler that keeps nothing.
// (RapidJSON's document is not a comparison: the newest Clang refuses it.)
#include <cstddef>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include <rapidjson/encodings.h>
#include <rapidjson/reader.h>
#include <rapidjson/stream.h>

#include <benchmarks/rows.h>
#include <benchmarks/side_by_side.h>
#include <benchmarks/vendor_list_file.h>
#include <usb_support/vendor_names/vendor_name.h>

namespace usb_support::benchmarks {
namespace {

constexpr double kGoal = 1.10;
constexpr int kVendors = 15000;

class KeepsTexts : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, KeepsTexts> {
 public:
  bool Key(char const* text, rapidjson::SizeType length, bool copy) {
    return String(text, length, copy);
  }
  bool String(char const* text, rapidjson::SizeType length, bool /*copy*/) {
    texts_.emplace_back(text, length);
    return true;
  }

 private:
  std::vector<std::string_view> texts_;
};

class LooksAtNothing : public rapidjson::BaseReaderHandler<rapidjson::UTF8<>, LooksAtNothing> {};

template <typename Handler>
bool Parse(std::string const& name) {
  std::string text = standalone::ReadFileBytes(name);
  rapidjson::InsituStringStream stream(text.data());
  rapidjson::Reader reader;
  Handler handler;
  return !reader.Parse<rapidjson::kParseInsituFlag>(stream, handler).IsError();
}

bool LibraryFindsLast() {
  char name[64];
  return GetVendorName(kVendors, name, sizeof(name)) == RC_SUCCESS && name[0] != '\0';
}

}  // namespace

void AddVendorRows() {
  static VendorListFile const list(kVendors);
  Row row;
  row.operation = "GetVendorName, the last of the list";
  row.input = "15,000 vendors";
  row.bytes = static_cast<double>(std::filesystem::file_size(list.Path()));
  std::string const name = list.Path().string();
  row.mostRatio = kGoal;
  Compare(row, LibraryFindsLast, [name] { return Parse<KeepsTexts>(name); });
  row.operation += ", beside a scan that keeps nothing";
  row.mostRatio.reset();
  Compare(row, LibraryFindsLast, [name] { return Parse<LooksAtNothing>(name); });
}

}  // namespace usb_support::benchmarks
