// Writes the output of a command as one HTML page.
#pragma once

#include <functional>
#include <optional>
#include <vector>

#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/views/html.h>
#include <usb_fields/usb_ids.h>

namespace usb_support::usbdesc {

/// The form of a command's output.
enum class Format { kText, kJson, kJunit, kHtml };

/// The content of a page.
struct PageOptions {
  HtmlContent content = HtmlContent::kTree;
  usb_fields::Speed speed = usb_fields::Speed::kUnknown;  ///< kUnknown: that of the device
  usb_fields::UsbIds const& names;
  /// Adds the findings to a device of an input, and returns its exit status. Without this function
  /// the status depends on the lengths.
  std::function<int(usb_devices::Device const& device, HtmlDevice& shown)> judge{};
};

/// Reads all inputs, writes a page of all their devices to standard output, and returns the worst
/// exit status. All devices stay in memory until the page is written.
int WritePage(Console const& console, InputOptions const& inputs, PageOptions const& options);

}  // namespace usb_support::usbdesc
