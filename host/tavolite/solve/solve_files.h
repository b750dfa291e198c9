// Where the files of a solve stand that the user may leave to the command.
#pragma once

#include <filesystem>

#include "tavolite/command/options.h"

namespace host {

inline constexpr const char* kDefinitionFile = "optlinfit.def";

// The solver's program, as an absolute path. Throws InputError where there is none.
std::filesystem::path FindSolver(const SolveOptions& options);

// The listing must neither destroy what the solve reads nor fail after a long run: throws
// InputError.
std::filesystem::path ChooseListing(const SolveOptions& options);

// The same for the page of the fit, where one is wanted; it must not be the listing either.
void CheckReport(const SolveOptions& options, const std::filesystem::path& listing);

// Where the solver finds the definition file of its options: beside itself. Without one there, ours
// must do.
std::filesystem::path SystemDirectory(const std::filesystem::path& solver);

}  // namespace host
