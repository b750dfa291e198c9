// The system's own way to run a program; one source file per system.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/program.h"

namespace testing_support {

// Runs a program to its end with no standard input and the two outputs in files; returns its exit
// code, or 128 + the signal that ended it. Throws std::runtime_error when it can't be started.
int RunProcess(const std::filesystem::path& program, const std::vector<std::string>& arguments,
               const RunOptions& options, const std::filesystem::path& out,
               const std::filesystem::path& err);

// Ends this process at once, as when it is killed from outside: nothing is cleaned up.
[[noreturn]] void KillThisProcess();

}  // namespace testing_support
