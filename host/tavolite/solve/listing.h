// The listing: the status file of the solver, followed by the solution under the model's own names.
#pragma once

#include <cstdint>
#include <filesystem>
#include <limits>
#include <optional>
#include <string>
#include <vector>

#include "instance/instance.h"
#include "instance/model.h"
#include "tavolite/solve/results_step.h"

namespace host {

// What a listing needs of a model when its matrix is no longer there.
struct ModelNames {
  std::string model;
  InstanceNames elements;
  std::vector<std::string> notes{};     // what the front end has assumed, what to know of the fit
  std::vector<std::string> warnings{};  // of results that mean nothing or little
  std::int32_t objective_column = -1;
  std::optional<AddedIntercept> intercept{};
  double condition = std::numeric_limits<double>::quiet_NaN();  // of the design; NaN: not known
};

inline constexpr std::int32_t kObjectiveCode = 5;  // of a solution's head and tail values

// Model and solve status in words.
std::string ModelStatusText(std::int32_t status);
std::string SolveStatusText(std::int32_t status);

// The solution's objective value in the shortest digits that read back as the same number, or
// "Infinity", "-Infinity", "NaN"; "not stated" when the solver has stated none.
std::string ObjectiveText(const Solution& solution);
// A number in the same form.
std::string ExactText(double value);

// Writes `listing`: the warnings, the content of `status_file` (nothing when it isn't there), the
// notes, and `solution` when there is one. Throws FileError.
void WriteListing(const std::filesystem::path& listing, const std::filesystem::path& status_file,
                  const ModelNames& names, const Solution* solution);

}  // namespace host
