// The parser of the rule language: it turns rules into terms. Internal to the library.
#pragma once

#include <array>
#include <compare>
#include <cstdint>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include <usb_rules/field_checks.h>
#include <usb_rules/rule.h>
#include <usb_rules/verdict.h>

namespace usb_rules::detail {

enum class Op : std::uint8_t {
  kNumber,
  kField,
  kBits,  // bits high..low of `left`
  kAdd,
  kSubtract,
  kMultiply,
  kDivide,
  kRemainder,
  kBitAnd,
  kShift,
  kEqual,
  kNotEqual,
  kLess,
  kLessOrEqual,
  kGreater,
  kGreaterOrEqual,
  kIn,     // `left` is in one of the ranges that begin with `right`
  kRange,  // `left` to `right`; `third` is the next range
  kAnd,
  kOr,
  kImplies,
  kNot,
  kFact,
  kNode,      // another descriptor; as a value: whether it exists
  kMember,    // `right`, of the descriptor `left`
  kLookup,    // the descriptor of `domain` and `pattern` whose `left` is `right`
  kFirst,     // the first descriptor of `domain` and `pattern` for which `left` holds
  kCount,     // the number of descriptors for which `left` holds
  kSum,       // the sum of `left` over them
  kUnique,    // no earlier descriptor of `domain` had the same `left`, `right` and `third`
  kReserved,  // the reserved bits of field `left` have the required values
  kKnown,     // the code of field `left` is defined by the standard
  kBcd,       // field `left` contains only decimal digits
  kBytes,     // a number for all bytes of field `left`; 0 when all are 0
  kBitCount,  // the number of bits of `left` that are one
  kJoined,    // all occurrences of field `left` as one number, the first lowest
  kListed,    // some occurrence of field `left` is `right`
  kRising,    // every occurrence of field `left` is above the previous one
  kExact,     // the length is the one that the standard gives
  kLeast,     // the length is not below the one that the standard gives
  kTable,     // the descriptor agrees with its table in the Check `what`
};

/// The facts about a descriptor and its position.
enum class Fact : std::uint8_t {
  kType,
  kLength,
  kSubtype,
  kSpeed,
  kRelease,
  kClass,
  kSubclass,
  kProtocol,
  kAlternate,
  kIn,
  kOut,
  kControl,
  kIsochronous,
  kBulk,
  kInterrupt,
  kPacket,
  kTransactions,
  kNumber,
  kSelfPowered,
  kIsWhole,
  kReturned,
  kConfigurations,
  kOtherConfigurations,
  kHasBos,
  kHasQualifier,
  kHasStrings,
  kHasHub,
  kIsOtherSpeed,
  kAcyclic,
  kAssociated,
  kLanguages,
  kCount,
};

/// Another descriptor, relative to the judged one.
enum class Node : std::uint8_t {
  kSetting,
  kEndpoint,
  kConfig,
  kDevice,
  kQualifier,
  kBos,
  kHub,
  kNext,
  kPrevious,
  kFunction,
  kAssociation,
  kOwner,
  kHeading,
  kCount,
};

/// Descriptors that belong together.
enum class Domain : std::uint8_t {
  kSetting,     ///< an interface descriptor and everything after it, up to the next one
  kEndpoint,    ///< an endpoint descriptor and everything after it, up to the next one
  kInterface,   ///< all settings of one interface
  kFunction,    ///< the setting of the control interface
  kCollection,  ///< all settings of all interfaces of the function
  kConfig,
  kFormat,  ///< a format of a video stream and everything after it, up to the next one
  kBos,
  kConfigs,  ///< all configurations of one speed
  kTexts,
  kBlocks,  ///< group terminal blocks
  kCount,
};

/// A selection of descriptors.
struct Pattern {
  std::vector<bool> layouts;
  std::vector<bool> types;
  std::vector<bool> heads;  ///< the first descriptor of the answers of these sources

  bool Matches(std::uint16_t layout, std::uint8_t type) const {
    return layouts[layout] || types[type];
  }
};

struct Term {
  Op op = Op::kNumber;
  std::uint8_t high = 0;
  std::uint8_t low = 0;
  std::uint8_t what = 0;  // a Fact, a Node, or a Domain
  std::uint16_t name = 0;
  std::uint16_t pattern = 0;
  std::int32_t left = -1;
  std::int32_t right = -1;
  std::int32_t third = -1;
  std::int64_t number = 0;

  auto operator<=>(Term const&) const = default;  // NOLINT(modernize-use-nullptr)
};

/// A rule after parsing.
struct Program {
  Rule const* rule = nullptr;
  std::uint16_t scope = 0;
  std::int32_t when = -1;
  std::int32_t holds = -1;
  std::vector<std::uint16_t> names;  ///< fields of the judged descriptor itself
  Source source = Source::kConfiguration;
  bool mayRepeat = false;  ///< one of them repeats in some layout
};

/// No rule.
inline constexpr std::uint16_t kNoRule = 0xFFFF;

/// The rules that judge a layout by its table, one per Check.
using TableRules = std::array<std::uint16_t, static_cast<std::size_t>(Check::kCount)>;

/// Rules for one kind of descriptor whose conditions begin with the same terms.
struct Group {
  std::int32_t guard = -1;   ///< the last of these terms; -1: there is none
  std::uint16_t number = 0;  ///< unique among all groups
  std::vector<std::uint16_t> all{};
  std::vector<std::uint16_t> own{};  ///< those of `all` that have no further condition
  std::vector<Group> further{};      ///< the others, grouped by their next term
};

/// A catalogue after parsing, ready for use.
class Programs {
 public:
  explicit Programs(std::span<Rule const> catalogue);

  std::vector<Program> const& All() const noexcept { return programs_; }
  Term const& At(std::int32_t term) const noexcept {
    return terms_[static_cast<std::size_t>(term)];
  }
  std::size_t TermCount() const noexcept { return terms_.size(); }
  Pattern const& PatternAt(std::uint16_t index) const noexcept { return patterns_[index]; }
  std::string_view PatternText(std::uint16_t index) const noexcept { return patternTexts_[index]; }
  std::vector<Group> const& OfLayout(std::uint16_t layout) const { return ofLayout_[layout]; }
  std::vector<Group> const& OfType(std::uint8_t type) const { return ofType_[type]; }
  std::vector<Group> const& OfHead(Source source) const {
    return ofHead_[static_cast<std::size_t>(source)];
  }
  TableRules const& OfTable(std::uint16_t layout) const noexcept { return ofTable_[layout]; }
  std::size_t GroupCount() const noexcept { return groups_; }
  /// The mistakes in the texts, one per line.
  std::string const& Errors() const noexcept { return errors_; }

 private:
  friend class RuleParser;

  void List(std::uint16_t rule, std::vector<bool> const& isIn,
            std::vector<std::vector<Group>>& lists);
  void ListTable(std::uint16_t rule, Check check, std::vector<bool> const& isIn);
  std::vector<std::int32_t> GuardsOf(Program const& program) const;

  std::vector<Program> programs_;
  std::vector<Term> terms_;
  std::vector<Pattern> patterns_;
  std::vector<std::string_view> patternTexts_;
  std::map<Term, std::int32_t> known_;  // equal terms are stored once
  std::vector<std::vector<Group>> ofLayout_;
  std::vector<std::vector<Group>> ofType_;
  std::vector<std::vector<Group>> ofHead_;
  std::vector<TableRules> ofTable_;
  std::uint16_t groups_ = 0;
  std::string errors_;
};

}  // namespace usb_rules::detail
