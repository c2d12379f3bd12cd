#include <standalone_suite/suite_runtime/log_sinks.h>

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <sstream>
#include <stdexcept>
#include <string>

#include <gmock/gmock.h>

#include <standalone_suite/platform/scoped_environment_variable.h>
#include <standalone_suite/test_support/temp_folder.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;
using usb_support::standalone::AddLogSink;
using usb_support::standalone::ColourPolicy;
using usb_support::standalone::ConsoleSink;
using usb_support::standalone::FileSink;
using usb_support::standalone::LogOperation;
using usb_support::standalone::ReadFileBytes;
using usb_support::standalone::RecordedCall;
using usb_support::standalone::RecordingSink;
using usb_support::standalone::RemoveAllLogSinks;
using usb_support::standalone::ScopedEnvironmentVariable;
using usb_support::standalone::SetLogVerbosity;
using usb_support::standalone::TempFolder;
using usb_support::standalone::Utf8;

struct CloseFile {
  void operator()(std::FILE* file) const { std::fclose(file); }
};

using OpenFile = std::unique_ptr<std::FILE, CloseFile>;

class LogSinks : public testing::Test {
 protected:
  LogSinks() {
    RemoveAllLogSinks();
    SetLogVerbosity(LOG_LEVEL_3);
  }
  ~LogSinks() override {
    RemoveAllLogSinks();
    SetLogVerbosity(LOG_LEVEL_3);
  }

  OpenFile Open(char const* mode) const {
    OpenFile file(std::fopen(path_.string().c_str(), mode));
    if (file == nullptr) {
      throw std::runtime_error("A test file cannot be opened.");
    }
    return file;
  }

  void WriteLine(ELogLevel level, char const* text) {
    log_.DoWrite(LogTypeOf(TEST_STATUS_PLAIN), level, nullptr, text);
  }

  TQLogger& log_ = CAppState::Log();
  TempFolder folder_;
  std::filesystem::path path_ = folder_.Path() / "log.txt";
};

class ConsoleSinkTest : public LogSinks {
 protected:
  void Use(ColourPolicy policy) {
    AddLogSink(std::make_shared<ConsoleSink>(stream_.get(), policy));
  }

  std::string Shown() {
    RemoveAllLogSinks();
    stream_.reset();
    return ReadFileBytes(path_);
  }

  OpenFile stream_ = Open("wb");
};

TEST_F(ConsoleSinkTest, ShowsLinesUpToTheVerbosity) {
  Use(ColourPolicy::kNever);
  WriteLine(LOG_LEVEL_0, "zero");
  WriteLine(LOG_LEVEL_3, "three");
  WriteLine(LOG_LEVEL_4, "four");
  SetLogVerbosity(LOG_LEVEL_4);
  WriteLine(LOG_LEVEL_4, "four again");
  WriteLine(static_cast<ELogLevel>(255), "all");
  SetLogVerbosity(LOG_LEVEL_0);
  WriteLine(LOG_LEVEL_1, "one");
  EXPECT_EQ(Shown(), "zero\nthree\nfour again\n");
}

TEST_F(ConsoleSinkTest, ShowsPiecesAsTheyAreAtAnyVerbosity) {
  SetLogVerbosity(LOG_LEVEL_0);
  Use(ColourPolicy::kNever);
  log_.DoWritePrintOnly(5, ". ");
  log_.DoWritePrintOnly(0, ". ");
  log_.DoWritePrintLnOnly(0, " \n2 transfers");
  log_.DoWritePrintOnly(0, "");
  log_.DoWritePrintLnOnly(0, "");
  EXPECT_EQ(Shown(), ". .  \n2 transfers\n\n");
}

TEST_F(ConsoleSinkTest, ShowsWhatATerminalWouldObey) {
  Use(ColourPolicy::kNever);
  WriteLine(LOG_LEVEL_3, "100%s %n\ttwo\nlines \xE2\x82\xAC");
  WriteLine(LOG_LEVEL_3, "vendor \x1b[2J\xC2\x9B\r\xE2\x80\xAE");
  log_.DoWritePrintOnly(0, "\x1b]0;title\a");
  log_.DoWritePrintLnOnly(0, "\x7F");
  EXPECT_EQ(Shown(),
            "100%s %n\ttwo\nlines \xE2\x82\xAC\nvendor \\x1B[2J\\u009B\\x0D\\u202E\n"
            "\\x1B]0;title\\x07\\x7F\n");
}

