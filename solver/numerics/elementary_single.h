// Elementary functions of the incomplete beta function ratio, in single precision: from
// A. R. DiDonato, A. H. Morris, Algorithm 708, ACM Trans. Math. Softw. 18 (1992) 360-373, whose
// names for them stand in parentheses.
//
// Each arithmetic operation is rounded to `float`, in the published order. The places that go
// through `double` say so.
#pragma once

#include <limits>

namespace linfit::single {

// Machine constants (SPMPAR, EXPARG). exp is neither 0 nor infinite between kExpMin and kExpMax.
inline constexpr float kEpsilon = std::numeric_limits<float>::epsilon();
inline constexpr float kLogBase = 0.69314718055995f;
inline constexpr float kExpMin = 0.99999f * (-126.0f * kLogBase);
inline constexpr float kExpMax = 0.99999f * (128.0f * kLogBase);

// 1 - v, v - 1 and v + 1 in two steps of one half: the rounding is part of the results.
constexpr float Complement(float v) {
  return 0.5f + (0.5f - v);
}
constexpr float LessOne(float v) {
  return (v - 0.5f) - 0.5f;
}
constexpr float PlusOne(float v) {
  return (v + 0.5f) + 0.5f;
}

// exp(mu + x) without needless overflow of the sum (ESUM).
float ExpSum(int mu, float x);
// exp(x) - 1 (REXP).
float ExpMinusOne(float x);
// log(1 + a), a > -1 (ALNREL).
float LogOnePlus(float a);
// x - log(1 + x), x > -1 (RLOG1).
float XMinusLogOnePlus(float x);
// The error function (ERF).
float Erf(float x);
// The complementary error function (ERFC1 with ind = 0).
float Erfc(float x);
// exp(x^2) times the complementary error function (ERFC1 with ind other than 0).
float ScaledErfc(float x);

}  // namespace linfit::single
