#include <tools/usbdesc/assertions.h>

#include <cstddef>
#include <cstdint>
#include <vector>

#include <tools/usbdesc/captured_sets.h>
#include <tools/usbdesc/checks.h>
#include <tools/usbdesc/log_text.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

// LogAssert takes its numbers and messages as two tables with one index.
template <typename Subject>
struct AssertionTables {
  explicit AssertionTables(std::span<Check<Subject> const> checks) {
    for (Check<Subject> const& check : checks) {
      numbers.push_back(check.number);
      messages.push_back(check.message);
    }
  }

  std::vector<TQAssertionNumbers> numbers;
  std::vector<char const*> messages;
};

class AssertionRun {
 public:
  explicit AssertionRun(std::string const& name) : name_(name) {}

  AssertionCount const& Count() const { return count_; }

  template <typename Subject>
  void Assert(Subject const& subject, std::string const& subjectName,
              std::span<Check<Subject> const> checks, bool hasGoodLengths = true) {
    AssertionTables<Subject> const tables(checks);
    for (unsigned index = 0; index < checks.size(); ++index) {
      Check<Subject> const& check = checks[index];
      if (check.kind == CheckKind::kContent && !hasGoodLengths) {
        ++count_.leftOut;
        continue;
      }
      ++count_.checked;
      Findings const findings = check.find(subject);
      if (findings.empty()) {
        continue;
      }
      ++count_.failed;
      hasGoodLengths = hasGoodLengths && check.kind != CheckKind::kLengths;
      LogAssert(TEST_STATUS_FAILURE, index, tables.numbers.data(), tables.messages.data());
      for (std::string const& finding : findings) {
        // Where a failure is shown, its file and place are.
        LogPlain(
            std::string("//   ").append(name_).append(subjectName).append(": ").append(finding),
            TEST_STATUS_FAILURE);
      }
    }
    allLengthsAreGood_ = allLengthsAreGood_ && hasGoodLengths;
  }

  bool AllLengthsAreGood() const { return allLengthsAreGood_; }

 private:
  std::string const& name_;
  AssertionCount count_;
  bool allLengthsAreGood_ = true;
};

}  // namespace

AssertionCount AssertDevice(std::string const& name) {
  AssertionRun run(name);
  CapturedDevice const& device = DeviceUnderTest();
  for (std::uint8_t const type : {kConfigurationType, kOtherSpeedConfigurationType}) {
    for (unsigned index = 0; index < device.Count(type); ++index) {
      CapturedConfiguration configuration(static_cast<std::uint8_t>(index),
                                          type == kOtherSpeedConfigurationType);
      if (configuration.Read() == RC_SUCCESS) {
        run.Assert(configuration, ", " + NameOf(configuration), ConfigurationChecks());
      }
    }
  }
  for (unsigned index = 0; index < device.Count(kBosType); ++index) {
    CapturedBos bos(static_cast<std::uint8_t>(index));
    if (bos.Read() == RC_SUCCESS) {
      run.Assert(bos, ", BOS", BosChecks());
    }
  }
  // A device descriptor alone says nothing that could be checked.
  if (device.Count(kDeviceType) != 0 && device.Count(kConfigurationType) != 0) {
    run.Assert(device, "", DeviceChecks(), run.AllLengthsAreGood());
  }
  return run.Count();
}

bool HasChecks(AssertionCount const& count) noexcept {
  return count.checked != 0 || count.leftOut != 0;
}

std::string Summarise(AssertionCount const& count) {
  if (!HasChecks(count)) {
    return "// nothing to check";
  }
  std::string text =
      "// " + Counted(count.checked, "check") + ", " + std::to_string(count.failed) + " failed";
  if (count.leftOut != 0) {
    text += ", " + std::to_string(count.leftOut) + " left out";
  }
  return text;
}

}  // namespace usb_support::usbdesc
