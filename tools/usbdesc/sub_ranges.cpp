#include <tools/usbdesc/sub_ranges.h>

#include <functional>

#include <tools/usbdesc/captured_sets.h>
#include <tools/usbdesc/log_text.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

using ListOf = CDescriptorRange::RangeVector (CConfigDescriptorSet::*)();
using TitleOf = std::string (*)(CDescriptorRange const& range, std::string const& place);

// "2 of 3"
std::string Place(std::size_t index, std::size_t count) {
  return std::to_string(index + 1) + " of " + std::to_string(count);
}

// A dump counts its offsets from the start of its range, so the title says where that is.
template <typename Set>
void LogList(Set const& set, std::vector<CDescriptorRange> const& ranges, std::string const& name,
             char const* what, TitleOf titleOf, bool asCode) {
  if (ranges.empty()) {
    LogHeading(name + ": no " + what);
  }
  for (std::size_t i = 0; i < ranges.size(); ++i) {
    auto const inSet = static_cast<std::size_t>(ranges[i].Bytes() - set.Bytes());
    LogDump(ranges[i],
            name + ", " + titleOf(ranges[i], Place(i, ranges.size())) + ", from " +
                OffsetText(set.Source().offset + inSet),
            asCode);
  }
}

void LogConfigurations(std::string const& name, ListOf listOf, char const* what, TitleOf titleOf,
                       bool asCode) {
  bool hasConfiguration = false;
  for (std::uint8_t const type : {kConfigurationType, kOtherSpeedConfigurationType}) {
    for (unsigned index = 0; index < DeviceUnderTest().Count(type); ++index) {
      CapturedConfiguration configuration(static_cast<std::uint8_t>(index),
                                          type == kOtherSpeedConfigurationType);
      if (configuration.Read() != RC_SUCCESS) {
        continue;
      }
      hasConfiguration = true;
      std::string const configurationName = name + ", " + NameOf(configuration);
      KeepValidPart(configuration);
      CDescriptorRange::RangeVector const ranges = std::invoke(listOf, configuration);
      LogList(configuration, *ranges, configurationName, what, titleOf, asCode);
    }
  }
  if (!hasConfiguration) {
    LogHeading(name + ": no configurations");
  }
}

}  // namespace

void LogFunctions(std::string const& name, bool asCode) {
  LogConfigurations(
      name, &CConfigDescriptorSet::GetFunctionList, "functions",
      [](CDescriptorRange const&, std::string const& place) { return "function " + place; },
      asCode);
}

void LogInterfaces(std::string const& name, bool asCode) {
  LogConfigurations(
      name, &CConfigDescriptorSet::GetInterfaceList, "interfaces",
      [](CDescriptorRange const& range, std::string const& place) {
        auto const interface = ReadRecord<TQ_USB_INTERFACE_DESCRIPTOR>(range.begin());
        return "interface " + std::to_string(interface.bInterfaceNumber) + " (" + place + ")";
      },
      asCode);
}

void LogCapabilities(std::string const& name, bool asCode) {
  unsigned const count = DeviceUnderTest().Count(kBosType);
  for (unsigned index = 0; index < count; ++index) {
    CapturedBos bos(static_cast<std::uint8_t>(index));
    if (bos.Read() != RC_SUCCESS) {
      continue;
    }
    KeepValidPart(bos);
    // The set's own accessors are no way to its capabilities: they answer for an empty set only.
    CDescriptorRange::RangeVector const capabilities =
        bos.GetSubRanges(DescriptorType(kDeviceCapabilityType), CDescriptorRange::AlwaysTrue);
    LogList(
        bos, *capabilities, name + ", BOS", "capabilities",
        [](CDescriptorRange const& range, std::string const& place) {
          auto const capability = ReadRecord<TQ_USB_DEVICE_CAPABILITY_DESCRIPTOR>(range.begin());
          return "capability " + place + " (type " + HexText(capability.bDevCapabilityType) + ")";
        },
        asCode);
  }
  if (count == 0) {
    LogHeading(name + ": no BOS");
  }
}

}  // namespace usb_support::usbdesc
