// Asymptotic expansions of the incomplete beta function ratio I_x(a, b), in single precision: from
// A. R. DiDonato, A. H. Morris, Algorithm 708, ACM Trans. Math. Softw. 18 (1992) 360-373, whose
// names stand in parentheses. y = 1 - x everywhere.
#pragma once

namespace linfit::single {

// Adds I_x(a, b) to `w`, for a >= 15 and b <= 1 (BGRAT). Adds nothing when the expansion can't be
// formed: the result is then below the range, or of no account in `w`.
void AddLargeAExpansion(float a, float b, float x, float y, float& w, float tolerance);

// I_x(a, b) for large a and b, lambda = (a + b) y - b >= 0 (BASYM).
float LargeParameterExpansion(float a, float b, float lambda, float tolerance);

struct GammaRatio {
  float p;
  float q;  // 1 - p
};
// The incomplete gamma ratios P(a, x) and Q(a, x) for a <= 1, where r = exp(-x) x^a / Gamma(a)
// (GRAT1).
GammaRatio SmallParameterGammaRatio(float a, float x, float r, float tolerance);

}  // namespace linfit::single
