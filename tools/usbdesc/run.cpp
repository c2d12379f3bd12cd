#include <tools/usbdesc/run.h>

#include <exception>

#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/command_line.h>
#include <tools/usbdesc/suite_run.h>

namespace usb_support::usbdesc {
int Run(std::vector<std::string> const& arguments, std::FILE* in, std::FILE* out, std::FILE* err) {
  try {
    CommandLine line = ParseCommandLine(arguments);
    if (!line.reply.empty()) {
      Print(line.reply, out);
      return kExitGood;
    }
    line.console.in = in;
    line.console.out = out;
    line.console.err = err;
    return line.action(line.console);
  } catch (std::exception const& error) {
    Report(err, error.what());
  } catch (...) {
    Report(err, "unknown failure");
  }
  return kExitUnusable;
}

}  // namespace usb_support::usbdesc
