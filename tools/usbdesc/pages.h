// Writes what a command shows as one HTML page.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/views/html.h>
#include <usb_fields/usb_ids.h>

namespace usb_support::usbdesc {

/// How a command writes what it shows.
enum class Format { kText, kJson, kHtml };

/// What a page shows.
struct PageOptions {
  HtmlContent content = HtmlContent::kTree;
  usb_fields::Speed speed = usb_fields::Speed::kUnknown;  ///< kUnknown: what the device tells
  usb_fields::UsbIds const& names;
  /// The findings of a device; without it there are none.
  std::function<std::vector<HtmlFinding>(Outline const& outline)> findingsOf{};
};

/// Reads all inputs, writes a page of all their devices to standard output, and returns the worst
/// exit status; a device with findings of a rule that must hold is faulty. All that is read stays in
/// memory until the page is written.
int WritePage(Console const& console, InputOptions const& inputs, PageOptions const& options);

}  // namespace usb_support::usbdesc
