// A view over a run of USB descriptors, one directly after the other in memory: a configuration
// with all that follows it, a BOS with its capabilities, or any slice of those.
//
// A range never owns the bytes; their owner keeps them alive and unchanged while the range or
// anything cut from it is used. It is a value of three words that any number of threads may read. A
// device may have supplied any bytes: nothing here interprets them, and no operation reads outside
// the run. A walk over the well-formed part:
//
//   for (Descriptor const d : Walk(range)) {  // walk.h
//     auto const header = d.As<TQ_USB_COMMON_DESCRIPTOR>();
//   }
//
// or, by hand, with the end kept in a variable, because ValidUntil() walks the run at each call:
//
//   CDescriptorRangeIterator const validEnd = range.ValidUntil();
//   for (CDescriptorRangeIterator it = range.begin(); it != validEnd; ++it) {
//     auto const header = ReadRecord<TQ_USB_COMMON_DESCRIPTOR>(it);
//   }
//
// A walk to end() throws on the first zero bLength.
//
// Lists and texts are returned in pointers with the library's own deleter, so that the library
// frees the memory that it allocated.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include <usb_support/descriptors/descriptor_range_iterator.h>
#include <usb_support/descriptors/range_selector.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/descriptors/records.h>
#include <usb_support/platform/export.h>

namespace usb_support {
class RangeLister;
}

/// A run of descriptors: its first byte and its length.
class USB_SUPPORT_API CDescriptorRange {
 public:
  /// A list of ranges, owned by the pointer. The ranges point into the bytes that were searched.
  /// Give the pointer a name before a range-based for: the loop does not keep a temporary one
  /// alive.
  using RangeVector = std::unique_ptr<std::vector<CDescriptorRange>,
                                      std::function<void(std::vector<CDescriptorRange>*)>>;

  /// A text, owned by the pointer.
  using Text = std::unique_ptr<std::string, std::function<void(std::string*)>>;

  /// An empty range: null, length 0.
  CDescriptorRange() noexcept = default;

  /// The `length` bytes from `bytes`; empty when `bytes` is null or `length` is 0.
  CDescriptorRange(void* const bytes, unsigned short length) noexcept
      : bytes_(length != 0 ? static_cast<unsigned char*>(bytes) : nullptr),
        length_(bytes_ != nullptr ? length : std::uint16_t{0}) {}

  /// The bytes from `first` to `last`, their distance cut to 16 bits; empty when that is 0 or the
  /// address of `first` is null. Deliberately, nothing checks that `first` is before `last`: a
  /// reversed pair gives the 16-bit remainder of a negative distance, and the caller is responsible
  /// for what the range then covers (Reset refuses such a pair).
  CDescriptorRange(CDescriptorRangeIterator first, CDescriptorRangeIterator last) noexcept;

  CDescriptorRange(CDescriptorRange const&) noexcept = default;
  CDescriptorRange(CDescriptorRange&&) noexcept = default;
  CDescriptorRange& operator=(CDescriptorRange const&) noexcept = default;
  CDescriptorRange& operator=(CDescriptorRange&&) noexcept = default;

  /// Frees nothing: the range does not own the bytes.
  virtual ~CDescriptorRange() = default;

  // The slots are: destructor, Reset(), Reset(first, last), Reset(bytes, length). Microsoft's ABI
  // lists adjacent overloads of one name in reverse, so for it they are declared in reverse.
#if defined(_MSC_VER)
  virtual void Reset(void* const bytes, unsigned short length);
  virtual void Reset(CDescriptorRangeIterator first, CDescriptorRangeIterator last);
  virtual void Reset();
#else
  /// Empties the range, through Reset(nullptr, 0).
  virtual void Reset();

  /// Takes the bytes from `first` to `last`, through Reset(bytes, length); empties the range,
  /// through Reset(), when either address is null or `first` is not before `last`.
  virtual void Reset(CDescriptorRangeIterator first, CDescriptorRangeIterator last);

  /// Takes `length` bytes from `bytes`; empties the range when either is null. A derived class that
  /// overrides this function sees every reset.
  virtual void Reset(void* const bytes, unsigned short length);
#endif

  /// First byte of the run; null for an empty range.
  unsigned char* Bytes() const noexcept {
    return bytes_;
  }

  /// The same address as a descriptor.
  TQ_USB_COMMON_DESCRIPTOR* Descriptors() const noexcept {
    return reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR*>(bytes_);
  }

  /// Length of the run in bytes, 0 to 65,535 as in a wTotalLength.
  unsigned short Length() const noexcept {
    return length_;
  }

  /// True when the run has no bytes.
  bool IsEmpty() const noexcept {
    return length_ == 0;
  }

  /// Iterator on the first descriptor; equal to end() for an empty range.
  CDescriptorRangeIterator begin() const noexcept {
    return {Descriptors(), length_};
  }

  /// Iterator after the last byte.
  CDescriptorRangeIterator end() const noexcept {
    if (bytes_ == nullptr) {
      return {nullptr, length_};
    }
    return {CDescriptorRangeIterator::Advanced(Descriptors(), length_), 0};
  }

  /// The descriptor that `index` steps from begin() reach. Throws TQRunTimeException as those steps
  /// do. Deliberately not checked further: an index equal to the number of descriptors refers to
  /// the byte after the run, and index 0 of an empty range to null.
  TQ_USB_COMMON_DESCRIPTOR const& operator[](std::uint64_t index) const;

