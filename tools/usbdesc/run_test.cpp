#include <tools/usbdesc/run.h>

#include <algorithm>
#include <optional>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <tools/usbdesc/usbdesc_test.h>
#include <usb_devices/files.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

Bytes const kDevice = {0x12, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x40, 0x09,
                       0x12, 0x03, 0x00, 0x00, 0x01, 0x01, 0x02, 0x03, 0x01};

constexpr char kDeviceListing[] =
    "   0h:  12 01 00 02 00 00 00 40 09 12 03 00 00 01 01 02 03 01 : Device\n"
    "// raw: 1 descriptor, 0 configurations, 0 interfaces, 18 bytes, lengths good\n";

constexpr char kDeviceCode[] =
    "/*    0h */  0x12, 0x01, 0x00, 0x02, 0x00, 0x00, 0x00, 0x40, 0x09, 0x12, 0x03, 0x00, 0x00, "
    "0x01, 0x01, 0x02, 0x03, 0x01, // Device\n"
    "// raw: 1 descriptor, 0 configurations, 0 interfaces, 18 bytes, lengths good\n";

using RunTest = UsbdescTest;

TEST_F(RunTest, ListsAFile) {
  std::string const name = Write("device.bin", kDevice);
  Outcome const outcome = RunProgram({name});
  EXPECT_EQ(outcome.out, "\n// " + name + ":\n" + kDeviceListing);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, kExitGood);
}

TEST_F(RunTest, WritesAFileAsCode) {
  std::string const name = Write("device.bin", kDevice);
  Outcome const outcome = RunProgram({"--code", name});
  EXPECT_EQ(outcome.out, "\n// " + name + ":\n" + kDeviceCode);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, kExitGood);
}

TEST_F(RunTest, ReadsStandardInput) {
  Outcome const outcome = RunProgram({"-"}, AsText(kDevice));
  EXPECT_EQ(outcome.out, std::string("\n// standard input:\n") + kDeviceListing);
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, kExitGood);
}

TEST_F(RunTest, TakesTheFilesInOrderAfterTheFakeDevice) {
  std::string const first = Write("first", kDevice);
  std::string const second = Write("second", Bytes{1});
  Outcome const outcome = RunProgram({second, "-", first, "--fake"}, "02 FF");
  std::vector<std::size_t> places;
  for (std::string const& title :
       {std::string("Fake device"), second, std::string("standard input"), first}) {
    places.push_back(outcome.out.find("\n// " + title + ":\n"));
    EXPECT_NE(places.back(), std::string::npos) << title;
  }
  EXPECT_TRUE(std::is_sorted(places.begin(), places.end()));
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, kExitGood);
}

TEST_F(RunTest, ListsAnEmptyFile) {
  std::string const name = Write("empty", "");
  Outcome const outcome = RunProgram({name});
  EXPECT_EQ(outcome.out, "\n// " + name +
                             ":\n\n// raw: 0 descriptors, 0 configurations, 0 interfaces, 0 bytes, "
                             "nothing to check\n");
  EXPECT_EQ(outcome.status, kExitFaulty);
}

TEST_F(RunTest, ReportsWhyARunIsNotValid) {
  Outcome const outcome = RunProgram({"-"}, "02 FF 09 02 20 00");
  EXPECT_EQ(
      outcome.out,
      "\n// standard input:\n"
      "   0h:  02 FF : <UNKNOWN DESCRIPTOR>   2h:  \n"
      "09 02 20 00 (incomplete)\n"
      "// hex: 1 descriptor, 0 configurations, 0 interfaces, 6 bytes, lengths bad: past the end at "
      "offset 2h, 4 bytes left\n");
  EXPECT_EQ(outcome.err, "");
  EXPECT_EQ(outcome.status, kExitFaulty);
}

