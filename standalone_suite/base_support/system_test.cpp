#include <usb_support/suite_interfaces/system.h>

#include <chrono>
#include <filesystem>
#include <optional>
#include <string>

#include <gtest/gtest.h>

#include <standalone_suite/base_support/vendor_list_folder.h>
#include <standalone_suite/platform/scoped_environment_variable.h>
#include <standalone_suite/test_support/temp_folder.h>

namespace {

using usb_support::standalone::ScopedEnvironmentVariable;
using usb_support::standalone::SetVendorListFolder;
using usb_support::standalone::TempFolder;
using usb_support::standalone::Utf8;

std::string const kSeparator(1, static_cast<char>(std::filesystem::path::preferred_separator));

TEST(SleepMicroSec, LastsAtLeastAsLongAsAskedFor) {
  for (int const microseconds : {0, 1, 500, 3000}) {
    auto const start = std::chrono::steady_clock::now();
    SleepMicroSec(static_cast<std::uint64_t>(microseconds));
    EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::microseconds(microseconds));
  }
}

TEST(AppendToPath, JoinsFolderAndName) {
  struct Row {
    std::string folder, name, path;
  };
  for (Row const& row :
       {Row{"folder", "name.json", "folder" + kSeparator + "name.json"},
        Row{"folder/", "name.json", "folder/name.json"}, Row{"/", "name.json", "/name.json"},
        Row{"folder" + kSeparator, "name", "folder" + kSeparator + "name"},
        Row{"folder", "/name.json", "folder/name.json"}, Row{"", "name.json", "name.json"},
        Row{"folder", "", "folder"}, Row{"", "", ""},
        Row{"gr\xC3\xBC\xC3\x9F", "\xE2\x82\xAC",
            "gr\xC3\xBC\xC3\x9F" + kSeparator + "\xE2\x82\xAC"}}) {
    EXPECT_EQ(AppendToPath(row.folder, row.name).get(), row.path);
  }
  EXPECT_EQ(AppendToPath(basic_sv_wrapper<char>(), "name.json").get(), "name.json");
  // Views that are not terminated.
  std::string const text = "foldername";
  EXPECT_EQ(AppendToPath(basic_sv_wrapper<char>(text.data(), 6),
                         basic_sv_wrapper<char>(text.data() + 6, 3))
                .get(),
            "folder" + kSeparator + "nam");
}

class VendorListFolder : public testing::Test {
 protected:
  VendorListFolder() { SetVendorListFolder(std::nullopt); }
  ~VendorListFolder() override { SetVendorListFolder(std::nullopt); }
};

TEST_F(VendorListFolder, IsTheOneThatWasSet) {
  ScopedEnvironmentVariable const variable("USBIF_JSON_FOLDER", "from the environment");
  SetVendorListFolder("from the test");
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), "from the test");
  SetVendorListFolder("");
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), "");
}

TEST_F(VendorListFolder, ComesFromTheEnvironmentWhenNoneIsSet) {
  ScopedEnvironmentVariable const variable("USBIF_JSON_FOLDER", "from the environment");
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), "from the environment");
  SetVendorListFolder("from the test");
  SetVendorListFolder(std::nullopt);
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), "from the environment");
}

TEST_F(VendorListFolder, KeepsTheEnvironmentsTextInUtf8) {
  ScopedEnvironmentVariable const variable("USBIF_JSON_FOLDER", "gr\xC3\xBC\xC3\x9F/\xE2\x82\xAC");
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), "gr\xC3\xBC\xC3\x9F/\xE2\x82\xAC");
}

TEST_F(VendorListFolder, IsTheUsersDataFolder) {
  TempFolder const data;
  std::filesystem::path const expected = data.Path() / u8"gr\u00FC\u00DF" / "usb_support";
  std::string const parent = Utf8(expected.parent_path());
  ScopedEnvironmentVariable const onWindows("LOCALAPPDATA", parent);
  ScopedEnvironmentVariable const elsewhere("XDG_DATA_HOME", parent);
  for (std::optional<std::string> const& unset :
       {std::optional<std::string>(), std::optional<std::string>("")}) {
    ScopedEnvironmentVariable const variable("USBIF_JSON_FOLDER", unset);
    EXPECT_EQ(GetUsbifJsonFolderPathName().get(), parent + kSeparator + "usb_support");
    EXPECT_TRUE(std::filesystem::is_directory(expected));
    std::filesystem::remove(expected);
  }
}

TEST_F(VendorListFolder, IsNamedWithoutBeingMade) {
  TempFolder const data;
  std::string const file = Utf8(data.Write("file", ""));
  ScopedEnvironmentVariable const onWindows("LOCALAPPDATA", file);
  ScopedEnvironmentVariable const elsewhere("XDG_DATA_HOME", file);
  ScopedEnvironmentVariable const variable("USBIF_JSON_FOLDER", std::nullopt);
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), file + kSeparator + "usb_support");
}

TEST_F(VendorListFolder, IsNotMadeWhenSomeoneNamesIt) {
  TempFolder const data;
  std::filesystem::path const folder = data.Path() / "missing";
  ScopedEnvironmentVariable const variable("USBIF_JSON_FOLDER", Utf8(folder));
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), Utf8(folder));
  EXPECT_FALSE(std::filesystem::exists(folder));
  SetVendorListFolder(Utf8(folder));
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), Utf8(folder));
  EXPECT_FALSE(std::filesystem::exists(folder));
}

}  // namespace
