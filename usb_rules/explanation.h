// Explains why a descriptor breaks a rule: the field, its value and what was expected. Internal to
// the library.
#pragma once

#include <cstdint>
#include <string>

#include <usb_rules/evaluator.h>
#include <usb_rules/expression.h>
#include <usb_rules/field_checks.h>
#include <usb_rules/model.h>
#include <usb_rules/vocabulary.h>

namespace usb_rules::detail {

/// The subject of a failed condition.
struct Cause {
  std::string field;
  std::uint64_t value = 0;
  bool isHexadecimal = false;
  std::uint16_t offset = 0;
  std::string expected;
  bool isField = false;                    ///< `field` belongs to the descriptor itself
  std::uint64_t mask = ~std::uint64_t{0};  ///< the bits of the field that the condition is about
};

class Explainer {
 public:
  /// All three must outlive it.
  Explainer(Programs const& programs, Model const& model, Evaluator& evaluator) noexcept
      : programs_(programs),
        model_(model),
        evaluator_(evaluator),
        words_(Vocabulary::Get()) {}

  /// Why a condition is false.
  /// Requires: Evaluate returned a known false.
  Cause Explain(std::int32_t term, std::int32_t item, std::uint16_t index);

  /// Why a descriptor breaks a check of its table: in the `wrong` bits of a field or, when `cell`
  /// is null, in the length.
  Cause ExplainCheck(Check check, std::int32_t item, Cell const* cell, std::uint64_t wrong) const;

 private:
  void ExplainComparison(Term const& term, std::int32_t item, std::uint16_t index, Cause& cause);
  void ExplainTable(Term const& term, std::int32_t item, std::uint16_t index, Cause& cause);
  void Describe(std::int32_t term, std::int32_t item, std::uint16_t index, Cause& cause);
  std::int32_t FieldIn(std::int32_t term) const;
  Cell const* CellOf(std::uint16_t name, std::int32_t item, std::uint16_t index) const noexcept {
    return model_.CellOf(item, words_.Find(model_.At(item).layout, name), index);
  }

  Programs const& programs_;
  Model const& model_;
  Evaluator& evaluator_;
  Vocabulary const& words_;
};

}  // namespace usb_rules::detail
