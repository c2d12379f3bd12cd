// CDescriptorRange::OutputString: the labelled dump of a range.
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>

#include <usb_support/descriptors/descriptor_range.h>
#include <usb_support/descriptors/read_record.h>
#include <usb_support/descriptors/walk.h>
#include <usb_support/helper/usb_helper.h>
#include <usb_support/labels/dump_form.h>
#include <usb_support/labels/label_text.h>
#include <usb_support/suite_interfaces/tq_helper.h>
#include <usb_support/text/text_writer.h>

namespace {

// The largest record that a label reads: a copy of this size has every byte that a label may read.
using LabelledRecord = TQ_USB_INTERFACE_DESCRIPTOR;
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_ENDPOINT_DESCRIPTOR));
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR));
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR));
static_assert(sizeof(LabelledRecord) >= sizeof(TQ_USB_CLASS_SPECIFIC_DESCRIPTOR));

// The approximate number of characters of a dump per byte; memory for more is reserved as needed.
constexpr std::size_t kCharactersPerByte = 12;

// The text around the bytes of a line: line end, offset, separators and label.
constexpr std::size_t kMostAroundBytes = 64 + usb_support::kMostLabelCharacters;

// "% 4X" of printf for an offset.
void WriteOffset(usb_support::TextWriter& out, std::uint16_t offset) {
  char text[usb_support::kDumpOffsetWidth + 1] = "   0";
  for (std::size_t i = 0; i < usb_support::kDumpOffsetWidth; ++i) {
    auto const left = static_cast<unsigned>(offset >> (12 - 4 * i));
    if (left != 0) {
      text[i] = usb_support::kHexDigits[left & 0xF];
    }
  }
  out.Text(text);
}

class Dump {
 public:
  Dump(CDescriptorRange const& range, bool asCode)
      : form_(asCode ? usb_support::kCodeForm : usb_support::kListingForm),
        render_(asCode ? TQHelper::BytesToCode : TQHelper::BytesToString) {
    text_.reserve(range.Length() * kCharactersPerByte + kMostAroundBytes);
    std::uint16_t end = 0;
    for (usb_support::Descriptor const d : usb_support::Walk(range)) {
      AddDescriptor(d);
      end = static_cast<std::uint16_t>(d.Offset() + d.Length());
    }
    if (end != range.Length()) {
      AddInvalidTail(range, end);
    }
    text_.resize(size_);
  }

  // Returns the text; the dump is then empty.
  std::string Take() { return std::move(text_); }

 private:
  void AddDescriptor(usb_support::Descriptor const& d) {
    render_(bytes_, d.Bytes().data(), d.Length(), false);
    usb_support::TextWriter out = Room();
    if (size_ != 0) {
      out.Text("\n");
    }
    WritePrefix(out, d.Offset());
    out.Text(bytes_);
    out.Text(form_.afterBytes);
    WriteLabel(out, d);
    Keep(out);
  }

  // Deliberately no line break before the prefix: it is at the end of the last descriptor's line.
  void AddInvalidTail(CDescriptorRange const& range, std::uint16_t offset) {
    CDescriptorRange const tail = CDescriptorRange::SubRange(range.ValidUntil(), range.end());
    TQHelper::BytesToString(bytes_, tail.Bytes(), tail.Length(), false);
    usb_support::TextWriter out = Room();
    WritePrefix(out, offset);
    out.Text("\n");
    out.Text(bytes_);
    out.Text(usb_support::kIncompleteMark);
    Keep(out);
  }

  // Reserves memory for a line with the rendered bytes.
  usb_support::TextWriter Room() {
    std::size_t const end = size_ + bytes_.size() + kMostAroundBytes;
    if (text_.size() < end) {
      text_.resize(end);
      text_.resize(text_.capacity());
    }
    return {text_.data() + size_, text_.size() - size_};
  }

  void Keep(usb_support::TextWriter const& out) {
    size_ = static_cast<std::size_t>(out.Position() - text_.data());
  }

  void WritePrefix(usb_support::TextWriter& out, std::uint16_t offset) const {
    out.Text(form_.beforeOffset);
    WriteOffset(out, offset);
    out.Text(form_.afterOffset);
  }

  void WriteLabel(usb_support::TextWriter& out, usb_support::Descriptor const& d) {
    // A copy, zero-padded where the record would reach past the run, because a label trusts the
    // record that it is given.
    auto const record = d.As<LabelledRecord>();
    if (d.Is(usb_support::kInterfaceType)) {
      interface_ = record;
      hasInterface_ = true;
    }
    // Every descriptor has a label.
    out.Text(form_.separator);
    out = usb_support::WriteDescriptorLabel(
        out, reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR const&>(record),
        hasInterface_ ? &interface_ : nullptr);
  }

  usb_support::DumpForm const& form_;
  void (*render_)(std::string&, unsigned char const*, unsigned long long, bool);
  // Written up to size_; the rest is reserved.
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
  return {new std::string(Dump(*this, asCode).Take()), TheStringDeleter};
}
