#include <tools/usbdesc/command_line.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <numeric>
#include <string_view>

#include <CLI/CLI.hpp>

#include <tools/usbdesc/manual.h>
#include <tools/usbdesc/options.h>
#include <tools/usbdesc/platform.h>
#include <usb_support/status/version.h>

namespace usb_support::usbdesc {
namespace {

constexpr char kDescription[] =
    "Shows the descriptors of USB devices and checks them. Without a command it lists them, each\n"
    "with its offset and a label, and reports whether their lengths are good.";

constexpr char kSummary[] = "list, show and check the descriptors of USB devices";

struct SectionText {
  char const* title;
  char const* text;
};

// The help shows a section as "title: text", so lines are broken for that.
constexpr SectionText kSections[] = {
    {"Input",
     "Raw bytes (a device descriptor and its configurations, a BOS, or any run); a text:\n"
     "hexadecimal bytes in any common form (xxd, hexdump, od, Wireshark, C, Python), a listing or\n"
     "JSON of this program; a folder with a file for each descriptor, or of sysfs; a traffic\n"
     "capture, pcap or pcapng. The form is recognised by the content and named in the last line;\n"
     "--input forces it. INPUT#NAME is one device of an input, as in trace.pcapng#1.7; a number\n"
     "counts from 1 when no device has that name."},
    {"Several answers",
     "Where strings, HID reports or the speed of a device are known, dump has a line for\n"
     "the device and for each request, and what it writes reads back to the same device. save\n"
     "writes one device, INPUT, in a new folder or, with --as, in a new file (- is standard "
     "output)."},
    {"Parts",
     "tree and the options of dump use the parts of a run: a device, device qualifier,\n"
     "configuration, other-speed configuration or BOS descriptor begins one, and the next of them\n"
     "ends it; each is the answer to one request. A configuration or BOS has at most\n"
     "wTotalLength bytes of its part. Where the chain of lengths breaks, wTotalLength shows where\n"
     "the next part begins. Offsets count from the start of the file, or of the answer where an\n"
     "input has several; one that counts from the start of a configuration or BOS follows in\n"
     "brackets. A dump of a function, interface or capability counts from the offset in its "
     "title."},
    {"Vendor names",
     "--vendor looks into usbif.json, the vendor list of the USB-IF. The list is in\n"
     "the folder that USBIF_JSON_FOLDER names, or else in the user's data folder. A list in the\n"
     "current folder is not used."},
    {"Progress",
     "With 20 files or more, standard error shows the progress, when it is a\n"
     "terminal."},
    {"Exit status",
     "0 all is good; 1 a chain of lengths breaks, a wTotalLength is wrong, a rule is\n"
     "broken, the devices of diff are not the same, or there was nothing to check (an input\n"
     "without bytes, or for check without a rule that could be judged); 2 bad usage, or something\n"
     "could not be read or written."},
};

// Only for the manual page.
constexpr SectionText kManualSections[] = {
    {"Environment",
     "NO_COLOR: when it is set and not empty, --color auto writes no colours.\n\n"
     "TERM: when it is dumb, --color auto writes no colours.\n\n"
     "USBIF_JSON_FOLDER: the folder of the vendor list.\n\n"
     "XDG_DATA_HOME, HOME: without USBIF_JSON_FOLDER the list is in $XDG_DATA_HOME/usb_support, "
     "or\n"
     "else in $HOME/.local/share/usb_support. On Windows it is in %LOCALAPPDATA%\\usb_support."},
    {"Files", "usbif.json: the vendor list of the USB-IF, a JSON array of vendors."},
    {"Examples",
     "List a capture, and show it as a tree:\n\n"
     "usbdesc keyboard.bin\n\n"
     "usbdesc tree keyboard.bin\n\n"
     "List the devices of a traffic capture, and keep one of them as a folder:\n\n"
     "usbdesc list trace.pcapng\n\n"
     "usbdesc save trace.pcapng#1.7 webcam\n\n"
     "Check every capture of a folder, and keep the log:\n\n"
     "usbdesc check --log check.txt captures/*.bin\n\n"
     "The same in one line each, and as JUnit XML for a CI system:\n\n"
     "usbdesc check --summary captures/*.bin\n\n"
     "usbdesc check --format junit captures/*.bin > check.xml\n\n"
     "Show what a new firmware build changed:\n\n"
     "usbdesc diff old.bin new.bin\n\n"
     "Write a page of a device that opens in a browser:\n\n"
     "usbdesc decode --format html camera.bin > camera.html\n\n"
     "Explain a rule:\n\n"
     "usbdesc rules usb2.config.attributes-bit7\n\n"
     "Turn hexadecimal bytes into the body of a C byte array:\n\n"
     "echo 12 01 00 02 | usbdesc --code -"},
};

std::string Footer() {
  std::string footer;
  for (SectionText const& section : kSections) {
    footer.append(footer.empty() ? "" : "\n\n").append(section.title).append(": ");
    footer.append(section.text);
  }
  return footer;
}

// The number of characters to change, add or remove to turn one word into another.
std::size_t Distance(std::string_view a, std::string_view b) {
  std::vector<std::size_t> row(b.size() + 1);
  std::iota(row.begin(), row.end(), std::size_t{0});
  for (char const c : a) {
    std::size_t diagonal = row[0]++;
    for (std::size_t j = 0; j < b.size(); ++j) {
      std::size_t const changed = diagonal + (c == b[j] ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min({changed, diagonal + 1, row[j] + 1});
    }
  }
  return row.back();
}

// The word that a user may have meant; empty when none is similar.
std::string Nearest(std::string_view word, std::vector<std::string> const& known) {
  std::string nearest;
  std::size_t const letters = word.size() - std::min(word.find_first_not_of('-'), word.size());
  std::size_t least = std::min<std::size_t>(2, letters / 2) + 1;
  for (std::string const& one : known) {
    if (std::size_t const distance = Distance(word, one); distance < least) {
      least = distance;
      nearest = one;
    }
  }
  return nearest;
}

bool IsCommand(std::string_view word) {
  return std::any_of(std::begin(kCommands), std::end(kCommands),
                     [word](Command const& command) { return command.name == word; });
}

// CLI11 would read "[a,b]" as the files a and b.
void RefuseBrackets(std::vector<std::string> const& arguments) {
  for (std::string const& argument : arguments) {
    if (argument.starts_with('[') && argument.ends_with(']')) {
      throw UsageError(argument + ": put ./ before a name in brackets");
    }
  }
}

// A first word that is neither a command nor a file may be a mistyped command.
void CheckFirstWord(std::string const& word) {
  std::vector<std::string> names;
  for (Command const& command : kCommands) {
    names.emplace_back(command.name);
  }
  std::error_code ignored;
  std::string const nearest = Nearest(word, names);
  if (!word.starts_with('-') && !nearest.empty() &&
      !std::filesystem::exists(PathOf(word), ignored)) {
    throw UsageError(word + ": not a command and not a file; the nearest command is " + nearest);
  }
}

// The first word that is not an option of every command or its value; the end when there is none.
template <typename Iterator>
Iterator FirstWord(CLI::App const& app, Iterator word, Iterator end) {
  while (word != end) {
    CLI::Option const* const option = app.get_option_no_throw(word->substr(0, word->find('=')));
    if (option == nullptr) {
      return word;
    }
    bool const isValueNext = option->get_type_size() != 0 && word->find('=') == std::string::npos;
    word += isValueNext && end - word > 1 ? 2 : 1;
  }
  return end;
}

// The arguments with the omitted command added, in reverse order as CLI11 takes them.
std::vector<std::string> WithCommand(CLI::App const& app,
                                     std::vector<std::string> const& arguments) {
  RefuseBrackets(arguments);
  std::vector<std::string> words(arguments.rbegin(), arguments.rend());
  auto const first = FirstWord(app, arguments.begin(), arguments.end());
  if (first != arguments.end() && !IsCommand(*first)) {
    CheckFirstWord(*first);
    words.emplace_back(kCommands[0].name);
  }
  return words;
}

std::vector<std::string> NamesOf(CLI::Option const& option) {
  std::vector<std::string> names;
  for (std::string const& name : option.get_snames()) {
    names.push_back("-" + name);
  }
  for (std::string const& name : option.get_lnames()) {
    names.push_back("--" + name);
  }
  return names;
}

void AddNames(std::vector<std::string>& names, CLI::App const& app) {
  for (CLI::Option const* const option : app.get_options()) {
    std::vector<std::string> const more = NamesOf(*option);
    names.insert(names.end(), more.begin(), more.end());
  }
}

[[noreturn]] void RefuseWord(std::string const& word, CLI::App const& app) {
  if (!word.starts_with('-')) {
    throw UsageError(word + ": not expected (see --help)");
  }
  std::vector<std::string> known;
  AddNames(known, app);
  for (CLI::App const* const command : app.get_subcommands()) {
    AddNames(known, *command);
  }
  std::string const nearest = Nearest(word.substr(0, word.find('=')), known);
  throw UsageError(word + ": unknown option" +
                   (nearest.empty() ? " (see --help)" : "; the nearest is " + nearest));
}

std::string ValueOf(CLI::Option const& option) {
  if (option.get_type_size() == 0) {
    return {};
  }
  return option.get_option_text().empty() ? option.get_type_name() : option.get_option_text();
}

std::string VersionText() {
  std::string text = "usbdesc";
  char separator = ' ';
  for (std::int32_t const number :
       {GetVersionMajor(), GetVersionMinor(), GetVersionPatch(), GetVersionTweak()}) {
    text += separator + std::to_string(number);
    separator = '.';
  }
  return text;
}

void AddOptions(Manual& manual, CLI::App const& app, std::string const& command) {
  for (CLI::Option const* const option : app.get_options()) {
    std::vector<std::string> const names = NamesOf(*option);
    if (names.empty() && !manual.files.empty()) {
      continue;
    }
    if (names.empty()) {
      manual.files = option->get_name(true);
      manual.filesDescription = option->get_description();
      continue;
    }
    auto const known =
        std::find_if(manual.options.begin(), manual.options.end(), [&](OptionManual const& one) {
          return one.names == names && one.description == option->get_description();
        });
    if (known == manual.options.end()) {
      manual.options.push_back({names, ValueOf(*option), option->get_description(), {command}});
    } else if (!known->commands.front().empty()) {
      known->commands.push_back(command);
    }
  }
}

Manual ManualOf(CLI::App const& app) {
  Manual manual;
  manual.name = app.get_name();
  manual.version = VersionText();
  manual.summary = kSummary;
  manual.description = kDescription;
  AddOptions(manual, app, "");
  for (CLI::App const* const command : app.get_subcommands({})) {
    manual.commands.push_back({command->get_name(), command->get_description()});
    AddOptions(manual, *command, command->get_name());
  }
  for (SectionText const& section : kSections) {
    manual.sections.push_back({section.title, section.text});
  }
  for (SectionText const& section : kManualSections) {
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

}  // namespace

void Options::Arguments(char const* name, std::vector<std::string>& values, char const* help) {
  app_.add_option(name, values, help)->type_name("");
}

void Options::Flag(char const* name, bool& value, char const* help) {
  app_.add_flag(name, value, help);
}

void Options::Text(char const* name, std::optional<std::string>& value, char const* placeholder,
                   char const* help) {
  app_.add_option(name, value, help)->type_name(placeholder);
}

void Options::Texts(char const* name, std::vector<std::string>& values, char const* placeholder,
                    char const* help) {
  app_.add_option(name, values, help)->type_name(placeholder)->allow_extra_args(false);
}

void Options::AddChoice(char const* name, char const* help, std::vector<std::string> words,
                        std::function<void(std::size_t)> take) {
  std::string const text = CLI::detail::join(words, "|");
  CLI::IsMember const isKnown(words);
  auto const choose = [words = std::move(words), take = std::move(take)](std::string const& word) {
    take(static_cast<std::size_t>(std::find(words.begin(), words.end(), word) - words.begin()));
  };
  app_.add_option_function<std::string>(name, choose, help)->option_text(text)->check(isKnown);
}

CommandLine ParseCommandLine(std::vector<std::string> const& arguments) {
  CommandLine line;
  std::string document;
  CLI::App app(kDescription, "usbdesc");
  app.allow_windows_style_options(false);  // "/dump.bin" is a file
  app.allow_extras();                      // they are answered below
  app.require_subcommand(0, 1);
  app.fallthrough();
  app.set_help_flag("-h,--help", "Print help and end");
  app.set_version_flag("--version", VersionText, "Print the version and end");
  app.add_option("--verbosity", line.console.verbosity, "Verbosity of the log, 0 to 6 (default 3)")
      ->option_text("N")
      ->check(CLI::Range(0, 6));
  app.add_option("--log", line.console.logFile,
                 "Write the log to this file, too; an existing file is replaced")
      ->type_name("FILE");
  Options(app).Choice<ColourChoice>("--color", line.console.colour,
                                    "When to colour standard output (default auto)",
                                    {{"auto", ColourChoice::kAuto},
                                     {"always", ColourChoice::kAlways},
                                     {"never", ColourChoice::kNever}});
  app.add_option("--generate", document, "Print a manual page or a shell's completion and end")
      ->option_text("man|bash|zsh|fish")
      ->check(CLI::IsMember({"man", "bash", "zsh", "fish"}));
  std::vector<Action> actions;
  for (Command const& command : kCommands) {
    CLI::App& part = *app.add_subcommand(command.name, command.help);
    part.group("Commands");
    Options options(part);
    actions.push_back(command.define(options));
  }
  app.footer(Footer());
  app.get_formatter()->label("SUBCOMMAND", "COMMAND");

  try {
    app.parse(WithCommand(app, arguments));
  } catch (CLI::CallForHelp const&) {
    line.reply = app.help() + '\n';
    return line;
  } catch (CLI::CallForVersion const& version) {
    line.reply = std::string(version.what()) + '\n';
    return line;
  } catch (CLI::ParseError const& error) {
    throw UsageError(error.what());
  }
  if (std::vector<std::string> const unknown = app.remaining(true); !unknown.empty()) {
    RefuseWord(unknown.front(), app);
  }
  if (!document.empty()) {
    line.reply = Document(document, ManualOf(app));
  }
  line.action = actions.front();
  for (std::size_t i = 0; i < actions.size(); ++i) {
    if (app.got_subcommand(kCommands[i].name)) {
      line.action = actions[i];
    }
  }
  return line;
}

}  // namespace usb_support::usbdesc
