// Lists the endpoints of an interface, by alternate setting: list_endpoints FILE INTERFACE
#include <cstdio>
#include <cstdlib>
#include <exception>

#include <usb_devices/devices.h>
#include <usb_support/usb_support.h>

namespace {

void List(char const* file, std::uint8_t interfaceNumber) {
  using namespace usb_support;
  usb_devices::Device const device = usb_devices::ReadInput(file).devices.at(0);
  auto const answer = device.Bytes(usb_devices::Request::Descriptor(kConfigurationType));
  CDescriptorRange const configuration = ConfigurationAt(RangeOver(answer.value()), 0);
  for (Descriptor const setting : AlternateSettings(configuration, interfaceNumber)) {
    auto const interface = setting.As<TQ_USB_INTERFACE_DESCRIPTOR>();
    std::printf("Interface %u, setting %u\n", interface.bInterfaceNumber,
                interface.bAlternateSetting);
    for (Descriptor const d : Endpoints(setting)) {
      auto const endpoint = d.As<TQ_USB_ENDPOINT_DESCRIPTOR>();
      std::printf("  %02Xh: %u x %u bytes\n", endpoint.bEndpointAddress,
                  TransactionsPerMicroframe(endpoint), MaxPacketBytes(endpoint));
    }
  }
}

}  // namespace

int main(int argc, char** argv) try {
  if (argc != 3) {
    std::fputs("Usage: list_endpoints FILE INTERFACE\n", stderr);
    return 2;
  }
  List(argv[1], static_cast<std::uint8_t>(std::atoi(argv[2])));
} catch (std::exception const& error) {
  std::fprintf(stderr, "list_endpoints: %s\n", error.what());
  return 2;
}
