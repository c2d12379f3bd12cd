// The structural checks of devices, configurations and BOS: the standard's rules about lengths,
// totals and counts.
//
// A check is a row of a table: the number of its rule, the message when it is broken, and the
// function that looks. A check only looks: it changes nothing, logs nothing and reads nothing
// outside the bytes that were captured. The rules about lengths come first; those about content
// only mean something where no rule about lengths is broken.
#pragma once

#include <span>
#include <string>
#include <vector>

#include <tools/usbdesc/device.h>
#include <usb_support/log/log_assert.h>

namespace usb_support::usbdesc {

/// Where a rule is broken and how, one text a place.
using Findings = std::vector<std::string>;

/// What a rule is about.
enum class CheckKind {
  kLengths,
  kContent,
};

/// What a check looks at: a configuration or BOS of a device, or with an empty part the device.
struct Subject {
  ShownDevice const& device;
  Part part;
};

struct Check {
  TQAssertionNumbers number;
  char const* message;
  CheckKind kind;
  Findings (*find)(Subject const& subject);
};

std::span<Check const> DeviceChecks();
std::span<Check const> ConfigurationChecks();
std::span<Check const> BosChecks();

}  // namespace usb_support::usbdesc
