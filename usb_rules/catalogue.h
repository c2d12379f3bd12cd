// The rules of the standards: one row per rule (rule.h). Constant tables, one file per standard in
// catalogue/; any thread may read them.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <usb_rules/export.h>
#include <usb_rules/rule.h>

namespace usb_rules {

/// The standard and section to cite for a device, by the release in its bcdUSB: devices of USB 3.0
/// and later follow chapter 9 of USB 3.2.
struct Citation {
  std::string_view standard;
  std::string_view section;
};

/// All rules, grouped by standard.
USB_RULES_API std::span<Rule const> Catalogue() noexcept;

/// The rule with this id, or null.
USB_RULES_API Rule const* FindRule(std::string_view id) noexcept;

USB_RULES_API Citation Cite(Rule const& rule, std::uint16_t bcdUsb) noexcept;

}  // namespace usb_rules
