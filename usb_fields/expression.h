// The expressions of the tables: parsed at compile time, evaluated by the reader. Internal to the
// library.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include <usb_fields/table.h>

namespace usb_fields::detail {

/// A fact of the context that an expression may name.
enum class Fact : std::uint8_t {
  kSpeed,
  kClass,
  kSubclass,
  kProtocol,
  kEndpointAttributes,
  kVideoRelease,
  kCount,
};

enum class OpCode : std::uint8_t {
  kEnd,     // ends the expression
  kNumber,  // pushes `number`
  kValue,   // pushes bits high..low of slot `number`
  kAdd,
  kSubtract,
  kMultiply,
  kDivide,
  kEqual,
  kNotEqual,
  kLess,
  kLessOrEqual,
  kGreater,
  kGreaterOrEqual,
};

/// The most rows that a layout may have. The slots below this number hold the values of rows (see
/// SlotOf), the others the facts of the context.
inline constexpr std::size_t kMostRows = 96;
inline constexpr std::size_t kSlots = kMostRows + static_cast<std::size_t>(Fact::kCount);

/// One step of an expression in postfix order.
struct Op {
  OpCode code = OpCode::kEnd;
  std::uint8_t high = 63;
  std::uint8_t low = 0;
  std::uint32_t number = 0;
};

/// One comparison of a condition. It holds when the masked value of the slot is at most `span`
/// above `least`. The difference is modulo 2^64, so one test can also express "is not 3".
struct Test {
  std::uint8_t slot = 0;
  std::uint64_t mask = 0;
  std::uint64_t least = 0;
  std::uint64_t span = 0;

  constexpr bool Holds(std::uint64_t value) const noexcept {
    return (value & mask) - least <= span;
  }
};

/// The most operands that are on the stack at a time.
inline constexpr std::size_t kMostOperands = 8;

/// A table with a mistake does not compile: the compiler's message shows the call of this function.
inline void TableError(char const* /*what is wrong*/) {
}

/// The slot of a field: the index of the first row with its name. Alternatives share a slot.
constexpr std::size_t SlotOf(std::span<Field const> fields, std::size_t row) {
  for (std::size_t i = 0; i < row; ++i) {
    if (fields[i].name == fields[row].name) {
      return i;
    }
  }
  return row;
}

/// Parses one expression or one condition and passes each step or test to `emit`. The text belongs
/// to row number `row` and may name the fields before it; with `mayNameItself`, also its own field.
template <typename Emit>
class Parser {
 public:
  constexpr Parser(std::string_view text, std::span<Field const> fields, std::size_t row,
                   bool mayNameItself, Emit& emit)
      : rest_(text),
        fields_(fields),
        row_(row),
        mayNameItself_(mayNameItself),
        emit_(emit) {}

  constexpr void ParseExpression() {
    Comparison();
    End();
    emit_(Op{});
  }

  constexpr void ParseCondition() {
    do {
      Op const value = BitsOfName();
      OpCode const sign = TakeComparison();
      if (value.code != OpCode::kValue || sign == OpCode::kEnd) {
        TableError("a condition compares a field or a fact with a number");
      }
      SkipSpaces();
      Op const number = !rest_.empty() && IsDigit(rest_.front())
                            ? Op{.code = OpCode::kNumber, .number = Number()}
                            : BitsOfName();
      if (number.code != OpCode::kNumber) {
        TableError("a condition compares a field or a fact with a number");
      }
      emit_(TestOf(value, sign, number.number));
    } while (Take("&&"));
    End();
  }

 private:
  constexpr void End() {
    SkipSpaces();
    if (!rest_.empty()) {
      TableError("an expression goes on after its end");
    }
  }

  static constexpr Test TestOf(Op const& value, OpCode sign, std::uint64_t number) {
    constexpr std::uint64_t kMost = ~std::uint64_t{0};
    unsigned const width = value.high - value.low + 1u;
    std::uint64_t const bits = width == 64 ? kMost : (std::uint64_t{1} << width) - 1;
    if (number > bits || (sign == OpCode::kLess && number == 0)) {
      TableError("a condition is true of every value, or of none");
    }
    std::uint64_t const wanted = number << value.low;
    std::uint64_t const next = wanted + 1;
    Test test{.slot = static_cast<std::uint8_t>(value.number), .mask = bits << value.low};
    switch (sign) {
      case OpCode::kLess:
        test.span = wanted - 1;
        break;
      case OpCode::kLessOrEqual:
        test.span = wanted;
        break;
      case OpCode::kGreater:
        test.least = next;
        test.span = kMost - next;
        break;
      case OpCode::kGreaterOrEqual:
        test.least = wanted;
        test.span = kMost - wanted;
        break;
      case OpCode::kNotEqual:
        test.least = next;
        test.span = kMost - 1;
        break;
      default:
        test.least = wanted;
        break;
    }
    return test;
  }

  constexpr OpCode TakeComparison() {
    struct Sign {
      std::string_view text;
      OpCode code;
    };
    constexpr Sign kSigns[] = {{"==", OpCode::kEqual},       {"!=", OpCode::kNotEqual},
                               {"<=", OpCode::kLessOrEqual}, {">=", OpCode::kGreaterOrEqual},
                               {"<", OpCode::kLess},         {">", OpCode::kGreater}};
    for (Sign const& sign : kSigns) {
      if (Take(sign.text)) {
        return sign.code;
      }
    }
    return OpCode::kEnd;
  }

