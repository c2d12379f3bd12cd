#include <usb_rules/expression.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <optional>

#include <usb_rules/vocabulary.h>

namespace usb_rules::detail {
namespace {

template <std::size_t N>
std::optional<std::uint8_t> IndexOf(std::array<std::string_view, N> const& names,
                                    std::string_view name) {
  auto const found = std::ranges::find(names, name);
  if (found == names.end()) {
    return std::nullopt;
  }
  return static_cast<std::uint8_t>(found - names.begin());
}

constexpr std::array<std::string_view, static_cast<std::size_t>(Fact::kCount)> kFacts = {
    "type",
    "length",
    "subtype",
    "speed",
    "release",
    "class",
    "subclass",
    "protocol",
    "alternate",
    "in",
    "out",
    "control",
    "isochronous",
    "bulk",
    "interrupt",
    "packet",
    "extra",
    "number",
    "selfPowered",
    "isWhole",
    "returned",
    "configurations",
    "otherConfigurations",
    "hasBos",
    "hasQualifier",
    "hasStrings",
    "hasHub",
    "isOtherSpeed",
    "acyclic",
    "associated",
    "languages",
};

constexpr std::array<std::string_view, static_cast<std::size_t>(Node::kCount)> kNodes = {
    "setting", "endpoint", "config",   "device",      "qualifier", "bos",     "hub",
    "next",    "previous", "function", "association", "owner",     "heading",
};

constexpr std::array<std::string_view, static_cast<std::size_t>(Domain::kCount)> kDomains = {
    "setting", "endpoint", "interface", "function", "collection", "config",
    "format",  "bos",      "configs",   "texts",    "blocks",
};

constexpr std::array<std::string_view, 6> kSpeeds = {"unknown", "low",   "full",
                                                     "high",    "super", "superplus"};

constexpr std::array<std::string_view, static_cast<std::size_t>(Source::kCount)> kHeads = {
    "device", "configuration", "other", "qualifier", "bos", "hub", "string", "report", "blocks",
};

struct Function {
  std::string_view name;
  Op op;
};

constexpr Function kFunctions[] = {
    {"reserved", Op::kReserved}, {"known", Op::kKnown},       {"bcd", Op::kBcd},
    {"bytes", Op::kBytes},       {"bitCount", Op::kBitCount}, {"joined", Op::kJoined},
    {"listed", Op::kListed},     {"rising", Op::kRising},
};

// Shorthands for lookups.
struct Finder {
  std::string_view name;
  Domain domain;
  std::string_view pattern;
  std::string_view key;
};

constexpr Finder kFinders[] = {
    {"interface", Domain::kConfig, "usb2.interface", "bInterfaceNumber"},
    {"entity", Domain::kFunction, "uac1.*,uac2.*,uac3.*,video.*", "entity"},
    {"jackOf", Domain::kSetting, "midi.in_jack,midi.out_jack,midi.element", "jack"},
    {"endpointOf", Domain::kSetting, "type=05", "bEndpointAddress"},
    {"capability", Domain::kBos, "bos.*", "bDevCapabilityType"},
    {"string", Domain::kTexts, "text", "index"},
};

constexpr std::array<std::string_view, static_cast<std::size_t>(Check::kCount)> kChecks = {
    "tableLength",
    "tableReserved",
    "tableCodes",
    "tableDigits",
};

constexpr int kMostDepth = 64;

}  // namespace

/// Parses the texts of one rule.
class RuleParser {
 public:
  RuleParser(Programs& programs, Program& program) : programs_(programs), program_(program) {}

  void Parse() {
    Rule const& rule = *program_.rule;
    program_.scope = PatternOf(rule.scope);
    program_.source = SourceOf(rule.scope);
    program_.when = rule.when.empty() ? -1 : Text(rule.when);
    program_.holds = Text(rule.holds);
    CheckNames();
  }

 private:
  static Source SourceOf(std::string_view scope) {
    struct Start {
      std::string_view text;
      Source source;
    };
    constexpr Start kStarts[] = {
        {"bos.", Source::kBos},
        {"hub.", Source::kHub},
        {"text", Source::kString},
        {"usb2.string", Source::kString},
        {"usb2.device_qualifier", Source::kQualifier},
        {"usb2.device", Source::kDevice},
        {"usb2.other", Source::kOtherSpeedConfiguration},
        {"report", Source::kReport},
        {"midi2.group", Source::kGroupTerminalBlocks},
        {"run=device", Source::kDevice},
        {"run=other", Source::kOtherSpeedConfiguration},
        {"run=qualifier", Source::kQualifier},
        {"run=bos", Source::kBos},
        {"run=hub", Source::kHub},
        {"run=string", Source::kString},
    };
    for (Start const& start : kStarts) {
      if (scope.starts_with(start.text)) {
        return start.source;
      }
    }
    return Source::kConfiguration;
  }

