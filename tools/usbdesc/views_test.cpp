// The output of the commands and of --vendor for runs that no sample has.
#include <standalone_suite/base_support/vendor_list_folder.h>
#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;

constexpr char kDevice[] = "12 01 00 02 00 00 00 40 09 12 03 00 00 01 01 02 03 01 ";
constexpr char kConfiguration[] = "09 02 12 00 01 01 00 80 32 09 04 00 00 00 FF 00 00 00 ";
constexpr char kOtherSpeed[] = "09 07 12 00 01 04 00 80 32 09 04 00 00 00 FF 00 00 00 ";

class Views : public UsbdescTest {
 protected:
  // The output of a view without the summary of the run.
  std::string Show(std::vector<std::string> arguments, std::string const& text) const {
    arguments.emplace_back("-");
    Outcome const outcome = RunProgram(arguments, text);
    EXPECT_EQ(outcome.err, "");
    return outcome.out.substr(0, outcome.out.rfind("// "));
  }
};

TEST_F(Views, ReportThatThereIsNothingToShow) {
  EXPECT_EQ(Show({"--functions", "--interfaces", "--capabilities"}, ""),
            "\n// standard input: no configurations\n"
            "\n// standard input: no configurations\n"
            "\n// standard input: no BOS\n"
            "\n// standard input:\n");
  EXPECT_EQ(Show({"tree"}, ""), "\n// standard input:\n");
  EXPECT_EQ(Show({"--functions"}, "09 02 09 00 00 01 00 80 32"),
            "\n// standard input, configuration 1: no functions\n\n// standard input:\n");
  EXPECT_EQ(Show({"--interfaces"}, "09 02 09 00 00 01 00 80 32"),
            "\n// standard input, configuration 1: no interfaces\n\n// standard input:\n");
  EXPECT_EQ(Show({"--capabilities"}, "05 0F 05 00 00"),
            "\n// standard input, BOS: no capabilities\n\n// standard input:\n");
}

TEST_F(Views, DumpEveryConfiguration) {
  EXPECT_EQ(Show({"--functions"}, std::string(kDevice) + kConfiguration + kOtherSpeed),
            "\n// standard input, configuration 1, function 1 of 1, from offset 1Bh:\n"
            "   0h:  09 04 00 00 00 FF 00 00 00 : Interface: Num=0, Alt=0 (Vendor Specific)\n"
            "\n// standard input, other-speed configuration 4, function 1 of 1, from offset 2Dh:\n"
            "   0h:  09 04 00 00 00 FF 00 00 00 : Interface: Num=0, Alt=0 (Vendor Specific)\n"
            "\n// standard input:\n");
}

TEST_F(Views, DumpAsCode) {
  EXPECT_EQ(
      Show({"--interfaces", "--code"}, kConfiguration),
      "\n// standard input, configuration 1, interface 0 (1 of 1), from offset 9h:\n"
      "/*    0h */  0x09, 0x04, 0x00, 0x00, 0x00, 0xFF, 0x00, 0x00, 0x00, // Interface: Num=0, "
      "Alt=0 (Vendor Specific)\n"
      "\n// standard input:\n");
}

TEST_F(Views, ShowTheValidPartOfAConfigurationWithoutALineOfTheLibrary) {
  constexpr char kBroken[] = "09 02 16 00 01 01 00 80 32 09 04 00 00 00 FF 00 00 00 00 24 01 02";
  EXPECT_EQ(Show({"--functions", "--interfaces"}, kBroken),
            "\n// standard input, configuration 1, function 1 of 1, from offset 9h:\n"
            "   0h:  09 04 00 00 00 FF 00 00 00 : Interface: Num=0, Alt=0 (Vendor Specific)\n"
            "\n// standard input, configuration 1, interface 0 (1 of 1), from offset 9h:\n"
            "   0h:  09 04 00 00 00 FF 00 00 00 : Interface: Num=0, Alt=0 (Vendor Specific)\n"
            "\n// standard input:\n");
  EXPECT_EQ(Show({"tree"}, kBroken),
            "\n// standard input:\n"
            "Configuration 1: 1 interface, bus-powered, 100 mA, 22 bytes\n"
            "  Function 1 of 1: Vendor Specific\n"
            "    Interface 0: Vendor Specific, 0 endpoints\n"
            "  lengths bad: zero length at offset 12h, 4 bytes left\n");
}

