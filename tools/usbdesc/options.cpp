#include <tools/usbdesc/options.h>

#include <algorithm>
#include <array>

#include <CLI/CLI.hpp>

#include <tools/usbdesc/manual.h>
#include <usb_support/usb_support.h>

namespace usb_support::usbdesc {
namespace {

constexpr char kDescription[] =
    "Writes the descriptors of USB devices, each with its offset and a label, and says whether\n"
    "their lengths are good.";

constexpr char kSummary[] = "list, label and check the descriptors of USB devices";

struct SectionText {
  char const* title;
  char const* text;
};

// The help shows a section as "title: text", so lines are broken for that.
constexpr std::array<SectionText, 5> kSections = {{
    {"Input",
     "A file is raw bytes (a device descriptor and its configurations, a BOS, or any run) or\n"
     "text: hexadecimal bytes with # or // comments, a C byte array, or what this program has\n"
     "written."},
    {"Views",
     "--functions, --interfaces, --capabilities, --tree and --assert may be combined and take\n"
     "the place of the whole dump; their output cannot be read again. For them a run falls into\n"
     "parts: a device, device qualifier, configuration, other-speed configuration or BOS\n"
     "descriptor begins one, and the next of them ends it. A configuration or BOS holds\n"
     "wTotalLength bytes of its part at most. Where the chain of lengths breaks, wTotalLength\n"
     "says where the next part begins. Offsets count from the start of the file; one that counts\n"
     "from the start of a configuration or BOS follows in brackets. A dump counts from where its\n"
     "title says."},
    {"Vendor names",
     "--vendor looks into usbif.json, the vendor list of the USB-IF, in the folder\n"
     "that the environment variable USBIF_JSON_FOLDER names, or else in the user's data folder, "
     "and\n"
     "says when it is not there. A list in the current folder is left alone."},
    {"Colour and progress",
     "With --color auto, the default, standard output is coloured when it is a\n"
     "terminal, unless the environment variable NO_COLOR is set and not empty or TERM is dumb. "
     "The\n"
     "file of --log is never coloured. With 20 files or more, standard error shows how far the\n"
     "program is, when it is a terminal."},
    {"Exit status",
     "0 all lengths are good and no assertion failed; 1 a chain of lengths breaks, a\n"
     "wTotalLength is wrong, an assertion failed, or there was nothing to check (an input without\n"
     "bytes, or --assert without a descriptor that has rules); 2 bad usage, or something could\n"
     "not be read or written."},
}};

std::string Footer() {
  std::string footer;
  for (SectionText const& section : kSections) {
    footer.append(footer.empty() ? "" : "\n\n").append(section.title).append(": ");
    footer.append(section.text);
  }
  return footer;
}

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

std::string ValueOf(CLI::Option const& option) {
  if (option.get_type_size() == 0) {
    return {};
  }
  return option.get_option_text().empty() ? option.get_type_name() : option.get_option_text();
}

Manual ManualOf(CLI::App const& app) {
  Manual manual;
  manual.name = app.get_name();
  manual.version = Version();
  manual.summary = kSummary;
  manual.description = kDescription;
  for (CLI::Option const* const option : app.get_options()) {
    if (option->get_positional()) {
      manual.files = option->get_name(true);
      manual.filesDescription = option->get_description();
      continue;
    }
    OptionManual text;
    for (std::string const& name : option->get_snames()) {
      text.names.push_back("-" + name);
    }
    for (std::string const& name : option->get_lnames()) {
      text.names.push_back("--" + name);
    }
    text.value = ValueOf(*option);
    text.description = option->get_description();
    text.repeats = option->get_multi_option_policy() == CLI::MultiOptionPolicy::TakeAll;
    manual.options.push_back(text);
  }
  for (SectionText const& section : kSections) {
    manual.sections.push_back({section.title, section.text});
  }
  return manual;
}

std::string Document(std::string const& what, Manual const& manual) {
  if (what == "bash") {
    return BashCompletion(manual);
  }
  if (what == "zsh") {
    return ZshCompletion(manual);
  }
  return what == "fish" ? FishCompletion(manual) : ManPage(manual);
}

ColourChoice ColourChoiceOf(std::string const& word) {
  if (word == "always") {
    return ColourChoice::kAlways;
  }
  return word == "never" ? ColourChoice::kNever : ColourChoice::kAuto;
}

}  // namespace

Options ParseOptions(std::vector<std::string> const& arguments) {
  RefuseBrackets(arguments);
  Options options;
  std::string kind;
  std::string colour;
  std::string document;
  std::vector<std::string> settingTexts;
  int verbosity = options.verbosity;

  CLI::App app(kDescription, "usbdesc");
  app.footer(Footer());
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
  app.add_flag("--vendor", options.vendor, "Show the vendor's name, or why there is none");
  app.add_option("--set", settingTexts, "Set a setting; may be repeated")
      ->type_name("KEY=VALUE")
      ->take_all()
      ->allow_extra_args(false);
  app.add_option("--settings", options.settingsFile, "Load settings from a JSON file, before --set")
      ->type_name("FILE");
  app.add_option("--verbosity", verbosity, "Verbosity of the log, 0 to 6 (default 3)")
      ->option_text("N")
      ->check(CLI::Range(0, 6));
  app.add_option("--log", options.logFile,
                 "Write the log to this file, too; a file that is there is replaced")
      ->type_name("FILE");
  app.add_option("--color", colour, "When to colour standard output (default auto)")
      ->option_text("auto|always|never")
      ->check(CLI::IsMember({"auto", "always", "never"}));
  app.add_option("--generate", document, "Print a manual page or a shell's completion and end")
      ->option_text("man|bash|zsh|fish")
      ->check(CLI::IsMember({"man", "bash", "zsh", "fish"}));

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

  if (!document.empty()) {
    options.reply = Document(document, ManualOf(app));
    return options;
  }
  for (std::string const& setting : settingTexts) {
    options.settings.push_back(ParseSetting(setting));
  }
  options.verbosity = static_cast<ELogLevel>(verbosity);
  if (!kind.empty()) {
    options.kind = kind == "raw" ? InputKind::kRaw : InputKind::kText;
  }
  options.colour = ColourChoiceOf(colour);
  CheckInputs(options);
  CheckCode(options);
  return options;
}

}  // namespace usb_support::usbdesc
