#include <tools/usbdesc/run.h>

#include <algorithm>
#include <exception>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string_view>
#include <system_error>

#include <standalone_suite/suite_runtime/log_sinks.h>
#include <standalone_suite/suite_runtime/settings.h>
#include <tools/usbdesc/input.h>
#include <tools/usbdesc/names.h>
#include <tools/usbdesc/options.h>
#include <tools/usbdesc/summary.h>
#include <usb_support/suite_interfaces/app_state.h>
#include <usb_support/suite_interfaces/tq_logger.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

// The test services of this program: it needs none, but every test program has them.
class Services final : public CTestServices {};

// The device under test: descriptors that were captured earlier, in place of a device that answers.
class CapturedDevice final : public CDevice {
 public:
  void Hold(Bytes descriptors) { descriptors_ = std::move(descriptors); }

  // A range never owns its bytes: this one is good until the device holds other descriptors.
  CDescriptorRange Descriptors() const { return RangeOver(descriptors_); }

 private:
  Bytes descriptors_;
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
  standalone::AddLogSink(std::make_shared<standalone::ConsoleSink>(out));
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

// The title of a run in the log, where "%%" would become "%".
std::string TitleOf(std::string_view name) {
  std::string title;
  for (char const c : OneLine(name)) {
    title.append(c == '%' ? 2 : 1, c);
  }
  return title;
}

// TQHelper_LogDescriptor with a listing in place of source code.
void LogListing(CDescriptorRange const& run, std::string const& title) {
  TQLogger& log = CAppState::Log();
  CDescriptorRange::Text const text = run.OutputString(false);
  CFormatInfo const look(TQColor{0, 0, 255, 255}, TEXT_STRENGTH_BOLD);
  LogWrite(log, TEST_STATUS_PLAIN, log.GetDefaultLogVerbosity(TEST_STATUS_PLAIN), look,
           "\n// " + title + ":");
  LogWrite(log, TEST_STATUS_PLAIN, *text);
}

// Logs what the device under test holds; the exit status that it is worth.
int LogDevice(std::string_view name, bool asCode) {
  CTestServices* services = nullptr;
  CDevice* device = nullptr;
  UsbHelper().InitializePointers(services, device, true, TEST_STATUS_INTERNAL_ERROR);
  CDescriptorRange const run = dynamic_cast<CapturedDevice&>(*device).Descriptors();
  if (asCode) {
    TQHelper_LogDescriptor(run, TitleOf(name).c_str());
  } else {
    LogListing(run, TitleOf(name));
  }
  LogWrite(CAppState::Log(), TEST_STATUS_PLAIN, Summarise(run));
  return run.Valid() ? kExitValid : kExitInvalid;
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

int LogFakeDevice(CapturedDevice& device, bool asCode) {
  int status = kExitValid;
  if (DebugCapNeedFakeDescriptor(kDeviceType) && DebugCapNeedFakeDescriptor(kConfigurationType)) {
    device.Hold(FakeDescriptors());
    status = std::max(status, LogDevice("Fake device", asCode));
  }
  if (DebugCapNeedFakeDescriptor(kBosType)) {
    device.Hold(FakeBos());
    status = std::max(status, LogDevice("Fake device, BOS", asCode));
  }
  return status;
}

void Report(std::FILE* err, std::string_view message) {
  std::fprintf(err, "usbdesc: %s\n", OneLine(message).c_str());
}

int LogInputs(Options const& options, std::FILE* in, std::FILE* out, std::FILE* err) {
  Services services;
  CapturedDevice device;
  UsbTqPointers pointers{&services, &device};

  SuiteCleanup const cleanup;
  SetUpLog(options, out);
  SetUpSettings(options);
  InitUsbHelper(&pointers);
  CUSBDebugCapabilitiesJanitor const debugCapabilities(true);

  int status = options.fake ? LogFakeDevice(device, options.asCode) : kExitValid;
  for (std::string const& file : options.files) {
    bool const isStandardInput = file == kStandardInput;
    std::string const name = isStandardInput ? "standard input" : file;
    try {
      device.Hold(isStandardInput ? ReadStream(in, options.kind) : ReadFile(file, options.kind));
    } catch (InputError const& error) {
      Report(err, name + ": " + error.what());
      status = kExitUnusable;
      continue;
    }
    status = std::max(status, LogDevice(name, options.asCode));
  }
  FlushOutput(true);
  return status;
}

// The log file is emptied before anything is read.
void CheckLogFile(Options const& options) {
  if (!options.logFile) {
    return;
  }
  std::vector<std::string> sources = options.files;
  if (options.settingsFile) {
    sources.push_back(*options.settingsFile);
  }
  for (std::string const& source : sources) {
    std::error_code ignored;
    if (std::filesystem::equivalent(PathOf(*options.logFile), PathOf(source), ignored)) {
      throw UsageError(*options.logFile + ": the log file is one of the files to read");
    }
  }
}

void Print(std::string const& text, std::FILE* out) {
  if (std::fputs(text.c_str(), out) < 0 || std::fflush(out) != 0) {
    throw std::runtime_error("standard output cannot be written");
  }
}

}  // namespace

int Run(std::vector<std::string> const& arguments, std::FILE* in, std::FILE* out, std::FILE* err) {
  try {
    Options const options = ParseOptions(arguments);
    if (!options.reply.empty()) {
      Print(options.reply, out);
      return kExitValid;
    }
    CheckLogFile(options);
    return LogInputs(options, in, out, err);
  } catch (std::exception const& error) {
    Report(err, error.what());
  } catch (...) {
    Report(err, "unknown failure");
  }
  return kExitUnusable;
}

}  // namespace usb_support::usbdesc
