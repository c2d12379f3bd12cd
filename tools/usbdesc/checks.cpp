#include <tools/usbdesc/checks.h>

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

using Iterator = CDescriptorRangeIterator;

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
    {kSuperSpeedEndpointCompanionType, 6},
    {kSuperSpeedPlusIsochEndpointCompanionType, 8},
};

constexpr std::uint8_t kSuperSpeedPlusCapability = 0x0A;

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
    {kSuperSpeedPlusCapability, 16},
};

template <std::size_t Size>
std::uint8_t LengthFor(LeastLength const (&table)[Size], std::uint8_t type) {
  auto const* const found = std::find_if(std::begin(table), std::end(table),
                                         [type](LeastLength row) { return row.type == type; });
  return found == std::end(table) ? std::uint8_t{2} : found->length;
}

std::uint8_t LeastLengthOf(Iterator const& it) {
  if (HasType(it, kDeviceCapabilityType) &&
      it->bLength >= sizeof(TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR)) {
    auto const capability = ReadRecord<TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR>(it);
    return std::max(LengthFor(kLeastLengths, kDeviceCapabilityType),
                    LengthFor(kLeastCapabilityLengths, capability.bDevCapabilityType));
  }
  return LengthFor(kLeastLengths, ReadRecord<TQ_USB_COMMON_DESCRIPTOR>(it).bDescriptorType);
}

char const* SetName(CapturedConfiguration const& /*set*/) {
  return "configuration";
}

char const* SetName(CapturedBos const& /*set*/) {
  return "BOS";
}

template <typename Set>
std::string PlaceOf(Set const& set, Iterator const& it) {
  return OffsetText(set.Source().offset, static_cast<std::size_t>(it - set.begin()), SetName(set));
}

std::string Announced(std::size_t announced, std::size_t there) {
  return "announced " + std::to_string(announced) + ", found " + std::to_string(there);
}

std::string InterfaceText(unsigned number) {
  return "interface " + std::to_string(number);
}

template <typename Visit>
void ForEachDescriptor(CDescriptorRange const& set, Visit const& visit) {
  Iterator const validEnd = set.ValidUntil();
  for (Iterator it = set.begin(); it != validEnd; ++it) {
    visit(it);
  }
}

// The descriptor behind another one; nothing behind one that is not whole.
Iterator Next(Iterator it) {
  return IsWhole(it) ? ++it : Iterator();
}

template <typename Set>
Findings FindBrokenChain(Set const& set) {
  RunDiagnosis const diagnosis = DiagnoseRun(set);
  if (diagnosis.reason == RunEnd::kComplete) {
    return {};
  }
  return {OffsetText(set.Source().offset, diagnosis.offset, SetName(set)) + ": " +
          RunEndText(diagnosis.reason) + ", " + Counted(diagnosis.bytesLeft, "byte") + " left"};
}

template <typename Set>
Findings FindWrongTotalOf(Set const& set) {
  std::optional<WrongTotal> const wrong = FindWrongTotal(set.Source());
  return wrong ? Findings{Announced(wrong->announced, wrong->found)} : Findings{};
}

template <typename Set>
Findings FindShortDescriptors(Set const& set) {
  Findings findings;
  ForEachDescriptor(set, [&](Iterator const& it) {
    std::uint8_t const least = LeastLengthOf(it);
    if (it->bLength < least) {
      findings.push_back(PlaceOf(set, it) + ": bLength " + std::to_string(it->bLength) +
                         ", at least " + std::to_string(least) + " expected");
    }
  });
  return findings;
}

Findings FindWrongNumberOfConfigurations(CapturedDevice const& device) {
  // A device descriptor alone says nothing about what was not captured, nor the other way round.
  unsigned const there = device.Count(kConfigurationType);
  constexpr std::uint16_t kSize = sizeof(TQ_USB_DEVICE_DESCRIPTOR);
  Bytes const sent = device.GetDescriptor(kDeviceType, 0, kSize);
  if (there == 0 || sent.size() < kSize) {
    return {};
  }
  unsigned const announced =
      ReadRecord<TQ_USB_DEVICE_DESCRIPTOR>(RangeOver(sent).begin()).bNumConfigurations;
  return announced == there ? Findings{} : Findings{Announced(announced, there)};
}

