#include <standalone_suite/platform/host.h>

#include <optional>

#include <gmock/gmock.h>

#include <standalone_suite/base_support/vendor_list_folder.h>
#include <standalone_suite/platform/scoped_environment_variable.h>
#include <usb_support/suite_interfaces/system.h>

namespace {

using usb_support::standalone::ScopedEnvironmentVariable;
using usb_support::standalone::SetVendorListFolder;

class UserDataFolder : public testing::Test {
 protected:
  UserDataFolder() { SetVendorListFolder(std::nullopt); }

  ScopedEnvironmentVariable noFolder_{"USBIF_JSON_FOLDER", std::nullopt};
};

TEST_F(UserDataFolder, LiesInLocalAppData) {
  ScopedEnvironmentVariable const data("LOCALAPPDATA", "C:\\Users\\J\xC3\xBCrgen\\AppData\\Local");
  EXPECT_EQ(GetUsbifJsonFolderPathName().get(),
            "C:\\Users\\J\xC3\xBCrgen\\AppData\\Local\\usb_support");
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
