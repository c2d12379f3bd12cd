#include <cstdio>
#include <string>

#include <usb_devices/devices.h>

int main() {
  usb_devices::TextReading const text = usb_devices::ReadText("09 02 09 00 01 01 00 80 32");
  for (usb_devices::Device const& device : usb_devices::DevicesOf(text, "mail")) {
    for (usb_devices::Answer const& answer : device.Answers()) {
      std::printf("%s: %s has %u bytes\n", std::string(usb_devices::NameOf(text.form)).c_str(),
                  usb_devices::NameOf(answer.request).c_str(),
                  static_cast<unsigned>(answer.bytes.size()));
    }
  }
  try {
    usb_devices::ReadInput("no-such-file");
  } catch (usb_devices::ReadError const& error) {
    std::printf("%s\n", error.Name().c_str());
  }
}
