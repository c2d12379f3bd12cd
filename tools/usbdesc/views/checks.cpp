#include <tools/usbdesc/views/checks.h>

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <set>

#include <tools/usbdesc/log_text.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

// The least bLength of a descriptor type, or of a capability type.
struct LeastLength {
  std::uint8_t type;
  std::uint8_t length;
};

// USB 3.2, 9.6.
constexpr LeastLength kLeastLengths[] = {
    {kConfigurationType, sizeof(TQ_USB_CONFIGURATION_DESCRIPTOR)},
    {kOtherSpeedConfigurationType, sizeof(TQ_USB_CONFIGURATION_DESCRIPTOR)},
    {kInterfaceType, sizeof(TQ_USB_INTERFACE_DESCRIPTOR)},
    {kEndpointType, sizeof(TQ_USB_ENDPOINT_DESCRIPTOR)},
    {kInterfaceAssociationType, sizeof(TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR)},
    {kBosType, sizeof(TQ_USB_BOS_DESCRIPTOR)},
    {kDeviceCapabilityType, sizeof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR)},
    {kSuperSpeedEndpointCompanionType, sizeof(SuperSpeedEndpointCompanionDescriptor)},
    {kSuperSpeedPlusIsochEndpointCompanionType,
     sizeof(SuperSpeedPlusIsochEndpointCompanionDescriptor)},
};

// USB 3.2, 9.6.2, and USB PD 2.0; a provider port may have no objects, and a SuperSpeedPlus
// capability has at least one attribute.
constexpr LeastLength kLeastCapabilityLengths[] = {
    {kUsb20ExtensionCapability, sizeof(TQ_USB_DEVICE_CAPABILITY_USB20_EXTENSION_DESCRIPTOR)},
    {kSuperSpeedCapability, sizeof(TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR)},
    {kContainerIdCapability, sizeof(TQ_USB_DEVICE_CAPABILITY_CONTAINER_ID_DESCRIPTOR)},
    {kPowerDeliveryCapability, sizeof(TQ_USB_POWER_DELIVERY_CAPABILITY_DESCRIPTOR_PD_2)},
    {kBatteryInfoCapability, sizeof(TQ_USB_BATTERY_INFO_CAPABILITY_DESCRIPTOR)},
    {kPdConsumerPortCapability, sizeof(TQ_USB_PD_CONSUMER_PORT_DESCRIPTOR)},
    {kPdProviderPortCapability, 8},
    {kSuperSpeedPlusCapability, sizeof(SuperSpeedPlusCapabilityDescriptor)},
};

template <std::size_t Size>
std::uint8_t LengthFor(LeastLength const (&table)[Size], std::uint8_t type) {
  auto const* const found = std::find_if(std::begin(table), std::end(table),
                                         [type](LeastLength row) { return row.type == type; });
  return found == std::end(table) ? std::uint8_t{2} : found->length;
}

std::uint8_t LeastLengthOf(Descriptor const& d) {
  if (d.Is(kDeviceCapabilityType) && d.Length() >= sizeof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR)) {
    auto const capability = d.As<TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR>();
    return std::max(LengthFor(kLeastLengths, kDeviceCapabilityType),
                    LengthFor(kLeastCapabilityLengths, capability.bDevCapabilityType));
  }
  return LengthFor(kLeastLengths, d.Type());
}

// "offset 1Bh (9h in the configuration)".
std::string PlaceOf(Part const& part, std::size_t offset) {
  return OffsetText(part.offset, offset, part.IsBos() ? "BOS" : "configuration");
}

std::string PlaceOf(Part const& part, Descriptor const& d) {
  return PlaceOf(part, d.Offset());
}

template <typename Record>
Record Header(Subject const& subject) {
  return ReadRecord<Record>(subject.part.set.begin());
}

std::string Announced(std::size_t announced, std::size_t there) {
  return "announced " + std::to_string(announced) + ", found " + std::to_string(there);
}

std::string InterfaceText(unsigned number) {
  return "interface " + std::to_string(number);
}

Findings FindBrokenChain(Subject const& subject) {
  RunDiagnosis const diagnosis = DiagnoseRun(subject.part.set);
  if (diagnosis.reason == RunEnd::kComplete) {
    return {};
  }
  return {PlaceOf(subject.part, diagnosis.offset) + ": " + RunEndText(diagnosis.reason) + ", " +
          Counted(diagnosis.bytesLeft, "byte") + " left"};
}

