// The regression problem in print, for debugging a model.
#pragma once

#include "driver/solver_run.h"

namespace linfit {

// Writes the design matrix, one line per observation, and the response, five values to a line, to
// the status file.
void WriteDebugDump(SolverRun& run);

}  // namespace linfit
