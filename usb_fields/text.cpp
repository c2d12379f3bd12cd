#include <usb_fields/text.h>

#include <algorithm>

#include <usb_fields/names.h>
#include <usb_fields/text_writer.h>

namespace usb_fields {
namespace {

using detail::TextWriter;

// Units that are replaced by the next larger one from 1000 on.
struct Step {
  std::string_view name;
  std::string_view next;
};
constexpr Step kSteps[] = {
    {"ns", "us"},     {"us", "ms"},        {"ms", "s"},          {"Hz", "kHz"},
    {"kHz", "MHz"},   {"mV", "V"},         {"mW", "W"},          {"mWh", "Wh"},
    {"kB/s", "MB/s"}, {"bit/s", "kbit/s"}, {"kbit/s", "Mbit/s"}, {"Mbit/s", "Gbit/s"},
};

std::string_view NextUnit(std::string_view name) noexcept {
  for (Step const& step : kSteps) {
    if (step.name == name) {
      return step.next;
    }
  }
  return {};
}

// "1 byte", but "2 bytes".
void AddUnitName(TextWriter& writer, std::string_view name, bool isOne) noexcept {
  if (name.empty()) {
    return;
  }
  std::size_t const word = std::min(name.find(' '), name.size());
  writer.Add(' ');
  if (isOne && word > 3 && name[word - 1] == 's') {
    writer.Add(name.substr(0, word - 1));
    writer.Add(name.substr(word));
  } else {
    writer.Add(name);
  }
}

// numerator / divisor with up to four decimals.
void AddQuantity(TextWriter& writer, std::uint64_t numerator, std::uint64_t divisor,
                 std::string_view name) noexcept {
  constexpr std::uint64_t kStep = 1000;
  constexpr std::uint64_t kDecimals = 10000;
  for (std::string_view next = NextUnit(name); !next.empty() && numerator / divisor >= kStep;
       next = NextUnit(name)) {
    divisor *= kStep;
    name = next;
  }
  std::uint64_t whole = numerator / divisor;
  std::uint64_t decimals = (numerator % divisor * kDecimals + divisor / 2) / divisor;
  whole += decimals / kDecimals;
  decimals %= kDecimals;
  writer.AddNumber(whole);
  if (decimals != 0) {
    writer.Add('.');
    for (std::uint64_t place = kDecimals / 10; decimals != 0; place /= 10) {
      writer.AddNumber(decimals / place);
      decimals %= place;
    }
    AddUnitName(writer, name, false);
    return;
  }
  AddUnitName(writer, name, whole == 1);
}

// Adds nothing when the number has no meaning.
void AddCounted(TextWriter& writer, std::uint64_t value, bool isNegative,
                Unit const& unit) noexcept {
  constexpr std::uint64_t kMost = std::uint64_t{1} << 48;
  constexpr std::uint64_t kMostPower = 31;
  constexpr std::uint64_t kMostPowerLessOne = 16;
  switch (unit.kind) {
    case Unit::Kind::kNone:
      return;
    case Unit::Kind::kTimes:
      if (value < kMost) {
        writer.Add(isNegative && value != 0 ? "-" : "");
        AddQuantity(writer, value * unit.scale, unit.divisor, unit.name);
      }
      return;
    case Unit::Kind::kPower:
      if (value <= kMostPower) {
        AddQuantity(writer, (std::uint64_t{1} << value) * unit.scale, 1, unit.name);
      }
      return;
    case Unit::Kind::kPowerLessOne:
      if (value >= 1 && value <= kMostPowerLessOne) {
        AddQuantity(writer, (std::uint64_t{1} << (value - 1)) * unit.scale, 1, unit.name);
      }
      return;
    case Unit::Kind::kPlusOne:
      if (value < kMost) {
        AddQuantity(writer, value + 1, 1, unit.name);
      }
      return;
    case Unit::Kind::kIdentifier:
      writer.Add(unit.name);
      return;
  }
}

// Bits of a field beyond the first 64 are ignored.
std::uint64_t BitsOf(std::uint64_t value, unsigned high, unsigned low) noexcept {
  unsigned const width = high - low + 1;
  return width >= 64 ? value >> low : value >> low & ((std::uint64_t{1} << width) - 1);
}

// A name with its placeholder replaced.
void AddName(TextWriter& writer, std::string_view name, std::uint64_t index) noexcept {
  std::size_t const open = name.find('{');
  std::size_t const close = name.find('}');
  std::size_t const i = name.find("i+", open == std::string_view::npos ? 0 : open);
  if (open == std::string_view::npos || close == std::string_view::npos || i > close) {
    writer.Add(name);
    return;
  }
  auto const number = [](std::string_view text) {
    std::uint64_t value = 0;
    std::from_chars(text.data(), text.data() + text.size(), value);
    return value;
  };
  writer.Add(name.substr(0, open));
  writer.AddNumber(number(name.substr(open + 1, i - open - 1)) * index +
                   number(name.substr(i + 2, close - i - 2)));
  writer.Add(name.substr(close + 1));
}

// The rows that name values of the bits of `table[at]` follow it directly.
bool HasValues(std::span<Bit const> table, std::size_t at) noexcept {
  return at + 1 < table.size() && table[at + 1].isValue;
}

std::string_view ValueName(std::span<Bit const> table, std::size_t at,
                           std::uint64_t value) noexcept {
  for (std::size_t i = at + 1; i < table.size() && table[i].isValue; ++i) {
    if (table[i].value == value) {
      return table[i].name;
    }
  }
  return {};
}

class BitsSummary {
 public:
  BitsSummary(TextWriter& writer, FieldValue const& field) noexcept
      : writer_(writer),
        field_(field),
        meaning_(field.field->meaning) {}

