// What a user can do about a model that the solver has refused.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

#include "instance/model.h"
#include "tavolite/command/options.h"
#include "tavolite/solve/solver_options.h"

namespace host {

// What of a model the solver may refuse: the first of each kind, empty when there is none.
struct ModelFaults {
  std::size_t observations = 0;
  std::size_t coefficients = 0;
  bool has_constant = false;  // a column of ones, as the solver sees it
  std::string inequality;     // a row
  std::string unbounded_row;  // besides the objective's
  std::string bounded;        // a variable
  double lower = 0.0;         // its bounds
  double upper = 0.0;
  std::string objective;        // the objective's variable,
  std::string objective_place;  // and another row in which it stands
};

ModelFaults FindFaults(const Model& model);

// Whether the solver adds an intercept to such a model.
bool AddsIntercept(const ModelFaults& faults, const SolverOptions& options);

// What is wrong when there are fewer rows than the solver must have; empty when there are enough.
std::string TooFewRows(const ModelFaults& faults, const SolverOptions& options);

// A line that names the row, variable or value behind `message`, the solver's last line, and what
// to do; empty when there is nothing to add.
std::string Remedy(std::string_view message, const ModelFaults& faults, InputFormat format,
                   const SolverOptions& options);

}  // namespace host
