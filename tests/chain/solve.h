// Whole solves through the command `tavolite`, and what they leave behind.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "tests/chain/data_sets.h"
#include "tests/support/program.h"

namespace chain {

std::filesystem::path Binary(const std::string& name);

// One solve in a directory of its own.
struct Solve {
  testing_support::TemporaryDirectory directory;
  testing_support::ProgramResult result;

  // The listing from the coefficient table's header to the F statistic.
  [[nodiscard]] std::string Report(const std::string& listing) const;
  // The records of a symbol in the results file: keys joined by "|", and the value.
  [[nodiscard]] Values Symbol(const std::string& name) const;
};

// By the MathProg model of the set.
void SolveModel(const DataSet& set, Solve& solve);
// By the set's table, with the command's own options for tables.
void SolveTable(const DataSet& set, Solve& solve);

}  // namespace chain
