#include <tools/usbdesc/manual.h>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace usb_support::usbdesc {
namespace {

// A program with every kind of option, and with the characters that the documents must escape.
Manual Example() {
  Manual manual;
  manual.name = "prog";
  manual.version = "prog 1.2";
  manual.summary = "does what is \"right\"";
  manual.description = "Does it.\n'Really'.\n.Dot";
  manual.files = "FILE";
  manual.filesDescription = "Files to read";
  manual.commands = {{"do", "Do it"}, {"undo", "Don't"}};
  manual.options = {{{"-h", "--help"}, "", "Say more", {""}},
                    {{"--kind"}, "raw|text", "What's in the file", {"do", "undo"}},
                    {{"--log"}, "FILE", "Write to a file: [all] of \\it", {""}},
                    {{"-s", "--set"}, "KEY=VALUE", "Set it", {"do"}}};
  manual.sections = {{"Two parts", "First part with --kind.\n\nSecond part."}};
  return manual;
}

TEST(Manual, IsAManualPage) {
  EXPECT_EQ(ManPage(Example()),
            ".TH PROG 1 \"\" \"prog 1.2\" \"User Commands\"\n"
            ".SH NAME\n"
            "prog \\- does what is \"right\"\n"
            ".SH SYNOPSIS\n"
            "\\fBprog\\fR [\\fICOMMAND\\fR] [\\fIOPTION\\fR]... [\\fIFILE\\fR]...\n"
            ".SH DESCRIPTION\n"
            "Does it.\n"
            "\\&'Really'.\n"
            "\\&.Dot\n"
            ".SH COMMANDS\n"
            ".TP\n"
            "\\fBdo\\fR\n"
            "Do it; the default.\n"
            ".TP\n"
            "\\fBundo\\fR\n"
            "Don't.\n"
            ".SH OPTIONS\n"
            ".TP\n"
            "\\fIFILE\\fR\n"
            "Files to read.\n"
            ".TP\n"
            "\\fB\\-h\\fR, \\fB\\-\\-help\\fR\n"
            "Say more.\n"
            ".TP\n"
            "\\fB\\-\\-kind\\fR \\fBraw\\fR|\\fBtext\\fR\n"
            "What's in the file. (do, undo)\n"
            ".TP\n"
            "\\fB\\-\\-log\\fR \\fIFILE\\fR\n"
            "Write to a file: [all] of \\eit.\n"
            ".TP\n"
            "\\fB\\-s\\fR, \\fB\\-\\-set\\fR \\fIKEY=VALUE\\fR\n"
            "Set it. (do)\n"
            ".SH TWO PARTS\n"
            "First part with \\-\\-kind.\n"
            ".PP\n"
            "Second part.\n");
}

TEST(Manual, BeginsNoLineWithAControlCharacter) {
  Manual manual = Example();
  manual.description = ".starts with a dot";
  EXPECT_THAT(ManPage(manual), testing::HasSubstr("\n\\&.starts with a dot\n"));
  manual.description = "'quoted'";
  EXPECT_THAT(ManPage(manual), testing::HasSubstr("\n\\&'quoted'\n"));
}

TEST(Manual, IsACompletionForBash) {
  std::string const script = BashCompletion(Example());
  EXPECT_THAT(script, testing::HasSubstr("  case $previous in\n"
                                         "    --kind)\n"
                                         "      mapfile -t COMPREPLY < <(compgen -W 'raw text' "
                                         "-- \"$current\")\n"
                                         "      return\n"
                                         "      ;;\n"
                                         "    --log)\n"
                                         "      _prog_files\n"
                                         "      return\n"
                                         "      ;;\n"
                                         "    -s|--set)\n"
                                         "      return\n"
                                         "      ;;\n"
                                         "  esac\n"));
  EXPECT_THAT(script, testing::HasSubstr("compgen -W '-h --help --kind --log -s --set' --"));
  EXPECT_THAT(script, testing::EndsWith("\ncomplete -F _prog prog\n"));
}

TEST(Manual, IsACompletionForZsh) {
  EXPECT_EQ(ZshCompletion(Example()),
            "#compdef prog\n"
            "_arguments -s -S \\\n"
            "  '(-h --help)-h[Say more]' \\\n"
            "  '(-h --help)--help[Say more]' \\\n"
            "  '--kind=[What'\\''s in the file]:raw|text:(raw text)' \\\n"
            "  '--log=[Write to a file\\: \\[all\\] of \\\\it]:FILE:_files' \\\n"
            "  '(-s --set)-s+[Set it]:KEY=VALUE: ' \\\n"
            "  '(-s --set)--set=[Set it]:KEY=VALUE: ' \\\n"
            "  '1:command or FILE:{_files; compadd do undo}' \\\n"
            "  '*:FILE:_files'\n");
}

TEST(Manual, IsACompletionForFish) {
  EXPECT_EQ(FishCompletion(Example()),
            "# fish completion for prog\n"
            "complete -c prog -n __fish_use_subcommand -a do -d 'Do it'\n"
            "complete -c prog -n __fish_use_subcommand -a undo -d 'Don\\'t'\n"
            "complete -c prog -s h -l help -d 'Say more'\n"
            "complete -c prog -l kind -x -a 'raw text' -d 'What\\'s in the file'\n"
            "complete -c prog -l log -r -F -d 'Write to a file: [all] of \\\\it'\n"
            "complete -c prog -s s -l set -x -d 'Set it'\n");
}

}  // namespace
}  // namespace usb_support::usbdesc
