// The options of `tavolite solve` for tables.
#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

#include "tavolite/solve/front_end.h"

namespace host {

// Texts of the command line, until all of them are known to be good.
struct TableArguments {
  std::string response, separator, query;
  std::vector<std::string> regressors, drop, labels, factors;
  bool intercept = false;
  bool no_intercept = false;
};

// `solve` has the option --options already.
void AddTableOptions(CLI::App& solve, TableArguments& arguments);

// Throws InputError.
void SetTableOptions(const TableArguments& arguments, FrontEndOptions& options);

}  // namespace host
