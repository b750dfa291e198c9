// The run-wide record of one solve: one per process, made in main and handed to every step.
#pragma once

#include <array>
#include <cstdint>
#include <string>

#include "binding/dctmf9glu.h"
#include "binding/optf9glu.h"
#include "binding/palmf9glu.h"
#include "binding/tdxf9glu.h"
#include "binding/tevmf9glu.h"
#include "binding/tmomf9glu.h"
#include "numerics/error_monitor.h"
#include "regression/regression_data.h"
#include "regression/regression_result.h"
#include "resultsfile/key_shape.h"

namespace linfit {

struct SolverOptions {
  std::string results_file_name = "linfit.tdx";  // at most 255 characters
  std::int32_t debug_level = 0;  // above 0: dump of the design matrix and the response
  std::int32_t maxn = 1000;      // largest accepted number of observations
  std::int32_t maxp = 25;        // largest accepted number of coefficients, an intercept included
};

// What the model object uses for infinite bounds. Both are positive on purpose: a bound is infinite
// only when it is exactly one of these two values.
inline constexpr double kPlusInfinity = 3.0e300;
inline constexpr double kMinusInfinity = 4.0e300;

struct SolverRun {
  // Command-line argument 1, at most 300 characters, without trailing blanks.
  std::string ControlFilePath;

  // One binding per library, then the objects made from them. The dictionary is the model object's.
  Pal pal;
  Tev tev;
  Tmo tmo;
  Dct dct;
  Opt opt;
  Tdx tdx;
  Handle audit = nullptr;
  Handle environment = nullptr;
  Handle model = nullptr;
  Handle dictionary = nullptr;
  Handle results_file = nullptr;

  std::array<char, 300> StatusMessageBuffer{};  // blank-padded failure text of a library call
  std::int32_t last_return_code = 0;            // of the most recent library call that returns one

  std::int32_t row_count = 0;           // M, the objective row included
  std::int32_t column_count = 0;        // N, the objective variable included
  std::int32_t objective_row = 0;       // one-based
  std::int32_t objective_variable = 0;  // one-based
  bool read_option_file = false;

  SolverOptions options;
  RegressionData data;
  RegressionResult result;
  ErrorMonitor error_monitor;
  KeyShape coefficient_shape;
  KeyShape observation_shape;
};

}  // namespace linfit
