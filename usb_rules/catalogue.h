// The rules of the standards: one row a rule. Constant tables, one file a standard in catalogue/;
// any thread may read them.
//
// A row says what must hold in a small language over the field tables of usb_fields:
//
//   {"usb2.config.attributes-reserved", "USB 2.0", "9.6.3", "usb2.configuration", Level::kMust,
//    "Bits 4 to 0 of bmAttributes of a configuration are zero.", "", "bmAttributes[4..0] == 0"},
//
// `scope` names the descriptors that are judged one by one: ids of layouts, which may end with '*',
// or types ("type=05"), separated by commas. `when` is a condition: where it is false the rule is
// not applicable. Names are fields of the descriptor; of a field that repeats, each occurrence is
// judged. docs/rule-language.md has all of it.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <usb_rules/export.h>

namespace usb_rules {

/// How strongly the standard asks.
enum class Level : std::uint8_t {
  kMust,    ///< it demands it
  kShould,  ///< it recommends it, or it follows from what it says
};

/// One rule.
struct Rule {
  std::string_view id;        ///< such as "usb2.config.attributes-bit7"; never changes
  std::string_view standard;  ///< "USB 2.0"
  std::string_view section;   ///< "9.6.3"
  std::string_view scope;     ///< the descriptors that it judges
  Level level;
  std::string_view sentence;  ///< what must hold, for people
  std::string_view when;      ///< a condition; empty: always
  std::string_view holds;     ///< what must hold
};

/// The standard and section to quote, given the release that a device claims in bcdUSB: devices of
/// 3.0 and later keep the chapter 9 of USB 3.2.
struct Citation {
  std::string_view standard;
  std::string_view section;
};

/// All rules, those of one standard together.
USB_RULES_API std::span<Rule const> Catalogue() noexcept;

/// The rule of that id, or null.
USB_RULES_API Rule const* FindRule(std::string_view id) noexcept;

USB_RULES_API Citation Cite(Rule const& rule, std::uint16_t bcdUsb) noexcept;

}  // namespace usb_rules
