#include <standalone_suite/suite_runtime/log.h>

#include <atomic>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include <gmock/gmock.h>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using usb_support::standalone::AddLogSink;
using usb_support::standalone::LogCall;
using usb_support::standalone::LogSink;
using usb_support::standalone::RecordedCall;
using usb_support::standalone::RecordingSink;
using usb_support::standalone::RemoveAllLogSinks;
using usb_support::standalone::RemoveLogSink;

// Handles a call as the test demands.
class FunctionSink : public LogSink {
 public:
  explicit FunctionSink(std::function<void(LogCall const&)> take) : take_(std::move(take)) {}

  void Take(LogCall const& call) override { take_(call); }

 private:
  std::function<void(LogCall const&)> take_;
};

std::shared_ptr<LogSink> MakeSink(std::function<void(LogCall const&)> take) {
  return std::make_shared<FunctionSink>(std::move(take));
}

void WriteText(std::string const& text) {
  CAppState::Log().DoWritePrintOnly(0, text.c_str());
}

std::vector<std::string> Texts(RecordingSink const& sink) {
  std::vector<std::string> texts;
  for (RecordedCall const& call : sink.Calls()) {
    texts.push_back(call.text);
  }
  return texts;
}

class Log : public testing::Test {
 protected:
  Log() { RemoveAllLogSinks(); }
  ~Log() override { RemoveAllLogSinks(); }

  std::shared_ptr<RecordingSink> sink_ = std::make_shared<RecordingSink>();
};

TEST_F(Log, GoesNowhereWithoutASink) {
  WriteText("unheard");
  FlushOutput(true);
  AddLogSink(sink_);
  EXPECT_THAT(sink_->Calls(), IsEmpty());
}

TEST_F(Log, GoesToEverySinkInOrder) {
  std::vector<std::string> taken;
  AddLogSink(
      MakeSink([&](LogCall const& call) { taken.push_back("1 " + std::string(call.text)); }));
  AddLogSink(
      MakeSink([&](LogCall const& call) { taken.push_back("2 " + std::string(call.text)); }));
  WriteText("a");
  WriteText("b");
  EXPECT_THAT(taken, ElementsAre("1 a", "2 a", "1 b", "2 b"));
}

TEST_F(Log, HandsOverTheCallersText) {
  char const* text = "text";
  CFormatInfo const format({1, 2, 3, 4}, TEXT_STRENGTH_NORMAL);
  bool same = false;
  AddLogSink(MakeSink([&](LogCall const& call) {
    same = call.text.data() == text && call.text.size() == 4 && call.format == &format;
  }));
  CAppState::Log().DoWrite(LogTypeOf(TEST_STATUS_PLAIN), LOG_LEVEL_3, &format, text);
  EXPECT_TRUE(same);
}

TEST_F(Log, RefusesANullSink) {
  EXPECT_THROW(AddLogSink(nullptr), std::invalid_argument);
  WriteText("a");
}

TEST_F(Log, RemovesOneSink) {
  auto const other = std::make_shared<RecordingSink>();
  AddLogSink(sink_);
  AddLogSink(other);
  RemoveLogSink(sink_);
  RemoveLogSink(sink_);
  RemoveLogSink(nullptr);
  WriteText("a");
  EXPECT_THAT(Texts(*sink_), IsEmpty());
  EXPECT_THAT(Texts(*other), ElementsAre("a"));
}

TEST_F(Log, SharesASinkWhileItIsAdded) {
  std::weak_ptr<RecordingSink> const first = sink_;
  AddLogSink(std::move(sink_));
  EXPECT_FALSE(first.expired());
  RemoveLogSink(first.lock());
  EXPECT_TRUE(first.expired());

  auto second = std::make_shared<RecordingSink>();
  std::weak_ptr<RecordingSink> const watch = second;
  AddLogSink(std::move(second));
  RemoveAllLogSinks();
  EXPECT_TRUE(watch.expired());
}

// Writes a line in its destructor.
class LastWordsSink : public LogSink {
 public:
  ~LastWordsSink() override { WriteText("last words"); }
  void Take(LogCall const&) override {}
};

TEST_F(Log, LetsARemovedSinkLog) {
  AddLogSink(sink_);
  auto last = std::make_shared<LastWordsSink>();
  std::weak_ptr<LastWordsSink> const watch = last;
  AddLogSink(std::move(last));
  RemoveLogSink(watch.lock());
  EXPECT_THAT(Texts(*sink_), ElementsAre("last words"));

  AddLogSink(std::make_shared<LastWordsSink>());
  RemoveAllLogSinks();
  EXPECT_THAT(Texts(*sink_), ElementsAre("last words"));
}

TEST_F(Log, PassesASinksExceptionToTheWriter) {
  AddLogSink(MakeSink([](LogCall const&) { throw std::runtime_error("the disk is full"); }));
  try {
    WriteText("a");
    FAIL() << "Nothing was raised.";
  } catch (std::runtime_error const& error) {
    EXPECT_STREQ(error.what(), "the disk is full");
  }
  EXPECT_THROW(FlushOutput(true), std::runtime_error);
}

