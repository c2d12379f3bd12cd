// Devices that are more than a run of descriptors, and the commands list and save.
#include <cstdlib>
#include <optional>

#include <tools/usbdesc/usbdesc_test.h>
#include <usb_devices/devices.h>
#include <usb_devices/test_traffic.h>

namespace usb_support::usbdesc {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;
using usb_devices::Device;
using usb_devices::Request;

constexpr char kReport[] = "05 01 09 06 A1 01 05 07 19 E0 29 E7 15 00 25 01 75 01 95 08 81 02 C0";

Bytes Hex(std::string_view text) {
  return testing_support::Hex(text);
}

// A low-speed keyboard, of which everything is known.
Device Keyboard() {
  usb_devices::DeviceBuilder device;
  device.SetName("1.7");
  device.SetSpeed(usb_devices::Speed::kLow);
  auto const add = [&device](Request const& request, std::string_view bytes) {
    device.Add({request, usb_devices::Outcome::kAnswered, Hex(bytes), {"keyboard", 0, 0, 3}, {}});
  };
  add(Request::Descriptor(1), "12 01 10 01 00 00 00 08 09 12 03 00 00 01 01 02 00 01");
  add(Request::Descriptor(2),
      "09 02 22 00 01 01 00 A0 32 09 04 00 00 01 03 01 01 00 09 21 11 01 00 01 22 17 00 "
      "07 05 81 03 08 00 0A");
  add(Request::String(0, 0), "04 03 09 04");
  add(Request::String(1, 0x0409), "08 03 41 00 1B 00 42 00");
  add(Request::String(2, 0x0409), "08 03 4B 00 65 00 79 00");
  add(Request::HidReport(0), kReport);
  device.Add({Request::Descriptor(0x0F), usb_devices::Outcome::kStalled, {}, {}, {}});
  return device.Build();
}

class DevicesTest : public UsbdescTest {
 protected:
  std::string Saved(Device const& device) const {
    std::string const folder = NameOf(Path("keyboard"));
    usb_devices::WriteFolder(device, folder);
    return folder;
  }

