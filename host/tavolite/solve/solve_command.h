// `tavolite solve`: a whole solve, from the model's file to the listing.
#pragma once

#include <filesystem>
#include <iosfwd>

#include "tavolite/solve/front_end.h"

namespace host {

struct SolveOptions {
  FrontEndOptions input;
  std::filesystem::path option_file;  // the solver's; empty: none
  std::filesystem::path work;     // where the scratch directory is made; empty: the system's place
  std::filesystem::path listing;  // empty: the model's name with .lst, in the current directory
  std::filesystem::path solver;   // empty: beside this program
  std::filesystem::path timing;   // takes the seconds of each step; empty: none
  bool keep = false;              // the scratch directory stays
  bool quiet = false;             // nothing on `out`
};

// Exit status of the command.
enum ExitStatus { kSolved = 0, kNotSolved = 1, kBadInput = 2, kInterrupted = 130 };

// Solver log, notes and summary go to `out`, warnings and errors to `err`. Takes over Ctrl-C: to be
// called once in a process.
int RunSolve(const SolveOptions& options, std::ostream& out, std::ostream& err);

}  // namespace host
