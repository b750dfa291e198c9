// The user's option file.
#pragma once

#include "driver/solver_run.h"

namespace linfit {

// Reads the option file, if the model names one, against "optlinfit.def" in the system directory,
// and writes the library's messages to the status file and the log. Nothing here stops the run:
// when the library, the definition file or the option file can't be read, all defaults stay.
void ReadOptions(SolverRun& run);

}  // namespace linfit
