// The result of a judgement: one verdict per rule. Plain values that own their texts; views refer
// to constant tables.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include <usb_rules/export.h>
#include <usb_rules/rule.h>
#include <usb_rules/subject.h>

namespace usb_rules {

/// The result of a rule.
enum class Outcome : std::uint8_t {
  kPass,
  kFail,
  kNotApplicable,  ///< the device has nothing to which the rule applies
  kNotRun,         ///< something that the rule needs is unknown
};

/// The answer of the device.
enum class Source : std::uint8_t {
  kDevice,
  kConfiguration,
  kOtherSpeedConfiguration,
  kQualifier,
  kBos,
  kHub,
  kString,
  kReport,
  kGroupTerminalBlocks,
  kCount,
};

/// A place where a rule is broken, and the expected value.
struct Finding {
  Source source = Source::kDevice;
  std::uint16_t index = 0;     ///< of the configuration or string; or the number of the interface
  std::size_t offset = 0;      ///< of the descriptor, from the start of the answer
  std::size_t fileOffset = 0;  ///< of the field, from the start of the source
  std::uint16_t length = 0;    ///< the number of bytes of the descriptor that exist
  std::string_view descriptor = {};  ///< its name, or empty
  std::string field = {};            ///< "bmAttributes[4..0]", or empty when it is not one field
  std::uint64_t value = 0;           ///< of the field
  bool isHexadecimal = false;        ///< the value is shown in hexadecimal
  std::string expected = {};         ///< "at most 16"
};

/// The place of a finding, without spaces: "configuration[0]+27" is the descriptor 27 bytes after
/// the start of the first configuration.
USB_RULES_API std::string PlaceOf(Finding const& finding);

/// "configuration[0]+27, Endpoint: bInterval is 0, expected at least 10".
USB_RULES_API std::string TextOf(Finding const& finding);

/// The verdict of one rule.
struct Verdict {
  Rule const* rule = nullptr;
  Outcome outcome = Outcome::kNotApplicable;
  std::string_view reason = {};        ///< of kNotApplicable and kNotRun
  std::uint32_t failures = 0;          ///< the number of descriptors, or of fields, that break it
  std::vector<Finding> findings = {};  ///< the first kMostFindings of them
};

/// The maximum number of findings in a verdict.
inline constexpr std::size_t kMostFindings = 16;

/// All verdicts of one device, in the order of the catalogue.
struct Judgement {
  std::vector<Verdict> verdicts;
  Speed speed = Speed::kUnknown;
  std::string_view speedReason = {};  ///< the reason for an inferred speed; empty: it was given
  std::uint16_t release = 0;          ///< bcdUSB; 0 when there is no device descriptor

  /// The number of rules with this outcome.
  std::size_t Count(Outcome outcome) const noexcept {
    std::size_t count = 0;
    for (Verdict const& verdict : verdicts) {
      count += verdict.outcome == outcome ? 1 : 0;
    }
    return count;
  }
};

}  // namespace usb_rules
