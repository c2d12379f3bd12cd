// The rows of the tables of fields. The files in tables/ contain only these rows, one file per
// standard, each table in the order of the standard's own table:
//
//   constexpr Field kEndpoint[] = {
//       {"bLength", 1, Dec()},
//       {"bEndpointAddress", 1, Bits(kEndpointAddress)},
//       {"bMaxPacketSize", 2, Dec(kBytes), {.when = "speed >= super"}},
//   };
//
// Expressions are text: numbers (decimal, or 0x and hexadecimal), names of earlier fields, their
// bits ("bmAttributes[1..0]"), facts of the context ("speed", "class", "protocol"), + - * / and
// comparisons. A condition is one comparison with a number, or several joined by &&. All of this is
// checked at compile time: a table with an unknown name, a gap in the bits or a code out of order
// does not compile (compile.h).
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace usb_fields {

/// The interpretation of a field's bytes.
enum class Form : std::uint8_t {
  kDecimal,        ///< a number, shown in decimal
  kHexadecimal,    ///< a number, shown in hexadecimal
  kSigned,         ///< a number in two's complement
  kBcd,            ///< a release in binary-coded decimal: 0x0210 is 2.10
  kStringIndex,    ///< index of a string descriptor; 0: none
  kEnumeration,    ///< a number with names
  kBits,           ///< bits with names
  kUuid,           ///< 16 bytes: a UUID with its first three groups little-endian
  kUuidBigEndian,  ///< 16 bytes: a UUID in the order of RFC 4122
  kUtf16,          ///< text in UTF-16, little-endian
  kAscii,          ///< text
  kBytes,          ///< bytes without further meaning
};

/// A code, or a range of codes, with its name.
struct Code {
  std::uint32_t first;
  std::uint32_t last;
  std::string_view name;

  constexpr Code(std::uint32_t code, std::string_view text) : first(code), last(code), name(text) {}
  constexpr Code(std::uint32_t from, std::uint32_t to, std::string_view text)
      : first(from),
        last(to),
        name(text) {}
};

/// The unit of a number.
struct Unit {
  enum class Kind : std::uint8_t {
    kNone,
    kTimes,         ///< value x scale / divisor
    kPower,         ///< 2^value x scale
    kPowerLessOne,  ///< 2^(value - 1) x scale, for values 1 to 16
    kPlusOne,       ///< value + 1
    kIdentifier,    ///< not a quantity but a number that identifies something
  };

  Kind kind = Kind::kNone;
  std::uint32_t scale = 1;
  std::uint32_t divisor = 1;
  std::string_view name = {};
};

/// A run of bits with its name, or the name of one value of the run before it. A name may contain
/// "{8i+3}": 8 times the index of the repetition, plus 3.
struct Bit {
  std::uint8_t high;
  std::uint8_t low;
  bool isValue = false;
  std::uint32_t value = 0;
  std::string_view name;
  Unit unit = {};

  /// One bit.
  constexpr Bit(std::uint8_t bit, std::string_view text) : high(bit), low(bit), name(text) {}
  /// The bits `from` down to `to`, as a number.
  constexpr Bit(std::uint8_t from, std::uint8_t to, std::string_view text, Unit counts = {})
      : high(from),
        low(to),
        name(text),
        unit(counts) {}
  /// The meaning of one value of those bits.
  constexpr Bit(std::uint8_t from, std::uint8_t to, std::uint32_t number, std::string_view text)
      : high(from),
        low(to),
        isValue(true),
        value(number),
        name(text) {}

  /// True for reserved bits.
  constexpr bool IsReserved() const { return !isValue && name.starts_with("Reserved"); }
  /// The required value of reserved bits.
  constexpr std::uint64_t ReservedValue() const { return name == "Reserved (set to one)" ? 1 : 0; }
};

/// A UUID in its usual form, with its name.
struct UuidName {
  std::string_view uuid;
  std::string_view name;
};

/// Names that are shared by several tables.
enum class Names : std::uint8_t {
  kNone,
  kClass,     ///< a class code
  kSubclass,  ///< a subclass code; the class is the byte before it
  kProtocol,  ///< a protocol code; class and subclass are the two bytes before it
  kLanguage,  ///< a language identifier
};

/// The meaning of the bytes of a field.
struct Meaning {
  Form form = Form::kBytes;
  Names names = Names::kNone;
  std::span<Code const> codes = {};
  std::span<Bit const> bits = {};
  bool namesBits = false;         // for bits: a value's name is shown with the name of its bits
  std::string_view pattern = {};  // for bits: their text; "{5..4}" is replaced by a value
  std::span<UuidName const> uuids = {};
  Unit unit = {};
};

constexpr Meaning Dec(Unit unit = {}) {
  return {.form = Form::kDecimal, .unit = unit};
}
constexpr Meaning Hex() {
  return {.form = Form::kHexadecimal};
}
constexpr Meaning Signed(Unit unit = {}) {
  return {.form = Form::kSigned, .unit = unit};
}
constexpr Meaning Bcd() {
  return {.form = Form::kBcd};
}
constexpr Meaning StringIndex() {
  return {.form = Form::kStringIndex};
}
constexpr Meaning Enum(std::span<Code const> codes) {
  return {.form = Form::kEnumeration, .codes = codes};
}
constexpr Meaning Enum(Names names) {
  return {.form = Form::kEnumeration, .names = names};
}
/// `pattern` is the text of all bits. In "{12..11+1} x {10..0} bytes" the first pair of braces is
/// replaced by the number in bits 12 to 11, plus 1, and the second by the number in bits 10 to 0
/// or, if that value has a name, by the name.
constexpr Meaning Bits(std::span<Bit const> bits, std::string_view pattern = {}) {
  Meaning meaning{.form = Form::kBits, .bits = bits, .pattern = pattern};
  for (std::size_t i = 0; i < bits.size(); ++i) {
    for (std::size_t j = 0; j < i && bits[i].isValue; ++j) {
      bool const isOther = bits[j].high != bits[i].high;
      meaning.namesBits =
          meaning.namesBits || (bits[j].isValue && isOther && bits[j].name == bits[i].name &&
                                bits[i].name != "Reserved");
    }
  }
  return meaning;
}
constexpr Meaning Uuid(std::span<UuidName const> uuids = {}) {
  return {.form = Form::kUuid, .uuids = uuids};
}
constexpr Meaning UuidBigEndian() {
  return {.form = Form::kUuidBigEndian};
}
constexpr Meaning Utf16() {
  return {.form = Form::kUtf16};
}
constexpr Meaning Ascii() {
  return {.form = Form::kAscii};
}
constexpr Meaning Bytes() {
  return {.form = Form::kBytes};
}

/// The number of bytes of a field: a number, an expression of earlier fields, or "rest".
struct Size {
  std::uint8_t bytes = 0;
  std::string_view expression = {};

  constexpr Size(int number) : bytes(static_cast<std::uint8_t>(number)) {}
  constexpr Size(char const* text) : expression(text) {}
};

/// Properties that only some fields have.
struct Extra {
  std::string_view repeat =
      {};  ///< the number of repetitions: an expression, or "end" (until the descriptor ends)
  std::string_view when = {};  ///< a condition; when it is false, the field is absent
  char group = '\0';           ///< adjacent rows with the same letter repeat together
};

/// One row: a field.
struct Field {
  std::string_view name;  ///< as in the standard
  Size size;
  Meaning meaning;
  Extra extra = {};
};

/// One descriptor.
struct Layout {
  std::string_view id;    ///< such as "usb2.device"; never changes
  std::string_view name;  ///< shown to people
  std::string_view key;   ///< identifies the descriptors: "type=24 subtype=06 class=01 protocol=20"
  std::uint16_t least;    ///< the least length
  std::string_view
      length;  ///< the exact length, an expression; empty where the standard gives none
  std::span<Field const> fields;
  std::string_view source;  ///< "UVC 1.5, table 3-6"
};

}  // namespace usb_fields
