#include <tools/usbdesc/views/tree.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/views/dump.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

// Bits 6 and 5 of a bDescriptorType say who defines it (USB 2.0, table 9-5 and CDC 1.2, 5.2.3).
constexpr char kOther[] = "other";

char const* OriginOf(std::uint8_t type) {
  constexpr char const* kOrigins[] = {kOther, "class-specific", "vendor-specific", kOther};
  return kOrigins[type >> 5 & 3];
}

// The label of a descriptor, which may be cut short: it is made from a copy that a label can trust.
std::string LabelOf(Descriptor const& d) {
  auto const record = d.As<TQ_USB_INTERFACE_DESCRIPTOR>();
  return CUsbHelper::GenerateDescriptorLabel(
      reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR const&>(record), nullptr,
      TQE_USB_DEVICE_SPEED_UNKNOWN);
}

class Lines {
 public:
  // The lines, without a line end after the last.
  Line Take() {
    AddCounted();
    return std::move(text_);
  }

  void Add(std::size_t depth, std::string_view line, Piece piece = Piece::kPlain) {
    AddCounted();
    AddLine(depth, line, piece);
  }

  // A descriptor that has no line of its own. Those that follow one another share a line.
  void Count(std::size_t depth, Descriptor const& d) {
    // A descriptor of one byte has no type.
    bool const hasType = d.Length() >= sizeof(TQ_USB_COMMON_DESCRIPTOR);
    char const* const origin = hasType ? OriginOf(d.Type()) : kOther;
    std::string const type = hasType ? HexText(d.Type()) : "no type";
    if (count_ != 0 && (depth != depth_ || origin != origin_)) {
      AddCounted();
    }
    depth_ = depth;
    origin_ = origin;
    ++count_;
    bytes_ += d.Length();
    if (std::find(types_.begin(), types_.end(), type) == types_.end()) {
      types_.push_back(type);
    }
  }

 private:
  void AddLine(std::size_t depth, std::string_view line, Piece piece = Piece::kPlain) {
    text_.Add(text_.Text().empty() ? "" : "\n").Add(std::string(2 * depth, ' ')).Add(line, piece);
  }

  void AddCounted() {
    if (count_ == 0) {
      return;
    }
    std::string line = Counted(count_, (std::string(origin_) + " descriptor").c_str());
    char const* separator = " (";
    for (std::string const& type : types_) {
      line.append(separator).append(type);
      separator = ", ";
    }
    line.append("), ").append(Counted(bytes_, "byte"));
    AddLine(depth_, line);
    count_ = 0;
    bytes_ = 0;
    types_.clear();
  }

  Line text_;
  std::size_t depth_ = 0;
  char const* origin_ = nullptr;
  std::size_t count_ = 0;
  std::size_t bytes_ = 0;
  std::vector<std::string> types_;
};

// Adds why and, with the text of `placeOf`, where the chain of lengths breaks.
template <typename PlaceOf>
void AddBreak(Lines& lines, CDescriptorRange const& range, PlaceOf const& placeOf) {
  RunDiagnosis const diagnosis = DiagnoseRun(range);
  if (diagnosis.reason != RunEnd::kComplete) {
    lines.Add(1,
              std::string("lengths bad: ") + RunEndText(diagnosis.reason) + " at " +
                  placeOf(diagnosis.offset) + ", " + Counted(diagnosis.bytesLeft, "byte") + " left",
              Piece::kFault);
  }
}

void AddBreakOfSet(Lines& lines, Part const& part, char const* name) {
  AddBreak(lines, part.set,
           [&](std::size_t offset) { return OffsetText(part.offset, offset, name); });
}

// "59 bytes", or "52 of 59 bytes" when the header announces others than are there.
std::string SizeOf(Part const& part) {
  // A configuration and a BOS have the field in the same place.
  auto const announced = ReadRecord<TQ_USB_BOS_DESCRIPTOR>(part.set.begin()).wTotalLength;
  return (part.set.Length() == announced ? "" : std::to_string(part.set.Length()) + " of ") +
         Counted(announced, "byte");
}

// The lines of what is in a configuration after its header.
class ConfigurationTree {
 public:
  ConfigurationTree(Lines& lines, std::vector<CDescriptorRange> const& functions)
      : lines_(lines),
        functions_(functions) {}

