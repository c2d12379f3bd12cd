#include <usb_rules/judge.h>

#include <algorithm>
#include <array>
#include <span>
#include <vector>

#include <usb_fields/speed.h>
#include <usb_rules/catalogue.h>
#include <usb_rules/evaluator.h>
#include <usb_rules/explanation.h>
#include <usb_rules/expression.h>
#include <usb_rules/field_checks.h>
#include <usb_rules/model.h>
#include <usb_rules/vocabulary.h>

namespace usb_rules {
namespace {

using detail::BitOf;
using detail::Check;
using detail::Evaluator;
using detail::Explainer;
using detail::Item;
using detail::Model;
using detail::Program;
using detail::Programs;
using detail::Value;
using detail::Why;

// In the order of Why.
constexpr std::array<std::string_view, static_cast<std::size_t>(Why::kCount)> kReasons = {
    "",
    "a compared value is missing",
    "a descriptor is too short for the field",
    "descriptors after a broken length cannot be read",
    "the speed is not known",
    "no device descriptor captured",
    "no BOS captured",
    "no device qualifier captured",
    "no strings captured",
    "no hub descriptor captured",
    "no other-speed configuration captured",
    "not all configurations captured",
    "no group terminal blocks captured",
};

constexpr std::string_view kNothing = "the device has no such descriptor";
constexpr std::string_view kConditionFalse = "its condition does not hold";

// bDeviceClass (USB 2.0, table 9-8), and the class of hubs.
constexpr std::size_t kClassOffset = 4;
constexpr std::uint8_t kHubClass = 9;

struct Absence {
  Outcome outcome;
  std::string_view reason;
};

// True when no configuration has an interface that should answer.
bool HasNone(bool hasInterface, Subject const& subject) {
  return !hasInterface && !subject.configurations.empty();
}

// The outcome of a rule when there is nothing to judge.
Absence AbsenceOf(Source source, Model const& model) {
  Subject const& subject = model.GetSubject();
  usb_fields::ByteView const device(subject.device.bytes);
  auto const absent = [](Presence presence, std::string_view unknown, std::string_view none) {
    return presence == Presence::kNotCaptured ? Absence{Outcome::kNotRun, unknown}
                                              : Absence{Outcome::kNotApplicable, none};
  };
  auto const given = [](bool isGiven, std::string_view unknown) {
    return isGiven ? Absence{Outcome::kNotApplicable, kNothing}
                   : Absence{Outcome::kNotRun, unknown};
  };
  switch (source) {
    case Source::kDevice:
      return absent(subject.device.presence, "no device descriptor captured", kNothing);
    case Source::kOtherSpeedConfiguration:
      return absent(subject.otherSpeed, "no other-speed configuration captured",
                    "no other-speed configuration");
    case Source::kQualifier:
      return absent(subject.qualifier.presence, "no device qualifier captured",
                    "no device qualifier");
    case Source::kBos:
      return subject.bos.presence == Presence::kGiven
                 ? Absence{Outcome::kNotApplicable, kNothing}
                 : absent(subject.bos.presence, "no BOS captured", "no BOS");
    case Source::kHub:
      return device.Size() > kClassOffset && device.At(kClassOffset) != kHubClass
                 ? Absence{Outcome::kNotApplicable, "not a hub"}
                 : absent(subject.hub.presence, "no hub descriptor captured", "not a hub");
    case Source::kString:
      return absent(subject.stringsPresence, "no strings captured", kNothing);
    case Source::kReport:
      return given(!subject.reports.empty() || HasNone(model.HasHid(), subject),
                   "no report descriptors captured");
    case Source::kGroupTerminalBlocks:
      return given(
          !subject.groupTerminalBlocks.empty() || HasNone(model.HasGroupTerminalBlocks(), subject),
          "no group terminal blocks captured");
    default:
      return given(!subject.configurations.empty(), "no configuration captured");
  }
}

// The results of one rule.
struct Tally {
  bool hasPassed = false;
  bool wasSkipped = false;  // its condition did not hold
  Why unknown = Why::kOk;
};

// A rule that a descriptor breaks, with the occurrence of a repeated field.
struct Broken {
  std::uint16_t rule;
  std::uint16_t index;
};

class Judging {
 public:
  Judging(Programs const& programs, Model const& model, Judgement& judgement)
      : programs_(programs),
        model_(model),
        evaluator_(programs, model),
        explainer_(programs, model, evaluator_),
        judgement_(judgement),
        tallies_(programs.All().size()),
        isSkipped_(programs.GroupCount()) {
    judgement.verdicts.resize(programs.All().size());
  }

