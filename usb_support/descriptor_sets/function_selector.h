// Cuts a configuration into its USB functions: an interface association with the interfaces that it
// announces, or one interface with all its alternate settings.
#pragma once

#include <utility>

#include <usb_support/descriptors/descriptor_range_iterator.h>
#include <usb_support/descriptors/range_selector.h>
#include <usb_support/platform/export.h>

/// Where the function being cut began; null at first. One cell serves one list and must outlive the
/// finders that point to it.
struct function_head {
  CDescriptorRangeIterator descriptor;  ///< on an interface association or interface
};

/// Finds the next interface association or alternate setting 0 of an interface, and keeps it as the
/// head; `last`, with the head as it was, when there is none.
class USB_SUPPORT_API start_function {
 public:
  /// Requires: `head` outlives the finder and its copies.
  explicit start_function(function_head* head) noexcept : head_(head) {}

  /// Searches [first, last), as a RangeFinder does.
  std::pair<bool, CDescriptorRangeIterator> operator()(CDescriptorRangeIterator first,
                                                       CDescriptorRangeIterator last) const;

 private:
  function_head* head_;
};

/// Finds the end of the head's function: the next interface association, or alternate setting 0 of
/// the interface whose number follows the last number of the head's function (modulo 256); any
/// other interface is part of the function. `last` when there is none. Throws TQRunTimeException
/// ("Descriptor has type 0x...: not valid for USB Function.") when the head is neither an interface
/// nor an interface association.
class USB_SUPPORT_API end_function {
 public:
  /// Requires: `head` outlives the finder and its copies.
  explicit end_function(function_head const* head) noexcept : head_(head) {}

  /// Searches [first, last), as a RangeFinder does.
  std::pair<bool, CDescriptorRangeIterator> operator()(CDescriptorRangeIterator first,
                                                       CDescriptorRangeIterator last) const;

 private:
  function_head const* head_;
};

/// The selector made of both finders.
class USB_SUPPORT_API function_selector : public CRangeSelector {
 public:
  /// Requires: `head` outlives the selector and its copies.
  explicit function_selector(function_head* head);
  function_selector(function_selector const&) = default;
  function_selector& operator=(function_selector const&) = default;
  ~function_selector() override;
};