Findings FindWrongTotalOf(Subject const& subject) {
  std::optional<WrongTotal> const wrong = FindWrongTotal(subject.part);
  return wrong ? Findings{Announced(wrong->announced, wrong->found)} : Findings{};
}

Findings FindShortDescriptors(Subject const& subject) {
  Findings findings;
  for (Descriptor const d : Walk(subject.part.set)) {
    std::uint8_t const least = LeastLengthOf(d);
    if (d.Length() < least) {
      findings.push_back(PlaceOf(subject.part, d) + ": bLength " + std::to_string(d.Length()) +
                         ", at least " + std::to_string(least) + " expected");
    }
  }
  return findings;
}

Findings FindWrongNumberOfConfigurations(Subject const& subject) {
  // A device descriptor alone says nothing about what was not captured, nor the other way round.
  std::size_t there = 0;
  for (Part const& part : subject.device.parts) {
    there += part.type == kConfigurationType ? 1U : 0U;
  }
  if (there == 0 || !subject.device.descriptor) {
    return {};
  }
  std::size_t const announced = subject.device.descriptor->bNumConfigurations;
  return announced == there ? Findings{} : Findings{Announced(announced, there)};
}

// A setting of an interface with its endpoints.
struct Setting {
  TQ_USB_INTERFACE_DESCRIPTOR interface;
  std::vector<TQ_USB_ENDPOINT_DESCRIPTOR> endpoints;
};

std::vector<Setting> SettingsOf(Subject const& subject) {
  std::vector<Setting> settings;
  for (Descriptor const d : Walk(subject.part.set)) {
    if (d.Is(kInterfaceType)) {
      settings.push_back({d.As<TQ_USB_INTERFACE_DESCRIPTOR>(), {}});
    } else if (d.Is(kEndpointType) && !settings.empty()) {
      settings.back().endpoints.push_back(d.As<TQ_USB_ENDPOINT_DESCRIPTOR>());
    }
  }
  return settings;
}

std::string NameOf(Setting const& setting) {
  return InterfaceText(setting.interface.bInterfaceNumber) + ", alternate setting " +
         std::to_string(setting.interface.bAlternateSetting);
}

std::set<unsigned> InterfaceNumbersOf(Subject const& subject) {
  std::set<unsigned> numbers;
  for (Setting const& setting : SettingsOf(subject)) {
    numbers.insert(setting.interface.bInterfaceNumber);
  }
  return numbers;
}

Findings FindWrongNumberOfInterfaces(Subject const& subject) {
  std::size_t const announced = Header<TQ_USB_CONFIGURATION_DESCRIPTOR>(subject).bNumInterfaces;
  std::size_t const there = InterfaceNumbersOf(subject).size();
  return announced == there ? Findings{} : Findings{Announced(announced, there)};
}

// "0, 2, 3" when the numbers, in ascending order, are not 0, 1, 2 and so on.
template <typename Numbers>
std::optional<std::string> UnlessCounting(Numbers const& numbers) {
  std::string text;
  unsigned expected = 0;
  bool counts = true;
  for (unsigned const number : numbers) {
    text += (text.empty() ? "" : ", ") + std::to_string(number);
    counts = counts && number == expected++;
  }
  return counts ? std::nullopt : std::optional(text);
}

Findings FindGapsInInterfaces(Subject const& subject) {
  std::optional<std::string> const found = UnlessCounting(InterfaceNumbersOf(subject));
  return found ? Findings{"found " + *found} : Findings{};
}

Findings FindGapsInSettings(Subject const& subject) {
  std::map<unsigned, std::multiset<unsigned>> settings;
  for (Setting const& setting : SettingsOf(subject)) {
    settings[setting.interface.bInterfaceNumber].insert(setting.interface.bAlternateSetting);
  }
  Findings findings;
  for (auto const& [interface, numbers] : settings) {
    if (std::optional<std::string> const found = UnlessCounting(numbers)) {
      findings.push_back(InterfaceText(interface) + ": found " + *found);
    }
  }
  return findings;
}

Findings FindWrongNumberOfEndpoints(Subject const& subject) {
  Findings findings;
  for (Setting const& setting : SettingsOf(subject)) {
    if (setting.interface.bNumEndpoints != setting.endpoints.size()) {
      findings.push_back(NameOf(setting) + ": " +
                         Announced(setting.interface.bNumEndpoints, setting.endpoints.size()));
    }
  }
  return findings;
}

