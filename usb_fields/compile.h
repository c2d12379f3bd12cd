// Translates layouts into the form that the reader uses, and checks them, while the program is
// compiled. A table file ends with
//
//   constexpr Layout kLayouts[] = {...};
//   constexpr auto kCompiled = detail::CompileAll<kLayouts>();
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include <usb_fields/byte_view.h>
#include <usb_fields/context.h>
#include <usb_fields/expression.h>
#include <usb_fields/table.h>

namespace usb_fields::detail {

/// A row in the reader's form. An expression is the index of its first step; 0 means none.
struct Row {
  Field const* field = nullptr;
  std::uint64_t mask = 0;         // for a number of the fixed size
  bool isPlain = false;           // always present, exactly once, with a fixed size
  std::uint8_t slot = 0;          // where expressions and conditions find the value
  std::uint8_t fixedSize = 0;     // 0: see `size`
  bool isRest = false;            // the size is all remaining bytes
  bool untilEnd = false;          // repeats until the descriptor ends
  std::uint8_t groupRows = 1;     // in the first row of a group: its number of rows
  std::uint8_t alternatives = 0;  // the number of rows after it that can replace it
  std::uint8_t testCount = 0;     // the tests of the condition
  std::uint16_t firstTest = 0;
  std::uint16_t size = 0;
  std::uint16_t repeat = 0;
};

/// A condition on bytes of the descriptor itself.
struct Condition {
  std::uint8_t offset = 0;
  std::uint8_t size = 0;  // 0: no condition
  std::uint32_t value = 0;
};

/// A parsed key.
struct Key {
  Request request = Request::kDescriptor;
  std::int16_t type = -1;
  std::int16_t subtype = -1;  // or the capability of a BOS
  std::int16_t interfaceClass = -1;
  std::int16_t interfaceSubclass = -1;
  std::int16_t interfaceProtocol = -1;
  std::int16_t index = -1;
  bool isBeforeEndpoint = false;
  std::array<Condition, 2> conditions{};
  bool hasUuid = false;
  std::array<std::uint8_t, 16> uuid{};
  std::string_view parent = {};
  std::uint8_t count = 0;  // the number of conditions; the match with the most is chosen
};

/// A layout in the reader's form.
struct Compiled {
  Layout const* layout = nullptr;
  Key key;
  std::span<Row const> rows;
  std::span<Op const> ops;
  std::span<Test const> tests;
  bool usesFacts = false;         // an expression or a condition names a fact
  std::int32_t exactLength = -1;  // when it is a constant; -1: see `length`
  std::uint16_t length = 0;       // the expression of the exact length; 0: none
  std::uint8_t lengthSize = 1;    // bytes of the length at the start; 0: none
  std::uint8_t typeOffset = 1;    // the offset of the type
  std::uint8_t plainRows = 0;     // the number of plain rows at the start
  std::uint16_t plainSize = 0;    // the size of their fields in bytes
};

constexpr bool IsLength(std::string_view name) {
  return name == "bLength" || name == "wLength" || name == "dwLength" || name == "bDescLength" ||
         name == "bFunctionLength";
}

/// The UUID's bytes as they are on the wire.
constexpr std::array<std::uint8_t, 16> UuidBytes(std::string_view text) {
  std::array<std::uint8_t, 16> bytes{};
  std::size_t count = 0;
  unsigned digits = 0;
  std::uint8_t value = 0;
  for (char const c : text) {
    if (c == '-') {
      continue;
    }
    int const digit = c >= '0' && c <= '9' ? c - '0' : c >= 'a' && c <= 'f' ? c - 'a' + 10 : -1;
    if (digit < 0 || count == bytes.size()) {
      TableError("a UUID is 32 lower-case hexadecimal digits");
    }
    value = static_cast<std::uint8_t>(value * 16 + digit);
    if (++digits % 2 == 0) {
      bytes[count++] = value;
      value = 0;
    }
  }
  if (count != bytes.size()) {
    TableError("a UUID is 32 lower-case hexadecimal digits");
  }
  std::swap(bytes[0], bytes[3]);
  std::swap(bytes[1], bytes[2]);
  std::swap(bytes[4], bytes[5]);
  std::swap(bytes[6], bytes[7]);
  return bytes;
}

constexpr Request RequestOf(std::string_view name) {
  struct Named {
    std::string_view name;
    Request request;
  };
  constexpr Named kNames[] = {{"msos10", Request::kMsOs10},
                              {"msos20", Request::kMsOs20},
                              {"webusb", Request::kWebUsb},
                              {"physical", Request::kHidPhysical},
                              {"uac3_hc", Request::kAudioHighCapability},
                              {"uac3_string", Request::kAudioString},
                              {"midi2_gtb", Request::kGroupTerminalBlocks}};
  for (Named const& known : kNames) {
    if (known.name == name) {
      return known.request;
    }
  }
  TableError("a key names a context that is not known");
  return Request::kDescriptor;
}

constexpr std::uint32_t HexadecimalNumber(std::string_view text) {
  std::uint32_t value = 0;
  for (char const c : text) {
    bool const isDigit = c >= '0' && c <= '9';
    if (!isDigit && !(c >= 'A' && c <= 'F')) {
      TableError("a number in a key is upper-case hexadecimal");
    }
    value = value * 16 + static_cast<std::uint32_t>(isDigit ? c - '0' : c - 'A' + 10);
  }
  return value;
}

/// The offset and size of a field that is always at the same place.
constexpr Condition PlaceOf(std::span<Field const> fields, std::string_view name) {
  std::size_t offset = 0;
  for (Field const& field : fields) {
    if (field.name == name) {
      return {static_cast<std::uint8_t>(offset), field.size.bytes, 0};
    }
    if (field.size.bytes == 0 || !field.extra.repeat.empty()) {
      break;
    }
    offset += field.size.bytes;
  }
  TableError("a key names a field that has no fixed place");
  return {};
}

constexpr Key ReadKey(Layout const& layout) {
  Key key;
  std::size_t conditions = 0;
  std::string_view rest = layout.key;
  while (!rest.empty()) {
    std::string_view const term = rest.substr(0, rest.find(' '));
    rest.remove_prefix(term.size() == rest.size() ? term.size() : term.size() + 1);
    std::size_t const equals = term.find('=');
    if (equals == std::string_view::npos) {
      TableError("a key is a list of name=value");
    }
    std::string_view const name = term.substr(0, equals);
    std::string_view const value = term.substr(equals + 1);
    ++key.count;
    if (name == "context") {
      key.request = RequestOf(value);
    } else if (name == "parent") {
      key.parent = value;
    } else if (term == "endpoint=none") {
      key.isBeforeEndpoint = true;
    } else if (name == "guid") {
      key.uuid = UuidBytes(value);
      key.hasUuid = true;
    } else {
      std::uint32_t const number = HexadecimalNumber(value);
      auto const small = static_cast<std::int16_t>(number);
      if (name == "type") {
        key.type = small;
      } else if (name == "subtype" || name == "capability") {
        key.subtype = small;
      } else if (name == "class") {
        key.interfaceClass = small;
      } else if (name == "subclass") {
        key.interfaceSubclass = small;
      } else if (name == "protocol") {
        key.interfaceProtocol = small;
      } else if (name == "index") {
        key.index = small;
      } else if (conditions == key.conditions.size()) {
        TableError("a key has too many conditions on fields");
      } else {
        Condition condition = PlaceOf(layout.fields, name);
        condition.value = number;
        key.conditions[conditions++] = condition;
      }
    }
  }
  return key;
}

/// The text between the braces of a pattern: "12..11" or "12..11+1".
struct PatternPart {
  unsigned high = 0;
  unsigned low = 0;
  bool isOneMore = false;
  std::size_t length = 0;  // with the closing brace
};

constexpr PatternPart ReadPatternPart(std::string_view text) {
  std::size_t at = 0;
  auto const number = [&] {
    unsigned value = 0;
    for (; at < text.size() && text[at] >= '0' && text[at] <= '9'; ++at) {
      value = value * 10 + static_cast<unsigned>(text[at] - '0');
    }
    return value;
  };
  PatternPart part;
  part.high = number();
  if (text.substr(at, 2) != "..") {
    TableError("a pattern names bits as {high..low} or {high..low+1}");
  }
  at += 2;
  part.low = number();
  part.isOneMore = text.substr(at, 2) == "+1";
  at += part.isOneMore ? 2 : 0;
  if (text.substr(at, 1) != "}") {
    TableError("a pattern names bits as {high..low} or {high..low+1}");
  }
  part.length = at + 1;
  return part;
}

/// Checks that a pattern names only runs of bits of the table.
constexpr void CheckPattern(Meaning const& meaning) {
  std::string_view rest = meaning.pattern;
  while (rest.find('{') != std::string_view::npos) {
    rest.remove_prefix(rest.find('{') + 1);
    PatternPart const part = ReadPatternPart(rest);
    bool isFound = false;
    for (Bit const& bit : meaning.bits) {
      isFound = isFound || (!bit.isValue && bit.high == part.high && bit.low == part.low);
    }
    if (!isFound) {
      TableError("a pattern names bits that the table does not have");
    }
  }
}

/// Checks that runs of bits neither overlap nor leave a gap, and that a value comes after its bits
/// and fits into them. `bits` is the width of the field. When it is 0 (the width varies) or above
/// 64, gaps are allowed.
constexpr void CheckBits(std::span<Bit const> rows, unsigned bits) {
  std::uint64_t seen = 0;
  Bit const* range = nullptr;
  std::uint64_t lastValue = 0;
  bool hasValue = false;
  for (Bit const& row : rows) {
    if (row.high < row.low || row.high > 63) {
      TableError("bits are written with the higher one first");
    }
    if (row.isValue) {
      if (range == nullptr || range->high != row.high || range->low != row.low) {
        TableError("a value of bits does not come after those bits");
      }
      if ((std::uint64_t{row.value} >> (row.high - row.low)) > 1) {
        TableError("a value does not fit into its bits");
      }
      if (hasValue && row.value <= lastValue) {
        TableError("values of bits are sorted, each once");
      }
      lastValue = row.value;
      hasValue = true;
      continue;
    }
    range = &row;
    hasValue = false;
    unsigned const width = row.high - row.low + 1u;
    std::uint64_t const mask = (width == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << width) - 1)
                               << row.low;
    if ((seen & mask) != 0) {
      TableError("bits overlap");
    }
    seen |= mask;
  }
  if (bits != 0 && bits <= 64) {
    std::uint64_t const all = bits == 64 ? ~std::uint64_t{0} : (std::uint64_t{1} << bits) - 1;
    if (seen != all) {
      TableError("bits leave a gap or go beyond the field: name reserved ones");
    }
  }
}

