// Names of rows and columns, from the dictionary.
#pragma once

#include "driver/solver_run.h"
#include "regression/labelled_name.h"

namespace linfit {

// Adds the name of the row or column with the zero-based number `row` or `column` to `names`. There
// is no row -1: it ends the run. Column -1 is the constant.
void AppendRowName(SolverRun& run, int row, NameTable& names);
void AppendColumnName(SolverRun& run, int column, NameTable& names);

}  // namespace linfit
