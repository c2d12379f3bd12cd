#include <tools/usbdesc/run.h>

#include <algorithm>
#include <cerrno>
#include <exception>
#include <memory>
#include <optional>
#include <string_view>
#include <utility>
#include <vector>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <standalone_suite/suite_runtime/showable.h>
#include <tools/usbdesc/assertions.h>
#include <tools/usbdesc/captured_device.h>
#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/input.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/names.h>
#include <tools/usbdesc/options.h>
#include <tools/usbdesc/platform.h>
#include <tools/usbdesc/progress.h>
#include <tools/usbdesc/sub_ranges.h>
#include <tools/usbdesc/summary.h>
#include <tools/usbdesc/tree.h>
#include <tools/usbdesc/vendor_line.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

// The test services of this program: it needs none, but every test program has them.
class Services final : public CTestServices {};

// What is on the bench: a run of descriptors and the devices that it was captured from.
class Bench {
 public:
  Bench() : devices_(DevicesOf({})) {}
  Bench(Bench const&) = delete;
  Bench& operator=(Bench const&) = delete;

  // Puts other devices on the bench; the first is the device under test then.
  void Hold(Bytes run) {
    run_ = std::move(run);
    devices_ = DevicesOf(Run());
    UsbHelper().SetDevice(&devices_.front());
  }

  // A range never owns its bytes: this one is good until the bench holds another run.
  CDescriptorRange Run() const { return RangeOver(run_); }

  std::vector<CapturedDevice>& Devices() { return devices_; }

 private:
  Bytes run_;
  std::vector<CapturedDevice> devices_;
};

// Takes out of the suite, at the end of its scope, what a run has put in.
struct SuiteCleanup {
  ~SuiteCleanup() {
    CAppState::Helper(nullptr);
    standalone::ClearSettings();
    standalone::RemoveAllLogSinks();
  }
};

void SetUpLog(Options const& options, std::FILE* out) {
  standalone::AddLogSink(std::make_shared<OutputSink>(out, WantsColours(out, options.colour)));
  if (options.logFile) {
    standalone::AddLogSink(std::make_shared<standalone::FileSink>(PathOf(*options.logFile)));
  }
  standalone::SetLogVerbosity(options.verbosity);
}

void SetUpSettings(Options const& options) {
  if (options.settingsFile) {
    standalone::LoadSettings(PathOf(*options.settingsFile));
  }
  for (auto const& [key, value] : options.settings) {
    standalone::SetSetting(key, value);
  }
  if (options.fake) {
    standalone::SetSetting("NoUsbInteraction", true);
  }
}

bool HasViews(Options const& options) {
  return options.functions || options.interfaces || options.capabilities || options.tree ||
         options.assertions;
}

// Logs the device under test as the options say; the exit status that it is worth.
int LogDevice(std::string const& name, Options const& options) {
  if (options.functions) {
    LogFunctions(name, options.asCode);
  }
  if (options.interfaces) {
    LogInterfaces(name, options.asCode);
  }
  if (options.capabilities) {
    LogCapabilities(name, options.asCode);
  }
  LogTitle(name);
  if (options.tree) {
    LogTree();
  }
  if (!options.assertions) {
    return kExitGood;
  }
  AssertionCount const count = AssertDevice(name);
  LogPlain(Summarise(count));
  return HasChecks(count) && count.failed == 0 ? kExitGood : kExitFaulty;
}

// Logs what is on the bench; the exit status that it is worth.
int LogBench(Bench& bench, std::string_view inputName, Options const& options,
             VendorNames& vendors) {
  std::string const name = standalone::Showable(inputName);
  CDescriptorRange const run = bench.Run();
  RunSummary const summary = Summarise(run);
  int status = summary.isGood ? kExitGood : kExitFaulty;
  if (!HasViews(options)) {
    LogDump(run, name, options.asCode);
  }
  std::vector<CapturedDevice>& devices = bench.Devices();
  for (std::size_t i = 0; i < devices.size(); ++i) {
    UsbHelper().SetDevice(&devices[i]);
    if (HasViews(options)) {
      std::string const place = ", device " + std::to_string(i + 1);
      status = std::max(status, LogDevice(devices.size() == 1 ? name : name + place, options));
    }
    if (options.vendor) {
      vendors.Log();
    }
  }
  LogPlain(summary.text);
  return status;
}

void Append(Bytes& run, Bytes const& more) {
  run.insert(run.end(), more.begin(), more.end());
}

