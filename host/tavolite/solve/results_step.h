// What the results file tells beyond the solution that the solver returns.
#pragma once

#include <chrono>
#include <filesystem>
#include <string>

#include "instance/instance.h"
#include "tdx/tdx_reader.h"

namespace host {

// A coefficient that the model does not have.
struct AddedIntercept {
  double estimate = 0.0;
  double standard_error = 0.0;
};

// The intercept that the solver has added. The objective's column has no estimate. Throws FileError
// when the file can't be read or is not the one that goes with `solution`.
AddedIntercept ReadAddedIntercept(TdxReader& results, const Solution& solution,
                                  std::int32_t objective_column);

// For a solve that began at `start` and has failed: a line that says whose results stand in the
// file; empty when there are none from before.
std::string EarlierResults(const std::filesystem::path& results,
                           std::filesystem::file_time_type start);

}  // namespace host
