// An instance: one model and, after the solve, its solution, in a SQLite database with a file of
// arrays beside it. docs/host-files.md describes both.
#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <vector>

#include "base/text_file.h"
#include "instance/instance_names.h"
#include "instance/model.h"

namespace host {

inline constexpr std::int32_t kMaxElements = 100'000'000;  // rows; columns

// Writes a new instance; an older file of that name is replaced. A dictionary without symbols means
// that the instance has no dictionary. Throws FileError when the model is inconsistent (the message
// says where) or the file can't be written; no half-written file stays behind.
void WriteInstance(const Model& model, const std::filesystem::path& file);

// Removes what WriteInstance writes, as far as it can be.
void RemoveInstance(const std::filesystem::path& file) noexcept;

// The solution of all rows or of all columns, in their order.
struct SolutionPart {
  std::vector<double> level;
  std::vector<double> marginal;
  std::vector<std::int32_t> basis;   // basis status as the solver gave it
  std::vector<std::int32_t> status;  // status of the record as the solver gave it
};

struct Solution {
  std::int32_t model_status = 0;
  std::int32_t solve_status = 0;
  std::map<std::int32_t, double>
      head_and_tail;  // by code: 3 iterations, 4 seconds, 5 objective, ...
  SolutionPart rows;
  SolutionPart columns;
};

// Stores the solution; an older one is replaced. It counts from when all of it is there. Throws
// FileError.
void WriteSolution(const Solution& solution, const std::filesystem::path& instance);

// Empty when the instance holds no solution. `names` receives the model's names where there is one.
// Throws FileError when it can't be read or is damaged.
std::optional<Solution> ReadSolution(const std::filesystem::path& instance,
                                     InstanceNames* names = nullptr);

}  // namespace host