  void Add(Descriptor const& d) {
    if (function_ < functions_.size() && functions_[function_].Bytes() == d.Bytes().data()) {
      ++function_;
      lines_.Add(
          1, "Function " + std::to_string(function_) + " of " + std::to_string(functions_.size()));
      parent_ = 2;
    }
    std::size_t const inFunction = function_ == 0 ? 1 : 2;
    if (d.Is(kInterfaceAssociationType)) {
      AddNode(inFunction, d);
    } else if (d.Is(kInterfaceType)) {
      inInterface_ = inFunction + 1;
      AddNode(inFunction, d);
    } else if (d.Is(kEndpointType)) {
      AddNode(inInterface_, d);
    } else if (d.Is(kSuperSpeedEndpointCompanionType) ||
               d.Is(kSuperSpeedPlusIsochEndpointCompanionType)) {
      lines_.Add(parent_, LabelOf(d));
    } else {
      lines_.Count(parent_, d);
    }
  }

 private:
  // A line that others may be under.
  void AddNode(std::size_t depth, Descriptor const& d) {
    lines_.Add(depth, LabelOf(d));
    parent_ = depth + 1;
  }

  Lines& lines_;
  std::vector<CDescriptorRange> const& functions_;
  std::size_t function_ = 0;     // of those that have begun
  std::size_t inInterface_ = 1;  // the depth of an endpoint
  std::size_t parent_ = 1;       // the depth of what has no place of its own
};

void AddConfiguration(Lines& lines, Part const& part) {
  std::string name = part.Name();
  name.front() = part.type == kConfigurationType ? 'C' : 'O';
  lines.Add(0, name + ": " + SizeOf(part));
  std::vector<CDescriptorRange> const functions = FunctionsOf(part);
  ConfigurationTree tree(lines, functions);
  for (Descriptor d = Descriptor(part.valid).Next(); d; d = d.Next()) {
    tree.Add(d);
  }
  AddBreakOfSet(lines, part, "configuration");
}

void AddBos(Lines& lines, Part const& part) {
  lines.Add(0, "BOS: " + SizeOf(part));
  for (Descriptor d = Descriptor(part.valid).Next(); d; d = d.Next()) {
    if (d.Is(kDeviceCapabilityType)) {
      lines.Add(1, LabelOf(d) + ", " + Counted(d.Length(), "byte"));
    } else {
      lines.Count(1, d);
    }
  }
  AddBreakOfSet(lines, part, "BOS");
}

// A device or device qualifier descriptor.
void AddSingle(Lines& lines, Part const& part) {
  Descriptor const d(part.set);
  auto const device = d.As<TQ_USB_DEVICE_DESCRIPTOR>();
  std::string line = LabelOf(d) + ": bcdUSB " + HexText(device.bcdUSB, 4);
  if (d.Is(kDeviceType) && d.Length() >= sizeof device) {
    line +=
        ", idVendor " + HexText(device.idVendor, 4) + ", idProduct " + HexText(device.idProduct, 4);
  }
  lines.Add(0, line);
}

// What belongs to nothing that the tree knows.
void AddRest(Lines& lines, Part const& part) {
  if (part.after.IsEmpty()) {
    return;
  }
  lines.Add(0, Counted(part.after.Length(), "byte") +
                   (part.type == 0 ? " without a descriptor that they belong to:" : " after it:"));
  for (Descriptor const d : Walk(part.after)) {
    lines.Count(1, d);
  }
  std::size_t const start = part.offset + part.set.Length();
  AddBreak(lines, part.after, [start](std::size_t offset) { return OffsetText(start + offset); });
}

}  // namespace

void LogTree(Device const& device) {
  Lines lines;
  for (Part const& part : device.parts) {
    if (part.IsConfiguration()) {
      AddConfiguration(lines, part);
    } else if (part.IsBos()) {
      AddBos(lines, part);
    } else if (part.type != 0) {
      AddSingle(lines, part);
    }
    AddRest(lines, part);
  }
  if (Line const text = lines.Take(); !text.Text().empty()) {
    Log(text);
  }
}

}  // namespace usb_support::usbdesc
