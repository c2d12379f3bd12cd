// A report as one HTML file that needs nothing else: no network, and no JavaScript, although it
// does more with JavaScript. Everything from a device is text in it.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include <tools/usbdesc/outline.h>
#include <tools/usbdesc/views/diff.h>
#include <usb_fields/usb_ids.h>

namespace usb_support::usbdesc {

/// A fault at one place of a device.
struct HtmlFinding {
  std::size_t run = kNone;  ///< index of the answer in the outline; kNone: of the device as a whole
  std::size_t offset = 0;   ///< of the descriptor, from the start of the answer
  std::string rule;         ///< its id
  std::string text;
  bool isMust = true;  ///< false: a recommendation
};

struct HtmlDevice {
  std::string name;  ///< of its source, safe to show
  Outline const* outline = nullptr;
  std::vector<HtmlFinding> findings{};
};

/// The content of a page for each device, besides its summary and its pictures.
enum class HtmlContent {
  kTree,    ///< the tree
  kFields,  ///< and the fields beside the bytes
  kCheck,   ///< and the findings, at their place too
};

/// The page of one or more devices. `names` are those of vendors and products.
std::string DevicesHtml(std::span<HtmlDevice const> devices, HtmlContent content,
                        usb_fields::UsbIds const& names);

/// The page of the changes between two devices, and of the rules that one keeps and the other
/// breaks.
std::string DiffHtml(HtmlDevice const& before, HtmlDevice const& after,
                     std::vector<Change> const& changes, std::vector<RuleChange> const& rules,
                     usb_fields::UsbIds const& names);

}  // namespace usb_support::usbdesc
