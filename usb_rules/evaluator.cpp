#include <usb_rules/evaluator.h>

#include <algorithm>
#include <array>
#include <bit>

#include <usb_fields/codes.h>
#include <usb_fields/reader.h>
#include <usb_rules/field_checks.h>
#include <usb_rules/vocabulary.h>

namespace usb_rules::detail {
namespace {

namespace codes = usb_fields::codes;
using usb_fields::ByteView;

std::uint64_t KeyOf(std::int32_t term, std::int32_t item) {
  return std::uint64_t{static_cast<std::uint32_t>(term)} << 32U | static_cast<std::uint32_t>(item);
}

Value Flag(bool isTrue) {
  return {.number = isTrue ? 1 : 0};
}

bool HasExactLength(Item const& item) {
  return item.declared >= item.least && !item.isCut &&
         (item.exact < 0 || item.exact == item.declared);
}

}  // namespace

Evaluator::Evaluator(Programs const& programs, Model const& model)
    : programs_(programs),
      model_(model),
      words_(Vocabulary::Get()) {
  collected_.reserve(model.Items().size());
  seen_.reserve(model.Items().size());
}

int Evaluator::Repetitions(Program const& program, std::int32_t item) const {
  int count = -1;
  for (std::uint16_t const name : program.names) {
    Slot const slot = words_.Find(model_.At(item).layout, name);
    if (slot.repeats) {
      count = std::max(count, model_.Repetitions(item, slot));
    }
  }
  return count;
}

bool Evaluator::HasFields(Program const& program, std::int32_t item, std::uint16_t index) {
  for (std::uint16_t const name : program.names) {
    if (FieldOf(name, item, index).why == Why::kMissing) {
      return false;
    }
  }
  return true;
}

Value Evaluator::FieldOf(std::uint16_t name, std::int32_t item,
                         std::uint16_t index) const noexcept {
  Slot const slot = SlotOf(name, item);
  Cell const* const cell = model_.CellOf(item, slot, index);
  if (cell != nullptr && !cell->isCut) {
    return {.number = static_cast<std::int64_t>(cell->value)};
  }
  // Fields after a cut field were not read.
  bool const isCut = cell != nullptr || (model_.At(item).isCut && slot.IsThere());
  return {.why = isCut ? Why::kCut : Why::kMissing};
}

Value Evaluator::Arithmetic(Op op, Value left, Value right) const {
  if (left.why != Why::kOk || right.why != Why::kOk) {
    bool const takesLeft = left.why != Why::kOk && (left.why != Why::kMissing || right.IsKnown());
    Why const why = takesLeft ? left.why : right.why;
    // A comparison with a missing value is false.
    return why == Why::kMissing && op >= Op::kEqual ? Flag(false) : Value{.why = why};
  }
  std::int64_t const a = left.number;
  std::int64_t const b = right.number;
  auto const bits = [](std::int64_t number) { return static_cast<std::uint64_t>(number); };
  auto const wrap = [](std::uint64_t number) {
    return Value{.number = static_cast<std::int64_t>(number)};
  };
  switch (op) {
    case Op::kAdd:
      return wrap(bits(a) + bits(b));
    case Op::kSubtract:
      return wrap(bits(a) - bits(b));
    case Op::kMultiply:
      return wrap(bits(a) * bits(b));
    case Op::kDivide:
      return b <= 0 ? Value{.why = Why::kMissing} : Value{.number = a / b};
    case Op::kRemainder:
      return b <= 0 ? Value{.why = Why::kMissing} : Value{.number = a % b};
    case Op::kBitAnd:
      return wrap(bits(a) & bits(b));
    case Op::kShift:
      return b < 0 || b > 63 ? Value{} : wrap(bits(a) >> b);
    case Op::kEqual:
      return Flag(a == b);
    case Op::kNotEqual:
      return Flag(a != b);
    case Op::kLess:
      return Flag(a < b);
    case Op::kLessOrEqual:
      return Flag(a <= b);
    case Op::kGreater:
      return Flag(a > b);
    default:
      return Flag(a >= b);
  }
}

Value Evaluator::Logic(Term const& term, std::int32_t item, std::uint16_t index) {
  Value left = Evaluate(term.left, item, index);
  if (term.op == Op::kNot) {
    return left.IsKnown() ? Flag(!left.IsTrue()) : left;
  }
  if (term.op == Op::kImplies && left.IsKnown()) {
    left = Flag(!left.IsTrue());
  }
  bool const decides = term.op != Op::kAnd;  // a true value decides "or" and "implies"
  if (left.IsKnown() && left.IsTrue() == decides) {
    return Flag(decides);
  }
  Value const right = Evaluate(term.right, item, index);
  if (right.IsKnown() && right.IsTrue() == decides) {
    return Flag(decides);
  }
  return !left.IsKnown() ? left : right.IsKnown() ? Flag(!decides) : right;
}

Value Evaluator::In(Term const& term, std::int32_t item, std::uint16_t index) {
  Value const value = Evaluate(term.left, item, index);
  if (value.why != Why::kOk) {
    return value.why == Why::kMissing ? Flag(false) : value;
  }
  for (std::int32_t next = term.right; next != kNone; next = programs_.At(next).third) {
    Term const& range = programs_.At(next);
    Value const low = Evaluate(range.left, item, index);
    Value const high = Evaluate(range.right, item, index);
    if (!low.IsKnown() || !high.IsKnown()) {
      return low.IsKnown() ? high : low;
    }
    if (low.why == Why::kOk && high.why == Why::kOk && value.number >= low.number &&
        value.number <= high.number) {
      return Flag(true);
    }
  }
  return Flag(false);
}

Value Evaluator::OfField(Term const& term, std::int32_t item, std::uint16_t index) {
  Term const& name = programs_.At(term.left);
  std::int32_t const owner = item;
  Cell const* const cell = name.op == Op::kField ? CellOf(name.name, owner, index) : nullptr;
  if (cell == nullptr || cell->isCut) {
    return FieldOf(name.name, item, index);  // the reason why there is none
  }
  Item const& own = model_.At(owner);
  usb_fields::Field const* const field = words_.Field(own.layout, cell->row);
  switch (term.op) {
    case Op::kReserved:
      return Flag(field == nullptr ||
                  (WrongReserved(*field, cell->value) & MaskOf(term.high, term.low)) == 0);
    case Op::kKnown:
      return Flag(field == nullptr || IsKnownCode(*field, cell->value));
    case Op::kBcd:
      return Flag(HasDecimalDigits(cell->value));
    default: {
      // All bytes as one number; longer fields are hashed, and only zero stays zero.
      std::uint64_t number = 0;
      bool isZero = true;
      for (std::size_t i = 0; i < cell->size; ++i) {
        std::uint8_t const byte = own.bytes.At(cell->offset + i);
        number = (number ^ byte) * 0x100000001B3U;
        isZero = isZero && byte == 0;
      }
      return {.number = isZero ? 0 : static_cast<std::int64_t>(number | 1U)};
    }
  }
}

Value Evaluator::OfOccurrences(Term const& term, std::int32_t item, std::uint16_t index) {
  Slot const slot = words_.Find(model_.At(item).layout, programs_.At(term.left).name);
  if (!slot.IsThere()) {
    return {.why = Why::kMissing};
  }
  Value const wanted = term.right != kNone ? Evaluate(term.right, item, index) : Value{};
  if (wanted.why != Why::kOk) {
    return wanted;
  }
  std::uint64_t joined = 0;
  unsigned shift = 0;
  std::uint64_t before = 0;
  bool isListed = false;
  bool rises = true;
  for (Cell const& cell : model_.CellsOf(item)) {
    if (cell.slot != slot.row) {
      continue;
    }
    if (cell.isCut) {
      return {.why = Why::kCut};
    }
    joined |= shift < 64 ? cell.value << shift : 0;
    shift += 8U * cell.size;
    isListed = isListed || cell.value == static_cast<std::uint64_t>(wanted.number);
    rises = rises && (cell.index == 0 || cell.value > before);
    before = cell.value;
  }
  return term.op == Op::kJoined   ? Value{.number = static_cast<std::int64_t>(joined)}
         : term.op == Op::kListed ? Flag(isListed)
                                  : Flag(rises);
}

Value Evaluator::OfTable(Check check, std::int32_t item) const {
  Item const& own = model_.At(item);
  if (check == Check::kLength) {
    return Flag(HasExactLength(own));
  }
  if (own.isCut) {
    return {.why = Why::kCut};
  }
  return Flag(std::ranges::all_of(model_.CellsOf(item), [&](Cell const& cell) {
    usb_fields::Field const* const field = words_.Field(own.layout, cell.row);
    return field == nullptr || WrongBits(check, *field, cell.value) == 0;
  }));
}

Value Evaluator::EvaluateTerm(std::int32_t index, std::int32_t item, std::uint16_t occurrence) {
  Term const& term = programs_.At(index);
  switch (term.op) {
    case Op::kBits: {
      Value value = Evaluate(term.left, item, occurrence);
      value.number = static_cast<std::int64_t>(
          (static_cast<std::uint64_t>(value.number) & MaskOf(term.high, term.low)) >> term.low);
      return value;
    }
    case Op::kBitCount: {
      Value value = Evaluate(term.left, item, occurrence);
      value.number = std::popcount(static_cast<std::uint64_t>(value.number));
      return value;
    }
    case Op::kAnd:
    case Op::kOr:
    case Op::kImplies:
    case Op::kNot:
      return Logic(term, item, occurrence);
    case Op::kIn:
      return In(term, item, occurrence);
    case Op::kFact:
      return FactOf(static_cast<Fact>(term.what), item);
    case Op::kNode:
    case Op::kLookup:
    case Op::kFirst: {
      Why why = Why::kOk;
      std::int32_t const node = NodeOf(index, item, occurrence, why);
      return why == Why::kOk || why == Why::kMissing ? Flag(node != kNone) : Value{.why = why};
    }
    case Op::kMember: {
      Why why = Why::kOk;
      std::int32_t const node = NodeOf(term.left, item, occurrence, why);
      if (node == kNone) {
        return {.why = why == Why::kOk ? Why::kMissing : why};
      }
      return Evaluate(term.right, node, 0);
    }
    case Op::kCount:
    case Op::kSum:
      return Collect(index, item);
    case Op::kUnique:
      return Unique(index, item, occurrence);
    case Op::kJoined:
    case Op::kListed:
    case Op::kRising:
      return OfOccurrences(term, item, occurrence);
    case Op::kReserved:
    case Op::kKnown:
    case Op::kBcd:
    case Op::kBytes:
      return OfField(term, item, occurrence);
    case Op::kTable:
      return OfTable(static_cast<Check>(term.what), item);
    case Op::kExact:
      return Flag(HasExactLength(model_.At(item)));
    case Op::kLeast:
      return Flag(model_.At(item).declared >= model_.At(item).least);
    default:
      return Arithmetic(term.op, Evaluate(term.left, item, occurrence),
                        Evaluate(term.right, item, occurrence));
  }
}

Why Evaluator::PresenceOf(Source source) const {
  Subject const& subject = model_.GetSubject();
  switch (source) {
    case Source::kDevice:
      return subject.device.presence == Presence::kNotCaptured ? Why::kDevice : Why::kMissing;
    case Source::kQualifier:
      return subject.qualifier.presence == Presence::kNotCaptured ? Why::kQualifier : Why::kMissing;
    case Source::kBos:
      return subject.bos.presence == Presence::kNotCaptured ? Why::kBos : Why::kMissing;
    case Source::kHub:
      return subject.hub.presence == Presence::kNotCaptured ? Why::kHub : Why::kMissing;
    case Source::kString:
      return subject.stringsPresence == Presence::kNotCaptured ? Why::kStrings : Why::kMissing;
    case Source::kOtherSpeedConfiguration:
      return subject.otherSpeed == Presence::kNotCaptured ? Why::kOtherSpeed : Why::kMissing;
    case Source::kGroupTerminalBlocks:
      return subject.groupTerminalBlocks.empty() ? Why::kBlocks : Why::kMissing;
    default:
      return Why::kMissing;
  }
}

Why Evaluator::PresenceOfString(std::int64_t index) const {
  for (StringRun const& text : model_.GetSubject().strings) {
    if (text.index == index && text.run.presence == Presence::kRefused) {
      return Why::kMissing;
    }
  }
  return PresenceOf(Source::kString);
}

Value Evaluator::EndpointFact(Fact fact, std::int32_t item) const {
  std::int32_t const endpoint =
      model_.At(item).type == codes::kEndpointType ? item : model_.At(item).endpoint;
  if (endpoint == kNone) {
    return {.why = Why::kMissing};
  }
  ByteView const bytes = model_.At(endpoint).bytes;
  if (bytes.Size() < 6) {
    return {.why = Why::kCut};
  }
  unsigned const type = bytes.At(3) & 3U;
  auto const size = static_cast<std::int64_t>(bytes.Number(4, 2));
  switch (fact) {
    case Fact::kIn:
      return Flag((bytes.At(2) & 0x80U) != 0);
    case Fact::kOut:
      return Flag((bytes.At(2) & 0x80U) == 0);
    case Fact::kControl:
      return Flag(type == 0);
    case Fact::kIsochronous:
      return Flag(type == 1);
    case Fact::kBulk:
      return Flag(type == 2);
    case Fact::kInterrupt:
      return Flag(type == 3);
    case Fact::kPacket:
      return {.number = size & 0x7FF};
    case Fact::kTransactions:
      return {.number = size >> 11 & 3};
    default:
      return {.number = bytes.At(2) & 0xF};
  }
}

Value Evaluator::FactOf(Fact fact, std::int32_t item) {
  Item const& own = model_.At(item);
  RunOfItems const& run = model_.RunOf(item);
  Subject const& subject = model_.GetSubject();
  auto const ofSetting = [&](std::size_t offset) -> Value {
    if (own.setting == kNone) {
      return {.why = Why::kMissing};
    }
    return {.number = model_.At(own.setting).bytes.At(offset)};
  };
  auto const has = [](Presence presence, Why unknown) -> Value {
    return presence == Presence::kNotCaptured ? Value{.why = unknown}
                                              : Flag(presence == Presence::kGiven);
  };
  switch (fact) {
    case Fact::kType:
      return {.number = own.type};
    case Fact::kLength:
      return {.number = own.declared};
    case Fact::kSubtype:
      return own.declared < 3 ? Value{.why = Why::kCut} : Value{.number = own.subtype};
    case Fact::kSpeed: {
      Speed const speed = model_.SpeedOf(item);
      return speed == Speed::kUnknown ? Value{.why = Why::kSpeed}
                                      : Value{.number = static_cast<std::int64_t>(speed)};
    }
    case Fact::kRelease: {
      ByteView const device(subject.device.bytes);
      return device.Size() < 4 ? Value{.why = Why::kDevice}
                               : Value{.number = static_cast<std::int64_t>(device.Number(2, 2))};
    }
    case Fact::kClass:
      return ofSetting(5);
    case Fact::kSubclass:
      return ofSetting(6);
    case Fact::kProtocol:
      return ofSetting(7);
    case Fact::kAlternate:
      return ofSetting(3);
    case Fact::kSelfPowered: {
      std::int32_t const config = run.first;
      return run.source == Source::kConfiguration || run.source == Source::kOtherSpeedConfiguration
                 ? Flag((model_.At(config).bytes.At(7) & 0x40U) != 0)
                 : Value{.why = Why::kMissing};
    }
    case Fact::kIsWhole:
      return Flag(run.isWhole);
    case Fact::kReturned:
      return {.number = static_cast<std::int64_t>(run.run->bytes.size())};
    case Fact::kConfigurations:
      return subject.configurationsPresence == Presence::kNotCaptured
                 ? Value{.why = Why::kConfigurations}
                 : Value{.number = static_cast<std::int64_t>(subject.configurations.size())};
    case Fact::kOtherConfigurations:
      return subject.otherSpeed == Presence::kNotCaptured
                 ? Value{.why = Why::kOtherSpeed}
                 : Value{.number =
                             static_cast<std::int64_t>(subject.otherSpeedConfigurations.size())};
    case Fact::kHasBos:
      return has(subject.bos.presence, Why::kBos);
    case Fact::kHasQualifier:
      return has(subject.qualifier.presence, Why::kQualifier);
    case Fact::kHasStrings:
      return has(subject.stringsPresence, Why::kStrings);
    case Fact::kHasHub:
      return has(subject.hub.presence, Why::kHub);
    case Fact::kIsOtherSpeed:
      return Flag(run.source == Source::kOtherSpeedConfiguration);
    case Fact::kAcyclic:
      return Flag(!IsOnCycle(item));
    case Fact::kAssociated:
      return Flag(own.setting != kNone && model_.SettingOf(own.setting).association != kNone);
    case Fact::kLanguages: {
      std::int32_t const zero = model_.Head(Source::kString);
      if (subject.stringsPresence == Presence::kNotCaptured) {
        return {.why = Why::kStrings};
      }
      bool const isThere = zero != kNone && model_.RunOf(zero).index == 0;
      return {.number =
                  isThere ? static_cast<std::int64_t>(model_.At(zero).bytes.Size() - 2) / 2 : 0};
    }
    default:
      return EndpointFact(fact, item);
  }
}

std::int32_t Evaluator::Direct(Node node, std::int32_t item, Why& why) const {
  Item const& own = model_.At(item);
  RunOfItems const& run = model_.RunOf(item);
  auto const head = [&](Source source) {
    std::int32_t const found = model_.Head(source);
    if (found == kNone) {
      why = PresenceOf(source);
    }
    return found;
  };
  switch (node) {
    case Node::kSetting:
      return own.setting;
    case Node::kEndpoint:
      return own.type == codes::kEndpointType ? item : own.endpoint;
    case Node::kConfig:
      return run.source == Source::kConfiguration || run.source == Source::kOtherSpeedConfiguration
                 ? run.first
                 : head(Source::kConfiguration);
    case Node::kDevice:
      return head(Source::kDevice);
    case Node::kQualifier:
      return head(Source::kQualifier);
    case Node::kBos:
      return head(Source::kBos);
    case Node::kHub:
      return head(Source::kHub);
    case Node::kNext:
      if (item + 1 < run.last) {
        return item + 1;
      }
      why = run.isWhole ? Why::kMissing : Why::kWalk;
      return kNone;
    case Node::kPrevious:
      return item > run.first ? item - 1 : kNone;
    case Node::kFunction:
      return own.setting == kNone ? kNone : model_.SettingOf(own.setting).function;
    case Node::kAssociation:
      return own.setting == kNone ? kNone : model_.SettingOf(own.setting).association;
    case Node::kOwner:
      return own.setting == kNone ? kNone : model_.SettingOf(own.setting).owner;
    default:
      return own.heading;
  }
}

std::int32_t Evaluator::NodeOf(std::int32_t index, std::int32_t item, std::uint16_t occurrence,
                               Why& why) {
  Term const& term = programs_.At(index);
  switch (term.op) {
    case Op::kNode:
      return Direct(static_cast<Node>(term.what), item, why);
    case Op::kMember: {
      std::int32_t const left = NodeOf(term.left, item, occurrence, why);
      return left == kNone ? kNone : NodeOf(term.right, left, 0, why);
    }
    case Op::kLookup:
      return Lookup(index, item, occurrence, why);
    case Op::kFirst:
      return First(index, item, why);
    default:
      return kNone;
  }
}

std::int32_t Evaluator::DomainOf(Domain domain, std::int32_t item) const {
  Item const& own = model_.At(item);
  switch (domain) {
    case Domain::kSetting:
      return own.setting;
    case Domain::kEndpoint:
      return own.type == codes::kEndpointType ? item : own.endpoint;
    case Domain::kInterface:
      return own.setting == kNone ? kNone : model_.SettingOf(own.setting).head;
    case Domain::kFunction:
    case Domain::kCollection:
      return own.setting == kNone ? kNone : model_.SettingOf(own.setting).function;
    case Domain::kConfig: {
      RunOfItems const& run = model_.RunOf(item);
      return run.source == Source::kConfiguration || run.source == Source::kOtherSpeedConfiguration
                 ? run.first
                 : model_.Head(Source::kConfiguration);
    }
    case Domain::kFormat:
      return own.heading;
    case Domain::kBos:
      return model_.Head(Source::kBos);
    case Domain::kConfigs:
      return model_.Head(model_.RunOf(item).source == Source::kOtherSpeedConfiguration
                             ? Source::kOtherSpeedConfiguration
                             : Source::kConfiguration);
    case Domain::kBlocks:
      return model_.Head(Source::kGroupTerminalBlocks);
    default:
      return model_.Head(Source::kString);
  }
}

template <typename Visit>
Why Evaluator::ForEach(Domain domain, std::int32_t head, Visit&& visit) const {
  RunOfItems const& run = model_.RunOf(head);
  Why why = Why::kOk;
  // Visits a range; false when the walk must end.
  auto const range = [&](std::int32_t first, std::int32_t last) {
    for (std::int32_t i = first; i < last; ++i) {
      if (!visit(i)) {
        return false;
      }
    }
    why = last == run.last && !run.isWhole ? Why::kWalk : why;
    return true;
  };
  auto const settings = [&](auto next) {
    for (std::int32_t i = head; i != kNone; i = next(i)) {
      if (!range(i, model_.SettingOf(i).end)) {
        return;
      }
    }
    why = run.isWhole ? why : Why::kWalk;
  };
  switch (domain) {
    case Domain::kSetting:
    case Domain::kFunction:
      range(head, model_.SettingOf(head).end);
      break;
    case Domain::kEndpoint:
    case Domain::kFormat: {
      auto const owner = domain == Domain::kEndpoint ? &Item::endpoint : &Item::heading;
      std::int32_t last = head + 1;
      while (last < run.last && model_.At(last).*owner == head) {
        ++last;
      }
      range(head, last);
      break;
    }
    case Domain::kInterface:
      settings([&](std::int32_t i) { return model_.SettingOf(i).next; });
      break;
    case Domain::kCollection:
      settings([&](std::int32_t i) { return model_.SettingOf(i).inFunction; });
      break;
    case Domain::kConfigs:
    case Domain::kTexts:
    case Domain::kBlocks:
      for (RunOfItems const& other : model_.Runs()) {
        if (other.source == run.source) {
          for (std::int32_t i = other.first; i < other.last; ++i) {
            if (!visit(i)) {
              return why;
            }
          }
        }
      }
      break;
    default:
      range(run.first, run.last);
      break;
  }
  return why;
}

Value Evaluator::Collect(std::int32_t index, std::int32_t item) {
  Term const& term = programs_.At(index);
  auto const domain = static_cast<Domain>(term.what);
  std::int32_t const head = DomainOf(domain, item);
  if (head == kNone) {
    Why const why = domain == Domain::kBos     ? PresenceOf(Source::kBos)
                    : domain == Domain::kTexts ? PresenceOf(Source::kString)
                                               : Why::kMissing;
    return why == Why::kMissing && domain != Domain::kFunction && domain != Domain::kFormat
               ? Value{}
               : Value{.why = why};
  }
  auto const [entry, isNew] = collected_.try_emplace(KeyOf(index, head));
  Value& cached = entry->second;  // the reference stays valid when others are added
  if (!isNew) {
    return cached;
  }
  Pattern const& pattern = programs_.PatternAt(term.pattern);
  Value result;
  Why unknown = Why::kOk;
  Why const why = ForEach(domain, head, [&](std::int32_t other) {
    if (!pattern.Matches(model_.At(other).layout, model_.At(other).type)) {
      return true;
    }
    Value const value = term.left != kNone ? Evaluate(term.left, other, 0) : Flag(true);
    unknown = value.IsKnown() ? unknown : value.why;
    if (value.why == Why::kOk) {
      result.number += term.op == Op::kSum ? value.number : value.number != 0 ? 1 : 0;
    }
    return true;
  });
  result.why = unknown != Why::kOk ? unknown : why;
  cached = result;
  return result;
}

std::int32_t Evaluator::First(std::int32_t index, std::int32_t item, Why& why) {
  Term const& term = programs_.At(index);
  auto const domain = static_cast<Domain>(term.what);
  std::int32_t const head = DomainOf(domain, item);
  if (head == kNone) {
    why = domain == Domain::kBos ? PresenceOf(Source::kBos) : Why::kMissing;
    return kNone;
  }
  auto const cached = firsts_.find(KeyOf(index, head));
  if (cached != firsts_.end()) {
    why = cached->second == kNone && !model_.RunOf(head).isWhole ? Why::kWalk : Why::kMissing;
    return cached->second;
  }
  Pattern const& pattern = programs_.PatternAt(term.pattern);
  std::int32_t found = kNone;
  ForEach(domain, head, [&](std::int32_t other) {
    bool const isIt = pattern.Matches(model_.At(other).layout, model_.At(other).type) &&
                      (term.left == kNone || Evaluate(term.left, other, 0).IsTrue());
    found = isIt ? other : kNone;
    return !isIt;
  });
  firsts_[KeyOf(index, head)] = found;
  why = found == kNone && !model_.RunOf(head).isWhole ? Why::kWalk : Why::kMissing;
  return found;
}

// A repeated field gives one key for each occurrence.
void Evaluator::AddKeys(std::int32_t key, std::int32_t item, std::uint64_t where) {
  Term const& term = programs_.At(key);
  auto const add = [&](std::int64_t number) {
    found_.try_emplace({where, static_cast<std::uint64_t>(number), 0, 0}, item);
  };
  if (term.op != Op::kField) {
    Value const value = Evaluate(key, item, 0);
    if (value.why == Why::kOk) {
      add(value.number);
    }
    return;
  }
  Slot const slot = words_.Find(model_.At(item).layout, term.name);
  for (Cell const& cell : model_.CellsOf(item)) {
    if (slot.IsThere() && cell.slot == slot.row && !cell.isCut) {
      add(static_cast<std::int64_t>(cell.value));
    }
  }
}

std::int32_t Evaluator::Lookup(std::int32_t index, std::int32_t item, std::uint16_t occurrence,
                               Why& why) {
  Term const& term = programs_.At(index);
  auto const domain = static_cast<Domain>(term.what);
  Value const value = Evaluate(term.right, item, occurrence);
  std::int32_t const head = DomainOf(domain, item);
  if (value.why != Why::kOk || head == kNone) {
    why = value.why != Why::kOk       ? value.why
          : domain == Domain::kBos    ? PresenceOf(Source::kBos)
          : domain == Domain::kTexts  ? PresenceOfString(value.number)
          : domain == Domain::kBlocks ? PresenceOf(Source::kGroupTerminalBlocks)
                                      : Why::kMissing;
    return kNone;
  }
  std::uint64_t const where = KeyOf(index, head);
  if (indexed_.insert(where).second) {
    Pattern const& pattern = programs_.PatternAt(term.pattern);
    ForEach(domain, head, [&](std::int32_t other) {
      if (pattern.Matches(model_.At(other).layout, model_.At(other).type)) {
        AddKeys(term.left, other, where);
      }
      return true;
    });
  }
  auto const found = found_.find({where, static_cast<std::uint64_t>(value.number), 0, 0});
  if (found != found_.end()) {
    return found->second;
  }
  why = domain == Domain::kTexts     ? PresenceOfString(value.number)
        : model_.RunOf(head).isWhole ? Why::kMissing
                                     : Why::kWalk;
  return kNone;
}

Value Evaluator::Unique(std::int32_t index, std::int32_t item, std::uint16_t occurrence) {
  Term const& term = programs_.At(index);
  std::int32_t const head = DomainOf(static_cast<Domain>(term.what), item);
  Key key{KeyOf(index, head), 0, 0, 0};
  std::uint64_t* const parts[] = {&key.first, &key.second, &key.third};
  std::int32_t const terms[] = {term.left, term.right, term.third};
  for (std::size_t i = 0; i < 3 && terms[i] != kNone; ++i) {
    Value const value = Evaluate(terms[i], item, occurrence);
    if (value.why != Why::kOk) {
      return value;
    }
    *parts[i] = static_cast<std::uint64_t>(value.number);
  }
  return Flag(seen_.insert(key).second);
}

// Removes entities until each remaining one has a source among them and is itself a source: the
// entities on a cycle, or between two cycles, remain.
bool Evaluator::IsOnCycle(std::int32_t item) {
  std::int32_t const head = DomainOf(Domain::kFunction, item);
  static std::uint16_t const kEntity = words_.NameOf("entity");
  static std::uint16_t const kSource = words_.NameOf("source");
  static std::uint16_t const kClock = words_.NameOf("clock");
  static std::uint16_t const kClockId = words_.NameOf("bClockID");
  Value const id = FieldOf(kEntity, item, 0);
  if (head == kNone || id.why != Why::kOk) {
    return false;
  }
  auto const [entry, isNew] = cycles_.try_emplace(head);
  std::bitset<256>& left = entry->second;
  if (isNew) {
    std::array<std::bitset<256>, 256> sources;
    ForEach(Domain::kFunction, head, [&](std::int32_t other) {
      Value const own = FieldOf(kEntity, other, 0);
      if (own.why != Why::kOk) {
        return true;
      }
      auto const from = static_cast<std::size_t>(own.number & 0xFF);
      left.set(from);
      bool const isClock = words_.Find(model_.At(other).layout, kClockId).IsThere();
      Slot const slot = words_.Find(model_.At(other).layout, isClock ? kClock : kSource);
      for (Cell const& cell : model_.CellsOf(other)) {
        if (slot.IsThere() && cell.slot == slot.row && !cell.isCut) {
          sources[from].set(cell.value & 0xFFU);
        }
      }
      return true;
    });
    for (bool isChanged = true; isChanged;) {
      std::bitset<256> used;
      for (std::size_t n = 0; n < 256; ++n) {
        used |= left[n] ? sources[n] : std::bitset<256>{};
      }
      std::bitset<256> next = left & used;
      for (std::size_t n = 0; n < 256; ++n) {
        next[n] = next[n] && (sources[n] & left).any();
      }
      isChanged = next != left;
      left = next;
    }
  }
  return left[static_cast<std::size_t>(id.number & 0xFF)];
}

bool Evaluator::HasTableLength(std::int32_t item) const noexcept {
  return HasExactLength(model_.At(item));
}

}  // namespace usb_rules::detail
