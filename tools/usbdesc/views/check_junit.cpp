#include <algorithm>

#include <standalone_suite/suite_runtime/showable.h>
#include <tools/usbdesc/views/check.h>

namespace usb_support::usbdesc {
namespace {

using usb_rules::Outcome;

// A text as a value of an attribute: characters that XML 1.0 forbids, and bytes that are not UTF-8,
// are replaced by visible text.
std::string Escaped(std::string_view text) {
  std::string escaped;
  std::string const showable = standalone::Showable(text);
  for (std::size_t i = 0; i < showable.size(); ++i) {
    std::string_view const rest = std::string_view(showable).substr(i);
    if (rest.starts_with("\xEF\xBF\xBE") || rest.starts_with("\xEF\xBF\xBF")) {
      escaped += rest[2] == '\xBE' ? "\\uFFFE" : "\\uFFFF";
      i += 2;
      continue;
    }
    switch (rest[0]) {
      case '&':
        escaped += "&amp;";
        break;
      case '<':
        escaped += "&lt;";
        break;
      case '>':
        escaped += "&gt;";
        break;
      case '"':
        escaped += "&quot;";
        break;
      default:
        escaped += rest[0];
        break;
    }
  }
  return escaped;
}

std::string Attribute(std::string_view name, std::string_view value) {
  return std::string(" ").append(name).append("=\"").append(Escaped(value)).append("\"");
}

std::string Places(CheckedRule const& rule) {
  std::string text;
  for (CheckedFinding const& checked : rule.findings) {
    text += Escaped(usb_rules::TextOf(*checked.finding));
    text += checked.accepted.empty() ? "" : Escaped(" (accepted: " + checked.accepted + ")");
    text += "\n";
  }
  return text;
}

std::string TestCase(CheckedRule const& rule) {
  usb_rules::Rule const& row = *rule.verdict->rule;
  std::string const section =
      std::string(rule.citation.standard) + ", " + std::string(rule.citation.section);
  std::string text = "    <testcase" + Attribute("classname", section) + Attribute("name", row.id);
  switch (rule.verdict->outcome) {
    case Outcome::kPass:
      return text + "/>\n";
    case Outcome::kFail:
      if (rule.isAccepted) {
        return text + "><skipped" + Attribute("message", "accepted") + "/><system-out>" +
               Places(rule) + "</system-out></testcase>\n";
      }
      return text + "><failure" + Attribute("message", row.sentence) + ">" + Places(rule) +
             "</failure></testcase>\n";
    default:
      return text + "><skipped" + Attribute("message", rule.verdict->reason) + "/></testcase>\n";
  }
}

}  // namespace

std::string CheckJunit(CheckedDevice const& device) {
  auto const number = [](std::string_view name, std::size_t value) {
    return Attribute(name, std::to_string(value));
  };
  std::string text = "  <testsuite" + Attribute("name", device.name);
  text += number("tests", device.rules.size()) + number("failures", device.failed);
  text += number("errors", 0);
  text += number("skipped", device.accepted + device.notApplicable + device.notRun) + ">\n";
  for (CheckedRule const& rule : device.rules) {
    text += TestCase(rule);
  }
  return text + "  </testsuite>\n";
}

std::string UnreadJunit(std::string_view input, std::string_view reason) {
  return "  <testsuite" + Attribute("name", input) +
         R"( tests="1" failures="0" errors="1" skipped="0">)"
         "\n    <testcase" +
         Attribute("classname", "usbdesc") + Attribute("name", "input can be read") + "><error" +
         Attribute("message", reason) + "/></testcase>\n  </testsuite>\n";
}

}  // namespace usb_support::usbdesc