TEST_F(Views, TreatDevicesOfOneRunEachOnItsOwn) {
  std::string const run =
      std::string(kDevice) + kConfiguration + kDevice + kConfiguration + kConfiguration;
  constexpr char kShown[] =
      "Configuration 1: 1 interface, bus-powered, 100 mA, 18 bytes\n"
      "  Function 1 of 1: Vendor Specific\n"
      "    Interface 0: Vendor Specific, 0 endpoints\n";
  constexpr char kShownDevice[] = "Device 1209:0003: USB 2.00, class by interface, release 1.00\n";
  EXPECT_EQ(Show({"tree"}, run), std::string("\n// standard input#1:\n") + kShownDevice + kShown +
                                     "\n// standard input#2:\n" + kShownDevice + kShown + kShown);
  std::string const check = RunProgram({"check", "-"}, run).out;
  EXPECT_THAT(check, testing::HasSubstr("\n// standard input#1:\n"));
  EXPECT_THAT(check, testing::HasSubstr("\n// standard input#2:\n"));
}

TEST_F(Views, NameEveryDescriptorInTheTree) {
  EXPECT_EQ(Show({"tree"},
                 "03 24 01 02 41 "  // before everything
                 "12 01 00 02 00 00 00 40 09 12 03 00 00 01 01 02 03 01 04 03 09 04 "
                 "0A 06 00 02 00 00 00 40 01 00 "     // qualifier
                 "09 02 24 00 01 01 00 80 32 02 09 "  // OTG-like, then
                 "09 04 00 00 01 FF 00 00 00 02 25 07 05 81 02 40 00 00 "
                 "04 03 09 04 "
                 "05 0F 0A 00 01 02 24 03 10 0B"),
            "\n// standard input:\n"
            "5 bytes without a descriptor that they belong to:\n"
            "  Class-specific descriptor, type 24h: 3 bytes\n"
            "  Vendor-specific descriptor, type 41h: 2 bytes\n"
            "Device 1209:0003: USB 2.00, class by interface, release 1.00\n"
            "4 bytes after it:\n"
            "  String\n"
            "Device Qualifier\n"
            "Configuration 1: 1 interface, bus-powered, 100 mA, 33 of 36 bytes\n"
            "  Unknown descriptor, type 09h: 2 bytes\n"
            "  Function 1 of 1: Vendor Specific\n"
            "    Interface 0: Vendor Specific, 1 endpoint\n"
            "      Vendor-specific descriptor, type 25h: 2 bytes\n"
            "      Endpoint 81h IN: bulk, 64 bytes\n"
            "        String\n"
            "BOS: 1 device capability, 10 bytes\n"
            "  Class-specific descriptor, type 24h: 2 bytes\n"
            "  Precision Time Measurement\n");
}

TEST_F(Views, ReportInTheTreeWhereInTheFileABreakIs) {
  EXPECT_THAT(Show({"tree"}, std::string(kDevice) + "04 03 09 04 00 01 09 02 0B 00 00"),
              EndsWith("11 bytes after it:\n"
                       "  String\n"
                       "  lengths bad: zero length at offset 16h, 7 bytes left\n"));
  EXPECT_THAT(
      Show({"tree"}, std::string(kDevice) + "09 02 0B 00 00 01 00 80 32 00 01"),
      EndsWith("  lengths bad: zero length at offset 1Bh (9h in the configuration), 2 bytes "
               "left\n"));
  EXPECT_THAT(Show({"tree"}, std::string(kDevice) + "05 0F 07 00 00 00 10"),
              EndsWith("  lengths bad: zero length at offset 17h (5h in the BOS), 2 bytes left\n"));
}

TEST_F(Views, NameTheBosOfTheFakeDeviceOnce) {
  std::string const out = RunProgram({"--fake", "--capabilities"}).out;
  EXPECT_THAT(out, testing::StartsWith(
                       "\n// Fake device, BOS, capability 1 of 8 (type 0x02), from offset 30h:\n"));
  EXPECT_THAT(out, Not(HasSubstr("no BOS")));
}

