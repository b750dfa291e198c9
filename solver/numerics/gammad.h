// Regularised lower incomplete gamma function in double precision.
//
// B. L. Shea: Algorithm AS 239, Chi-squared and incomplete gamma integral, Appl. Statist. 37
// (1988) 466-473; with A. J. Macleod: Algorithm AS 245, A robust and reliable algorithm for the
// logarithm of the gamma function, Appl. Statist. 38 (1989) 397-402, and I. D. Hill: Algorithm
// AS 66, The normal integral, Appl. Statist. 22 (1973) 424-427.
#pragma once

namespace linfit {

// P(p, x). ifault: 0 no error, 1 p <= 0 or x < 0 (result 0). For p > 1000 a normal approximation,
// good to about 5e-6. An undefined argument gives an undefined result with ifault 0.
double GAMMAD(double x, double p, int& ifault);

}  // namespace linfit