TEST_F(Log, GivesTheCallToTheOtherSinks) {
  AddLogSink(MakeSink([](LogCall const&) { throw std::runtime_error("first"); }));
  AddLogSink(MakeSink([](LogCall const&) { throw std::logic_error("second"); }));
  AddLogSink(sink_);
  try {
    WriteText("a");
    FAIL() << "Nothing was raised.";
  } catch (std::exception const& error) {
    EXPECT_STREQ(error.what(), "first");
  }
  EXPECT_THAT(Texts(*sink_), ElementsAre("a"));
}

TEST_F(Log, IsSoundAfterASinkHasThrown) {
  bool fails = true;
  AddLogSink(MakeSink([&](LogCall const&) {
    if (fails) {
      throw std::runtime_error("not now");
    }
  }));
  AddLogSink(sink_);
  CAppState::Log().IncrStackDepth();
  EXPECT_THROW(WriteText("a"), std::runtime_error);
  fails = false;
  WriteText("b");
  std::thread other([] { WriteText("c"); });
  other.join();
  EXPECT_THAT(Texts(*sink_), ElementsAre("a", "b", "c"));
  EXPECT_EQ(sink_->Calls()[0].stackDepth, 1U);
  EXPECT_EQ(sink_->Calls()[1].stackDepth, 0U);
}

TEST_F(Log, RefusesASinkThatComesBack) {
  std::shared_ptr<LogSink> const other = sink_;
  std::vector<std::function<void()>> const comeBacks = {
      [] { WriteText("again"); },    [] { FlushOutput(false); },  [&] { AddLogSink(other); },
      [&] { RemoveLogSink(other); }, [] { RemoveAllLogSinks(); },
  };
  for (auto const& comeBack : comeBacks) {
    RemoveAllLogSinks();
    AddLogSink(MakeSink([&](LogCall const&) { comeBack(); }));
    EXPECT_THROW(WriteText("a"), std::logic_error);
  }
  RemoveAllLogSinks();
  AddLogSink(sink_);
  WriteText("b");
  EXPECT_THAT(Texts(*sink_), ElementsAre("b"));
}

TEST_F(Log, LosesNoCallOfSeveralThreads) {
  constexpr int kThreads = 4;
  constexpr int kLines = 500;
  std::atomic<int> inside{0};
  std::atomic<bool> overlapped{false};
  AddLogSink(MakeSink([&](LogCall const&) {
    if (inside.fetch_add(1) != 0) {
      overlapped = true;
    }
    std::this_thread::yield();
    inside.fetch_sub(1);
  }));
  AddLogSink(sink_);

  std::vector<std::thread> threads;
  threads.reserve(kThreads);
  for (int thread = 0; thread < kThreads; ++thread) {
    threads.emplace_back([thread] {
      for (int line = 0; line < kLines; ++line) {
        for (int i = 0; i < line % 3; ++i) {
          CAppState::Log().IncrStackDepth();
        }
        CAppState::Log().DoWritePrintOnly(thread, std::to_string(line).c_str());
      }
    });
  }
  for (std::thread& thread : threads) {
    thread.join();
  }

  EXPECT_FALSE(overlapped);
  std::vector<RecordedCall> const calls = sink_->Calls();
  EXPECT_EQ(calls.size(), std::size_t{kThreads} * kLines);
  std::vector<int> nextLine(kThreads, 0);
  for (RecordedCall const& call : calls) {
    int& line = nextLine.at(static_cast<std::size_t>(call.channel));
    EXPECT_EQ(call.text, std::to_string(line));
    EXPECT_EQ(call.stackDepth, static_cast<unsigned>(line % 3));
    ++line;
  }
  EXPECT_THAT(nextLine, testing::Each(kLines));
}

TEST_F(Log, LetsSinksComeAndGoWhileOthersWrite) {
  std::atomic<bool> done{false};
  AddLogSink(sink_);
  std::thread writer([&] {
    for (int line = 0; line < 1000; ++line) {
      WriteText("a");
    }
    done = true;
  });
  while (!done) {
    auto const passing = std::make_shared<RecordingSink>();
    AddLogSink(passing);
    RemoveLogSink(passing);
    std::size_t const taken = passing->Calls().size();
    EXPECT_EQ(passing->Calls().size(), taken);
  }
  writer.join();
  EXPECT_EQ(sink_->Calls().size(), 1000U);
}

// Reports its destruction on stderr.
class TellingSink : public LogSink {
 public:
  ~TellingSink() override { std::fputs("the sink ends; ", stderr); }
  void Take(LogCall const&) override {}
};

// Logs in its destructor.
class LateWriter {
 public:
  LateWriter() = default;
  LateWriter(LateWriter const&) = delete;
  LateWriter& operator=(LateWriter const&) = delete;
  ~LateWriter() {
    WriteText("late");
    FlushOutput(true);
    std::fputs("a later writer ends", stderr);
  }
};

void ExitWithASink() {
  RemoveAllLogSinks();
  static LateWriter const writer;
  AddLogSink(std::make_shared<TellingSink>());
  std::exit(0);
}

TEST(LogDeathTest, EndsItsSinksAtExitAndStaysUsable) {
  testing::FLAGS_gtest_death_test_style = "threadsafe";
  EXPECT_EXIT(ExitWithASink(), testing::ExitedWithCode(0),
              testing::AllOf(HasSubstr("the sink ends"), HasSubstr("a later writer ends")));
}

}  // namespace
