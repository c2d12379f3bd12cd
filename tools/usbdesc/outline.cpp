#include <tools/usbdesc/outline.h>

#include <algorithm>
#include <array>
#include <map>
#include <unordered_map>
#include <utility>

#include <tools/usbdesc/log_text.h>
#include <usb_fields/fields.h>

namespace usb_support::usbdesc {
namespace {

using usb_fields::ByteView;
using usb_fields::Context;
using usb_fields::FieldValue;

constexpr std::uint8_t kConfiguration = 0x02;
constexpr std::uint8_t kInterface = 0x04;
constexpr std::uint8_t kEndpoint = 0x05;
constexpr std::uint8_t kOtherSpeedConfiguration = 0x07;
constexpr std::uint8_t kAssociation = 0x0B;
constexpr std::uint8_t kCapability = 0x10;
constexpr std::uint8_t kHid = 0x21;
constexpr std::uint8_t kClassInterface = 0x24;
constexpr std::uint8_t kVideoClass = 0x0E;
constexpr std::uint8_t kVideoStreaming = 0x02;

// Fields that number a descriptor among those of its kind.
constexpr std::string_view kNumbers[] = {
    "bUnitID",    "bTerminalID", "bClockID",     "bJackID", "bFormatIndex",  "bFrameIndex",
    "bEncoderID", "bDecoderID",  "bGrpTrmBlkID", "bPipeID", "bPowerDomainID"};

bool IsConfiguration(std::uint8_t type) noexcept {
  return type == kConfiguration || type == kOtherSpeedConfiguration;
}

// What makes the name and the key of a descriptor.
struct Identity {
  std::string key;
  std::string name;
  bool hasFormat = false;   // a video format
  bool hasFrame = false;    // a video frame
  bool isSubset = false;    // a Microsoft OS 2.0 subset of a configuration ...
  bool isFunction = false;  // ... or of a function
};

// The line about a descriptor up to its colon, and what is after it.
std::pair<std::string, std::string> SummaryParts(OutlineItem const& item) {
  std::array<char, usb_fields::kMostSummary> buffer;
  std::string_view const line = usb_fields::SummaryOf(item.rest, item.context, buffer);
  std::size_t const colon = line.find(": ");
  return {std::string(line.substr(0, colon)),
          colon == std::string_view::npos ? "" : std::string(line.substr(colon + 2))};
}

std::string EndpointName(std::uint8_t address) {
  return "endpoint " + Hex(address, 2) + ((address & 0x80) != 0 ? "h IN" : "h OUT");
}

std::string InterfaceName(std::uint8_t number, std::uint8_t setting) {
  return "interface " + std::to_string(number) +
         (setting == 0 ? "" : ", alternate setting " + std::to_string(setting));
}

// By the fields that identify it.
Identity NumberedIdentity(OutlineItem const& item) {
  Identity identity;
  ByteView const view(item.bytes);
  bool const isPlain = item.context.request == usb_fields::Request::kDescriptor;
  usb_fields::Layout const* const layout = usb_fields::FindLayout(item.rest, item.context).Get();
  identity.key = isPlain || layout == nullptr ? Hex(view.At(1), 2) : std::string(layout->id);
  bool isNumbered = false;
  usb_fields::ReadFields(item.bytes, item.context, [&](FieldValue const& field) {
    std::string_view const name = field.field->name;
    if (name == "bDescriptorSubtype" || name == "bDescriptorSubType" ||
        name == "bDevCapabilityType") {
      identity.key += "." + Hex(static_cast<std::size_t>(field.value), 2);
    } else if (name.ends_with("UUID") && field.offset == 4) {
      identity.key += "." + std::string(field.Bytes().begin(), field.Bytes().end());
    } else if (!isNumbered &&
               std::find(std::begin(kNumbers), std::end(kNumbers), name) != std::end(kNumbers)) {
      isNumbered = true;
      identity.key += " " + std::to_string(field.value);
      identity.hasFormat = name == "bFormatIndex";
      identity.hasFrame = name == "bFrameIndex";
    } else if (!isPlain && (name == "bConfigurationValue" || name == "bFirstInterface")) {
      identity.key += " " + std::to_string(field.value);
      identity.isSubset = name == "bConfigurationValue";
      identity.isFunction = name == "bFirstInterface";
    }
  });
  identity.name = SummaryParts(item).first;
  return identity;
}

Identity WholeIdentity(OutlineItem const& item) {
  ByteView const view(item.bytes);
  std::uint8_t const type = view.At(1);
  if (item.context.request == usb_fields::Request::kDescriptor) {
    if (IsConfiguration(type)) {
      std::string const name =
          (type == kConfiguration ? "configuration " : "other-speed configuration ") +
          std::to_string(view.At(5));
      return {name, name};
    }
    if (type == kInterface) {
      std::string const name = InterfaceName(view.At(2), view.At(3));
      return {name, name};
    }
    if (type == kEndpoint) {
      std::string const name = EndpointName(view.At(2));
      return {name, name};
    }
    if (type == kAssociation) {
      std::string const name = "interface association of " + std::to_string(view.At(2));
      return {name, name};
    }
  }
  return NumberedIdentity(item);
}

// Finds the parent of each descriptor of a run.
class Nesting {
 public:
  // The level of a descriptor. A descriptor that is deeper than the one before it is below that.
  std::size_t LevelOf(OutlineItem const& item, Identity const& identity) {
    std::size_t const level = FullLevel(item, identity);
    bool const isLoose =
        item.context.request == usb_fields::Request::kDescriptor && !item.context.hasInterface;
    return isLoose ? std::min<std::size_t>(level, 1) : level;
  }

