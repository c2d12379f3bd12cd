// The operations of CDescriptorRange that cut, list and count sub-ranges.
#include <cstdint>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/descriptor_type_finder.h>
#include <usb_support/helper/formatting.h>
#include <usb_support/suite_interfaces/app_state.h>

namespace {

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

// The library's own finders keep no state and need no copies.
auto OneByOneCutter() {
  return [](CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
    return CutOne(first, last, CDescriptorRange::AlwaysTrue, CDescriptorRange::AlwaysTrue);
  };
}

auto TypeCutter(unsigned char type) {
  return [type](CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
    return CutOne(first, last, DescriptorType(type), CDescriptorRange::AlwaysTrue);
  };
}

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
  TQLogger& logger = CAppState::Log();
  logger.IncrStackDepth();
  logger.DoWritePrintOnly(
      0, usb_support::FormatText(
             usb_support::kDefaultIndentation,
             "Descriptor Range is not valid.\n  End of last valid descriptor:  0x%0*X.\n"
             "  End of Descriptor Range 0x%0*X.\n",
             16, usb_support::PrintedAddress(validEnd.operator->()), 16,
             usb_support::PrintedAddress(end().operator->())));
}

template <typename Cut, typename Take>
void CDescriptorRange::ForEachSubRange(Cut const& cut, Take const& take) const {
  CDescriptorRangeIterator const validEnd = ValidUntil();
  if (validEnd != end()) {
    LogInvalid(validEnd);
  }
  for (CDescriptorRangeIterator current = begin(); current != validEnd;) {
    CDescriptorRange const subRange = cut(current, validEnd);
    if (subRange.IsEmpty()) {
      return;
    }
    take(subRange);
    auto const next = reinterpret_cast<std::uintptr_t>(subRange.Bytes()) + subRange.Length();
    while (reinterpret_cast<std::uintptr_t>(current.operator->()) < next) {
      ++current;
    }
  }
}

template <typename Cut>
CDescriptorRange::RangeVector CDescriptorRange::ListOf(Cut const& cut) const {
  RangeVector ranges(new std::vector<CDescriptorRange>, TheRangeVectDeleter);
  ForEachSubRange(cut, [&](CDescriptorRange const& range) { ranges->push_back(range); });
  return ranges;
}

template <typename Cut>
unsigned short CDescriptorRange::CountOf(Cut const& cut) const {
  unsigned int count = 0;
  ForEachSubRange(cut, [&](CDescriptorRange const&) { ++count; });
  return static_cast<unsigned short>(count);
}

CDescriptorRange::RangeVector CDescriptorRange::GetSubRanges(CRangeSelector const& selector) const {
  return ListOf(CutterOf(selector));
}

CDescriptorRange::RangeVector CDescriptorRange::GetSubRanges(
    usb_support::RangeFinder const& start, usb_support::RangeFinder const& finish) const {
  return ListOf(CutterOf(start, finish));
}

CDescriptorRange::RangeVector CDescriptorRange::GetAll(unsigned char type) const {
  return ListOf(TypeCutter(type));
}

CDescriptorRange::RangeVector CDescriptorRange::GetAll() const {
  return ListOf(OneByOneCutter());
}

unsigned short CDescriptorRange::Count(unsigned char type) const {
  return CountOf(TypeCutter(type));
}

unsigned short CDescriptorRange::Count() const {
  return CountOf(OneByOneCutter());
}

// By value, as test programs expect: what a call counts with is its own.
// NOLINTBEGIN(performance-unnecessary-value-param)
unsigned short CDescriptorRange::Count(usb_support::RangePredicate predicate) const {
  return CountOf(CutterOf(CRangeSelector(predicate)));
}

unsigned short CDescriptorRange::Count(usb_support::RangeFinder start,
                                       usb_support::RangeFinder finish) const {
  return CountOf(CutterOf(start, finish));
}

unsigned short CDescriptorRange::Count(CRangeSelector selector) const {
  return CountOf(CutterOf(selector));
}

// NOLINTEND(performance-unnecessary-value-param)

void CDescriptorRange::TheRangeVectDeleter(std::vector<CDescriptorRange>* ranges) {
  delete ranges;
}

void CDescriptorRange::TheStringDeleter(std::string* text) {
  delete text;
}
