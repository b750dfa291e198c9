// The factor x^a y^b / B(a, b) of the incomplete beta function ratio, in single precision, and the
// reductions by which it is formed when a parameter is below 1: from A. R. DiDonato, A. H. Morris,
// Algorithm 708, ACM Trans. Math. Softw. 18 (1992) 360-373, whose names stand in parentheses.
#pragma once

namespace linfit::single {

// x^a y^b / B(a, b), y = 1 - x (BRCOMP).
float BetaPower(float a, float b, float x, float y);
// exp(mu) times that (BRCMP1).
float ScaledBetaPower(int mu, float a, float b, float x, float y);

// log of Gamma(1 + low) and the product that brings `high` down to between 1 and 2, for low < 1 and
// 1 < high < 8; `high` keeps the reduced value.
float LogReduction(float low, float& high);
// Takes the last 1 from `high`, after LogReduction; returns 1 / Gamma(low + high) in terms of the
// new value, less the factor that the formulas put elsewhere.
float ReducedSumFactor(float low, float& high);
// Gamma(a + b) / (Gamma(a + 1) Gamma(b + 1)) times a + b, for a, b <= 1.
float SmallParameterFactor(float a, float b);

}  // namespace linfit::single
