// The options that the solver will take: the user's option file, what the command line says, and
// what the model needs.
#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <string>

#include "tavolite/command/options.h"

namespace host {

// The solver's own defaults.
struct SolverOptions {
  std::int32_t constant_term = 2;  // 0 none, 1 always, 2 unless there is a constant column
  std::int32_t maxn = 1000;
  std::int32_t maxp = 25;
  std::string results_file = "linfit.tdx";
  std::string user_lines;   // of the user's option file, as they stand
  std::string added_lines;  // what the command adds, each of them ended

  // What the user's file leaves to the command.
  bool chooses_constant_term = true;
  bool chooses_maxn = true;
  bool chooses_maxp = true;
};

// Reads the user's option file, where there is one, with the solver's definition file in `system`,
// and holds the command's own options against it. Throws InputError for what the solver would not
// take as it is meant, with file and line, and for options that contradict each other.
SolverOptions ReadSolverOptions(const SolveOptions& options, const std::filesystem::path& system);

// Raises the limits that the user has not set to the model's size. For a table, all that the user
// has not set is stated.
void FitToModel(std::size_t observations, std::size_t coefficients, bool is_table,
                SolverOptions& options);

Intercept InterceptOf(const SolverOptions& options);

}  // namespace host
