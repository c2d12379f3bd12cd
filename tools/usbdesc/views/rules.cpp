#include <tools/usbdesc/views/rules.h>

#include <tools/usbdesc/views/wrapped.h>
#include <usb_rules/catalogue.h>

namespace usb_support::usbdesc {
namespace {

std::string_view NameOf(usb_rules::Level level) {
  return level == usb_rules::Level::kMust ? "must" : "should";
}

void AddTerm(Line& line, std::string_view name, std::string_view text) {
  if (!text.empty()) {
    std::string lines = Wrapped(text, 2);
    lines.pop_back();  // the log ends the last line
    line.Add("\n\n").Add(name).Add("\n").Add(lines);
  }
}

}  // namespace

Line RulesText(std::string const& start) {
  Line line;
  std::string_view standard;
  std::size_t count = 0;
  for (usb_rules::Rule const& rule : usb_rules::Catalogue()) {
    if (!rule.id.starts_with(start)) {
      continue;
    }
    if (rule.standard != standard) {
      standard = rule.standard;
      line.Add(count != 0 ? "\n" : "").Add(standard, Piece::kTitle).Add("\n");
    }
    line.Add("  ").Add(rule.id, Piece::kLabel).Add(" (").Add(rule.section).Add(", ");
    line.Add(NameOf(rule.level)).Add(")\n").Add(Wrapped(rule.sentence, 4));
    ++count;
  }
  if (count != 0) {
    line.Add(Counted(count, "rule"));
  }
  return line;
}

Line RuleText(usb_rules::Rule const& rule) {
  Line line;
  line.Add(rule.id, Piece::kLabel);
  AddTerm(line, "Requirement:", rule.sentence);
  std::string section(rule.standard);
  section.append(", ").append(rule.section).append(" (").append(NameOf(rule.level)).append(")");
  usb_rules::Citation const newer = usb_rules::Cite(rule, 0x0320);
  if (newer.standard != rule.standard) {
    section.append("; for devices of USB 3.0 and later ").append(newer.standard);
    section.append(", ").append(newer.section);
  }
  AddTerm(line, "Standard and section:", section);
  AddTerm(line, "Judged descriptors:", rule.scope);
  AddTerm(line, "When it applies:", rule.when);
  AddTerm(line, "In the rule language:", rule.holds);
  return line;
}

}  // namespace usb_support::usbdesc
