// Gamma and beta functions in single precision: the supporting routines of A. R. DiDonato,
// A. H. Morris, Algorithm 708, ACM Trans. Math. Softw. 18 (1992) 360-373, whose names for them
// stand in parentheses.
#pragma once

namespace linfit::single {

// 1 / Gamma(a + 1) - 1, -0.5 <= a <= 1.5 (GAM1).
float ReciprocalGammaLessOne(float a);
// log Gamma(1 + a), -0.2 <= a <= 1.25 (GAMLN1).
float LogGammaOnePlus(float a);
// log Gamma(a), a > 0 (GAMLN).
float LogGamma(float a);
// log Gamma(a + b), 1 <= a, b <= 2 (GSUMLN).
float LogGammaOfSum(float a, float b);
// log(Gamma(b) / Gamma(a + b)), b >= 8 (ALGDIV).
float LogGammaQuotient(float a, float b);
// R(a) + R(b) - R(a + b), a, b >= 8, where R is the remainder of Stirling's formula for log Gamma
// (BCORR).
float StirlingCorrection(float a, float b);
// log B(a, b), a, b > 0 (BETALN).
float LogBeta(float a, float b);
// The logarithmic derivative of Gamma; 0 where it can't be computed (PSI).
float Digamma(float x);

}  // namespace linfit::single