class VendorView : public Views {
 protected:
  VendorView() {
    std::filesystem::create_directory(Path("list"));
    std::filesystem::create_directory(Path("here"));
    standalone::SetVendorListFolder(NameOf(Path("list")));
    std::filesystem::current_path(Path("here"));
  }
  ~VendorView() override {
    std::filesystem::current_path(before_);
    standalone::SetVendorListFolder(std::nullopt);
  }

  void WriteList(std::string const& folder, std::string_view content) const {
    Stream const file = OpenStream(Path(folder) / "usbif.json", "wb");
    std::fwrite(content.data(), 1, content.size(), file.get());
  }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
};

constexpr char kList[] = R"([{"name": "One & 100% Two", "field_vid": "4617"}])";
constexpr char kDeviceListing[] =
    "\n// standard input:\n"
    "   0h:  12 01 00 02 00 00 00 40 09 12 03 00 00 01 01 02 03 01 : Device\n";

TEST_F(VendorView, ShowsTheNameBelowTheDump) {
  WriteList("list", kList);
  EXPECT_EQ(Show({"--vendor"}, kDevice),
            std::string(kDeviceListing) + "// idVendor 0x1209: One & 100% Two\n");
  EXPECT_EQ(Show({}, kDevice), kDeviceListing);
}

// Windows has names in UTF-16, and the text of the folder is UTF-8.
TEST_F(VendorView, FindsAListInAFolderWithAnyName) {
  std::filesystem::path const name = u8"l\u00EDsta \u65E5\u672C";
  std::filesystem::create_directory(Path("list") / name);
  WriteList("list", kList);
  std::filesystem::rename(Path("list") / "usbif.json", Path("list") / name / "usbif.json");
  standalone::SetVendorListFolder(NameOf(Path("list") / name));
  EXPECT_THAT(Show({"--vendor"}, kDevice), EndsWith("// idVendor 0x1209: One & 100% Two\n"));
}

TEST_F(VendorView, LeavesTheDumpReadable) {
  WriteList("list", kList);
  std::string const run = std::string(kDevice) + "05 24";
  for (char const* const form : {"--verbosity=3", "--code"}) {
    Outcome const outcome = RunProgram({"--vendor", form, "-"}, run);
    EXPECT_THAT(outcome.out, HasSubstr("\n// idVendor 0x1209: One & 100% Two\n"));
    EXPECT_EQ(ReadText(outcome.out), ReadText(run)) << outcome.out;
  }
}

TEST_F(VendorView, ShowsTheNameBesideOtherViews) {
  WriteList("list", kList);
  EXPECT_EQ(Show({"tree", "--vendor"}, kDevice),
            "\n// standard input:\n"
            "Device 1209:0003: USB 2.00, class by interface, release 1.00\n"
            "// idVendor 0x1209: One & 100% Two\n");
}

TEST_F(VendorView, ReportsWhereThereIsNoList) {
  std::string const line =
      "// idVendor 0x1209: there is no usbif.json in " + NameOf(Path("list")) + "\n";
  EXPECT_EQ(Show({"--vendor", "--verbosity=6"}, kDevice), kDeviceListing + line);
  std::filesystem::remove(Path("list"));
  EXPECT_EQ(Show({"--vendor", "--verbosity=6"}, kDevice), kDeviceListing + line);
  standalone::SetVendorListFolder("");
  EXPECT_THAT(Show({"--vendor"}, kDevice),
              EndsWith("// idVendor 0x1209: there is no usbif.json in the current folder\n"));
}

TEST_F(VendorView, ReportsThatTheVendorIsNotListed) {
  WriteList("list", R"([{"name": "Other", "field_vid": "4618"}])");
  EXPECT_EQ(Show({"--vendor", "--verbosity=6"}, kDevice),
            kDeviceListing +
                ("// idVendor 0x1209: not found in usbif.json in " + NameOf(Path("list")) + "\n"));
}

