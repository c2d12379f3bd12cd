#include <tools/usbdesc/device.h>

#include <algorithm>
#include <array>
#include <iterator>
#include <utility>

#include <usb_devices/characters.h>
#include <usb_devices/runs.h>
#include <usb_fields/fields.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

constexpr std::uint8_t kPartTypes[] = {kDeviceType, kDeviceQualifierType, kConfigurationType,
                                       kOtherSpeedConfigurationType, kBosType};

// The most that a range can span.
constexpr std::size_t kMaxRange = 65535;

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

// The types that occur only in a configuration.
constexpr std::uint8_t kTypesOfConfigurations[] = {
    kInterfaceType,
    kEndpointType,
    kInterfaceAssociationType,
    kClassSpecificInterfaceType,
    kClassSpecificEndpointType,
    kSuperSpeedEndpointCompanionType,
    kSuperSpeedPlusIsochEndpointCompanionType,
};

// True for a descriptor that only occurs in the kind of set that a part contains.
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

Part MakePart(CDescriptorRange const& bytes, std::size_t offset) {
  Descriptor const first(bytes);
  Part part{PartTypeOf(first), offset, bytes, {}, {}, bytes};
  if (part.type == 0) {
    return part;
  }
  // The header is always included, whatever it announces; its length also comes from the device.
  std::size_t const total = std::max<std::size_t>(TotalLength(first), first.Length());
  std::size_t const length = std::min<std::size_t>(total, bytes.Length());
  part.set = Slice(bytes, 0, length);
  part.valid = CDescriptorRange(part.set.begin(), part.set.ValidUntil());
  part.after = Slice(bytes, length, bytes.Length() - length);
  return part;
}

// Offsets of parts count from `start` when the input is one run, and otherwise from the start of
// each source.
ShownDevice ShowDevice(usb_devices::Device const& device, std::string name,
                       std::optional<std::size_t> start) {
  ShownDevice shown{std::move(name), &device};
  for (usb_devices::Answer const& answer : device.Answers()) {
    std::size_t const offset = start.value_or(static_cast<std::size_t>(answer.source.offset));
    if (start) {
      *start += answer.bytes.size();
    }
    if (!IsPart(answer)) {
      continue;
    }
    Part const part = MakePart(RangeOver(answer.bytes), offset);
    if (part.type == kDeviceType && part.set.Length() >= sizeof(TQ_USB_DEVICE_DESCRIPTOR) &&
        !shown.descriptor) {
      shown.descriptor = ReadRecord<TQ_USB_DEVICE_DESCRIPTOR>(part.set.begin());
    }
    shown.parts.push_back(part);
  }
  return shown;
}

// All bytes, when reading them again gives the same devices.
std::optional<usb_devices::Bytes> RunOf(std::vector<usb_devices::Device> const& devices) {
  usb_devices::Bytes run;
  for (usb_devices::Device const& device : devices) {
    for (usb_devices::Answer const& answer : device.Answers()) {
      run.insert(run.end(), answer.bytes.begin(), answer.bytes.end());
    }
    if (run.size() > kMaxRange || (devices.size() > 1 && !device.Name().empty())) {
      return std::nullopt;
    }
  }
  std::vector<usb_devices::Device> read = usb_devices::DevicesOf(run, {});
  read.resize(std::max<std::size_t>(read.size(), 1));
  bool const isSame = std::equal(devices.begin(), devices.end(), read.begin(), read.end(),
                                 [](auto const& a, auto const& b) { return a.HasSameAnswers(b); });
  return isSame ? std::optional(std::move(run)) : std::nullopt;
}

// The text of a string descriptor; nothing when it is not one.
std::optional<std::string> TextOfString(usb_devices::ByteSpan bytes, std::uint8_t index) {
  std::array<char, usb_fields::kMostText> buffer;
  std::optional<std::string> text;
  usb_fields::Context const context{.index = index};
  usb_fields::ReadFields(bytes, context, [&](usb_fields::FieldValue const& field) {
    if (field.field->meaning.form == usb_fields::Form::kUtf16) {
      text = usb_fields::TextOf(field, buffer);
    }
  });
  return text;
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
  // A capture may continue with descriptors of other requests; those are not a fault.
  bool const isWrong = announced > part.bytes.Length() || announced < header.Length() ||
                       BelongsTo(part, part.after.begin());
  return isWrong ? std::optional(WrongTotal{announced, part.bytes.Length()}) : std::nullopt;
}

bool IsPart(usb_devices::Answer const& answer) noexcept {
  bool const isOfAPart =
      answer.request.IsStandard() && std::find(std::begin(kPartTypes), std::end(kPartTypes),
                                               answer.request.Type()) != std::end(kPartTypes);
  return !answer.bytes.empty() && (isOfAPart || !answer.request.IsKnown());
}

bool IsChain(usb_devices::Request const& request) noexcept {
  bool const isReport = request.Type() == usb_devices::kHidReportType;
  return !request.IsKnown() || (request.IsGetDescriptor() && !isReport);
}

std::map<std::uint8_t, std::string> StringsOf(usb_devices::Device const& device) {
  std::map<std::uint8_t, std::string> strings;
  for (usb_devices::Answer const* const answer : device.OfType(usb_devices::kStringType)) {
    std::uint8_t const index = answer->request.Index();
    if (std::optional<std::string> const text = TextOfString(answer->bytes, index)) {
      strings.emplace(index, *text);
    }
  }
  return strings;
}

std::string NameOf(Input const& input, std::size_t device) {
  if (input.devices.size() == 1) {
    return input.name;
  }
  std::string const& name = input.devices[device].Name();
  auto const isNamedSo = [&name](usb_devices::Device const& one) { return one.Name() == name; };
  bool const isUsable =
      !name.empty() && name.find('#') == std::string::npos && usb_devices::Harmless(name) == name;
  bool const isNamed =
      isUsable && std::count_if(input.devices.begin(), input.devices.end(), isNamedSo) == 1;
  return input.name + '#' + (isNamed ? name : std::to_string(device + 1));
}

ShownInput Show(Input const& input) {
  ShownInput shown{input, RunOf(input.devices)};
  std::size_t start = 0;
  for (std::size_t i = 0; i < input.devices.size(); ++i) {
    shown.devices.push_back(ShowDevice(input.devices[i], NameOf(input, i),
                                       shown.run ? std::optional(start) : std::nullopt));
    for (Part const& part : shown.devices.back().parts) {
      start += part.bytes.Length();
    }
  }
  return shown;
}

}  // namespace usb_support::usbdesc