  void Run() {
    for (detail::RunOfItems const& run : model_.Runs()) {
      for (std::int32_t item = run.first; item < run.last; ++item) {
        if (item == run.first) {
          JudgeAll(programs_.OfHead(run.source), item);
        }
        Item const& own = model_.At(item);
        if (own.layout != detail::Vocabulary::kNoLayout) {
          JudgeAll(programs_.OfLayout(own.layout), item);
        }
        bool const isDescriptor =
            run.source == Source::kConfiguration || run.source == Source::kOtherSpeedConfiguration;
        if (isDescriptor) {
          JudgeAll(programs_.OfType(own.type), item);
        }
        if (item != run.first || !HasWrongType(item)) {
          JudgeTable(item);
        }
        broken_.clear();
      }
    }
    for (std::size_t i = 0; i < tallies_.size(); ++i) {
      Settle(i);
    }
  }

 private:
  void JudgeAll(std::vector<detail::Group> const& groups, std::int32_t item) {
    for (detail::Group const& group : groups) {
      bool const hasGuard = group.guard != detail::kNone;
      Value const guard = hasGuard ? evaluator_.Evaluate(group.guard, item, 0) : Value{.number = 1};
      if (guard.IsTrue()) {
        for (std::uint16_t const rule : group.own) {
          JudgeOne(rule, item, hasGuard);
        }
        JudgeAll(group.further, item);
      } else if (guard.IsKnown()) {
        Skip(group);
      } else {
        for (std::uint16_t const rule : group.all) {
          JudgeOne(rule, item, false);
        }
      }
    }
  }

  void Skip(detail::Group const& group) {
    if (!isSkipped_[group.number]) {
      isSkipped_[group.number] = true;
      for (std::uint16_t const rule : group.all) {
        tallies_[rule].wasSkipped = true;
      }
    }
  }

  void JudgeOne(std::uint16_t rule, std::int32_t item, bool isApplicable) {
    Program const& program = programs_.All()[rule];
    int const repetitions = program.mayRepeat ? evaluator_.Repetitions(program, item) : -1;
    for (int index = 0; index < (repetitions < 0 ? 1 : repetitions); ++index) {
      if (!JudgeOccurrence(rule, item, static_cast<std::uint16_t>(index), isApplicable)) {
        return;  // one finding per descriptor is enough
      }
    }
  }

  // False when the rule is broken.
  bool JudgeOccurrence(std::uint16_t rule, std::int32_t item, std::uint16_t index,
                       bool isApplicable) {
    Program const& program = programs_.All()[rule];
    Tally& tally = tallies_[rule];
    if (!evaluator_.HasFields(program, item, index)) {
      return true;  // the rule does not apply to this form of the descriptor
    }
    if (!isApplicable && program.when != detail::kNone) {
      Value const when = evaluator_.Evaluate(program.when, item, index);
      if (!when.IsTrue()) {
        tally.wasSkipped = tally.wasSkipped || when.IsKnown();
        tally.unknown = when.IsKnown() ? tally.unknown : when.why;
        return true;
      }
    }
    Value const holds = evaluator_.Evaluate(program.holds, item, index);
    if (!holds.IsKnown()) {
      tally.unknown = holds.why;
      return true;
    }
    if (holds.IsTrue()) {
      tally.hasPassed = true;
      return true;
    }
    broken_.push_back({rule, index});
    AddFinding(judgement_.verdicts[rule], item,
               [&] { return explainer_.Explain(program.holds, item, index); });
    return false;
  }

  // Judges the length and fields of a descriptor by its table. Specific rules take precedence: the
  // faults that they have found are not reported again.
  void JudgeTable(std::int32_t item) {
    Item const& own = model_.At(item);
    detail::Vocabulary const& words = detail::Vocabulary::Get();
    detail::TableRules const& rules = programs_.OfTable(own.layout);
    if (rules[0] != detail::kNoRule) {
      JudgeCheck(rules[0], Check::kLength, item, nullptr, evaluator_.HasTableLength(item) ? 0 : 1);
    }
    if ((words.ChecksOfLayout(own.layout) & ~BitOf(Check::kLength)) == 0) {
      return;
    }
    std::uint8_t const* const checks = words.ChecksOfRows(own.layout);
    for (detail::Cell const& cell : model_.CellsOf(item)) {
      for (std::size_t n = 1; checks[cell.row] >> n != 0; ++n) {
        if ((checks[cell.row] >> n & 1U) != 0 && rules[n] != detail::kNoRule && !cell.isCut) {
          auto const check = static_cast<Check>(n);
          JudgeCheck(rules[n], check, item, &cell,
                     WrongBits(check, *words.Field(own.layout, cell.row), cell.value));
        }
      }
    }
    for (std::size_t n = 1; own.isCut && n < rules.size(); ++n) {
      if (rules[n] != detail::kNoRule) {
        tallies_[rules[n]].unknown = Why::kCut;
      }
    }
  }

