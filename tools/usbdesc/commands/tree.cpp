#include <memory>

#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/decoded.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/pages.h>
#include <tools/usbdesc/views/summary.h>
#include <tools/usbdesc/views/tree.h>
#include <tools/usbdesc/views/tree_json.h>

namespace usb_support::usbdesc {

namespace {

int WriteJson(Console const& console, InputOptions const& inputs) {
  Print(R"({"usbdesc":1,"devices":[)", console.out);
  char const* separator = "\n";
  int const status = ReadInputs(console, inputs, [&](Input const& input) {
    for (std::size_t i = 0; i < input.devices.size(); ++i) {
      Outline const outline(Decode(input.devices[i]));
      Print(separator + TreeJson(NameOf(input, i), outline), console.out);
      separator = ",\n";
    }
    return Summarise(Show(input)).isGood ? kExitGood : kExitFaulty;
  });
  Print("\n]}\n", console.out);
  return status;
}

}  // namespace

Action DefineTree(Options& parser) {
  auto const format = std::make_shared<Format>(Format::kText);
  auto const inputs = AddInputOptions(parser);
  parser.Choice<Format>(
      "--format", *format, "text, json as docs/ describes it, or html",
      {{"text", Format::kText}, {"json", Format::kJson}, {"html", Format::kHtml}});
  return [inputs, format](Console const& console) {
    if (*format == Format::kHtml) {
      return WritePage(console, *inputs,
                       {.content = HtmlContent::kTree, .names = usb_fields::UsbIds()});
    }
    if (*format == Format::kJson) {
      return WriteJson(console, *inputs);
    }
    return ShowInputs(console, *inputs, nullptr, [](ShownDevice const& device) {
      LogTitle(device.name);
      LogTree(device);
      return kExitGood;
    });
  };
}

}  // namespace usb_support::usbdesc
