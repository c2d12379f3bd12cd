#include <tools/usbdesc/tree.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include <tools/usbdesc/captured_sets.h>
#include <tools/usbdesc/log_text.h>
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
std::string LabelOf(CDescriptorRangeIterator const& it) {
  auto record = ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(it);
  return CUsbHelper::GenerateDescriptorLabel(
      reinterpret_cast<TQ_USB_COMMON_DESCRIPTOR const&>(record), nullptr,
      TQE_USB_DEVICE_SPEED_UNKNOWN);
}

class Lines {
 public:
  // The lines, without a line end behind the last.
  std::string Take() {
    AddCounted();
    return std::move(text_);
  }

  void Add(std::size_t depth, std::string_view line) {
    AddCounted();
    AddLine(depth, line);
  }

  // A descriptor that has no line of its own. Those that follow one another share a line.
  void Count(std::size_t depth, CDescriptorRangeIterator const& it) {
    // A descriptor of one byte has no type.
    bool const hasType = it->bLength >= sizeof(TQ_USB_COMMON_DESCRIPTOR);
    char const* const origin = hasType ? OriginOf(it->bDescriptorType) : kOther;
    std::string const type = hasType ? HexText(it->bDescriptorType) : "no type";
    if (count_ != 0 && (depth != depth_ || origin != origin_)) {
      AddCounted();
    }
    depth_ = depth;
    origin_ = origin;
    ++count_;
    bytes_ += it->bLength;
    if (std::find(types_.begin(), types_.end(), type) == types_.end()) {
      types_.push_back(type);
    }
  }

 private:
  void AddLine(std::size_t depth, std::string_view line) {
    text_.append(text_.empty() ? "" : "\n").append(2 * depth, ' ').append(line);
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

  std::string text_;
  std::size_t depth_ = 0;
  char const* origin_ = nullptr;
  std::size_t count_ = 0;
  std::size_t bytes_ = 0;
  std::vector<std::string> types_;
};

// Says why and, with the text of `placeOf`, where the chain of lengths breaks.
template <typename PlaceOf>
void AddBreak(Lines& lines, CDescriptorRange const& range, PlaceOf const& placeOf) {
  RunDiagnosis const diagnosis = DiagnoseRun(range);
  if (diagnosis.reason != RunEnd::kComplete) {
    lines.Add(1, std::string("lengths bad: ") + RunEndText(diagnosis.reason) + " at " +
                     placeOf(diagnosis.offset) + ", " + Counted(diagnosis.bytesLeft, "byte") +
                     " left");
  }
}

template <typename Set>
void AddBreakOfSet(Lines& lines, Set const& set, char const* name) {
  AddBreak(lines, set, [&set, name](std::size_t offset) {
    return OffsetText(set.Source().offset, offset, name);
  });
}

// "59 bytes", or "52 of 59 bytes" when the header announces others than are there.
std::string SizeOf(CDescriptorRange const& set, std::uint16_t announced) {
  return (set.Length() == announced ? "" : std::to_string(set.Length()) + " of ") +
         Counted(announced, "byte");
}

// The lines of what stands in a configuration behind its header.
class ConfigurationTree {
 public:
  ConfigurationTree(Lines& lines, std::vector<CDescriptorRange> const& functions)
      : lines_(lines),
        functions_(functions) {}

  void Add(CDescriptorRangeIterator const& it) {
    if (function_ < functions_.size() && functions_[function_].Bytes() == AddressOf(it)) {
      ++function_;
      lines_.Add(
          1, "Function " + std::to_string(function_) + " of " + std::to_string(functions_.size()));
      parent_ = 2;
    }
    std::size_t const inFunction = function_ == 0 ? 1 : 2;
    if (HasType(it, kInterfaceAssociationType)) {
      AddNode(inFunction, it);
    } else if (HasType(it, kInterfaceType)) {
      inInterface_ = inFunction + 1;
      AddNode(inFunction, it);
    } else if (HasType(it, kEndpointType)) {
      AddNode(inInterface_, it);
    } else if (HasType(it, kSuperSpeedEndpointCompanionType) ||
               HasType(it, kSuperSpeedPlusIsochEndpointCompanionType)) {
      lines_.Add(parent_, LabelOf(it));
    } else {
      lines_.Count(parent_, it);
    }
  }

 private:
  static unsigned char const* AddressOf(CDescriptorRangeIterator const& it) {
    return reinterpret_cast<unsigned char const*>(it.operator->());
  }

  // A line that others may stand under.
  void AddNode(std::size_t depth, CDescriptorRangeIterator const& it) {
    lines_.Add(depth, LabelOf(it));
    parent_ = depth + 1;
  }

