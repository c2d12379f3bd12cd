// The result of judging a device by the rules of the standards, for the pages and the differences.
#pragma once

#include <vector>

#include <tools/usbdesc/outline.h>
#include <tools/usbdesc/views/check.h>
#include <tools/usbdesc/views/diff.h>
#include <tools/usbdesc/views/html.h>
#include <usb_devices/device.h>

namespace usb_support::usbdesc {

/// The findings of the broken rules, each at its place in the outline of the device.
std::vector<HtmlFinding> FindingsOf(CheckedDevice const& checked, usb_devices::Device const& device,
                                    Outline const& outline);

/// The rules that one device keeps and the other breaks, in the order of the catalogue. Both were
/// judged by the same rules.
std::vector<RuleChange> CompareRules(CheckedDevice const& before, CheckedDevice const& after);

}  // namespace usb_support::usbdesc
