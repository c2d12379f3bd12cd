#include <usb_support/status/status_text.h>

#include <algorithm>
#include <array>
#include <cstddef>

#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/format_info.h>
#include <usb_support/text/formatting.h>

namespace {

struct StatusText {
  RETURN_CODE code;
  char const* text;
};

constexpr StatusText kFailures[] = {
#define USB_SUPPORT_FAILURE(name, code, text) {name, text},
#include <usb_support/status/failures.inc>
};

// The codes of a group are close together, so each group is a short array of texts.
constexpr std::uint32_t kGroupSize = 0x1000;

// One more than the greatest part that `partOf` gives for any code.
template <typename PartOf>
consteval std::uint32_t SizeFor(PartOf const& partOf) {
  std::uint32_t size = 0;
  for (StatusText const& failure : kFailures) {
    size = std::max(size, partOf(failure.code & 0x00FFFFFFu) + 1);
  }
  return size;
}

constexpr std::uint32_t kGroups = SizeFor([](std::uint32_t key) { return key / kGroupSize; });
constexpr std::uint32_t kCodesPerGroup =
    SizeFor([](std::uint32_t key) { return key % kGroupSize; });

using TextTable = std::array<std::array<char const*, kCodesPerGroup>, kGroups>;

constexpr TextTable kTextTable = [] {
  TextTable table{};
  for (StatusText const& failure : kFailures) {
    std::uint32_t const key = failure.code & 0x00FFFFFFu;
    table.at(key / kGroupSize).at(key % kGroupSize) = failure.text;
  }
  return table;
}();

char const* FailureText(RETURN_CODE code) {
  // Bits 24 to 30 are flags of other layers; they never change the name of a failure.
  std::uint32_t const key = code & 0x00FFFFFFu;
  std::uint32_t const group = key / kGroupSize;
  std::uint32_t const index = key % kGroupSize;
  return group < kGroups && index < kCodesPerGroup ? kTextTable[group][index] : nullptr;
}

}  // namespace

char const* GetStatusDetail(RETURN_CODE code, char const* defaultText) {
  if (!usb_support::Failed(code)) {
    return (code & RC_SUCCESS_WITH_WARNING) != 0 ? "Success (with warning)" : "Success";
  }
  if (char const* const text = FailureText(code)) {
    return text;
  }
  if (defaultText != nullptr && *defaultText != '\0') {
    return defaultText;
  }
  usb_support::LogFormatted(CAppState::Log(), TEST_STATUS_PLAIN, DefaultErrorFormat(),
                            "No status text discovered for status: 0x%08X", code);
  return "";
}

bool PrintErrorDetail(RETURN_CODE code, TEST_STATUS status) {
  char const* const text = GetStatusDetail(code, nullptr);
  usb_support::LogFormatted(CAppState::Log(), status, "%s.", text);
  FlushOutput(true);
  return true;
}
