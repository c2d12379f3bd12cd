// For every rule there is a change to a device that breaks the rule, and no other rule except those
// that must then be broken too: samples/breaks.txt.
#include <algorithm>
#include <fstream>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <usb_rules/catalogue.h>
#include <usb_rules/judge.h>
#include <usb_rules/test_support/sample.h>

namespace usb_rules::test {
namespace {

struct Break {
  std::string rule;
  std::string sample;
  std::string change;
  std::set<std::string> also;  // the other rules that must be broken too
};

std::vector<Break> const& AllBreaks() {
  static std::vector<Break> const breaks = [] {
    std::vector<Break> rows;
    std::ifstream file(USB_RULES_SAMPLES "/breaks.txt");
    for (std::string line; std::getline(file, line);) {
      if (line.empty() || line.front() == '#') {
        continue;
      }
      std::istringstream cells(line);
      Break row;
      std::string also;
      std::getline(cells, row.rule, '|');
      std::getline(cells, row.sample, '|');
      std::getline(cells, row.change, '|');
      std::getline(cells, also);
      std::istringstream words(also);
      for (std::string word; words >> word;) {
        row.also.insert(word);
      }
      std::erase(row.rule, ' ');
      std::erase(row.sample, ' ');
      rows.push_back(row);
    }
    return rows;
  }();
  return breaks;
}

std::set<std::string> FailuresOf(Sample& sample) {
  std::set<std::string> failed;
  for (Verdict const& verdict : Judge(sample.Get()).verdicts) {
    if (verdict.outcome == Outcome::kFail) {
      failed.emplace(verdict.rule->id);
    }
  }
  return failed;
}

TEST(Breaks, AreOneARule) {
  std::set<std::string_view> broken;
  for (Break const& row : AllBreaks()) {
    EXPECT_TRUE(broken.insert(row.rule).second) << row.rule << " is there twice";
    EXPECT_NE(FindRule(row.rule), nullptr) << row.rule << " is not a rule";
  }
  for (Rule const& rule : Catalogue()) {
    EXPECT_TRUE(broken.contains(rule.id)) << rule.id << " has no sample that breaks it";
  }
}

TEST(Breaks, BreakTheRuleAndWhatMustFollow) {
  for (Break const& row : AllBreaks()) {
    SCOPED_TRACE(row.rule + ": " + row.sample + ":" + row.change);
    Sample sample = SampleOf(row.sample);
    ASSERT_NO_THROW(sample.Change(row.change));
    std::set<std::string> expected = row.also;
    expected.insert(row.rule);
    EXPECT_EQ(FailuresOf(sample), expected);
  }
}

// A finding is understood without the text of the rule.
TEST(Breaks, AreExplained) {
  struct Row {
    std::string_view rule;
    std::string_view text;
  };
  constexpr Row kRows[] = {
      {"usb3.endpoint.companion-present",
       "bDescriptorType of the next descriptor is 5, expected 30h (SuperSpeed Endpoint Companion)"},
      {"usb2.qualifier.present-at-high", "Device: expected a device qualifier"},
      {"usb2.endpoint.bulk-at-low", "Endpoint: expected an endpoint that is not a bulk endpoint"},
      {"usb3.endpoint.companion-absent", "expected a speed of at least SuperSpeed, not high speed"},
      {"hid.interface.interrupt-in",
       "number of endpoints in the alternate setting (interrupt and IN) is 0, expected at least 1"},
      {"uvc.association.class", "bFunctionSubClass of the interface association is 1, expected 3"},
      {"usb2.string.utf16", "String: expected well-formed UTF-16"},
      {"hid.report.collection-balance", "number of collections without an end is 1, expected 0"},
      {"hid.report.delimiter-left", "number of delimiters without an end is 1, expected 0"},
      {"ncm.header-present", "expected a CDC: Header descriptor in the alternate setting"},
      {"uac2.fields.codes",
       "bmMPEGCapabilities[9..8] is 2, expected a value that is not reserved (Audio 2.0, 4.9.5.1"},
  };
  std::map<std::string, std::string> texts;
  for (Break const& row : AllBreaks()) {
    Sample sample = SampleOf(row.sample);
    sample.Change(row.change);
    for (Verdict const& verdict : Judge(sample.Get()).verdicts) {
      if (verdict.rule->id == row.rule && !verdict.findings.empty()) {
        EXPECT_NE(verdict.findings[0].expected, "") << row.rule;
        texts[row.rule] = TextOf(verdict.findings[0]);
      }
    }
  }
  for (Row const& row : kRows) {
    EXPECT_NE(texts[std::string(row.rule)].find(row.text), std::string::npos)
        << row.rule << ": " << texts[std::string(row.rule)];
  }
}

// A family does not report a fault that a specific rule reports, but it reports other faults.
TEST(Breaks, AreReportedOnce) {
  auto const failuresOf = [](char const* change) {
    Sample sample = SampleOf("dock-full");
    sample.Change(change);
    return FailuresOf(sample);
  };
  using Ids = std::set<std::string>;
  EXPECT_EQ(failuresOf("set bos.usb2_extension bmAttributes = 1"), Ids{"usb3.cap.usb2.bit0"});
  EXPECT_EQ(failuresOf("set bos.usb2_extension bmAttributes = 20"),
            Ids{"usb3.bos.fields.reserved"});
  EXPECT_EQ(failuresOf("set bos.usb2_extension bmAttributes = 21"),
            (Ids{"usb3.cap.usb2.bit0", "usb3.bos.fields.reserved"}));
}

// A rule that never passes could be impossible to keep.
TEST(Samples, KeepEveryRuleSomewhere) {
  std::set<std::string_view> kept;
  for (Sample const& original : AllSamples()) {
    Sample sample = original;
    for (Verdict const& verdict : Judge(sample.Get()).verdicts) {
      if (verdict.outcome == Outcome::kPass) {
        kept.insert(verdict.rule->id);
      }
    }
  }
  for (Rule const& rule : Catalogue()) {
    EXPECT_TRUE(kept.contains(rule.id)) << rule.id << " has no sample that keeps it";
  }
}

// True when the samples tell that the row was changed: the one that keeps the rule fails, or the
// one that breaks it does not.
bool IsNoticed(Rule const& changed, Break const& row) {
  Sample good = SampleOf(row.sample);
  Sample bad = SampleOf(row.sample);
  bad.Change(row.change);
  std::span<Rule const> const catalogue(&changed, 1);
  return Judge(good.Get(), catalogue).verdicts[0].outcome == Outcome::kFail ||
         Judge(bad.Get(), catalogue).verdicts[0].outcome != Outcome::kFail;
}

// True when a sample that keeps all rules fails by the changed row.
bool FailsSomewhere(Rule const& changed) {
  for (Sample const& original : AllSamples()) {
    Sample sample = original;
    if (Judge(sample.Get(), std::span(&changed, 1)).verdicts[0].outcome == Outcome::kFail) {
      return true;
    }
  }
  return false;
}

TEST(Breaks, NoticeARowThatIsInvertedOrWeakened) {
  for (Break const& row : AllBreaks()) {
    Rule const* const rule = FindRule(row.rule);
    ASSERT_NE(rule, nullptr) << row.rule;
    EXPECT_FALSE(IsNoticed(*rule, row)) << row.rule << " as it is";
    std::string const inverted = "!(" + std::string(rule->holds) + ")";
    Rule changed = *rule;
    changed.holds = inverted;
    EXPECT_TRUE(IsNoticed(changed, row) || FailsSomewhere(changed)) << row.rule << " inverted";
    std::string const weakened = "0 == 0 || " + inverted;
    changed.holds = weakened;
    EXPECT_TRUE(IsNoticed(changed, row)) << row.rule << " weakened";
    std::string const never = "0 == 1";
    changed = *rule;
    changed.when = never;
    EXPECT_TRUE(IsNoticed(changed, row)) << row.rule << " with a condition that never holds";
  }
}

}  // namespace
}  // namespace usb_rules::test
