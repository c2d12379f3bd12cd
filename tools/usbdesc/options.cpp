#include <tools/usbdesc/options.h>

#include <algorithm>

#include <CLI/CLI.hpp>

#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

constexpr char kDescription[] =
    "Writes the descriptors of USB devices, each with its offset and a label, and says whether "
    "they\n"
    "are a valid run.";

constexpr char kFooter[] =
    "A file is raw bytes (a device descriptor and its configurations, a BOS, or any run) or text:\n"
    "hexadecimal bytes with # or // comments, a C byte array, or what this program has written.\n"
    "\n"
    "--functions, --interfaces, --capabilities, --tree and --assert may be combined and take the\n"
    "place of the whole dump; their output cannot be read again. For them a run falls into parts:\n"
    "a device, device qualifier, configuration, other-speed configuration or BOS descriptor\n"
    "begins one, and the next of them ends it. A configuration or BOS holds wTotalLength bytes of\n"
    "its part at most. Where the chain of lengths breaks, wTotalLength says where the next part\n"
    "begins.\n"
    "\n"
    "--vendor looks into usbif.json, the vendor list of the USB-IF, in the folder that the\n"
    "environment variable USBIF_JSON_FOLDER names, or else in the user's data folder. A list in\n"
    "the current folder is left alone.\n"
    "\n"
    "Exit status: 0 all inputs are valid and no assertion failed, 1 some input is not or some\n"
    "assertion failed, 2 bad usage, or something could not be read or written.";

std::string Version() {
  std::string text = "usbdesc";
  char separator = ' ';
  for (std::int32_t const number :
       {GetVersionMajor(), GetVersionMinor(), GetVersionPatch(), GetVersionTweak()}) {
    text += separator;
    text += std::to_string(number);
    separator = '.';
  }
  return text;
}

std::pair<std::string, std::string> ParseSetting(std::string const& text) {
  std::size_t const equals = text.find('=');
  if (equals == 0 || equals == std::string::npos) {
    throw UsageError("--set: found \"" + text + "\", expected KEY=VALUE");
  }
  return {text.substr(0, equals), text.substr(equals + 1)};
}

// CLI11 would read "[a,b]" as the files a and b.
void RefuseBrackets(std::vector<std::string> const& arguments) {
  for (std::string const& argument : arguments) {
    if (argument.starts_with('[') && argument.ends_with(']')) {
      throw UsageError(argument + ": put ./ before a name in brackets");
    }
  }
}

void CheckInputs(Options const& options) {
  if (options.files.empty() && !options.fake) {
    throw UsageError("no input: give files, - for standard input, or --fake (--help says more)");
  }
  if (std::count(options.files.begin(), options.files.end(), kStandardInput) > 1) {
    throw UsageError("standard input can be read only once");
  }
}

void CheckCode(Options const& options) {
  bool const hasDumps = options.functions || options.interfaces || options.capabilities;
  if (options.asCode && !hasDumps && (options.tree || options.assertions)) {
    throw UsageError("--code: --tree and --assert write no descriptors");
  }
}

}  // namespace

Options ParseOptions(std::vector<std::string> const& arguments) {
  RefuseBrackets(arguments);
  Options options;
  std::string kind;
  std::vector<std::string> settingTexts;
  int verbosity = options.verbosity;

  CLI::App app(kDescription, "usbdesc");
  app.footer(kFooter);
  app.allow_windows_style_options(false);  // "/dump.bin" is a file
  app.set_help_flag("-h,--help", "Print this help and end");
  app.set_version_flag("--version", Version, "Print the version and end");
  app.add_option("FILE", options.files, "Files to read; - is standard input")->type_name("");
  app.add_flag("--fake", options.fake, "Take the built-in fake device as input");
  app.add_option("--input", kind, "What the files are, in place of recognising it")
      ->option_text("raw|text")
      ->check(CLI::IsMember({"raw", "text"}));
  app.add_flag("--code", options.asCode, "Write the body of a C byte array in place of a listing");
  app.add_flag("--functions", options.functions, "Dump the functions of the configurations");
  app.add_flag("--interfaces", options.interfaces, "Dump the interfaces of the configurations");
  app.add_flag("--capabilities", options.capabilities, "Dump the capabilities of the BOS");
  app.add_flag("--tree", options.tree, "Show what stands in what");
  app.add_flag("--assert", options.assertions, "Check the structure against the USB standard");
  app.add_flag("--vendor", options.vendor, "Show the vendor's name where it can be looked up");
  app.add_option("--set", settingTexts, "Set a setting; may be repeated")
      ->type_name("KEY=VALUE")
      ->take_all()
      ->allow_extra_args(false);
  app.add_option("--settings", options.settingsFile, "Load settings from a JSON file, before --set")
      ->type_name("FILE");
  app.add_option("--verbosity", verbosity, "Verbosity of the log, 0 to 6 (default 3)")
      ->option_text("N")
      ->check(CLI::Range(0, 6));
  app.add_option("--log", options.logFile, "Write the log to this file, too")->type_name("FILE");

  try {
    // CLI11 takes the arguments last first.
    app.parse(std::vector<std::string>(arguments.rbegin(), arguments.rend()));
  } catch (CLI::CallForHelp const&) {
    options.reply = app.help() + '\n';
    return options;
  } catch (CLI::CallForVersion const& version) {
    options.reply = std::string(version.what()) + '\n';
    return options;
  } catch (CLI::ParseError const& error) {
    throw UsageError(error.what());
  }

  for (std::string const& setting : settingTexts) {
    options.settings.push_back(ParseSetting(setting));
  }
  options.verbosity = static_cast<ELogLevel>(verbosity);
  if (!kind.empty()) {
    options.kind = kind == "raw" ? InputKind::kRaw : InputKind::kText;
  }
  CheckInputs(options);
  CheckCode(options);
  return options;
}

}  // namespace usb_support::usbdesc
