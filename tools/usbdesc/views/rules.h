// The catalogue of rules as text of at most 80 columns.
#pragma once

#include <string>

#include <tools/usbdesc/log_text.h>
#include <usb_rules/rule.h>

namespace usb_support::usbdesc {

/// The rules whose ids begin with the given text, by standard and section; empty when there are
/// none.
Line RulesText(std::string const& start);

/// Everything that is known about one rule.
Line RuleText(usb_rules::Rule const& rule);

}  // namespace usb_support::usbdesc
