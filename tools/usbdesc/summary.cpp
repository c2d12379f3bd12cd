#include <tools/usbdesc/summary.h>

#include <cstddef>
#include <optional>

#include <tools/usbdesc/captured_device.h>
#include <tools/usbdesc/log_text.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

bool IsConfiguration(CDescriptorRangeIterator const& it) {
  return HasType(it, kConfigurationType) || HasType(it, kOtherSpeedConfigurationType);
}

bool IsFirstSettingOfInterface(CDescriptorRangeIterator const& it) {
  return HasType(it, kInterfaceType) &&
         ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(it).bAlternateSetting == 0;
}

std::string ChainText(RunDiagnosis const& diagnosis) {
  if (diagnosis.reason == RunEnd::kComplete) {
    return "lengths good";
  }
  return std::string("lengths bad: ") + RunEndText(diagnosis.reason) + " at " +
         OffsetText(diagnosis.offset) + ", " + Counted(diagnosis.bytesLeft, "byte") + " left";
}

// The first wrong wTotalLength of a run, and how many more there are; empty when there is none.
std::string TotalsText(CDescriptorRange const& run) {
  std::string text;
  std::size_t more = 0;
  for (Part const& part : SplitRun(run)) {
    std::optional<WrongTotal> const wrong = FindWrongTotal(part);
    if (wrong && text.empty()) {
      text = "wTotalLength wrong: " + std::to_string(wrong->announced) + " announced at " +
             OffsetText(part.offset) + ", " + std::to_string(wrong->found) + " found";
    } else if (wrong) {
      ++more;
    }
  }
  return more == 0 ? text : text + ", and " + std::to_string(more) + " more";
}

}  // namespace

RunSummary Summarise(CDescriptorRange const& run) {
  std::size_t descriptors = 0;
  std::size_t configurations = 0;
  std::size_t interfaces = 0;
  CDescriptorRangeIterator const validEnd = run.ValidUntil();
  for (CDescriptorRangeIterator it = run.begin(); it != validEnd; ++it) {
    ++descriptors;
    configurations += IsConfiguration(it) ? 1U : 0U;
    interfaces += IsFirstSettingOfInterface(it) ? 1U : 0U;
  }
  std::string const counts =
      "// " + Counted(descriptors, "descriptor") + ", " + Counted(configurations, "configuration") +
      ", " + Counted(interfaces, "interface") + ", " + Counted(run.Length(), "byte") + ", ";
  if (run.IsEmpty()) {
    return {counts + "nothing to check", false};
  }
  RunDiagnosis const diagnosis = DiagnoseRun(run);
  std::string const totals = TotalsText(run);
  return {counts + ChainText(diagnosis) + (totals.empty() ? "" : ", ") + totals,
          diagnosis.reason == RunEnd::kComplete && totals.empty()};
}

}  // namespace usb_support::usbdesc
