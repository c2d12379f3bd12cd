#include <tools/usbdesc/pages.h>

#include <algorithm>
#include <deque>
#include <utility>

#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/decoded.h>
#include <tools/usbdesc/views/summary.h>

namespace usb_support::usbdesc {

int WritePage(Console const& console, InputOptions const& inputs, PageOptions const& options) {
  std::deque<Input> read;  // an outline refers to its input
  std::deque<Outline> outlines;
  std::vector<HtmlDevice> devices;
  int const status = ReadInputs(console, inputs, [&](Input const& input) {
    Input const& kept = read.emplace_back(input);
    int worst = options.judge || Summarise(Show(input)).isGood ? kExitGood : kExitFaulty;
    for (std::size_t i = 0; i < kept.devices.size(); ++i) {
      Outline const& outline = outlines.emplace_back(Decode(kept.devices[i], options.speed));
      HtmlDevice& device = devices.emplace_back(HtmlDevice{NameOf(kept, i), &outline});
      if (options.judge) {
        worst = std::max(worst, options.judge(kept.devices[i], device));
      }
    }
    return worst;
  });
  Print(DevicesHtml(devices, options.content, options.names), console.out);
  return status;
}

}  // namespace usb_support::usbdesc
