#include <usb_rules/judge.h>

#include <random>
#include <string_view>
#include <vector>

#include <gtest/gtest.h>

#include <usb_rules/catalogue.h>
#include <usb_rules/test_support/sample.h>

namespace usb_rules::test {
namespace {

Verdict VerdictOf(Sample& sample, std::string_view rule) {
  for (Verdict const& verdict : Judge(sample.Get()).verdicts) {
    if (verdict.rule->id == rule) {
      return verdict;
    }
  }
  ADD_FAILURE() << rule << " is not a rule";
  return {};
}

Verdict After(std::string_view sample, std::string_view change, std::string_view rule) {
  Sample changed = SampleOf(sample);
  changed.Change(change);
  return VerdictOf(changed, rule);
}

TEST(Judge, FindsPlaceFieldValueAndWhatWasExpected) {
  Verdict const verdict = After("keyboard-low", "set usb2.endpoint bInterval = 0",
                                "usb2.endpoint.interval-interrupt-low");
  ASSERT_EQ(verdict.outcome, Outcome::kFail);
  ASSERT_EQ(verdict.findings.size(), 1u);
  Finding const& finding = verdict.findings[0];
  EXPECT_EQ(finding.source, Source::kConfiguration);
  EXPECT_EQ(finding.offset, 27u);
  EXPECT_EQ(finding.fileOffset, 33u);
  EXPECT_EQ(finding.descriptor, "Endpoint");
  EXPECT_EQ(finding.field, "bInterval");
  EXPECT_EQ(finding.value, 0u);
  EXPECT_EQ(finding.expected, "at least 10");
}

// Each of these faults is found by its own rule.
TEST(Judge, FindsTheCommonFaultsOfAKeyboard) {
  struct Row {
    char const* change;
    char const* rule;
  };
  constexpr Row kRows[] = {
      {"set usb2.device bLength = 11", "usb2.device.length"},
      {"set usb2.device bMaxPacketSize0 = 7", "usb2.device.ep0-size"},
      {"set usb2.configuration bmAttributes = 81", "usb2.config.attributes-reserved"},
      {"set usb2.endpoint bEndpointAddress = 80", "usb2.endpoint.address-zero"},
      {"set usb2.endpoint bInterval = 0", "usb2.endpoint.interval-interrupt-low"},
      {"set usb2.endpoint wMaxPacketSize = 8008", "usb2.endpoint.size-reserved"},
  };
  for (Row const& row : kRows) {
    EXPECT_EQ(After("keyboard-low", row.change, row.rule).outcome, Outcome::kFail) << row.rule;
  }
  EXPECT_EQ(
      After("modem-full", "set usb2.endpoint#1 wMaxPacketSize = 7", "usb2.endpoint.bulk-size-full")
          .outcome,
      Outcome::kFail);
}

TEST(Judge, TellsWhyARuleIsNotApplicableOrNotRun) {
  Sample keyboard = SampleOf("keyboard-low");
  Verdict const bos = VerdictOf(keyboard, "usb3.bos.length");
  EXPECT_EQ(bos.outcome, Outcome::kNotApplicable);
  EXPECT_EQ(bos.reason, "no BOS");
  Subject subject = keyboard.Get();
  subject.bos.presence = Presence::kNotCaptured;
  subject.stringsPresence = Presence::kNotCaptured;
  subject.strings = {};
  for (Verdict const& verdict : Judge(subject).verdicts) {
    if (verdict.rule->id == "usb3.bos.length") {
      EXPECT_EQ(verdict.outcome, Outcome::kNotRun);
      EXPECT_EQ(verdict.reason, "no BOS captured");
    } else if (verdict.rule->id == "usb2.device.product-string") {
      EXPECT_EQ(verdict.outcome, Outcome::kNotRun);
      EXPECT_EQ(verdict.reason, "no strings captured");
    }
  }
}

TEST(Judge, DoesNotJudgeWhatABrokenLengthHides) {
  Sample sample = SampleOf("composite-high");
  sample.Change("set usb2.interface#1 bLength = 0");
  EXPECT_EQ(VerdictOf(sample, "usb2.config.walk").outcome, Outcome::kFail);
  Verdict const count = VerdictOf(sample, "usb2.config.interfaces-count");
  EXPECT_EQ(count.outcome, Outcome::kNotRun);
  EXPECT_EQ(count.reason, "descriptors after a broken length cannot be read");
}

TEST(Judge, ConcludesTheSpeed) {
  struct Row {
    char const* sample;
    Speed speed;
  };
  constexpr Row kRows[] = {
      {"flash-high", Speed::kHigh},      {"modem-full", Speed::kFull},
      {"uas-super", Speed::kSuper},      {"hub-high-single", Speed::kHigh},
      {"keyboard-low", Speed::kUnknown},
  };
  for (Row const& row : kRows) {
    Sample sample = SampleOf(row.sample);
    sample.Change("speed unknown");
    Judgement const judgement = Judge(sample.Get());
    EXPECT_EQ(judgement.speed, row.speed) << row.sample;
    EXPECT_FALSE(judgement.speedReason.empty()) << row.sample;
  }
}

// PHDC uses the type of the SuperSpeed companion for its own descriptors (PHDC 1.0, 5.2).
TEST(Judge, TakesNoOtherDescriptorForACompanion) {
  std::vector<std::uint8_t> const configuration = {
      9, 2,    31, 0, 1, 1, 0, 0x80, 50,   9, 4, 0, 0, 1, 0x0F, 0, 0, 0,  //
      6, 0x30, 1,  1, 0, 0, 7, 5,    0x81, 3, 8, 0, 10};
  Subject subject;
  usb_rules::Run const runs[] = {{configuration, Presence::kGiven}};
  subject.configurations = runs;
  EXPECT_EQ(Judge(subject).speed, Speed::kUnknown);
}

TEST(Judge, CitesTheStandardOfTheClaimedRelease) {
  Rule const* const rule = FindRule("usb2.config.attributes-bit7");
  ASSERT_NE(rule, nullptr);
  EXPECT_EQ(Cite(*rule, 0x0200).standard, "USB 2.0");
  EXPECT_EQ(Cite(*rule, 0x0310).standard, "USB 3.2");
  EXPECT_EQ(Cite(*rule, 0x0310).section, "9.6.3");
  EXPECT_EQ(Cite(*FindRule("usb2.string.type"), 0x0300).section, "9.6.9");
  EXPECT_EQ(Cite(*FindRule("hid.desc.length"), 0x0300).standard, "HID 1.11");
}

// Holds for every judgement of any bytes.
void ExpectSensible(Sample& sample) {
  Judgement const judgement = Judge(sample.Get());
  ASSERT_EQ(judgement.verdicts.size(), Catalogue().size());
  for (std::size_t i = 0; i < judgement.verdicts.size(); ++i) {
    Verdict const& verdict = judgement.verdicts[i];
    ASSERT_EQ(verdict.rule, &Catalogue()[i]);
    bool const needsReason =
        verdict.outcome == Outcome::kNotApplicable || verdict.outcome == Outcome::kNotRun;
    ASSERT_EQ(verdict.reason.empty(), !needsReason) << verdict.rule->id;
    ASSERT_EQ(verdict.failures != 0, verdict.outcome == Outcome::kFail) << verdict.rule->id;
    ASSERT_EQ(verdict.findings.size(), std::min<std::size_t>(verdict.failures, kMostFindings));
  }
}

TEST(Judge, GivesEveryRuleAVerdictForAnyBytes) {
  std::mt19937 random(20);
  auto const below = [&](std::size_t limit) { return random() % limit; };
  for (Sample const& original : AllSamples()) {
    for (int round = 0; round < 25; ++round) {
      Sample sample = original;
      Part& part = sample.Parts()[below(sample.Parts().size())];
      if (round % 5 == 0) {
        part.bytes.resize(below(part.bytes.size() + 1));
      } else if (!part.bytes.empty()) {
        for (int i = 0; i <= round % 5; ++i) {
          part.bytes[below(part.bytes.size())] = static_cast<std::uint8_t>(random());
        }
      }
      part.bytes.shrink_to_fit();
      ExpectSensible(sample);
    }
  }
}

TEST(Judge, JudgesSamplesCutAtEveryLength) {
  for (char const* const name : {"keyboard-low", "uas-super", "headset-full"}) {
    Sample const original = SampleOf(name);
    for (std::size_t p = 0; p < original.Count(); ++p) {
      for (std::size_t length = 0; length < std::min<std::size_t>(original.At(p).bytes.size(), 200);
           ++length) {
        Sample sample = original;
        Bytes& bytes = sample.Parts()[p].bytes;
        bytes = Bytes(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length));
        ExpectSensible(sample);
      }
    }
  }
}

// 64 KiB of descriptors that rules compare with one another: a judge that is not linear would take
// too long.
TEST(Judge, JudgesTheLargestConfigurations) {
  for (char const* const descriptor :
       {"09 04 00 00 01 03 00 00 00", "07 05 81 03 08 00 01", "09 04 00 00 00 01 01 20 00", "02 24",
        "08 0B 00 FF 01 00 20 00", "05 24 06 00 01"}) {
    Sample sample = SampleOf("keyboard-low");
    Bytes const one = BytesOf(descriptor);
    for (Part& part : sample.Parts()) {
      while (part.kind == "configuration" && part.bytes.size() + one.size() <= 0xFFFF) {
        part.bytes.insert(part.bytes.end(), one.begin(), one.end());
      }
    }
    ExpectSensible(sample);
  }
}

}  // namespace
}  // namespace usb_rules::test
