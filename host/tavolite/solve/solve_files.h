// Where the files of a solve stand that the user may leave to the command.
#pragma once

#include <filesystem>

#include "tavolite/command/options.h"

namespace host {

inline constexpr const char* kDefinitionFile = "optlinfit.def";

// The solver's program, as an absolute path. Throws InputError where there is none.
std::filesystem::path FindSolver(const SolveOptions& options);

// The listing as the user names it, else the input's name with .lst, here.
std::filesystem::path ChooseListing(const SolveOptions& options);

// What a solve writes must neither destroy what it reads, nor another output, nor a file that is no
// results file, and must not fail after a long run: throws InputError.
void CheckFiles(const SolveOptions& options, const std::filesystem::path& solver,
                const std::filesystem::path& listing, const std::filesystem::path& results);

// Where the solver finds the definition file of its options: beside itself. Without one there, ours
// must do.
std::filesystem::path SystemDirectory(const std::filesystem::path& solver);

}  // namespace host
