#include <usb_rules/catalogue.h>

#include <algorithm>
#include <string_view>
#include <vector>

#include <usb_rules/catalogue/tables.h>

namespace usb_rules {
namespace {

std::vector<Rule> AllRules() {
  std::vector<Rule> rules;
  for (std::span<Rule const> const table :
       {detail::Usb2Rules(), detail::Usb3Rules(), detail::HubRules(), detail::HidRules(),
        detail::CdcRules(), detail::VideoRules(), detail::Audio1Rules(), detail::Audio2Rules(),
        detail::Audio3Rules(), detail::MidiRules(), detail::ClassesRules(), detail::FieldRules()}) {
    rules.insert(rules.end(), table.begin(), table.end());
  }
  return rules;
}

// Sections of USB 2.0, chapter 9, and the sections of USB 3.2 with the same rules.
struct SameSection {
  std::string_view usb2;
  std::string_view usb32;
};
constexpr SameSection kSameSections[] = {
    {"9.6.1", "9.6.1"}, {"9.6.3", "9.6.3"}, {"9.6.5", "9.6.5"},
    {"9.6.6", "9.6.6"}, {"9.6.7", "9.6.9"},
};

constexpr std::uint16_t kUsb30 = 0x0300;

}  // namespace

std::span<Rule const> Catalogue() noexcept {
  static std::vector<Rule> const rules = AllRules();
  return rules;
}

Rule const* FindRule(std::string_view id) noexcept {
  std::span<Rule const> const rules = Catalogue();
  auto const found = std::ranges::find(rules, id, &Rule::id);
  return found != rules.end() ? &*found : nullptr;
}

Citation Cite(Rule const& rule, std::uint16_t bcdUsb) noexcept {
  if (bcdUsb >= kUsb30 && rule.standard == "USB 2.0") {
    auto const same = std::ranges::find(kSameSections, rule.section, &SameSection::usb2);
    if (same != std::end(kSameSections)) {
      return {"USB 3.2", same->usb32};
    }
  }
  return {rule.standard, rule.section};
}

}  // namespace usb_rules
