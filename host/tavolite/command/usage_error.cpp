#include "tavolite/command/usage_error.h"

#include <algorithm>

#include "base/excerpt.h"
#include "base/text.h"
#include "base/text_file.h"
#include "tavolite/command/input_format.h"

namespace host {
namespace {

std::string Quoted(std::string_view word) {
  return '"' + Excerpt(word) + '"';
}

// No command is among the words.
std::string NoCommand(const std::vector<std::string>& words) {
  const auto file = std::find_if(words.begin(), words.end(), [](const std::string& word) {
    return !word.starts_with('-') &&
           (InputFormatOf(FromUtf8(word)) || LowerCase(word).ends_with(".tdx"));
  });
  if (file != words.end()) {
    const char* command = InputFormatOf(FromUtf8(*file)) ? "solve " : "show ";
    return "did you mean \"tavolite " + (command + Excerpt(*file)) + "\"?";
  }
  if (words.empty() || words[0].starts_with('-')) return "a command is missing: solve or show";
  return "there is no command " + Quoted(words[0]) + "; the commands are solve and show";
}

std::string NearestOption(const CLI::App& command, const std::string& word) {
  std::string nearest;
  std::size_t least = word.size() / 3 + 2;
  for (const CLI::Option* option : command.get_options()) {
    for (const std::string& name : option->get_lnames()) {
      const bool begins = word.size() > 3 && ("--" + name).starts_with(word);
      const std::size_t distance = begins ? 0 : EditDistance("--" + name, word);
      if (distance < least) {
        least = distance;
        nearest = "--" + name;
      }
    }
  }
  return nearest;
}

std::string NotExpected(const CLI::App& command, const std::vector<std::string>& words) {
  const auto option = std::find_if(words.begin(), words.end(),
                                   [](const std::string& word) { return word.starts_with('-'); });
  if (option == words.end()) return "there is no place for " + Quoted(words.front());
  const std::string name = option->substr(0, option->find('='));
  const std::string nearest = NearestOption(command, name);
  return "there is no option " + Excerpt(name) +
         (nearest.empty() ? "" : "; the nearest is " + nearest);
}

}  // namespace

std::string UsageError(const CLI::App& app, const CLI::ParseError& error,
                       const std::vector<std::string>& words) {
  const std::vector<CLI::App*> commands = app.get_subcommands();
  if (commands.empty()) return NoCommand(words) + " (tavolite --help says more)";
  const CLI::App& command = *commands.front();
  const std::vector<std::string> rest = app.remaining(true);
  const bool unexpected = error.get_exit_code() == static_cast<int>(CLI::ExitCodes::ExtrasError);
  return (unexpected && !rest.empty() ? NotExpected(command, rest) : error.what()) +
         (" (tavolite " + command.get_name() + " --help lists the options)");
}

}  // namespace host
