// The model's shape, and the regression problem in it.
#pragma once

#include "driver/solver_run.h"

namespace linfit {

// Accepts a model only when it is a least-squares fit: a free objective row, which alone holds the
// objective variable, one equality row per observation, and free coefficient variables. Fills
// `run.data` from it. Everything else ends the run with the text of the first rule that is broken.
void CheckAndExtract(SolverRun& run);

// Sets the has-intercept flag when a column of ones is found, and adds the intercept column, for
// which the last column is reserved, as AddConstantTerm says:
//   0          none
//   1          always
//   2          unless a column of ones was found; the reserved column is then given up
//   3 or more  none; the reserved column stays zero, its name blank
// The search leaves out the last column, reserved or not.
void FindOrAddIntercept(RegressionData& data);

}  // namespace linfit
