// What to say about words of a command line that can't be understood.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace host {

// One line that says what is wrong with `words` and what was probably meant. `app` has thrown
// `error` for them.
std::string UsageError(const CLI::App& app, const CLI::ParseError& error,
                       const std::vector<std::string>& words);

}  // namespace host
