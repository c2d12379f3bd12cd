// The fixture of the tests that look vendors up: a vendor list folder and a current directory of
// the test's own, both empty at first.
#pragma once

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <memory>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <standalone_suite/base_support/vendor_list_folder.h>
#include <standalone_suite/test_support/temp_folder.h>
#include <tests/support/suite_test.h>
#include <usb_support/vendor_names/vendor_name.h>

namespace usb_support::testing_support {

/// A path in the suite's encoding: UTF-8 on every system.
inline std::string Utf8(std::filesystem::path const& path) {
  std::u8string const text = path.u8string();
  return {text.begin(), text.end()};
}

/// The outcome of a look-up: the result, and every byte of the buffer that was passed.
struct Lookup {
  RETURN_CODE code;
  std::string buffer;
};

inline constexpr char kUntouched = '\x5A';

/// Looks up `vid` with a heap buffer of exactly `size` bytes, all of them kUntouched before.
inline Lookup Look(int vid, int size = 64) {
  auto const length = static_cast<std::size_t>(size);
  std::unique_ptr<char[]> const buffer(new char[length]);
  std::fill_n(buffer.get(), length, kUntouched);
  RETURN_CODE const code = GetVendorName(vid, buffer.get(), size);
  return {code, std::string(buffer.get(), length)};
}

class VendorListTest : public SuiteTest {
 protected:
  VendorListTest() {
    std::filesystem::current_path(current_.Path());
    standalone::SetVendorListFolder(Folder());
  }
  ~VendorListTest() override {
    standalone::SetVendorListFolder({});
    std::filesystem::current_path(before_);
  }

  /// The folder's name as messages quote it.
  std::string Folder() const { return Utf8(folder_.Path()); }

  std::filesystem::path List() const { return folder_.Path() / "usbif.json"; }
  std::filesystem::path ListInCurrentDirectory() const { return current_.Path() / "usbif.json"; }

  void SaveList(std::string_view text) const { folder_.Write("usbif.json", text); }
  void SaveListInCurrentDirectory(std::string_view text) const {
    current_.Write("usbif.json", text);
  }

  /// Expects that `vid` is found, and the name alone in the buffer.
  static void ExpectName(int vid, std::string_view name, int size = 64) {
    Lookup const lookup = Look(vid, size);
    EXPECT_EQ(lookup.code, 0x00000000u);
    std::string expected(name);
    expected.resize(static_cast<std::size_t>(size), '\0');
    EXPECT_EQ(lookup.buffer, expected);
  }

  /// Expects the generic failure, and the buffer as it was.
  static void ExpectFailure(int vid, int size = 64) {
    Lookup const lookup = Look(vid, size);
    EXPECT_EQ(lookup.code, 0x80000000u);
    EXPECT_EQ(lookup.buffer, std::string(static_cast<std::size_t>(size), kUntouched));
  }

  /// A message about the list as a whole.
  static RecordedCall Message(std::string text) {
    return Line(TEST_STATUS_VENDOR_LIST, 2, std::move(text));
  }

  /// A message about one element of the list.
  static RecordedCall ElementMessage(std::string text) {
    return Line(TEST_STATUS_VENDOR_LIST, 6, std::move(text));
  }

  /// The answer for a list whose text is not JSON.
  static std::vector<RecordedCall> ParseErrorMessages(unsigned code, std::size_t offset) {
    return {Message("Couldn't parse vendor name file usbif.json."),
            Message("JSON parse error: " + std::to_string(code) +
                    " (offset: " + std::to_string(offset) + ")\n")};
  }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
  standalone::TempFolder folder_;
  standalone::TempFolder current_;
};

}  // namespace usb_support::testing_support
