// Judges a device by the catalogue. Any thread may judge; only constant tables are shared, and the
// first call prepares them. The bytes may have any content: no read is outside them, and the time
// is linear in the number of descriptors. Throws only std::bad_alloc.
#pragma once

#include <span>
#include <string>

#include <usb_rules/export.h>
#include <usb_rules/rule.h>
#include <usb_rules/subject.h>
#include <usb_rules/verdict.h>

namespace usb_rules {

/// The verdict of every rule. The bytes must exist until it returns.
USB_RULES_API Judgement Judge(Subject const& subject);

/// The same for another catalogue, such as one that a test has changed. Slow: each call parses the
/// catalogue.
USB_RULES_API Judgement Judge(Subject const& subject, std::span<Rule const> catalogue);

/// The mistakes in the text of a rule, one per line; empty when there are none.
USB_RULES_API std::string CheckRule(Rule const& rule);

}  // namespace usb_rules
