#include <tools/usbdesc/captured_device.h>

#include <algorithm>
#include <utility>

#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

constexpr std::uint8_t kPartTypes[] = {kDeviceType, kDeviceQualifierType, kConfigurationType,
                                       kOtherSpeedConfigurationType, kBosType};

// The descriptors that a descriptor index counts from 0 to 254: 255 is no index.
constexpr unsigned kMaxCount = 255;

// The type of the part that a descriptor begins; 0 when it begins none. A descriptor of one byte
// has no type, whatever stands behind it.
std::uint8_t PartTypeOf(CDescriptorRangeIterator const& it) {
  auto const header = ReadRecord<TQ_USB_COMMON_DESCRIPTOR>(it);
  bool const begins = IsWhole(it) && header.bLength >= sizeof header &&
                      std::find(std::begin(kPartTypes), std::end(kPartTypes),
                                header.bDescriptorType) != std::end(kPartTypes);
  return begins ? header.bDescriptorType : std::uint8_t{0};
}

// Bytes that the header of a compound descriptor announces; 0 for any other descriptor. A
// configuration and a BOS have the field in the same place.
std::uint16_t TotalLength(CDescriptorRangeIterator const& it) {
  bool const isCompound = HasType(it, kConfigurationType) ||
                          HasType(it, kOtherSpeedConfigurationType) || HasType(it, kBosType);
  return isCompound ? ReadRecord<TQ_USB_BOS_DESCRIPTOR>(it).wTotalLength : std::uint16_t{0};
}

// The types that are nowhere but in a configuration.
constexpr std::uint8_t kTypesOfConfigurations[] = {
    kInterfaceType,
    kEndpointType,
    kInterfaceAssociationType,
    kClassSpecificInterfaceType,
    kClassSpecificEndpointType,
    kSuperSpeedEndpointCompanionType,
    kSuperSpeedPlusIsochEndpointCompanionType,
};

// True for a descriptor that only the kind of set has that a part holds.
bool BelongsTo(std::uint8_t partType, CDescriptorRangeIterator const& it) {
  if (partType == kBosType) {
    return HasType(it, kDeviceCapabilityType);
  }
  return std::any_of(std::begin(kTypesOfConfigurations), std::end(kTypesOfConfigurations),
                     [&it](std::uint8_t type) { return HasType(it, type); });
}

// Where the parts of a run begin; the first is 0.
std::vector<std::uint16_t> PartOffsets(CDescriptorRange const& run) {
  std::vector<std::uint16_t> offsets;
  std::uint32_t const size = run.Length();
  std::uint32_t announcedEnd = 0;
  for (std::uint32_t at = 0; at < size;) {
    auto const rest = static_cast<std::uint16_t>(size - at);
    CDescriptorRangeIterator const it = CDescriptorRange(run.Bytes() + at, rest).begin();
    bool const isWhole = IsWhole(it);
    if (PartTypeOf(it) != 0) {
      offsets.push_back(static_cast<std::uint16_t>(at));
      announcedEnd = at + TotalLength(it);
    } else if (offsets.empty()) {
      offsets.push_back(0);
    }
    if (isWhole) {
      at += it->bLength;
    } else if (announcedEnd > at && announcedEnd < size) {
      at = announcedEnd;
      // What stands there is a part of its own, whatever it is.
      offsets.push_back(static_cast<std::uint16_t>(at));
      announcedEnd = 0;
    } else {
      break;
    }
  }
  // A part that was begun for its place and again for its type is one.
  offsets.erase(std::unique(offsets.begin(), offsets.end()), offsets.end());
  return offsets;
}

}  // namespace

bool IsWhole(CDescriptorRangeIterator const& it) noexcept {
  return it.Remaining() != 0 && it->bLength != 0 && it->bLength <= it.Remaining();
}

std::optional<WrongTotal> FindWrongTotal(Part const& part) {
  if (part.type != kConfigurationType && part.type != kOtherSpeedConfigurationType &&
      part.type != kBosType) {
    return std::nullopt;
  }
  std::size_t const announced = TotalLength(part.bytes.begin());
  std::size_t const found = part.bytes.Length();
  // A header is there whatever it announces.
  if (announced > found || announced < part.bytes.begin()->bLength) {
    return WrongTotal{announced, found};
  }
  // A capture may go on with descriptors of other requests; those are not a fault.
  CDescriptorRange const rest(part.bytes.Bytes() + announced,
                              static_cast<std::uint16_t>(found - announced));
  return BelongsTo(part.type, rest.begin()) ? std::optional(WrongTotal{announced, found})
                                            : std::nullopt;
}

std::vector<Part> SplitRun(CDescriptorRange const& run) {
  std::vector<std::uint16_t> const offsets = PartOffsets(run);
  std::vector<Part> parts;
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    std::uint16_t const end = i + 1 < offsets.size() ? offsets[i + 1] : run.Length();
    CDescriptorRange const bytes(run.Bytes() + offsets[i],
                                 static_cast<std::uint16_t>(end - offsets[i]));
    parts.push_back({PartTypeOf(bytes.begin()), offsets[i], bytes});
  }
  return parts;
}

CapturedDevice::CapturedDevice(std::vector<Part> parts) : parts_(std::move(parts)) {
  for (std::size_t place = 0; place < parts_.size(); ++place, ++visits_) {
    placesByType_[parts_[place].type].push_back(place);
  }
}

unsigned CapturedDevice::Count(std::uint8_t type) const noexcept {
  auto const found = placesByType_.find(type);
  return found == placesByType_.end()
             ? 0
             : std::min(static_cast<unsigned>(found->second.size()), kMaxCount);
}

Part const* CapturedDevice::Find(std::uint8_t type, std::uint8_t index) const noexcept {
  if (index >= Count(type)) {
    return nullptr;
  }
  ++visits_;
  return &parts_[placesByType_.find(type)->second[index]];
}

Bytes CapturedDevice::GetDescriptor(std::uint8_t type, std::uint8_t index,
                                    std::uint16_t length) const {
  Part const* const part = Find(type, index);
  if (part == nullptr) {
    return {};
  }
  unsigned char const* const first = part->bytes.Bytes();
  return Bytes(first, first + std::min(length, part->bytes.Length()));
}

std::vector<CapturedDevice> DevicesOf(CDescriptorRange const& run) {
  std::vector<CapturedDevice> devices;
  std::vector<Part> parts;
  bool hasDescriptor = false;
  for (Part const& part : SplitRun(run)) {
    if (part.type == kDeviceType && std::exchange(hasDescriptor, true)) {
      devices.emplace_back(std::exchange(parts, {}));
    }
    parts.push_back(part);
  }
  devices.emplace_back(std::move(parts));
  return devices;
}

}  // namespace usb_support::usbdesc
