// The options of a command, added by the function that defines it. command_line.cpp reads them; no
// other source uses the library for that.
//
//   auto const options = std::make_shared<MyOptions>();
//   parser.Flag("--code", options->asCode, "Write C code instead of a listing");
//   parser.Choice("--format", options->format, "How to write it (default text)",
//                 {{"text", Format::kText}, {"json", Format::kJson}});
//
// A value does not change unless the command line has the option. It must exist until the command
// line has been read.
#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace CLI {
class App;
}

namespace usb_support::usbdesc {

class Options {
 public:
  explicit Options(CLI::App& app) noexcept : app_(app) {}

  /// The arguments that are not options. The help shows `name` for one.
  void Arguments(char const* name, std::vector<std::string>& values, char const* help);

  void Flag(char const* name, bool& value, char const* help);

  /// An option with any text as its value, for which the help shows `placeholder`: FILE makes the
  /// shells complete file names.
  void Text(char const* name, std::optional<std::string>& value, char const* placeholder,
            char const* help);

  /// The same, each time that the option is given.
  void Texts(char const* name, std::vector<std::string>& values, char const* placeholder,
             char const* help);

  /// An option whose value is one of a few words, each with its meaning. `Target` is Value or
  /// std::optional<Value>.
  template <typename Value, typename Target>
  void Choice(char const* name, Target& target, char const* help,
              std::vector<std::pair<std::string, Value>> choices) {
    std::vector<std::string> words;
    words.reserve(choices.size());
    for (auto const& choice : choices) {
      words.push_back(choice.first);
    }
    AddChoice(name, help, std::move(words), [&target, choices = std::move(choices)](std::size_t i) {
      target = choices[i].second;
    });
  }

 private:
  void AddChoice(char const* name, char const* help, std::vector<std::string> words,
                 std::function<void(std::size_t)> take);

  CLI::App& app_;
};

}  // namespace usb_support::usbdesc
