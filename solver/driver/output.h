// What the run writes after start-up, and how it stops.
//
// Texts go to the status file, to the log, or to both; each is one line. All but Stop need the
// environment object.
#pragma once

#include <string_view>

#include "driver/solver_run.h"

namespace linfit {

// Leveled line output. Level 0 or less: the status file, as plain text. Level 1: the status file,
// as a message. Level 2 or more: the log as well.
void WriteLine(SolverRun& run, std::string_view text, int level);

// One message to the status file, then the same to the log: level 2.
void WriteStatAndLog(SolverRun& run, std::string_view text);

// Stops the run after a failure: writes `text` to the status file and to the log, frees the model
// object and then the environment object, and ends the process with exit status 0. That there is no
// solution shows in the model and solve status, which stay unset.
[[noreturn]] void FatalStop(SolverRun& run, std::string_view text);

// The end of a fatal stop, for a step that has written its text itself.
[[noreturn]] void FreeAndStop(SolverRun& run);

// Ends the process with exit status 0; standard output is flushed first.
[[noreturn]] void Stop();

}  // namespace linfit
