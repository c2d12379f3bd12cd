#include <usb_support/suite_interfaces/tq_logger.h>

#include <cstdint>
#include <memory>
#include <thread>
#include <vector>

#include <gmock/gmock.h>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace {

using testing::ElementsAre;
using usb_support::standalone::AddLogSink;
using usb_support::standalone::LogOperation;
using usb_support::standalone::RecordedCall;
using usb_support::standalone::RecordingSink;
using usb_support::standalone::RemoveAllLogSinks;

constexpr TEST_STATUS kDistinctStatuses[] = {TEST_STATUS_PLAIN, TEST_STATUS_VENDOR_LIST,
                                             TEST_STATUS_INFORMATION, TEST_STATUS_INTERNAL_ERROR,
                                             TEST_STATUS_FAILURE};

TEST(TqLogger, DefaultsFollowTheGravestBit) {
  struct Row {
    std::uint32_t status;
    ELogLevel level;
    TEST_STATUS looksLike;
  };
  TQLogger const& log = CAppState::Log();
  for (Row const& row : {Row{0x40000000, LOG_LEVEL_0, TEST_STATUS_INTERNAL_ERROR},
                         Row{0x80000000, LOG_LEVEL_1, TEST_STATUS_FAILURE},
                         Row{0x08000000, LOG_LEVEL_2, TEST_STATUS_VENDOR_LIST},
                         Row{0x00000000, LOG_LEVEL_3, TEST_STATUS_PLAIN},
                         Row{0x20000000, LOG_LEVEL_5, TEST_STATUS_INFORMATION},
                         Row{0xFFFFFFFF, LOG_LEVEL_0, TEST_STATUS_INTERNAL_ERROR},
                         Row{0xC8000000, LOG_LEVEL_0, TEST_STATUS_INTERNAL_ERROR},
                         Row{0x60000000, LOG_LEVEL_0, TEST_STATUS_INTERNAL_ERROR},
                         Row{0xBFFFFFFF, LOG_LEVEL_1, TEST_STATUS_FAILURE},
                         Row{0x80000001, LOG_LEVEL_1, TEST_STATUS_FAILURE},
                         Row{0x28000000, LOG_LEVEL_2, TEST_STATUS_VENDOR_LIST},
                         Row{0x2FFFFFFF, LOG_LEVEL_2, TEST_STATUS_VENDOR_LIST},
                         Row{0x20000001, LOG_LEVEL_5, TEST_STATUS_INFORMATION},
                         Row{0x37FFFFFF, LOG_LEVEL_5, TEST_STATUS_INFORMATION},
                         Row{0x17FFFFFF, LOG_LEVEL_3, TEST_STATUS_PLAIN},
                         Row{0x00000001, LOG_LEVEL_3, TEST_STATUS_PLAIN}}) {
    auto const status = static_cast<TEST_STATUS>(row.status);
    EXPECT_EQ(log.GetDefaultLogVerbosity(status), row.level) << std::hex << row.status;
    EXPECT_TRUE(log.GetDefaultFormat(status) == log.GetDefaultFormat(row.looksLike));
  }
}

TEST(TqLogger, EachStatusHasItsLook) {
  TQLogger const& log = CAppState::Log();
  for (TEST_STATUS const one : kDistinctStatuses) {
    for (TEST_STATUS const two : kDistinctStatuses) {
      EXPECT_EQ(log.GetDefaultFormat(one) == log.GetDefaultFormat(two), one == two);
    }
  }
}

class RecordedLog : public testing::Test {
 protected:
  RecordedLog() {
    RemoveAllLogSinks();
    // Uses up a count that an earlier test may have left on this thread.
    CAppState::Log().DoWrite(LogTypeOf(TEST_STATUS_PLAIN), LOG_LEVEL_0, nullptr, "");
    AddLogSink(sink_);
  }
  ~RecordedLog() override { RemoveAllLogSinks(); }

  std::vector<unsigned> StackDepths() const {
    std::vector<unsigned> depths;
    for (RecordedCall const& call : sink_->Calls()) {
      depths.push_back(call.stackDepth);
    }
    return depths;
  }

  TQLogger& log_ = CAppState::Log();
  std::shared_ptr<RecordingSink> sink_ = std::make_shared<RecordingSink>();
};

