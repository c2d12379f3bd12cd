// The program on a terminal: colours of standard output, the progress marker on standard error.
// POSIX systems only, as the terminals are pseudo terminals.
#include <sys/ioctl.h>

#include <algorithm>
#include <initializer_list>
#include <sstream>
#include <stdexcept>

#include <standalone_suite/platform/scoped_environment_variable.h>
#include <standalone_suite/test_support/pseudo_terminal.h>
#include <tools/usbdesc/progress.h>
#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using standalone::PseudoTerminal;
using standalone::ScopedEnvironmentVariable;
using testing::HasSubstr;
using testing::Not;

class TerminalTest : public UsbdescTest {
 protected:
  void SetUp() override {
    try {
      PseudoTerminal const probe;
    } catch (std::runtime_error const& error) {
      GTEST_SKIP() << error.what();  // as in a chroot without /dev/pts
    }
  }

  // Standard output when it is a terminal.
  std::string OutputOnTerminal(std::vector<std::string> const& arguments) const {
    PseudoTerminal terminal;
    usbdesc::Stream const in = OpenStream(Write("stdin", "02 FF"), "rb");
    usbdesc::Stream const err = OpenStream(Path("stderr"), "wb");
    usbdesc::Run(arguments, in.get(), terminal.Stream(), err.get());
    return terminal.Shown();
  }

  // Standard error when it is a terminal and standard output a file.
  std::string MessagesOnTerminal(std::vector<std::string> const& arguments) const {
    PseudoTerminal terminal;
    usbdesc::Stream const in = OpenStream(Write("stdin", ""), "rb");
    usbdesc::Stream const out = OpenStream(Path("stdout"), "wb");
    usbdesc::Run(arguments, in.get(), out.get(), terminal.Stream());
    return terminal.Shown();
  }

  // Standard output and standard error on one terminal.
  std::string AllOnTerminal(std::vector<std::string> const& arguments) const {
    PseudoTerminal terminal;
    usbdesc::Stream const in = OpenStream(Write("stdin", ""), "rb");
    usbdesc::Run(arguments, in.get(), terminal.Stream(), terminal.Stream());
    return terminal.Shown();
  }

  std::vector<std::string> Files(std::size_t count) const {
    return std::vector<std::string>(count, Write("run", "02 FF"));
  }

 private:
  ScopedEnvironmentVariable noColor_{"NO_COLOR", std::nullopt};
  ScopedEnvironmentVariable term_{"TERM", "xterm"};
};

constexpr char kColouredOffset[] = "\x1b[36m   0h:  \x1b[0m02 FF";
constexpr char kPlainOffset[] = "\n   0h:  02 FF";

TEST_F(TerminalTest, ShowsColours) {
  EXPECT_THAT(OutputOnTerminal({"-"}), HasSubstr(kColouredOffset));
  EXPECT_THAT(OutputOnTerminal({"-", "--color", "auto"}), HasSubstr(kColouredOffset));
}

TEST_F(TerminalTest, ShowsNoColoursWhenNoColorIsSet) {
  for (char const* const value : {"1", "0", "false"}) {
    ScopedEnvironmentVariable const noColor("NO_COLOR", value);
    EXPECT_THAT(OutputOnTerminal({"-"}), HasSubstr(kPlainOffset));
    EXPECT_THAT(OutputOnTerminal({"-"}), Not(HasSubstr("\x1b")));
    EXPECT_THAT(OutputOnTerminal({"-", "--color", "always"}), HasSubstr(kColouredOffset));
  }
  ScopedEnvironmentVariable const noColor("NO_COLOR", "");
  EXPECT_THAT(OutputOnTerminal({"-"}), HasSubstr(kColouredOffset));
}

TEST_F(TerminalTest, ShowsNoColoursWhenItIsDumb) {
  ScopedEnvironmentVariable const term("TERM", "dumb");
  EXPECT_THAT(OutputOnTerminal({"-"}), Not(HasSubstr("\x1b")));
  EXPECT_THAT(OutputOnTerminal({"-", "--color", "always"}), HasSubstr(kColouredOffset));
}

TEST_F(TerminalTest, ShowsNoColoursThatNobodyWants) {
  std::string const shown = OutputOnTerminal({"-", "--color", "never"});
  EXPECT_THAT(shown, HasSubstr(kPlainOffset));
  EXPECT_THAT(shown, Not(HasSubstr("\x1b")));
}

