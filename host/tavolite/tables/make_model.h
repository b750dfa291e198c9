// From a table to a model: one row per observation, one column per regressor.
#pragma once

#include <string>
#include <vector>

#include "instance/model.h"
#include "tavolite/command/options.h"
#include "tavolite/tables/plan.h"
#include "tavolite/tables/rows.h"

namespace host {

struct TableModel {
  // Rows fit(labels) or fit(row number), columns rss and one under the name of each regressor; the
  // row `objective` is the last. A factor has a column name=level for each level but the first;
  // where there is no intercept, neither added nor as a column, the first factor has one for each
  // level.
  Model model;
  std::vector<std::string> notes;  // what was left out and assumed
};

// Throws InputError.
TableModel MakeTableModel(const TablePlan& plan, TableRows rows, Intercept intercept);

}  // namespace host