  void Write() noexcept {
    if (!meaning_.pattern.empty()) {
      WritePattern();
    }
    for (std::size_t i = 0; i < meaning_.bits.size(); ++i) {
      Bit const& bit = meaning_.bits[i];
      if (bit.isValue) {
        continue;
      }
      std::uint64_t const value = BitsOf(field_.value, bit.high, bit.low);
      if (bit.IsReserved()) {
        if (value != bit.ReservedValue() && bit.low < field_.size * 8u) {
          Separate();
          WriteReserved(bit, value);
        }
      } else if (meaning_.pattern.empty()) {
        WriteRun(i, value);
      }
    }
    writer_.Add(writer_.IsEmpty() ? "None" : "");
  }

 private:
  void Separate() noexcept { writer_.Add(writer_.IsEmpty() ? "" : ", "); }

  void WriteReserved(Bit const& bit, std::uint64_t value) noexcept {
    writer_.Add(bit.high == bit.low ? "reserved bit " : "reserved bits ");
    writer_.AddNumber(bit.high);
    if (bit.high != bit.low) {
      writer_.Add("..");
      writer_.AddNumber(bit.low);
    }
    writer_.Add(value == 0 ? " not set" : bit.high == bit.low ? " set" : " not zero");
  }

  void WriteRun(std::size_t at, std::uint64_t value) noexcept {
    Bit const& bit = meaning_.bits[at];
    std::string_view const name = ValueName(meaning_.bits, at, value);
    if (name == "Not present") {
      return;
    }
    if (!name.empty() && !meaning_.namesBits && !name.starts_with("Reserved")) {
      Separate();
      writer_.Add(name);
      return;
    }
    bool const isFlag =
        bit.high == bit.low && !HasValues(meaning_.bits, at) && bit.unit.kind == Unit::Kind::kNone;
    if (isFlag && value == 0) {
      return;
    }
    Separate();
    AddName(writer_, bit.name, field_.index);
    if (!isFlag) {
      writer_.Add(": ");
      AddValue(at, value);
    }
  }