/// Checks that codes are sorted and unique and fit into the field.
constexpr void CheckCodes(std::span<Code const> codes, unsigned bits) {
  bool isFirst = true;
  std::uint32_t last = 0;
  for (Code const& code : codes) {
    if (code.last < code.first || (!isFirst && code.first <= last)) {
      TableError("codes are sorted, each once");
    }
    last = code.last;
    isFirst = false;
  }
  if (bits != 0 && bits < 32 && (last >> bits) != 0) {
    TableError("a code does not fit into its field");
  }
}

constexpr void CheckField(Field const& field) {
  unsigned const bits = field.size.bytes * 8u;
  if (field.name.empty()) {
    TableError("a field has no name");
  }
  if (field.size.bytes == 0 && field.size.expression.empty()) {
    TableError("a field has no size");
  }
  switch (field.meaning.form) {
    case Form::kBits:
      CheckBits(field.meaning.bits, bits);
      CheckPattern(field.meaning);
      break;
    case Form::kEnumeration:
      CheckCodes(field.meaning.codes, bits);
      break;
    case Form::kUuid:
    case Form::kUuidBigEndian:
      if (field.size.bytes != 16) {
        TableError("a UUID has 16 bytes");
      }
      break;
    case Form::kDecimal:
    case Form::kHexadecimal:
    case Form::kSigned:
      if (field.size.bytes > 8) {
        TableError("a number has at most 8 bytes");
      }
      break;
    case Form::kBcd:
    case Form::kStringIndex:
      if (field.size.bytes == 0 || field.size.bytes > 2) {
        TableError("a release or string index has 1 or 2 bytes");
      }
      break;
    case Form::kUtf16:
    case Form::kAscii:
    case Form::kBytes:
      break;
  }
}