TEST_F(ConsoleSinkTest, FlushesTheStream) {
  Use(ColourPolicy::kNever);
  WriteLine(LOG_LEVEL_3, "line");
  FlushOutput(true);
  EXPECT_EQ(ReadFileBytes(path_), "line\n");
  WriteLine(LOG_LEVEL_3, "next");
  FlushOutput(false);
  EXPECT_EQ(ReadFileBytes(path_), "line\nnext\n");
}

TEST_F(ConsoleSinkTest, ColoursLines) {
  ScopedEnvironmentVariable const noColor("NO_COLOR", "1");
  Use(ColourPolicy::kAlways);
  CFormatInfo const bold({1, 22, 255, 0}, TEXT_STRENGTH_BOLD);
  CFormatInfo const normal({0, 128, 300, 255}, TEXT_STRENGTH_NORMAL);
  CFormatInfo const plain = log_.GetDefaultFormat(TEST_STATUS_PLAIN);
  TQColor const color = log_.GetDefaultFormat(TEST_STATUS_FAILURE).Color();
  LOG_TYPE const failure = LogTypeOf(TEST_STATUS_FAILURE);
  log_.DoWrite(LogTypeOf(TEST_STATUS_PLAIN), LOG_LEVEL_0, &bold, "bold\x1b[0m");
  log_.DoWrite(failure, LOG_LEVEL_0, &normal, "normal");
  log_.DoWrite(failure, LOG_LEVEL_0, nullptr, "failure");
  // Plain lines and pieces have no colour.
  WriteLine(LOG_LEVEL_3, "plain");
  log_.DoWrite(failure, LOG_LEVEL_3, &plain, "plain as well");
  log_.DoWritePrintOnly(0, ". ");
  log_.DoWritePrintLnOnly(0, "piece");
  EXPECT_EQ(Shown(),
            "\x1b[1;38;2;1;22;255mbold\\x1B[0m\x1b[0m\n"
            "\x1b[38;2;0;128;255mnormal\x1b[0m\n\x1b[1;38;2;" +
                std::to_string(color.red) + ';' + std::to_string(color.green) + ';' +
                std::to_string(color.blue) + "mfailure\x1b[0m\nplain\nplain as well\n. piece\n");
}

TEST_F(ConsoleSinkTest, ColoursNothingOutsideATerminal) {
  ScopedEnvironmentVariable const noColor("NO_COLOR", std::nullopt);
  Use(ColourPolicy::kAuto);
  log_.DoWrite(LogTypeOf(TEST_STATUS_FAILURE), LOG_LEVEL_0, nullptr, "failure");
  EXPECT_EQ(Shown(), "failure\n");
}

TEST_F(ConsoleSinkTest, ThrowsWhenTheStreamCannotBeWritten) {
  stream_ = Open("rb");
  Use(ColourPolicy::kNever);
  EXPECT_THROW(
      {
        WriteLine(LOG_LEVEL_3, "line");
        FlushOutput(true);
      },
      std::runtime_error);
}

TEST_F(LogSinks, FileHasPlainText) {
  {
    AddLogSink(std::make_shared<FileSink>(path_));
    log_.DoWrite(LogTypeOf(TEST_STATUS_FAILURE), LOG_LEVEL_1, nullptr, "failure \xE2\x82\xAC");
    WriteLine(LOG_LEVEL_4, "four");
    log_.DoWritePrintOnly(0, ". ");
    log_.DoWritePrintLnOnly(0, "100%s");
    RemoveAllLogSinks();
  }
  EXPECT_EQ(ReadFileBytes(path_), "failure \xE2\x82\xAC\n. 100%s\n");
}

TEST_F(LogSinks, FileReplacesTheOneBefore) {
  folder_.Write("log.txt", "an older and longer log");
  AddLogSink(std::make_shared<FileSink>(path_));
  WriteLine(LOG_LEVEL_3, "line");
  RemoveAllLogSinks();
  EXPECT_EQ(ReadFileBytes(path_), "line\n");
}

TEST_F(LogSinks, FileThatCannotBeOpenedIsNamed) {
  for (std::filesystem::path const& file :
       {folder_.Path() / "missing" / "log.txt", folder_.Path()}) {
    try {
      FileSink const sink(file);
      FAIL() << "The file was opened.";
    } catch (std::runtime_error const& error) {
      EXPECT_THAT(error.what(), StartsWith(Utf8(file) + ": the log file cannot be opened"));
    }
  }
}

