// Judges a device by the catalogue. Any thread may judge; nothing is shared but constant tables,
// which the first call prepares. Bytes may say anything: no read leaves them, and the time is
// linear in the number of descriptors. Throws std::bad_alloc only.
#pragma once

#include <span>
#include <string>

#include <usb_rules/export.h>
#include <usb_rules/rule.h>
#include <usb_rules/subject.h>
#include <usb_rules/verdict.h>

namespace usb_rules {

/// The verdict of every rule. The bytes must be there until it returns.
USB_RULES_API Judgement Judge(Subject const& subject);

/// The same of another catalogue, one that a test has changed. Slow: it is read on every call.
USB_RULES_API Judgement Judge(Subject const& subject, std::span<Rule const> catalogue);

/// The mistakes in the text of a rule, one a line; empty when there are none.
USB_RULES_API std::string CheckRule(Rule const& rule);

}  // namespace usb_rules
