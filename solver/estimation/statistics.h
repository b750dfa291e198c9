// The classical statistics of a least-squares fit.
#pragma once

#include "regression/outcome.h"
#include "regression/regression_data.h"
#include "regression/regression_result.h"

namespace linfit {

// Fills everything in `result` but `estimate` and `unscaled_covariance`, which it reads.
// `diagnostic` receives one line per t probability; that of the F test is the report's. Fails when
// there is no degree of freedom; divisions by zero elsewhere (a perfect fit, a model that is only
// an intercept) give infinite or undefined values.
//
// With an intercept the explained sum of squares is taken about the mean of the fitted values,
// without one about zero; the total is explained plus residual sum of squares.
[[nodiscard]] Failure ComputeStatistics(const RegressionData& data, RegressionResult& result,
                                        const LineSink& diagnostic);

// Degrees of freedom that the F test's numerator has: p, less one with an intercept.
[[nodiscard]] int NumeratorDegrees(const RegressionData& data);

}  // namespace linfit