Findings FindSharedEndpoints(Subject const& subject) {
  Findings findings;
  std::map<unsigned, unsigned> interfaceOf;
  for (Setting const& setting : SettingsOf(subject)) {
    std::set<unsigned> ofSetting;
    for (TQ_USB_ENDPOINT_DESCRIPTOR const& endpoint : setting.endpoints) {
      unsigned const address = endpoint.bEndpointAddress;
      auto const& [first, isNew] =
          interfaceOf.try_emplace(address, setting.interface.bInterfaceNumber);
      if (!ofSetting.insert(address).second) {
        findings.push_back(NameOf(setting) + ": " + HexText(address) + " twice");
      } else if (!isNew && first->second != setting.interface.bInterfaceNumber) {
        findings.push_back(NameOf(setting) + ": " + HexText(address) + " belongs to " +
                           InterfaceText(first->second));
      }
    }
  }
  return findings;
}

// The interfaces that an association announces.
struct Association {
  Descriptor descriptor;
  unsigned first;
  unsigned count;
};

std::vector<Association> AssociationsOf(Subject const& subject) {
  std::vector<Association> associations;
  for (Descriptor const d : Walk(subject.part.set)) {
    if (d.Is(kInterfaceAssociationType)) {
      auto const record = d.As<TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR>();
      associations.push_back({d, record.bFirstInterface, record.bInterfaceCount});
    }
  }
  return associations;
}

// By number, the first setting of each interface.
std::map<unsigned, Descriptor> InterfacePlacesOf(Subject const& subject) {
  std::map<unsigned, Descriptor> places;
  for (Descriptor const d : Walk(subject.part.set)) {
    if (d.Is(kInterfaceType)) {
      places.try_emplace(d.As<TQ_USB_INTERFACE_DESCRIPTOR>().bInterfaceNumber, d);
    }
  }
  return places;
}

Findings FindWrongAssociations(Subject const& subject) {
  Findings findings;
  std::map<unsigned, Descriptor> const places = InterfacePlacesOf(subject);
  for (Association const& association : AssociationsOf(subject)) {
    std::string const name = PlaceOf(subject.part, association.descriptor) + ": ";
    if (association.count == 0) {
      findings.push_back(name + "announces no interface");
    }
    for (unsigned number = association.first; number < association.first + association.count;
         ++number) {
      auto const place = places.find(number);
      if (place == places.end()) {
        findings.push_back(name + InterfaceText(number) + " is not there");
        break;
      }
      if (place->second.Offset() < association.descriptor.Offset()) {
        findings.push_back(name + InterfaceText(number) + " is before it");
        break;
      }
    }
  }
  return findings;
}

Findings FindOverlappingAssociations(Subject const& subject) {
  Findings findings;
  std::set<unsigned> taken;
  for (Association const& association : AssociationsOf(subject)) {
    for (unsigned number = association.first; number < association.first + association.count;
         ++number) {
      bool const isNew = taken.insert(number).second;
      if (!isNew) {
        findings.push_back(PlaceOf(subject.part, association.descriptor) + ": " +
                           InterfaceText(number));
        break;
      }
    }
  }
  return findings;
}

// True when the descriptors are those of a device that runs at SuperSpeed or faster (USB 3.2, 9.6.1).
bool IsSuperSpeed(Subject const& subject) {
  constexpr std::uint16_t kSuperSpeedRelease = 0x0300;
  constexpr std::uint8_t kSuperSpeedPacketSize = 9;
  std::optional<TQ_USB_DEVICE_DESCRIPTOR> const& device = subject.device.descriptor;
  return device && subject.part.type == kConfigurationType &&
         device->bcdUSB >= kSuperSpeedRelease && device->bMaxPacketSize0 == kSuperSpeedPacketSize;
}

Findings FindMissingCompanions(Subject const& subject) {
  Findings findings;
  if (!IsSuperSpeed(subject)) {
    return findings;
  }
  for (Descriptor const d : Walk(subject.part.set)) {
    if (d.Is(kEndpointType) && !d.Next().Is(kSuperSpeedEndpointCompanionType)) {
      auto const endpoint = d.As<TQ_USB_ENDPOINT_DESCRIPTOR>();
      findings.push_back(PlaceOf(subject.part, d) + ": endpoint " +
                         HexText(endpoint.bEndpointAddress));
    }
  }
  return findings;
}

