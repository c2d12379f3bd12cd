// The command diff and the pages, from the command line.
#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class DiffTest : public UsbdescTest {
 protected:
  static std::string Sample(char const* name) {
    return NameOf(SourceFolder() / "examples" / "captures" / name);
  }
};

TEST_F(DiffTest, TellsWhetherTwoDevicesAreTheSame) {
  std::string const keyboard = Sample("hid-keyboard.txt");
  Outcome const same = RunProgram({"diff", keyboard, keyboard});
  EXPECT_EQ(same.status, kExitGood);
  EXPECT_EQ(same.out, "\n// " + keyboard + " -> " + keyboard + ":\nno difference\n");
  Outcome const other = RunProgram({"diff", keyboard, Sample("hid-keyboard-mouse-composite.txt")});
  EXPECT_EQ(other.status, kExitFaulty);
  EXPECT_THAT(other.out, HasSubstr("\n~ configuration 1, bNumInterfaces: 1 -> 2 (16h)\n"));
  EXPECT_EQ(other.err, "");
}

TEST_F(DiffTest, RefusesWhatItCannotCompare) {
  std::string const keyboard = Sample("hid-keyboard.txt");
  Outcome const one = RunProgram({"diff", keyboard});
  EXPECT_EQ(one.status, kExitUnusable);
  EXPECT_THAT(one.err, HasSubstr("diff takes two inputs"));
  Outcome const missing = RunProgram({"diff", keyboard, NameOf(Path("missing"))});
  EXPECT_EQ(missing.status, kExitUnusable);
  EXPECT_EQ(missing.out, "");
  std::string const device = "12 01 00 02 00 00 00 40 09 12 01 00 00 01 00 00 00 00\n";
  Outcome const two = RunProgram({"diff", Write("two.txt", device + device), keyboard});
  EXPECT_EQ(two.status, kExitUnusable);
  EXPECT_THAT(two.err, HasSubstr("has 2 devices; choose one of them, such as "));
  EXPECT_EQ(RunProgram({"diff", NameOf(Path("two.txt#1")), NameOf(Path("two.txt#2"))}).status,
            kExitGood);
}

TEST_F(DiffTest, DecodesBothAtTheGivenSpeed) {
  std::string const header = "09 02 19 00 01 01 00 80 32 09 04 00 00 01 FF 00 00 00 ";
  std::string const a = Write("a.txt", header + "07 05 81 03 08 00 04");
  std::string const b = Write("b.txt", header + "07 05 81 03 08 00 05");
  EXPECT_THAT(RunProgram({"diff", "--speed", "full", a, b}).out,
              HasSubstr("bInterval: 4 ms -> 5 ms"));
  EXPECT_THAT(RunProgram({"diff", "--speed", "high", a, b}).out,
              HasSubstr("bInterval: 1 ms -> 2 ms"));
}

TEST_F(DiffTest, ComparesForms) {
  std::string const a = Write("a.txt", "12 01 00 02 00 00 00 40 09 12 01 00 00 01 00 00 00 00");
  std::string const b = Write("b.txt", "12 01 10 02 00 00 00 41 09 12 01 00 00 01 00 00 00 00");
  EXPECT_THAT(RunProgram({"diff", "--format", "json", a, b}).out,
              HasSubstr(R"("field":"bMaxPacketSize0","before":{"text":"64 bytes","hex":"40",)"
                        R"("offset":7},"after":{"text":"65 bytes","hex":"41","offset":7})"));
}

TEST_F(DiffTest, ShowsRulesThatOneDeviceBreaks) {
  std::string const good =
      Write("good.txt", "09 02 12 00 01 01 00 80 32 09 04 00 00 00 FF 00 00 00");
  std::string const bad = Write("bad.txt", "09 02 12 00 01 01 00 00 32 09 04 00 00 00 FF 00 00 00");
  std::string const rule = "\n! usb2.config.attributes-bit7: ";
  EXPECT_THAT(RunProgram({"diff", "--check", good, bad}).out, HasSubstr(rule + "kept -> broken ("));
  EXPECT_THAT(RunProgram({"diff", "--check", bad, good}).out, HasSubstr(rule + "broken -> kept ("));
  EXPECT_THAT(RunProgram({"diff", "--check", "--format", "json", good, bad}).out,
              HasSubstr(R"("rules":[{"rule":"usb2.config.attributes-bit7","before":"keeps",)"));
}

TEST_F(DiffTest, PagesHaveTheExitStatusOfTheirCommands) {
  std::string const bad = Sample("malformed-truncated.txt");
  for (char const* const command : {"decode", "tree", "check"}) {
    for (std::string const& input : {bad, Sample("hid-keyboard.txt")}) {
      Outcome const page = RunProgram({command, "--format", "html", input});
      EXPECT_EQ(page.status, RunProgram({command, input}).status) << command << input;
      EXPECT_THAT(page.out, StartsWith("<!DOCTYPE html>"));
      EXPECT_EQ(page.err, "");
    }
  }
}

}  // namespace
}  // namespace usb_support::usbdesc
