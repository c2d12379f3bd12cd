#include <tools/usbdesc/command_line.h>

#include <sstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace usb_support::usbdesc {
namespace {

using testing::HasSubstr;

std::string UsageErrorOf(std::vector<std::string> const& arguments) {
  try {
    ParseCommandLine(arguments);
  } catch (UsageError const& error) {
    return error.what();
  }
  return "no error";
}

std::string ReplyTo(std::vector<std::string> const& arguments) {
  return ParseCommandLine(arguments).reply;
}

TEST(CommandLine, HasOptionsOfEveryCommandBeforeAndAfterItsFiles) {
  Console const none = ParseCommandLine({"a.bin"}).console;
  EXPECT_EQ(none.verbosity, LOG_LEVEL_3);
  EXPECT_EQ(none.logFile, std::nullopt);
  EXPECT_EQ(none.colour, ColourChoice::kAuto);
  for (std::vector<std::string> const& arguments :
       {std::vector<std::string>{"--verbosity", "6", "--log=l", "--color", "never", "a"},
        {"--verbosity", "6", "--log=l", "--color", "never", "check", "a"},
        {"tree", "a", "--log", "l", "--verbosity=6", "--color=never"}}) {
    Console const console = ParseCommandLine(arguments).console;
    EXPECT_EQ(console.verbosity, LOG_LEVEL_6);
    EXPECT_EQ(console.logFile, "l");
    EXPECT_EQ(console.colour, ColourChoice::kNever);
  }
  EXPECT_EQ(ParseCommandLine({"a", "--color=always"}).console.colour, ColourChoice::kAlways);
  EXPECT_EQ(ParseCommandLine({"a", "--color=auto"}).console.colour, ColourChoice::kAuto);
}

TEST(CommandLine, RefusesWhatItDoesNotKnowWithTheNearestWord) {
  EXPECT_EQ(UsageErrorOf({"tre"}),
            "tre: not a command and not a file; the nearest command is tree");
  EXPECT_EQ(UsageErrorOf({"Check", "a"}),
            "Check: not a command and not a file; the nearest command is check");
  EXPECT_EQ(UsageErrorOf({"dupm"}),
            "dupm: not a command and not a file; the nearest command is dump");
  EXPECT_EQ(UsageErrorOf({"-v"}), "-v: unknown option (see --help)");
  EXPECT_EQ(UsageErrorOf({"no-such-file"}), "no error") << "it is for the command to open";
  EXPECT_EQ(UsageErrorOf({"--funktions"}),
            "--funktions: unknown option; the nearest is --functions");
  EXPECT_EQ(UsageErrorOf({"tree", "--colour=never"}),
            "--colour=never: unknown option; the nearest is --color");
  EXPECT_EQ(UsageErrorOf({"tree", "--code"}), "--code: unknown option (see --help)");
  EXPECT_EQ(UsageErrorOf({"--foo", "a"}), "--foo: unknown option (see --help)");
  EXPECT_EQ(UsageErrorOf({"a", "-xyz"}), "-xyz: unknown option (see --help)");
}

TEST(CommandLine, RefusesBadValues) {
  EXPECT_EQ(UsageErrorOf({"--verbosity", "7", "a"}), "--verbosity: Value 7 not in range 0 to 6");
  EXPECT_EQ(UsageErrorOf({"--verbosity", "-1", "a"}), "--verbosity: Value -1 not in range 0 to 6");
  EXPECT_EQ(UsageErrorOf({"--verbosity", "x", "a"}), "--verbosity: Value x not in range 0 to 6");
  EXPECT_THAT(UsageErrorOf({"--input", "txt", "a"}),
              testing::StartsWith("--input: txt not in {raw,text,folder,traffic,hex,"));
  EXPECT_EQ(UsageErrorOf({"--color", "red", "a"}), "--color: red not in {auto,always,never}");
  EXPECT_EQ(UsageErrorOf({"--generate", "csh"}), "--generate: csh not in {man,bash,zsh,fish}");
  EXPECT_EQ(UsageErrorOf({"[a,b]"}), "[a,b]: put ./ before a name in brackets");
  EXPECT_EQ(UsageErrorOf({"a", "--log"}), "--log: 1 required FILE missing");
  EXPECT_THAT(UsageErrorOf({"a", "--input"}), testing::StartsWith("--input: 1 required"));
  EXPECT_EQ(UsageErrorOf({"--log", "a", "--log", "b", "c"}),
            "--log: At Most 1 required but received 2");
}

TEST(CommandLine, AnswersHelpAndVersion) {
  EXPECT_THAT(ReplyTo({"--version"}), testing::StartsWith("usbdesc "));
  EXPECT_EQ(ReplyTo({"tree", "--version"}), ReplyTo({"--version"}));
  std::string const help = ReplyTo({"--help"});
  EXPECT_EQ(ReplyTo({"-h"}), help);
  EXPECT_THAT(help, HasSubstr("Usage: usbdesc [OPTIONS] [COMMAND]"));
  EXPECT_THAT(help, HasSubstr("Exit status: 0"));
  EXPECT_THAT(help, testing::EndsWith("\n"));
  EXPECT_THAT(ReplyTo({"dump", "--help"}), HasSubstr("Usage: usbdesc dump [OPTIONS] [INPUT...]"));
  EXPECT_EQ(ReplyTo({"a", "--help"}), ReplyTo({"dump", "--help"}));
}

// Every option of a help, the names of one option as the help has them: "-h,--help".
std::vector<std::string> OptionsIn(std::string const& help) {
  std::vector<std::string> options;
  std::istringstream lines(help);
  for (std::string line; std::getline(lines, line);) {
    if (line.starts_with("  -")) {
      options.push_back(line.substr(2, line.find(' ', 2) - 2));
    }
  }
  return options;
}

TEST(CommandLine, HasEveryCommandAndOptionInEveryDocument) {
  std::string const man = ReplyTo({"--generate", "man"});
  std::string const bash = ReplyTo({"--generate=bash"});
  std::string const zsh = ReplyTo({"--generate=zsh"});
  std::string const fish = ReplyTo({"--generate=fish", "tree"});
  std::string help = ReplyTo({"--help"});
  for (Command const& command : kCommands) {
    std::string const name = command.name;
    EXPECT_THAT(help, HasSubstr("\n  " + name + ' '));
    EXPECT_THAT(man, HasSubstr("\n\\fB" + name + "\\fR\n" + command.help));
    EXPECT_THAT(bash, HasSubstr(name));
    EXPECT_THAT(zsh, HasSubstr(name));
    EXPECT_THAT(fish, HasSubstr(" -a " + name + " -d '" + command.help));
    help += ReplyTo({command.name, "--help"});
  }
  std::vector<std::string> const options = OptionsIn(help);
  EXPECT_THAT(options, testing::IsSupersetOf({"-h,--help", "--input", "--code", "--generate"}));
  for (std::string const& option : options) {
    std::string const name = option.substr(option.rfind("--") + 2);
    EXPECT_THAT(man, HasSubstr("\\fB\\-\\-" + name + "\\fR"));
    EXPECT_THAT(bash, HasSubstr(" --" + name));
    EXPECT_THAT(zsh, HasSubstr("--" + name));
    EXPECT_THAT(fish, HasSubstr(" -l " + name + " "));
  }
  for (char const* const title :
       {"NAME", "SYNOPSIS", "DESCRIPTION", "COMMANDS", "OPTIONS", "INPUT", "PARTS", "VENDOR NAMES",
        "PROGRESS", "EXIT STATUS", "ENVIRONMENT", "FILES", "EXAMPLES"}) {
    EXPECT_THAT(man, HasSubstr(std::string("\n.SH ") + title + '\n'));
  }
  EXPECT_THAT(man, testing::StartsWith(".TH USBDESC 1 \"\" \"usbdesc "));
}

}  // namespace
}  // namespace usb_support::usbdesc
