#include <usb_rules/verdict.h>

#include <array>
#include <cinttypes>
#include <cstdio>

namespace usb_rules {
namespace {

// In the order of Source.
constexpr std::array<std::string_view, static_cast<std::size_t>(Source::kCount)> kNames = {
    "device", "configuration", "other-speed",           "qualifier", "bos", "hub",
    "string", "report",        "group-terminal-blocks",
};

bool HasIndex(Source source) {
  return source == Source::kConfiguration || source == Source::kOtherSpeedConfiguration ||
         source >= Source::kString;
}

std::string ValueOf(Finding const& finding) {
  char text[32];
  bool const isHexadecimal = finding.isHexadecimal && finding.value > 9;
  std::snprintf(text, sizeof text, isHexadecimal ? "%" PRIX64 "h" : "%" PRIu64, finding.value);
  return text;
}

}  // namespace

std::string PlaceOf(Finding const& finding) {
  std::string place(kNames[static_cast<std::size_t>(finding.source)]);
  if (HasIndex(finding.source)) {
    place.append("[").append(std::to_string(finding.index)).append("]");
  }
  return place.append("+").append(std::to_string(finding.offset));
}

std::string TextOf(Finding const& finding) {
  std::string text = PlaceOf(finding);
  if (!finding.descriptor.empty()) {
    text.append(", ").append(finding.descriptor);
  }
  if (!finding.field.empty()) {
    text.append(": ").append(finding.field).append(" is ").append(ValueOf(finding));
  }
  if (!finding.expected.empty()) {
    text.append(finding.field.empty() ? ": expected " : ", expected ").append(finding.expected);
  }
  return text;
}

}  // namespace usb_rules
