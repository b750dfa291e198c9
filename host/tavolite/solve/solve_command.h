// `tavolite solve`: a whole solve, from the model's file to the listing.
#pragma once

#include <iosfwd>

#include "tavolite/command/options.h"

namespace host {

// Exit status of the command.
enum ExitStatus {
  kSolved = 0,
  kNotSolved = 1,
  kBadInput = 2,
  kNotFullRank = 3  // solved, but the results mean nothing
};

// Solver log, notes and summary go to `out`, warnings and errors to `err`. Takes over interrupts:
// to be called once in a process, before it starts a thread.
int RunSolve(const SolveOptions& options, std::ostream& out, std::ostream& err);

}  // namespace host
