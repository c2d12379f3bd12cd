#include <deque>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <tools/usbdesc/colours.h>
#include <tools/usbdesc/commands.h>
#include <tools/usbdesc/decoded.h>
#include <tools/usbdesc/inputs.h>
#include <tools/usbdesc/log_text.h>
#include <tools/usbdesc/pages.h>
#include <tools/usbdesc/views/check.h>
#include <tools/usbdesc/views/check_html.h>
#include <tools/usbdesc/views/diff.h>
#include <tools/usbdesc/views/html.h>
#include <usb_fields/context.h>

namespace usb_support::usbdesc {
namespace {

struct DiffOptions {
  InputOptions inputs;
  usb_fields::Speed speed = usb_fields::Speed::kUnknown;  // as the sources or the descriptors tell
  Format format = Format::kText;
  bool isChecked = false;
};

void ShowChanges(Console const& console, Format format, HtmlDevice const& before,
                 HtmlDevice const& after, std::vector<Change> const& changes,
                 std::optional<std::vector<RuleChange>> const& rules) {
  switch (format) {
    case Format::kJson:
      Print(DiffJson(before.name, after.name, changes, rules) + "\n", console.out);
      break;
    case Format::kHtml:
      Print(DiffHtml(before, after, changes, rules.value_or(std::vector<RuleChange>()), {}),
            console.out);
      break;
    default:
      LogTitle(before.name + " -> " + after.name);
      Log(DiffText(changes, rules.value_or(std::vector<RuleChange>())));
      break;
  }
}

std::optional<std::vector<RuleChange>> RulesOf(Input const& before, Input const& after,
                                               DiffOptions const& options) {
  if (!options.isChecked) {
    return std::nullopt;
  }
  CheckOptions const check{.speed = options.speed};
  AcceptedFindings none;
  return CompareRules(Check(before.devices[0], before.name, check, none),
                      Check(after.devices[0], after.name, check, none));
}

void RequireOneDevice(Input const& input) {
  if (input.devices.size() != 1) {
    throw UsageError(input.name + ": has " + Counted(input.devices.size(), "device") +
                     "; choose one of them, such as " + NameOf(input, 0));
  }
}

int Run(Console const& console, DiffOptions const& options) {
  if (options.inputs.files.size() != 2) {
    throw UsageError("diff takes two inputs, the one before and the one after (see --help)");
  }
  std::deque<Input> read;
  return ReadInputs(console, options.inputs, [&](Input const& input) {
    RequireOneDevice(input);
    read.push_back(input);
    if (read.size() != 2) {
      return kExitGood;
    }
    Outline const before(Decode(read[0].devices[0], options.speed));
    Outline const after(Decode(read[1].devices[0], options.speed));
    std::vector<Change> const changes = Compare(before, after);
    ShowChanges(console, options.format, {read[0].name, &before}, {read[1].name, &after}, changes,
                RulesOf(read[0], read[1], options));
    return changes.empty() ? kExitGood : kExitFaulty;
  });
}

}  // namespace

Action DefineDiff(Options& parser) {
  auto const options = std::make_shared<DiffOptions>();
  parser.Arguments("INPUT", options->inputs.files,
                   "The device before and the device after: files or folders; - is standard input");
  AddFormOption(parser, options->inputs);
  parser.Choice<Format>(
      "--format", options->format, "text, json as docs/ describes it, or html",
      {{"text", Format::kText}, {"json", Format::kJson}, {"html", Format::kHtml}});
  AddSpeedOption(parser, options->speed);
  parser.Flag("--check", options->isChecked,
              "Show the rules that one device keeps and the other breaks");
  return [options](Console const& console) { return Run(console, *options); };
}

}  // namespace usb_support::usbdesc
