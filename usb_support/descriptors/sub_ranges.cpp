// The operations of CDescriptorRange that cut, list and count sub-ranges.
#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/first_match.h>
#include <usb_support/descriptors/range_lister.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/text/formatting.h>

namespace {

using usb_support::RangeLister;

template <typename Start, typename Finish>
CDescriptorRange CutOne(CDescriptorRangeIterator first, CDescriptorRangeIterator last,
                        Start const& start, Finish const& finish) {
  auto const [startFound, from] = start(first, last);
  if (!startFound || from == last) {
    return {};
  }
  // From the next descriptor on, so that a start never ends its own sub-range.
  auto const [finishFound, to] = finish(from + 1, last);
  if (!finishFound) {
    return {};
  }
  return {from, to};
}

// Cuts with fresh copies of a selector's finders in each pass, so that what a finder with a state
// of its own learns in one pass is gone in the next.
auto CutterOf(usb_support::RangeFinder const& start, usb_support::RangeFinder const& finish) {
  return [&start, &finish](CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
    usb_support::RangeFinder const freshStart = start;
    usb_support::RangeFinder const freshFinish = finish;
    return CutOne(first, last, freshStart, freshFinish);
  };
}

auto CutterOf(CRangeSelector const& selector) {
  return CutterOf(selector.FindStartFunc(), selector.FindFinishFunc());
}

// What a selector of the one predicate cuts, without making it: its finders keep no state and refer
// to the predicate.
auto CutterOf(usb_support::RangePredicate const& predicate) {
  return [&predicate](CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
    auto const find = [&predicate](CDescriptorRangeIterator from, CDescriptorRangeIterator to) {
      return usb_support::FirstMatch(from, to, predicate);
    };
    return CutOne(first, last, find, find);
  };
}

auto TypeMatcher(unsigned char type) {
  return [type](CDescriptorRangeIterator const& it) { return usb_support::HasType(it, type); };
}

// What a configuration has is seldom denser than this: one descriptor, and one of a wanted type, in
// so many bytes.
constexpr std::size_t kBytesOfDescriptor = 6;
constexpr std::size_t kBytesOfOneType = 32;

}  // namespace

CDescriptorRange CDescriptorRange::SubRange(CDescriptorRangeIterator first,
                                            CDescriptorRangeIterator last) {
  return {first, last};
}

CDescriptorRange CDescriptorRange::SubRange(CDescriptorRangeIterator first,
                                            CDescriptorRangeIterator last,
                                            usb_support::RangeFinder const& start,
                                            usb_support::RangeFinder const& finish) {
  return CutterOf(start, finish)(first, last);
}

CDescriptorRange CDescriptorRange::SubRange(CDescriptorRangeIterator first,
                                            CDescriptorRangeIterator last,
                                            CRangeSelector const& selector) {
  return CutOne(first, last, selector.FindStartFunc(), selector.FindFinishFunc());
}

CDescriptorRange CDescriptorRange::SubRange(usb_support::RangeFinder const& start,
                                            usb_support::RangeFinder const& finish) const {
  return SubRange(begin(), end(), start, finish);
}

CDescriptorRange CDescriptorRange::SubRange(CRangeSelector const& selector) const {
  return SubRange(begin(), end(), selector);
}

void CDescriptorRange::LogInvalid(CDescriptorRangeIterator validEnd) const {
  usb_support::format_detail::LineBuffer line;
  usb_support::format_detail::PrintChecked(
      line.Text(), usb_support::kDefaultIndentation,
      "Descriptor Range is not valid.\n  End of last valid descriptor:  0x%0*X.\n"
      "  End of Descriptor Range 0x%0*X.\n",
      16, usb_support::PrintedAddress(validEnd.operator->()), 16,
      usb_support::PrintedAddress(end().operator->()));
  TQLogger& logger = CAppState::Log();
  logger.IncrStackDepth();
  logger.DoWritePrintOnly(0, line.Text().Contents());
}

CDescriptorRange::RangeVector CDescriptorRange::GetSubRanges(CRangeSelector const& selector) const {
  return RangeLister::List(*this, CutterOf(selector));
}

CDescriptorRange::RangeVector CDescriptorRange::GetSubRanges(
    usb_support::RangeFinder const& start, usb_support::RangeFinder const& finish) const {
  return RangeLister::List(*this, CutterOf(start, finish));
}

CDescriptorRange::RangeVector CDescriptorRange::GetAll(unsigned char type) const {
  return RangeLister::Each(*this, length_ / kBytesOfOneType + 1, TypeMatcher(type));
}

CDescriptorRange::RangeVector CDescriptorRange::GetAll() const {
  return RangeLister::Each(*this, length_ / kBytesOfDescriptor + 1,
                           [](CDescriptorRangeIterator const&) { return true; });
}

unsigned short CDescriptorRange::Count(unsigned char type) const {
  return RangeLister::CountEach(*this, TypeMatcher(type));
}

// By value, as test programs expect: what a call counts with is its own.
// NOLINTBEGIN(performance-unnecessary-value-param)
unsigned short CDescriptorRange::Count(usb_support::RangePredicate predicate) const {
  return RangeLister::Count(*this, CutterOf(predicate));
}

unsigned short CDescriptorRange::Count(usb_support::RangeFinder start,
                                       usb_support::RangeFinder finish) const {
  return RangeLister::Count(*this, CutterOf(start, finish));
}

unsigned short CDescriptorRange::Count(CRangeSelector selector) const {
  return RangeLister::Count(*this, CutterOf(selector));
}

// NOLINTEND(performance-unnecessary-value-param)

void CDescriptorRange::TheRangeVectDeleter(std::vector<CDescriptorRange>* ranges) {
  delete ranges;
}

void CDescriptorRange::TheStringDeleter(std::string* text) {
  delete text;
}
