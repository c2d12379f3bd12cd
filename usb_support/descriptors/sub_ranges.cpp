// The operations of CDescriptorRange that cut, list and count sub-ranges.
#include <cstddef>
#include <cstdint>
#include <vector>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/first_match.h>
#include <usb_support/descriptors/range_lister.h>
#include <usb_support/descriptors/walk.h>
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

// Cuts with new copies of a selector's finders in each pass, so that what a finder with its own
// state stores in one pass is lost in the next.
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

// Cuts as a selector of this one predicate does, without making one: its finders keep no state and
// refer to the predicate.
auto CutterOf(usb_support::RangePredicate const& predicate) {
  return [&predicate](CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
    auto const find = [&predicate](CDescriptorRangeIterator from, CDescriptorRangeIterator to) {
      return usb_support::FirstMatch(from, to, predicate);
    };
    return CutOne(first, last, find, find);
  };
}

// Passes the sub-ranges that `cut(first, last)` gives to `take`, one after the other, up to the
// first empty one.
template <typename Cut, typename Take>
void ForEach(CDescriptorRange const& range, Cut const& cut, Take const& take) {
  CDescriptorRangeIterator const validEnd = range.ValidUntil();
  RangeLister::LogUnlessValid(range, static_cast<std::size_t>(validEnd - range.begin()));
  for (CDescriptorRangeIterator current = range.begin(); current != validEnd;) {
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
CDescriptorRange::RangeVector ListOf(CDescriptorRange const& range, Cut const& cut) {
  CDescriptorRange::RangeVector ranges = RangeLister::NewList();
  ForEach(range, cut, [&](CDescriptorRange const& subRange) { ranges->push_back(subRange); });
  return ranges;
}

template <typename Cut>
unsigned short CountOf(CDescriptorRange const& range, Cut const& cut) {
  unsigned count = 0;
  ForEach(range, cut, [&](CDescriptorRange const&) { ++count; });
  return static_cast<unsigned short>(count);
}

// Passes every valid descriptor to `take`.
template <typename Take>
void ForEachDescriptor(CDescriptorRange const& range, Take const& take) {
  std::size_t end = 0;
  for (usb_support::Descriptor d(range); d; d = d.Next()) {
    take(d);
    end += d.Length();
  }
  RangeLister::LogUnlessValid(range, end);
}

// Reserves memory once, and none for a list that stays empty. A configuration seldom has more than
// one descriptor, and one of a wanted type, in so many bytes.
constexpr std::size_t kBytesOfDescriptor = 6;
constexpr std::size_t kBytesOfOneType = 32;

void Append(std::vector<CDescriptorRange>& ranges, std::size_t expected,
            usb_support::Descriptor const& d) {
  if (ranges.capacity() == 0) [[unlikely]] {
    ranges.reserve(expected);
  }
  ranges.emplace_back(d.At().operator->(), d.Length());
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

void CDescriptorRange::LogInvalid(unsigned short validLength) const {
  usb_support::format_detail::LineBuffer line;
  usb_support::format_detail::PrintChecked(
      line.Text(), usb_support::kDefaultIndentation,
      "Descriptor Range is not valid.\n  End of last valid descriptor:  0x%0*X.\n"
      "  End of Descriptor Range 0x%0*X.\n",
      16, usb_support::PrintedAddress(Bytes() + validLength), 16,
      usb_support::PrintedAddress(end().operator->()));
  TQLogger& logger = CAppState::Log();
  logger.IncrStackDepth();
  logger.DoWritePrintOnly(0, line.Text().Contents());
}

CDescriptorRange::RangeVector CDescriptorRange::GetSubRanges(CRangeSelector const& selector) const {
  return ListOf(*this, CutterOf(selector));
}

CDescriptorRange::RangeVector CDescriptorRange::GetSubRanges(
    usb_support::RangeFinder const& start, usb_support::RangeFinder const& finish) const {
  return ListOf(*this, CutterOf(start, finish));
}

CDescriptorRange::RangeVector CDescriptorRange::GetAll(unsigned char type) const {
  RangeVector ranges = RangeLister::NewList();
  ForEachDescriptor(*this, [&](usb_support::Descriptor const& d) {
    if (d.Is(type)) {
      Append(*ranges, length_ / kBytesOfOneType + 1, d);
    }
  });
  return ranges;
}

CDescriptorRange::RangeVector CDescriptorRange::GetAll() const {
  RangeVector ranges = RangeLister::NewList();
  ForEachDescriptor(*this, [&](usb_support::Descriptor const& d) {
    Append(*ranges, length_ / kBytesOfDescriptor + 1, d);
  });
  return ranges;
}

unsigned short CDescriptorRange::Count(unsigned char type) const {
  unsigned count = 0;
  ForEachDescriptor(*this,
                    [&](usb_support::Descriptor const& d) { count += d.Is(type) ? 1u : 0u; });
  return static_cast<unsigned short>(count);
}

unsigned short CDescriptorRange::Count() const {
  unsigned count = 0;
  ForEachDescriptor(*this, [&](usb_support::Descriptor const&) { ++count; });
  return static_cast<unsigned short>(count);
}

// By value, as test programs expect: each call counts with its own copy.
// NOLINTBEGIN(performance-unnecessary-value-param)
unsigned short CDescriptorRange::Count(usb_support::RangePredicate predicate) const {
  return CountOf(*this, CutterOf(predicate));
}

unsigned short CDescriptorRange::Count(usb_support::RangeFinder start,
                                       usb_support::RangeFinder finish) const {
  return CountOf(*this, CutterOf(start, finish));
}

unsigned short CDescriptorRange::Count(CRangeSelector selector) const {
  return CountOf(*this, CutterOf(selector));
}

// NOLINTEND(performance-unnecessary-value-param)

void CDescriptorRange::TheRangeVectDeleter(std::vector<CDescriptorRange>* ranges) {
  delete ranges;
}

void CDescriptorRange::TheStringDeleter(std::string* text) {
  delete text;
}
