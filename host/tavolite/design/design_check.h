// Whether the design of a model has full rank. The solver does not tell: it divides by what
// rounding has left of a dependent column.
#pragma once

#include <cstdint>
#include <filesystem>
#include <stop_token>
#include <string>
#include <vector>

#include "instance/model.h"
#include "tavolite/design/rank.h"

namespace host {

inline constexpr std::int32_t kAddedIntercept = -1;

struct DesignCheck {
  std::size_t rows = 0;
  double response_size = 0.0;         // root of the mean square
  std::vector<std::int32_t> columns;  // numbers in the model, or kAddedIntercept
  Rank rank;                          // its columns are places in `columns`
};

// `add_constant_term` is the solver's option of that name. Throws what reading the instance, LAPACK
// and memory throw. After `stop`, what it returns is of no use.
DesignCheck CheckDesign(const std::filesystem::path& instance, int add_constant_term,
                        const std::stop_token& stop = {});

// One sentence for each dependence, or one on what a nearly dependent design does to the results;
// none for a good design.
std::vector<std::string> DesignWarnings(const DesignCheck& check, const Dictionary& dictionary,
                                        const ElementNames& columns);

// Two digits: more would not be right.
std::string ConditionText(double condition);

}  // namespace host
