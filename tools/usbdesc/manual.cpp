#include <tools/usbdesc/manual.h>

#include <algorithm>
#include <cctype>
#include <string_view>

namespace usb_support::usbdesc {
namespace {

bool TakesFile(OptionManual const& option) {
  return option.value == "FILE";
}

// "raw text" for "raw|text"; empty when the value may be any word.
std::string Choices(OptionManual const& option) {
  if (option.value.find('|') == std::string::npos) {
    return {};
  }
  std::string choices = option.value;
  std::replace(choices.begin(), choices.end(), '|', ' ');
  return choices;
}

std::string Replaced(std::string_view text, std::string_view what, std::string_view with) {
  std::string replaced;
  for (std::size_t found = text.find(what); found != std::string_view::npos;
       found = text.find(what)) {
    replaced.append(text.substr(0, found)).append(with);
    text.remove_prefix(found + what.size());
  }
  return replaced.append(text);
}

std::string WithBackslashes(std::string_view text, std::string_view special) {
  std::string escaped;
  for (char const c : text) {
    if (special.find(c) != std::string_view::npos) {
      escaped += '\\';
    }
    escaped += c;
  }
  return escaped;
}

std::string UpperCase(std::string text) {
  std::transform(text.begin(), text.end(), text.begin(),
                 [](unsigned char c) { return static_cast<char>(std::toupper(c)); });
  return text;
}

// A literal hyphen becomes "\-" in roff; a line must not begin with a control character.
std::string Roff(std::string_view text) {
  std::string const hyphens = Replaced(Replaced(text, "\\", "\\e"), "-", "\\-");
  std::string lines = Replaced(hyphens, "\n.", "\n\\&.");
  lines = Replaced(lines, "\n'", "\n\\&'");
  return (lines.starts_with('.') || lines.starts_with('\'') ? "\\&" : "") + lines;
}

std::string Bold(std::string_view text) {
  return "\\fB" + Roff(text) + "\\fR";
}

std::string Italic(std::string_view text) {
  return "\\fI" + Roff(text) + "\\fR";
}

std::string RoffValue(std::string const& value) {
  bool const isWords =
      std::any_of(value.begin(), value.end(), [](unsigned char c) { return std::islower(c) != 0; });
  // Words to type are bold, placeholders are in italics.
  return isWords ? Replaced(Bold(value), "|", "\\fR|\\fB") : Italic(value);
}

std::string Joined(std::vector<std::string> const& words, std::string_view separator) {
  std::string joined;
  for (std::string const& word : words) {
    if (!joined.empty()) {
      joined += separator;
    }
    joined += word;
  }
  return joined;
}

std::string RoffOption(OptionManual const& option) {
  std::string entry = ".TP\n";
  char const* separator = "";
  for (std::string const& name : option.names) {
    entry.append(separator).append(Bold(name));
    separator = ", ";
  }
  if (!option.value.empty()) {
    entry.append(" ").append(RoffValue(option.value));
  }
  entry.append("\n").append(Roff(option.description)).append(".");
  if (!option.commands.front().empty()) {
    entry.append(" (").append(Joined(option.commands, ", ")).append(")");
  }
  return entry + "\n";
}

// For single quotes of a POSIX shell.
std::string Quoted(std::string_view text) {
  return '\'' + Replaced(text, "'", "'\\''") + '\'';
}

std::string FishQuoted(std::string_view text) {
  return '\'' + WithBackslashes(text, "\\'") + '\'';
}

std::vector<std::string> NamesOf(std::vector<CommandManual> const& commands) {
  std::vector<std::string> names;
  names.reserve(commands.size());
  for (CommandManual const& command : commands) {
    names.push_back(command.name);
  }
  return names;
}

// A branch of bash's "case $previous": completes the value of one option.
std::string BashValue(OptionManual const& option) {
  std::string branch = "    " + Joined(option.names, "|") + ")\n";
  if (TakesFile(option)) {
    branch += "      _NAME_files\n";
  } else if (std::string const choices = Choices(option); !choices.empty()) {
    branch +=
        "      mapfile -t COMPREPLY < <(compgen -W " + Quoted(choices) + " -- \"$current\")\n";
  }
  return branch + "      return\n      ;;\n";
}

constexpr std::string_view kBashHead = R"sh(# bash completion for NAME
_NAME_files() {
  compopt -o filenames 2>/dev/null
  mapfile -t COMPREPLY < <(compgen -f -- "$current")
}

_NAME() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD - 1]} word
  COMPREPLY=()
  # bash takes "--option=value" for three words.
  if [[ $current == = ]]; then
    current=
  elif [[ $previous == = ]]; then
    previous=${COMP_WORDS[COMP_CWORD - 2]}
  fi
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    if [[ $word == -- ]]; then
      _NAME_files
      return
    fi
  done
  case $previous in
)sh";