 private:
  std::size_t FullLevel(OutlineItem const& item, Identity const& identity) {
    if (item.context.request == usb_fields::Request::kMsOs20) {
      return LevelOfSubset(item, identity);
    }
    ByteView const view(item.bytes);
    switch (std::uint8_t const type = view.At(1)) {
      case kInterface:
        hasFormat_ = false;
        return 1;
      case kAssociation:
      case kCapability:
        return 1;
      case kEndpoint:
        return 2;
      case kClassInterface:
        return LevelInInterface(item, identity);
      case kHid:
        return 2;
      default:
        if (item.offset == 0 || type == 0x01 || type == 0x06 || type == 0x0F ||
            IsConfiguration(type)) {
          return 0;
        }
        return item.context.hasEndpoint ? 3 : 2;
    }
  }

  // Video frames, still images and colours are below the format before them.
  std::size_t LevelInInterface(OutlineItem const& item, Identity const& identity) {
    bool const isVideo = item.context.interfaceClass == kVideoClass &&
                         item.context.interfaceSubclass == kVideoStreaming;
    if (!isVideo || identity.hasFormat) {
      hasFormat_ = isVideo;
      return 2;
    }
    std::uint8_t const subtype = ByteView(item.bytes).At(2);
    bool const isOfFormat = identity.hasFrame || subtype == 0x03 || subtype == 0x0D;
    return hasFormat_ && isOfFormat ? 3 : 2;
  }

  std::size_t LevelOfSubset(OutlineItem const& item, Identity const& identity) {
    if (item.offset == 0) {
      return 0;
    }
    if (identity.isSubset) {
      subset_ = 1;
      return 1;
    }
    if (identity.isFunction) {
      std::size_t const level = subset_ == 0 ? 1 : 2;
      feature_ = level + 1;
      return level;
    }
    return feature_ != 0 ? feature_ : subset_ + 1;
  }