// Descriptors of type `type` that are not right after one of type `before`.
Findings FindStrays(Subject const& subject, std::uint8_t type, std::uint8_t before) {
  Findings findings;
  bool mayFollow = false;
  for (Descriptor const d : Walk(subject.part.set)) {
    if (d.Is(type) && !mayFollow) {
      findings.push_back(PlaceOf(subject.part, d));
    }
    mayFollow = d.Is(before);
  }
  return findings;
}

Findings FindStrayCompanions(Subject const& subject) {
  return FindStrays(subject, kSuperSpeedEndpointCompanionType, kEndpointType);
}

// Bit 7 of bmAttributes of an isochronous endpoint's companion (USB 3.2, table 9-27).
bool AnnouncesIsochCompanion(Descriptor const& endpoint) {
  auto const companion = endpoint.Next().As<SuperSpeedEndpointCompanionDescriptor>();
  bool const isIsoch = (endpoint.As<TQ_USB_ENDPOINT_DESCRIPTOR>().bmAttributes & 3) == 1;
  return isIsoch && (companion.bmAttributes & 0x80) != 0;
}

Findings FindWrongIsochCompanions(Subject const& subject) {
  Findings findings = FindStrays(subject, kSuperSpeedPlusIsochEndpointCompanionType,
                                 kSuperSpeedEndpointCompanionType);
  for (Descriptor const d : Walk(subject.part.set)) {
    if (!d.Is(kEndpointType) || !d.Next().Is(kSuperSpeedEndpointCompanionType)) {
      continue;
    }
    bool const isAnnounced = AnnouncesIsochCompanion(d);
    bool const isThere = d.Next().Next().Is(kSuperSpeedPlusIsochEndpointCompanionType);
    if (isAnnounced != isThere) {
      findings.push_back(PlaceOf(subject.part, d) + ": " +
                         (isThere ? "there, but not announced" : "announced, but not there"));
    }
  }
  return findings;
}

Findings FindWrongNumberOfCapabilities(Subject const& subject) {
  std::size_t const announced = Header<TQ_USB_BOS_DESCRIPTOR>(subject).bNumDeviceCaps;
  std::size_t there = 0;
  for (Descriptor const d : Walk(subject.part.set)) {
    there += d.Is(kDeviceCapabilityType) ? 1U : 0U;
  }
  return announced == there ? Findings{} : Findings{Announced(announced, there)};
}

Findings FindNoCapabilities(Subject const& subject) {
  Findings findings;
  for (Descriptor const d : Walk(subject.part.set)) {
    if (d.Offset() != 0 && !d.Is(kDeviceCapabilityType)) {
      findings.push_back(PlaceOf(subject.part, d) + ": type " + HexText(d.Type()));
    }
  }
  return findings;
}

bool HasCapability(Subject const& subject, std::uint8_t type) {
  return !FindCapability(subject.part.set, type).IsEmpty();
}

Findings FindMissingUsb20Extension(Subject const& subject) {
  bool const isMissing = HasCapability(subject, kSuperSpeedCapability) &&
                         !HasCapability(subject, kUsb20ExtensionCapability);
  return isMissing ? Findings{"it has a SuperSpeed capability"} : Findings{};
}

Findings FindMissingSuperSpeed(Subject const& subject) {
  bool const isMissing = HasCapability(subject, kSuperSpeedPlusCapability) &&
                         !HasCapability(subject, kSuperSpeedCapability);
  return isMissing ? Findings{"it has a SuperSpeedPlus capability"} : Findings{};
}

Findings FindWrongSublinkSpeeds(Subject const& subject) {
  CDescriptorRange const capability = FindCapability(subject.part.set, kSuperSpeedPlusCapability);
  if (capability.IsEmpty()) {
    return {};
  }
  auto const record = ReadRecord<SuperSpeedPlusCapabilityDescriptor>(capability.begin());
  std::size_t const announced = (record.bmAttributes & 0x1FU) + 1U;
  std::size_t const expected =
      offsetof(SuperSpeedPlusCapabilityDescriptor, bmSublinkSpeedAttr) + 4 * announced;
  return capability.Length() == expected
             ? Findings{}
             : Findings{std::to_string(announced) + " announced, bLength " +
                        std::to_string(capability.Length()) + " in place of " +
                        std::to_string(expected)};
}

