#include <tools/usbdesc/views/tree.h>

#include <array>
#include <cctype>
#include <cstddef>
#include <cstdint>
#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tools/usbdesc/decoded.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/views/dump.h>
#include <usb_devices/characters.h>
#include <usb_fields/names.h>
#include <usb_fields/summary.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

using usb_fields::Context;

// The line of the descriptor, with what comes after it in `range`.
std::string SummaryOf(Descriptor const& d, CDescriptorRange const& range, Context const& context) {
  std::size_t const before = static_cast<std::size_t>(d.Bytes().data() - range.Bytes());
  std::array<char, usb_fields::kMostSummary> buffer;
  return std::string(
      usb_fields::SummaryOf({d.Bytes().data(), range.Length() - before}, context, buffer));
}

class Lines {
 public:
  // The lines, without a line end after the last.
  Line Take() { return std::move(text_); }

  void Add(std::size_t depth, std::string_view line, Piece piece = Piece::kPlain) {
    text_.Add(text_.Text().empty() ? "" : "\n").Add(std::string(2 * depth, ' ')).Add(line, piece);
  }

 private:
  Line text_;
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

// "59 bytes", or "52 of 59 bytes" when the header announces another number than exists.
std::string SizeOf(Part const& part) {
  // A configuration and a BOS have the field in the same place.
  auto const announced = ReadRecord<TQ_USB_BOS_DESCRIPTOR>(part.set.begin()).wTotalLength;
  return (part.set.Length() == announced ? "" : std::to_string(part.set.Length()) + " of ") +
         Counted(announced, "byte");
}

// The names of a function's class, subclass and protocol, by its first descriptor.
std::string FunctionName(Descriptor const& first) {
  std::array<char, 256> buffer;
  std::string_view name;
  if (first.Is(kInterfaceAssociationType)) {
    auto const association = first.As<TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR>();
    name = usb_fields::TripleName(association.bFunctionClass, association.bFunctionSubClass,
                                  association.bFunctionProtocol, buffer);
  } else {
    auto const interface = first.As<TQ_USB_INTERFACE_DESCRIPTOR>();
    name = usb_fields::TripleName(interface.bInterfaceClass, interface.bInterfaceSubClass,
                                  interface.bInterfaceProtocol, buffer);
  }
  return name.empty() ? "" : ": " + std::string(name);
}

// The lines of a configuration after its header.
class ConfigurationTree {
 public:
  ConfigurationTree(Lines& lines, Part const& part, Context const& context)
      : lines_(lines),
        range_(part.valid),
        functions_(FunctionsOf(part)),
        context_(context) {}

  void Add(Descriptor const& d) {
    if (function_ < functions_.size() && functions_[function_].Bytes() == d.Bytes().data()) {
      ++function_;
      lines_.Add(1, "Function " + std::to_string(function_) + " of " +
                        std::to_string(functions_.size()) + FunctionName(d));
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
    } else {
      lines_.Add(parent_, SummaryOf(d, range_, context_));
    }
    context_.Follow(d.Bytes());
  }

 private:
  // A line that may have others below it.
  void AddNode(std::size_t depth, Descriptor const& d) {
    lines_.Add(depth, SummaryOf(d, range_, context_));
    parent_ = depth + 1;
  }

  Lines& lines_;
  CDescriptorRange range_;
  std::vector<CDescriptorRange> functions_;
  Context context_;
  std::size_t function_ = 0;     // of those that have begun
  std::size_t inInterface_ = 1;  // the depth of an endpoint
  std::size_t parent_ = 1;       // the depth of descriptors without another place
};

void AddConfiguration(Lines& lines, Part const& part, Context const& context) {
  Descriptor d(part.set);
  lines.Add(0, SummaryOf(d, part.set, context) + ", " + SizeOf(part));
  ConfigurationTree tree(lines, part, context);
  for (d = Descriptor(part.valid).Next(); d; d = d.Next()) {
    tree.Add(d);
  }
  AddBreakOfSet(lines, part, "configuration");
}

void AddBos(Lines& lines, Part const& part, Context const& context) {
  Descriptor d(part.set);
  lines.Add(0, SummaryOf(d, part.set, context) + ", " + SizeOf(part));
  for (d = Descriptor(part.valid).Next(); d; d = d.Next()) {
    lines.Add(1, SummaryOf(d, part.valid, context));
  }
  AddBreakOfSet(lines, part, "BOS");
}

// Descriptors that belong to nothing that the tree knows.
void AddRest(Lines& lines, Part const& part, Context context) {
  if (part.after.IsEmpty()) {
    return;
  }
  lines.Add(0, Counted(part.after.Length(), "byte") +
                   (part.type == 0 ? " without a descriptor that they belong to:" : " after it:"));
  for (Descriptor const d : Walk(part.after)) {
    lines.Add(1, SummaryOf(d, part.after, context));
    context.Follow(d.Bytes());
  }
  std::size_t const start = part.offset + part.set.Length();
  AddBreak(lines, part.after, [start](std::size_t offset) { return OffsetText(start + offset); });
}

// The strings that the device descriptor refers to.
void AddNames(Lines& lines, TQ_USB_DEVICE_DESCRIPTOR const& device,
              std::map<std::uint8_t, std::string> const& strings) {
  constexpr std::string_view kNames[] = {"Manufacturer: ", "Product: ", "Serial number: "};
  std::uint8_t const indexes[] = {device.iManufacturer, device.iProduct, device.iSerialNumber};
  for (std::size_t i = 0; i < std::size(kNames); ++i) {
    if (auto const text = strings.find(indexes[i]); indexes[i] != 0 && text != strings.end()) {
      lines.Add(1, std::string(kNames[i]) + text->second);
    }
  }
}

// An answer that is not a part, or the lack of one.
void AddOther(Lines& lines, usb_devices::Answer const& answer,
              std::map<std::uint8_t, std::string> const& strings) {
  std::string line = NameOf(answer.request) + ": ";
  auto const text = strings.find(answer.request.Index());
  if (answer.outcome != usb_devices::Outcome::kAnswered) {
    line.append(NameOf(answer.outcome)).append(answer.note.empty() ? "" : ", ");
    line += usb_devices::Harmless(answer.note);
  } else if (answer.request.IsString() && text != strings.end()) {
    line += text->second;
  } else {
    line += Counted(answer.bytes.size(), "byte");
  }
  line.front() = static_cast<char>(std::toupper(static_cast<unsigned char>(line.front())));
  lines.Add(0, line);
}

}  // namespace

void LogTree(ShownDevice const& device) {
  Lines lines;
  Context const context{.speed = SpeedOf(*device.source).readAs};
  std::map<std::uint8_t, std::string> const strings = StringsOf(*device.source);
  for (Part const& part : device.parts) {
    if (part.IsConfiguration()) {
      AddConfiguration(lines, part, context);
    } else if (part.IsBos()) {
      AddBos(lines, part, context);
    } else if (part.type != 0) {
      lines.Add(0, SummaryOf(Descriptor(part.set), part.set, context));
    }
    if (part.type == kDeviceType && device.descriptor) {
      AddNames(lines, *device.descriptor, strings);
    }
    AddRest(lines, part, context);
  }
  for (usb_devices::Answer const& answer : device.source->Answers()) {
    if (!IsPart(answer)) {
      AddOther(lines, answer, strings);
    }
  }
  if (Line const text = lines.Take(); !text.Text().empty()) {
    Log(text);
  }
}

}  // namespace usb_support::usbdesc
