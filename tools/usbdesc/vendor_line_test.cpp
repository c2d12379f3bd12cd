// Where --vendor looks for the list.
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>

#include <gmock/gmock.h>

#include <standalone_suite/base_support/vendor_list_folder.h>
#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using testing::HasSubstr;

class VendorLine : public UsbdescTest {
 protected:
  ~VendorLine() override { standalone::SetVendorListFolder(std::nullopt); }
};

// Windows has names in UTF-16, and the text of the folder is UTF-8.
TEST_F(VendorLine, IsFoundInAFolderWithAnyName) {
  std::filesystem::path const folder = Path("list") / u8"l\u00EDsta \u65E5\u672C";
  std::filesystem::create_directories(folder);
  std::ofstream(folder / "usbif.json") << R"([{"name":"Acme","field_vid":"4617"}])";
  standalone::SetVendorListFolder(NameOf(folder));
  Outcome const outcome =
      RunProgram({"--vendor", "-"}, "12 01 00 02 00 00 00 40 09 12 03 00 00 01 01 02 03 01");
  EXPECT_THAT(outcome.out, HasSubstr("// idVendor 0x1209: Acme\n"));
  EXPECT_EQ(outcome.err, "");
}

}  // namespace
}  // namespace usb_support::usbdesc