// The fake descriptors stand in constant memory; these are copies for the device to hold.
Bytes FakeDescriptors() {
  unsigned char const* const device = DebugCapGetFakeDesc(kDeviceType, 0, 0);
  TQ_USB_CONFIGURATION_DESCRIPTOR const* const configuration = DebugCapGetFakeConfigDesc(0, false);
  auto const* const first = reinterpret_cast<unsigned char const*>(configuration);
  Bytes descriptors(device, device + sizeof(TQ_USB_DEVICE_DESCRIPTOR));
  descriptors.insert(descriptors.end(), first, first + configuration->wTotalLength);
  return descriptors;
}

Bytes FakeBos() {
  unsigned char const* const first = DebugCapGetFakeDesc(kBosType, 0, 0);
  return Bytes(first, first + reinterpret_cast<TQ_USB_BOS_DESCRIPTOR const*>(first)->wTotalLength);
}

int LogFakeDevice(Bench& bench, Options const& options, VendorNames& vendors) {
  Bytes run;
  if (DebugCapNeedFakeDescriptor(kDeviceType) && DebugCapNeedFakeDescriptor(kConfigurationType)) {
    Append(run, FakeDescriptors());
  }
  if (DebugCapNeedFakeDescriptor(kBosType)) {
    Append(run, FakeBos());
  }
  bench.Hold(std::move(run));
  return LogBench(bench, "Fake device", options, vendors);
}

void Report(std::FILE* err, std::string_view message) {
  std::fprintf(err, "usbdesc: %s\n", standalone::Showable(message).c_str());
}

int LogInputs(Options const& options, std::FILE* in, std::FILE* out, std::FILE* err) {
  Services services;
  Bench bench;
  UsbTqPointers pointers{&services, &bench.Devices().front()};

  SuiteCleanup const cleanup;
  SetUpLog(options, out);
  SetUpSettings(options);
  InitUsbHelper(&pointers);
  CUSBDebugCapabilitiesJanitor const debugCapabilities(true);

  VendorNames vendors;
  int status = options.fake ? LogFakeDevice(bench, options, vendors) : kExitGood;
  bool const sharesTerminal = IsTerminal(out);
  Progress progress(err, options.files.size());
  for (std::string const& file : options.files) {
    if (sharesTerminal) {
      FlushOutput(true);
    }
    progress.Next();
    bool const isStandardInput = file == kStandardInput;
    std::string const name = isStandardInput ? "standard input" : file;
    try {
      bench.Hold(isStandardInput ? ReadStream(in, options.kind) : ReadFile(file, options.kind));
    } catch (InputError const& error) {
      progress.Clear();
      Report(err, name + ": " + error.what());
      status = kExitUnusable;
      continue;
    }
    if (sharesTerminal) {
      progress.Clear();
    }
    status = std::max(status, LogBench(bench, name, options, vendors));
  }
  FlushOutput(true);
  return status;
}

// The log file is emptied before anything is read. It may have other names than the file to read,
// or the file to read may have none here: standard input.
void CheckLogFile(Options const& options, std::FILE* in) {
  if (!options.logFile) {
    return;
  }
  std::optional<FileIdentity> const log = IdentityOf(PathOf(*options.logFile));
  std::vector<std::optional<FileIdentity>> sources;
  for (std::string const& file : options.files) {
    sources.push_back(file == kStandardInput ? IdentityOf(in) : IdentityOf(PathOf(file)));
  }
  if (options.settingsFile) {
    sources.push_back(IdentityOf(PathOf(*options.settingsFile)));
  }
  if (options.vendor) {
    sources.push_back(IdentityOf(VendorNames::ListPath()));
  }
  if (log && std::find(sources.begin(), sources.end(), log) != sources.end()) {
    throw UsageError(*options.logFile + ": the log file is one of the files to read");
  }
}

void Print(std::string const& text, std::FILE* out) {
  errno = 0;
  if (std::fputs(text.c_str(), out) < 0 || std::fflush(out) != 0) {
    FailOutput();
  }
}

}  // namespace

int Run(std::vector<std::string> const& arguments, std::FILE* in, std::FILE* out, std::FILE* err) {
  try {
    Options const options = ParseOptions(arguments);
    if (!options.reply.empty()) {
      Print(options.reply, out);
      return kExitGood;
    }
    CheckLogFile(options, in);
    return LogInputs(options, in, out, err);
  } catch (std::exception const& error) {
    Report(err, error.what());
  } catch (...) {
    Report(err, "unknown failure");
  }
  return kExitUnusable;
}

}  // namespace usb_support::usbdesc
