// The destination of the log before the program has chosen one. Each test runs in a separate
// process, because the choice applies to the rest of a process.
#include <cstdio>
#include <cstdlib>
#include <memory>

#include <gtest/gtest.h>

#include <standalone_suite/suite_runtime/log.h>
#include <standalone_suite/suite_runtime/log_sinks.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace usb_support::standalone {
namespace {

[[noreturn]] void WriteAndExit() {
  CAppState::Log().DoWrite(LOG_TYPE{}, LOG_LEVEL_1, nullptr, "a line");
  CAppState::Log().DoWrite(LOG_TYPE{}, LOG_LEVEL_6, nullptr, "a line beyond the verbosity");
  FlushOutput(true);
  std::_Exit(0);
}

class DefaultSinkDeathTest : public testing::Test {
 protected:
  DefaultSinkDeathTest() { GTEST_FLAG_SET(death_test_style, "threadsafe"); }
};

TEST_F(DefaultSinkDeathTest, IsStandardErrorUntilTheProgramChooses) {
  EXPECT_EXIT(WriteAndExit(), testing::ExitedWithCode(0), "^a line\r?\n$");
}

TEST_F(DefaultSinkDeathTest, IsGoneOnceASinkWasAdded) {
  EXPECT_EXIT(
      {
        AddLogSink(std::make_shared<RecordingSink>());
        WriteAndExit();
      },
      testing::ExitedWithCode(0), "^$");
}

TEST_F(DefaultSinkDeathTest, IsGoneOnceAllSinksWereRemoved) {
  EXPECT_EXIT(
      {
        RemoveAllLogSinks();
        WriteAndExit();
      },
      testing::ExitedWithCode(0), "^$");
}

}  // namespace
}  // namespace usb_support::standalone
