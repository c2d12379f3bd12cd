// A device judged by all rules: either arbitrary answers, or a good device with some bytes changed.
// Each rule has a verdict that agrees with itself, a place is in its answer, and judging again
// gives the same.
#include <algorithm>
#include <cstdint>
#include <vector>

#include <fuzz/oracle.h>
#include <fuzz/targets.h>
#include <tests/support/heap_bytes.h>
#include <usb_rules/catalogue.h>
#include <usb_rules/judge.h>
#include <usb_rules/test_support/sample.h>

namespace usb_support::fuzz {
namespace {

using usb_fields::testing_support::HeapBytes;
using usb_rules::Finding;
using usb_rules::Judgement;
using usb_rules::Presence;
using usb_rules::Verdict;
using usb_rules::test::Sample;

// The answer that a finding is in.
usb_rules::Run const* RunOf(usb_rules::Subject const& subject, Finding const& finding) {
  auto const nth = [&](std::span<usb_rules::Run const> runs) {
    return finding.index < runs.size() ? &runs[finding.index] : nullptr;
  };
  switch (finding.source) {
    case usb_rules::Source::kDevice:
      return &subject.device;
    case usb_rules::Source::kConfiguration:
      return nth(subject.configurations);
    case usb_rules::Source::kOtherSpeedConfiguration:
      return nth(subject.otherSpeedConfigurations);
    case usb_rules::Source::kQualifier:
      return &subject.qualifier;
    case usb_rules::Source::kBos:
      return &subject.bos;
    case usb_rules::Source::kHub:
      return &subject.hub;
    default:
      return nullptr;  // there may be several with one number
  }
}

void CheckFinding(usb_rules::Subject const& subject, Finding const& finding) {
  Require(!usb_rules::PlaceOf(finding).empty() && !usb_rules::TextOf(finding).empty(),
          "a finding has a text");
  if (usb_rules::Run const* const run = RunOf(subject, finding)) {
    Require(finding.offset + finding.length <= run->bytes.size(), "a finding is in its answer");
  } else {
    Require(finding.source >= usb_rules::Source::kString, "a finding has an answer");
  }
}

void CheckVerdict(usb_rules::Subject const& subject, Verdict const& verdict) {
  bool const needsReason = verdict.outcome == usb_rules::Outcome::kNotApplicable ||
                           verdict.outcome == usb_rules::Outcome::kNotRun;
  Require(verdict.reason.empty() != needsReason, "why a rule was not judged");
  Require((verdict.failures != 0) == (verdict.outcome == usb_rules::Outcome::kFail), "failures");
  RequireEqual(verdict.findings.size(),
               std::min<std::size_t>(verdict.failures, usb_rules::kMostFindings), "findings");
  for (Finding const& finding : verdict.findings) {
    CheckFinding(subject, finding);
  }
}

void CheckJudgement(usb_rules::Subject const& subject) {
  Judgement const judgement = usb_rules::Judge(subject);
  Judgement const again = usb_rules::Judge(subject);
  RequireEqual(judgement.verdicts.size(), usb_rules::Catalogue().size(), "verdicts");
  for (std::size_t i = 0; i < judgement.verdicts.size(); ++i) {
    Verdict const& verdict = judgement.verdicts[i];
    Require(verdict.rule == &usb_rules::Catalogue()[i], "the order of the catalogue");
    Require(verdict.outcome == again.verdicts[i].outcome &&
                verdict.failures == again.verdicts[i].failures,
            "the same verdict twice");
    CheckVerdict(subject, verdict);
  }
}

// Sample, then a part, a place (2) and a value for each byte that is changed.
void CheckChanged(Input input, usb_rules::Speed speed) {
  std::vector<Sample> const& samples = usb_rules::test::AllSamples();
  if (input.empty() || samples.empty()) {
    return;
  }
  Sample sample = samples[input[0] % samples.size()];
  for (input = input.subspan(1); input.size() >= 4; input = input.subspan(4)) {
    auto& bytes = sample.Parts()[input[0] % sample.Count()].bytes;
    if (!bytes.empty()) {
      bytes[(input[1] + 256U * input[2]) % bytes.size()] = input[3];
    }
  }
  usb_rules::Subject subject = sample.Get();
  subject.speed = speed != usb_rules::Speed::kUnknown ? speed : subject.speed;
  CheckJudgement(subject);
}

// Kind and length (2) before each answer.
void CheckAnswers(Input input, usb_rules::Speed speed) {
  std::vector<HeapBytes> kept;
  kept.reserve(input.size() / 3 + 1);
  std::vector<usb_rules::Run> configurations;
  std::vector<usb_rules::Run> others;
  std::vector<usb_rules::StringRun> strings;
  std::vector<usb_rules::InterfaceRun> reports;
  std::vector<usb_rules::InterfaceRun> blocks;
  usb_rules::Subject subject;
  subject.speed = speed;
  while (input.size() >= 3) {
    unsigned const kind = input[0];
    std::size_t const length = std::min<std::size_t>(input[1] + 256U * input[2], input.size() - 3);
    kept.emplace_back(input.subspan(3, length));
    input = input.subspan(3 + length);
    usb_rules::Run const run{.bytes = kept.back().Span(),
                             .presence = kind >= 128 ? Presence::kRefused : Presence::kGiven};
    auto const number = static_cast<std::uint8_t>(kind / 9);
    usb_rules::Run* const single[] = {&subject.device, &subject.qualifier, &subject.bos,
                                      &subject.hub};
    switch (unsigned const which = kind % 9) {
      case 4:
        configurations.push_back(run);
        break;
      case 5:
        others.push_back(run);
        break;
      case 6:
        strings.push_back({number, 0x0409, run});
        break;
      case 7:
        reports.push_back({number, run});
        break;
      case 8:
        blocks.push_back({number, run});
        break;
      default:
        *single[which] = run;
        break;
    }
  }
  subject.configurations = configurations;
  subject.otherSpeedConfigurations = others;
  subject.strings = strings;
  subject.reports = reports;
  subject.groupTerminalBlocks = blocks;
  CheckJudgement(subject);
}

}  // namespace

// Bytes: the kind of device and the speed, then as above.
void Rules(Input input) {
  if (input.empty() || input.size() > 0x20000) {
    return;
  }
  auto const speed = static_cast<usb_rules::Speed>(input[0] % 6);
  if (input[0] < 128) {
    CheckChanged(input.subspan(1), speed);
  } else {
    CheckAnswers(input.subspan(1), speed);
  }
}

}  // namespace usb_support::fuzz