TEST_F(LogSinks, RecordKeepsCopiesOfItsOwn) {
  auto const sink = std::make_shared<RecordingSink>();
  AddLogSink(sink);
  std::string text = "text";
  std::optional<CFormatInfo> format(CFormatInfo({1, 2, 3, 4}, TEXT_STRENGTH_BOLD));
  log_.DoWrite(LogTypeOf(TEST_STATUS_PLAIN), LOG_LEVEL_6, &*format, text.c_str());
  text = "else";
  format.emplace(TQColor{0, 0, 0, 0}, TEXT_STRENGTH_NORMAL);
  EXPECT_THAT(sink->Calls(),
              ElementsAre(RecordedCall{.level = LOG_LEVEL_6,
                                       .format = CFormatInfo({1, 2, 3, 4}, TEXT_STRENGTH_BOLD),
                                       .text = "text"}));
}

TEST_F(LogSinks, RecordIsCopiedTakenAndCleared) {
  auto const sink = std::make_shared<RecordingSink>();
  AddLogSink(sink);
  log_.DoWritePrintOnly(0, "a");
  EXPECT_EQ(sink->Calls().size(), 1U);
  EXPECT_EQ(sink->Take().size(), 1U);
  EXPECT_THAT(sink->Calls(), IsEmpty());
  EXPECT_THAT(sink->Take(), IsEmpty());
  log_.DoWritePrintOnly(0, "b");
  sink->Clear();
  EXPECT_THAT(sink->Calls(), IsEmpty());
  log_.DoWritePrintOnly(0, "c");
  ASSERT_EQ(sink->Calls().size(), 1U);
  EXPECT_EQ(sink->Calls()[0].text, "c");
}

TEST(RecordedCallEquality, LooksAtEveryMember) {
  CFormatInfo const format({1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  RecordedCall const call{LogOperation::kDoWrite,
                          LogTypeOf(TEST_STATUS_FAILURE),
                          LOG_LEVEL_1,
                          format,
                          "text",
                          2,
                          true,
                          3};
  EXPECT_EQ(call, RecordedCall(call));
  std::function<void(RecordedCall&)> const changes[] = {
      [](auto& other) { other.operation = LogOperation::kFlushOutput; },
      [](auto& other) { other.type = LogTypeOf(TEST_STATUS_PLAIN); },
      [](auto& other) { other.level = LOG_LEVEL_2; },
      [](auto& other) { other.format.reset(); },
      [](auto& other) { other.text = "else"; },
      [](auto& other) { other.channel = 0; },
      [](auto& other) { other.wait = false; },
      [](auto& other) { other.stackDepth = 0; },
  };
  for (auto const& change : changes) {
    RecordedCall other = call;
    change(other);
    EXPECT_FALSE(other == call);
  }
}

std::string Printed(RecordedCall const& call) {
  std::ostringstream out;
  out << call;
  return out.str();
}

TEST(RecordedCallOutput, IsReadable) {
  EXPECT_EQ(Printed({.operation = LogOperation::kDoWrite,
                     .type = LogTypeOf(TEST_STATUS_FAILURE),
                     .level = LOG_LEVEL_1,
                     .text = "text",
                     .stackDepth = 1}),
            "DoWrite(type 0x80000000, level 1, default format, \"text\", stack depth 1)");
  EXPECT_EQ(Printed({.type = static_cast<LOG_TYPE>(0x0123ABCD),
                     .level = static_cast<ELogLevel>(255),
                     .format = CFormatInfo({1, 2, 3, 4}, TEXT_STRENGTH_BOLD)}),
            "DoWrite(type 0x0123ABCD, level 255, format (1 2 3 4, 700), \"\", stack depth 0)");
  EXPECT_EQ(Printed({.operation = LogOperation::kDoWritePrintOnly, .text = ". ", .channel = 7}),
            "DoWritePrintOnly(channel 7, \". \", stack depth 0)");
  EXPECT_EQ(Printed({.operation = LogOperation::kDoWritePrintLnOnly, .channel = -1}),
            "DoWritePrintLnOnly(channel -1, \"\", stack depth 0)");
  EXPECT_EQ(Printed({.operation = LogOperation::kFlushOutput, .wait = true}),
            "FlushOutput(wait true)");
  EXPECT_EQ(Printed({.operation = LogOperation::kFlushOutput}), "FlushOutput(wait false)");
}

}  // namespace
