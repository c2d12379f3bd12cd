#include <standalone_suite/platform/host.h>

#include <filesystem>
#include <optional>
#include <string>

#include <gmock/gmock.h>

#include <standalone_suite/base_support/vendor_list_folder.h>
#include <standalone_suite/platform/scoped_environment_variable.h>
#include <standalone_suite/test_support/temp_folder.h>
#include <usb_support/suite_interfaces/system.h>

namespace {

using usb_support::standalone::ScopedEnvironmentVariable;
using usb_support::standalone::SetVendorListFolder;
using usb_support::standalone::TempFolder;

class UserDataFolder : public testing::Test {
 protected:
  UserDataFolder() { SetVendorListFolder(std::nullopt); }

  ScopedEnvironmentVariable noFolder_{"USBIF_JSON_FOLDER", std::nullopt};
};

TEST_F(UserDataFolder, LiesInLocalAppData) {
  TempFolder const folder;
  std::u8string const path = (folder.Path() / u8"J\u00FCrgen").u8string();
  std::string const parent(path.begin(), path.end());
  ScopedEnvironmentVariable const data("LOCALAPPDATA", parent);
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), parent + "\\usb_support");
  EXPECT_TRUE(std::filesystem::is_directory(folder.Path() / u8"J\u00FCrgen" / "usb_support"));
}

TEST_F(UserDataFolder, IsTheCurrentFolderWithoutLocalAppData) {
  ScopedEnvironmentVariable const data("LOCALAPPDATA", std::nullopt);
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(), "");
}

TEST(AppendToPathOnWindows, KnowsItsSeparatorsAndDrives) {
  EXPECT_EQ(AppendToPath("C:\\folder", "name.json").get(), "C:\\folder\\name.json");
  EXPECT_EQ(AppendToPath("C:\\", "name.json").get(), "C:\\name.json");
  EXPECT_EQ(AppendToPath("C:/folder/", "name.json").get(), "C:/folder/name.json");
  EXPECT_EQ(AppendToPath("C:", "name.json").get(), "C:name.json");
}

}  // namespace
