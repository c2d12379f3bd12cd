// The documents that the program makes from its own command line: a manual page and the completions
// of three shells. They are made from the definitions of the options.
#pragma once

#include <string>
#include <vector>

namespace usb_support::usbdesc {

/// One option as the command line defines it.
struct OptionManual {
  std::vector<std::string> names;  ///< "-h", "--help"; never empty
  /// The text shown for the value: empty for a flag, "FILE" for a file name, the values with "|"
  /// between them when only these are allowed, otherwise any word.
  std::string value;
  std::string description;
  std::vector<std::string> commands;  ///< that have it; one empty name when all do
};

struct CommandManual {
  std::string name;
  std::string help;
};

/// A titled piece of text: paragraphs, with an empty line between them.
struct ManualSection {
  std::string title;
  std::string text;
};

/// The source of a program's documents.
struct Manual {
  std::string name;
  std::string version;  ///< with the program's name
  std::string summary;  ///< a few words
  std::string description;
  std::string files;  ///< the text shown for the arguments that are not options, such as "FILE"
  std::string filesDescription;
  std::vector<CommandManual> commands;  ///< the first is the default
  std::vector<OptionManual> options;
  std::vector<ManualSection> sections;
};

/// The manual page of section 1, in roff with the macros of man(7).
std::string ManPage(Manual const& manual);

/// Completion for bash: a script to be sourced.
std::string BashCompletion(Manual const& manual);

/// Completion for zsh: a function for a file "_NAME" in $fpath.
std::string ZshCompletion(Manual const& manual);

/// Completion for fish: a script to be sourced.
std::string FishCompletion(Manual const& manual);

}  // namespace usb_support::usbdesc
