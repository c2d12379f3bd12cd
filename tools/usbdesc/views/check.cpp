#include <tools/usbdesc/views/check.h>

#include <algorithm>
#include <utility>

#include <tools/usbdesc/decoded.h>
#include <tools/usbdesc/device_subject.h>
#include <tools/usbdesc/views/wrapped.h>
#include <usb_fields/byte_view.h>
#include <usb_rules/catalogue.h>

namespace usb_support::usbdesc {
namespace {

using usb_rules::Level;
using usb_rules::Outcome;
using usb_rules::Verdict;

constexpr std::size_t kMostShownBytes = 64;  // of a descriptor that are shown
constexpr std::size_t kMostInLine = 16;
constexpr std::size_t kMostRows = 20;  // of the table of broken rules

CheckedFinding Checked(usb_devices::Device const& device, Verdict const& verdict,
                       usb_rules::Finding const& finding, AcceptedFindings& accepted) {
  CheckedFinding checked;
  checked.finding = &finding;
  checked.place = usb_rules::PlaceOf(finding);
  if (usb_devices::Answer const* const answer = AnswerOf(device, finding)) {
    checked.file = answer->source.name;
    checked.line = static_cast<std::size_t>(answer->source.line);
    checked.bytes = usb_fields::ByteView(answer->bytes).Slice(finding.offset, finding.length);
  }
  if (std::string const* const reason = accepted.Find(verdict.rule->id, checked.place)) {
    checked.accepted = *reason;
  }
  return checked;
}

CheckedRule Checked(usb_devices::Device const& device, Verdict const& verdict,
                    std::uint16_t release, AcceptedFindings& accepted) {
  CheckedRule rule{.verdict = &verdict, .citation = usb_rules::Cite(*verdict.rule, release)};
  for (usb_rules::Finding const& finding : verdict.findings) {
    rule.findings.push_back(Checked(device, verdict, finding, accepted));
  }
  // Findings that a verdict does not keep cannot be accepted.
  rule.isAccepted =
      !rule.findings.empty() && rule.findings.size() == verdict.failures &&
      std::ranges::none_of(rule.findings, &std::string::empty, &CheckedFinding::accepted);
  return rule;
}

std::string_view OutcomeName(CheckedRule const& rule) {
  switch (rule.verdict->outcome) {
    case Outcome::kPass:
      return "pass";
    case Outcome::kFail:
      return rule.isAccepted ? "accepted" : "fail";
    case Outcome::kNotApplicable:
      return "not applicable";
    default:
      return "not run";
  }
}

std::string BytesInLines(std::span<std::uint8_t const> bytes) {
  std::string text;
  for (std::size_t i = 0; i < std::min(bytes.size(), kMostShownBytes); ++i) {
    text += i % kMostInLine == 0 ? "    " : " ";
    text += Hex(bytes[i], 2);
    bool const isLast = i + 1 == bytes.size() || (i + 1) % kMostInLine == 0;
    text += isLast ? "\n" : "";
  }
  if (bytes.size() > kMostShownBytes) {
    text += "    and " + Counted(bytes.size() - kMostShownBytes, "more byte") + "\n";
  }
  return text;
}

void AddFinding(Line& line, CheckedFinding const& checked) {
  usb_rules::Finding const& finding = *checked.finding;
  line.Add(Wrapped(usb_rules::TextOf(finding), 2), Piece::kPlain);
  if (!checked.accepted.empty()) {
    line.Add(Wrapped("accepted: " + checked.accepted, 4));
  }
  std::string place = checked.file.empty() ? "" : checked.file + ", ";
  place +=
      checked.line != 0 ? "line " + std::to_string(checked.line) : OffsetText(finding.fileOffset);
  line.Add("    " + place + "\n", Piece::kOffset);
  line.Add(BytesInLines(checked.bytes));
}

void AddRule(Line& line, CheckedRule const& rule) {
  usb_rules::Rule const& row = *rule.verdict->rule;
  std::string_view const outcome = OutcomeName(rule);
  std::string section("(");
  section.append(rule.citation.standard).append(", ").append(rule.citation.section);
  section += row.level == Level::kShould ? ", should)" : ")";
  bool const fits = outcome.size() + row.id.size() + section.size() + 2 <= kTerminalColumns;
  line.Add(outcome, rule.IsBroken() ? Piece::kFault : Piece::kPlain);
  line.Add(" ").Add(row.id, Piece::kLabel).Add(fits ? " " : "\n  ").Add(section).Add("\n");
  if (!rule.verdict->reason.empty()) {
    line.Add(Wrapped(rule.verdict->reason, 2));
  }
  if (rule.findings.empty()) {
    return;
  }
  line.Add(Wrapped(row.sentence, 2));
  for (CheckedFinding const& finding : rule.findings) {
    AddFinding(line, finding);
  }
  if (std::size_t const more = rule.verdict->failures - rule.findings.size(); more != 0) {
    line.Add("  and " + Counted(more, "more place") + "\n");
  }
}

}  // namespace

bool CheckOptions::Takes(usb_rules::Rule const& rule) const {
  auto const begins = [&](std::string const& start) { return rule.id.starts_with(start); };
  return rule.level <= level && (rules.empty() || std::ranges::any_of(rules, begins)) &&
         std::ranges::find(skipped, rule.id) == skipped.end();
}

CheckedDevice Check(usb_devices::Device const& device, std::string name,
                    CheckOptions const& options, AcceptedFindings& accepted) {
  CheckedDevice checked;
  checked.name = std::move(name);
  DeviceSubject const subject(device, options.speed);
  checked.judgement = usb_rules::Judge(subject.Get());
  if (subject.Get().device.presence == usb_rules::Presence::kNotCaptured) {
    checked.lacking.emplace_back("device descriptor");
  }
  if (subject.Get().configurations.empty()) {
    checked.lacking.emplace_back("configuration");
  }
  for (Verdict const& verdict : checked.judgement.verdicts) {
    if (!options.Takes(*verdict.rule)) {
      continue;
    }
    checked.rules.push_back(Checked(device, verdict, checked.judgement.release, accepted));
    std::size_t& count = verdict.outcome == Outcome::kPass            ? checked.passed
                         : verdict.outcome == Outcome::kNotApplicable ? checked.notApplicable
                         : verdict.outcome == Outcome::kNotRun        ? checked.notRun
                         : checked.rules.back().isAccepted            ? checked.accepted
                                                                      : checked.failed;
    ++count;
  }
  return checked;
}

std::string CountsText(CheckedDevice const& device) {
  std::string text = "pass " + std::to_string(device.passed);
  text += ", fail " + std::to_string(device.failed);
  if (device.accepted != 0) {
    text += ", accepted " + std::to_string(device.accepted);
  }
  text += ", not applicable " + std::to_string(device.notApplicable);
  return text += ", not run " + std::to_string(device.notRun);
}

std::string ReasonsText(CheckedDevice const& device) {
  std::string text;
  std::vector<std::string_view> reasons;
  for (CheckedRule const& rule : device.rules) {
    std::string_view const reason = rule.verdict->reason;
    if (rule.verdict->outcome == Outcome::kNotRun &&
        std::ranges::find(reasons, reason) == reasons.end()) {
      text.append(reasons.empty() ? " (" : ", ").append(reason);
      reasons.push_back(reason);
    }
  }
  return text += reasons.empty() ? "" : ")";
}

std::string LackingText(CheckedDevice const& device) {
  std::string text;
  for (std::string_view const what : device.lacking) {
    text.append(text.empty() ? "judged in part only: no " : " and no ").append(what);
  }
  return text += text.empty() ? "" : " in the input";
}

Line CheckText(CheckedDevice const& device, bool showsAll) {
  Line line;
  line.Add(Wrapped("speed: " + SpeedText(device.judgement.speed, device.judgement.speedReason), 0));
  for (CheckedRule const& rule : device.rules) {
    if (showsAll || rule.verdict->outcome == Outcome::kFail) {
      AddRule(line, rule);
    }
  }
  std::string counts = Wrapped(CountsText(device) + ReasonsText(device), 0);
  counts.pop_back();
  line.Add(counts);
  if (!device.WasJudged()) {
    line.Add("\nno rule could be judged", Piece::kFault);
  } else if (!device.lacking.empty()) {
    line.Add("\n" + LackingText(device), Piece::kFault);
  }
  return line;
}

void CheckTotals::Add(std::span<CheckedDevice const> devices) {
  bool const wasJudged =
      !devices.empty() && std::ranges::all_of(devices, &CheckedDevice::WasJudged);
  std::size_t& count = std::ranges::any_of(devices, [](auto const& d) { return d.failed != 0; })
                           ? counts_.broken
                       : wasJudged ? counts_.good
                                   : counts_.invalid;
  ++count;
  std::vector<usb_rules::Rule const*> broken;
  for (CheckedDevice const& device : devices) {
    for (CheckedRule const& rule : device.rules) {
      if (rule.IsBroken() && std::ranges::find(broken, rule.verdict->rule) == broken.end()) {
        broken.push_back(rule.verdict->rule);
        ++byRule_[rule.verdict->rule];
      }
    }
  }
}

std::string CheckTotals::MostBroken() const {
  std::vector<std::pair<usb_rules::Rule const*, std::size_t>> rows(byRule_.begin(), byRule_.end());
  // Rules with the same count stay in the order of the catalogue.
  std::ranges::stable_sort(rows, std::ranges::greater(),
                           &std::pair<usb_rules::Rule const*, std::size_t>::second);
  std::string table;
  for (auto const& [rule, count] : std::span(rows).first(std::min(rows.size(), kMostRows))) {
    std::string const number = std::to_string(count);
    table.append(number.size() < 6 ? 6 - number.size() : 0, ' ').append(number).append("  ");
    table.append(rule->id).append("\n").append(Wrapped(rule->sentence, 8));
  }
  if (rows.size() > kMostRows) {
    table += "        and " + Counted(rows.size() - kMostRows, "more rule") + "\n";
  }
  return table;
}

}  // namespace usb_support::usbdesc
