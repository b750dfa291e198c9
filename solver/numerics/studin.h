// Quantiles of Student's t distribution.
//
// G. W. Hill: Algorithm 396, Student's t-quantiles, Comm. ACM 13 (1970) 619-620, in double
// precision with constants of single precision, so that the results have about seven digits.
#pragma once

#include <functional>
#include <string_view>

#include "numerics/error_monitor.h"

namespace linfit {

// The t with P(T <= t) = p for `df` degrees of freedom. ifault: 0 no error, 1 df < 1, 2 p not
// strictly between 0 and 1; the result is 0 on 1 and 2, and 1 is looked for first. An undefined p
// gives an undefined result with ifault 0. `monitor` is GAUSIN's.
double STUDIN(double p, int df, int& ifault, ErrorMonitor& monitor);

// The message for an ifault of STUDIN; empty for 0.
std::string_view StudinFailureText(int ifault);

// -STUDIN(p, df): the t that is exceeded with probability p. On an error `stop` is called with the
// message. It has to end the run (or to throw); the process is aborted should it return. The
// program itself takes its quantiles from STUDIN.
double UpperStudentQuantile(double p, int df, ErrorMonitor& monitor,
                            const std::function<void(std::string_view message)>& stop);

}  // namespace linfit
