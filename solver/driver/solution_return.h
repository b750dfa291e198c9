// The solution, handed back to the modelling system.
#pragma once

#include "driver/solver_run.h"

namespace linfit {

// Sets model and solve status, time and objective, and the solution of every row and column:
//
//                        level      marginal   basis status
//   objective row        rss        0          2
//   observation          resid      0          2
//   objective variable   rss        0          2
//   coefficient          estimate   se         3
//
// and unloads them. The model object and the environment object are freed then.
void ReturnSolution(SolverRun& run);

}  // namespace linfit
