#include <tools/usbdesc/device.h>

#include <algorithm>
#include <utility>

#include <usb_fields/summary.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

constexpr std::uint8_t kPartTypes[] = {kDeviceType, kDeviceQualifierType, kConfigurationType,
                                       kOtherSpeedConfigurationType, kBosType};

// The type of the part that a descriptor begins; 0 when it begins none. A descriptor of one byte
// has no type, whatever follows it.
std::uint8_t PartTypeOf(Descriptor const& d) {
  bool const begins =
      d.Length() >= sizeof(TQ_USB_COMMON_DESCRIPTOR) &&
      std::find(std::begin(kPartTypes), std::end(kPartTypes), d.Type()) != std::end(kPartTypes);
  return begins ? d.Type() : std::uint8_t{0};
}

// Bytes that the header of a compound descriptor announces; 0 for any other descriptor. A
// configuration and a BOS have the field in the same place.
std::uint16_t TotalLength(Descriptor const& d) {
  bool const isCompound =
      d.Is(kConfigurationType) || d.Is(kOtherSpeedConfigurationType) || d.Is(kBosType);
  return isCompound ? d.As<TQ_USB_BOS_DESCRIPTOR>().wTotalLength : std::uint16_t{0};
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
bool BelongsTo(Part const& part, CDescriptorRangeIterator const& it) {
  if (part.IsBos()) {
    return HasType(it, kDeviceCapabilityType);
  }
  return std::any_of(std::begin(kTypesOfConfigurations), std::end(kTypesOfConfigurations),
                     [&it](std::uint8_t type) { return HasType(it, type); });
}

// `length` bytes of a range from `offset` on.
CDescriptorRange Slice(CDescriptorRange const& range, std::size_t offset, std::size_t length) {
  return CDescriptorRange(range.Bytes() + offset, static_cast<std::uint16_t>(length));
}

// Where the parts of a run begin; the first is 0.
std::vector<std::uint16_t> PartOffsets(CDescriptorRange const& run) {
  std::vector<std::uint16_t> offsets;
  std::uint32_t const size = run.Length();
  std::uint32_t announcedEnd = 0;
  for (std::uint32_t at = 0; at < size;) {
    Descriptor const d(Slice(run, at, size - at));
    if (PartTypeOf(d) != 0) {
      offsets.push_back(static_cast<std::uint16_t>(at));
      announcedEnd = at + TotalLength(d);
    } else if (offsets.empty()) {
      offsets.push_back(0);
    }
    if (d) {
      at += d.Length();
    } else if (announcedEnd > at && announcedEnd < size) {
      at = announcedEnd;
      // Whatever is there is a separate part.
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

Part MakePart(CDescriptorRange const& bytes, std::size_t offset) {
  Descriptor const first(bytes);
  Part part{PartTypeOf(first), offset, bytes, {}, {}, bytes};
  if (part.type == 0) {
    return part;
  }
  // The header is held whatever it announces; its length is the device's word, too.
  std::size_t const total = std::max<std::size_t>(TotalLength(first), first.Length());
  std::size_t const length = std::min<std::size_t>(total, bytes.Length());
  part.set = Slice(bytes, 0, length);
  part.valid = CDescriptorRange(part.set.begin(), part.set.ValidUntil());
  part.after = Slice(bytes, length, bytes.Length() - length);
  return part;
}

}  // namespace

std::string Part::Name() const {
  if (IsBos()) {
    return "BOS";
  }
  auto const header = ReadRecord<TQ_USB_CONFIGURATION_DESCRIPTOR>(bytes.begin());
  return std::string(type == kOtherSpeedConfigurationType ? "other-speed " : "") +
         "configuration " + std::to_string(header.bConfigurationValue);
}

std::optional<WrongTotal> FindWrongTotal(Part const& part) {
  if (!part.IsConfiguration() && !part.IsBos()) {
    return std::nullopt;
  }
  Descriptor const header(part.bytes);
  std::size_t const announced = TotalLength(header);
  // A capture may go on with descriptors of other requests; those are not a fault.
  bool const isWrong = announced > part.bytes.Length() || announced < header.Length() ||
                       BelongsTo(part, part.after.begin());
  return isWrong ? std::optional(WrongTotal{announced, part.bytes.Length()}) : std::nullopt;
}

std::vector<Part> SplitRun(CDescriptorRange const& run) {
  std::vector<std::uint16_t> const offsets = PartOffsets(run);
  std::vector<Part> parts;
  for (std::size_t i = 0; i < offsets.size(); ++i) {
    std::uint16_t const end = i + 1 < offsets.size() ? offsets[i + 1] : run.Length();
    parts.push_back(MakePart(Slice(run, offsets[i], std::size_t{end} - offsets[i]), offsets[i]));
  }
  return parts;
}

std::vector<Device> DevicesOf(CDescriptorRange const& run, std::string const& name) {
  std::vector<Device> devices;
  bool hasDescriptor = false;
  for (Part& part : SplitRun(run)) {
    if (devices.empty() || (part.type == kDeviceType && hasDescriptor)) {
      devices.push_back({name});
      hasDescriptor = false;
    }
    if (part.type == kDeviceType) {
      hasDescriptor = true;
      if (part.set.Length() >= sizeof(TQ_USB_DEVICE_DESCRIPTOR)) {
        devices.back().descriptor = ReadRecord<TQ_USB_DEVICE_DESCRIPTOR>(part.set.begin());
      }
    }
    devices.back().parts.push_back(std::move(part));
  }
  if (devices.empty()) {
    devices.push_back({name});
  }
  for (std::size_t i = 0; devices.size() > 1 && i < devices.size(); ++i) {
    devices[i].name += ", device " + std::to_string(i + 1);
  }
  return devices;
}

usb_fields::Speed SpeedOf(Device const& device) noexcept {
  std::size_t length = 0;  // the parts are one after the other
  for (Part const& part : device.parts) {
    length += part.bytes.Length();
  }
  return device.parts.empty() ? usb_fields::Speed::kUnknown
                              : usb_fields::SpeedOf({device.parts.front().bytes.Bytes(), length});
}

}  // namespace usb_support::usbdesc