TEST_F(RunTest, GoesOnAfterAFileThatCannotBeRead) {
  std::string const missing = NameOf(Path("missing"));
  std::string const folder = usb_devices::NameOf(Path("folder"));  // with "/" on every system
  std::filesystem::create_directory(Path("folder"));
  std::string const text = Write("text", "12 01\n13 xx");
  std::string const tooLong = Write("long", std::string((1 << 20) + 1, '\2'));
  std::string const invalid = Write("invalid", Bytes{0});
  std::string const good = Write("good", kDevice);
  Outcome const outcome = RunProgram({missing, folder, text, tooLong, invalid, good});
  EXPECT_EQ(outcome.err,
            "usbdesc: " + missing + ": cannot be opened: No such file or directory\n" +
                "usbdesc: " + folder +
                ": holds no descriptors, expected a file such as descriptors.bin or bos.bin\n" +
                "usbdesc: " + text +
                ": line 2, column 4: found \"xx\", expected a byte of two hexadecimal digits\n" +
                "usbdesc: " + tooLong + ": holds more than 1 MiB of descriptors\n");
  EXPECT_EQ(outcome.out,
            "\n// " + invalid +
                ":\n   0h:  \n00 (incomplete)\n// raw: 0 descriptors, 0 configurations, 0 "
                "interfaces, 1 byte, lengths bad: zero length at offset 0h, 1 byte "
                "left\n\n// " +
                good + ":\n" + kDeviceListing +
                "\n// 6 inputs: 1 good, 1 with failures, 4 not valid\n");
  EXPECT_EQ(outcome.status, kExitUnusable);
}

