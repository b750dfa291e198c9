// Logarithm of the gamma function in double precision.
//
// A. J. Macleod: Algorithm AS 245, A robust and reliable algorithm for the logarithm of the gamma
// function, Appl. Statist. 38 (1989) 397-402. Absolute error 3e-10 below 4, 1.5e-8 from 4 to 12,
// 1e-12 beyond.
#pragma once

namespace linfit {

// log Gamma(x), 0 < x < 1e305.
[[nodiscard]] double DoubleLogGamma(double x);

}  // namespace linfit
