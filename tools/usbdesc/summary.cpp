#include <tools/usbdesc/summary.h>

#include <cstddef>

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

std::string Verdict(RunDiagnosis const& diagnosis) {
  if (diagnosis.reason == RunEnd::kComplete) {
    return "valid";
  }
  CSimpleBuffer offset;
  Format(offset, kDefaultIndentation, " at offset %u (%Xh), ", diagnosis.offset, diagnosis.offset);
  return std::string("not valid: ") + RunEndText(diagnosis.reason) + offset.Contents() +
         Counted(diagnosis.bytesLeft, "byte") + " left";
}

}  // namespace

std::string Summarise(CDescriptorRange const& run) {
  std::size_t descriptors = 0;
  std::size_t configurations = 0;
  std::size_t interfaces = 0;
  CDescriptorRangeIterator const validEnd = run.ValidUntil();
  for (CDescriptorRangeIterator it = run.begin(); it != validEnd; ++it) {
    ++descriptors;
    configurations += IsConfiguration(it) ? 1U : 0U;
    interfaces += IsFirstSettingOfInterface(it) ? 1U : 0U;
  }
  return "// " + Counted(descriptors, "descriptor") + ", " +
         Counted(configurations, "configuration") + ", " + Counted(interfaces, "interface") + ", " +
         Counted(run.Length(), "byte") + ", " + Verdict(DiagnoseRun(run));
}

}  // namespace usb_support::usbdesc