TEST_F(RecordedLog, GetsALineAsItWasWritten) {
  CFormatInfo const format({1, 2, 3, 4}, TEXT_STRENGTH_BOLD);
  log_.DoWrite(LogTypeOf(TEST_STATUS_FAILURE), LOG_LEVEL_6, &format, "100%s\n\"text\"");
  log_.DoWrite(static_cast<LOG_TYPE>(0xFFFFFFFF), static_cast<ELogLevel>(255), nullptr, "");
  EXPECT_THAT(sink_->Calls(), ElementsAre(RecordedCall{.operation = LogOperation::kDoWrite,
                                                       .type = LogTypeOf(TEST_STATUS_FAILURE),
                                                       .level = LOG_LEVEL_6,
                                                       .format = format,
                                                       .text = "100%s\n\"text\""},
                                          RecordedCall{.operation = LogOperation::kDoWrite,
                                                       .type = static_cast<LOG_TYPE>(0xFFFFFFFF),
                                                       .level = static_cast<ELogLevel>(255),
                                                       .format = std::nullopt,
                                                       .text = ""}));
}

TEST_F(RecordedLog, GetsAPieceAsItWasWritten) {
  log_.DoWritePrintOnly(7, ". ");
  log_.DoWritePrintLnOnly(-1, "10 transfers");
  EXPECT_THAT(
      sink_->Calls(),
      ElementsAre(
          RecordedCall{.operation = LogOperation::kDoWritePrintOnly, .text = ". ", .channel = 7},
          RecordedCall{.operation = LogOperation::kDoWritePrintLnOnly,
                       .text = "10 transfers",
                       .channel = -1}));
}

TEST_F(RecordedLog, GetsAFlushAsItWasAskedFor) {
  FlushOutput(true);
  FlushOutput(false);
  EXPECT_THAT(sink_->Calls(),
              ElementsAre(RecordedCall{.operation = LogOperation::kFlushOutput, .wait = true},
                          RecordedCall{.operation = LogOperation::kFlushOutput, .wait = false}));
}

TEST_F(RecordedLog, GetsANullTextAsTheEmptyText) {
  log_.DoWrite(LogTypeOf(TEST_STATUS_PLAIN), LOG_LEVEL_3, nullptr, nullptr);
  log_.DoWritePrintOnly(0, nullptr);
  log_.DoWritePrintLnOnly(0, nullptr);
  ASSERT_EQ(sink_->Calls().size(), 3U);
  for (RecordedCall const& call : sink_->Calls()) {
    EXPECT_EQ(call.text, "");
  }
}

TEST_F(RecordedLog, CountsTheStackDepth) {
  log_.IncrStackDepth();
  log_.DoWrite(LogTypeOf(TEST_STATUS_PLAIN), LOG_LEVEL_3, nullptr, "one");
  log_.DoWrite(LogTypeOf(TEST_STATUS_PLAIN), LOG_LEVEL_3, nullptr, "none");
  log_.IncrStackDepth();
  log_.IncrStackDepth();
  log_.DoWritePrintOnly(0, "two");
  log_.IncrStackDepth();
  log_.IncrStackDepth();
  log_.IncrStackDepth();
  log_.DoWritePrintLnOnly(0, "three");
  log_.DoWritePrintLnOnly(0, "none");
  EXPECT_THAT(StackDepths(), ElementsAre(1U, 0U, 2U, 3U, 0U));
}

TEST_F(RecordedLog, LeavesTheStackDepthAloneInAFlush) {
  log_.IncrStackDepth();
  FlushOutput(false);
  log_.DoWritePrintOnly(0, "one");
  EXPECT_THAT(StackDepths(), ElementsAre(0U, 1U));
}

TEST_F(RecordedLog, TakesTheStackDepthWithoutASinkToo) {
  RemoveAllLogSinks();
  log_.IncrStackDepth();
  log_.DoWritePrintOnly(0, "unheard");
  AddLogSink(sink_);
  log_.DoWritePrintOnly(0, "none");
  EXPECT_THAT(StackDepths(), ElementsAre(0U));
}

TEST_F(RecordedLog, CountsTheDepthOfEachThread) {
  log_.IncrStackDepth();
  std::thread other([this] {
    log_.IncrStackDepth();
    log_.IncrStackDepth();
    log_.DoWritePrintOnly(0, "other");
  });
  other.join();
  log_.DoWritePrintOnly(0, "own");
  EXPECT_THAT(StackDepths(), ElementsAre(2U, 1U));
}

}  // namespace
