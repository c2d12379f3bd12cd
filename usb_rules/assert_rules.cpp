#include <usb_rules/assert_rules.h>

#include <algorithm>
#include <string>
#include <vector>

#include <usb_fields/byte_view.h>
#include <usb_rules/catalogue.h>
#include <usb_rules/judge.h>
#include <usb_support/log/log_assert.h>

namespace usb_rules {
namespace {

using usb_fields::ByteView;

// USB 3.2, table 9-6.
enum Type : std::uint8_t {
  kDevice = 0x01,
  kConfiguration = 0x02,
  kQualifier = 0x06,
  kOtherSpeed = 0x07,
  kBos = 0x0F,
};

// Splits ranges into the answers of a device.
class Answers {
 public:
  void Add(CDescriptorRange const& range) {
    ByteView const bytes({range.Bytes(), range.Length()});
    std::size_t offset = 0;
    while (offset + 2 <= bytes.Size()) {
      std::uint8_t const type = bytes.At(offset + 1);
      bool const hasTotal = type == kConfiguration || type == kOtherSpeed || type == kBos;
      std::size_t const own = bytes.At(offset);
      std::size_t const length =
          hasTotal ? std::max<std::size_t>(own, bytes.Number(offset + 2, 2)) : own;
      Run const run{
          .bytes = bytes.Slice(offset, length), .presence = Presence::kGiven, .fileOffset = offset};
      switch (type) {
        case kDevice:
          subject_.device = run;
          break;
        case kConfiguration:
          configurations_.push_back(run);
          break;
        case kQualifier:
          subject_.qualifier = run;
          break;
        case kOtherSpeed:
          otherSpeed_.push_back(run);
          break;
        case kBos:
          subject_.bos = run;
          break;
        default:
          break;
      }
      if (length < 2) {
        return;
      }
      offset += length;
    }
  }

  Subject const& AtSpeed(Speed speed) {
    subject_.speed = speed;
    subject_.configurations = configurations_;
    subject_.otherSpeedConfigurations = otherSpeed_;
    subject_.otherSpeed = otherSpeed_.empty() ? Presence::kNotCaptured : Presence::kGiven;
    return subject_;
  }

 private:
  Subject subject_;
  std::vector<Run> configurations_;
  std::vector<Run> otherSpeed_;
};

void Log(Verdict const& verdict, std::uint16_t release) {
  Rule const& rule = *verdict.rule;
  Citation const citation = Cite(rule, release);
  std::string const standard(citation.standard);
  std::string const section(citation.section);
  TQAssertionNumbers const number = {{standard.c_str(), section.c_str()}};
  for (Finding const& finding : verdict.findings) {
    std::string message(rule.sentence);
    message.append(" ").append(TextOf(finding)).append(" [").append(rule.id).append("]");
    char const* const text = message.c_str();
    LogAssert(TEST_STATUS_FAILURE, 0, &number, &text);
  }
}

}  // namespace

RuleCounts AssertRules(std::initializer_list<CDescriptorRange> ranges,
                       AssertOptions const& options) {
  Answers answers;
  for (CDescriptorRange const& range : ranges) {
    answers.Add(range);
  }
  Judgement const judgement = Judge(answers.AtSpeed(options.speed));
  RuleCounts counts;
  for (Verdict const& verdict : judgement.verdicts) {
    Rule const& rule = *verdict.rule;
    if (rule.level > options.level || !rule.id.starts_with(options.rules)) {
      continue;
    }
    counts.passed += verdict.outcome == Outcome::kPass ? 1U : 0U;
    counts.notRun += verdict.outcome == Outcome::kNotRun ? 1U : 0U;
    if (verdict.outcome == Outcome::kFail) {
      ++counts.failed;
      Log(verdict, judgement.release);
    }
  }
  return counts;
}

}  // namespace usb_rules
