// Every descriptor file of a folder of captures, which the environment variable
// USB_SUPPORT_CAPTURES_DIR names: one folder a device, with *.bin files and an info.json that tells
// whether the lengths in them are well-formed.
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>

#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using testing::AnyOf;
using testing::HasSubstr;
using testing::Not;

class CapturesTest : public UsbdescTest {
 protected:
  static bool IsWellFormed(std::filesystem::path const& file) {
    std::string const info = standalone::ReadFileBytes(file.parent_path() / "info.json");
    return info.find("\"well_formed_lengths\": true") != std::string::npos;
  }

  // Every line of a listing that begins with an offset ends with a label; how many they are.
  static int CountLabelled(std::string const& listing) {
    int count = 0;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
      std::size_t const colon = line.find("h:  ");
      bool const isDescriptor = colon != std::string::npos &&
                                line.find_first_not_of(" 0123456789ABCDEF") == colon &&
                                line.size() > colon + 4;
      if (isDescriptor) {
        EXPECT_LT(line.find(" : "), line.size() - 3) << line;
        ++count;
      }
    }
    return count;
  }

  // Every command takes the file; the status of each.
  void Check(std::filesystem::path const& file) {
    std::string const name = NameOf(file);
    std::string const content = standalone::ReadFileBytes(file);
    Bytes const run(content.begin(), content.end());
    Outcome const listing = RunProgram({name});
    std::size_t const summary = listing.out.rfind("\n// raw: ") + 4;
    EXPECT_EQ(CountLabelled(listing.out), std::stoi(listing.out.substr(summary + 5)));
    EXPECT_EQ(ReadText(listing.out), run);
    Outcome const code = RunProgram({"--code", name});
    EXPECT_EQ(code.status, listing.status);
    EXPECT_EQ(ReadText(code.out), run);
    Outcome const check = RunProgram({"check", name});
    Outcome const tree = RunProgram({"tree", name});
    Outcome const parts = RunProgram({"--functions", "--interfaces", "--capabilities", name});
    for (Outcome const& outcome : {listing, code, check, tree, parts}) {
      EXPECT_EQ(outcome.err, "");
      EXPECT_THAT(outcome.status, AnyOf(kExitGood, kExitFaulty));
    }
    if (IsWellFormed(file)) {
      EXPECT_EQ(listing.status, kExitGood);
      EXPECT_THAT(check.out, Not(HasSubstr("fail usb2.config.walk")));
      EXPECT_THAT(tree.out, Not(HasSubstr("lengths bad")));
    }
    ++filesByStatus_[listing.status];
    ++filesByCheck_[check.status];
  }

  std::map<int, int> filesByStatus_;
  std::map<int, int> filesByCheck_;
};

TEST_F(CapturesTest, AreListedReadBackShownAndChecked) {
  char const* const folder = std::getenv("USB_SUPPORT_CAPTURES_DIR");
  if (folder == nullptr || *folder == '\0') {
    GTEST_SKIP() << "USB_SUPPORT_CAPTURES_DIR is not set.";
  }
  for (auto const& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() == ".bin") {
      SCOPED_TRACE(entry.path());
      Check(entry.path());
    }
  }
  EXPECT_FALSE(filesByStatus_.empty());
  std::cout << "Files by status of dump " << testing::PrintToString(filesByStatus_) << ", of check "
            << testing::PrintToString(filesByCheck_) << '\n';
}

}  // namespace
}  // namespace usb_support::usbdesc
