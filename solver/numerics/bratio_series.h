// Power series, finite sums and the continued fraction of the incomplete beta function ratio
// I_x(a, b), in single precision: from A. R. DiDonato, A. H. Morris, Algorithm 708, ACM Trans.
// Math. Softw. 18 (1992) 360-373, whose names stand in parentheses. y = 1 - x everywhere.
#pragma once

namespace linfit::single {

// I_x(a, b) for b < min(eps, eps a) and x <= 0.5 (FPSER).
float NegligibleBSeries(float a, float b, float x);
// I_(1-x)(b, a) for a <= min(eps, eps b), b x <= 1 and x <= 0.5 (APSER).
float NegligibleASeries(float a, float b, float x);
// I_x(a, b) for b <= 1 or b x <= 0.7 (BPSER).
float PowerSeries(float a, float b, float x);
// I_x(a, b) - I_x(a + n, b), n >= 1 (BUP).
float StepDifference(float a, float b, float x, float y, int n);
// I_x(a, b) for a, b > 1 by the continued fraction, lambda = (a + b) y - b (BFRAC).
float ContinuedFraction(float a, float b, float x, float y, float lambda, float tolerance);

}  // namespace linfit::single
