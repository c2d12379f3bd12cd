// The commands check and rules from the user's view: text, summary, accepted findings, JSON, JUnit,
// exit statuses.
#include <algorithm>
#include <sstream>
#include <string>
#include <vector>

#include <tools/usbdesc/usbdesc_test.h>
#include <tools/usbdesc/views/check.h>
#include <tools/usbdesc/views/wrapped.h>
#include <usb_rules/catalogue.h>

namespace usb_support::usbdesc {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

// A keyboard that keeps all rules; the attributes of its configuration and its interval can be
// changed.
std::string Keyboard(std::string const& attributes = "A0", std::string const& interval = "0A") {
  return "12 01 00 02 00 00 00 08 34 12 01 00 00 01 00 00 00 01\n"
         "09 02 22 00 01 01 00 " +
         attributes +
         " 32\n"
         "09 04 00 00 01 03 01 01 00\n"
         "09 21 11 01 00 01 22 3F 00\n"
         "07 05 81 03 08 00 " +
         interval + "\n";
}

class CheckTest : public UsbdescTest {
 protected:
  Outcome RunCheck(std::vector<std::string> arguments, std::string const& input = Keyboard()) {
    arguments.insert(arguments.begin(), "check");
    arguments.insert(arguments.end(), {"--speed", "low", "-"});
    return RunProgram(arguments, input);
  }
};

TEST_F(CheckTest, ShowsTheCountsOfAGoodDevice) {
  Outcome const outcome = RunCheck({});
  EXPECT_EQ(outcome.status, kExitGood) << outcome.out;
  EXPECT_EQ(outcome.err, "");
  EXPECT_THAT(outcome.out, StartsWith("\n// standard input:\nspeed: low\npass "));
  EXPECT_THAT(outcome.out, HasSubstr(", fail 0, not applicable "));
  EXPECT_THAT(outcome.out, HasSubstr("no strings captured"));
}

TEST_F(CheckTest, ShowsABrokenRuleWithSectionPlaceBytesAndWhatWasExpected) {
  Outcome const outcome = RunCheck({}, Keyboard("20"));
  EXPECT_EQ(outcome.status, kExitFaulty);
  EXPECT_THAT(outcome.out,
              HasSubstr("fail usb2.config.attributes-bit7 (USB 2.0, 9.6.3)\n"
                        "  Bit 7 of bmAttributes of a configuration is one.\n"
                        "  configuration[0]+0, Configuration: bmAttributes[7] is 0, expected 1\n"));
  EXPECT_THAT(outcome.out, HasSubstr("\n    09 02 22 00 01 01 00 20 32\n"));
  EXPECT_THAT(outcome.out, HasSubstr(", fail 1, "));
}

TEST_F(CheckTest, FitsATerminal) {
  for (std::string const& line :
       {RunCheck({"--all", "--level", "should"}, Keyboard("3F", "00")).out,
        RunProgram({"rules"}).out}) {
    std::istringstream lines(line);
    for (std::string one; std::getline(lines, one);) {
      EXPECT_LE(one.size(), 80u) << one;
    }
  }
}

TEST_F(CheckTest, SaysFromWhatTheSpeedWasConcluded) {
  EXPECT_THAT(RunProgram({"check", "-"}, Keyboard()).out,
              HasSubstr("speed: unknown, because the descriptors fit full speed and low speed\n"));
}

TEST_F(CheckTest, ShowsEveryRuleWhenItIsAskedFor) {
  std::string const out = RunCheck({"--all", "--level", "should"}).out;
  for (usb_rules::Rule const& rule : usb_rules::Catalogue()) {
    EXPECT_THAT(out, HasSubstr(" " + std::string(rule.id))) << rule.id;
  }
  EXPECT_THAT(out, HasSubstr("not applicable usb3.bos"));
}

TEST_F(CheckTest, JudgesTheRulesThatAreChosen) {
  std::string const bad = Keyboard("20", "00");
  EXPECT_EQ(RunCheck({"--rule", "usb2.device."}, bad).status, kExitGood);
  EXPECT_EQ(RunCheck({"--rule", "usb2.config.attributes-bit7"}, bad).status, kExitFaulty);
  EXPECT_THAT(RunCheck({"--rule", "usb2.config.attributes-bit7"}, bad).out,
              EndsWith("pass 0, fail 1, not applicable 0, not run 0\n"));
  EXPECT_EQ(
      RunCheck({"--rule", "usb2.config.", "--skip", "usb2.config.attributes-bit7"}, bad).status,
      kExitGood);
}

TEST_F(CheckTest, LeavesRecommendationsOutUnlessTheyAreAskedFor) {
  std::string vendor = Keyboard();
  vendor.replace(vendor.find("34 12"), 5, "00 00");
  EXPECT_EQ(RunCheck({}, vendor).status, kExitGood);
  Outcome const outcome = RunCheck({"--level", "should"}, vendor);
  EXPECT_EQ(outcome.status, kExitFaulty);
  EXPECT_THAT(outcome.out,
              HasSubstr("fail usb2.device.vendor-assigned (USB 2.0, 9.6.1, should)\n"));
}

TEST_F(CheckTest, IsNotGoodWithoutARuleToJudge) {
  Outcome const outcome = RunCheck({"--rule", "uac2."});
  EXPECT_EQ(outcome.status, kExitFaulty);
  EXPECT_THAT(outcome.out, EndsWith("\nno rule could be judged\n"));
}

TEST_F(CheckTest, TellsWhenOnlyAPartOfADeviceWasJudged) {
  std::string const bos = "05 0F 0C 00 01\n07 10 02 02 00 00 00\n";
  Outcome const outcome = RunProgram({"check", "-"}, bos);
  EXPECT_EQ(outcome.status, kExitGood) << outcome.out;
  EXPECT_THAT(outcome.out, EndsWith("\njudged in part only: no device descriptor and no "
                                    "configuration in the input\n"));
  EXPECT_THAT(RunProgram({"check", "--summary", "-"}, bos).out,
              HasSubstr(", judged in part only: no device descriptor and no configuration"));
  EXPECT_THAT(RunProgram({"check", "--format", "json", "-"}, bos).out,
              HasSubstr(R"("lacks":["device descriptor","configuration"])"));
  EXPECT_THAT(RunCheck({}).out, Not(HasSubstr("judged in part")));
}

TEST_F(CheckTest, WritesInputsThatCannotBeReadAsErrorsOfJunit) {
  Outcome const outcome =
      RunProgram({"check", "--format", "junit", NameOf(Path("none")), "-"}, Keyboard());
  EXPECT_EQ(outcome.status, kExitUnusable);
  EXPECT_THAT(outcome.out, HasSubstr("tests=\"1\" failures=\"0\" errors=\"1\" skipped=\"0\">\n"
                                     "    <testcase classname=\"usbdesc\" "
                                     "name=\"input can be read\"><error message=\""));
  EXPECT_THAT(outcome.out, HasSubstr("<testsuite name=\"standard input\""));
  EXPECT_THAT(outcome.err, HasSubstr("none"));
}

TEST_F(CheckTest, RefusesRulesThatDoNotExist) {
  EXPECT_THAT(RunCheck({"--rule", "usb9."}).err, HasSubstr("--rule usb9.: no rule"));
  EXPECT_EQ(RunCheck({"--rule", "usb9."}).status, kExitUnusable);
  EXPECT_THAT(RunCheck({"--skip", "usb2.config"}).err, HasSubstr("--skip usb2.config: no rule"));
  EXPECT_EQ(RunProgram({"rules", "usb9."}).status, kExitUnusable);
}

TEST_F(CheckTest, KeepsWhatIsBrokenAtLowVerbosity) {
  EXPECT_EQ(RunCheck({"--verbosity", "1"}).out, "");
  EXPECT_THAT(RunCheck({"--verbosity", "1"}, Keyboard("20")).out, StartsWith("speed: low\nfail "));
}

TEST_F(CheckTest, AcceptsFindings) {
  std::string const file =
      Write("accept.txt",
            "# for the first build\n\n"
            "usb2.config.attributes-bit7 configuration[0]+0 the firmware of the first build\n"
            "usb2.config.total-length configuration[0]+0 long gone\n");
  Outcome const outcome = RunCheck({"--accept", file}, Keyboard("20"));
  EXPECT_EQ(outcome.status, kExitGood) << outcome.out;
  EXPECT_THAT(outcome.out, HasSubstr("accepted usb2.config.attributes-bit7 (USB 2.0, 9.6.3)\n"));
  EXPECT_THAT(outcome.out, HasSubstr("    accepted: the firmware of the first build\n"));
  EXPECT_THAT(outcome.out, HasSubstr(", fail 0, accepted 1, "));
  EXPECT_EQ(outcome.err, "usbdesc: " + file +
                             ":4: usb2.config.total-length at configuration[0]+0 does not occur\n");
}

TEST_F(CheckTest, RefusesAWrongLineOfAcceptedFindings) {
  struct Row {
    char const* text;
    char const* mistake;
  };
  constexpr Row kRows[] = {
      {"usb2.config.bit7 bos+0 why", "'usb2.config.bit7' is not the id of a rule"},
      {"usb2.config.string here why", "'here' is not a place such as configuration[0]+27"},
      {"usb2.config.string bos+ why", "'bos+' is not a place"},
      {"usb2.config.string", "'' is not a place"},
      {"usb2.config.string bos+0", "the reason is missing"},
      {"usb2.config.string bos+0 a\nusb2.config.string bos+0 b", "accepts the same"},
  };
  for (Row const& row : kRows) {
    std::string const file = Write("accept.txt", std::string("# why\n") + row.text);
    Outcome const outcome = RunCheck({"--accept", file});
    EXPECT_EQ(outcome.status, kExitUnusable) << row.text;
    EXPECT_THAT(outcome.err, HasSubstr(file + ":")) << row.text;
    EXPECT_THAT(outcome.err, HasSubstr(row.mistake)) << row.text;
  }
  EXPECT_THAT(RunCheck({"--accept", NameOf(Path("none"))}).err, HasSubstr("cannot be opened"));
}

TEST_F(CheckTest, SumsUpManyInputs) {
  std::string const good = Write("good.txt", Keyboard());
  std::string const bad = Write("bad.txt", Keyboard("20"));
  std::string const other = Write("other.txt", Keyboard("20", "00"));
  Outcome const outcome = RunProgram(
      {"check", "--summary", "--speed", "low", good, bad, other, NameOf(Path("missing"))});
  EXPECT_EQ(outcome.status, kExitUnusable);
  EXPECT_THAT(outcome.out, StartsWith(good + ": good, pass "));
  EXPECT_THAT(outcome.out, HasSubstr("\n" + bad + ": not good, pass "));
  EXPECT_THAT(outcome.out, HasSubstr("     2  usb2.config.attributes-bit7\n"
                                     "        Bit 7 of bmAttributes of a configuration is one.\n"));
  EXPECT_THAT(outcome.out, EndsWith("4 inputs: 1 good, 2 with failures, 1 not valid\n"));
}

TEST_F(CheckTest, WritesJson) {
  Outcome const outcome = RunCheck({"--format", "json"}, Keyboard("20"));
  EXPECT_EQ(outcome.status, kExitFaulty);
  EXPECT_THAT(outcome.out, StartsWith("{\"usbdesc\":1,\"inputs\":["));
  EXPECT_THAT(outcome.out, HasSubstr(R"("place":"configuration[0]+0")"));
  EXPECT_THAT(outcome.out, HasSubstr(R"("hex":"090222000101002032")"));
  EXPECT_THAT(outcome.out, Not(HasSubstr("usb2.config.length")));
}

TEST_F(CheckTest, WritesJunit) {
  Outcome const outcome = RunCheck({"--format", "junit"}, Keyboard("20"));
  EXPECT_THAT(outcome.out,
              HasSubstr("<testcase classname=\"USB 2.0, 9.6.3\" "
                        "name=\"usb2.config.attributes-bit7\"><failure message=\"Bit 7 of"));
  EXPECT_THAT(outcome.out, HasSubstr("name=\"usb2.config.length\"/>\n"));
  EXPECT_THAT(outcome.out, HasSubstr("<skipped message=\"no BOS captured\"/>"));
  EXPECT_THAT(outcome.out, EndsWith("  </testsuite>\n</testsuites>\n"));
}

TEST(CheckJunit, EscapesWhatXmlForbids) {
  CheckedDevice device;
  device.name = "<script>\"&'\x01\x1B[31m\xFF \xEF\xBF\xBE\xEF\xBF\xBF \xC3\xA9\n";
  EXPECT_THAT(CheckJunit(device),
              StartsWith("  <testsuite name=\"&lt;script&gt;&quot;&amp;'\\x01\\x1B[31m\\xFF "
                         "\\uFFFE\\uFFFF \xC3\xA9\\x0A\" tests=\"0\""));
}

TEST(Wrapped, BreaksAtSpaces) {
  EXPECT_EQ(Wrapped("one two three", 2, 9), "  one two\n  three\n");
  EXPECT_EQ(Wrapped("a-long-word b", 1, 4), " a-long-word\n b\n");
  EXPECT_EQ(Wrapped("", 2, 9), "\n");
}

TEST_F(CheckTest, ShowsTheRules) {
  Outcome const one = RunProgram({"rules", "usb2.config.attributes-bit7"});
  EXPECT_EQ(one.status, kExitGood);
  EXPECT_THAT(one.out, HasSubstr("Bit 7 of bmAttributes of a configuration is one."));
  EXPECT_THAT(one.out,
              HasSubstr("USB 2.0, 9.6.3 (must); for devices of USB 3.0 and later USB 3.2, 9.6.3"));
  std::string const all = RunProgram({"rules"}).out;
  EXPECT_THAT(all, EndsWith(std::to_string(usb_rules::Catalogue().size()) + " rules\n"));
  EXPECT_THAT(RunProgram({"rules", "usb2.config.attributes"}).out, EndsWith("2 rules\n"));
}

}  // namespace
}  // namespace usb_support::usbdesc