// A setting of an interface with its endpoints.
struct Setting {
  TQ_USB_INTERFACE_DESCRIPTOR interface;
  std::vector<TQ_USB_ENDPOINT_DESCRIPTOR> endpoints;
};

std::vector<Setting> SettingsOf(CapturedConfiguration const& configuration) {
  std::vector<Setting> settings;
  ForEachDescriptor(configuration, [&](Iterator const& it) {
    if (HasType(it, kInterfaceType)) {
      settings.push_back({ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(it), {}});
    } else if (HasType(it, kEndpointType) && !settings.empty()) {
      settings.back().endpoints.push_back(ReadRecord<TQ_USB_ENDPOINT_DESCRIPTOR>(it));
    }
  });
  return settings;
}

std::string NameOf(Setting const& setting) {
  return InterfaceText(setting.interface.bInterfaceNumber) + ", alternate setting " +
         std::to_string(setting.interface.bAlternateSetting);
}

std::set<unsigned> InterfaceNumbersOf(CapturedConfiguration const& configuration) {
  std::set<unsigned> numbers;
  for (Setting const& setting : SettingsOf(configuration)) {
    numbers.insert(setting.interface.bInterfaceNumber);
  }
  return numbers;
}

Findings FindWrongNumberOfInterfaces(CapturedConfiguration const& configuration) {
  std::size_t const announced = configuration.Header().bNumInterfaces;
  std::size_t const there = InterfaceNumbersOf(configuration).size();
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

Findings FindGapsInInterfaces(CapturedConfiguration const& configuration) {
  std::optional<std::string> const found = UnlessCounting(InterfaceNumbersOf(configuration));
  return found ? Findings{"found " + *found} : Findings{};
}

Findings FindGapsInSettings(CapturedConfiguration const& configuration) {
  std::map<unsigned, std::multiset<unsigned>> settings;
  for (Setting const& setting : SettingsOf(configuration)) {
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

Findings FindWrongNumberOfEndpoints(CapturedConfiguration const& configuration) {
  Findings findings;
  for (Setting const& setting : SettingsOf(configuration)) {
    if (setting.interface.bNumEndpoints != setting.endpoints.size()) {
      findings.push_back(NameOf(setting) + ": " +
                         Announced(setting.interface.bNumEndpoints, setting.endpoints.size()));
    }
  }
  return findings;
}

Findings FindSharedEndpoints(CapturedConfiguration const& configuration) {
  Findings findings;
  std::map<unsigned, unsigned> interfaceOf;
  for (Setting const& setting : SettingsOf(configuration)) {
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
  Iterator it;
  unsigned first;
  unsigned count;
};

std::vector<Association> AssociationsOf(CapturedConfiguration const& configuration) {
  std::vector<Association> associations;
  ForEachDescriptor(configuration, [&](Iterator const& it) {
    if (HasType(it, kInterfaceAssociationType)) {
      auto const record = ReadRecord<TQ_USB_INTERFACE_ASSOCIATION_DESCRIPTOR>(it);
      associations.push_back({it, record.bFirstInterface, record.bInterfaceCount});
    }
  });
  return associations;
}

// By number, where the first setting of each interface stands.
std::map<unsigned, Iterator> InterfacePlacesOf(CapturedConfiguration const& configuration) {
  std::map<unsigned, Iterator> places;
  ForEachDescriptor(configuration, [&](Iterator const& it) {
    if (HasType(it, kInterfaceType)) {
      places.try_emplace(ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(it).bInterfaceNumber, it);
    }
  });
  return places;
}

Findings FindWrongAssociations(CapturedConfiguration const& configuration) {
  Findings findings;
  std::map<unsigned, Iterator> const places = InterfacePlacesOf(configuration);
  for (Association const& association : AssociationsOf(configuration)) {
    std::string const name = PlaceOf(configuration, association.it) + ": ";
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
      if (place->second - association.it < 0) {
        findings.push_back(name + InterfaceText(number) + " stands before it");
        break;
      }
    }
  }
  return findings;
}

Findings FindOverlappingAssociations(CapturedConfiguration const& configuration) {
  Findings findings;
  std::set<unsigned> taken;
  for (Association const& association : AssociationsOf(configuration)) {
    for (unsigned number = association.first; number < association.first + association.count;
         ++number) {
      bool const isNew = taken.insert(number).second;
      if (!isNew) {
        findings.push_back(PlaceOf(configuration, association.it) + ": " + InterfaceText(number));
        break;
      }
    }
  }
  return findings;
}

Findings FindMissingCompanions(CapturedConfiguration const& configuration) {
  Findings findings;
  if (!configuration.IsSuperSpeed()) {
    return findings;
  }
  ForEachDescriptor(configuration, [&](Iterator const& it) {
    if (HasType(it, kEndpointType) && !HasType(Next(it), kSuperSpeedEndpointCompanionType)) {
      auto const endpoint = ReadRecord<TQ_USB_ENDPOINT_DESCRIPTOR>(it);
      findings.push_back(PlaceOf(configuration, it) + ": endpoint " +
                         HexText(endpoint.bEndpointAddress));
    }
  });
  return findings;
}

// Descriptors of type `type` that do not stand right behind one of type `before`.
Findings FindStrays(CapturedConfiguration const& configuration, std::uint8_t type,
                    std::uint8_t before) {
  Findings findings;
  bool mayFollow = false;
  ForEachDescriptor(configuration, [&](Iterator const& it) {
    if (HasType(it, type) && !mayFollow) {
      findings.push_back(PlaceOf(configuration, it));
    }
    mayFollow = HasType(it, before);
  });
  return findings;
}

Findings FindStrayCompanions(CapturedConfiguration const& configuration) {
  return FindStrays(configuration, kSuperSpeedEndpointCompanionType, kEndpointType);
}

// SuperSpeed endpoint companion (USB 3.2, 9.6.7).
struct SuperSpeedCompanion {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bMaxBurst;
  std::uint8_t bmAttributes;  // isochronous endpoint, bit 7: another companion follows
  std::uint8_t wBytesPerInterval[2];
};

bool AnnouncesIsochCompanion(Iterator const& endpoint, Iterator const& companion) {
  bool const isIsoch = (ReadRecord<TQ_USB_ENDPOINT_DESCRIPTOR>(endpoint).bmAttributes & 3) == 1;
  return isIsoch && (ReadRecord<SuperSpeedCompanion>(companion).bmAttributes & 0x80) != 0;
}

Findings FindWrongIsochCompanions(CapturedConfiguration const& configuration) {
  Findings findings = FindStrays(configuration, kSuperSpeedPlusIsochEndpointCompanionType,
                                 kSuperSpeedEndpointCompanionType);
  ForEachDescriptor(configuration, [&](Iterator const& it) {
    if (!HasType(it, kEndpointType) || !HasType(Next(it), kSuperSpeedEndpointCompanionType)) {
      return;
    }
    bool const isAnnounced = AnnouncesIsochCompanion(it, Next(it));
    bool const isThere = HasType(Next(Next(it)), kSuperSpeedPlusIsochEndpointCompanionType);
    if (isAnnounced != isThere) {
      findings.push_back(PlaceOf(configuration, it) + ": " +
                         (isThere ? "there, but not announced" : "announced, but not there"));
    }
  });
  return findings;
}

Findings FindWrongNumberOfCapabilities(CapturedBos const& bos) {
  std::size_t const announced = bos.Header().bNumDeviceCaps;
  std::size_t there = 0;
  ForEachDescriptor(
      bos, [&there](Iterator const& it) { there += HasType(it, kDeviceCapabilityType) ? 1U : 0U; });
  return announced == there ? Findings{} : Findings{Announced(announced, there)};
}

Findings FindNoCapabilities(CapturedBos const& bos) {
  Findings findings;
  ForEachDescriptor(bos, [&](Iterator const& it) {
    if (it != bos.begin() && !HasType(it, kDeviceCapabilityType)) {
      findings.push_back(PlaceOf(bos, it) + ": type " +
                         HexText(ReadRecord<TQ_USB_COMMON_DESCRIPTOR>(it).bDescriptorType));
    }
  });
  return findings;
}

bool HasCapability(CapturedBos const& bos, std::uint8_t type) {
  return !FindCapability(bos, type).IsEmpty();
}

Findings FindMissingUsb20Extension(CapturedBos const& bos) {
  bool const isMissing =
      HasCapability(bos, kSuperSpeedCapability) && !HasCapability(bos, kUsb20ExtensionCapability);
  return isMissing ? Findings{"it has a SuperSpeed capability"} : Findings{};
}

Findings FindMissingSuperSpeed(CapturedBos const& bos) {
  bool const isMissing =
      HasCapability(bos, kSuperSpeedPlusCapability) && !HasCapability(bos, kSuperSpeedCapability);
  return isMissing ? Findings{"it has a SuperSpeedPlus capability"} : Findings{};
}

// SuperSpeedPlus USB capability, up to its sublink speed attributes of four bytes each (USB 3.2,
// 9.6.2.5).
struct SuperSpeedPlusHeader {
  std::uint8_t bLength;
  std::uint8_t bDescriptorType;
  std::uint8_t bDevCapabilityType;
  std::uint8_t bReserved;
  std::uint8_t bmAttributes[4];  // bits 4 to 0: the number of attributes less one
  std::uint8_t wFunctionalitySupport[2];
  std::uint8_t wReserved[2];
};

Findings FindWrongSublinkSpeeds(CapturedBos const& bos) {
  CDescriptorRange const capability = FindCapability(bos, kSuperSpeedPlusCapability);
  if (capability.IsEmpty()) {
    return {};
  }
  auto const header = ReadRecord<SuperSpeedPlusHeader>(capability.begin());
  std::size_t const announced = (header.bmAttributes[0] & 0x1FU) + 1U;
  std::size_t const expected = sizeof header + 4 * announced;
  return capability.Length() == expected
             ? Findings{}
             : Findings{std::to_string(announced) + " announced, bLength " +
                        std::to_string(capability.Length()) + " in place of " +
                        std::to_string(expected)};
}

constexpr Check<CapturedDevice> kDeviceChecks[] = {
    {{{"USB 3.2", "9", "6", "1"}},
     "bNumConfigurations is not the number of configurations.",
     CheckKind::kContent,
     FindWrongNumberOfConfigurations},
};

constexpr Check<CapturedConfiguration> kConfigurationChecks[] = {
    {{{"USB 3.2", "9", "5"}},
     "A descriptor does not lie whole in the configuration.",
     CheckKind::kLengths,
     FindBrokenChain<CapturedConfiguration>},
    {{{"USB 3.2", "9", "5"}},
     "A descriptor is shorter than its type calls for.",
     CheckKind::kLengths,
     FindShortDescriptors<CapturedConfiguration>},
    {{{"USB 3.2", "9", "6", "3"}},
     "wTotalLength is not the length of the configuration.",
     CheckKind::kLengths,
     FindWrongTotalOf<CapturedConfiguration>},
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
     "An interface association does not stand before the interfaces that it announces.",
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
     "An endpoint of a SuperSpeed device has no SuperSpeed endpoint companion behind it.",
     CheckKind::kContent,
     FindMissingCompanions},
    {{{"USB 3.2", "9", "6", "7"}},
     "A SuperSpeed endpoint companion does not stand behind an endpoint.",
     CheckKind::kContent,
     FindStrayCompanions},
    {{{"USB 3.2", "9", "6", "8"}},
     "SuperSpeedPlus isochronous endpoint companions are not where they are announced.",
     CheckKind::kContent,
     FindWrongIsochCompanions},
};

constexpr Check<CapturedBos> kBosChecks[] = {
    {{{"USB 3.2", "9", "5"}},
     "A descriptor does not lie whole in the BOS.",
     CheckKind::kLengths,
     FindBrokenChain<CapturedBos>},
    {{{"USB 3.2", "9", "5"}},
     "A descriptor is shorter than its type calls for.",
     CheckKind::kLengths,
     FindShortDescriptors<CapturedBos>},
    {{{"USB 3.2", "9", "6", "2"}},
     "wTotalLength is not the length of the BOS.",
     CheckKind::kLengths,
     FindWrongTotalOf<CapturedBos>},
    {{{"USB 3.2", "9", "6", "2"}},
     "bNumDeviceCaps is not the number of device capabilities.",
     CheckKind::kContent,
     FindWrongNumberOfCapabilities},
    {{{"USB 3.2", "9", "6", "2"}},
     "A descriptor of the BOS is no device capability.",
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

std::span<Check<CapturedDevice> const> DeviceChecks() {
  return kDeviceChecks;
}

std::span<Check<CapturedConfiguration> const> ConfigurationChecks() {
  return kConfigurationChecks;
}

std::span<Check<CapturedBos> const> BosChecks() {
  return kBosChecks;
}

}  // namespace usb_support::usbdesc
