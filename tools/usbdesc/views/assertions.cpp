#include <tools/usbdesc/views/assertions.h>

#include <algorithm>

#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/views/checks.h>
#include <usb_support/log/log_assert.h>

namespace usb_support::usbdesc {
namespace {

class AssertionRun {
 public:
  AssertionCount const& Count() const { return count_; }

  // `name` is where a failure is, in words.
  void Assert(Subject const& subject, std::string const& name, std::span<Check const> checks,
              bool hasGoodLengths = true) {
    for (Check const& check : checks) {
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
      LogAssert(TEST_STATUS_FAILURE, 0, &check.number, &check.message);
      for (std::string const& finding : findings) {
        // Where a failure is shown, its file and place are.
        LogPlain(std::string("//   ").append(name).append(": ").append(finding),
                 TEST_STATUS_FAILURE);
      }
    }
    allLengthsAreGood_ = allLengthsAreGood_ && hasGoodLengths;
  }

  bool AllLengthsAreGood() const { return allLengthsAreGood_; }

 private:
  AssertionCount count_;
  bool allLengthsAreGood_ = true;
};

}  // namespace

AssertionCount AssertDevice(ShownDevice const& device) {
  AssertionRun run;
  for (Part const& part : device.parts) {
    if (part.IsConfiguration() || part.IsBos()) {
      run.Assert({device, part}, device.name + ", " + part.Name(),
                 part.IsBos() ? BosChecks() : ConfigurationChecks());
    }
  }
  auto const isPart = [&](auto const& is) {
    return std::any_of(device.parts.begin(), device.parts.end(), is);
  };
  // A device descriptor alone has nothing to check.
  if (isPart([](Part const& part) { return part.type == kDeviceType; }) &&
      isPart([](Part const& part) { return part.type == kConfigurationType; })) {
    run.Assert({device, {}}, device.name, DeviceChecks(), run.AllLengthsAreGood());
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
