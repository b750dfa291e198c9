// The estimation and its report, with what they write.
#pragma once

#include "driver/solver_run.h"

namespace linfit {

// Fills `run.result`. Diagnostics go to the status file; a problem that can't be solved ends the
// run.
void Estimate(SolverRun& run);

// Writes the report to the status file and the log.
void PrintReport(SolverRun& run);

}  // namespace linfit