  /// Iterator on the first descriptor of type `type` from begin() on; end() when there is none.
  /// Throws TQRunTimeException on a zero bLength before a match.
  [[nodiscard]] CDescriptorRangeIterator FindFirst(unsigned char type) const {
    CDescriptorRangeIterator it = begin();
    while (it.Remaining() != 0 && !usb_support::HasType(it, type)) {
      ++it;
    }
    return it;
  }

  /// Iterator on the first descriptor whose bLength is 0 or reaches past the end of the range;
  /// end() when there is none. Only lengths count. DiagnoseRun (range_diagnosis.h) reports the
  /// fault.
  [[nodiscard]] CDescriptorRangeIterator ValidUntil() const noexcept {
    CDescriptorRangeIterator it = begin();
    while (it.HoldsWholeDescriptor()) {
      it.StepOverWholeDescriptor();
    }
    return it;
  }

  /// True when the whole run is a chain of descriptors. An empty range is valid.
  [[nodiscard]] bool Valid() const noexcept {
    return ValidUntil() == end();
  }

  /// True when the addresses of this range are inside `other`. Empty ranges are inside each other.
  bool SubRangeOf(CDescriptorRange const& other) const noexcept;

  /// The finder that matches at once: (true, first).
  static std::pair<bool, CDescriptorRangeIterator> AlwaysTrue(CDescriptorRangeIterator first,
                                                              CDescriptorRangeIterator last);

  /// The range from `first` to `last`, as the constructor makes it.
  static CDescriptorRange SubRange(CDescriptorRangeIterator first, CDescriptorRangeIterator last);

  /// The first sub-range of [first, last): from the place that the start finder returns to the
  /// place that the finish finder returns, which searches from the descriptor after the start.
  /// Empty when either returns "not found" or when the start is `last`. Throws what the finders
  /// throw, and TQRunTimeException when the step after the start fails.
  static CDescriptorRange SubRange(CDescriptorRangeIterator first, CDescriptorRangeIterator last,
                                   usb_support::RangeFinder const& start,
                                   usb_support::RangeFinder const& finish);
  static CDescriptorRange SubRange(CDescriptorRangeIterator first, CDescriptorRangeIterator last,
                                   CRangeSelector const& selector);

  /// The same over the whole range, up to end() and not only to ValidUntil().
  CDescriptorRange SubRange(usb_support::RangeFinder const& start,
                            usb_support::RangeFinder const& finish) const;
  CDescriptorRange SubRange(CRangeSelector const& selector) const;

  /// All sub-ranges up to ValidUntil(), one after the other; the search ends at the first that is
  /// empty. Each pass works on new copies of the selector's finders. When the range is not valid,
  /// "Descriptor Range is not valid." is first written to the log with both ends, once per call;
  /// the addresses in it are cut to 32 bits. Throws what the finders throw (std::bad_function_call
  /// when empty).
  /// Requires: a finder returns a place between the positions that it is given; one that always
  /// returns an earlier place keeps the search from ending.
  [[nodiscard]] RangeVector GetSubRanges(CRangeSelector const& selector) const;
  [[nodiscard]] RangeVector GetSubRanges(usb_support::RangeFinder const& start,
                                         usb_support::RangeFinder const& finish) const;

  /// Every valid descriptor of type `type`, each as a range of its own; logs as GetSubRanges does.
  [[nodiscard]] RangeVector GetAll(unsigned char type) const;

  /// Every valid descriptor, each as a range of its own; logs as GetSubRanges does.
  [[nodiscard]] RangeVector GetAll() const;

  /// The number of ranges that the operation with the same arguments gives, cut to 16 bits, without
  /// making the list; logs as GetSubRanges does.
  unsigned short Count(unsigned char type) const;
  unsigned short Count() const;
  unsigned short Count(usb_support::RangePredicate predicate) const;
  unsigned short Count(usb_support::RangeFinder start, usb_support::RangeFinder finish) const;
  unsigned short Count(CRangeSelector selector) const;

  /// One line per descriptor: offset, bytes and label; after them the bytes that form no valid
  /// descriptor, marked " (incomplete)". `asCode` true gives the body of a byte-array initialiser,
  /// false a listing. No line end after the last line. Throws TQRunTimeException when no
  /// CUsbHelper is registered.
  [[nodiscard]] Text OutputString(bool asCode) const;

 private:
  friend class usb_support::RangeLister;

  static void TheRangeVectDeleter(std::vector<CDescriptorRange>* ranges);
  static void TheStringDeleter(std::string* text);

  void LogInvalid(unsigned short validLength) const;

  unsigned char* bytes_ = nullptr;
  std::uint16_t length_ = 0;
};

/// Equal contents: same length and same bytes, wherever they are. A null range equals only another
/// null range.
USB_SUPPORT_API bool operator==(CDescriptorRange const& a, CDescriptorRange const& b) noexcept;
USB_SUPPORT_API bool operator!=(CDescriptorRange const& a, CDescriptorRange const& b) noexcept;

namespace usb_support {

/// A range over constant bytes. A range only reads, but its constructors take non-const pointers.
/// Throws std::length_error for more than 65,535 bytes, which no range can span.
USB_SUPPORT_API CDescriptorRange RangeOver(std::span<unsigned char const> bytes);

}  // namespace usb_support
