#include <usb_rules/wording.h>

#include <algorithm>
#include <array>

#include <usb_fields/reader.h>
#include <usb_rules/field_checks.h>
#include <usb_rules/vocabulary.h>

namespace usb_rules::detail {
namespace {

struct FactWords {
  std::string_view value;  // the name of a number
  std::string_view yes;    // the expectation of a condition
  std::string_view no;
};

// In the order of Fact.
constexpr std::array<FactWords, static_cast<std::size_t>(Fact::kCount)> kFacts = {{
    {"bDescriptorType", "", ""},
    {"bLength", "", ""},
    {"bDescriptorSubtype", "", ""},
    {"the speed", "", ""},
    {"bcdUSB of the device", "", ""},
    {"bInterfaceClass of its interface", "", ""},
    {"bInterfaceSubClass of its interface", "", ""},
    {"bInterfaceProtocol of its interface", "", ""},
    {"bAlternateSetting of its interface", "an alternate setting other than 0",
     "alternate setting 0"},
    {"", "an IN endpoint", "an endpoint that is not IN"},
    {"", "an OUT endpoint", "an endpoint that is not OUT"},
    {"", "a control endpoint", "an endpoint that is not a control endpoint"},
    {"", "an isochronous endpoint", "an endpoint that is not isochronous"},
    {"", "a bulk endpoint", "an endpoint that is not a bulk endpoint"},
    {"", "an interrupt endpoint", "an endpoint that is not an interrupt endpoint"},
    {"packet size of its endpoint", "", ""},
    {"additional transactions of its endpoint", "", ""},
    {"number of its endpoint", "", ""},
    {"", "a self-powered configuration", "a configuration that is not self-powered"},
    {"", "descriptors that fill the returned bytes exactly",
     "descriptors that do not fill the returned bytes exactly"},
    {"number of bytes returned", "", ""},
    {"number of configurations", "", ""},
    {"number of configurations of the other speed", "", ""},
    {"", "a BOS", "no BOS"},
    {"", "a device qualifier", "no device qualifier"},
    {"", "strings", "no strings"},
    {"", "a hub descriptor", "no hub descriptor"},
    {"", "a configuration of the other speed", "a configuration of the current speed"},
    {"", "sources that do not form a cycle", "sources that form a cycle"},
    {"", "an interface association that includes the interface", "no interface association"},
    {"number of languages", "", ""},
}};

struct NodeWords {
  std::string_view of;  // after "of": "bLength of its interface"
  std::string_view yes;
  std::string_view no;
};

// In the order of Node.
constexpr std::array<NodeWords, static_cast<std::size_t>(Node::kCount)> kNodes = {{
    {"its interface", "an interface descriptor before it", "no interface descriptor before it"},
    {"its endpoint", "an endpoint descriptor before it", "no endpoint descriptor before it"},
    {"the configuration", "a configuration", "no configuration"},
    {"the device", "a device descriptor", "no device descriptor"},
    {"the device qualifier", "a device qualifier", "no device qualifier"},
    {"the BOS", "a BOS", "no BOS"},
    {"the hub descriptor", "a hub descriptor", "no hub descriptor"},
    {"the next descriptor", "a descriptor after it", "no descriptor after it"},
    {"the descriptor before it", "a descriptor before it", "no descriptor before it"},
    {"the control interface", "a control interface", "no control interface"},
    {"the interface association", "an interface association", "no interface association"},
    {"the interface whose union names it", "a union that names it", "no union that names it"},
    {"the format before it", "a format before it", "no format before it"},
}};

// In the order of Domain.
constexpr std::array<std::string_view, static_cast<std::size_t>(Domain::kCount)> kDomains = {
    "the alternate setting",
    "the endpoint",
    "all alternate settings of the interface",
    "the control interface",
    "the function",
    "the configuration",
    "the format",
    "the BOS",
    "all configurations",
    "the strings",
    "the group terminal blocks",
};

// Words for the facts about strings and HID report descriptors.
struct SpokenName {
  std::string_view name;
  std::string_view words;
};

constexpr SpokenName kSpokenNames[] = {
    {"units", "number of code units"},
    {"lastUnit", "last code unit"},
    {"hexDigits", "number of hexadecimal digits"},
    {"upperHexDigits", "number of upper-case hexadecimal digits"},
    {"firstDigits", "number in the first 12 hexadecimal digits"},
    {"size", "size of the report descriptor"},
    {"listedLength", "length in the HID descriptor"},
    {"openCollections", "number of collections without an end"},
    {"openPushes", "number of push items without a pop item"},
    {"openDelimiters", "number of delimiters without an end"},
    {"dataItems", "number of input, output and feature items"},
    {"sharedIds", "number of report IDs in more than one outermost collection"},
    {"topsWithData", "number of outermost collections with data items of the same type"},
    {"oddReports", "number of reports that do not fill whole bytes"},
    {"cutBytes", "number of bytes after the last complete item"},
    {"kind", "item type"},
    {"tag", "item tag"},
    {"data", "item data"},
    {"depth", "number of enclosing collections"},
    {"usages", "number of usages"},
    {"reportSize", "report size"},
    {"reportCount", "report count"},
    {"logicalMin", "logical minimum"},
    {"logicalMax", "logical maximum"},
    {"physicalMin", "physical minimum"},
    {"physicalMax", "physical maximum"},
    {"reportId", "report ID"},
    {"usageMin", "usage minimum"},
    {"usageMax", "usage maximum"},
    {"pushes", "number of push items without a pop item"},
    {"openPairs", "state of the delimiter"},
    {"bitOffset", "bit offset"},
};

// The fields that are flags, with the expectation of the rules.
constexpr SpokenName kFlags[] = {
    {"wellFormed", "well-formed UTF-16"},
    {"isLong", "a short item"},
    {"required",
     "a usage page, logical minimum, logical maximum, report size and report count before the "
     "item"},
    {"pairFault", "a maximum for every minimum before the item"},
};

constexpr std::size_t kMostNames = 3;

std::string HexText(std::int64_t number) {
  return NumberText(number, true);
}

// "descriptor of type 24h (class-specific interface)", for the two digits of a type in a pattern.
std::string NameOfType(std::string_view digits) {
  std::int64_t const type = std::stoi(std::string(digits), nullptr, 16);
  return "descriptor of type " + TypeText(type);
}

// The descriptors that a pattern matches, in the singular.
std::string PatternWords(std::string_view pattern) {
  Vocabulary const& words = Vocabulary::Get();
  std::string text;
  std::size_t count = 0;
  for (std::string_view rest = pattern; !rest.empty();) {
    std::string_view const item = rest.substr(0, rest.find(','));
    rest.remove_prefix(std::min(rest.size(), item.size() + 1));
    if (pattern == "bos.*") {
      return "capability descriptor";
    }
    if (item == "*" || ++count > kMostNames || item.ends_with('*')) {
      return "descriptor";
    }
    text += text.empty() ? "" : " or ";
    if (item.starts_with("type=")) {
      text += item == "type=05" ? "endpoint" : NameOfType(item.substr(5));
      continue;
    }
    auto const layouts = static_cast<std::uint16_t>(words.LayoutCount());
    for (std::uint16_t layout = 1; layout < layouts; ++layout) {
      if (words.LayoutId(layout) == item) {
        text += words.LayoutName(layout);
        break;
      }
    }
  }
  bool const isWhole = text.ends_with("endpoint") || text.starts_with("descriptor");
  return isWhole ? text : text + " descriptor";
}

void Replace(std::string& text, std::string_view from, std::string_view to) {
  for (std::size_t at = text.find(from); at != std::string::npos; at = text.find(from, at)) {
    text.replace(at, from.size(), to);
    at += to.size();
  }
}

// A condition in parentheses: "(bulk and IN)". Here "is" replaces the "to be" of an expectation.
std::string ConditionWords(Programs const& programs, std::int32_t term) {
  if (term < 0) {
    return "";
  }
  std::string text = WishOf(programs, term);
  Replace(text, " not to be ", " is not ");
  Replace(text, " to be ", " is ");
  for (std::string_view const kind : {"IN", "OUT", "control", "isochronous", "bulk", "interrupt"}) {
    for (std::string_view const article : {"a ", "an "}) {
      Replace(text, std::string(article).append(kind).append(" endpoint"), kind);
    }
  }
  return " (" + text + ")";
}

// "an Interface descriptor", "a USB 2.0 Extension descriptor".
std::string One(std::string const& pattern) {
  bool const isVowel = std::string_view("AEIOaeio").find(pattern.front()) != std::string_view::npos;
  return (isVowel ? "an " : "a ") + pattern;
}

std::string Many(std::string const& pattern) {
  constexpr std::string_view kDescriptor = "descriptor";
  std::size_t const at = pattern.starts_with(kDescriptor) ? 0 : pattern.rfind(kDescriptor);
  return at == std::string::npos ? pattern + "s"
                                 : std::string(pattern).insert(at + kDescriptor.size(), "s");
}

std::string CollectionWords(Programs const& programs, Term const& term) {
  return " in " + std::string(kDomains[term.what]) + ConditionWords(programs, term.left);
}

std::string_view SignOf(Op op, bool isTrue) {
  switch (op) {
    case Op::kEqual:
    case Op::kNotEqual:
      return "";
    case Op::kLess:
      return isTrue ? "below " : "at least ";
    case Op::kLessOrEqual:
      return isTrue ? "at most " : "above ";
    case Op::kGreater:
      return isTrue ? "above " : "at most ";
    default:
      return isTrue ? "at least " : "below ";
  }
}

std::string RangesWords(Programs const& programs, std::int32_t next, bool isHexadecimal) {
  std::string text;
  auto const value = [&](std::int32_t term) {
    return programs.At(term).op == Op::kNumber ? NumberText(programs.At(term).number, isHexadecimal)
                                               : WordsOf(programs, term);
  };
  for (; next >= 0; next = programs.At(next).third) {
    Term const& range = programs.At(next);
    text += text.empty() ? "" : range.third < 0 ? " or " : ", ";
    text += value(range.left);
    text += range.left != range.right ? " to " + value(range.right) : "";
  }
  return text;
}

std::string ComparisonWords(Programs const& programs, Term const& term, bool isTrue) {
  bool const isHexadecimal = IsHexadecimalTerm(programs, term.left);
  std::string const left = WordsOf(programs, term.left);
  if (term.op == Op::kIn) {
    return left + (isTrue ? " to be " : " not to be ") +
           RangesWords(programs, term.right, isHexadecimal);
  }
  Term const& right = programs.At(term.right);
  std::string const value = right.op != Op::kNumber ? WordsOf(programs, term.right)
                            : IsTypeTerm(programs, term.left)
                                ? TypeText(right.number)
                                : NumberText(right.number, isHexadecimal);
  bool const isOther = term.op == (isTrue ? Op::kNotEqual : Op::kEqual);
  return left + (isOther ? " not to be " : " to be ") + std::string(SignOf(term.op, isTrue)) +
         value;
}

}  // namespace

std::string TypeText(std::int64_t type) {
  static usb_fields::Field const* const field = [] {
    Vocabulary const& words = Vocabulary::Get();
    std::uint16_t layout = 1;
    while (words.LayoutId(layout) != "usb2.device") {
      ++layout;
    }
    return words.Field(layout, 1);
  }();
  for (usb_fields::Code const& code : field->meaning.codes) {
    if (code.first <= type && type <= code.last) {
      return HexText(type).append(" (").append(code.name).append(")");
    }
  }
  return type == 0x24   ? "24h (class-specific interface)"
         : type == 0x25 ? "25h (class-specific endpoint)"
                        : HexText(type);
}

std::string FieldWords(std::string_view name) {
  auto const found = std::ranges::find(kSpokenNames, name, &SpokenName::name);
  return std::string(found != std::end(kSpokenNames) ? found->words : name);
}

std::string_view FlagWords(Programs const& programs, Term const& term) {
  if (term.op != Op::kEqual || programs.At(term.left).op != Op::kField) {
    return {};
  }
  std::string_view const name = Vocabulary::Get().NameText(programs.At(term.left).name);
  auto const found = std::ranges::find(kFlags, name, &SpokenName::name);
  return found != std::end(kFlags) ? found->words : std::string_view{};
}

std::string SpeedText(std::int64_t speed) {
  constexpr std::array<std::string_view, 6> kSpeeds = {
      "an unknown speed", "low speed", "full speed", "high speed", "SuperSpeed", "SuperSpeedPlus"};
  return std::string(kSpeeds[static_cast<std::size_t>(std::clamp<std::int64_t>(speed, 0, 5))]);
}

bool IsTypeTerm(Programs const& programs, std::int32_t term) {
  Term const& own = programs.At(term);
  return own.op == Op::kMember ? IsTypeTerm(programs, own.right)
                               : own.op == Op::kFact && own.what == static_cast<int>(Fact::kType);
}

bool IsHexadecimalTerm(Programs const& programs, std::int32_t term) {
  Term const& own = programs.At(term);
  if (own.op == Op::kMember) {
    return IsHexadecimalTerm(programs, own.right);
  }
  if (own.op == Op::kFact) {
    auto const fact = static_cast<Fact>(own.what);
    return fact == Fact::kType || fact == Fact::kSubtype || fact == Fact::kRelease ||
           fact == Fact::kClass || fact == Fact::kSubclass || fact == Fact::kProtocol;
  }
  if (own.op == Op::kField) {
    std::string_view const name = Vocabulary::Get().NameText(own.name);
    return name.starts_with("bcd") || name.ends_with("Class") || name.ends_with("Protocol") ||
           name.starts_with("bm") || name.ends_with("Type");
  }
  return false;
}

std::string WordsOf(Programs const& programs, std::int32_t index) {
  Term const& term = programs.At(index);
  auto const pattern = [&] { return PatternWords(programs.PatternText(term.pattern)); };
  auto const two = [&](std::string_view sign) {
    return WordsOf(programs, term.left).append(sign) + WordsOf(programs, term.right);
  };
  switch (term.op) {
    case Op::kNumber:
      return std::to_string(term.number);
    case Op::kField:
      return FieldWords(Vocabulary::Get().NameText(term.name));
    case Op::kBits: {
      std::string const bits = "[" + std::to_string(term.high) +
                               (term.high != term.low ? ".." + std::to_string(term.low) : "") + "]";
      Term const& left = programs.At(term.left);
      return left.op == Op::kMember
                 ? WordsOf(programs, left.right) + bits + " of " + WordsOf(programs, left.left)
                 : WordsOf(programs, term.left) + bits;
    }
    case Op::kAdd:
      return two(" + ");
    case Op::kSubtract:
      return two(" - ");
    case Op::kMultiply:
      return two(" * ");
    case Op::kDivide:
      return two(" / ");
    case Op::kRemainder:
      return two(" modulo ");
    case Op::kFact:
      return std::string(kFacts[term.what].value.empty() ? kFacts[term.what].yes
                                                         : kFacts[term.what].value);
    case Op::kNode:
      return std::string(kNodes[term.what].of);
    case Op::kMember:
      return WordsOf(programs, term.right) + " of " + WordsOf(programs, term.left);
    case Op::kFirst:
      return "the first " + pattern() + CollectionWords(programs, term);
    case Op::kLookup:
      return "the " + pattern() + " with " + WordsOf(programs, term.left) + " " +
             WordsOf(programs, term.right);
    case Op::kCount:
      return "number of " + Many(pattern()) + CollectionWords(programs, term);
    case Op::kSum:
      return "sum of " + WordsOf(programs, term.left) + " over " + std::string(kDomains[term.what]);
    case Op::kBitCount:
      return "number of bits set in " + WordsOf(programs, term.left);
    case Op::kBytes:
    case Op::kJoined:
      return WordsOf(programs, term.left);
    default:
      return WishOf(programs, index);
  }
}

std::string WishOf(Programs const& programs, std::int32_t index, bool isTrue) {
  Term const& term = programs.At(index);
  auto const pattern = [&] { return PatternWords(programs.PatternText(term.pattern)); };
  switch (term.op) {
    case Op::kNot:
      return WishOf(programs, term.left, !isTrue);
    case Op::kAnd:
    case Op::kOr: {
      bool const isAnd = (term.op == Op::kAnd) == isTrue;
      return WishOf(programs, term.left, isTrue) + (isAnd ? " and " : " or ") +
             WishOf(programs, term.right, isTrue);
    }
    case Op::kImplies:
      return WishOf(programs, term.left, !isTrue) + (isTrue ? " or " : " and ") +
             WishOf(programs, term.right, isTrue);
    case Op::kFact: {
      FactWords const& words = kFacts[term.what];
      return std::string(isTrue ? words.yes : words.no);
    }
    case Op::kNode:
      return std::string(isTrue ? kNodes[term.what].yes : kNodes[term.what].no);
    case Op::kFirst:
      return (isTrue ? One(pattern()) : "no " + pattern()) + CollectionWords(programs, term);
    case Op::kLookup:
      return (isTrue ? One(pattern()) : "no " + pattern()) + " with " +
             WordsOf(programs, term.left) + " " + WordsOf(programs, term.right);
    case Op::kMember:
      return WishOf(programs, term.right, isTrue) + " of " + WordsOf(programs, term.left);
    case Op::kEqual:
    case Op::kNotEqual:
    case Op::kLess:
    case Op::kLessOrEqual:
    case Op::kGreater:
    case Op::kGreaterOrEqual:
    case Op::kIn:
      return ComparisonWords(programs, term, isTrue);
    case Op::kListed:
      return WordsOf(programs, term.left) + (isTrue ? " that lists " : " that does not list ") +
             WordsOf(programs, term.right);
    case Op::kRising:
      return WordsOf(programs, term.left) +
             (isTrue ? " in ascending order" : " not in ascending order");
    case Op::kField:
    case Op::kBits:
      return WordsOf(programs, index) + (isTrue ? " other than 0" : " equal to 0");
    default:
      return "another value";
  }
}

}  // namespace usb_rules::detail
