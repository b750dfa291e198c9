// Regression problems for tests.
#pragma once

#include <cstdint>
#include <vector>

#include "regression/regression_data.h"

namespace linfit {

// `columns`: those of the design matrix.
inline RegressionData Problem(const std::vector<std::vector<double>>& columns,
                              const std::vector<double>& y, bool has_intercept = false) {
  RegressionData data;
  data.n = static_cast<std::int32_t>(y.size());
  data.p = static_cast<std::int32_t>(columns.size());
  for (const auto& column : columns) {
    for (const double value : column) data.DesignMatrix.push_back(value);
  }
  data.ResponseVector = y;
  data.has_intercept = has_intercept;
  return data;
}

}  // namespace linfit
