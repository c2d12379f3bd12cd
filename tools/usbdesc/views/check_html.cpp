#include <tools/usbdesc/views/check_html.h>

#include <algorithm>
#include <string>

#include <tools/usbdesc/device_subject.h>

namespace usb_support::usbdesc {
namespace {

using usb_rules::Outcome;

// The answer of the outline in which a finding is.
std::size_t RunOf(usb_rules::Finding const& finding, usb_devices::Device const& device,
                  Outline const& outline) {
  usb_devices::Answer const* const answer = AnswerOf(device, finding);
  auto const found = std::ranges::find(outline.Runs(), answer, &OutlineRun::answer);
  return answer == nullptr || found == outline.Runs().end()
             ? kNone
             : static_cast<std::size_t>(found - outline.Runs().begin());
}

}  // namespace

std::vector<HtmlFinding> FindingsOf(CheckedDevice const& checked, usb_devices::Device const& device,
                                    Outline const& outline) {
  std::vector<HtmlFinding> findings;
  for (CheckedRule const& rule : checked.rules) {
    if (!rule.IsBroken()) {
      continue;
    }
    usb_rules::Rule const& row = *rule.verdict->rule;
    for (CheckedFinding const& one : rule.findings) {
      HtmlFinding finding;
      finding.run = RunOf(*one.finding, device, outline);
      finding.offset = one.finding->offset;
      finding.rule = row.id;
      finding.text = std::string(row.sentence) + " " + usb_rules::TextOf(*one.finding) + " (";
      finding.text.append(rule.citation.standard).append(", ");
      finding.text.append(rule.citation.section).append(")");
      finding.isMust = row.level == usb_rules::Level::kMust;
      findings.push_back(std::move(finding));
    }
  }
  return findings;
}

std::vector<RuleChange> CompareRules(CheckedDevice const& before, CheckedDevice const& after) {
  std::vector<RuleChange> changes;
  std::size_t const count = std::min(before.rules.size(), after.rules.size());
  for (std::size_t i = 0; i < count; ++i) {
    Outcome const a = before.rules[i].verdict->outcome;
    Outcome const b = after.rules[i].verdict->outcome;
    bool const isBroken = a == Outcome::kPass && b == Outcome::kFail;
    if (isBroken || (a == Outcome::kFail && b == Outcome::kPass)) {
      usb_rules::Rule const& rule = *before.rules[i].verdict->rule;
      changes.push_back({std::string(rule.id), std::string(rule.sentence), isBroken});
    }
  }
  return changes;
}

}  // namespace usb_support::usbdesc
