// Judges the descriptors that a test has read, and logs every broken rule:
//
//   usb_support::DeviceConfiguration configuration(device);
//   if (Succeeded(configuration.Read())) {
//     usb_rules::AssertRules({configuration}, {.speed = usb_rules::Speed::kHigh});
//   }
//
// Each place where a rule is broken is one line of LogAssert with the section of the rule:
//
//   (USB 2.0: 9.6.3) Bit 7 of bmAttributes of a configuration is one. configuration[0]+0,
//   Configuration: bmAttributes[7] is 0, expected 1 [usb2.config.attributes-bit7]
//
// Descriptors that were not read are not judged; rules that need them are counted as not run.
// Throws std::bad_alloc and the exceptions of the log.
#pragma once

#include <cstddef>
#include <initializer_list>
#include <string_view>

#include <usb_rules/export.h>
#include <usb_rules/verdict.h>
#include <usb_support/descriptors/descriptor_range.h>

namespace usb_rules {

/// The options of a judgement.
struct AssertOptions {
  Speed speed = Speed::kUnknown;  ///< of the device; kUnknown: it is inferred
  Level level = Level::kMust;     ///< kShould: recommendations are judged too
  std::string_view rules = {};    ///< judges only rules whose ids begin with this: "usb2.endpoint."
};

/// The number of rules by their result.
struct RuleCounts {
  std::size_t passed = 0;
  std::size_t failed = 0;
  std::size_t notRun = 0;

  /// False when a rule is broken, and when there was nothing to judge.
  bool IsGood() const noexcept { return failed == 0 && passed != 0; }
};

/// Judges the ranges and sets of one device together, and logs each broken rule as a failure. Each
/// range begins with a device, device qualifier, configuration, other-speed configuration or BOS
/// descriptor, and may contain several of them, one after the other; any other descriptor before
/// the first is ignored.
USB_RULES_API RuleCounts AssertRules(std::initializer_list<CDescriptorRange> ranges,
                                     AssertOptions const& options = {});

}  // namespace usb_rules