  bool hasFormat_ = false;
  std::size_t subset_ = 0;
  std::size_t feature_ = 0;
};

// The text of a string descriptor.
std::string TextOfString(OutlineItem const& item) {
  std::string text;
  std::array<char, usb_fields::kMostText> buffer;
  usb_fields::ReadFields(item.bytes, item.context, [&](FieldValue const& field) {
    if (field.offset >= 2) {
      text.append(text.empty() ? "" : ", ").append(usb_fields::TextOf(field, buffer));
    }
  });
  return text;
}

}  // namespace

Outline::Outline(DecodedDevice device) : device_(std::move(device)) {
  std::map<usb_devices::Request, DecodedRun const*> ordered;
  for (DecodedRun const& run : device_.runs) {
    ordered.emplace(run.answer->request, &run);
  }
  for (auto const& [request, run] : ordered) {
    AddRun(*run);
  }
  NumberTwins();
}

void Outline::AddRun(DecodedRun const& decoded) {
  usb_devices::Request const& request = decoded.answer->request;
  OutlineRun run;
  run.answer = decoded.answer;
  run.first = items_.size();
  run.name = usb_devices::NameOf(request);
  run.key = run.name;
  if (decoded.IsHidReport() && !decoded.bytes.empty()) {
    OutlineItem item;
    item.run = runs_.size();
    item.bytes = decoded.bytes;
    item.rest = decoded.bytes;
    item.isHidReport = true;
    item.key = run.key;
    item.name = run.name;
    items_.push_back(std::move(item));
  } else if (!decoded.IsHidReport()) {
    AddDescriptors(decoded, run);
  }
  run.count = items_.size() - run.first;
  if (run.count != 0 && request.IsStandard()) {
    OutlineItem& head = items_[run.first];
    if (IsConfiguration(request.Type())) {
      run.name = head.name;
      run.key = head.key;
    } else {
      head.name = run.name;
    }
  }
  runs_.push_back(std::move(run));
}

void Outline::AddDescriptors(DecodedRun const& decoded, OutlineRun& run) {
  Nesting nesting;
  std::size_t highest = 0;         // level of the first descriptor, which is at the top
  std::vector<std::size_t> above;  // the last item of each level
  usb_fields::Speed const readAs = device_.speed.readAs;
  ChainEnd const end = ForEachDescriptor(
      decoded, readAs, [&](std::size_t offset, ByteSpan rest, Context const& context) {
        OutlineItem item;
        item.run = runs_.size();
        item.offset = offset;
        std::size_t const length = usb_fields::DescriptorLength(rest, context);
        item.bytes = rest.first(std::min(length, rest.size()));
        item.rest = rest;
        item.context = context;
        Identity identity = WholeIdentity(item);
        item.key = std::move(identity.key);
        item.name = std::move(identity.name);
        std::size_t const level = nesting.LevelOf(item, identity);
        if (items_.size() == run.first) {
          highest = level;
        }
        above.resize(std::min(level - std::min(level, highest), above.size()));
        item.level = above.size();
        item.parent = above.empty() ? kNone : above.back();
        above.push_back(items_.size());
        items_.push_back(std::move(item));
      });
  if (end.left != 0) {
    run.breakReason = end.reason;
    run.breakOffset = end.offset;
    run.tail = items_.size() != run.first && items_.back().offset == end.offset
                   ? ByteSpan()
                   : decoded.bytes.last(end.left);
  }
}

void Outline::NumberTwins() {
  std::unordered_map<std::string, std::size_t> counts;
  auto const number = [&counts](std::string const& family, std::string& text) {
    if (std::size_t const count = ++counts[family + text]; count > 1) {
      text.append(" #").append(std::to_string(count));
    }
  };
  for (OutlineRun& run : runs_) {
    number("run key ", run.key);
    number("run name ", run.name);
  }
  for (OutlineItem& item : items_) {
    std::string const family = item.parent == kNone ? "in run " + std::to_string(item.run)
                                                    : "in item " + std::to_string(item.parent);
    number(family + " key ", item.key);
    number(family + " name ", item.name);
  }
}

std::size_t Outline::FileOffset(OutlineItem const& item, std::size_t inItem) const noexcept {
  return static_cast<std::size_t>(runs_[item.run].answer->source.offset) + item.offset + inItem;
}

std::string Outline::PlaceOf(OutlineItem const& item) const {
  std::string place = item.name;
  std::size_t parent = item.parent;
  for (; parent != kNone; parent = items_[parent].parent) {
    place.insert(0, items_[parent].name + ", ");
  }
  OutlineRun const& run = runs_[item.run];
  bool const isHead = run.count != 0 && items_[run.first].name == run.name;
  return isHead ? place : run.name + ", " + place;
}

std::string DetailOf(OutlineItem const& item) {
  ByteView const view(item.bytes);
  bool const isPlain = item.context.request == usb_fields::Request::kDescriptor;
  if (isPlain && !item.isHidReport && view.At(1) == kInterface) {
    std::array<char, 256> buffer;
    return std::string(usb_fields::TripleName(view.At(5), view.At(6), view.At(7), buffer));
  }
  if (isPlain && !item.isHidReport && view.At(1) == usb_devices::kStringType) {
    return TextOfString(item);
  }
  return item.isHidReport ? Counted(item.bytes.size(), "byte") : SummaryParts(item).second;
}

}  // namespace usb_support::usbdesc
