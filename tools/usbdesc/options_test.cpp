#include <tools/usbdesc/options.h>

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace usb_support::usbdesc {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Pair;

std::string UsageErrorOf(std::vector<std::string> const& arguments) {
  try {
    ParseOptions(arguments);
  } catch (UsageError const& error) {
    return error.what();
  }
  return "no error";
}

TEST(Options, HaveDefaults) {
  Options const options = ParseOptions({"a.bin"});
  EXPECT_THAT(options.files, ElementsAre("a.bin"));
  EXPECT_FALSE(options.fake);
  EXPECT_EQ(options.kind, InputKind::kRecognise);
  EXPECT_FALSE(options.asCode);
  EXPECT_EQ(options.verbosity, LOG_LEVEL_3);
  EXPECT_EQ(options.logFile, std::nullopt);
  EXPECT_EQ(options.settingsFile, std::nullopt);
  EXPECT_THAT(options.settings, IsEmpty());
  EXPECT_THAT(options.reply, IsEmpty());
}

TEST(Options, AreAllRead) {
  Options const options =
      ParseOptions({"--fake", "a", "--input", "raw", "--code", "-", "--set", "A=1", "b c", "--set",
                    "B=x=y, z", "--settings", "s.json", "--verbosity", "6", "--log", "l.txt"});
  EXPECT_THAT(options.files, ElementsAre("a", "-", "b c"));
  EXPECT_TRUE(options.fake);
  EXPECT_EQ(options.kind, InputKind::kRaw);
  EXPECT_TRUE(options.asCode);
  EXPECT_EQ(options.verbosity, LOG_LEVEL_6);
  EXPECT_EQ(options.logFile, "l.txt");
  EXPECT_EQ(options.settingsFile, "s.json");
  EXPECT_THAT(options.settings, ElementsAre(Pair("A", "1"), Pair("B", "x=y, z")));
}

TEST(Options, TakeValuesBehindAnEqualsSign) {
  Options const options = ParseOptions({"--input=text", "--verbosity=0", "--set=K=", "x"});
  EXPECT_THAT(options.files, ElementsAre("x"));
  EXPECT_EQ(options.kind, InputKind::kText);
  EXPECT_EQ(options.verbosity, LOG_LEVEL_0);
  EXPECT_THAT(options.settings, ElementsAre(Pair("K", "")));
}

TEST(Options, TakeEveryNameForAFile) {
  EXPECT_THAT(ParseOptions({"/dump.bin", "{}", "%%", "", "--", "--fake", "-x"}).files,
              ElementsAre("/dump.bin", "{}", "%%", "", "--fake", "-x"));
}

TEST(Options, TakeViews) {
  Options const none = ParseOptions({"a"});
  EXPECT_FALSE(none.functions || none.interfaces || none.capabilities || none.tree ||
               none.assertions || none.vendor);
  EXPECT_TRUE(ParseOptions({"--functions", "a"}).functions);
  EXPECT_TRUE(ParseOptions({"--interfaces", "a"}).interfaces);
  EXPECT_TRUE(ParseOptions({"--capabilities", "a"}).capabilities);
  EXPECT_TRUE(ParseOptions({"--tree", "a"}).tree);
  EXPECT_TRUE(ParseOptions({"--assert", "a"}).assertions);
  EXPECT_TRUE(ParseOptions({"--vendor", "a"}).vendor);
}

TEST(Options, TakeColours) {
  EXPECT_EQ(ParseOptions({"a"}).colour, ColourChoice::kAuto);
  EXPECT_EQ(ParseOptions({"--color", "auto", "a"}).colour, ColourChoice::kAuto);
  EXPECT_EQ(ParseOptions({"--color=always", "a"}).colour, ColourChoice::kAlways);
  EXPECT_EQ(ParseOptions({"--color=never", "a"}).colour, ColourChoice::kNever);
  EXPECT_EQ(UsageErrorOf({"--color", "red", "a"}), "--color: red not in {auto,always,never}");
}

TEST(Options, RefuseCodeWhereNothingIsDumped) {
  constexpr char kMessage[] = "--code: --tree and --assert write no descriptors";
  EXPECT_EQ(UsageErrorOf({"--code", "--tree", "a"}), kMessage);
  EXPECT_EQ(UsageErrorOf({"--code", "--assert", "--vendor", "a"}), kMessage);
  EXPECT_TRUE(ParseOptions({"--code", "--tree", "--functions", "a"}).asCode);
  EXPECT_TRUE(ParseOptions({"--code", "--vendor", "a"}).asCode);
}

TEST(Options, NeedAnInput) {
  constexpr char kMessage[] =
      "no input: give files, - for standard input, or --fake (--help says more)";
  EXPECT_EQ(UsageErrorOf({}), kMessage);
  EXPECT_EQ(UsageErrorOf({"--code"}), kMessage);
}

TEST(Options, RefuseStandardInputTwice) {
  EXPECT_EQ(UsageErrorOf({"-", "a", "-"}), "standard input can be read only once");
}

TEST(Options, RefuseWhatTheyDoNotKnow) {
  EXPECT_EQ(UsageErrorOf({"--foo"}), "The following argument was not expected: --foo");
  EXPECT_EQ(UsageErrorOf({"-x", "a"}), "The following argument was not expected: -x");
}

TEST(Options, RefuseBadValues) {
  EXPECT_EQ(UsageErrorOf({"--verbosity", "7", "a"}), "--verbosity: Value 7 not in range 0 to 6");
  EXPECT_EQ(UsageErrorOf({"--verbosity", "-1", "a"}), "--verbosity: Value -1 not in range 0 to 6");
  EXPECT_EQ(UsageErrorOf({"--verbosity", "x", "a"}), "--verbosity: Value x not in range 0 to 6");
  EXPECT_EQ(UsageErrorOf({"--input", "hex", "a"}), "--input: hex not in {raw,text}");
  EXPECT_EQ(UsageErrorOf({"--set", "A", "a"}), "--set: found \"A\", expected KEY=VALUE");
  EXPECT_EQ(UsageErrorOf({"--set", "=1", "a"}), "--set: found \"=1\", expected KEY=VALUE");
  EXPECT_EQ(UsageErrorOf({"--set", "", "a"}), "--set: found \"\", expected KEY=VALUE");
  EXPECT_EQ(UsageErrorOf({"[a,b]"}), "[a,b]: put ./ before a name in brackets");
}

TEST(Options, RefuseMissingValues) {
  EXPECT_EQ(UsageErrorOf({"a", "--set"}), "--set: 1 required KEY=VALUE missing");
  EXPECT_EQ(UsageErrorOf({"a", "--settings"}), "--settings: 1 required FILE missing");
  EXPECT_EQ(UsageErrorOf({"a", "--log"}), "--log: 1 required FILE missing");
  EXPECT_THAT(UsageErrorOf({"a", "--input"}), testing::StartsWith("--input: 1 required"));
  EXPECT_THAT(UsageErrorOf({"a", "--verbosity"}), testing::StartsWith("--verbosity: 1 required"));
}

TEST(Options, RefuseASecondValueWhereOneCounts) {
  EXPECT_EQ(UsageErrorOf({"--log", "a", "--log", "b", "c"}),
            "--log: At Most 1 required but received 2");
}

TEST(Options, AnswerHelpAndVersion) {
  EXPECT_EQ(ParseOptions({"--version"}).reply, "usbdesc 3.0.0.0\n");
  std::string const help = ParseOptions({"--help"}).reply;
  EXPECT_EQ(ParseOptions({"-h"}).reply, help);
  for (char const* const name : {"usbdesc [OPTIONS] [FILE...]",
                                 "-h,--help",
                                 "--version",
                                 "--fake",
                                 "--input raw|text",
                                 "--code",
                                 "--set KEY=VALUE",
                                 "--settings FILE",
                                 "--verbosity N",
                                 "--log FILE",
                                 "--functions",
                                 "--interfaces",
                                 "--capabilities",
                                 "--tree",
                                 "--assert",
                                 "--vendor",
                                 "--color auto|always|never",
                                 "--generate man|bash|zsh|fish",
                                 "NO_COLOR",
                                 "Exit status: 0"}) {
    EXPECT_THAT(help, testing::HasSubstr(name));
  }
  EXPECT_THAT(help, testing::EndsWith("\n"));
}

// Every option of the help, the names of one option as the help has them: "-h,--help".
std::vector<std::string> OptionsOfHelp() {
  std::vector<std::string> options;
  std::istringstream lines(ParseOptions({"--help"}).reply);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("  -")) {
      options.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
  }
  return options;
}