  // The device that the program reads from its own output.
  Device Again(Outcome const& written) const {
    EXPECT_EQ(written.err, "");
    std::vector<Device> devices = usb_devices::ReadInput(Write("again", written.out)).devices;
    EXPECT_EQ(devices.size(), 1u);
    return devices.empty() ? Device() : std::move(devices.front());
  }
};

TEST_F(DevicesTest, AreDumpedSoThatTheyReadBack) {
  std::string const folder = Saved(Keyboard());
  Outcome const listing = RunProgram({folder});
  EXPECT_THAT(listing.out, StartsWith("\n// " + folder + ":\n\n// device keyboard, speed low:\n"));
  EXPECT_THAT(listing.out, HasSubstr("// request 81 06 00 22 00 00, HID report of interface 0:\n"
                                     "   0h:  05 01 09 06 A1 01 05 07 19 E0 29 E7 15 00 25 01\n"
                                     "  10h:  75 01 95 08 81 02 C0\n"));
  EXPECT_THAT(listing.out, HasSubstr("// request 80 06 00 0F 00 00, BOS: stalled\n"));
  EXPECT_THAT(listing.out,
              EndsWith("// folder: 8 descriptors, 1 configuration, 1 interface, 1 other answer, "
                       "95 bytes, 1 request without an answer, lengths good\n"));
  EXPECT_EQ(listing.status, kExitGood);
  for (std::vector<std::string> const& form :
       {std::vector<std::string>{"dump"}, {"--code"}, {"decode", "--format=json"}}) {
    std::vector<std::string> arguments = form;
    arguments.push_back(folder);
    EXPECT_TRUE(Again(RunProgram(arguments)).HasSameAnswers(Keyboard())) << form.front();
  }
}

TEST_F(DevicesTest, AreDecodedWithStringsAndReports) {
  std::string const out = RunProgram({"decode", Saved(Keyboard())}).out;
  EXPECT_THAT(out, HasSubstr("// speed: low\n"));
  EXPECT_THAT(out, HasSubstr("iProduct                  2            Key\n"));
  EXPECT_THAT(out, HasSubstr("// string 2, language 0409h"));
  EXPECT_THAT(out, HasSubstr("wLANGID[0]"));
  EXPECT_THAT(out, HasSubstr("// HID report of interface 0"));
  EXPECT_THAT(out, HasSubstr("  2     09 06             Usage: Keyboard\n"));
  EXPECT_THAT(out, HasSubstr("  8     19 E0               Usage Minimum: "));
  EXPECT_THAT(out, HasSubstr("        Input report: 1 byte\n"));
  EXPECT_THAT(out, HasSubstr("// BOS: stalled"));
  EXPECT_THAT(out, Not(HasSubstr("\x1B"))) << "the manufacturer has one";
}

TEST_F(DevicesTest, HaveTheirNamesInTheTree) {
  std::string const out = RunProgram({"tree", Saved(Keyboard())}).out;
  EXPECT_THAT(out, HasSubstr("\n  Product: Key\n"));
  EXPECT_THAT(out, HasSubstr("\nString 2, language 0409h: Key\n"));
  EXPECT_THAT(out, HasSubstr("\nHID report of interface 0: 23 bytes\n"));
  EXPECT_THAT(out, HasSubstr("\nBOS: stalled\n"));
  EXPECT_THAT(out, Not(HasSubstr("\x1B"))) << "the manufacturer has one";
}

TEST_F(DevicesTest, AreListed) {
  std::string const folder = Saved(Keyboard());
  std::string const nothing = Write("nothing", "# nothing");
  Outcome const outcome = RunProgram({"list", folder, nothing, "--fake", "missing"});
  EXPECT_THAT(outcome.out, StartsWith("Fake device  "));
  EXPECT_THAT(outcome.out, HasSubstr("\n" + folder + "  1209:0003  low speed  A"));
  EXPECT_THAT(outcome.out, HasSubstr(", Key\n  device, configuration 0, HID report of interface "
                                     "0, BOS (stalled), 3 strings\n"));
  EXPECT_THAT(outcome.out, EndsWith("\n" + nothing + "\n  nothing is known of it\n"));
  EXPECT_THAT(outcome.out, Not(HasSubstr("\x1B")));
  EXPECT_EQ(outcome.status, kExitUnusable);
  EXPECT_EQ(RunProgram({"list", nothing}).status, kExitFaulty);
  EXPECT_THAT(RunProgram({"list", "--format=json", folder}).out,
              HasSubstr(R"("speed":"low","idVendor":4617,"idProduct":3,"manufacturer":"A)"));
}

TEST_F(DevicesTest, OfTrafficAreNamed) {
  if (!usb_devices::CanReadTraffic()) {
    GTEST_SKIP() << "This build does not read traffic captures.";
  }
  std::string const trace =
      Write("t.pcap", usb_devices::testing_support::CaptureOf({Keyboard(), Keyboard()}));
  std::string const list = RunProgram({"list", trace}).out;
  EXPECT_THAT(list, StartsWith(trace + "#1.1  1209:0003"));
  EXPECT_THAT(list, HasSubstr("\n" + trace + "#1.2  1209:0003"));
  EXPECT_THAT(RunProgram({trace + "#1.2"}).out, HasSubstr("// device 1.2, speed unknown:\n"));
  EXPECT_THAT(RunProgram({"tree", trace}).out, HasSubstr("\n// " + trace + "#1.2:\n"));
  std::string const log = RunProgram({"--log", trace, trace + "#1.2"}).err;
  EXPECT_THAT(log, EndsWith(": the log file is one of the files to read\n"));
  std::string const saved = NameOf(Path("saved"));
  EXPECT_THAT(RunProgram({"save", trace, saved}).err,
              EndsWith("holds 2 devices, expected one; name it, as in " + trace + "#1.1\n"));
  EXPECT_EQ(RunProgram({"save", trace + "#1.1", saved}).err, "");
  EXPECT_TRUE(usb_devices::ReadFolder(saved).HasSameAnswers(
      usb_devices::ReadInput(trace + "#1.1").devices.front()));
}

TEST_F(DevicesTest, AreNotMixedWithALogFile) {
  std::string const folder = Saved(Keyboard());
  for (std::string const name :
       {"/log.bin", "/strings/9-0409.bin", "/descriptors.bin", "/./a/../b"}) {
    Outcome const outcome = RunProgram({"--log", folder + name, folder + "/"});
    EXPECT_EQ(outcome.err, "usbdesc: " + folder + name + ": the log file is in a folder to read, " +
                               folder + "/\n");
    EXPECT_EQ(outcome.status, kExitUnusable);
  }
  EXPECT_TRUE(usb_devices::ReadFolder(folder).HasSameAnswers(Keyboard()));
  Outcome const beside = RunProgram({"--log", folder + ".txt", folder});
  EXPECT_EQ(beside.err, "");
  EXPECT_EQ(beside.status, kExitGood);
}

TEST_F(DevicesTest, AreSavedInEveryForm) {
  Device const keyboard = Keyboard();
  std::string const folder = Saved(keyboard);
  for (std::string const form : {"folder", "listing", "code", "json"}) {
    std::string const saved = NameOf(Path(form));
    Outcome const outcome = RunProgram({"save", "--as", form, folder, saved});
    EXPECT_EQ(outcome.err + outcome.out, "") << form;
    EXPECT_EQ(outcome.status, kExitGood);
    EXPECT_TRUE(usb_devices::ReadInput(saved).devices.front().HasSameAnswers(keyboard)) << form;
  }
  EXPECT_TRUE(Again(RunProgram({"save", "--as=json", folder, "-"})).HasSameAnswers(keyboard));
}

TEST_F(DevicesTest, AreNotSavedWhereSomethingWouldBeLost) {
  std::string const folder = Saved(Keyboard());
  Outcome const raw = RunProgram({"save", "--as", "raw", folder, NameOf(Path("raw"))});
  EXPECT_EQ(raw.err, "usbdesc: " + folder +
                         ": raw bytes cannot hold its speed, strings and other answers; save it as "
                         "folder, listing, code or json\n");
  EXPECT_EQ(raw.status, kExitUnusable);
  EXPECT_FALSE(std::filesystem::exists(Path("raw")));
  EXPECT_THAT(RunProgram({"save", folder, folder}).err, HasSubstr(": holds something already"));
  std::string const file = Write("file", "old");
  EXPECT_EQ(RunProgram({"save", "--as", "code", folder, file}).err,
            "usbdesc: " + file + ": exists already, expected the name of a new file\n");
  EXPECT_EQ(standalone::ReadFileBytes(Path("file")), "old");
  EXPECT_THAT(RunProgram({"save", Write("nothing", ""), "x"}).err, HasSubstr(": holds no device"));
  EXPECT_THAT(RunProgram({"save", folder}).err, StartsWith("usbdesc: save takes a device, and"));
}

// Each sample, and each capture of a folder that the environment variable names.
TEST_F(DevicesTest, AreTheSameThroughEveryForm) {
  std::vector<std::filesystem::path> inputs;
  for (auto const& entry :
       std::filesystem::directory_iterator(SourceFolder() / "examples" / "captures")) {
    if (entry.path().stem() != "README") {
      inputs.push_back(entry.path());
    }
  }
  if (char const* const captures = std::getenv("USB_SUPPORT_CAPTURES_DIR");
      captures != nullptr && *captures != '\0') {
    for (auto const& entry : std::filesystem::directory_iterator(captures)) {
      if (entry.is_directory()) {
        inputs.push_back(entry.path());
      }
    }
  }
  EXPECT_GT(inputs.size(), 15u);
  for (std::filesystem::path const& path : inputs) {
    SCOPED_TRACE(path);
    std::string const name = NameOf(path);
    Device const device = usb_devices::ReadInput(name).devices.front();
    for (std::string const form : {"folder", "listing", "code", "json", "raw"}) {
      bool const canHold = form != "raw" || usb_devices::RunOf(device).has_value();
      std::string const saved = NameOf(Path("saved"));
      Outcome const outcome = RunProgram({"save", "--as", form, name, saved});
      ASSERT_EQ(outcome.status, canHold ? kExitGood : kExitUnusable) << outcome.err;
      if (canHold) {
        EXPECT_TRUE(usb_devices::ReadInput(saved).devices.front().HasSameAnswers(device)) << form;
        std::filesystem::remove_all(Path("saved"));
      }
    }
  }
}

TEST_F(DevicesTest, AreNamedWhenTheyArePluggedIn) {
  Outcome const outcome = RunProgram({"list", "usb:1"});
  EXPECT_EQ(outcome.status, kExitUnusable);
  EXPECT_EQ(outcome.err, usb_devices::CanReadLive()
                             ? "usbdesc: usb:1: is not a name of a device, expected one such as "
                               "usb:046d:0825 or usb:1-7\n"
                             : "usbdesc: usb:1: is a device, and this build has no libusb to read "
                               "it\n");
}

}  // namespace
}  // namespace usb_support::usbdesc