// Each reading of this list logs a line.
TEST_F(VendorView, ReadsTheListOnceForEachVendor) {
  WriteList("list", R"([1, {"name": "One", "field_vid": "4617"}])");
  std::string run;
  for (int i = 0; i < 5; ++i) {
    run += kDevice;
    run += "12 01 00 02 00 00 00 40 0A 12 03 00 00 01 01 02 03 01 ";
  }
  Outcome const outcome = RunProgram({"--vendor", "--verbosity=6", "-"}, run + kDevice);
  auto const count = [&outcome](std::string_view text) {
    int times = 0;
    for (std::size_t at = outcome.out.find(text); at != std::string::npos;
         at = outcome.out.find(text, at + 1)) {
      ++times;
    }
    return times;
  };
  EXPECT_EQ(count("// idVendor 0x1209: One\n"), 6);
  EXPECT_EQ(count("// idVendor 0x120A: not found in "), 5);
  EXPECT_EQ(count("not an object"), 2) << outcome.out;
}

TEST_F(VendorView, IsQuietWithoutADeviceDescriptor) {
  WriteList("list", R"([{"name": "Nobody", "field_vid": "0"}])");
  EXPECT_THAT(Show({"--vendor"}, kConfiguration), Not(HasSubstr("idVendor")));
  EXPECT_THAT(Show({"--vendor"}, "11 01 00 02 00 00 00 40 00 00 03 00 00 01 01 02 03"),
              Not(HasSubstr("idVendor")));
}

TEST_F(VendorView, LeavesAListInTheCurrentFolderAlone) {
  WriteList("here", kList);
  EXPECT_THAT(Show({"--vendor", "--verbosity=6"}, kDevice), HasSubstr("there is no usbif.json"));
  EXPECT_TRUE(std::filesystem::exists(Path("here") / "usbif.json"));
  EXPECT_FALSE(std::filesystem::exists(Path("list") / "usbif.json"));
}

TEST_F(VendorView, TakesTheCurrentFolderWhenThatIsTheFolder) {
  WriteList("here", kList);
  standalone::SetVendorListFolder("");
  EXPECT_THAT(Show({"--vendor"}, kDevice), EndsWith("// idVendor 0x1209: One & 100% Two\n"));
}

TEST_F(VendorView, KeepsANameOnItsLine) {
  WriteList("list", R"([{"name": "A\nB\u001b[2J\u009b\u202e\u2028", "field_vid": "4617"}])");
  EXPECT_THAT(Show({"--vendor"}, kDevice),
              EndsWith(R"(// idVendor 0x1209: A\x0AB\x1B[2J\u009B\u202E\u2028)"
                       "\n"));
}

TEST_F(VendorView, ShowsWhatIsWrongWithAListWithoutItsEscapeCodes) {
  WriteList("list", R"([{"name": "A\u001b[2J\u202e", "field_vid": "x\u009b"}])");
  Outcome const outcome = RunProgram({"--vendor", "--verbosity=6", "--color=always", "-"}, kDevice);
  EXPECT_THAT(outcome.out, HasSubstr(R"(A\x1B[2J\u202E)"));
  EXPECT_THAT(outcome.out, HasSubstr(R"(x\u009B)"));
  EXPECT_THAT(outcome.out, Not(HasSubstr("\x1b[2J")));
}

TEST_F(VendorView, RefusesToEmptyTheList) {
  WriteList("list", kList);
  std::string const log = NameOf(Path("other name"));
  std::filesystem::create_hard_link(Path("list") / "usbif.json", Path("other name"));
  Outcome const outcome = RunProgram({"--vendor", "--log", log, "-"}, kDevice);
  EXPECT_EQ(outcome.err, "usbdesc: " + log + ": the log file is one of the files to read\n");
  EXPECT_EQ(outcome.status, kExitUnusable);
  EXPECT_EQ(standalone::ReadFileBytes(Path("list") / "usbif.json"), kList);
  EXPECT_EQ(RunProgram({"--log", NameOf(Path("list") / "usbif.json"), "-"}, kDevice).err, "")
      << "it is not read";
}

TEST_F(VendorView, ReportsWhatIsWrongWithAList) {
  WriteList("list", "{}");
  EXPECT_THAT(Show({"--vendor"}, kDevice),
              EndsWith("Unexpected format: usbif.json should be a JSON array.\n"
                       "// idVendor 0x1209: not found in usbif.json in " +
                       NameOf(Path("list")) + "\n"));
}

}  // namespace
}  // namespace usb_support::usbdesc