  void AddValue(std::size_t at, std::uint64_t value) noexcept {
    std::string_view const name = ValueName(meaning_.bits, at, value);
    if (!name.empty()) {
      writer_.Add(name);
      return;
    }
    std::array<char, 64> buffer;
    TextWriter counted(buffer);
    AddCounted(counted, value, false, meaning_.bits[at].unit);
    if (counted.IsEmpty()) {
      writer_.AddNumber(value);
    } else {
      writer_.Add(counted.Text());
    }
  }

  void WritePattern() noexcept {
    std::string_view rest = meaning_.pattern;
    for (std::size_t open = rest.find('{'); open != std::string_view::npos; open = rest.find('{')) {
      writer_.Add(rest.substr(0, open));
      rest.remove_prefix(open + 1);
      detail::PatternPart const part = detail::ReadPatternPart(rest);
      rest.remove_prefix(part.length);
      std::uint64_t const value = BitsOf(field_.value, part.high, part.low);
      if (part.isOneMore) {
        writer_.AddNumber(value + 1);
        continue;
      }
      for (std::size_t i = 0; i < meaning_.bits.size(); ++i) {
        Bit const& bit = meaning_.bits[i];
        if (!bit.isValue && bit.high == part.high && bit.low == part.low) {
          AddValue(i, value);
        }
      }
    }
    writer_.Add(rest);
  }

