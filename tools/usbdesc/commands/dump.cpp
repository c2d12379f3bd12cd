#include <memory>

#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/views/dump.h>

namespace usb_support::usbdesc {
namespace {

struct DumpOptions {
  bool asCode = false;
  bool functions = false;
  bool interfaces = false;
  bool capabilities = false;
};

// The parts of a device that the options select, instead of the whole dump.
int DumpParts(ShownDevice const& device, DumpOptions const& options) {
  if (options.functions) {
    LogFunctions(device, options.asCode);
  }
  if (options.interfaces) {
    LogInterfaces(device, options.asCode);
  }
  if (options.capabilities) {
    LogCapabilities(device, options.asCode);
  }
  LogTitle(device.name);
  return kExitGood;
}

}  // namespace

Action DefineDump(Options& parser) {
  auto const inputs = AddInputOptions(parser);
  auto const options = std::make_shared<DumpOptions>();
  parser.Flag("--code", options->asCode, "Write the body of a C byte array instead of a listing");
  parser.Flag("--functions", options->functions, "Dump the functions of the configurations");
  parser.Flag("--interfaces", options->interfaces, "Dump the interfaces of the configurations");
  parser.Flag("--capabilities", options->capabilities, "Dump the capabilities of the BOS");
  return [inputs, options](Console const& console) {
    if (options->functions || options->interfaces || options->capabilities) {
      return ShowInputs(console, *inputs, nullptr,
                        [&](ShownDevice const& device) { return DumpParts(device, *options); });
    }
    return ShowInputs(
        console, *inputs, [&](ShownInput const& input) { LogDump(input, options->asCode); },
        nullptr);
  };
}

}  // namespace usb_support::usbdesc