constexpr Check kDeviceChecks[] = {
    {{{"USB 3.2", "9", "6", "1"}},
     "bNumConfigurations is not the number of configurations.",
     CheckKind::kContent,
     FindWrongNumberOfConfigurations},
};

constexpr Check kConfigurationChecks[] = {
    {{{"USB 3.2", "9", "5"}},
     "A descriptor of the configuration is not whole.",
     CheckKind::kLengths,
     FindBrokenChain},
    {{{"USB 3.2", "9", "5"}},
     "A descriptor is shorter than its type calls for.",
     CheckKind::kLengths,
     FindShortDescriptors},
    {{{"USB 3.2", "9", "6", "3"}},
     "wTotalLength is not the length of the configuration.",
     CheckKind::kLengths,
     FindWrongTotalOf},
    {{{"USB 3.2", "9", "2", "3"}},
     "The interfaces are not numbered from 0 without gaps.",
     CheckKind::kContent,
     FindGapsInInterfaces},
    {{{"USB 3.2", "9", "2", "3"}},
     "The alternate settings of an interface are not numbered from 0 without gaps.",
     CheckKind::kContent,
     FindGapsInSettings},
    {{{"USB 3.2", "9", "6", "3"}},
     "bNumInterfaces is not the number of interfaces.",
     CheckKind::kContent,
     FindWrongNumberOfInterfaces},
    {{{"USB 3.2", "9", "6", "4"}},
     "An interface association is not before the interfaces that it announces.",
     CheckKind::kContent,
     FindWrongAssociations},
    {{{"USB 3.2", "9", "6", "4"}},
     "An interface is announced by two interface associations.",
     CheckKind::kContent,
     FindOverlappingAssociations},
    {{{"USB 3.2", "9", "6", "5"}},
     "bNumEndpoints is not the number of endpoints.",
     CheckKind::kContent,
     FindWrongNumberOfEndpoints},
    {{{"USB 3.2", "9", "6", "5"}},
     "An endpoint is used twice.",
     CheckKind::kContent,
     FindSharedEndpoints},
    {{{"USB 3.2", "9", "6", "7"}},
     "An endpoint of a SuperSpeed device has no SuperSpeed endpoint companion after it.",
     CheckKind::kContent,
     FindMissingCompanions},
    {{{"USB 3.2", "9", "6", "7"}},
     "A SuperSpeed endpoint companion is not after an endpoint.",
     CheckKind::kContent,
     FindStrayCompanions},
    {{{"USB 3.2", "9", "6", "8"}},
     "SuperSpeedPlus isochronous endpoint companions are not where they are announced.",
     CheckKind::kContent,
     FindWrongIsochCompanions},
};

constexpr Check kBosChecks[] = {
    {{{"USB 3.2", "9", "5"}},
     "A descriptor of the BOS is not whole.",
     CheckKind::kLengths,
     FindBrokenChain},
    {{{"USB 3.2", "9", "5"}},
     "A descriptor is shorter than its type calls for.",
     CheckKind::kLengths,
     FindShortDescriptors},
    {{{"USB 3.2", "9", "6", "2"}},
     "wTotalLength is not the length of the BOS.",
     CheckKind::kLengths,
     FindWrongTotalOf},
    {{{"USB 3.2", "9", "6", "2"}},
     "bNumDeviceCaps is not the number of device capabilities.",
     CheckKind::kContent,
     FindWrongNumberOfCapabilities},
    {{{"USB 3.2", "9", "6", "2"}},
     "A descriptor of the BOS is not a device capability.",
     CheckKind::kContent,
     FindNoCapabilities},
    {{{"USB 3.2", "9", "6", "2", "1"}},
     "The USB 2.0 extension capability is missing.",
     CheckKind::kContent,
     FindMissingUsb20Extension},
    {{{"USB 3.2", "9", "6", "2", "2"}},
     "The SuperSpeed capability is missing.",
     CheckKind::kContent,
     FindMissingSuperSpeed},
    {{{"USB 3.2", "9", "6", "2", "5"}},
     "The SuperSpeedPlus capability has not as many sublink speed attributes as it announces.",
     CheckKind::kContent,
     FindWrongSublinkSpeeds},
};

}  // namespace

std::span<Check const> DeviceChecks() {
  return kDeviceChecks;
}

std::span<Check const> ConfigurationChecks() {
  return kConfigurationChecks;
}

std::span<Check const> BosChecks() {
  return kBosChecks;
}

}  // namespace usb_support::usbdesc