  void Error(std::string_view what) {
    if (!hasError_) {
      programs_.errors_.append(program_.rule->id).append(": ").append(what);
      programs_.errors_.append(" at '").append(rest_).append("'\n");
    }
    hasError_ = true;
    rest_ = {};
  }

  std::int32_t Text(std::string_view text) {
    rest_ = text;
    std::int32_t const term = Implies();
    Skip();
    if (!rest_.empty()) {
      Error("this is not understood");
    }
    return term;
  }

  std::int32_t Add(Term const& term) {
    auto const next = static_cast<std::int32_t>(programs_.terms_.size());
    if (term.op != Op::kUnique) {  // its memory belongs to one rule
      auto const [known, isNew] = programs_.known_.try_emplace(term, next);
      if (!isNew) {
        return known->second;
      }
    }
    programs_.terms_.push_back(term);
    return next;
  }
  std::int32_t Number(std::int64_t number) { return Add({.op = Op::kNumber, .number = number}); }
  std::int32_t Two(Op op, std::int32_t left, std::int32_t right) {
    return Add({.op = op, .left = left, .right = right});
  }

  void Skip() {
    while (!rest_.empty() && rest_.front() == ' ') {
      rest_.remove_prefix(1);
    }
  }
  bool Take(std::string_view text) {
    Skip();
    if (!rest_.starts_with(text)) {
      return false;
    }
    rest_.remove_prefix(text.size());
    return true;
  }
  void Expect(std::string_view text) {
    if (!Take(text)) {
      Error(std::string("'").append(text).append("' is missing"));
    }
  }
  bool TakeWord(std::string_view word) {
    Skip();
    if (!rest_.starts_with(word) || (rest_.size() > word.size() && IsLetter(rest_[word.size()]))) {
      return false;
    }
    rest_.remove_prefix(word.size());
    return true;
  }
  static bool IsLetter(char c) {
    return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '_';
  }

  std::int32_t Implies() {
    if (++depth_ > kMostDepth) {
      Error("this is nested too deeply");
    }
    std::int32_t const left = Or();
    std::int32_t const term = Take("=>") ? Two(Op::kImplies, left, Implies()) : left;
    --depth_;
    return term;
  }
  std::int32_t Or() {
    std::int32_t left = And();
    while (Take("||")) {
      left = Two(Op::kOr, left, And());
    }
    return left;
  }
  std::int32_t And() {
    std::int32_t left = Compare();
    while (Take("&&")) {
      left = Two(Op::kAnd, left, Compare());
    }
    return left;
  }
  std::int32_t Compare() {
    std::int32_t const left = Sum();
    if (TakeWord("in") && Take("(")) {
      return Two(Op::kIn, left, Ranges());
    }
    Skip();
    struct Sign {
      std::string_view text;
      Op op;
    };
    constexpr Sign kSigns[] = {
        {"==", Op::kEqual},          {"!=", Op::kNotEqual}, {"<=", Op::kLessOrEqual},
        {">=", Op::kGreaterOrEqual}, {"<", Op::kLess},      {">", Op::kGreater},
    };
    for (Sign const& sign : kSigns) {
      if (Take(sign.text)) {
        return Two(sign.op, left, Sum());
      }
    }
    return left;
  }
  std::int32_t Ranges() {
    std::int32_t const low = Sum();
    std::int32_t const high = Take("..") ? Sum() : low;
    std::int32_t next = -1;
    if (Take(",")) {
      next = Ranges();
    } else {
      Expect(")");
    }
    return Add({.op = Op::kRange, .left = low, .right = high, .third = next});
  }
  std::int32_t Sum() {
    std::int32_t left = Product();
    for (;;) {
      Skip();
      if (Take("+")) {
        left = Two(Op::kAdd, left, Product());
      } else if (Take("-")) {
        left = Two(Op::kSubtract, left, Product());
      } else {
        return left;
      }
    }
  }
  std::int32_t Product() {
    std::int32_t left = Unary();
    for (;;) {
      Skip();
      if (Take("*")) {
        left = Two(Op::kMultiply, left, Unary());
      } else if (Take("/")) {
        left = Two(Op::kDivide, left, Unary());
      } else if (Take("%")) {
        left = Two(Op::kRemainder, left, Unary());
      } else if (Take(">>")) {
        left = Two(Op::kShift, left, Unary());
      } else if (!rest_.starts_with("&&") && Take("&")) {
        left = Two(Op::kBitAnd, left, Unary());
      } else {
        return left;
      }
    }
  }
  std::int32_t Unary() {
    Skip();
    if (!rest_.starts_with("!=") && Take("!")) {
      return Two(Op::kNot, Unary(), -1);
    }
    std::int32_t term = Primary();
    for (;;) {
      if (!rest_.starts_with("..") && Take(".")) {
        ++away_;
        std::int32_t const member = Primary();
        --away_;
        term = Two(Op::kMember, term, member);
      } else if (Take("[")) {
        auto const high = static_cast<std::uint8_t>(Digits());
        std::uint8_t const low = Take("..") ? static_cast<std::uint8_t>(Digits()) : high;
        Expect("]");
        if (high > 63 || low > high) {
          Error("this is not a range of bits");
        }
        term = Add({.op = Op::kBits, .high = high, .low = low, .left = term});
      } else {
        return term;
      }
    }
  }

