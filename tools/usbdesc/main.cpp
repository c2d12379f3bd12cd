#include <cstdio>
#include <exception>

#include <tools/usbdesc/platform.h>
#include <tools/usbdesc/run.h>

int main(int argc, char** argv) {
  namespace usbdesc = usb_support::usbdesc;
  try {
    usbdesc::KeepStandardStreams();
    usbdesc::UseBinaryMode(stdin);
    usbdesc::UseBinaryMode(stdout);
    return usbdesc::Run(usbdesc::Arguments(argc, argv), stdin, stdout, stderr);
  } catch (std::exception const& error) {
    std::fprintf(stderr, "usbdesc: %s\n", error.what());
  } catch (...) {
    std::fputs("usbdesc: unknown failure\n", stderr);
  }
  return usbdesc::kExitUnusable;
}
