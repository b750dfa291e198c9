// The options that the solver will take, as far as the command must know them.
#pragma once

#include <cstdint>
#include <string>

#include "base/control_file.h"

namespace host {

// The solver's own defaults.
struct SolverOptions {
  std::int32_t constant_term = 2;  // 0 none, 1 always, 2 unless there is a constant column
  std::int32_t maxn = 1000;
  std::int32_t maxp = 25;
  std::string results_file = "linfit.tdx";
};

// From the definition file and the option file that `control` names. Of files with a fault the
// solver takes nothing, and the defaults hold.
SolverOptions ReadSolverOptions(const ControlFile& control);

}  // namespace host
