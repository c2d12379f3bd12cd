// CDescriptorRange::OutputString: the labelled dump of a range.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/range_lister.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/labels/label_text.h>
#include <usb_support/suite_interfaces/tq_helper.h>
#include <usb_support/text/text_writer.h>

namespace {

// The largest record that a label looks into: a copy of it holds whatever a label may read.
using LabelledRecord = TQ_USB_INTERFACE_DESCRIPTOR;
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_ENDPOINT_DESCRIPTOR));
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR));
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR));
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR));

// How many characters a run takes for each of its bytes, roughly; more are made room for as needed.
constexpr std::size_t kListingCharacters = 8;
constexpr std::size_t kCodeCharacters = 12;

// What stands around the bytes of a line: line end, offset, separators and label.
constexpr std::size_t kMostAroundBytes = 64 + usb_support::kMostLabelCharacters;

// "% 4X" of printf for an offset.
void WriteOffset(usb_support::TextWriter& out, std::uint16_t offset) {
  char text[5] = "   0";
  for (std::size_t i = 0; i < 4; ++i) {
    auto const left = static_cast<unsigned>(offset >> (12 - 4 * i));
    if (left != 0) {
      text[i] = usb_support::kHexDigits[left & 0xF];
    }
  }
  out.Text(text);
}

// A dump as a listing or, with kAsCode, as source code.
template <bool kAsCode>
class Dump {
 public:
  explicit Dump(CDescriptorRange const& range)
      : range_(range),
        separator_(kAsCode ? CUsbHelper::DESCRIPTION_SEPARATOR_C
                           : CUsbHelper::DESCRIPTION_SEPARATOR_TEXT),
        text_(range.Length() * (kAsCode ? kCodeCharacters : kListingCharacters) + kMostAroundBytes,
              '\0') {}

  // The text; the dump is then empty.
  std::string* Make() {
    auto const validEnd = usb_support::RangeLister::Walk(
        range_, [this](CDescriptorRangeIterator it, std::uint8_t) { AddDescriptor(it); });
    if (validEnd.Remaining() != 0) {
      AddInvalidTail(validEnd);
    }
    text_.resize(size_);
    return new std::string(std::move(text_));
  }

 private:
  void AddDescriptor(CDescriptorRangeIterator const& it) {
    auto* const bytes = reinterpret_cast<unsigned char const*>(it.operator->());
    if constexpr (kAsCode) {
      TQHelper::BytesToCode(bytes_, bytes, it->bLength, false);
    } else {
      TQHelper::BytesToString(bytes_, bytes, it->bLength, false);
    }
    usb_support::TextWriter out = Room();
    if (size_ != 0) {
      out.Text("\n");
    }
    WritePrefix(out, it);
    out.Text(bytes_);
    if constexpr (kAsCode) {
      out.Text(",");
    }
    WriteLabel(out, it);
    Take(out);
  }

  // On purpose without a line break before the prefix: it ends the line of the last descriptor.
  void AddInvalidTail(CDescriptorRangeIterator const& it) {
    TQHelper::BytesToString(bytes_, reinterpret_cast<unsigned char const*>(it.operator->()),
                            it.Remaining(), false);
    usb_support::TextWriter out = Room();
    WritePrefix(out, it);
    out.Text("\n");
    out.Text(bytes_);
    out.Text(" (incomplete)");
    Take(out);
  }

  // Room for a line with the bytes that have been rendered.
  usb_support::TextWriter Room() {
    std::size_t const needed = bytes_.size() + kMostAroundBytes;
    if (text_.size() - size_ < needed) {
      text_.resize(text_.size() * 2 + needed);
    }
    return {text_.data() + size_, text_.size() - size_};
  }

  void Take(usb_support::TextWriter const& out) {
    size_ = static_cast<std::size_t>(out.Position() - text_.data());
  }

  void WritePrefix(usb_support::TextWriter& out, CDescriptorRangeIterator const& it) const {
    if constexpr (kAsCode) {
      out.Text("/* ");
    }
    WriteOffset(out, static_cast<std::uint16_t>(it - range_.begin()));
    if constexpr (kAsCode) {
      out.Text("h */  ");
    } else {
      out.Text("h:  ");
    }
  }

  void WriteLabel(usb_support::TextWriter& out, CDescriptorRangeIterator const& it) {
    // A copy, zero-padded where the record would reach past the run, because a label trusts the
    // record that it is given.
    auto const record = usb_support::ReadRecord<LabelledRecord>(it);
    if (usb_support::HasType(it, usb_support::kInterfaceType)) {
      interface_ = record;
      hasInterface_ = true;
    }
    // Every descriptor has a label.
    out.Text(separator_);
    out = usb_support::WriteDescriptorLabel(
        out, reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR const&>(record),
        hasInterface_ ? &interface_ : nullptr);
  }

  CDescriptorRange const& range_;
  std::string_view separator_;
  // Written up to size_; what lies behind is room.
  std::string text_;
  std::size_t size_ = 0;
  std::string bytes_;
  TQ_USB_INTERFACE_DESCRIPTOR interface_{};
  bool hasInterface_ = false;
};

}  // namespace

CDescriptorRange::Text CDescriptorRange::OutputString(bool asCode) const {
  // A dump is for the log of a test, so a missing helper shows here, although no label needs it.
  static_cast<void>(UsbHelper());
  return {asCode ? Dump<true>(*this).Make() : Dump<false>(*this).Make(), TheStringDeleter};
}