/// The sizes of a compiled layout.
struct Counts {
  std::size_t rows = 0;
  std::size_t ops = 1;  // step 0 means "no expression"
  std::size_t tests = 0;
};

template <typename Emit>
constexpr void ForEachExpression(Layout const& layout, Emit& emit) {
  auto const expression = [&](std::string_view text, std::size_t row) {
    Parser(text, layout.fields, row, false, emit).ParseExpression();
  };
  for (std::size_t i = 0; i < layout.fields.size(); ++i) {
    Field const& field = layout.fields[i];
    if (!field.size.expression.empty() && field.size.expression != "rest") {
      expression(field.size.expression, i);
    }
    if (!field.extra.repeat.empty() && field.extra.repeat != "end") {
      expression(field.extra.repeat, i);
    }
    if (!field.extra.when.empty()) {
      Parser(field.extra.when, layout.fields, i, true, emit).ParseCondition();
    }
  }
  if (!layout.length.empty()) {
    expression(layout.length, layout.fields.size());
  }
}

struct Counter {
  Counts counts;
  constexpr void operator()(Op const& /*op*/) { ++counts.ops; }
  constexpr void operator()(Test const& /*test*/) { ++counts.tests; }
};

constexpr Counts Count(Layout const& layout) {
  Counter counter;
  counter.counts.rows = layout.fields.size();
  ForEachExpression(layout, counter);
  return counter.counts;
}

