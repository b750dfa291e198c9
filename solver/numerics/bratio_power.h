// The factor x^a y^b / B(a, b) of the incomplete beta function ratio, in single precision, and the
// reductions by which it is formed when a parameter is below 1: from A. R. DiDonato, A. H. Morris,
// Algorithm 708, ACM Trans. Math. Softw. 18 (1992) 360-373, whose names stand in parentheses.
#pragma once

namespace linfit::single {

// x^a y^b / B(a, b), y = 1 - x (BRCOMP).
float BetaPower(float a, float b, float x, float y);
// exp(mu) times that (BRCMP1).
float ScaledBetaPower(int mu, float a, float b, float x, float y);

// For low < 1 and 1 < high < 8: log Gamma(1 + low) plus the log of the product of high / (low +
// high) over the steps of 1 that bring `high` down to between 1 and 2; `high` keeps the reduced
// value.
float LogReduction(float low, float& high);
// The step after LogReduction: takes 1 from `high` once more and returns 1 / Gamma(1 + low + high).
float ReducedSumFactor(float low, float& high);
// Gamma(1 + a + b) / (Gamma(1 + a) Gamma(1 + b)), for a, b <= 1.
float SmallParameterFactor(float a, float b);

}  // namespace linfit::single