  TextWriter& writer_;
  FieldValue const& field_;
  Meaning const& meaning_;
};

// False for characters that are invisible or would change the appearance of other text.
bool IsHarmless(std::uint32_t c) noexcept {
  bool const isControl = c < 0x20 || (c >= 0x7F && c < 0xA0);
  bool const isFormat = (c >= 0x200B && c <= 0x200F) || (c >= 0x2028 && c <= 0x202E) ||
                        (c >= 0x2060 && c <= 0x206F) || c == 0xFEFF || c == 0x00AD ||
                        (c >= 0xFFF0 && c <= 0xFFFB) || c == 0x061C;
  bool const isSurrogate = c >= 0xD800 && c <= 0xDFFF;
  bool const isNoCharacter =
      (c & 0xFFFE) == 0xFFFE || (c >= 0xFDD0 && c <= 0xFDEF) || (c >= 0xE0000 && c <= 0xE0FFF);
  return !isControl && !isFormat && !isSurrogate && !isNoCharacter;
}

void AddCharacter(TextWriter& writer, std::uint32_t c) noexcept {
  if (!IsHarmless(c)) {
    writer.Add(c > 0xFFFF ? "\\U" : "\\u");
    writer.AddHex(c, c > 0xFFFF ? 8 : 4);
    return;
  }
  std::array<char, 4> bytes{};
  std::size_t count = 0;
  auto const add = [&](std::uint32_t byte) { bytes[count++] = static_cast<char>(byte); };
  if (c < 0x80) {
    add(c);
  } else if (c < 0x800) {
    add(0xC0 | c >> 6);
    add(0x80 | (c & 0x3F));
  } else if (c < 0x10000) {
    add(0xE0 | c >> 12);
    add(0x80 | (c >> 6 & 0x3F));
    add(0x80 | (c & 0x3F));
  } else {
    add(0xF0 | c >> 18);
    add(0x80 | (c >> 12 & 0x3F));
    add(0x80 | (c >> 6 & 0x3F));
    add(0x80 | (c & 0x3F));
  }
  writer.Add({bytes.data(), count});
}

// Zeros at the end are padding and left out.
void AddUtf16(TextWriter& writer, std::span<std::uint8_t const> bytes) noexcept {
  ByteView const view(bytes);
  std::size_t units = view.Size() / 2;
  bool const hasOddByte = view.Size() % 2 != 0;
  while (!hasOddByte && units != 0 && view.Number(2 * (units - 1), 2) == 0) {
    --units;
  }
  for (std::size_t i = 0; i < units && !writer.IsFull(); ++i) {
    auto const unit = static_cast<std::uint32_t>(view.Number(2 * i, 2));
    auto const next = static_cast<std::uint32_t>(view.Number(2 * (i + 1), 2));
    bool const isPair =
        i + 1 < units && unit >= 0xD800 && unit < 0xDC00 && next >= 0xDC00 && next < 0xE000;
    AddCharacter(writer, isPair ? 0x10000 + (unit - 0xD800) * 0x400 + (next - 0xDC00) : unit);
    i += isPair ? 1 : 0;
  }
  if (hasOddByte) {
    writer.Add("\\x");
    writer.AddHex(view.At(view.Size() - 1), 2);
  }
}

void AddAscii(TextWriter& writer, ByteView bytes) noexcept {
  std::size_t size = bytes.Size();
  while (size != 0 && bytes.At(size - 1) == 0) {
    --size;
  }
  for (std::size_t i = 0; i < size && !writer.IsFull(); ++i) {
    std::uint8_t const byte = bytes.At(i);
    if (byte >= 0x20 && byte < 0x7F) {
      writer.Add(static_cast<char>(byte));
    } else {
      writer.Add("\\x");
      writer.AddHex(byte, 2);
    }
  }
}

void AddUuid(TextWriter& writer, FieldValue const& field) noexcept {
  constexpr std::uint8_t kLittleEndian[] = {3, 2, 1, 0, 5, 4, 7, 6, 8, 9, 10, 11, 12, 13, 14, 15};
  ByteView const bytes(field.Bytes());
  bool const isBigEndian = field.field->meaning.form == Form::kUuidBigEndian;
  std::array<char, 36> text{};
  std::size_t size = 0;
  for (std::size_t i = 0; i < 16; ++i) {
    if (i == 4 || i == 6 || i == 8 || i == 10) {
      text[size++] = '-';
    }
    std::uint8_t const byte = bytes.At(isBigEndian ? i : kLittleEndian[i]);
    text[size++] = "0123456789abcdef"[byte >> 4];
    text[size++] = "0123456789abcdef"[byte & 0xF];
  }
  std::string_view const uuid(text.data(), size);
  writer.Add(uuid);
  for (UuidName const& known : field.field->meaning.uuids) {
    if (known.uuid == uuid) {
      writer.Add(" (");
      writer.Add(known.name);
      writer.Add(')');
      return;
    }
  }
}

void AddBytes(TextWriter& writer, ByteView bytes) noexcept {
  for (std::size_t i = 0; i < bytes.Size() && !writer.IsFull(); ++i) {
    writer.Add(i == 0 ? "" : " ");
    writer.AddHex(bytes.At(i), 2);
  }
}

void AddBcd(TextWriter& writer, FieldValue const& field) noexcept {
  bool isBcd = true;
  for (unsigned shift = 0; shift < field.size * 8u; shift += 4) {
    isBcd = isBcd && (field.value >> shift & 0xF) <= 9;
  }
  if (field.size == 1) {
    writer.AddHex(field.value >> 4, 1);
    writer.Add('.');
    writer.AddHex(field.value, 1);
  } else {
    if (field.value >> 12 != 0) {
      writer.AddHex(field.value >> 12, 1);
    }
    writer.AddHex(field.value >> 8, 1);
    writer.Add('.');
    writer.AddHex(field.value, 2);
  }
  writer.Add(isBcd ? "" : " (not BCD)");
}

std::int64_t SignedValue(FieldValue const& field) noexcept {
  unsigned const unused = field.size < 8 ? 64 - 8u * field.size : 0;
  return static_cast<std::int64_t>(field.value << unused) >> unused;
}

std::uint64_t Magnitude(std::int64_t value) noexcept {
  return value < 0 ? std::uint64_t{0} - static_cast<std::uint64_t>(value)
                   : static_cast<std::uint64_t>(value);
}

std::string_view EnumerationName(FieldValue const& field) noexcept {
  auto const code = static_cast<std::uint8_t>(field.value);
  auto const before = [&field](std::size_t count) {
    return field.offset < count ? std::uint8_t{0} : field.descriptor.At(field.offset - count);
  };
  switch (field.field->meaning.names) {
    case Names::kNone:
      return detail::NameOf(field.field->meaning.codes, field.value);
    case Names::kClass:
      return ClassName(code);
    case Names::kSubclass:
      return SubclassName(before(1), code);
    case Names::kProtocol:
      return ProtocolName(before(2), before(1), code);
    case Names::kLanguage:
      return LanguageName(static_cast<std::uint16_t>(field.value));
  }
  return {};
}

}  // namespace

std::string_view TextOf(FieldValue const& field, std::span<char> buffer) noexcept {
  TextWriter writer(buffer);
  Meaning const& meaning = field.field->meaning;
  bool const isText = meaning.form == Form::kUtf16 || meaning.form == Form::kAscii;
  if (field.IsCut() && !isText) {
    return {};
  }
  switch (meaning.form) {
    case Form::kDecimal:
      AddCounted(writer, field.value, false, meaning.unit);
      break;
    case Form::kSigned: {
      std::int64_t const value = SignedValue(field);
      AddCounted(writer, Magnitude(value), value < 0, meaning.unit);
      break;
    }
    case Form::kBcd:
      AddBcd(writer, field);
      break;
    case Form::kStringIndex:
      return field.value == 0 ? "No string" : "";
    case Form::kEnumeration:
      return EnumerationName(field);
    case Form::kBits:
      BitsSummary(writer, field).Write();
      break;
    case Form::kUuid:
    case Form::kUuidBigEndian:
      AddUuid(writer, field);
      break;
    case Form::kUtf16:
      AddUtf16(writer, field.Bytes());
      break;
    case Form::kAscii:
      AddAscii(writer, ByteView(field.Bytes()));
      break;
    case Form::kHexadecimal:
    case Form::kBytes:
      break;
  }
  return writer.Text();
}

std::string_view NumberOf(FieldValue const& field, std::span<char> buffer) noexcept {
  TextWriter writer(buffer);
  Form const form = field.field->meaning.form;
  bool const isBytes = form == Form::kUuid || form == Form::kUuidBigEndian ||
                       form == Form::kUtf16 || form == Form::kAscii || form == Form::kBytes;
  if (isBytes || field.IsCut() || field.size > 8) {
    AddBytes(writer, ByteView(field.Bytes()));
  } else if (form == Form::kDecimal || form == Form::kStringIndex) {
    writer.AddNumber(field.value);
  } else if (form == Form::kSigned) {
    std::int64_t const value = SignedValue(field);
    writer.Add(value < 0 ? "-" : "");
    writer.AddNumber(Magnitude(value));
  } else {
    writer.Add("0x");
    writer.AddHex(field.value, 2 * field.size);
  }
  return writer.Text();
}

bool BitsReader::Next() noexcept {
  if (field_.field->meaning.form != Form::kBits || field_.IsCut()) {
    return false;
  }
  std::span<Bit const> const table = field_.field->meaning.bits;
  while (next_ < table.size()) {
    std::size_t const at = next_++;
    Bit const& bit = table[at];
    // The table of a field of variable size has bits that a short field does not have.
    if (bit.isValue || bit.low >= field_.size * 8u) {
      continue;
    }
    std::uint64_t const value = BitsOf(field_.value, bit.high, bit.low);
    if (bit.IsReserved() && value == bit.ReservedValue()) {
      continue;
    }
    value_ = {bit.name, bit.high, bit.low, value, ValueName(table, at, value), bit.IsReserved()};
    if (bit.name.find('{') != std::string_view::npos) {
      TextWriter name(name_);
      AddName(name, bit.name, field_.index);
      value_.name = name.Text();
    }
    if (value_.text.empty()) {
      TextWriter text(text_);
      AddCounted(text, value, false, bit.unit);
      value_.text = text.Text();
    }
    return true;
  }
  return false;
}

}  // namespace usb_fields