constexpr std::string_view kBashTail = R"sh(  esac
  if [[ $current == -* ]]; then
    mapfile -t COMPREPLY < <(compgen -W OPTIONS -- "$current")
    return
  fi
  _NAME_files
  if ((COMP_CWORD == 1)); then
    mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -W COMMANDS -- "$current")
  fi
}
complete -F _NAME NAME
)sh";

// The text that _arguments takes for the value of an option: ":message:action".
std::string ZshValue(OptionManual const& option) {
  if (option.value.empty()) {
    return {};
  }
  std::string const choices = Choices(option);
  std::string const action = TakesFile(option) ? "_files"
                             : choices.empty() ? " "
                                               : '(' + choices + ')';
  return ':' + WithBackslashes(option.value, "\\:") + ':' + action;
}

}  // namespace

std::string ManPage(Manual const& manual) {
  std::string page = ".TH " + UpperCase(manual.name) + R"( 1 "" ")" + Roff(manual.version) +
                     "\" \"User Commands\"\n";
  page += ".SH NAME\n" + Roff(manual.name) + R"( \- )" + Roff(manual.summary) + '\n';
  page += ".SH SYNOPSIS\n" + Bold(manual.name) + " [" + Italic("COMMAND") + "] [" +
          Italic("OPTION") + "]... [" + Italic(manual.files) + "]...\n";
  page += ".SH DESCRIPTION\n" + Roff(manual.description) + '\n';
  page += ".SH COMMANDS\n";
  for (CommandManual const& command : manual.commands) {
    bool const isDefault = &command == &manual.commands.front();
    page += ".TP\n" + Bold(command.name) + '\n' + Roff(command.help) +
            (isDefault ? "; the default.\n" : ".\n");
  }
  page +=
      ".SH OPTIONS\n.TP\n" + Italic(manual.files) + '\n' + Roff(manual.filesDescription) + ".\n";
  for (OptionManual const& option : manual.options) {
    page += RoffOption(option);
  }
  for (ManualSection const& section : manual.sections) {
    page += ".SH " + UpperCase(Roff(section.title)) + '\n' +
            Replaced(Roff(section.text), "\n\n", "\n.PP\n") + '\n';
  }
  return page;
}

std::string BashCompletion(Manual const& manual) {
  std::string script(kBashHead);
  std::vector<std::string> names;
  for (OptionManual const& option : manual.options) {
    names.insert(names.end(), option.names.begin(), option.names.end());
    if (!option.value.empty()) {
      script += BashValue(option);
    }
  }
  std::string const tail = Replaced(kBashTail, "OPTIONS", Quoted(Joined(names, " ")));
  script += Replaced(tail, "COMMANDS", Quoted(Joined(NamesOf(manual.commands), " ")));
  return Replaced(script, "NAME", manual.name);
}

std::string ZshCompletion(Manual const& manual) {
  std::string script = "#compdef " + manual.name + "\n_arguments -s -S";
  for (OptionManual const& option : manual.options) {
    // One option under several names may be given once under one of them.
    std::string const others = option.names.size() > 1 ? '(' + Joined(option.names, " ") + ')' : "";
    for (std::string const& name : option.names) {
      bool const isLong = name.starts_with("--");
      std::string entry = others + name;
      entry += option.value.empty() ? "" : isLong ? "=" : "+";
      entry += '[' + WithBackslashes(option.description, "\\[]:") + ']' + ZshValue(option);
      script += " \\\n  " + Quoted(entry);
    }
  }
  std::string const commands = Joined(NamesOf(manual.commands), " ");
  return script + " \\\n  " +
         Quoted("1:command or " + manual.files + ":{_files; compadd " + commands + "}") +
         " \\\n  " + Quoted("*:" + manual.files + ":_files") + "\n";
}

std::string FishCompletion(Manual const& manual) {
  std::string script = "# fish completion for " + manual.name + '\n';
  for (CommandManual const& command : manual.commands) {
    script += "complete -c " + manual.name + " -n __fish_use_subcommand -a " + command.name +
              " -d " + FishQuoted(command.help) + '\n';
  }
  for (OptionManual const& option : manual.options) {
    script += "complete -c " + manual.name;
    for (std::string const& name : option.names) {
      bool const isLong = name.starts_with("--");
      script += (isLong ? " -l " : " -s ") + name.substr(isLong ? 2 : 1);
    }
    if (TakesFile(option)) {
      script += " -r -F";
    } else if (std::string const choices = Choices(option); !choices.empty()) {
      script += " -x -a " + FishQuoted(choices);
    } else if (!option.value.empty()) {
      script += " -x";
    }
    script += " -d " + FishQuoted(option.description) + '\n';
  }
  return script;
}

}  // namespace usb_support::usbdesc
