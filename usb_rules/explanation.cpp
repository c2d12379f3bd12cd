#include <usb_rules/explanation.h>

#include <string_view>
#include <utility>

#include <usb_rules/wording.h>

namespace usb_rules::detail {
namespace {

void AddBits(Cause& cause, unsigned high, unsigned low, std::uint64_t value) {
  cause.value = value;
  cause.mask = MaskOf(high, low);
  cause.field.append("[").append(std::to_string(high));
  if (high != low) {
    cause.field.append("..").append(std::to_string(low));
  }
  cause.field.append("]");
}

// Names only the bits when the rest of the field is valid.
void AddFault(Cause& cause, FieldFault&& fault) {
  if (fault.isBits) {
    AddBits(cause, fault.high, fault.low, fault.value);
  } else {
    cause.value = fault.value;
  }
  cause.expected = std::move(fault.expected);
}

// "wFormatTag", or "baSourceID(2)" for a repeated field.
std::string NameOf(usb_fields::Field const& field, Cell const& cell, bool repeats) {
  std::string name(field.name);
  return repeats ? name.append("(").append(std::to_string(cell.index + 1)).append(")") : name;
}

Cause ExplainLength(Item const& item, bool wantsExact) {
  Cause cause;
  cause.isField = true;
  cause.field = "bLength";
  cause.value = item.declared;
  if (item.declared >= item.least && item.isCut) {
    cause.expected = "the length that its counts and sizes require";
    return cause;
  }
  bool const isExact = wantsExact && item.declared >= item.least && item.exact >= 0;
  cause.expected = isExact ? "" : "at least ";
  cause.expected += std::to_string(isExact ? item.exact : std::int32_t{item.least});
  return cause;
}

}  // namespace

// The first term that is a field, or kNone.
std::int32_t Explainer::FieldIn(std::int32_t index) const {
  if (index == kNone) {
    return kNone;
  }
  Term const& term = programs_.At(index);
  if (term.op == Op::kField) {
    return index;
  }
  if (term.op == Op::kMember || term.op == Op::kCount || term.op == Op::kSum ||
      term.op == Op::kFirst || term.op == Op::kNumber) {
    return kNone;
  }
  if (term.op == Op::kLookup) {
    return FieldIn(term.right);
  }
  std::int32_t const left = FieldIn(term.left);
  return left != kNone ? left : FieldIn(term.right);
}

void Explainer::Describe(std::int32_t index, std::int32_t item, std::uint16_t occurrence,
                         Cause& cause) {
  if (programs_.At(index).op == Op::kFact) {
    Item const& own = model_.At(item);
    auto const fact = static_cast<Fact>(programs_.At(index).what);
    cause.isField = fact == Fact::kType || fact == Fact::kSubtype || fact == Fact::kLength;
    if (!cause.isField) {
      return;
    }
    cause.isHexadecimal = fact != Fact::kLength;
    cause.offset = fact == Fact::kType ? 1 : fact == Fact::kSubtype ? 2 : 0;
    cause.value = fact == Fact::kType      ? own.type
                  : fact == Fact::kSubtype ? own.subtype
                                           : own.declared;
    cause.field = fact == Fact::kType      ? "bDescriptorType"
                  : fact == Fact::kSubtype ? "bDescriptorSubtype"
                                           : "bLength";
    return;
  }
  std::int32_t const named = FieldIn(index);
  Cell const* const cell =
      named != kNone ? CellOf(programs_.At(named).name, item, occurrence) : nullptr;
  if (cell == nullptr) {
    cause.isHexadecimal = false;
    return;
  }
  Item const& own = model_.At(item);
  usb_fields::Field const* const field = words_.Field(own.layout, cell->row);
  cause.value = cell->value;
  cause.offset = cell->offset;
  cause.isHexadecimal = field != nullptr && IsShownInHexadecimal(*field);
  cause.isField = true;
  if (field == nullptr) {
    cause.field = FieldWords(words_.NameText(programs_.At(named).name));
  } else {
    cause.field = NameOf(*field, *cell, words_.Find(own.layout, programs_.At(named).name).repeats);
  }
  Term const& term = programs_.At(index);
  if (term.op == Op::kBits && term.left == named) {
    AddBits(cause, term.high, term.low, (cell->value & MaskOf(term.high, term.low)) >> term.low);
  }
}

void Explainer::ExplainComparison(Term const& term, std::int32_t item, std::uint16_t occurrence,
                                  Cause& cause) {
  if (std::string_view const flag = FlagWords(programs_, term); !flag.empty()) {
    cause.expected = flag;
    return;
  }
  Describe(term.left, item, occurrence, cause);
  bool const isType = IsTypeTerm(programs_, term.left);
  Term const& left = programs_.At(term.left);
  bool const isSpeed = left.op == Op::kFact && left.what == static_cast<int>(Fact::kSpeed);
  cause.isHexadecimal =
      cause.isField ? cause.isHexadecimal : IsHexadecimalTerm(programs_, term.left);
  auto const value = [&](std::int32_t index) {
    Value const number = evaluator_.Evaluate(index, item, occurrence);
    if (number.why != Why::kOk) {
      return std::string("a value that is missing");
    }
    return isType    ? TypeText(number.number)
           : isSpeed ? SpeedText(number.number)
                     : NumberText(number.number, cause.isHexadecimal);
  };
  if (term.op == Op::kIn) {
    for (std::int32_t next = term.right; next != kNone;) {
      Term const& range = programs_.At(next);
      cause.expected += cause.expected.empty() ? "" : range.third == kNone ? " or " : ", ";
      cause.expected += value(range.left);
      if (range.left != range.right) {
        cause.expected.append(" to ").append(value(range.right));
      }
      next = range.third;
    }
  } else {
    char const* const words = term.op == Op::kNotEqual         ? "other than "
                              : term.op == Op::kLess           ? "below "
                              : term.op == Op::kLessOrEqual    ? "at most "
                              : term.op == Op::kGreater        ? "above "
                              : term.op == Op::kGreaterOrEqual ? "at least "
                                                               : "";
    bool const isOther = term.op == Op::kNotEqual && !isSpeed;
    cause.expected.append(isOther ? "a value " : "").append(words).append(value(term.right));
  }
  if (cause.isField) {
    return;
  }
  // The compared value is not a field of the descriptor itself: it is described in words.
  std::string what = WordsOf(programs_, term.left);
  Value const found = evaluator_.Evaluate(term.left, item, occurrence);
  if (isSpeed) {
    cause.expected = term.op == Op::kNotEqual
                         ? "a speed " + cause.expected
                         : "a speed of " + cause.expected + ", not " + SpeedText(found.number);
  } else if (found.why == Why::kOk && found.number >= 0) {
    cause.field = std::move(what);
    cause.value = static_cast<std::uint64_t>(found.number);
  } else {
    cause.expected = what.append(" to be ").append(cause.expected);
  }
}

// Explains a value that the table of the field reserves.
void Explainer::ExplainTable(Term const& term, std::int32_t item, std::uint16_t occurrence,
                             Cause& cause) {
  Describe(term.left, item, occurrence, cause);
  Cell const* const cell = CellOf(programs_.At(term.left).name, item, occurrence);
  usb_fields::Field const* const field =
      cell != nullptr ? words_.Field(model_.At(item).layout, cell->row) : nullptr;
  if (field == nullptr) {
    return;
  }
  Check const check = term.op == Op::kKnown ? Check::kCodes : Check::kReserved;
  std::uint64_t const wrong =
      WrongBits(check, *field, cell->value) &
      (check == Check::kReserved ? MaskOf(term.high, term.low) : ~std::uint64_t{0});
  AddFault(cause, FaultOf(check, *field, cell->value, wrong, cell->size));
  cause.mask = wrong != 0 ? wrong : cause.mask;
}

Cause Explainer::ExplainCheck(Check check, std::int32_t item, Cell const* cell,
                              std::uint64_t wrong) const {
  Item const& own = model_.At(item);
  std::string_view const source = words_.LayoutSource(own.layout);
  Cause cause;
  if (cell == nullptr) {
    cause = ExplainLength(own, true);
  } else {
    usb_fields::Field const& field = *words_.Field(own.layout, cell->row);
    cause.isField = true;
    cause.field = NameOf(field, *cell, words_.Repeats(field));
    cause.offset = cell->offset;
    cause.isHexadecimal = IsShownInHexadecimal(field);
    AddFault(cause, FaultOf(check, field, cell->value, wrong, cell->size));
    cause.mask = wrong;
  }
  cause.expected.append(" (").append(source).append(")");
  return cause;
}

Cause Explainer::Explain(std::int32_t index, std::int32_t item, std::uint16_t occurrence) {
  Term const& term = programs_.At(index);
  Cause cause;
  switch (term.op) {
    case Op::kAnd:
      return Explain(
          evaluator_.Evaluate(term.left, item, occurrence).IsTrue() ? term.right : term.left, item,
          occurrence);
    case Op::kOr:
    case Op::kImplies:
      cause = Explain(term.right, item, occurrence);
      if (!cause.isField) {
        cause = {};
        cause.expected = WishOf(programs_, term.op == Op::kOr ? index : term.right);
      }
      return cause;
    case Op::kEqual:
    case Op::kNotEqual:
    case Op::kLess:
    case Op::kLessOrEqual:
    case Op::kGreater:
    case Op::kGreaterOrEqual:
    case Op::kIn:
      ExplainComparison(term, item, occurrence, cause);
      return cause;
    case Op::kReserved:
    case Op::kKnown:
      ExplainTable(term, item, occurrence, cause);
      return cause;
    case Op::kBcd:
      Describe(term.left, item, occurrence, cause);
      cause.expected = "only decimal digits";
      return cause;
    case Op::kUnique:
      Describe(index, item, occurrence, cause);
      cause.expected = cause.isField ? "a value that occurs once"
                                     : WordsOf(programs_, term.left) + " that occurs once";
      return cause;
    case Op::kLookup:
      Describe(term.right, item, occurrence, cause);
      cause.expected =
          cause.isField ? "a value that names an existing descriptor" : WishOf(programs_, index);
      return cause;
    case Op::kExact:
    case Op::kLeast:
      return ExplainLength(model_.At(item), term.op == Op::kExact);
    case Op::kRising:
    case Op::kListed:
      Describe(term.left, item, occurrence, cause);
      cause.expected = WishOf(programs_, index);
      return cause;
    default:
      cause.expected = WishOf(programs_, index);
      return cause;
  }
}

}  // namespace usb_rules::detail
