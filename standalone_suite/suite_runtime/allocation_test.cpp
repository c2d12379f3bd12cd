// Operations that do not allocate.
#include <tests/support/allocation_counter.h>

#if defined(USB_SUPPORT_TEST_COUNTS_ALLOCATIONS)

#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include <standalone_suite/suite_runtime/log.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/simple_buffer.h>

namespace {

using usb_support::standalone::AddLogSink;
using usb_support::standalone::LogCall;
using usb_support::standalone::LogSink;
using usb_support::standalone::RemoveAllLogSinks;
using usb_support::testing_support::AllocationsOf;

class NullSink : public LogSink {
 public:
  void Take(LogCall const&) override {}
};

void WriteEverything() {
  CFormatInfo const format({1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  TQLogger& log = CAppState::Log();
  log.IncrStackDepth();
  log.DoWrite(LogTypeOf(TEST_STATUS_FAILURE), log.GetDefaultLogVerbosity(TEST_STATUS_FAILURE),
              &format, "a line that is longer than what a string holds inside itself");
  log.DoWritePrintOnly(0, "a piece that is longer than what a string holds inside itself");
  log.DoWritePrintLnOnly(0, "a piece that is longer than what a string holds inside itself");
  FlushOutput(true);
}

TEST(Allocation, IsCounted) {
  EXPECT_EQ(AllocationsOf([] { CSimpleBuffer().GetBuffer(1000); }), 1U);
}

TEST(Allocation, IsNoneWhenNobodyListensToTheLog) {
  RemoveAllLogSinks();
  EXPECT_EQ(AllocationsOf(WriteEverything), 0U);
}

TEST(Allocation, IsNoneWhenASinkDoesNothing) {
  AddLogSink(std::make_shared<NullSink>());
  EXPECT_EQ(AllocationsOf(WriteEverything), 0U);
  RemoveAllLogSinks();
}

TEST(Allocation, IsOneAtMostForBytesAsText) {
  std::vector<unsigned char> const bytes(5000, 0xAB);
  std::string text;
  auto const render = [&] { TQHelper::BytesToString(text, bytes.data(), bytes.size(), false); };
  EXPECT_EQ(AllocationsOf(render), 1U);
  EXPECT_EQ(AllocationsOf(render), 0U);
  auto const renderCode = [&] { TQHelper::BytesToCode(text, bytes.data(), bytes.size(), false); };
  EXPECT_EQ(AllocationsOf(renderCode), 1U);
  EXPECT_EQ(AllocationsOf(renderCode), 0U);
  EXPECT_EQ(AllocationsOf(render), 0U);
}

TEST(Allocation, IsNoneForAnotherFill) {
  CSimpleBuffer source;
  source.GetBuffer(1000);
  CSimpleBuffer target;
  target.GetBuffer(1000);
  EXPECT_EQ(AllocationsOf([&] {
              source.GetBuffer(500);
              source.GetBuffer(1000);
              target = source;
            }),
            0U);
}

TEST(Allocation, IsNoneForReadingSettings) {
  bool flag = false;
  unsigned long long number = 0;
  EXPECT_EQ(AllocationsOf([&] {
              CAppState::AppSettings().GetAppSetting(
                  "a key that is longer than what a string holds inside itself", flag,
                  SCOPE_DEFAULT);
              CAppState::AppSettings().GetAppSetting(
                  "a key that is longer than what a string holds inside itself", number,
                  SCOPE_DEFAULT, 10);
            }),
            0U);
}

}  // namespace

#endif
