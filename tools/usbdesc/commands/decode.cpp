#include <memory>
#include <optional>
#include <stdexcept>
#include <string>

#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/pages.h>
#include <tools/usbdesc/platform.h>
#include <tools/usbdesc/run.h>
#include <tools/usbdesc/views/decode.h>
#include <tools/usbdesc/views/summary.h>

namespace usb_support::usbdesc {
namespace {

using usb_fields::Speed;

struct DecodeOptions {
  Format format = Format::kText;
  Speed speed = Speed::kUnknown;  // as the source or the descriptors tell
  bool names = false;
  std::optional<std::string> namesFile;
};

usb_fields::UsbIds NamesOf(DecodeOptions const& options) {
  usb_fields::UsbIds names;
  if (options.namesFile) {
    if (!names.Read(PathOf(*options.namesFile))) {
      throw std::runtime_error(*options.namesFile + ": is not a list of vendors and products");
    }
  } else if (options.names && !names.ReadSystemFile()) {
    throw std::runtime_error("the system has no file usb.ids; name one with --ids");
  }
  return names;
}

int ShowText(Console const& console, InputOptions const& inputs, DecodeOptions const& options) {
  usb_fields::UsbIds const names = NamesOf(options);
  return ShowInputs(console, inputs, nullptr, [&](ShownDevice const& device) {
    LogTitle(device.name);
    Log(DecodedText(Decode(*device.source, options.speed), names, TerminalColumns(console.out)));
    return kExitGood;
  });
}

int WriteJson(Console const& console, InputOptions const& inputs, DecodeOptions const& options) {
  usb_fields::UsbIds const names = NamesOf(options);
  return WriteJsonInputs(
      console, inputs,
      [&](Input const& input) {
        DecodedInput decoded{input.name, {}};
        for (usb_devices::Device const& device : input.devices) {
          decoded.devices.push_back(Decode(device, options.speed));
        }
        return DecodedJson(decoded, names);
      },
      [](Input const& input) { return Summarise(Show(input)).isGood ? kExitGood : kExitFaulty; });
}

int WriteHtml(Console const& console, InputOptions const& inputs, DecodeOptions const& options) {
  usb_fields::UsbIds const names = NamesOf(options);
  return WritePage(console, inputs,
                   {.content = HtmlContent::kFields, .speed = options.speed, .names = names});
}

}  // namespace

Action DefineDecode(Options& parser) {
  auto const inputs = AddInputOptions(parser);
  auto const options = std::make_shared<DecodeOptions>();
  parser.Choice<Format>(
      "--format", options->format, "text, json as docs/ describes it, or html",
      {{"text", Format::kText}, {"json", Format::kJson}, {"html", Format::kHtml}});
  AddSpeedOption(parser, options->speed);
  parser.Flag("--names", options->names, "Name vendors and products as the system's usb.ids does");
  parser.Text("--ids", options->namesFile, "FILE", "Name them as this file does");
  return [inputs, options](Console const& console) {
    switch (options->format) {
      case Format::kJson:
        return WriteJson(console, *inputs, *options);
      case Format::kHtml:
        return WriteHtml(console, *inputs, *options);
      default:
        return ShowText(console, *inputs, *options);
    }
  };
}

}  // namespace usb_support::usbdesc
