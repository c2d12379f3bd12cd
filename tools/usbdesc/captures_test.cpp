// Every descriptor file of a folder of captures, which the environment variable
// USB_SUPPORT_CAPTURES_DIR names: one folder a device, with *.bin files and an info.json that says
// whether the lengths in them are well-formed.
#include <cstdlib>
#include <iostream>
#include <map>
#include <sstream>

#include <tools/usbdesc/text_reader.h>
#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

class CapturesTest : public UsbdescTest {
 protected:
  // How many descriptors a listing has, each with a label.
  static int CountLabelled(std::string const& listing) {
    int count = 0;
    std::istringstream lines(listing);
    for (std::string line; std::getline(lines, line);) {
      std::size_t const colon = line.find("h:  ");
      bool const isDescriptor = colon != std::string::npos &&
                                line.find_first_not_of(" 0123456789ABCDEF") == colon &&
                                line.size() > colon + 4;
      if (isDescriptor) {
        std::size_t const label = line.find(" : ");
        EXPECT_NE(label, std::string::npos) << line;
        EXPECT_GT(line.size(), label + 3) << line;
        ++count;
      }
    }
    return count;
  }

  static bool SaysWellFormed(std::filesystem::path const& infoFile) {
    return standalone::ReadFileBytes(infoFile).find("\"well_formed_lengths\": true") !=
           std::string::npos;
  }

  // How many lines of an output are broken rules.
  static int CountBrokenRules(std::string const& output) {
    int count = 0;
    std::istringstream lines(output);
    for (std::string line; std::getline(lines, line);) {
      count += line.starts_with("(USB 3.2: ") ? 1 : 0;
    }
    return count;
  }

  static int DescriptorsInSummary(std::string const& output) {
    return std::stoi(output.substr(output.rfind("\n// ") + 4));
  }
};

TEST_F(CapturesTest, AreListedAndReadBack) {
  char const* const folder = std::getenv("USB_SUPPORT_CAPTURES_DIR");
  if (folder == nullptr || *folder == '\0') {
    GTEST_SKIP() << "USB_SUPPORT_CAPTURES_DIR is not set.";
  }
  int files = 0;
  int descriptors = 0;
  std::map<int, int> filesByStatus;
  for (auto const& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".bin") {
      continue;
    }
    std::string const name = NameOf(entry.path());
    SCOPED_TRACE(name);
    std::string const content = standalone::ReadFileBytes(entry.path());
    Bytes const run(content.begin(), content.end());

    Outcome const listing = RunProgram({name});
    EXPECT_EQ(listing.err, "");
    EXPECT_THAT(listing.status, testing::AnyOf(kExitGood, kExitFaulty));
    if (SaysWellFormed(entry.path().parent_path() / "info.json")) {
      EXPECT_EQ(listing.status, kExitGood);
    }
    EXPECT_EQ(CountLabelled(listing.out), DescriptorsInSummary(listing.out));
    EXPECT_EQ(ReadText(listing.out), run);

    Outcome const code = RunProgram({"--code", name});
    EXPECT_EQ(code.err, "");
    EXPECT_EQ(code.status, listing.status);
    EXPECT_EQ(ReadText(code.out), run);

    ++files;
    ++filesByStatus[listing.status];
    descriptors += DescriptorsInSummary(listing.out);
  }
  EXPECT_GT(files, 0);
  std::cout << files << " files, " << descriptors << " descriptors";
  for (auto const& [status, count] : filesByStatus) {
    std::cout << ", exit status " << status << ": " << count;
  }
  std::cout << '\n';
}

TEST_F(CapturesTest, AreShownAndChecked) {
  char const* const folder = std::getenv("USB_SUPPORT_CAPTURES_DIR");
  if (folder == nullptr || *folder == '\0') {
    GTEST_SKIP() << "USB_SUPPORT_CAPTURES_DIR is not set.";
  }
  int files = 0;
  std::map<int, int> filesByBrokenRules;
  for (auto const& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.path().extension() != ".bin") {
      continue;
    }
    std::string const name = NameOf(entry.path());
    SCOPED_TRACE(name);
    for (std::vector<std::string> const& arguments :
         {std::vector<std::string>{"tree", name},
          {"dump", "--functions", "--interfaces", "--capabilities", name}}) {
      Outcome const shown = RunProgram(arguments);
      EXPECT_EQ(shown.err, "");
      EXPECT_THAT(shown.status, testing::AnyOf(kExitGood, kExitFaulty));
    }
    Outcome const outcome = RunProgram({"check", name});
    EXPECT_EQ(outcome.err, "");
    int const brokenRules = CountBrokenRules(outcome.out);
    bool const isGood = outcome.out.ends_with(", lengths good\n") &&
                        outcome.out.find("// nothing to check") == std::string::npos;
    EXPECT_EQ(outcome.status, brokenRules == 0 && isGood ? kExitGood : kExitFaulty);
    if (SaysWellFormed(entry.path().parent_path() / "info.json")) {
      EXPECT_THAT(outcome.out, testing::Not(testing::HasSubstr("(USB 3.2: 9.5)")));
      EXPECT_THAT(outcome.out, testing::Not(testing::HasSubstr("lengths bad")));
    }
    ++files;
    ++filesByBrokenRules[brokenRules];
  }
  EXPECT_GT(files, 0);
  std::cout << files << " files";
  for (auto const& [brokenRules, count] : filesByBrokenRules) {
    std::cout << ", " << brokenRules << " broken rules: " << count;
  }
  std::cout << '\n';
}

}  // namespace
}  // namespace usb_support::usbdesc
