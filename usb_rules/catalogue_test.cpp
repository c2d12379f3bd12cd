#include <usb_rules/catalogue.h>

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

#include <usb_rules/judge.h>

namespace usb_rules {
namespace {

TEST(Catalogue, HasOneRowPerRule) {
  std::set<std::string_view> ids;
  for (Rule const& rule : Catalogue()) {
    EXPECT_TRUE(ids.insert(rule.id).second) << rule.id;
    EXPECT_FALSE(rule.standard.empty()) << rule.id;
    EXPECT_FALSE(rule.section.empty()) << rule.id;
    EXPECT_TRUE(rule.sentence.ends_with('.')) << rule.id;
  }
  EXPECT_GE(ids.size(), 700u);
}

TEST(Catalogue, IsUnderstood) {
  for (Rule const& rule : Catalogue()) {
    EXPECT_EQ(CheckRule(rule), "");
  }
}

TEST(CheckRule, NamesTheRuleAndThePlaceOfAMistake) {
  struct Row {
    std::string_view scope;
    std::string_view holds;
    std::string_view mistake;
  };
  constexpr Row kRows[] = {
      {"usb2.device", "bcdUSBB == 1", "no descriptor has 'bcdUSBB'"},
      {"usb2.device", "bInterval == 1", "none of the judged descriptors has a field of the rule"},
      {"usb2.devise", "bcdUSB == 1", "no descriptor matches 'usb2.devise'"},
      {"usb2.device", "bcdUSB ==", "a name or a number is missing"},
      {"usb2.device", "bcdUSB == 1 1", "this is not understood"},
      {"usb2.device", "(bcdUSB == 1", "')' is missing"},
      {"usb2.device", "frob(bcdUSB)", "'frob' is not a function"},
      {"usb2.device", "bcd(1)", "a field is needed"},
      {"usb2.device", "bcdUSB[1..2] == 0", "this is not a range of bits"},
      {"usb2.device", "count(here, 'type=05') == 0", "a domain is missing"},
      {"usb2.device", "count(config, 'type=05) == 0", "the pattern has no closing quote"},
  };
  for (Row const& row : kRows) {
    Rule const rule{"r", "s", "1", row.scope, Level::kMust, "It holds.", "", row.holds};
    std::string const errors = CheckRule(rule);
    EXPECT_TRUE(errors.starts_with("r: ")) << row.holds;
    EXPECT_NE(errors.find(row.mistake), std::string::npos) << row.holds << ": " << errors;
  }
  std::string deep(200, '(');
  deep += "1";
  deep.append(200, ')');
  Rule const rule{"r", "s", "1", "usb2.device", Level::kMust, "It holds.", "", deep};
  EXPECT_NE(CheckRule(rule).find("nested too deeply"), std::string::npos);
}

// The text of docs/rules.md, made from the catalogue.
std::string Document() {
  std::string text =
      "# The rules\n\n"
      "All rules of the catalogue, grouped by standard. `must`: the standard requires it.\n"
      "`should`: the standard recommends it, or it follows from other requirements. For devices\n"
      "of USB 3.0 and later, chapter 9 of USB 3.2 is cited where it has the same rule.\n\n"
      "[Rules that are left out](rules-left-out.md), [how rules are written](rule-language.md),\n"
      "[rules on real devices](rules-on-real-devices.md).\n\n";
  text += std::to_string(Catalogue().size()) + " rules.\n";
  std::string_view standard;
  for (Rule const& rule : Catalogue()) {
    if (rule.standard != standard) {
      standard = rule.standard;
      text.append("\n## ").append(standard);
      text += "\n\n| rule | section | level | requirement |\n| --- | --- | --- | --- |\n";
    }
    text.append("| `").append(rule.id).append("` | ").append(rule.section);
    text.append(rule.level == Level::kMust ? " | must | " : " | should | ");
    text.append(rule.sentence).append(" |\n");
  }
  return text;
}

// With USB_RULES_UPDATE set, the test writes the document.
TEST(Catalogue, IsWhatTheDocumentShows) {
  std::string const expected = Document();
  if (std::getenv("USB_RULES_UPDATE") != nullptr) {
    std::ofstream(USB_RULES_DOCUMENT, std::ios::binary) << expected;
  }
  std::ifstream file(USB_RULES_DOCUMENT);
  std::string const shown(std::istreambuf_iterator<char>(file), {});
  EXPECT_TRUE(shown == expected) << "docs/rules.md differs from the catalogue; run this test with "
                                    "USB_RULES_UPDATE=1 to write it";
}

}  // namespace
}  // namespace usb_rules