TEST(Options, HaveAPlaceInEveryDocument) {
  std::string const man = ParseOptions({"--generate", "man"}).reply;
  std::string const bash = ParseOptions({"--generate=bash"}).reply;
  std::string const zsh = ParseOptions({"--generate=zsh"}).reply;
  std::string const fish = ParseOptions({"--generate=fish"}).reply;
  std::vector<std::string> const options = OptionsOfHelp();
  EXPECT_THAT(options, testing::IsSupersetOf({"-h,--help", "--input", "--generate"}));
  for (std::string const& option : options) {
    std::string const name = option.substr(option.rfind("--") + 2);
    EXPECT_THAT(man, testing::HasSubstr("\\fB\\-\\-" + name + "\\fR"));
    EXPECT_THAT(bash, testing::HasSubstr(" --" + name));
    EXPECT_THAT(zsh, testing::HasSubstr("--" + name));
    EXPECT_THAT(fish, testing::HasSubstr(" -l " + name + " "));
  }
  for (char const* const title : {"NAME", "SYNOPSIS", "DESCRIPTION", "OPTIONS", "INPUT", "VIEWS",
                                  "VENDOR NAMES", "COLOUR AND PROGRESS", "EXIT STATUS"}) {
    EXPECT_THAT(man, testing::HasSubstr(std::string("\n.SH ") + title + '\n'));
  }
  EXPECT_THAT(man, testing::StartsWith(".TH USBDESC 1 \"\" \"usbdesc 3.0.0.0\" "));
}

TEST(Options, MakeADocumentWithoutAnInput) {
  EXPECT_EQ(ParseOptions({"--generate", "man", "--code", "--tree"}).reply,
            ParseOptions({"--generate", "man"}).reply);
  EXPECT_EQ(UsageErrorOf({"--generate", "csh"}), "--generate: csh not in {man,bash,zsh,fish}");
}

}  // namespace
}  // namespace usb_support::usbdesc
