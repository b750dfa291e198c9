// Quantiles of the standard normal distribution.
//
// A rational approximation of the form of Abramowitz and Stegun 26.2.23 and one Newton correction
// with the complementary error function after W. J. Cody: Rational Chebyshev approximations for the
// error function, Math. Comp. 23 (1969) 631-637. Double precision with constants of single
// precision: good to about 3e-6 in the middle and 8e-8 elsewhere.
#pragma once

#include "numerics/error_monitor.h"

namespace linfit {

// The x with Phi(x) = p. A p outside (0, 1) is reported to the error monitor as "G105.1", and the
// result is 0. An undefined p gives an undefined result.
double GAUSIN(double p, ErrorMonitor& monitor);

}  // namespace linfit
