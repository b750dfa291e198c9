#include "numerics/bratio_power.h"

#include <algorithm>
#include <cmath>

#include "numerics/elementary_single.h"
#include "numerics/gamma_single.h"

namespace linfit::single {

namespace {

constexpr float kOneOverSqrtTwoPi = 0.398942280401433f;

// 1 / Gamma(1 + a + b), by way of a + b - 1 when the sum is above 1.
float ReciprocalGammaOfSum(float a, float b) {
  const float s = a + b;
  if (s > 1.0f) {
    const double sum = static_cast<double>(a) + static_cast<double>(b);
    return (1.0f + ReciprocalGammaLessOne(static_cast<float>(sum - 1.0))) / s;  // sum in double
  }
  return 1.0f + ReciprocalGammaLessOne(s);
}

// One of the two exponents of the large-parameter form: q - log(1 + q), q the relative distance of
// x from its mean.
float Deviation(float q, float x, float mean) {
  return std::fabs(q) > 0.6f ? q - std::log(x / mean) : XMinusLogOnePlus(q);
}

// min(a, b) >= 8. `exponential` is exp, or exp with a scaling.
template <class Exponential>
float LargePower(float a, float b, float x, float y, Exponential exponential) {
  float x_mean = 0.0f;
  float y_mean = 0.0f;
  float lambda = 0.0f;
  if (a > b) {
    const float h = b / a;
    x_mean = 1.0f / (1.0f + h);
    y_mean = h / (1.0f + h);
    lambda = (a + b) * y - b;
  } else {
    const float h = a / b;
    x_mean = h / (1.0f + h);
    y_mean = 1.0f / (1.0f + h);
    lambda = a - (a + b) * x;
  }
  const float u = Deviation(-lambda / a, x, x_mean);
  const float v = Deviation(lambda / b, y, y_mean);
  const float z = exponential(-(a * u + b * v));
  return ((kOneOverSqrtTwoPi * std::sqrt(b * x_mean)) * z) * std::exp(-StirlingCorrection(a, b));
}

// a log x + b log y, from the smaller of x and y where it is small.
float LogPower(float a, float b, float x, float y) {
  if (x <= 0.375f) {
    return a * std::log(x) + b * LogOnePlus(-x);
  }
  if (y <= 0.375f) {
    return a * LogOnePlus(-y) + b * std::log(y);
  }
  return a * std::log(x) + b * std::log(y);
}

template <class Exponential>
float Power(float a, float b, float x, float y, Exponential exponential) {
  const float low = std::min(a, b);
  if (low >= 8.0f) {
    return LargePower(a, b, x, y, exponential);
  }
  const float z = LogPower(a, b, x, y);
  if (low >= 1.0f) {
    return exponential(z - LogBeta(a, b));
  }
  float high = std::max(a, b);
  if (high >= 8.0f) {
    const float u = LogGammaOnePlus(low) + LogGammaQuotient(low, high);
    return low * exponential(z - u);
  }
  if (high > 1.0f) {
    const float u = LogReduction(low, high);
    const float power = exponential(z - u);
    const float t = ReducedSumFactor(low, high);
    return ((low * power) * (1.0f + ReciprocalGammaLessOne(high))) / t;
  }
  const float power = exponential(z);
  if (power == 0.0f) {
    return 0.0f;
  }
  return (power * (low * SmallParameterFactor(a, b))) / (1.0f + low / high);
}

}  // namespace

float BetaPower(float a, float b, float x, float y) {
  if (x == 0.0f || y == 0.0f) {
    return 0.0f;
  }
  return Power(a, b, x, y, [](float z) { return std::exp(z); });
}

float ScaledBetaPower(int mu, float a, float b, float x, float y) {
  return Power(a, b, x, y, [mu](float z) { return ExpSum(mu, z); });
}

float LogReduction(float low, float& high) {
  const float u = LogGammaOnePlus(low);
  const int m = static_cast<int>(high - 1.0f);
  if (m < 1) {
    return u;
  }
  float c = 1.0f;
  for (int i = 0; i < m; ++i) {
    high = high - 1.0f;
    c = c * (high / (low + high));
  }
  return std::log(c) + u;
}

float ReducedSumFactor(float low, float& high) {
  high = high - 1.0f;
  return ReciprocalGammaOfSum(low, high);
}

float SmallParameterFactor(float a, float b) {
  const float z = ReciprocalGammaOfSum(a, b);
  return ((1.0f + ReciprocalGammaLessOne(a)) * (1.0f + ReciprocalGammaLessOne(b))) / z;
}

}  // namespace linfit::single
