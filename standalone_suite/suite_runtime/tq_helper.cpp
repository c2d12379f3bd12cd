#include <usb_support/suite_interfaces/tq_helper.h>

#include <cstring>
#include <stdexcept>

#include <standalone_suite/suite_runtime/call_recorder.h>
#include <standalone_suite/suite_runtime/hex_digits.h>

namespace {

// Sets `text` to kPrefix and two hexadecimal digits for each byte, with kSeparator between them.
// The lengths of both are known at compile time, so that no byte costs a call.
template <std::size_t kPrefixSize, std::size_t kSeparatorSize>
void RenderBytes(std::string& text, unsigned char const* bytes, unsigned long long count, bool flag,
                 char const (&prefix)[kPrefixSize], char const (&separator)[kSeparatorSize]) {
  if (flag) {
    throw std::invalid_argument(
        "What the flag of BytesToString and BytesToCode asks for is known "
        "to the suite alone; the stand-in takes false.");
  }
  constexpr std::size_t kPrefix = kPrefixSize - 1;
  constexpr std::size_t kSeparator = kSeparatorSize - 1;
  constexpr std::size_t kStride = kSeparator + kPrefix + 2;
  text.clear();
  if (count == 0) {
    return;
  }
  if (count > text.max_size() / kStride) {
    throw std::length_error("There are too many bytes to be shown as one text.");
  }
  text.resize(static_cast<std::size_t>(count) * kStride - kSeparator);
  char* out = text.data();
  for (unsigned long long i = 0; i < count; ++i) {
    if (i != 0) {
      std::memcpy(out, separator, kSeparator);
      out += kSeparator;
    }
    std::memcpy(out, prefix, kPrefix);
    out += kPrefix;
    *out++ = usb_support::standalone::kHexDigits[bytes[i] >> 4];
    *out++ = usb_support::standalone::kHexDigits[bytes[i] & 0xF];
  }
}

}  // namespace

TQHelper::TQHelper() = default;
TQHelper::~TQHelper() = default;

void TQHelper::EndFunction() {
}

bool TQHelper::ValidatePointers(bool, TEST_STATUS) const {
  return true;
}

bool TQHelper::StopTest(TEST_STATUS status) const {
  usb_support::standalone::CallRecorder::RecordStopTest(status);
  return usb_support::standalone::StopTestAnswer();
}

void TQHelper::BytesToString(std::string& text, unsigned char const* bytes,
                             unsigned long long count, bool flag) {
  RenderBytes(text, bytes, count, flag, "", " ");
}

void TQHelper::BytesToCode(std::string& text, unsigned char const* bytes, unsigned long long count,
                           bool flag) {
  RenderBytes(text, bytes, count, flag, "0x", ", ");
}

std::string TQHelper::ValidationFailMsg(TQSuiteRuntimeState*) {
  return "The test helper does not have what the test needs.";
}
