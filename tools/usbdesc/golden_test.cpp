// The program's output for the fake device and for every sample capture, compared with the files in
// tests/golden/usbdesc. The environment variable USB_SUPPORT_UPDATE_GOLDEN=1 rewrites them.
#include <cstdlib>
#include <fstream>
#include <set>

#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

bool IsUpdate() {
  char const* const value = std::getenv("USB_SUPPORT_UPDATE_GOLDEN");
  return value != nullptr && std::string_view(value) == "1";
}

class GoldenTest : public UsbdescTest {
 protected:
  // The samples are named on the command line as they are in their folder.
  GoldenTest() { std::filesystem::current_path(Samples()); }
  ~GoldenTest() override { std::filesystem::current_path(before_); }

  static std::filesystem::path Samples() { return SourceFolder() / "examples" / "captures"; }
  static std::filesystem::path Golden() { return SourceFolder() / "tests" / "golden" / "usbdesc"; }

  static std::set<std::string> FilesIn(std::filesystem::path const& folder) {
    std::set<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(folder)) {
      if (entry.path().extension() == ".txt") {
        names.insert(NameOf(entry.path().filename()));
      }
    }
    return names;
  }

  void Check(std::vector<std::string> const& arguments, std::string const& name) {
    SCOPED_TRACE(name);
    Outcome const outcome = RunProgram(arguments);
    EXPECT_EQ(outcome.err, "");
    bool const isFaulty = arguments[0] == "check"
                              ? outcome.out.find(", fail 0, ") == std::string::npos
                              : !outcome.out.ends_with(", lengths good\n");
    EXPECT_EQ(outcome.status, isFaulty ? kExitFaulty : kExitGood);
    CheckOutput(outcome.out, name);
  }

  void CheckDifference(std::string const& before, std::string const& after) {
    SCOPED_TRACE(after);
    Outcome const outcome = RunProgram({"diff", before, after});
    EXPECT_EQ(outcome.status, kExitFaulty);
    CheckOutput(outcome.out, "diff-" + after);
  }

  // The part of a page that differs from page to page.
  void CheckPage(std::vector<std::string> arguments, std::string const& name) {
    SCOPED_TRACE(name);
    arguments.insert(arguments.begin() + 1, {"--format", "html"});
    std::string const page = RunProgram(arguments).out;
    std::size_t const begin = page.find("<header>");
    std::size_t const end = page.find("<p id=say");
    ASSERT_LT(begin, end);
    CheckOutput(page.substr(begin, end - begin), name);
  }

  void CheckOutput(std::string const& output, std::string const& name) {
    checked_.insert(name);
    if (IsUpdate()) {
      std::ofstream file(Golden() / name, std::ios::binary);
      file << output;
      EXPECT_TRUE(file.flush());
      return;
    }
    ASSERT_TRUE(std::filesystem::exists(Golden() / name));
    EXPECT_EQ(output, standalone::ReadFileBytes(Golden() / name));
  }

  std::set<std::string> const& Checked() const { return checked_; }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
  std::set<std::string> checked_;
};

// One test, because it also checks that there are no other golden files.
TEST_F(GoldenTest, OutputIsAsSaved) {
  Check({"--fake"}, "fake.txt");
  Check({"--fake", "--code"}, "fake-code.txt");
  Check({"decode", "--fake"}, "decode-fake.txt");
  Check({"tree", "--fake"}, "tree-fake.txt");
  Check({"check", "--fake"}, "check-fake.txt");
  Check({"--fake", "--functions", "--interfaces", "--capabilities", "--code"},
        "sub-ranges-fake-code.txt");
  std::set<std::string> const samples = FilesIn(Samples());
  EXPECT_FALSE(samples.empty());
  std::string previous = *samples.rbegin();
  for (std::string const& sample : samples) {
    Check({sample}, sample);
    if (sample.starts_with("malformed-")) {
      Check({"--code", sample}, "code-" + sample);
    }
    Check({"decode", sample}, "decode-" + sample);
    Check({"tree", sample}, "tree-" + sample);
    Check({"check", sample}, "check-" + sample);
    Check({"--functions", "--interfaces", "--capabilities", sample}, "sub-ranges-" + sample);
    CheckPage({"tree", sample}, "page-" + sample);
    CheckDifference(previous, sample);
    previous = sample;
  }
  CheckPage({"check", "malformed-wrong-total.txt"}, "check-page.txt");
  CheckPage({"diff", "--check", "hid-keyboard.txt", "hid-keyboard-mouse-composite.txt"},
            "diff-page.txt");
  EXPECT_EQ(FilesIn(Golden()), Checked());
}

}  // namespace
}  // namespace usb_support::usbdesc
