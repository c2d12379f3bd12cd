// Evaluates the terms of rules over a model. Internal to the library.
#pragma once

#include <bitset>
#include <cstdint>
#include <string>
#include <unordered_map>
#include <unordered_set>

#include <usb_rules/expression.h>
#include <usb_rules/field_checks.h>
#include <usb_rules/model.h>

namespace usb_rules::detail {

/// Why a term has no value.
enum class Why : std::uint8_t {
  kOk,
  kMissing,  ///< there is no such descriptor or field: a comparison with it is false
  kCut,      ///< the descriptor ends before the field
  kWalk,     ///< descriptors after a broken one cannot be read
  kSpeed,
  kDevice,
  kBos,
  kQualifier,
  kStrings,
  kHub,
  kOtherSpeed,
  kConfigurations,
  kBlocks,
  kCount,
};

struct Value {
  std::int64_t number = 0;
  Why why = Why::kOk;

  bool IsKnown() const noexcept { return why == Why::kOk || why == Why::kMissing; }
  bool IsTrue() const noexcept { return why == Why::kOk && number != 0; }
};

class Evaluator {
 public:
  Evaluator(Programs const& programs, Model const& model);

  /// The value of a term for a descriptor. Of repeated fields, the occurrence `index` is used.
  Value Evaluate(std::int32_t term, std::int32_t item, std::uint16_t index) {
    Term const& leaf = programs_.At(term);
    return leaf.op == Op::kNumber  ? Value{.number = leaf.number}
           : leaf.op == Op::kField ? FieldOf(leaf.name, item, index)
                                   : EvaluateTerm(term, item, index);
  }

  /// True when the length is the one that the table gives.
  bool HasTableLength(std::int32_t item) const noexcept;

  /// True when the descriptor has all fields that the rule names, or should have them.
  bool HasFields(Program const& program, std::int32_t item, std::uint16_t index);

  /// The number of occurrences of the repeated fields that a rule names; -1 when none repeats.
  int Repetitions(Program const& program, std::int32_t item) const;

 private:
  struct Key {
    std::uint64_t where;  // the term and the domain
    std::uint64_t first;
    std::uint64_t second;
    std::uint64_t third;
    bool operator==(Key const&) const = default;
  };
  struct Hash {
    std::size_t operator()(Key const& key) const noexcept {
      std::uint64_t hash = key.where;
      for (std::uint64_t const part : {key.first, key.second, key.third}) {
        hash = (hash ^ part) * 0x9E3779B97F4A7C15U;
        hash ^= hash >> 29U;
      }
      return static_cast<std::size_t>(hash);
    }
  };

  Value EvaluateTerm(std::int32_t term, std::int32_t item, std::uint16_t index);
  Slot SlotOf(std::uint16_t name, std::int32_t item) const noexcept {
    return words_.Find(model_.At(item).layout, name);
  }
  Cell const* CellOf(std::uint16_t name, std::int32_t item, std::uint16_t index) const noexcept {
    return model_.CellOf(item, SlotOf(name, item), index);
  }
  Value FieldOf(std::uint16_t name, std::int32_t item, std::uint16_t index) const noexcept;
  Value Arithmetic(Op op, Value left, Value right) const;
  Value Logic(Term const& term, std::int32_t item, std::uint16_t index);
  Value In(Term const& term, std::int32_t item, std::uint16_t index);
  Value FactOf(Fact fact, std::int32_t item);
  Value EndpointFact(Fact fact, std::int32_t item) const;
  Value OfField(Term const& term, std::int32_t item, std::uint16_t index);
  Value OfOccurrences(Term const& term, std::int32_t item, std::uint16_t index);
  Value OfTable(Check check, std::int32_t item) const;
  Value Collect(std::int32_t index, std::int32_t item);
  Value Unique(std::int32_t index, std::int32_t item, std::uint16_t occurrence);

  // Another descriptor; kNone with the reason in `why` when there is none.
  std::int32_t NodeOf(std::int32_t term, std::int32_t item, std::uint16_t index, Why& why);
  std::int32_t Direct(Node node, std::int32_t item, Why& why) const;
  std::int32_t Lookup(std::int32_t index, std::int32_t item, std::uint16_t occurrence, Why& why);
  void AddKeys(std::int32_t key, std::int32_t item, std::uint64_t where);
  std::int32_t First(std::int32_t index, std::int32_t item, Why& why);

  // The descriptor that identifies a domain, or kNone.
  std::int32_t DomainOf(Domain domain, std::int32_t item) const;
  // Calls visit(item) for each descriptor until it returns false; the reason when some cannot be
  // read.
  template <typename Visit>
  Why ForEach(Domain domain, std::int32_t head, Visit&& visit) const;
  Why PresenceOf(Source source) const;
  // Why a string of this index is missing.
  Why PresenceOfString(std::int64_t index) const;
  bool IsOnCycle(std::int32_t item);

  Programs const& programs_;
  Model const& model_;
  Vocabulary const& words_;
  std::unordered_map<std::uint64_t, Value> collected_;
  std::unordered_map<std::uint64_t, std::int32_t> firsts_;
  std::unordered_set<std::uint64_t> indexed_;
  std::unordered_map<Key, std::int32_t, Hash> found_;
  std::unordered_set<Key, Hash> seen_;
  std::unordered_map<std::int32_t, std::bitset<256>> cycles_;
};

}  // namespace usb_rules::detail
