#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/views/assertions.h>

namespace usb_support::usbdesc {

Action DefineCheck(Options& parser) {
  return [inputs = AddInputOptions(parser)](Console const& console) {
    return ShowInputs(console, *inputs, nullptr, [](ShownDevice const& device) {
      LogTitle(device.name);
      AssertionCount const count = AssertDevice(device);
      LogPlain(Summarise(count));
      return HasChecks(count) && count.failed == 0 ? kExitGood : kExitFaulty;
    });
  };
}

}  // namespace usb_support::usbdesc
