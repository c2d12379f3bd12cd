// Ranges, iterators, finders, selectors and lists, one after the other, on a captured device.
//
//   descriptors_tour PART FILE
//
// PART is walk, step, find, select, lists or capabilities; FILE holds hexadecimal bytes with #
// comments, as in examples/captures.
#include <cstddef>
#include <cstdio>
#include <exception>
#include <functional>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <usb_devices/devices.h>
#include <usb_support/usb_support.h>

namespace {

unsigned Offset(CDescriptorRange const& all, CDescriptorRangeIterator const& it) {
  return static_cast<unsigned>(it - all.begin());
}

void Show(char const* what, CDescriptorRange const& all, CDescriptorRange const& part) {
  std::printf("%s: %u bytes from %Xh, %u descriptor(s)\n", what, part.Length(),
              Offset(all, part.begin()), part.Count());
}

void Walk(CDescriptorRange const& all) {
  CDescriptorRangeIterator const validEnd = all.ValidUntil();
  for (CDescriptorRangeIterator it = all.begin(); it != validEnd; ++it) {
    std::printf("%2Xh: type %02Xh, %2u bytes, %3u left\n", Offset(all, it), it->bDescriptorType,
                it->bLength, static_cast<unsigned>(it.Remaining()));
  }
  usb_support::RunDiagnosis const diagnosis = usb_support::DiagnoseRun(all);
  std::printf("%s at %Xh, %u left; Valid() is %s\n", usb_support::RunEndText(diagnosis.reason),
              diagnosis.offset, diagnosis.bytesLeft, all.Valid() ? "true" : "false");
}

void Step(CDescriptorRange const& all) {
  try {
    CDescriptorRangeIterator it = all.begin();
    for (;;) {
      ++it;
      std::printf("stepped to %Xh%s\n", Offset(all, it), it == all.end() ? ", which is end()" : "");
    }
  } catch (TQRunTimeException const& error) {
    std::printf("threw \"%s\"\n", error.what());
  }
}

void Find(CDescriptorRange const& all) {
  CDescriptorRangeIterator const configuration = all.FindFirst(usb_support::kConfigurationType);
  if (configuration != all.end()) {
    auto const record = usb_support::ReadRecord<TQ_USB_CONFIGURATION_DESCRIPTOR>(configuration);
    std::printf("configuration at %Xh, wTotalLength %u\n", Offset(all, configuration),
                static_cast<unsigned>(record.wTotalLength));
  }
  std::printf("all[3] has type %02Xh\n", all[3].bDescriptorType);

  usb_support::ClassSpecificFinder const unionFinder(usb_support::kClassSpecificInterfaceType, 6);
  CDescriptorRange const unionDescriptor = all.SubRange(unionFinder, CDescriptorRange::AlwaysTrue);
  Show("CDC union", all, unionDescriptor);
  std::printf("%u CDC functional descriptors\n",
              all.Count(usb_support::kClassSpecificInterfaceType));
}

void Select(CDescriptorRange const& all) {
  // Named, since a selector keeps a reference to its predicate.
  usb_support::RangePredicate const isEndpoint = [](CDescriptorRangeIterator const& it) {
    return usb_support::HasType(it, usb_support::kEndpointType);
  };
  CRangeSelector const fromEndpointToEndpoint(isEndpoint);
  // The pointer owns the list, so it has a name: the loop would not keep a temporary one alive.
  CDescriptorRange::RangeVector const parts = all.GetSubRanges(fromEndpointToEndpoint);
  for (CDescriptorRange const& part : *parts) {
    Show("endpoint and what follows it", all, part);
  }
  CDescriptorRange::RangeVector const endpoints = all.GetAll(usb_support::kEndpointType);
  for (CDescriptorRange const& part : *endpoints) {
    Show("endpoint alone", all, part);
  }
}

void Lists(CDescriptorRange const& all) {
  CDescriptorRange const bytes =
      CDescriptorRange::SubRange(all.FindFirst(usb_support::kConfigurationType), all.end());
  CConfigDescriptorSet configuration;
  configuration.SetDescriptor(bytes.Bytes(), bytes.Length());
  CDescriptorRange::RangeVector const functions = configuration.GetFunctionList();
  for (CDescriptorRange const& function : *functions) {
    Show("function", configuration, function);
  }
  CDescriptorRange::RangeVector const interfaces = configuration.GetInterfaceList();
  for (CDescriptorRange const& oneInterface : *interfaces) {
    Show("interface", configuration, oneInterface);
  }
}

void Capabilities(CDescriptorRange const& all) {
  CBOSDescriptorSet bos;
  bos.SetDescriptor(all.Bytes(), all.Length());
  CDescriptorRange::RangeVector const capabilities = bos.GetAll(usb_support::kDeviceCapabilityType);
  for (CDescriptorRange const& capability : *capabilities) {
    Show("capability", bos, capability);
  }
  CDescriptorRange const superSpeed =
      usb_support::FindCapability(bos, usb_support::kSuperSpeedCapability);
  if (!superSpeed.IsEmpty()) {
    auto const record = usb_support::ReadRecord<TQ_USB_DEVICE_CAPABILITY_SUPERSPEED_USB_DESCRIPTOR>(
        superSpeed.begin());
    std::printf("SuperSpeed capability at %Xh, wSpeedsSupported 0x%04X\n",
                Offset(bos, superSpeed.begin()), static_cast<unsigned>(record.wSpeedsSupported));
  }
  CDescriptorRange const battery =
      usb_support::FindCapability(bos, usb_support::kBatteryInfoCapability);
  std::printf("battery capability: %s\n", battery.IsEmpty() ? "none" : "there");
}

void Run(std::string const& part, char const* file) {
  static std::map<std::string, std::function<void(CDescriptorRange const&)>> const parts = {
      {"walk", Walk},     {"step", Step},   {"find", Find},
      {"select", Select}, {"lists", Lists}, {"capabilities", Capabilities}};
  auto const found = parts.find(part);
  if (found == parts.end()) {
    throw std::invalid_argument(part + ": no such part");
  }
  auto const bytes = usb_devices::RunOf(usb_devices::ReadInput(file).devices.at(0));
  found->second(usb_support::RangeOver(bytes.value()));
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 3) {
    std::fputs("Usage: descriptors_tour PART FILE\n", stderr);
    return 2;
  }
  namespace suite = usb_support::standalone;
  suite::AddLogSink(std::make_shared<suite::ConsoleSink>(stdout));
  try {
    Run(argv[1], argv[2]);
    return 0;
  } catch (std::exception const& error) {
    std::fprintf(stderr, "descriptors_tour: %s\n", error.what());
  }
  return 2;
}
