#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/views/tree.h>

namespace usb_support::usbdesc {

Action DefineTree(Options& parser) {
  return [inputs = AddInputOptions(parser)](Console const& console) {
    return ShowInputs(console, *inputs, nullptr, [](ShownDevice const& device) {
      LogTitle(device.name);
      LogTree(device);
      return kExitGood;
    });
  };
}

}  // namespace usb_support::usbdesc
