#include <usb_support/suite_interfaces/tq_logger.h>

#include <utility>

#include <standalone_suite/suite_runtime/log_dispatch.h>

namespace {

using usb_support::standalone::HandToSinks;
using usb_support::standalone::LogCall;
using usb_support::standalone::LogOperation;

struct StatusDefaults {
  TEST_STATUS bit;
  ELogLevel level;
  CFormatInfo format;
};

constexpr StatusDefaults kPlainDefaults = {TEST_STATUS_PLAIN, LOG_LEVEL_3,
                                           CFormatInfo({192, 192, 192, 255}, TEXT_STRENGTH_NORMAL)};

// The most severe bit first: the first one that a status has decides.
constexpr StatusDefaults kStatusDefaults[] = {
    {TEST_STATUS_INTERNAL_ERROR, LOG_LEVEL_0, CFormatInfo({255, 0, 255, 255}, TEXT_STRENGTH_BOLD)},
    {TEST_STATUS_FAILURE, LOG_LEVEL_1, CFormatInfo({255, 0, 0, 255}, TEXT_STRENGTH_BOLD)},
    {TEST_STATUS_VENDOR_LIST, LOG_LEVEL_2, CFormatInfo({255, 191, 0, 255}, TEXT_STRENGTH_NORMAL)},
    {TEST_STATUS_INFORMATION, LOG_LEVEL_5, CFormatInfo({0, 160, 208, 255}, TEXT_STRENGTH_NORMAL)},
};

StatusDefaults const& DefaultsOf(TEST_STATUS status) {
  for (StatusDefaults const& defaults : kStatusDefaults) {
    if ((status & defaults.bit) != 0) {
      return defaults;
    }
  }
  return kPlainDefaults;
}

thread_local unsigned stackDepth = 0;

LogCall Write(LogOperation operation, char const* text) {
  LogCall call;
  call.operation = operation;
  call.text = text == nullptr ? std::string_view() : text;
  call.stackDepth = std::exchange(stackDepth, 0U);
  return call;
}

}  // namespace

void TQLogger::IncrStackDepth() {
  ++stackDepth;
}

ELogLevel TQLogger::GetDefaultLogVerbosity(TEST_STATUS status) const {
  return DefaultsOf(status).level;
}

CFormatInfo TQLogger::GetDefaultFormat(TEST_STATUS status) const {
  return DefaultsOf(status).format;
}

void TQLogger::DoWrite(LOG_TYPE type, ELogLevel level, CFormatInfo const* format,
                       char const* text) {
  LogCall call = Write(LogOperation::kDoWrite, text);
  call.type = type;
  call.level = level;
  call.format = format;
  HandToSinks(call);
}

void TQLogger::DoWritePrintOnly(int channel, char const* text) {
  LogCall call = Write(LogOperation::kDoWritePrintOnly, text);
  call.channel = channel;
  HandToSinks(call);
}

void TQLogger::DoWritePrintLnOnly(int channel, char const* text) {
  LogCall call = Write(LogOperation::kDoWritePrintLnOnly, text);
  call.channel = channel;
  HandToSinks(call);
}

void FlushOutput(bool wait) {
  LogCall call;
  call.operation = LogOperation::kFlushOutput;
  call.wait = wait;
  HandToSinks(call);
}
