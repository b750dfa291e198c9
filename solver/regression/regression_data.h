// The regression problem taken from the model.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "regression/labelled_name.h"
#include "regression/large_array.h"

namespace linfit {

// Observation k is the k-th row of the model with the objective row left out; coefficient c is the
// c-th column with the objective variable left out. An added intercept is the last column.
struct RegressionData {
  std::int32_t n = 0;                  // number of observations
  std::int32_t p = 0;                  // number of coefficients, the intercept included
  LargeArray DesignMatrix;             // n x p, column-major, leading dimension n
  std::vector<double> ResponseVector;  // n
  NameTable CoefficientNames;          // p records
  NameTable ObservationNames;          // n records
  bool has_intercept = false;          // DesignMatrix holds a column of ones, found or added
  // The option's value; the automatic value 2 becomes 1 when an intercept is added.
  std::int32_t AddConstantTerm = 2;
};

// The size of an array with `count` elements; a negative count is that of an empty one.
inline std::size_t ArraySize(std::int32_t count) {
  return static_cast<std::size_t>(std::max(count, 0));
}

}  // namespace linfit
