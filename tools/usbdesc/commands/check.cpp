#include <algorithm>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <tools/usbdesc/accepted.h>
#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/device.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/options.h>
#include <tools/usbdesc/pages.h>
#include <tools/usbdesc/suite_run.h>
#include <tools/usbdesc/vendor_line.h>
#include <tools/usbdesc/views/check.h>
#include <tools/usbdesc/views/check_html.h>
#include <usb_fields/byte_view.h>
#include <usb_rules/catalogue.h>

namespace usb_support::usbdesc {
namespace {

struct Settings {
  CheckOptions options;
  Format format = Format::kText;
  bool showsAll = false;
  bool isSummary = false;
  std::optional<std::string> acceptFile;
};

void CheckRules(CheckOptions const& options) {
  for (std::string const& start : options.rules) {
    if (std::ranges::none_of(usb_rules::Catalogue(), [&](usb_rules::Rule const& rule) {
          return rule.id.starts_with(start);
        })) {
      throw UsageError("--rule " + start + ": no rule has an id that begins so");
    }
  }
  for (std::string const& id : options.skipped) {
    if (usb_rules::FindRule(id) == nullptr) {
      throw UsageError("--skip " + id + ": no rule has this id");
    }
  }
}

// Writes the findings in one form of output.
class Checking {
 public:
  Checking(Console const& console, InputOptions const& inputs, Settings const& settings)
      : console_(console),
        inputs_(inputs),
        settings_(settings),
        accepted_(settings.acceptFile ? AcceptedFindings::Read(*settings.acceptFile)
                                      : AcceptedFindings()) {}

  int All() {
    if (settings_.format == Format::kJson) {
      Print(R"({"usbdesc":1,"inputs":[)", console_.out);
    } else if (settings_.format == Format::kJunit) {
      Print("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<testsuites name=\"usbdesc check\">\n",
            console_.out);
    }
    return ReadInputs(
        console_, inputs_, [this](Input const& input) { return Take(input); },
        [this](std::size_t unread) { Finish(unread); },
        [this](std::string const& name, std::string const& reason) {
          if (settings_.format == Format::kJunit) {
            Print(UnreadJunit(name, reason), console_.out);
          } else if (settings_.format == Format::kJson) {
            AddJson(UnreadJson(name, reason));
          }
        });
  }

 private:
  int Take(Input const& input) {
    std::vector<CheckedDevice> devices;
    for (std::size_t i = 0; i < input.devices.size(); ++i) {
      devices.push_back(Check(input.devices[i], NameOf(input, i), settings_.options, accepted_));
    }
    totals_.Add(devices);
    if (settings_.format == Format::kText) {
      ShowText(input, devices);
    } else if (settings_.format == Format::kJson) {
      AddJson(CheckJson(input.name, devices, settings_.showsAll));
    } else {
      for (CheckedDevice const& device : devices) {
        Print(CheckJunit(device), console_.out);
      }
    }
    return std::ranges::all_of(devices, &CheckedDevice::IsGood) ? kExitGood : kExitFaulty;
  }

  void AddJson(std::string const& input) {
    Print(separator_ + input, console_.out);
    separator_ = ",\n";
  }

  void ShowText(Input const& input, std::vector<CheckedDevice> const& devices) {
    for (std::size_t i = 0; i < devices.size(); ++i) {
      if (settings_.isSummary) {
        Log(Line(devices[i].name + ": ")
                .Add(devices[i].IsGood() ? "good, " : "not good, ",
                     devices[i].IsGood() ? Piece::kLabel : Piece::kFault)
                .Add(CountsText(devices[i]))
                .Add(devices[i].lacking.empty() ? "" : ", " + LackingText(devices[i])));
        continue;
      }
      LogTitle(devices[i].name);
      Log(CheckText(devices[i], settings_.showsAll),
          devices[i].IsGood() ? TEST_STATUS_PLAIN : TEST_STATUS_FAILURE);
      std::optional<usb_devices::ByteSpan> const device =
          input.devices[i].Bytes(usb_devices::Request::Descriptor(usb_devices::kDeviceType));
      if (inputs_.vendor && device) {
        vendors_.Log(static_cast<std::uint16_t>(usb_fields::ByteView(*device).Number(8, 2)));
      }
    }
  }

  // The output after the last input.
  void Finish(std::size_t unread) {
    if (settings_.format == Format::kJson) {
      Print("\n]}\n", console_.out);
    } else if (settings_.format == Format::kJunit) {
      Print("</testsuites>\n", console_.out);
    } else if (settings_.isSummary || totals_.Counts().All() + unread > 1) {
      totals_.AddUnread(unread);
      LogPlain("");
      if (std::string const table = totals_.MostBroken(); settings_.isSummary && !table.empty()) {
        LogPlain("Inputs that break a rule:\n" + table);
      }
      LogPlain(totals_.Counts().Text());
    }
    for (std::string const& line : accepted_.NotOccurred()) {
      Report(console_.err, line);
    }
  }

  Console const& console_;
  InputOptions const& inputs_;
  Settings const& settings_;
  AcceptedFindings accepted_;
  CheckTotals totals_;
  VendorNames vendors_;
  std::string separator_ = "\n";
};

int WriteHtml(Console const& console, InputOptions const& inputs, Settings const& settings) {
  AcceptedFindings accepted =
      settings.acceptFile ? AcceptedFindings::Read(*settings.acceptFile) : AcceptedFindings();
  usb_fields::UsbIds const names;
  PageOptions const page{.content = HtmlContent::kCheck,
                         .speed = settings.options.speed,
                         .names = names,
                         .judge = [&](usb_devices::Device const& device, HtmlDevice& shown) {
                           CheckedDevice const checked =
                               Check(device, shown.name, settings.options, accepted);
                           shown.findings = FindingsOf(checked, device, *shown.outline);
                           return checked.IsGood() ? kExitGood : kExitFaulty;
                         }};
  int const status = WritePage(console, inputs, page);
  for (std::string const& line : accepted.NotOccurred()) {
    Report(console.err, line);
  }
  return status;
}

}  // namespace

Action DefineCheck(Options& parser) {
  auto const inputs = AddInputOptions(parser);
  auto const settings = std::make_shared<Settings>();
  parser.Flag("--all", settings->showsAll, "Show every rule, not only those that are broken");
  parser.Flag("--summary", settings->isSummary,
              "One line per device, the rules that are broken most, and a total");
  parser.Choice<usb_rules::Level>(
      "--level", settings->options.level, "should: also judge recommendations (default must)",
      {{"must", usb_rules::Level::kMust}, {"should", usb_rules::Level::kShould}});
  parser.Texts(
      "--rule", settings->options.rules, "ID|PREFIX",
      "Judge only the rule with this id, or rules whose ids begin with it; may be repeated");
  parser.Texts("--skip", settings->options.skipped, "ID", "Leave out a rule; may be repeated");
  parser.Text("--accept", settings->acceptFile, "FILE",
              "Accepted findings: a rule, a place and a reason per line");
  AddSpeedOption(parser, settings->options.speed);
  parser.Choice<Format>("--format", settings->format, "How to write it (default text)",
                        {{"text", Format::kText},
                         {"json", Format::kJson},
                         {"junit", Format::kJunit},
                         {"html", Format::kHtml}});
  return [inputs, settings](Console const& console) {
    CheckRules(settings->options);
    if (settings->format == Format::kHtml) {
      return WriteHtml(console, *inputs, *settings);
    }
    return Checking(console, *inputs, *settings).All();
  };
}

}  // namespace usb_support::usbdesc
