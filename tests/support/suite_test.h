// The fixture of every test that touches the suite: one recording sink, no settings, no helper, no
// debug capabilities, verbosity 3, before the test and after it.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <standalone_suite/suite_runtime/call_recorder.h>
#include <standalone_suite/suite_runtime/log.h>
#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/fake_device/debug_capabilities.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/exceptions.h>

namespace usb_support::testing_support {

using standalone::LogOperation;
using standalone::RecordedCall;

/// A line (DoWrite) as the library writes it; `format` nothing for the status's default look.
inline RecordedCall Line(TEST_STATUS status, unsigned level, std::string text,
                         std::optional<CFormatInfo> format = {}) {
  RecordedCall call;
  call.operation = LogOperation::kDoWrite;
  call.type = LogTypeOf(status);
  call.level = static_cast<ELogLevel>(level);
  call.format = format;
  call.text = std::move(text);
  return call;
}

/// A piece of output without a line end (DoWritePrintOnly).
inline RecordedCall Print(int channel, std::string text) {
  RecordedCall call;
  call.operation = LogOperation::kDoWritePrintOnly;
  call.channel = channel;
  call.text = std::move(text);
  return call;
}

/// A piece of output with a line end (DoWritePrintLnOnly).
inline RecordedCall PrintLn(int channel, std::string text) {
  RecordedCall call = Print(channel, std::move(text));
  call.operation = LogOperation::kDoWritePrintLnOnly;
  return call;
}

/// FlushOutput.
inline RecordedCall Flush(bool wait) {
  RecordedCall call;
  call.operation = LogOperation::kFlushOutput;
  call.wait = wait;
  return call;
}

/// An address as the log has it: its low 32 bits in sixteen digits.
inline std::string AddressDigits(void const* address) {
  char text[17];
  std::snprintf(text, sizeof(text), "00000000%08X",
                static_cast<unsigned>(reinterpret_cast<std::uintptr_t>(address)));
  return text;
}

/// The line about a range whose first `validLength` bytes are whole descriptors.
inline RecordedCall InvalidRange(CDescriptorRange const& range, std::size_t validLength) {
  return Print(0, "Descriptor Range is not valid.\n  End of last valid descriptor:  0x" +
                      AddressDigits(range.Bytes() + validLength) +
                      ".\n  End of Descriptor Range 0x" +
                      AddressDigits(range.Bytes() + range.Length()) + ".\n");
}

/// A handle that is not one: the address of something that is not an event.
inline void* NoEvent() {
  static char something = 0;
  return &something;
}

class SuiteTest : public testing::Test {
 protected:
  SuiteTest() { Reset(); }
  ~SuiteTest() override { Reset(); }

  /// The calls since the last query, without the stack depths: the value of the depth depends on
  /// the nesting of the library's calls; only that it is incremented is checked here.
  std::vector<RecordedCall> TakeCalls() {
    std::vector<RecordedCall> calls = sink_->Take();
    for (RecordedCall& call : calls) {
      if (call.operation != LogOperation::kFlushOutput) {
        EXPECT_GE(call.stackDepth, 1u) << call;
      }
      call.stackDepth = 0;
    }
    return calls;
  }

  standalone::RecordingSink& Sink() { return *sink_; }

 private:
  void Reset() {
    standalone::RemoveAllLogSinks();
    standalone::ClearSettings();
    standalone::SetLogVerbosity(LOG_LEVEL_3);
    standalone::SetStopTestAnswer(true);
    CAppState::Helper(nullptr);
    CUSBDebugCapabilities::CleanupUsbDebugCapabilities();
    sink_ = std::make_shared<standalone::RecordingSink>();
    standalone::AddLogSink(sink_);
  }

  std::shared_ptr<standalone::RecordingSink> sink_;
};

/// Expects `statement` to throw a TQRunTimeException with this text and status.
#define EXPECT_RUN_TIME_EXCEPTION(statement, message, status) \
  do {                                                        \
    try {                                                     \
      static_cast<void>(statement);                           \
      ADD_FAILURE() << #statement " threw nothing";           \
    } catch (TQRunTimeException const& raised) {              \
      EXPECT_STREQ(raised.what(), message);                   \
      EXPECT_EQ(raised.Status(), status);                     \
    }                                                         \
  } while (false)

}  // namespace usb_support::testing_support