  std::int64_t Digits() {
    Skip();
    int base = 10;
    if (rest_.starts_with("0x")) {
      rest_.remove_prefix(2);
      base = 16;
    }
    if (rest_.empty() || std::isxdigit(static_cast<unsigned char>(rest_.front())) == 0) {
      Error("a number is missing");
      return 0;
    }
    std::int64_t number = 0;
    while (!rest_.empty() && std::isxdigit(static_cast<unsigned char>(rest_.front())) != 0 &&
           number < 0x100000000000) {
      char const c = rest_.front();
      int const digit = c <= '9' ? c - '0' : (c | 0x20) - 'a' + 10;
      if (digit >= base) {
        break;
      }
      number = number * base + digit;
      rest_.remove_prefix(1);
    }
    return number;
  }

  std::string_view Word() {
    Skip();
    std::size_t size = 0;
    while (size < rest_.size() && IsLetter(rest_[size])) {
      ++size;
    }
    std::string_view const word = rest_.substr(0, size);
    rest_.remove_prefix(size);
    return word;
  }

  std::int32_t Primary() {
    Skip();
    if (Take("(")) {
      std::int32_t const term = Implies();
      Expect(")");
      return term;
    }
    if (!rest_.empty() && rest_.front() >= '0' && rest_.front() <= '9') {
      return Number(Digits());
    }
    std::string_view const word = Word();
    if (word.empty()) {
      Error("a name or a number is missing");
      return Number(0);
    }
    if (rest_.starts_with("(")) {
      rest_.remove_prefix(1);
      return Call(word);
    }
    return Name(word);
  }

  std::int32_t Name(std::string_view word) {
    if (auto const speed = IndexOf(kSpeeds, word)) {
      return Number(*speed);
    }
    if (auto const fact = IndexOf(kFacts, word)) {
      return Add({.op = Op::kFact, .what = *fact});
    }
    if (auto const node = IndexOf(kNodes, word)) {
      return Add({.op = Op::kNode, .what = *node});
    }
    if (word == "exactLength") {
      return Add({.op = Op::kExact});
    }
    if (word == "leastLength") {
      return Add({.op = Op::kLeast});
    }
    if (auto const check = IndexOf(kChecks, word)) {
      return Add({.op = Op::kTable, .what = *check});
    }
    std::uint16_t const name = Vocabulary::Get().NameOf(word);
    if (name == Vocabulary::kNoName) {
      Error(std::string("no descriptor has '").append(word).append("'"));
      return Number(0);
    }
    if (away_ == 0 && std::ranges::find(program_.names, name) == program_.names.end()) {
      program_.names.push_back(name);
    }
    return Add({.op = Op::kField, .name = name});
  }

