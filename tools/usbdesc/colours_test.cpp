#include <tools/usbdesc/colours.h>

#include <standalone_suite/platform/scoped_environment_variable.h>
#include <tools/usbdesc/usbdesc_test.h>

namespace usb_support::usbdesc {
namespace {

using testing::HasSubstr;
using testing::Not;

constexpr char kEscape = '\x1b';

// The text without its escape codes of the form ESC [ digits m; anything else stays.
std::string Stripped(std::string_view text) {
  std::string stripped;
  while (!text.empty()) {
    std::size_t const end = text.starts_with("\x1b[") ? text.find_first_not_of("0123456789", 2)
                                                      : std::string_view::npos;
    if (end != std::string_view::npos && text[end] == 'm') {
      text.remove_prefix(end + 1);
    } else {
      stripped += text.front();
      text.remove_prefix(1);
    }
  }
  return stripped;
}

class ColourTest : public UsbdescTest {
 protected:
  static std::filesystem::path Samples() { return SourceFolder() / "examples" / "captures"; }
};

// Also the sinks' parts of a line are covered: titles, broken rules, plain lines.
TEST_F(ColourTest, ChangesNoTextOfAnySampleAndView) {
  std::vector<std::vector<std::string>> const views = {
      {},
      {"--code"},
      {"tree", "--vendor"},
      {"check"},
      {"--functions", "--interfaces", "--capabilities"},
      {"--functions", "--interfaces", "--capabilities", "--code"},
      {"--verbosity", "6"}};
  std::vector<std::string> inputs = {"--fake"};
  for (auto const& entry : std::filesystem::directory_iterator(Samples())) {
    if (entry.path().extension() == ".txt") {
      inputs.push_back(NameOf(entry.path()));
    }
  }
  EXPECT_GT(inputs.size(), 1u);
  for (std::string const& input : inputs) {
    for (std::vector<std::string> const& view : views) {
      std::vector<std::string> arguments = view;
      arguments.push_back(input);
      SCOPED_TRACE(testing::PrintToString(arguments));
      arguments.emplace_back("--color=never");
      Outcome const plain = RunProgram(arguments);
      EXPECT_EQ(plain.out.find(kEscape), std::string::npos);
      std::string const log = NameOf(Path("log.txt"));
      arguments.back() = "--color=always";
      arguments.insert(arguments.end(), {"--log", log});
      Outcome const coloured = RunProgram(arguments);
      EXPECT_EQ(coloured.status, plain.status);
      EXPECT_EQ(coloured.err, "");
      EXPECT_THAT(coloured.out, HasSubstr("\x1b["));
      EXPECT_EQ(Stripped(coloured.out), plain.out);
      EXPECT_EQ(standalone::ReadFileBytes(Path("log.txt")), plain.out);
    }
  }
}

TEST_F(ColourTest, MarksTitlesAndBrokenRules) {
  std::string const name = NameOf(Samples() / "malformed-wrong-total.txt");
  std::string const out = RunProgram({"check", "--color", "always", name}).out;
  EXPECT_THAT(out, testing::StartsWith("\x1b[1m\n// " + name + ":\x1b[0m\nspeed: "));
  EXPECT_THAT(out,
              HasSubstr("\n\x1b[31mfail\x1b[0m \x1b[32musb2.config.total-length\x1b[0m (USB 2.0"));
}

TEST_F(ColourTest, IsOffForAFileWithoutAWordAboutIt) {
  standalone::ScopedEnvironmentVariable const noColor("NO_COLOR", std::nullopt);
  standalone::ScopedEnvironmentVariable const term("TERM", "xterm");
  for (std::vector<std::string> const& arguments :
       {std::vector<std::string>{"--fake"}, {"--fake", "--color", "auto"}}) {
    EXPECT_THAT(RunProgram(arguments).out, Not(HasSubstr("\x1b")));
  }
}

TEST_F(ColourTest, FollowsTheOptionAndNotNoColor) {
  standalone::ScopedEnvironmentVariable const noColor("NO_COLOR", "1");
  EXPECT_THAT(RunProgram({"--fake", "--color", "always"}).out, HasSubstr("\x1b[1m\n// Fake"));
}

TEST_F(ColourTest, ShowsATitleInOneColourWhateverTheName) {
  std::string const name = Write("3 lengths bad: x (incomplete)", Bytes{5, 0x0F, 5, 0, 0});
  std::string const out =
      RunProgram({"--functions", "--capabilities", "--code", "--color", "always", name}).out;
  EXPECT_THAT(out, testing::StartsWith("\x1b[1m\n// " + name + ": no configurations\x1b[0m\n" +
                                       "\x1b[1m\n// " + name + ", BOS: no capabilities\x1b[0m\n" +
                                       "\x1b[1m\n// " + name + ":\x1b[0m\n// raw: 1 descriptor, "));
}

// A line of the library as it comes out in colour.
std::string Shown(TEST_STATUS status, CFormatInfo const* format,
                  std::filesystem::path const& file) {
  Stream stream = OpenStream(file, "wb");
  OutputSink sink(stream.get(), true);
  standalone::LogCall call;
  call.type = LogTypeOf(status);
  call.format = format;
  call.text = "   0h:  01";
  sink.Take(call);
  stream.reset();
  return standalone::ReadFileBytes(file);
}

TEST_F(ColourTest, OfALineOfTheLibraryIsThatOfItsLogType) {
  std::filesystem::path const file = Path("line");
  CFormatInfo const bold({0, 0, 255, 255}, TEXT_STRENGTH_BOLD);
  CFormatInfo const normal({0, 0, 255, 255}, TEXT_STRENGTH_NORMAL);
  EXPECT_EQ(Shown(TEST_STATUS_PLAIN, nullptr, file), "   0h:  01\n");
  EXPECT_EQ(Shown(TEST_STATUS_PLAIN, &normal, file), "   0h:  01\n");
  EXPECT_EQ(Shown(TEST_STATUS_PLAIN, &bold, file), "\x1b[1m   0h:  01\x1b[0m\n");
  EXPECT_EQ(Shown(TEST_STATUS_FAILURE, nullptr, file), "\x1b[31m   0h:  01\x1b[0m\n");
  EXPECT_EQ(Shown(TEST_STATUS_INTERNAL_ERROR, &bold, file), "\x1b[31m   0h:  01\x1b[0m\n");
  EXPECT_EQ(Shown(TEST_STATUS_VENDOR_LIST, nullptr, file), "\x1b[33m   0h:  01\x1b[0m\n");
}

constexpr char kBad[] = "\x1b[31m";
constexpr char kReset[] = "\x1b[0m";

TEST_F(ColourTest, MarksOffsetsLabelsAndWhatIsWrongOfADump) {
  auto const dump = [this](std::vector<std::string> arguments, std::string const& run) {
    arguments.insert(arguments.end(), {"--color=always", "-"});
    std::string const out = RunProgram(arguments, run).out;
    std::size_t const begin = out.find(":\x1b[0m\n") + 6;
    return out.substr(begin, out.rfind("\n//") - begin);
  };
  EXPECT_EQ(dump({}, "02 FF 01"),
            "\x1b[36m   0h:  \x1b[0m02 FF : \x1b[32m<UNKNOWN DESCRIPTOR>\n"
            "\x1b[0m\x1b[36m   2h:  \x1b[0m01 : \x1b[32m<UNKNOWN DESCRIPTOR>\x1b[0m");
  EXPECT_EQ(dump({}, "02 FF 09 02"),
            "\x1b[36m   0h:  \x1b[0m02 FF : \x1b[32m<UNKNOWN DESCRIPTOR>\x1b[0m"
            "\x1b[36m   2h:  \x1b[0m\n09 02\x1b[31m (incomplete)\x1b[0m");
  EXPECT_EQ(dump({}, "00"), "\x1b[36m   0h:  \x1b[0m\n00\x1b[31m (incomplete)\x1b[0m");
  EXPECT_EQ(dump({"--code"}, "02 FF 09 02"),
            "\x1b[36m/*    0h */  \x1b[0m0x02, 0xFF, // \x1b[32m<UNKNOWN DESCRIPTOR>\x1b[0m\n"
            "\x1b[36m/*    2h */  \x1b[0m0x09, 0x02, //\x1b[31m (incomplete)\x1b[0m");
}

TEST_F(ColourTest, MarksWhatIsWrongInATreeAndASummary) {
  std::string const run = "09 02 0C 00 01 01 00 80 32 00 24";
  std::string const out = RunProgram({"tree", "--color=always", "-"}, run).out;
  EXPECT_THAT(out, HasSubstr(std::string("\n  ") + kBad +
                             "lengths bad: zero length at offset 9h, 2 bytes left" + kReset));
  EXPECT_THAT(
      out, testing::EndsWith(std::string(" 11 bytes,") + kBad +
                             " lengths bad: zero length at offset 9h, 2 bytes left" + kReset + "," +
                             kBad + " wTotalLength wrong: 12 announced at offset 0h, 11 found" +
                             kReset + "\n"));
  EXPECT_THAT(
      RunProgram({"--color=always", "-"}, "").out,
      testing::EndsWith(std::string(" 0 bytes,") + kBad + " nothing to check" + kReset + "\n"));
}

TEST_F(ColourTest, NoTextCanSendEscapeCodesOfItsOwn) {
  for (bool const isColoured : {false, true}) {
    Stream stream = OpenStream(Path("text"), "wb");
    OutputSink sink(stream.get(), isColoured);
    standalone::LogCall call;
    call.operation = standalone::LogOperation::kDoWritePrintLnOnly;
    call.text =
        "a\x1b[2Jb\r\tc\nd\xC2\x9B"
        "31m \xE2\x80\xAE";
    sink.Take(call);
    stream.reset();
    EXPECT_EQ(standalone::ReadFileBytes(Path("text")), "a\\x1B[2Jb\\x0D\tc\nd\\u009B31m \\u202E\n");
  }
}

}  // namespace
}  // namespace usb_support::usbdesc
