// The look-up that gives the whole name, or the reason why there is none.
#include <filesystem>
#include <string>

#include <tests/support/vendor_list_test.h>
#include <usb_support/vendor_names/vendor_name.h>

namespace usb_support {
namespace {

class FindVendorNameTest : public testing_support::VendorListTest {
 protected:
  void ExpectAnswer(VendorAnswer answer, std::string const& text) {
    VendorLookup const vendor = FindVendorName(4660);
    EXPECT_EQ(vendor.answer, answer);
    EXPECT_EQ(vendor.name, "");
    EXPECT_FALSE(vendor);
    EXPECT_EQ(VendorAnswerText(vendor.answer), text);
    TakeCalls();
  }
};

TEST_F(FindVendorNameTest, GivesTheWholeName) {
  std::string const name(100'000, 'm');
  SaveList(R"([17, {"name":")" + name + R"(","field_vid":"4660"}])");
  VendorLookup const vendor = FindVendorName(4660);
  EXPECT_TRUE(vendor);
  EXPECT_EQ(vendor.name, name);
  EXPECT_EQ(VendorAnswerText(vendor.answer), std::string("found"));
  EXPECT_THAT(TakeCalls(),
              testing::ElementsAre(ElementMessage("JSON Array value is not an object.")));
}

TEST_F(FindVendorNameTest, HasATextForAnyNumber) {
  EXPECT_STREQ(VendorAnswerText(static_cast<VendorAnswer>(200)), "the list is broken");
}

TEST_F(FindVendorNameTest, TellsTheReasonsApart) {
  ExpectAnswer(VendorAnswer::kNoList, "there is no list");
  SaveList("[");
  ExpectAnswer(VendorAnswer::kBrokenList, "the list is broken");
  SaveList("{}");
  ExpectAnswer(VendorAnswer::kBrokenList, "the list is broken");
  SaveList(R"([{"name":"Other","field_vid":"4659"}])");
  ExpectAnswer(VendorAnswer::kNotInList, "not in the list");
  std::filesystem::remove(List());
  std::filesystem::create_directory(List());
  ExpectAnswer(VendorAnswer::kBrokenList, "the list is broken");
}

}  // namespace
}  // namespace usb_support
