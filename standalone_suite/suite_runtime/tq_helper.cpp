#include <usb_support/suite_interfaces/tq_helper.h>

#include <algorithm>
#include <cstring>
#include <stdexcept>
#include <string_view>

#include <standalone_suite/suite_runtime/call_recorder.h>

namespace {

// Sets `text` to `prefix` and two hexadecimal digits for each byte, with `separator` between them.
void RenderBytes(std::string& text, unsigned char const* bytes, unsigned long long count,
                 std::string_view prefix, std::string_view separator) {
  constexpr char kDigits[] = "0123456789ABCDEF";
  text.clear();
  if (count == 0) {
    return;
  }
  std::size_t const stride = prefix.size() + 2 + separator.size();
  if (count > text.max_size() / stride) {
    throw std::length_error("There are too many bytes to be shown as one text.");
  }
  text.resize(static_cast<std::size_t>(count) * stride - separator.size());
  char* out = text.data();
  for (unsigned long long i = 0; i < count; ++i) {
    if (i != 0) {
      out = std::copy(separator.begin(), separator.end(), out);
    }
    out = std::copy(prefix.begin(), prefix.end(), out);
    *out++ = kDigits[bytes[i] >> 4];
    *out++ = kDigits[bytes[i] & 0xF];
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
                             unsigned long long count, bool) {
  RenderBytes(text, bytes, count, "", " ");
}

void TQHelper::BytesToCode(std::string& text, unsigned char const* bytes, unsigned long long count,
                           bool) {
  RenderBytes(text, bytes, count, "0x", ", ");
}

std::string TQHelper::ValidationFailMsg(TQSuiteRuntimeState*) {
  return "The test helper does not have what the test needs.";
}
