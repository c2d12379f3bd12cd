// What comes of judging: one verdict a rule. Plain values that own their texts; views refer to
// constant tables.
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

/// What a rule came to.
enum class Outcome : std::uint8_t {
  kPass,
  kFail,
  kNotApplicable,  ///< the device has nothing that the rule is about
  kNotRun,         ///< something that the rule needs is not known
};

/// Which answer of the device.
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

/// Where a rule is broken, and what was expected.
struct Finding {
  Source source = Source::kDevice;
  std::uint16_t index = 0;           ///< of the configuration or string; number of the interface
  std::size_t offset = 0;            ///< of the descriptor, from the start of the answer
  std::size_t fileOffset = 0;        ///< of the field, in what the bytes were read from
  std::uint16_t length = 0;          ///< bytes of the descriptor that are there
  std::string_view descriptor = {};  ///< its name, or empty
  std::string field = {};            ///< "bmAttributes[4..0]", or empty when it is not one field
  std::uint64_t value = 0;           ///< of the field
  bool isHexadecimal = false;        ///< how the value is shown
  std::string expected = {};         ///< "at most 16"
};

/// Where it is, without spaces: "configuration[0]+27" is the descriptor 27 bytes after the start of
/// the first configuration.
USB_RULES_API std::string PlaceOf(Finding const& finding);

/// "configuration[0]+27, Endpoint: bInterval is 0, expected at least 10".
USB_RULES_API std::string TextOf(Finding const& finding);

/// The verdict of one rule.
struct Verdict {
  Rule const* rule = nullptr;
  Outcome outcome = Outcome::kNotApplicable;
  std::string_view reason = {};        ///< of kNotApplicable and kNotRun
  std::uint32_t failures = 0;          ///< how many descriptors, or fields of tables, break it
  std::vector<Finding> findings = {};  ///< the first kMostFindings of them
};

/// How many findings a verdict keeps.
inline constexpr std::size_t kMostFindings = 16;

/// All verdicts of one device, in the order of the catalogue.
struct Judgement {
  std::vector<Verdict> verdicts;
  Speed speed = Speed::kUnknown;
  std::string_view speedReason = {};  ///< from what the speed was concluded; empty: it was given
  std::uint16_t release = 0;          ///< bcdUSB; 0 when there is no device descriptor

  /// How many rules came to `outcome`.
  std::size_t Count(Outcome outcome) const noexcept {
    std::size_t count = 0;
    for (Verdict const& verdict : verdicts) {
      count += verdict.outcome == outcome ? 1 : 0;
    }
    return count;
  }
};

}  // namespace usb_rules
