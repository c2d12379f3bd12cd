#include <memory>

#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/suite_run.h>
#include <tools/usbdesc/views/list.h>
#include <usb_devices/live.h>
#include <usb_devices/read_error.h>

namespace usb_support::usbdesc {
namespace {

// An input without a device is like no input.
int StatusOf(Input const& input) {
  return input.devices.front().Answers().empty() ? kExitFaulty : kExitGood;
}

// Without an input, the inputs are the devices that are plugged in.
InputOptions WithLiveDevices(InputOptions options) {
  if (options.files.empty() && !options.fake) {
    for (usb_devices::LiveDevice const& device : usb_devices::ListLiveDevices()) {
      options.files.push_back(device.name);
    }
  }
  return options;
}

}  // namespace

Action DefineList(Options& parser) {
  auto const inputs = AddInputOptions(parser);
  auto const asJson = std::make_shared<bool>(false);
  parser.Choice<bool>("--format", *asJson, "text, or json as docs/ describes it",
                      {{"text", false}, {"json", true}});
  return [inputs, asJson](Console const& console) {
    InputOptions all;
    try {
      all = WithLiveDevices(*inputs);
    } catch (usb_devices::ReadError const& error) {
      Report(console.err, error.what());
      return kExitUnusable;
    }
    if (all.files.empty() && !all.fake) {
      Report(console.err, "no USB device is plugged in");
      return kExitFaulty;
    }
    if (*asJson) {
      return WriteJsonInputs(console, all, ListJson, StatusOf);
    }
    return ReadInputs(console, all, [](Input const& input) {
      LogList(input);
      return StatusOf(input);
    });
  };
}

}  // namespace usb_support::usbdesc