  constexpr void Comparison() {
    Sum();
    OpCode const sign = TakeComparison();
    if (sign != OpCode::kEnd) {
      Sum();
      Operator(sign);
    }
  }

  constexpr void Sum() {
    Product();
    for (;;) {
      if (Take("+")) {
        Product();
        Operator(OpCode::kAdd);
      } else if (Take("-")) {
        Product();
        Operator(OpCode::kSubtract);
      } else {
        return;
      }
    }
  }

  constexpr void Product() {
    Operand();
    for (;;) {
      if (Take("*")) {
        Operand();
        Operator(OpCode::kMultiply);
      } else if (Take("/")) {
        Operand();
        Operator(OpCode::kDivide);
      } else {
        return;
      }
    }
  }

  constexpr void Operand() {
    if (Take("(")) {
      Comparison();
      if (!Take(")")) {
        TableError("a closing parenthesis is missing");
      }
      return;
    }
    SkipSpaces();
    if (!rest_.empty() && IsDigit(rest_.front())) {
      Push({.code = OpCode::kNumber, .number = Number()});
      return;
    }
    Push(BitsOfName());
  }

  constexpr Op BitsOfName() {
    SkipSpaces();
    std::size_t length = 0;
    while (length < rest_.size() && IsOfName(rest_[length])) {
      ++length;
    }
    if (length == 0) {
      TableError("a number or a name is missing");
    }
    Op op = Named(rest_.substr(0, length));
    rest_.remove_prefix(length);
    if (op.code != OpCode::kNumber && Take("[")) {
      op.high = static_cast<std::uint8_t>(Number());
      if (!Take("..")) {
        TableError("bits are written as [high..low]");
      }
      op.low = static_cast<std::uint8_t>(Number());
      if (!Take("]") || op.high < op.low || op.high > 63) {
        TableError("bits are written as [high..low]");
      }
    }
    return op;
  }

  constexpr Op Named(std::string_view name) const {
    for (std::size_t i = 0; i < row_ + (mayNameItself_ ? 1 : 0); ++i) {
      if (fields_[i].name == name) {
        return {.code = OpCode::kValue, .number = static_cast<std::uint32_t>(i)};
      }
    }
    struct Named {
      std::string_view name;
      Op op;
    };
    constexpr auto kFact = [](Fact fact) {
      return Op{.code = OpCode::kValue,
                .number = static_cast<std::uint32_t>(kMostRows + static_cast<std::size_t>(fact))};
    };
    constexpr auto kSpeed = [](std::uint32_t number) {
      return Op{.code = OpCode::kNumber, .number = number};
    };
    constexpr Named kNames[] = {
        {"speed", kFact(Fact::kSpeed)},
        {"class", kFact(Fact::kClass)},
        {"subclass", kFact(Fact::kSubclass)},
        {"protocol", kFact(Fact::kProtocol)},
        {"endpoint.bmAttributes", kFact(Fact::kEndpointAttributes)},
        {"bcdUVC", kFact(Fact::kVideoRelease)},
        {"low", kSpeed(1)},
        {"full", kSpeed(2)},
        {"high", kSpeed(3)},
        {"super", kSpeed(4)},
        {"superplus", kSpeed(5)},
    };
    for (Named const& known : kNames) {
      if (known.name == name) {
        return known.op;
      }
    }
    TableError("a name is neither an earlier field nor a fact of the context");
    return {};
  }

  constexpr std::uint32_t Number() {
    SkipSpaces();
    std::uint32_t base = 10;
    if (rest_.starts_with("0x")) {
      base = 16;
      rest_.remove_prefix(2);
    }
    if (rest_.empty() || DigitOf(rest_.front()) >= base) {
      TableError("a number is missing");
    }
    std::uint64_t number = 0;
    while (!rest_.empty() && DigitOf(rest_.front()) < base) {
      number = number * base + DigitOf(rest_.front());
      if (number > 0xFFFF'FFFF) {
        TableError("a number has more than 32 bits");
      }
      rest_.remove_prefix(1);
    }
    return static_cast<std::uint32_t>(number);
  }

  constexpr void Push(Op const& op) {
    if (++waiting_ > kMostOperands) {
      TableError("an expression is nested too deep");
    }
    emit_(op);
  }

  constexpr void Operator(OpCode code) {
    --waiting_;
    emit_(Op{.code = code});
  }

  constexpr bool Take(std::string_view text) {
    SkipSpaces();
    if (!rest_.starts_with(text)) {
      return false;
    }
    rest_.remove_prefix(text.size());
    return true;
  }

  constexpr void SkipSpaces() {
    while (rest_.starts_with(' ')) {
      rest_.remove_prefix(1);
    }
  }

  static constexpr bool IsDigit(char c) { return c >= '0' && c <= '9'; }
  static constexpr bool IsOfName(char c) {
    return IsDigit(c) || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' || c == '.';
  }
  static constexpr std::uint32_t DigitOf(char c) {
    return IsDigit(c)               ? static_cast<std::uint32_t>(c - '0')
           : (c >= 'a' && c <= 'f') ? static_cast<std::uint32_t>(c - 'a' + 10)
           : (c >= 'A' && c <= 'F') ? static_cast<std::uint32_t>(c - 'A' + 10)
                                    : 99;
  }

  std::string_view rest_;
  std::span<Field const> fields_;
  std::size_t row_;
  bool mayNameItself_;
  Emit& emit_;
  std::size_t waiting_ = 0;
};

}  // namespace usb_fields::detail
