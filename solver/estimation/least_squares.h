// Ordinary least squares: the coefficients b that minimise ||A b - y||, and (A'A)^-1.
//
// One QR factorisation A = QR by LAPACK's DGELS gives the coefficients, and DPOTRI inverts R'R from
// the R that DGELS leaves. A'A itself is never formed.
#pragma once

#include "regression/outcome.h"
#include "regression/regression_data.h"
#include "regression/regression_result.h"

namespace linfit {

// Fills `estimate` (p) and `unscaled_covariance` (p x p, column-major, symmetric) of `result`.
// `data` stays as it is; the one work copy of the design matrix is gone on return.
//
// A fails when it is badly scaled: the largest absolute entry is 0, below DLAMCH('S')/DLAMCH('P')
// or above its reciprocal. A design without full rank does not fail: LAPACK's INFO is written as a
// diagnostic, and the results are what the routines left. An argument that LAPACK itself refuses
// (n < p is one) prints LAPACK's message on standard output and ends the process with exit status
// 0. Throws std::bad_alloc or std::length_error when there isn't enough memory.
[[nodiscard]] Failure SolveLeastSquares(const RegressionData& data, RegressionResult& result,
                                        const LineSink& diagnostic);

}  // namespace linfit