  Lines& lines_;
  std::vector<CDescriptorRange> const& functions_;
  std::size_t function_ = 0;     // of those that have begun
  std::size_t inInterface_ = 1;  // the depth of an endpoint
  std::size_t parent_ = 1;       // the depth of what has no place of its own
};

void AddConfiguration(Lines& lines, CapturedConfiguration& configuration) {
  TQ_USB_CONFIGURATION_DESCRIPTOR const header = configuration.Header();
  std::string name = NameOf(configuration);
  name.front() = configuration.OtherSpeed() ? 'O' : 'C';
  lines.Add(0, name + ": " + SizeOf(configuration, header.wTotalLength));

  CapturedConfiguration valid = configuration;
  KeepValidPart(valid);
  CDescriptorRange::RangeVector const functions = valid.GetFunctionList();
  ConfigurationTree tree(lines, *functions);
  for (CDescriptorRangeIterator it = valid.begin(); it != valid.end(); ++it) {
    if (it != valid.begin()) {
      tree.Add(it);
    }
  }
  AddBreakOfSet(lines, configuration, "configuration");
}

void AddBos(Lines& lines, CapturedBos const& bos) {
  lines.Add(0, "BOS: " + SizeOf(bos, bos.Header().wTotalLength));
  CDescriptorRangeIterator const validEnd = bos.ValidUntil();
  for (CDescriptorRangeIterator it = bos.begin(); it != validEnd; ++it) {
    if (HasType(it, kDeviceCapabilityType)) {
      lines.Add(1, LabelOf(it) + ", " + Counted(it->bLength, "byte"));
    } else if (it != bos.begin()) {
      lines.Count(1, it);
    }
  }
  AddBreakOfSet(lines, bos, "BOS");
}

// What belongs to nothing that the tree knows; `start` is its place in the file.
void AddRest(Lines& lines, CDescriptorRange const& rest, std::size_t start, char const* where) {
  if (!rest.IsEmpty()) {
    lines.Add(0, Counted(rest.Length(), "byte") + ' ' + where + ':');
    CDescriptorRangeIterator const validEnd = rest.ValidUntil();
    for (CDescriptorRangeIterator it = rest.begin(); it != validEnd; ++it) {
      lines.Count(1, it);
    }
    AddBreak(lines, rest, [start](std::size_t offset) { return OffsetText(start + offset); });
  }
}

// Where the last `length` bytes of a part are in the file.
std::size_t StartOfRest(Part const& part, std::size_t length) {
  return part.offset + part.bytes.Length() - length;
}

// A device or device qualifier descriptor, and what is after it.
void AddSingle(Lines& lines, Part const& part) {
  CDescriptorRangeIterator const it = part.bytes.begin();
  auto const device = ReadRecord<TQ_USB_DEVICE_DESCRIPTOR>(it);
  std::string line = LabelOf(it) + ": bcdUSB " + HexText(device.bcdUSB, 4);
  if (HasType(it, kDeviceType) && device.bLength >= sizeof device) {
    line +=
        ", idVendor " + HexText(device.idVendor, 4) + ", idProduct " + HexText(device.idProduct, 4);
  }
  lines.Add(0, line);
  CDescriptorRange const rest(it + 1, part.bytes.end());
  AddRest(lines, rest, StartOfRest(part, rest.Length()), "after it");
}

void AddPart(Lines& lines, Part const& part, std::uint8_t index) {
  switch (part.type) {
    case kDeviceType:
    case kDeviceQualifierType:
      AddSingle(lines, part);
      break;
    case kConfigurationType:
    case kOtherSpeedConfigurationType: {
      CapturedConfiguration configuration(index, part.type == kOtherSpeedConfigurationType);
      configuration.Read();
      AddConfiguration(lines, configuration);
      AddRest(lines, RangeOver(configuration.Behind()),
              StartOfRest(part, configuration.Behind().size()), "after it");
      break;
    }
    case kBosType: {
      CapturedBos bos(index);
      bos.Read();
      AddBos(lines, bos);
      AddRest(lines, RangeOver(bos.Behind()), StartOfRest(part, bos.Behind().size()), "after it");
      break;
    }
    default:
      AddRest(lines, part.bytes, part.offset, "without a descriptor that they belong to");
      break;
  }
}

}  // namespace

void LogTree() {
  Lines lines;
  CapturedDevice const& device = DeviceUnderTest();
  std::array<unsigned, 256> countByType{};
  for (Part const& part : device.Parts()) {
    unsigned const index = countByType[part.type]++;
    if (part.type == 0 || index < device.Count(part.type)) {
      AddPart(lines, part, static_cast<std::uint8_t>(index));
    } else {
      AddRest(lines, part.bytes, part.offset, "that no descriptor index reaches");
    }
  }
  if (std::string const text = lines.Take(); !text.empty()) {
    LogPlain(text);
  }
}

}  // namespace usb_support::usbdesc
