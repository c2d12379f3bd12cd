// The result of judging a device by the rules of the standards: as text of at most 80 columns, as
// JSON (docs/usbdesc-check.schema.json), and as JUnit XML.
#pragma once

#include <cstddef>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <tools/usbdesc/accepted.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/views/summary.h>
#include <usb_devices/device.h>
#include <usb_rules/catalogue.h>
#include <usb_rules/judge.h>

namespace usb_support::usbdesc {

/// Which rules are judged, and how.
struct CheckOptions {
  usb_rules::Level level = usb_rules::Level::kMust;
  std::vector<std::string> rules{};                     ///< ids and beginnings of ids; none: all
  std::vector<std::string> skipped{};                   ///< ids
  usb_rules::Speed speed = usb_rules::Speed::kUnknown;  ///< kUnknown: that of the source

  bool Takes(usb_rules::Rule const& rule) const;
};

/// A finding with the bytes that it is about.
struct CheckedFinding {
  usb_rules::Finding const* finding = nullptr;
  std::string place{};
  std::string file{};                     ///< the source of the bytes
  std::size_t line = 0;                   ///< of a text, from 1; 0: the offset counts
  std::span<std::uint8_t const> bytes{};  ///< of the descriptor; the device's
  std::string accepted{};                 ///< the reason; empty when it is not accepted
};

/// A rule with its result.
struct CheckedRule {
  usb_rules::Verdict const* verdict = nullptr;
  usb_rules::Citation citation{};
  std::vector<CheckedFinding> findings{};
  bool isAccepted = false;  ///< it is broken, and everything that breaks it is accepted

  bool IsBroken() const noexcept {
    return verdict->outcome == usb_rules::Outcome::kFail && !isAccepted;
  }
};

/// A device with its verdicts. The device must outlive it.
struct CheckedDevice {
  std::string name;
  usb_rules::Judgement judgement{};
  std::vector<CheckedRule> rules{};  ///< in the order of the catalogue
  std::size_t passed = 0;
  std::size_t failed = 0;
  std::size_t accepted = 0;
  std::size_t notApplicable = 0;
  std::size_t notRun = 0;
  std::vector<std::string_view> lacking{};  ///< what every device has, and the input has not

  CheckedDevice() = default;
  CheckedDevice(CheckedDevice&&) = default;
  CheckedDevice& operator=(CheckedDevice&&) = default;
  CheckedDevice(CheckedDevice const&) = delete;
  CheckedDevice& operator=(CheckedDevice const&) = delete;
  ~CheckedDevice() = default;

  /// False when there was no rule to judge.
  bool WasJudged() const noexcept { return passed + failed + accepted != 0; }
  bool IsGood() const noexcept { return WasJudged() && failed == 0; }
};

/// Judges a device, which is shown as `name`.
CheckedDevice Check(usb_devices::Device const& device, std::string name,
                    CheckOptions const& options, AcceptedFindings& accepted);

/// "pass 141, fail 2, not applicable 63, not run 8", and why rules were not run: " (no strings
/// captured)".
std::string CountsText(CheckedDevice const& device);
std::string ReasonsText(CheckedDevice const& device);

/// "judged in part only: no device descriptor and no configuration in the input"; empty when both
/// are there.
std::string LackingText(CheckedDevice const& device);

/// The failures, or with `showsAll` every rule, and the counts. Ends without a line end.
Line CheckText(CheckedDevice const& device, bool showsAll);

/// An input as a JSON object on one line: the broken rules, or with `showsAll` every rule.
std::string CheckJson(std::string_view input, std::span<CheckedDevice const> devices,
                      bool showsAll);

/// A test suite: a test case for each rule. Ends with a line end.
std::string CheckJunit(CheckedDevice const& device);

/// A test suite for an input that cannot be read: one test case with an error.
std::string UnreadJunit(std::string_view input, std::string_view reason);

/// The totals of many inputs.
class CheckTotals {
 public:
  /// Adds an input.
  void Add(std::span<CheckedDevice const> devices);
  /// Adds inputs that could not be read.
  void AddUnread(std::size_t inputs) { counts_.invalid += inputs; }

  InputCounts const& Counts() const noexcept { return counts_; }

  /// The rules that most inputs break, one per line; empty when there are none.
  std::string MostBroken() const;

 private:
  InputCounts counts_;
  std::map<usb_rules::Rule const*, std::size_t> byRule_;
};

}  // namespace usb_support::usbdesc