template <std::size_t kRows, std::size_t kOps, std::size_t kTests>
struct Storage {
  std::array<Row, kRows> rows{};
  std::array<Op, kOps> ops{};
  std::array<Test, kTests> tests{};
  bool usesFacts = false;
  Key key;
  std::int32_t exactLength = -1;
  std::uint16_t length = 0;
  std::uint8_t lengthSize = 0;
  std::uint8_t typeOffset = 0;
  std::uint8_t plainRows = 0;
  std::uint16_t plainSize = 0;
};

// Stores the steps and tests that the parser emits.
template <std::size_t kRows, std::size_t kOps, std::size_t kTests>
struct Keeper {
  Storage<kRows, kOps, kTests>& storage;
  std::size_t nextOp = 1;
  std::size_t nextTest = 0;

  constexpr void operator()(Op const& op) {
    storage.ops[nextOp++] = op;
    storage.usesFacts = storage.usesFacts || (op.code == OpCode::kValue && IsFact(op.number));
  }
  constexpr void operator()(Test const& test) {
    storage.tests[nextTest++] = test;
    storage.usesFacts = storage.usesFacts || IsFact(test.slot);
  }
  static constexpr bool IsFact(std::size_t slot) { return slot >= kMostRows; }
};

/// True when `text` is this number in decimal.
constexpr bool IsNumber(std::string_view text, std::size_t number) {
  std::size_t value = 0;
  for (char const c : text) {
    if (c < '0' || c > '9') {
      return false;
    }
    value = value * 10 + static_cast<std::size_t>(c - '0');
  }
  return !text.empty() && value == number;
}

