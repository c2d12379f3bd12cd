#include <tools/usbdesc/inputs.h>

#include <algorithm>
#include <optional>
#include <string_view>
#include <utility>

#include <standalone_suite/suite_runtime/showable.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/platform.h>
#include <tools/usbdesc/progress.h>
#include <tools/usbdesc/suite_run.h>
#include <tools/usbdesc/vendor_line.h>
#include <tools/usbdesc/views/summary.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

void CheckInputs(InputOptions const& options) {
  if (options.files.empty() && !options.fake) {
    throw UsageError("no input: give files, - for standard input, or --fake (--help says more)");
  }
  if (std::count(options.files.begin(), options.files.end(), kStandardInput) > 1) {
    throw UsageError("standard input can be read only once");
  }
}

// What a command reads; the log file must not be one of these.
std::vector<std::optional<FileIdentity>> SourcesOf(Console const& console,
                                                   InputOptions const& options) {
  std::vector<std::optional<FileIdentity>> sources;
  for (std::string const& file : options.files) {
    sources.push_back(file == kStandardInput ? IdentityOf(console.in) : IdentityOf(PathOf(file)));
  }
  if (options.vendor) {
    sources.push_back(IdentityOf(VendorNames::ListPath()));
  }
  return sources;
}

// The descriptors of the fake device in the order of a capture.
Bytes FakeRun() {
  Bytes run;
  auto const append = [&run](unsigned char const* first, std::size_t length) {
    run.insert(run.end(), first, first + length);
  };
  append(DebugCapGetFakeDesc(kDeviceType, 0, 0), sizeof(TQ_USB_DEVICE_DESCRIPTOR));
  TQ_USB_CONFIGURATION_DESCRIPTOR const* const configuration = DebugCapGetFakeConfigDesc(0, false);
  append(reinterpret_cast<unsigned char const*>(configuration), configuration->wTotalLength);
  unsigned char const* const bos = DebugCapGetFakeDesc(kBosType, 0, 0);
  append(bos, reinterpret_cast<TQ_USB_BOS_DESCRIPTOR const*>(bos)->wTotalLength);
  return run;
}

class Showing {
 public:
  Showing(Console const& console, InputOptions const& options,
          std::function<void(Input const&)> const& showInput,
          std::function<int(Device const&)> const& showDevice)
      : console_(console),
        options_(options),
        showInput_(showInput),
        showDevice_(showDevice) {}

  int All() {
    int status = options_.fake ? Show("Fake device", FakeRun()) : kExitGood;
    bool const sharesTerminal = IsTerminal(console_.out);
    Progress progress(console_.err, options_.files.size());
    for (std::string const& file : options_.files) {
      if (sharesTerminal) {
        FlushOutput(true);
      }
      progress.Next();
      bool const isStandardInput = file == kStandardInput;
      std::string const name = isStandardInput ? "standard input" : file;
      std::optional<Bytes> run;
      try {
        run = isStandardInput ? ReadStream(console_.in, options_.kind)
                              : ReadFile(file, options_.kind);
      } catch (InputError const& error) {
        progress.Clear();
        Report(console_.err, name + ": " + error.what());
        status = kExitUnusable;
        continue;
      }
      if (sharesTerminal) {
        progress.Clear();
      }
      status = std::max(status, Show(name, *run));
    }
    FlushOutput(true);
    return status;
  }

 private:
  int Show(std::string_view fullName, Bytes const& run) {
    Input input{standalone::Showable(fullName), RangeOver(run), {}};
    input.devices = DevicesOf(input.run, input.name);
    RunSummary const summary = Summarise(input.run, input.devices);
    int status = summary.isGood ? kExitGood : kExitFaulty;
    if (showInput_) {
      showInput_(input);
    }
    for (Device const& device : input.devices) {
      if (showDevice_) {
        status = std::max(status, showDevice_(device));
      }
      if (options_.vendor && device.descriptor) {
        vendors_.Log(device.descriptor->idVendor);
      }
    }
    Log(summary.line);
    return status;
  }

  Console const& console_;
  InputOptions const& options_;
  std::function<void(Input const&)> const& showInput_;
  std::function<int(Device const&)> const& showDevice_;
  VendorNames vendors_;
};

}  // namespace

int ShowInputs(Console const& console, InputOptions const& options,
               std::function<void(Input const&)> const& showInput,
               std::function<int(Device const&)> const& showDevice) {
  CheckInputs(options);
  SuiteRun const run(console, SourcesOf(console, options));
  return Showing(console, options, showInput, showDevice).All();
}

}  // namespace usb_support::usbdesc
