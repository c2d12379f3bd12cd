#include <tools/usbdesc/inputs.h>

#include <algorithm>
#include <filesystem>
#include <optional>
#include <string_view>
#include <system_error>
#include <utility>

#include <standalone_suite/platform/host.h>
#include <standalone_suite/suite_runtime/showable.h>
#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/json_writer.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/options.h>
#include <tools/usbdesc/platform.h>
#include <tools/usbdesc/progress.h>
#include <tools/usbdesc/suite_run.h>
#include <tools/usbdesc/vendor_line.h>
#include <tools/usbdesc/views/summary.h>
#include <usb_devices/devices.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

void CheckInputs(InputOptions const& options) {
  if (options.files.empty() && !options.fake) {
    throw UsageError("no input: give files, - for standard input, or --fake (see --help)");
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
    sources.push_back(IdentityOf(PathOf(file.substr(0, file.rfind('#')))));
  }
  if (options.vendor) {
    sources.push_back(IdentityOf(VendorNames::ListPath()));
  }
  return sources;
}

// A log file in a folder that is read would become a part of it, or replace one.
void CheckLogFolder(Console const& console, InputOptions const& options) {
  if (!console.logFile) {
    return;
  }
  std::error_code error;
  std::filesystem::path const log =
      std::filesystem::weakly_canonical(PathOf(*console.logFile), error);
  for (std::string const& file : options.files) {
    for (std::string const& name : {file, file.substr(0, file.rfind('#'))}) {
      std::filesystem::path const folder = std::filesystem::canonical(PathOf(name), error);
      if (!error && std::filesystem::is_directory(folder, error) &&
          std::mismatch(folder.begin(), folder.end(), log.begin(), log.end()).first ==
              folder.end()) {
        throw UsageError(*console.logFile + ": the log file is in a folder to read, " + name);
      }
    }
  }
}

// The descriptors of the fake device in the order of a capture.
usb_devices::Bytes FakeRun() {
  usb_devices::Bytes run;
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

// Reads the input that a name on the command line refers to.
usb_devices::InputReading Read(Console const& console, std::string const& name,
                               std::string const& form) {
  return name == kStandardInput ? usb_devices::ReadInput(console.in, "standard input", form)
                                : usb_devices::ReadInput(name, form);
}

// Reads one input after the other; returns the worst exit status of `take`.
class Reading {
 public:
  Reading(Console const& console, InputOptions const& options,
          std::function<int(Input const&)> const& take, UnreadInput const& tell)
      : console_(console),
        options_(options),
        take_(take),
        tell_(tell) {}

  // The number of inputs that could not be read.
  std::size_t Unread() const { return unread_; }

  int All() {
    int status = kExitGood;
    if (options_.fake) {
      status = Take("Fake device", {{}, usb_devices::DevicesOf(FakeRun(), {}), {}});
    }
    bool const sharesTerminal = standalone::IsTerminal(console_.out);
    Progress progress(console_.err, options_.files.size());
    for (std::string const& file : options_.files) {
      if (sharesTerminal) {
        FlushOutput(true);
      }
      progress.Next();
      std::optional<usb_devices::InputReading> reading;
      try {
        reading = Read(console_, file, options_.form);
      } catch (usb_devices::ReadError const& error) {
        progress.Clear();
        Report(console_.err, error.what());
        status = kExitUnusable;
        ++unread_;
        if (tell_) {
          tell_(file == kStandardInput ? "standard input" : file, error.what());
        }
        continue;
      }
      if (sharesTerminal || !reading->notes.empty()) {
        progress.Clear();
      }
      status = std::max(
          status, Take(file == kStandardInput ? "standard input" : file, std::move(*reading)));
    }
    return status;
  }

 private:
  int Take(std::string const& name, usb_devices::InputReading reading) {
    for (std::string const& note : reading.notes) {
      Report(console_.err, std::string(name).append(": ").append(note));
    }
    Input input{standalone::Showable(name), std::move(reading.form), std::move(reading.devices)};
    input.devices.resize(std::max<std::size_t>(input.devices.size(), 1));
    return take_(input);
  }

  Console const& console_;
  InputOptions const& options_;
  std::function<int(Input const&)> const& take_;
  UnreadInput const& tell_;
  std::size_t unread_ = 0;
};

}  // namespace

