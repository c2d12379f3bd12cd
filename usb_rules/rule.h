// One rule: a row of the catalogue. The row states the requirement in a small language over the
// field tables of usb_fields:
//
//   {"usb2.config.attributes-reserved", "USB 2.0", "9.6.3", "usb2.configuration", Level::kMust,
//    "Bits 4 to 0 of bmAttributes of a configuration are zero.", "", "bmAttributes[4..0] == 0"},
//
// `scope` names the descriptors that are judged one by one: ids of layouts, which may end with '*',
// or types ("type=05"), separated by commas. `when` is a condition: where it is false, the rule is
// not applicable. Names are fields of the descriptor; each occurrence of a repeated field is
// judged. docs/rule-language.md describes the language.
#pragma once

#include <cstdint>
#include <string_view>

namespace usb_rules {

/// The strength of the requirement.
enum class Level : std::uint8_t {
  kMust,    ///< the standard requires it
  kShould,  ///< the standard recommends it, or it follows from other requirements
};

/// One rule.
struct Rule {
  std::string_view id;        ///< such as "usb2.config.attributes-bit7"; never changes
  std::string_view standard;  ///< "USB 2.0"
  std::string_view section;   ///< "9.6.3"
  std::string_view scope;     ///< the descriptors that it judges
  Level level;
  std::string_view sentence;  ///< the requirement in English
  std::string_view when;      ///< the condition; empty: always
  std::string_view holds;     ///< the requirement in the rule language
};

}  // namespace usb_rules
