#include "driver/solution_return.h"

#include <cstddef>

namespace linfit {
namespace {

constexpr int kModelStatus = 1;
constexpr int kSolveStatus = 1;
constexpr int kBasic = 2;
constexpr int kSuperbasic = 3;
constexpr int kSolutionStatus = 0;

void SetStatusAndTotals(SolverRun& run) {
  const double seconds = run.tev.tevTimeDiff(run.environment);
  run.tmo.tmoModelStatSet(run.model, kModelStatus);
  run.tmo.tmoSolveStatSet(run.model, kSolveStatus);
  run.tmo.tmoSetHeadnTail(run.model, 3, 1.0);
  run.tmo.tmoSetHeadnTail(run.model, 4, seconds);
  run.tmo.tmoSetHeadnTail(run.model, 5, run.result.rss);
  run.tmo.tmoSetHeadnTail(run.model, 6, 0.0);
}

void SetRows(SolverRun& run) {
  std::size_t k = 0;
  for (int row = 1; row <= run.row_count; ++row) {
    const bool is_objective = row == run.objective_row;
    if (!is_objective && k == run.result.resid.size()) break;
    const double level = is_objective ? run.result.rss : run.result.resid[k++];
    run.last_return_code =
        run.tmo.tmoSetSolutionEquRec(run.model, row, level, 0.0, kBasic, kSolutionStatus);
  }
}

void SetColumns(SolverRun& run) {
  std::size_t c = 0;
  for (int column = 1; column <= run.column_count; ++column) {
    if (column == run.objective_variable) {
      run.last_return_code = run.tmo.tmoSetSolutionVarRec(run.model, column, run.result.rss, 0.0,
                                                          kBasic, kSolutionStatus);
    } else if (c < run.result.estimate.size()) {
      run.last_return_code =
          run.tmo.tmoSetSolutionVarRec(run.model, column, run.result.estimate[c], run.result.se[c],
                                       kSuperbasic, kSolutionStatus);
      ++c;
    }
  }
}

}  // namespace

void ReturnSolution(SolverRun& run) {
  SetStatusAndTotals(run);
  SetRows(run);
  SetColumns(run);
  run.last_return_code = run.tmo.tmoUnloadSolutionLegacy(run.model);
  run.tmo.tmoXFree(run.model);
  run.tev.tevXFree(run.environment);
}

}  // namespace linfit