  std::int32_t Call(std::string_view word) {
    for (Function const& function : kFunctions) {
      if (function.name == word) {
        Term term{.op = function.op, .high = 63, .left = Implies()};
        term.right = Take(",") ? Implies() : -1;
        Expect(")");
        Term const argument = programs_.terms_[static_cast<std::size_t>(term.left)];
        if (function.op == Op::kReserved && argument.op == Op::kBits) {
          term.high = argument.high;
          term.low = argument.low;
          term.left = argument.left;
        }
        bool const needsField = function.op != Op::kBitCount;
        if (needsField && programs_.terms_[static_cast<std::size_t>(term.left)].op != Op::kField) {
          Error("a field is needed");
        }
        return Add(term);
      }
    }
    for (Finder const& finder : kFinders) {
      if (finder.name == word) {
        std::int32_t const value = Implies();
        Expect(")");
        ++away_;
        std::int32_t const key = Name(finder.key);
        --away_;
        return Add({.op = Op::kLookup,
                    .what = static_cast<std::uint8_t>(finder.domain),
                    .pattern = PatternOf(finder.pattern),
                    .left = key,
                    .right = value});
      }
    }
    if (word == "unique") {
      return Unique();
    }
    if (word == "count" || word == "sum" || word == "first" || word == "lookup") {
      return Collect(word);
    }
    Error(std::string("'").append(word).append("' is not a function"));
    return Number(0);
  }

  std::uint8_t TakeDomain() {
    std::string_view const word = Word();
    auto const domain = IndexOf(kDomains, word);
    if (!domain) {
      Error("a domain is missing");
    }
    return domain.value_or(0);
  }

  std::int32_t Unique() {
    Term term{.op = Op::kUnique, .what = TakeDomain()};
    std::int32_t* const keys[] = {&term.left, &term.right, &term.third};
    for (std::int32_t* const key : keys) {
      if (Take(",")) {
        *key = Implies();
      }
    }
    Expect(")");
    return Add(term);
  }

  std::int32_t Collect(std::string_view word) {
    Term term{.op = word == "count"   ? Op::kCount
                    : word == "sum"   ? Op::kSum
                    : word == "first" ? Op::kFirst
                                      : Op::kLookup,
              .what = TakeDomain()};
    Expect(",");
    Expect("'");
    std::size_t const end = rest_.find('\'');
    if (end == std::string_view::npos) {
      Error("the pattern has no closing quote");
      return Number(0);
    }
    term.pattern = PatternOf(rest_.substr(0, end));
    rest_.remove_prefix(end + 1);
    ++away_;
    if (Take(",")) {
      term.left = Implies();
    }
    --away_;
    if (term.op == Op::kLookup) {
      Expect(",");
      term.right = Implies();
    }
    Expect(")");
    return Add(term);
  }

  std::uint16_t PatternOf(std::string_view text) {
    auto const known = std::ranges::find(programs_.patternTexts_, text);
    if (known != programs_.patternTexts_.end()) {
      return static_cast<std::uint16_t>(known - programs_.patternTexts_.begin());
    }
    Vocabulary const& words = Vocabulary::Get();
    Pattern pattern;
    pattern.layouts.resize(words.LayoutCount());
    pattern.types.resize(256);
    pattern.heads.resize(static_cast<std::size_t>(Source::kCount));
    for (std::string_view rest = text; !rest.empty();) {
      std::string_view const item = rest.substr(0, rest.find(','));
      rest.remove_prefix(std::min(rest.size(), item.size() + 1));
      if (!AddItem(pattern, item)) {
        Error(std::string("no descriptor matches '").append(item).append("'"));
      }
    }
    programs_.patterns_.push_back(std::move(pattern));
    programs_.patternTexts_.push_back(text);
    return static_cast<std::uint16_t>(programs_.patterns_.size() - 1);
  }

  static bool AddItem(Pattern& pattern, std::string_view item) {
    if (item == "*") {
      pattern.types.assign(pattern.types.size(), true);
      return true;
    }
    if (item.starts_with("type=") && item.size() == 7) {
      auto const digit = [](char c) { return c <= '9' ? c - '0' : c - 'A' + 10; };
      pattern.types[static_cast<std::uint8_t>(digit(item[5]) * 16 + digit(item[6]))] = true;
      return true;
    }
    if (item.starts_with("run=")) {
      auto const head = IndexOf(kHeads, item.substr(4));
      if (head) {
        pattern.heads[*head] = true;
      }
      return head.has_value();
    }
    Vocabulary const& words = Vocabulary::Get();
    bool const isPrefix = item.ends_with('*');
    std::string_view const start = isPrefix ? item.substr(0, item.size() - 1) : item;
    bool isFound = false;
    auto const layouts = static_cast<std::uint16_t>(words.LayoutCount());
    for (std::uint16_t layout = 1; layout < layouts; ++layout) {
      std::string_view const id = words.LayoutId(layout);
      if (isPrefix ? id.starts_with(start) : id == item) {
        pattern.layouts[layout] = true;
        isFound = true;
      }
    }
    return isFound;
  }