  // With a wrong type, the first descriptor of an answer was read by the wrong table.
  bool HasWrongType(std::int32_t item) {
    return std::ranges::any_of(broken_, [&](Broken const& one) {
      return explainer_.Explain(programs_.All()[one.rule].holds, item, one.index).field ==
             "bDescriptorType";
    });
  }

  void JudgeCheck(std::uint16_t rule, Check check, std::int32_t item, detail::Cell const* cell,
                  std::uint64_t wrong) {
    if (wrong == 0) {
      tallies_[rule].hasPassed = true;
      return;
    }
    wrong &= ~FoundBits(item, cell);
    if (wrong != 0) {
      AddFinding(judgement_.verdicts[rule], item,
                 [&] { return explainer_.ExplainCheck(check, item, cell, wrong); });
    }
  }

  // The bits of a field, or of the length, in which specific rules have found a fault.
  std::uint64_t FoundBits(std::int32_t item, detail::Cell const* cell) {
    std::uint16_t const offset = cell != nullptr ? cell->offset : 0;
    std::uint64_t found = 0;
    for (Broken const& one : broken_) {
      detail::Cause const cause =
          explainer_.Explain(programs_.All()[one.rule].holds, item, one.index);
      found |= cause.isField && cause.offset == offset ? cause.mask : 0;
    }
    return found;
  }

  template <typename Explain>
  void AddFinding(Verdict& verdict, std::int32_t item, Explain const& explain) {
    ++verdict.failures;
    if (verdict.findings.size() >= kMostFindings) {
      return;
    }
    Item const& own = model_.At(item);
    detail::RunOfItems const& run = model_.RunOf(item);
    detail::Cause cause = explain();
    Finding finding;
    finding.source = run.source;
    finding.index = run.index;
    finding.offset = own.offset;
    finding.fileOffset = run.run->fileOffset + own.offset + cause.offset;
    finding.length = static_cast<std::uint16_t>(own.bytes.Size());
    finding.descriptor = detail::Vocabulary::Get().LayoutName(own.layout);
    finding.field = std::move(cause.field);
    finding.value = cause.value;
    finding.isHexadecimal = cause.isHexadecimal;
    finding.expected = std::move(cause.expected);
    verdict.findings.push_back(std::move(finding));
  }

  void Settle(std::size_t rule) {
    Program const& program = programs_.All()[rule];
    Tally const& tally = tallies_[rule];
    Verdict& verdict = judgement_.verdicts[rule];
    verdict.rule = program.rule;
    if (verdict.failures != 0) {
      verdict.outcome = Outcome::kFail;
    } else if (tally.unknown != Why::kOk) {
      verdict.outcome = Outcome::kNotRun;
      verdict.reason = kReasons[static_cast<std::size_t>(tally.unknown)];
    } else if (tally.hasPassed) {
      verdict.outcome = Outcome::kPass;
    } else if (tally.wasSkipped) {
      verdict.outcome = Outcome::kNotApplicable;
      verdict.reason = kConditionFalse;
    } else {
      Absence const absence = AbsenceOf(program.source, model_);
      verdict.outcome = absence.outcome;
      verdict.reason = absence.reason;
    }
  }

  Programs const& programs_;
  Model const& model_;
  Evaluator evaluator_;
  Explainer explainer_;
  Judgement& judgement_;
  std::vector<Tally> tallies_;
  std::vector<Broken> broken_;   // by the current descriptor
  std::vector<bool> isSkipped_;  // by group: its rules have recorded that a condition did not hold
};

// The given speed, or otherwise the one that the descriptors show.
usb_fields::SpeedGuess SpeedOf(Subject const& subject) {
  if (subject.speed != Speed::kUnknown) {
    return {.speed = subject.speed};
  }
  std::vector<std::span<std::uint8_t const>> runs{subject.device.bytes};
  for (Run const& run : subject.configurations) {
    runs.push_back(run.bytes);
  }
  return usb_fields::GuessSpeed(runs);
}

Judgement JudgeBy(Programs const& programs, Subject const& subject) {
  usb_fields::SpeedGuess const guess = SpeedOf(subject);
  Judgement judgement;
  judgement.speed = guess.speed;
  judgement.speedReason = guess.reason;
  usb_fields::ByteView const device(subject.device.bytes);
  judgement.release = static_cast<std::uint16_t>(device.Number(2, 2));
  Model const model(subject, guess.speed);
  Judging(programs, model, judgement).Run();
  return judgement;
}

}  // namespace

Judgement Judge(Subject const& subject) {
  static Programs const programs(Catalogue());
  return JudgeBy(programs, subject);
}

Judgement Judge(Subject const& subject, std::span<Rule const> catalogue) {
  return JudgeBy(Programs(catalogue), subject);
}

std::string CheckRule(Rule const& rule) {
  return Programs(std::span(&rule, 1)).Errors();
}

}  // namespace usb_rules
