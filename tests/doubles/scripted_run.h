// Runs the solver on the scripted libraries. README.md beside this file has the script's language.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "tests/support/program.h"

namespace doubles {

struct ScriptedRun {
  testing_support::ProgramResult program;
  std::vector<std::string> trace;  // one line per library call, in order
};

// Runs the copy of linfit that stands beside the scripted libraries, in a temporary directory.
ScriptedRun RunSolver(const std::string& script,
                      const std::vector<std::string>& arguments = {"scripted.cntr"});

// The same for another program.
ScriptedRun RunScripted(const std::filesystem::path& program, const std::string& script,
                        const std::vector<std::string>& arguments);

// Where the scripted libraries stand.
std::filesystem::path DoublesDirectory();

// The texts of all trace lines of one function with a single text: TextsOf(run, "tevStatC").
std::vector<std::string> TextsOf(const ScriptedRun& run, const std::string& function);

}  // namespace doubles
