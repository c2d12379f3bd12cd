#include <memory>

#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/views/list.h>

namespace usb_support::usbdesc {
namespace {

// An input without a device is as good as none.
int StatusOf(Input const& input) {
  return input.devices.front().Answers().empty() ? kExitFaulty : kExitGood;
}

}  // namespace

Action DefineList(Options& parser) {
  auto const inputs = AddInputOptions(parser);
  auto const asJson = std::make_shared<bool>(false);
  parser.Choice<bool>("--format", *asJson, "text, or json as docs/ describes it",
                      {{"text", false}, {"json", true}});
  return [inputs, asJson](Console const& console) {
    if (*asJson) {
      return WriteJsonInputs(console, *inputs, ListJson, StatusOf);
    }
    return ReadInputs(console, *inputs, [](Input const& input) {
      LogList(input);
      return StatusOf(input);
    });
  };
}

}  // namespace usb_support::usbdesc