template <std::size_t kRows, std::size_t kOps, std::size_t kTests>
constexpr Storage<kRows, kOps, kTests> Compile(Layout const& layout) {
  static_assert(kRows <= kMostRows);
  Storage<kRows, kOps, kTests> storage;
  for (std::size_t i = 0; i < kRows; ++i) {
    storage.rows[i].slot = static_cast<std::uint8_t>(SlotOf(layout.fields, i));
  }
  Keeper<kRows, kOps, kTests> keeper{storage};
  auto const expression = [&](std::string_view text, std::size_t row) {
    auto const first = static_cast<std::uint16_t>(keeper.nextOp);
    Parser(text, layout.fields, row, false, keeper).ParseExpression();
    return first;
  };
  if (layout.id.empty() || layout.name.empty() || layout.source.empty()) {
    TableError("a layout has an id, a name and a source");
  }
  std::size_t fixedLength = 0;
  for (std::size_t i = 0; i < kRows; ++i) {
    Field const& field = layout.fields[i];
    CheckField(field);
    Row& row = storage.rows[i];
    row.field = &field;
    row.fixedSize = field.size.bytes;
    row.mask = ByteView::MaskOf(row.fixedSize);
    row.isRest = field.size.expression == "rest";
    if (!field.size.expression.empty() && !row.isRest) {
      row.size = expression(field.size.expression, i);
    }
    row.untilEnd = field.extra.repeat == "end";
    if (!field.extra.repeat.empty() && !row.untilEnd) {
      row.repeat = expression(field.extra.repeat, i);
    }
    if (!field.extra.when.empty()) {
      row.firstTest = static_cast<std::uint16_t>(keeper.nextTest);
      Parser(field.extra.when, layout.fields, i, true, keeper).ParseCondition();
      row.testCount = static_cast<std::uint8_t>(keeper.nextTest - row.firstTest);
    }
    row.isPlain = field.size.bytes != 0 && field.extra.when.empty() && field.extra.repeat.empty();
    if (field.extra.group != '\0' && field.extra.repeat.empty()) {
      TableError("a group says how often it repeats");
    }
    if (field.extra.when.empty() && field.extra.repeat.empty()) {
      fixedLength += field.size.bytes;
    }
  }
  for (std::size_t i = 0; i < kRows; ++i) {
    // Adjacent rows with the same name and with conditions are alternatives: the reader takes the
    // first whose condition holds.
    Field const& field = layout.fields[i];
    for (std::size_t next = i + 1;
         next < kRows && !field.extra.when.empty() && layout.fields[next].name == field.name;
         ++next) {
      if (layout.fields[next].extra.when.empty() || field.size.bytes == 0 ||
          layout.fields[next].size.bytes != field.size.bytes) {
        TableError("alternatives have conditions, and one size, which is a number");
      }
      ++storage.rows[i].alternatives;
    }
  }
  for (std::size_t i = 0; i < kRows; ++i) {
    Field const& first = layout.fields[i];
    std::size_t next = i + 1;
    while (first.extra.group != '\0' && next < kRows &&
           layout.fields[next].extra.group == first.extra.group) {
      if (layout.fields[next].extra.repeat != first.extra.repeat) {
        TableError("the rows of a group repeat equally often");
      }
      ++next;
    }
    storage.rows[i].groupRows = static_cast<std::uint8_t>(next - i);
    i = next - 1;
  }
  if (!layout.length.empty()) {
    storage.length = expression(layout.length, kRows);
    Op const* const ops = storage.ops.data() + storage.length;
    if (ops[0].code == OpCode::kNumber && ops[1].code == OpCode::kEnd) {
      storage.exactLength = static_cast<std::int32_t>(ops[0].number);
      storage.length = 0;
    }
  }
  if (layout.least < fixedLength) {
    TableError("the least length is below the fields that are always there");
  }
  bool const isFixed = std::ranges::all_of(storage.rows, &Row::isPlain);
  if (isFixed && layout.least != fixedLength) {
    TableError("the least length is not the end of the last field");
  }
  if (isFixed && !layout.length.empty() && !IsNumber(layout.length, fixedLength)) {
    TableError("the exact length is not the end of the last field");
  }
  while (storage.plainRows < kRows && storage.rows[storage.plainRows].isPlain) {
    storage.plainSize =
        static_cast<std::uint16_t>(storage.plainSize + storage.rows[storage.plainRows++].fixedSize);
  }
  storage.key = ReadKey(layout);
  bool const hasLength = kRows != 0 && IsLength(layout.fields[0].name);
  storage.lengthSize = hasLength ? layout.fields[0].size.bytes : std::uint8_t{0};
  storage.typeOffset = hasLength ? layout.fields[0].size.bytes : std::uint8_t{0};
  return storage;
}

template <auto const& kLayouts, std::size_t kIndex>
inline constexpr auto kStorage = [] {
  constexpr Counts kCounts = Count(kLayouts[kIndex]);
  return Compile<kCounts.rows, kCounts.ops, kCounts.tests>(kLayouts[kIndex]);
}();

template <auto const& kLayouts, std::size_t kIndex>
consteval Compiled CompiledOf() {
  constexpr auto& kParts = kStorage<kLayouts, kIndex>;
  return {&kLayouts[kIndex], kParts.key,        kParts.rows,        kParts.ops,
          kParts.tests,      kParts.usesFacts,  kParts.exactLength, kParts.length,
          kParts.lengthSize, kParts.typeOffset, kParts.plainRows,   kParts.plainSize};
}

/// Every layout of a table, compiled; no two have the same key.
template <auto const& kLayouts>
consteval auto CompileAll() {
  constexpr std::size_t kSize = std::size(kLayouts);
  for (std::size_t i = 0; i < kSize; ++i) {
    for (std::size_t j = 0; j < i; ++j) {
      if (kLayouts[i].key == kLayouts[j].key || kLayouts[i].id == kLayouts[j].id) {
        TableError("two layouts have one key or one id");
      }
    }
  }
  return []<std::size_t... kIndex>(std::index_sequence<kIndex...>) {
    return std::array<Compiled, kSize>{CompiledOf<kLayouts, kIndex>()...};
  }
  (std::make_index_sequence<kSize>{});
}

}  // namespace usb_fields::detail