  // If no judged layout had the name, the rule could never report anything.
  void CheckNames() {
    Pattern const& scope = programs_.patterns_[program_.scope];
    Vocabulary const& words = Vocabulary::Get();
    auto const layouts = static_cast<std::uint16_t>(words.LayoutCount());
    bool const isOfAny = std::ranges::find(scope.types, true) != scope.types.end() ||
                         std::ranges::find(scope.heads, true) != scope.heads.end();
    for (std::uint16_t const name : program_.names) {
      bool isFound = isOfAny;
      for (std::uint16_t layout = 1; layout < layouts; ++layout) {
        if (isOfAny || scope.layouts[layout]) {
          Slot const slot = words.Find(layout, name);
          isFound = isFound || slot.IsThere();
          program_.mayRepeat = program_.mayRepeat || slot.repeats;
        }
      }
      if (!isFound) {
        Error("none of the judged descriptors has a field of the rule");
      }
    }
  }

  Programs& programs_;
  Program& program_;
  std::string_view rest_;
  int depth_ = 0;
  int away_ = 0;  // the number of steps from the judged descriptor to the one with the names
  bool hasError_ = false;
};

Programs::Programs(std::span<Rule const> catalogue)
    : ofLayout_(Vocabulary::Get().LayoutCount()),
      ofType_(256),
      ofHead_(static_cast<std::size_t>(Source::kCount)),
      ofTable_(Vocabulary::Get().LayoutCount()) {
  for (TableRules& rules : ofTable_) {
    rules.fill(kNoRule);
  }
  programs_.resize(catalogue.size());
  for (std::size_t i = 0; i < catalogue.size(); ++i) {
    programs_[i].rule = &catalogue[i];
    RuleParser(*this, programs_[i]).Parse();
    Pattern const& scope = patterns_[programs_[i].scope];
    auto const rule = static_cast<std::uint16_t>(i);
    Program const& program = programs_[i];
    if (program.when < 0 && program.holds >= 0 && At(program.holds).op == Op::kTable) {
      ListTable(rule, static_cast<Check>(At(program.holds).what), scope.layouts);
      continue;
    }
    List(rule, scope.layouts, ofLayout_);
    List(rule, scope.types, ofType_);
    List(rule, scope.heads, ofHead_);
  }
}

// Such a rule is judged field by field instead of by its term.
void Programs::ListTable(std::uint16_t rule, Check check, std::vector<bool> const& isIn) {
  for (std::size_t layout = 0; layout < isIn.size(); ++layout) {
    auto const asks = Vocabulary::Get().ChecksOfLayout(static_cast<std::uint16_t>(layout));
    if (isIn[layout] && (asks & BitOf(check)) != 0) {
      ofTable_[layout][static_cast<std::size_t>(check)] = rule;
    }
  }
}

void Programs::List(std::uint16_t rule, std::vector<bool> const& isIn,
                    std::vector<std::vector<Group>>& lists) {
  std::vector<std::int32_t> const guards = GuardsOf(programs_[rule]);
  for (std::size_t n = 0; n < lists.size(); ++n) {
    std::vector<Group>* level = &lists[n];
    for (std::size_t i = 0; isIn[n] && i < guards.size(); ++i) {
      auto group = std::ranges::find(*level, guards[i], &Group::guard);
      if (group == level->end()) {
        group = level->insert(group, {.guard = guards[i], .number = groups_++});
      }
      group->all.push_back(rule);
      if (i + 1 == guards.size()) {
        group->own.push_back(rule);
      }
      level = &group->further;
    }
  }
}

// The conditions of a rule that must all hold; -1 when there are none, or when each occurrence of a
// repeated field needs a separate evaluation.
std::vector<std::int32_t> Programs::GuardsOf(Program const& program) const {
  if (program.when < 0 || program.mayRepeat) {
    return {-1};
  }
  std::vector<std::int32_t> guards;
  std::int32_t rest = program.when;
  for (; At(rest).op == Op::kAnd; rest = At(rest).left) {
    guards.push_back(At(rest).right);
  }
  guards.push_back(rest);
  std::ranges::reverse(guards);
  return guards;
}

}  // namespace usb_rules::detail
