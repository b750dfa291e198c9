#include "driver/model_check.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "driver/debug_dump.h"
#include "driver/naming.h"
#include "driver/output.h"

namespace linfit {
namespace {

constexpr int kEqualityType = 0;
constexpr int kAutomatic = 2;

void CheckSize(SolverRun& run) {
  RegressionData& data = run.data;
  // A library that works gives no negative counts; with any other one the differences stay in
  // range.
  data.n = std::max(run.row_count, 0) - 1;
  data.p = std::max(run.column_count, 0) - (data.AddConstantTerm > 0 ? 0 : 1);
  if (data.n > run.options.maxn) FatalStop(run, "maxn limit exceeded");
  if (data.p > run.options.maxp) FatalStop(run, "maxp limit exceeded");
}

void Allocate(RegressionData& data) {
  data.DesignMatrix.resize(ArraySize(data.n) * ArraySize(data.p));
  data.ResponseVector.assign(ArraySize(data.n), 0.0);
  Reserve(data.CoefficientNames, ArraySize(data.p));
  Reserve(data.ObservationNames, ArraySize(data.n));
}

// The model holds y - A b = 0 with y moved to the right-hand side: both signs are turned back.
void ReadRows(SolverRun& run) {
  RegressionData& data = run.data;
  std::size_t k = 0;
  for (int row = 1; row <= run.row_count && k < data.ResponseVector.size(); ++row) {
    if (row == run.objective_row) continue;
    data.ResponseVector[k] = -run.tmo.tmoGetRhsOne(run.model, row);
    if (run.tmo.tmoGetEquTypeOne(run.model, row) != kEqualityType) {
      FatalStop(run, "Only equality constraints are allowed");
    }
    AppendRowName(run, row - 1, data.ObservationNames);
    ++k;
  }
}

int EntryCount(SolverRun& run, int column) {
  int entries = 0;
  int positive = 0;
  int negative = 0;
  int nonlinear = 0;
  run.last_return_code =
      run.tmo.tmoGetColStat(run.model, column, entries, positive, negative, nonlinear);
  return entries;
}

void ReadEntries(SolverRun& run, int column, double* target) {
  // No column has more entries than the model has rows.
  const int entries = std::min(EntryCount(run, column), run.row_count);
  Handle cursor = nullptr;
  for (int e = 0; e < entries; ++e) {
    double value = 0.0;
    int row = 0;
    int nonlinear = 0;
    run.tmo.tmoGetColJacInfoOne(run.model, column, cursor, value, row, nonlinear);
    const int observation = row > run.objective_row ? row - 1 : row;
    // An entry in the objective row has no place of its own; as the last row it has none at all.
    if (observation >= 1 && observation <= run.data.n) target[observation - 1] = -value;
  }
}

void ReadColumns(SolverRun& run) {
  RegressionData& data = run.data;
  const std::size_t n = ArraySize(data.n);
  const std::size_t variables = ArraySize(std::max(run.column_count, 1) - 1);
  std::size_t c = 0;
  for (int column = 1; column <= run.column_count; ++column) {
    if (column == run.objective_variable) {
      if (EntryCount(run, column) != 1) {
        FatalStop(run, "Objective variable must occur only in free objective row");
      }
      continue;
    }
    if (c == variables) break;
    if (run.tmo.tmoGetVarLowerOne(run.model, column) != kMinusInfinity ||
        run.tmo.tmoGetVarUpperOne(run.model, column) != kPlusInfinity) {
      FatalStop(run, "Only free variables are allowed.");
    }
    ReadEntries(run, column, data.DesignMatrix.data() + c * n);
    AppendColumnName(run, column - 1, data.CoefficientNames);
    ++c;
  }
}

bool HoldsConstantColumn(const RegressionData& data) {
  const std::size_t n = ArraySize(data.n);
  for (std::size_t c = 0; c + 1 < ArraySize(data.p); ++c) {
    const double* const column = data.DesignMatrix.data() + c * n;
    if (std::all_of(column, column + n, [](double a) { return std::abs(a - 1.0) <= 1e-10; })) {
      return true;
    }
  }
  return false;
}

}  // namespace

void FindOrAddIntercept(RegressionData& data) {
  data.has_intercept = HoldsConstantColumn(data);
  const std::size_t n = ArraySize(data.n);
  if (data.AddConstantTerm == kAutomatic) {
    if (data.has_intercept) {
      --data.p;
      data.DesignMatrix.resize(n * ArraySize(data.p));
    } else {
      data.AddConstantTerm = 1;
    }
  }
  if (data.p < 1) return;
  if (data.AddConstantTerm == 1) {
    std::fill_n(data.DesignMatrix.begin() + static_cast<std::ptrdiff_t>(n * ArraySize(data.p - 1)),
                n, 1.0);
    AppendIntercept(data.CoefficientNames);
    data.has_intercept = true;
  } else if (data.AddConstantTerm > kAutomatic) {
    AppendBlank(data.CoefficientNames);
  }
}

void CheckAndExtract(SolverRun& run) {
  CheckSize(run);
  Allocate(run.data);
  ReadRows(run);
  ReadColumns(run);
  FindOrAddIntercept(run.data);
  run.result.estimate.assign(ArraySize(run.data.p), 0.0);
  if (run.options.debug_level > 0) WriteDebugDump(run);
}

}  // namespace linfit
