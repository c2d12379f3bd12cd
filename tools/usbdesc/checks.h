// The structural checks of devices, configurations and BOS: what the standard says of lengths,
// totals and counts, looked for in the bytes.
//
// A check is a row of a table: the number of its rule, the message when it is broken, and the
// function that looks. A check only looks: it changes nothing, logs nothing and reads nothing
// outside the bytes that were captured. The rules about lengths come first; those about content
// only say something where no rule about lengths is broken.
#pragma once

#include <span>
#include <string>
#include <vector>

#include <tools/usbdesc/captured_device.h>
#include <tools/usbdesc/captured_sets.h>
#include <usb_support/log/log_assert.h>

namespace usb_support::usbdesc {

/// Where a rule is broken and how, one text a place.
using Findings = std::vector<std::string>;

/// What a rule is about.
enum class CheckKind {
  kLengths,
  kContent,
};

template <typename Subject>
struct Check {
  TQAssertionNumbers number;
  char const* message;
  CheckKind kind;
  Findings (*find)(Subject const& subject);
};

std::span<Check<CapturedDevice> const> DeviceChecks();
std::span<Check<CapturedConfiguration> const> ConfigurationChecks();
std::span<Check<CapturedBos> const> BosChecks();

}  // namespace usb_support::usbdesc