std::shared_ptr<InputOptions const> AddInputOptions(Options& parser) {
  auto const options = std::make_shared<InputOptions>();
  parser.Arguments("INPUT", options->files,
                   "Files and folders to read, or devices such as usb:1-7 and usb:046d:0825; - is "
                   "standard input");
  parser.Flag("--fake", options->fake, "Use the built-in fake device as input");
  AddFormOption(parser, *options);
  parser.Flag("--vendor", options->vendor, "Show the vendor's name, or why there is none");
  return options;
}

void AddSpeedOption(Options& parser, usb_fields::Speed& speed) {
  using usb_fields::Speed;
  parser.Choice<Speed>("--speed", speed,
                       "The speed of the devices, instead of that of their source",
                       {{"low", Speed::kLow},
                        {"full", Speed::kFull},
                        {"high", Speed::kHigh},
                        {"super", Speed::kSuper},
                        {"super-plus", Speed::kSuperPlus}});
}

void AddFormOption(Options& parser, InputOptions& options) {
  std::vector<std::pair<std::string, std::string>> forms;
  for (std::string const& form : usb_devices::InputForms()) {
    forms.emplace_back(form, form);
  }
  parser.Choice<std::string>("--input", options.form,
                             "The form of the files, instead of recognising it", forms);
}

int ShowInputs(Console const& console, InputOptions const& options,
               std::function<void(ShownInput const&)> const& showInput,
               std::function<int(ShownDevice const&)> const& showDevice) {
  VendorNames vendors;
  InputCounts counts;
  auto const take = [&](Input const& read) {
    ShownInput const input = Show(read);
    RunSummary const summary = Summarise(input);
    int status = summary.isGood ? kExitGood : kExitFaulty;
    ++(summary.isGood ? counts.good : counts.broken);
    if (showInput) {
      showInput(input);
    }
    for (ShownDevice const& device : input.devices) {
      if (showDevice) {
        status = std::max(status, showDevice(device));
      }
      if (options.vendor && device.descriptor) {
        vendors.Log(device.descriptor->idVendor);
      }
    }
    Log(summary.line);
    return status;
  };
  return ReadInputs(console, options, take, [&](std::size_t unread) {
    counts.invalid = unread;
    if (counts.All() > 1) {
      LogPlain("");
      LogPlain("// " + counts.Text());
    }
  });
}

int ReadInputs(Console const& console, InputOptions const& options,
               std::function<int(Input const&)> const& take,
               std::function<void(std::size_t unread)> const& finish, UnreadInput const& unread) {
  CheckInputs(options);
  CheckLogFolder(console, options);
  SuiteRun const run(console, SourcesOf(console, options));
  Reading reading(console, options, take, unread);
  int const status = reading.All();
  if (finish) {
    finish(reading.Unread());
  }
  FlushOutput(true);
  return status;
}

int WriteJsonInputs(Console const& console, InputOptions const& options,
                    std::function<std::string(Input const&)> const& write,
                    std::function<int(Input const&)> const& statusOf) {
  Print(R"({"usbdesc":1,"inputs":[)", console.out);
  char const* separator = "\n";
  auto const add = [&](std::string const& input) {
    Print(separator + input, console.out);
    separator = ",\n";
  };
  int const status = ReadInputs(
      console, options,
      [&](Input const& input) {
        add(write(input));
        return statusOf(input);
      },
      nullptr,
      [&](std::string const& name, std::string const& reason) { add(UnreadJson(name, reason)); });
  Print("\n]}\n", console.out);
  return status;
}

std::string UnreadJson(std::string_view name, std::string_view reason) {
  JsonWriter writer;
  writer.StartObject();
  writer.String("name", name);
  writer.String("error", reason);
  writer.Key("devices");
  writer.StartArray();
  writer.EndArray();
  writer.EndObject();
  return writer.Text();
}

}  // namespace usb_support::usbdesc
