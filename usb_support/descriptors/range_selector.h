// Cuts a range of descriptors into sub-ranges: one finder finds where a sub-range starts and one
// where it ends.
//
// A selector owns its finders; copies share them by reference counting, and any thread may read
// them. A selector that is made from predicates keeps a REFERENCE to each predicate object, not a
// copy: the predicate must live, unchanged, as long as the selector, every copy of it and every
// finder taken from it. So when the selector outlives the full expression, pass a named
// std::function, never a temporary or a lambda, which would be converted to a temporary.
#pragma once

#include <functional>
#include <utility>

#include <usb_support/descriptors/descriptor_range_iterator.h>
#include <usb_support/platform/export.h>

namespace usb_support {

/// Searches [first, last) and returns (found, position). The library's own finders return true even
/// when they find nothing, with `last` as the position; callers treat `last` as "not found".
using RangeFinder = std::function<std::pair<bool, CDescriptorRangeIterator>(
    CDescriptorRangeIterator first, CDescriptorRangeIterator last)>;

/// True for a descriptor that matches.
using RangePredicate = std::function<bool(CDescriptorRangeIterator const&)>;

}  // namespace usb_support

/// Two finders: where a sub-range starts, and where it ends.
class USB_SUPPORT_API CRangeSelector {
 public:
  /// Copies both finders.
  CRangeSelector(usb_support::RangeFinder const& start, usb_support::RangeFinder const& finish);

  /// From a descriptor that matches up to, not including, the next that does. Keeps a reference to
  /// `predicate`.
  CRangeSelector(usb_support::RangePredicate const& predicate);

  /// From a descriptor that matches `startPredicate` up to the next that matches `finishPredicate`.
  /// Keeps references to both. The second is not const, deliberately unlike the first.
  CRangeSelector(usb_support::RangePredicate const& startPredicate,
                 usb_support::RangePredicate& finishPredicate);

  /// Shares the finders of `other`.
  CRangeSelector(CRangeSelector const& other) noexcept;
  CRangeSelector& operator=(CRangeSelector const& other) noexcept;
  virtual ~CRangeSelector();

  /// The answer of the start or finish finder. Throws what it throws; std::bad_function_call when
  /// the finder or its predicate is empty.
  std::pair<bool, CDescriptorRangeIterator> FindStart(CDescriptorRangeIterator first,
                                                      CDescriptorRangeIterator last) const;
  std::pair<bool, CDescriptorRangeIterator> FindFinish(CDescriptorRangeIterator first,
                                                       CDescriptorRangeIterator last) const;

  /// The finders; valid as long as this selector or a copy of it exists.
  usb_support::RangeFinder const& FindStartFunc() const noexcept;
  usb_support::RangeFinder const& FindFinishFunc() const noexcept;

 private:
  struct Finders;

  Finders* finders_;
};
