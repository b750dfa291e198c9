// From the words of a command line to what the user asks for.
#pragma once

#include <iosfwd>
#include <string>
#include <variant>
#include <vector>

#include "tavolite/command/options.h"

namespace host {

constexpr int kUsageError = 2;

// Takes the words behind the program's name. Gives the exit status where nothing is left to do:
// help or version is printed to `out`, or what is wrong with the words to `err`. Throws InputError
// or FileError for options that do not go together or not with the input.
std::variant<int, SolveOptions, ShowOptions> ParseCommandLine(const std::vector<std::string>& words,
                                                              std::ostream& out, std::ostream& err);

}  // namespace host
