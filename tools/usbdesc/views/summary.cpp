#include <tools/usbdesc/views/summary.h>

#include <cstddef>
#include <optional>

#include <tools/usbdesc/device.h>
#include <tools/usbdesc/log_text.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

std::string ChainText(RunDiagnosis const& diagnosis) {
  if (diagnosis.reason == RunEnd::kComplete) {
    return "lengths good";
  }
  return std::string("lengths bad: ") + RunEndText(diagnosis.reason) + " at " +
         OffsetText(diagnosis.offset) + ", " + Counted(diagnosis.bytesLeft, "byte") + " left";
}

// The first wrong wTotalLength of a run, and how many more there are; empty when there is none.
std::string TotalsText(std::vector<Device> const& devices) {
  std::string text;
  std::size_t more = 0;
  for (Device const& device : devices) {
    for (Part const& part : device.parts) {
      std::optional<WrongTotal> const wrong = FindWrongTotal(part);
      if (wrong && text.empty()) {
        text = "wTotalLength wrong: " + std::to_string(wrong->announced) + " announced at " +
               OffsetText(part.offset) + ", " + std::to_string(wrong->found) + " found";
      } else if (wrong) {
        ++more;
      }
    }
  }
  return more == 0 ? text : text + ", and " + std::to_string(more) + " more";
}

}  // namespace

RunSummary Summarise(CDescriptorRange const& run, std::vector<Device> const& devices) {
  std::size_t descriptors = 0;
  std::size_t configurations = 0;
  std::size_t interfaces = 0;
  for (Descriptor const d : Walk(run)) {
    bool const isFirstSetting =
        d.Is(kInterfaceType) && d.As<TQ_USB_INTERFACE_DESCRIPTOR>().bAlternateSetting == 0;
    ++descriptors;
    configurations += d.Is(kConfigurationType) || d.Is(kOtherSpeedConfigurationType) ? 1U : 0U;
    interfaces += isFirstSetting ? 1U : 0U;
  }
  Line line("// " + Counted(descriptors, "descriptor") + ", " +
            Counted(configurations, "configuration") + ", " + Counted(interfaces, "interface") +
            ", " + Counted(run.Length(), "byte") + ",");
  if (run.IsEmpty()) {
    return {line.Add(" nothing to check", Piece::kFault), false};
  }
  RunDiagnosis const diagnosis = DiagnoseRun(run);
  bool const isWhole = diagnosis.reason == RunEnd::kComplete;
  line.Add(' ' + ChainText(diagnosis), isWhole ? Piece::kPlain : Piece::kFault);
  std::string const totals = TotalsText(devices);
  if (!totals.empty()) {
    line.Add(",").Add(' ' + totals, Piece::kFault);
  }
  return {line, isWhole && totals.empty()};
}

}  // namespace usb_support::usbdesc
