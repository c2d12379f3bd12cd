// A whole test program: it sets up the suite and the library, takes the descriptors of the built-in
// fake device, and logs them with their labels.
#include <cstdio>
#include <memory>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <usb_support/usb_support.h>

int main() {
  namespace suite = usb_support::standalone;
  suite::AddLogSink(std::make_shared<suite::ConsoleSink>(stdout));
  suite::SetSetting("NoUsbInteraction", true);  // no device: use the fake one

  CDevice device;  // a real test program derives its own classes from these two
  CTestServices services;
  UsbTqPointers pointers{&services, &device};
  InitUsbHelper(&pointers);
  CUSBDebugCapabilitiesJanitor const debugCapabilities(true);

  TQ_USB_CONFIGURATION_DESCRIPTOR const* const fake = DebugCapGetFakeConfigDesc(0, false);
  CDescriptorRange const configuration =
      usb_support::RangeOver({reinterpret_cast<unsigned char const*>(fake), fake->wTotalLength});

  TQHelper_LogDescriptor(configuration, "Configuration");
  std::printf("%u endpoint(s)\n", configuration.Count(usb_support::kEndpointType));
  return configuration.Valid() ? 0 : 1;
}
