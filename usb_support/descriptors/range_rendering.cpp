// CDescriptorRange::OutputString: the labelled dump of a range.
#include <string>
#include <utility>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/helper/formatting.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/suite_interfaces/tq_helper.h>

namespace {

// The largest record that a label looks into: a copy of it holds whatever a label may read.
using LabelledRecord = TQ_USB_INTERFACE_DESCRIPTOR;
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_ENDPOINT_DESCRIPTOR));
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR));
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR));
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR));

class Dump {
 public:
  Dump(CDescriptorRange const& range, bool asCode) : range_(range), asCode_(asCode) {}

  std::string TakeText() { return std::move(text_); }

  void AddDescriptor(CDescriptorRangeIterator const& it) {
    if (!text_.empty()) {
      text_ += '\n';
    }
    AddPrefix(it);
    auto* const bytes = reinterpret_cast<unsigned char const*>(it.operator->());
    if (asCode_) {
      TQHelper::BytesToCode(bytes_, bytes, it->bLength, false);
      text_.append(bytes_).append(",");
    } else {
      TQHelper::BytesToString(bytes_, bytes, it->bLength, false);
      text_.append(bytes_);
    }
    AddLabel(it);
  }

  // On purpose without a line break before the prefix: it ends the line of the last descriptor.
  void AddInvalidTail(CDescriptorRangeIterator const& it) {
    AddPrefix(it);
    TQHelper::BytesToString(bytes_, reinterpret_cast<unsigned char const*>(it.operator->()),
                            it.Remaining(), false);
    text_.append("\n").append(bytes_).append(" (incomplete)");
  }

 private:
  void AddPrefix(CDescriptorRangeIterator const& it) {
    auto const offset = static_cast<unsigned short>(it - range_.begin());
    text_ +=
        asCode_ ? usb_support::FormatText(usb_support::kDefaultIndentation, "/* % 4Xh */  ", offset)
                : usb_support::FormatText(usb_support::kDefaultIndentation, "% 4Xh:  ", offset);
  }

  void AddLabel(CDescriptorRangeIterator const& it) {
    // A copy, zero-padded where the record would reach past the run, because a label trusts the
    // record that it is given.
    auto const record = usb_support::ReadRecord<LabelledRecord>(it);
    if (usb_support::HasType(it, usb_support::kInterfaceType)) {
      interface_ = record;
      hasInterface_ = true;
    }
    std::string const label = CUsbHelper::GenerateDescriptorLabel(
        reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR const&>(record),
        hasInterface_ ? &interface_ : nullptr, TQE_USB_DEVICE_SPEED_UNKNOWN);
    if (!label.empty()) {
      text_
          .append(asCode_ ? CUsbHelper::DESCRIPTION_SEPARATOR_C
                          : CUsbHelper::DESCRIPTION_SEPARATOR_TEXT)
          .append(label);
    }
  }

  CDescriptorRange const& range_;
  bool asCode_;
  std::string text_;
  std::string bytes_;
  TQ_USB_INTERFACE_DESCRIPTOR interface_{};
  bool hasInterface_ = false;
};

}  // namespace

CDescriptorRange::Text CDescriptorRange::OutputString(bool asCode) const {
  // A dump is for the log of a test, so a missing helper shows here, although no label needs it.
  static_cast<void>(UsbHelper());
  Dump dump(*this, asCode);
  CDescriptorRangeIterator const validEnd = ValidUntil();
  for (CDescriptorRangeIterator it = begin(); it != validEnd; ++it) {
    dump.AddDescriptor(it);
  }
  if (validEnd != end()) {
    dump.AddInvalidTail(validEnd);
  }
  return {new std::string(dump.TakeText()), TheStringDeleter};
}
