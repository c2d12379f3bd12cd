#include <usb_support/descriptors/range_selector.h>

#include <atomic>

#include <usb_support/descriptors/first_match.h>

namespace {

// The finder of a predicate. It refers to the caller's object, so an existing selector uses a
// predicate that is assigned later.
usb_support::RangeFinder GenerateSelector(usb_support::RangePredicate const& predicate) {
  return [&predicate](CDescriptorRangeIterator first, CDescriptorRangeIterator last) {
    return usb_support::FirstMatch(first, last, predicate);
  };
}

}  // namespace

struct CRangeSelector::Finders {
  usb_support::RangeFinder start;
  usb_support::RangeFinder finish;
  std::atomic<unsigned> owners{1};

  static void Release(Finders* finders) noexcept {
    if (finders->owners.fetch_sub(1, std::memory_order_acq_rel) == 1) {
      delete finders;
    }
  }
};

CRangeSelector::CRangeSelector(usb_support::RangeFinder const& start,
                               usb_support::RangeFinder const& finish)
    : finders_(new Finders{start, finish}) {
}

CRangeSelector::CRangeSelector(usb_support::RangePredicate const& predicate)
    : CRangeSelector(GenerateSelector(predicate), GenerateSelector(predicate)) {
}

CRangeSelector::CRangeSelector(usb_support::RangePredicate const& startPredicate,
                               usb_support::RangePredicate& finishPredicate)
    : CRangeSelector(GenerateSelector(startPredicate), GenerateSelector(finishPredicate)) {
}

CRangeSelector::CRangeSelector(CRangeSelector const& other) noexcept : finders_(other.finders_) {
  finders_->owners.fetch_add(1, std::memory_order_relaxed);
}

CRangeSelector& CRangeSelector::operator=(CRangeSelector const& other) noexcept {
  CRangeSelector copy(other);
  std::swap(finders_, copy.finders_);
  return *this;
}

CRangeSelector::~CRangeSelector() {
  Finders::Release(finders_);
}

std::pair<bool, CDescriptorRangeIterator> CRangeSelector::FindStart(
    CDescriptorRangeIterator first, CDescriptorRangeIterator last) const {
  return finders_->start(first, last);
}

std::pair<bool, CDescriptorRangeIterator> CRangeSelector::FindFinish(
    CDescriptorRangeIterator first, CDescriptorRangeIterator last) const {
  return finders_->finish(first, last);
}

usb_support::RangeFinder const& CRangeSelector::FindStartFunc() const noexcept {
  return finders_->start;
}

usb_support::RangeFinder const& CRangeSelector::FindFinishFunc() const noexcept {
  return finders_->finish;
}