TEST_F(TerminalTest, FitsLinesIntoTheTerminal) {
  std::filesystem::path const samples = SourceFolder() / "examples" / "captures";
  std::string const camera = NameOf(samples / "uvc-camera.txt");
  std::vector<std::vector<std::string>> const commands = {
      {"tree", camera, "--color=never"},
      {"decode", camera, "--color=never"},
      {"check", camera, "--color=never"},
      {"diff", NameOf(samples / "audio-1.txt"), camera, "--check", "--color=never"}};
  for (std::vector<std::string> const& command : commands) {
    for (unsigned short const columns : std::initializer_list<unsigned short>{60, 80, 200}) {
      PseudoTerminal terminal;
      struct winsize size {};
      size.ws_col = columns;
      ASSERT_EQ(ioctl(fileno(terminal.Stream()), TIOCSWINSZ, &size), 0);
      usbdesc::Stream const in = OpenStream(Write("stdin", ""), "rb");
      usbdesc::Stream const err = OpenStream(Path("stderr"), "wb");
      usbdesc::Run(command, in.get(), terminal.Stream(), err.get());
      std::istringstream lines(terminal.Shown());
      std::size_t longest = 0;
      for (std::string line; std::getline(lines, line);) {
        longest = std::max(longest, line.size());
      }
      EXPECT_LE(longest, columns) << command[0];
      EXPECT_GE(longest, std::min<std::size_t>(columns, 80) * 3 / 4) << command[0];
    }
  }
}

std::string Blanked(std::size_t width) {
  return '\r' + std::string(width, ' ') + '\r';
}

std::string Marker(std::size_t number, std::size_t count) {
  return "\rusbdesc: " + std::to_string(number) + " of " + std::to_string(count);
}

TEST_F(TerminalTest, ShowsTheProgressOfManyFilesAndClearsIt) {
  std::string expected;
  for (std::size_t number = 1; number <= 20; ++number) {
    expected += Marker(number, 20);
  }
  expected += Blanked(17);
  EXPECT_EQ(MessagesOnTerminal(Files(20)), expected);
}

TEST_F(TerminalTest, ShowsNoProgressOfFewFiles) {
  EXPECT_EQ(MessagesOnTerminal(Files(kManyFiles - 1)), "");
}

TEST_F(TerminalTest, ClearsTheProgressBeforeAMessage) {
  std::vector<std::string> files = Files(22);
  files[9] = NameOf(Path("missing"));
  EXPECT_THAT(MessagesOnTerminal(files),
              HasSubstr(Marker(9, 22) + Marker(10, 22) + Blanked(17) + "usbdesc: " + files[9] +
                        ": cannot be opened: No such file or directory\n" + Marker(11, 22)));
}

TEST_F(TerminalTest, ClearsTheProgressBeforeItFails) {
  std::vector<std::string> arguments = Files(20);
  PseudoTerminal terminal;
  // A stream that is open for reading takes nothing: the flush at the end fails.
  usbdesc::Stream const in = OpenStream(Write("stdin", ""), "rb");
  EXPECT_EQ(usbdesc::Run(arguments, in.get(), in.get(), terminal.Stream()), kExitUnusable);
  std::string const shown = terminal.Shown();
  std::size_t const message = shown.find("\rusbdesc: standard output cannot be written");
  ASSERT_NE(message, std::string::npos) << shown;
  EXPECT_EQ(shown.substr(0, message + 1), Marker(1, 20) + Blanked(16));
}

TEST_F(TerminalTest, KeepsProgressAndOutputApart) {
  std::vector<std::string> arguments = Files(20);
  arguments.emplace_back("--color=never");
  std::string const output = "\n// " + arguments.front() +
                             ":\n   0h:  02 FF : <UNKNOWN DESCRIPTOR>\n// hex: 1 descriptor, 0 "
                             "configurations, 0 interfaces, 2 "
                             "bytes, lengths good\n";
  std::string expected;
  for (std::size_t number = 1; number <= 20; ++number) {
    expected += Marker(number, 20) + Blanked(Marker(number, 20).size() - 1) + output;
  }
  expected += "\n// 20 inputs: 20 good, 0 with failures, 0 not valid\n";
  EXPECT_EQ(AllOnTerminal(arguments), expected);
}

TEST_F(TerminalTest, IsNotThereForAFile) {
  EXPECT_EQ(RunProgram(Files(40)).err, "");
}

}  // namespace
}  // namespace usb_support::usbdesc