TEST_F(RunTest, NamesStandardInputInMessages) {
  Outcome const outcome = RunProgram({"--input", "text", "-"}, "1");
  EXPECT_EQ(outcome.err,
            "usbdesc: standard input: line 1, column 1: found \"1\", expected a byte of two "
            "hexadecimal digits\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, kExitUnusable);
}

TEST_F(RunTest, TakesTheKindOfInputThatItIsTold) {
  EXPECT_THAT(RunProgram({"--input", "raw", "-"}, "02 FF").out, HasSubstr("\n30 32 20 46 46 (inc"));
  EXPECT_THAT(RunProgram({"--input", "text", "-"}, "02 FF").out, HasSubstr("   0h:  02 FF :"));
}

TEST_F(RunTest, SpansTheLargestRun) {
  std::string const longest = Write("longest", Bytes(65535, 1));
  Outcome const outcome = RunProgram({longest});
  EXPECT_THAT(outcome.out, HasSubstr("\nFFFEh:  01 : "));
  EXPECT_THAT(outcome.out,
              HasSubstr("// raw: 65535 descriptors, 0 configurations, 0 interfaces, 65535 "
                        "bytes, lengths good\n"));
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_EQ(ReadText(outcome.out), Bytes(65535, 1));
}

TEST_F(RunTest, KeepsATitleOnOneLine) {
  std::string name;
  try {
    name = Write("a\nb\x01.bin", kDevice);
  } catch (std::runtime_error const&) {
    GTEST_SKIP() << "The system does not take a name with control characters.";
  }
  EXPECT_EQ(RunProgram({name}).out,
            "\n// " + NameOf(Path("a\\x0Ab\\x01.bin")) + ":\n" + kDeviceListing);
}

TEST_F(RunTest, KeepsAMessageOnOneLine) {
  Outcome const outcome = RunProgram({NameOf(Path("a\nb\x01.missing"))});
  EXPECT_THAT(outcome.err, StartsWith("usbdesc: " + NameOf(Path("a\\x0Ab\\x01.missing")) +
                                      ": cannot be opened"));
  EXPECT_EQ(std::count(outcome.err.begin(), outcome.err.end(), '\n'), 1);
}

TEST_F(RunTest, WritesATitleAsItIs) {
  std::string const name = Write("100%% %d %s%.bin", kDevice);
  EXPECT_EQ(RunProgram({name}).out, "\n// " + name + ":\n" + kDeviceListing);
  EXPECT_EQ(RunProgram({name, "--code"}).out, "\n// " + name + ":\n" + kDeviceCode);
  EXPECT_THAT(RunProgram({"tree", name}).out, StartsWith("\n// " + name + ":\n"));
}

TEST_F(RunTest, ReadsAFileWhoseNameIsNotAscii) {
  std::filesystem::path const path = Path("") / std::u8string(u8"gr\u00F6\u00DFe \u20AC.bin");
  try {
    std::filesystem::copy_file(Path(Write("device", kDevice)), path);
  } catch (std::filesystem::filesystem_error const& error) {
    GTEST_SKIP() << "The system does not take the name: " << error.what();
  }
  Outcome const outcome = RunProgram({NameOf(path)});
  EXPECT_EQ(outcome.out, "\n// " + NameOf(path) + ":\n" + kDeviceListing);
  EXPECT_TRUE(usb_devices::LooksLikeText(outcome.out));
}

TEST_F(RunTest, WritesNoPlainLinesBelowTheirVerbosity) {
  for (char const* const verbosity : {"0", "1", "2"}) {
    Outcome const outcome = RunProgram({"--verbosity", verbosity, "-"}, "01 00");
    EXPECT_EQ(outcome.out, "");
    EXPECT_EQ(outcome.err, "");
    EXPECT_EQ(outcome.status, kExitFaulty);
  }
  for (char const* const verbosity : {"3", "6"}) {
    EXPECT_EQ(RunProgram({"--verbosity", verbosity, "-"}, AsText(kDevice)).out,
              std::string("\n// standard input:\n") + kDeviceListing);
  }
}

TEST_F(RunTest, WritesTheLogToAFileToo) {
  std::string const log = NameOf(Path("log.txt"));
  Write("log.txt", "old");
  Outcome const outcome = RunProgram({"--log", log, "--fake", "-"}, AsText(kDevice));
  EXPECT_EQ(outcome.status, kExitGood);
  EXPECT_THAT(outcome.out, HasSubstr("Fake device"));
  EXPECT_EQ(standalone::ReadFileBytes(Path("log.txt")), outcome.out);
}

TEST_F(RunTest, RefusesALogFileThatItCannotMake) {
  std::string const log = NameOf(Path("missing") / "log.txt");
  Outcome const outcome = RunProgram({"--fake", "--log", log});
  EXPECT_EQ(outcome.err,
            "usbdesc: " + log + ": the log file cannot be opened: No such file or directory\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, kExitUnusable);
}

TEST_F(RunTest, RefusesToEmptyAFileThatItIsToRead) {
  std::string const name = Write("device.bin", kDevice);
  std::string const otherName = NameOf(Path(".") / "device.bin");
  Outcome const outcome = RunProgram({name, "--log", otherName});
  EXPECT_EQ(outcome.err, "usbdesc: " + otherName + ": the log file is one of the files to read\n");
  EXPECT_EQ(outcome.status, kExitUnusable);
  EXPECT_EQ(standalone::ReadFileBytes(Path("device.bin")), AsText(kDevice));
}

TEST_F(RunTest, RefusesToEmptyStandardInput) {
  std::string const name = Write("device.bin", kDevice);
  Stream in = OpenStream(Path("device.bin"), "rb");
  Stream out = OpenStream(Path("stdout"), "wb");
  Stream err = OpenStream(Path("messages"), "wb");
  EXPECT_EQ(usbdesc::Run({"--log", name, "-"}, in.get(), out.get(), err.get()), kExitUnusable);
  err.reset();
  EXPECT_EQ(standalone::ReadFileBytes(Path("messages")),
            "usbdesc: " + name + ": the log file is one of the files to read\n");
  EXPECT_EQ(standalone::ReadFileBytes(Path("device.bin")), AsText(kDevice));
}

TEST_F(RunTest, JudgesTotalLengths) {
  Outcome const outcome = RunProgram({"-"}, "09 02 0A 00 00 01 00 80 32");
  EXPECT_THAT(outcome.out, HasSubstr("wTotalLength wrong: 10 announced at offset 0h, 9 found\n"));
  EXPECT_EQ(outcome.status, kExitFaulty);
}

TEST_F(RunTest, HasNothingToCheckWithoutRules) {
  EXPECT_EQ(RunProgram({"check", "-"}, "02 FF").status, kExitFaulty);
  EXPECT_EQ(RunProgram({"tree", "-"}, "02 FF").status, kExitGood);
}

// Text that a compiler accepts as the content of an array: comments and numbers with commas.
TEST_F(RunTest, WritesABrokenRunAsCode) {
  std::string const run = "02 FF 09 02 20 00";
  Outcome const outcome = RunProgram({"--code", "-"}, run);
  EXPECT_EQ(
      outcome.out,
      "\n// standard input:\n"
      "/*    0h */  0x02, 0xFF, // <UNKNOWN DESCRIPTOR>\n"
      "/*    2h */  0x09, 0x02, 0x20, 0x00, // (incomplete)\n"
      "// hex: 1 descriptor, 0 configurations, 0 interfaces, 6 bytes, lengths bad: past the end "
      "at offset 2h, 4 bytes left\n");
  EXPECT_EQ(ReadText(outcome.out), ReadText(run));
  EXPECT_THAT(RunProgram({"--code", "-"}, "00").out,
              StartsWith("\n// standard input:\n/*    0h */  0x00, // (incomplete)\n"));
}

TEST_F(RunTest, ReportsThatStandardOutputCannotBeWritten) {
  std::string const name = Write("device.bin", kDevice);
  Stream in = OpenStream(name, "rb");
  for (std::string const argument : {"-", "--help", "--version", "--fake"}) {
    // A stream that is open for reading cannot be written.
    Stream out = OpenStream(name, "rb");
    Stream err = OpenStream(Path("messages"), "wb");
    EXPECT_EQ(usbdesc::Run({argument}, in.get(), out.get(), err.get()), kExitUnusable) << argument;
    err.reset();
    std::string const messages = standalone::ReadFileBytes(Path("messages"));
    EXPECT_THAT(messages, StartsWith("usbdesc: standard output cannot be written")) << argument;
    EXPECT_EQ(std::count(messages.begin(), messages.end(), '\n'), 1) << argument;
  }
}

TEST_F(RunTest, WritesUsageErrorsAsOneLine) {
  Outcome const outcome = RunProgram({});
  EXPECT_EQ(outcome.err,
            "usbdesc: no input: give files, - for standard input, or --fake (see --help)\n");
  EXPECT_EQ(outcome.out, "");
  EXPECT_EQ(outcome.status, kExitUnusable);
  EXPECT_EQ(RunProgram({"--verbosity", "6"}).err, outcome.err);
  EXPECT_EQ(RunProgram({"--a\nb"}).err, "usbdesc: --a\\x0Ab: unknown option (see --help)\n");
}

TEST_F(RunTest, WritesHelpAndVersionToStandardOutput) {
  Outcome const version = RunProgram({"--version", "missing"});
  EXPECT_THAT(version.out, StartsWith("usbdesc "));
  EXPECT_EQ(version.err, "");
  EXPECT_EQ(version.status, kExitGood);
  Outcome const help = RunProgram({"--help"});
  EXPECT_THAT(help.out, HasSubstr("Usage: usbdesc [OPTIONS] [COMMAND]"));
  EXPECT_EQ(help.err, "");
  EXPECT_EQ(help.status, kExitGood);
}

using SuiteOfRun = UsbdescTest;

TEST_F(SuiteOfRun, IsTakenDownAtTheEnd) {
  RunProgram({"--fake"});
  EXPECT_FALSE(UsbHelperCreated());
  EXPECT_TRUE(DebugCapRequiresUsb());
  RunProgram({"--fake", "--log", NameOf(Path("missing") / "log.txt")});
  EXPECT_FALSE(UsbHelperCreated());
  auto const sink = std::make_shared<standalone::RecordingSink>();
  standalone::AddLogSink(sink);
  RunProgram({"--version"});
  EXPECT_THAT(sink->Calls(), testing::IsEmpty());
  standalone::RemoveLogSink(sink);
}

TEST_F(SuiteOfRun, GetsTheSameLinesForListingAndCode) {
  for (bool const asCode : {false, true}) {
    auto const sink = std::make_shared<standalone::RecordingSink>();
    standalone::AddLogSink(sink);
    RunProgram({"-", asCode ? "--code" : "--input=text"}, "02 FF");
    auto const line = [](std::string text, std::optional<CFormatInfo> format) {
      standalone::RecordedCall call;
      call.operation = standalone::LogOperation::kDoWrite;
      call.level = LOG_LEVEL_3;
      call.format = format;
      call.stackDepth = 1;
      call.text = std::move(text);
      return call;
    };
    std::vector<standalone::RecordedCall> lines;
    for (standalone::RecordedCall& call : sink->Take()) {
      if (call.operation != standalone::LogOperation::kFlushOutput) {
        lines.push_back(call);
      }
    }
    CFormatInfo const title(TQColor{0, 0, 255, 255}, TEXT_STRENGTH_BOLD);
    EXPECT_THAT(
        lines,
        ElementsAre(
            line("\n// standard input:", title),
            line(asCode ? "/*    0h */  0x02, 0xFF, // <UNKNOWN DESCRIPTOR>"
                        : "   0h:  02 FF : <UNKNOWN DESCRIPTOR>",
                 std::nullopt),
            line("// hex: 1 descriptor, 0 configurations, 0 interfaces, 2 bytes, lengths good",
                 std::nullopt)));
  }
}

}  // namespace
}  // namespace usb_support::usbdesc
