#include "numerics/bratio_series.h"

#include <algorithm>
#include <cmath>

#include "numerics/bratio_power.h"
#include "numerics/elementary_single.h"
#include "numerics/gamma_single.h"

namespace linfit::single {

namespace {

constexpr float kEuler = 0.577215664901533f;

// x^a / (a B(a, b)), the factor of the power series.
float PowerSeriesFactor(float a, float b, float x) {
  const float low = std::min(a, b);
  float high = std::max(a, b);
  if (low >= 1.0f) {
    const float z = a * std::log(x) - LogBeta(a, b);
    return std::exp(z) / a;
  }
  if (high >= 8.0f) {
    const float u = LogGammaOnePlus(low) + LogGammaQuotient(low, high);
    const float z = a * std::log(x) - u;
    return (low / a) * std::exp(z);
  }
  if (high > 1.0f) {
    const float u = LogReduction(low, high);
    const float z = a * std::log(x) - u;
    const float t = ReducedSumFactor(low, high);
    return ((std::exp(z) * (low / a)) * (1.0f + ReciprocalGammaLessOne(high))) / t;
  }
  const float power = std::pow(x, a);
  if (power == 0.0f) {
    return 0.0f;
  }
  return (power * SmallParameterFactor(a, b)) * (b / (a + b));
}

// Scaling exp(mu) of the sum in StepDifference, against underflow.
constexpr int kScale = std::min(static_cast<int>(-kExpMin), static_cast<int>(kExpMax));
static_assert(kScale == 87);

// Index of the largest of the n terms of StepDifference, before which none can end the sum.
int LargestTerm(float a, float b, float x, float y, int n) {
  const int last = n - 1;
  if (b <= 1.0f) {
    return 0;
  }
  if (y <= 1e-4f) {
    return last;
  }
  const float r = ((b - 1.0f) * x) / y - a;
  if (r < 1.0f) {
    return 0;
  }
  return r < static_cast<float>(last) ? static_cast<int>(r) : last;
}

}  // namespace

float NegligibleBSeries(float a, float b, float x) {
  float factor = 1.0f;
  if (a > 1e-3f * kEpsilon) {
    const float t = a * std::log(x);
    if (t < kExpMin) {
      return 0.0f;
    }
    factor = std::exp(t);
  }
  factor = (b / a) * factor;
  const float tolerance = kEpsilon / a;
  float n = a + 1.0f;
  float t = x;
  float sum = t / n;
  float c = 0.0f;
  do {
    n = n + 1.0f;
    t = x * t;
    c = t / n;
    sum = sum + c;
  } while (std::fabs(c) > tolerance);
  return factor * (1.0f + a * sum);
}

float NegligibleASeries(float a, float b, float x) {
  const float u = b * x;
  float t = x - u;
  const float c =
      b * kEpsilon > 2e-2f ? (std::log(u) + kEuler) + t : ((std::log(x) + Digamma(b)) + kEuler) + t;
  const float tolerance = (5.0f * kEpsilon) * std::fabs(c);
  float j = 1.0f;
  float sum = 0.0f;
  float q = 0.0f;
  do {
    j = j + 1.0f;
    t = t * (x - u / j);
    q = t / j;
    sum = sum + q;
  } while (std::fabs(q) > tolerance);
  return -(a * (c + sum));
}

float PowerSeries(float a, float b, float x) {
  if (x == 0.0f) {
    return 0.0f;
  }
  const float factor = PowerSeriesFactor(a, b, x);
  if (factor == 0.0f || a <= 0.1f * kEpsilon) {
    return factor;
  }
  const float tolerance = kEpsilon / a;
  float sum = 0.0f;
  float n = 0.0f;
  float c = 1.0f;
  float v = 0.0f;
  do {
    n = n + 1.0f;
    c = (c * Complement(b / n)) * x;
    v = c / (a + n);
    sum = sum + v;
  } while (std::fabs(v) > tolerance);
  return factor * (1.0f + a * sum);
}

float StepDifference(float a, float b, float x, float y, int n) {
  const float s = a + b;
  const float a1 = a + 1.0f;
  const bool scaled = n != 1 && a >= 1.0f && s >= 1.1f * a1;
  const int mu = scaled ? kScale : 0;
  const float first = ScaledBetaPower(mu, a, b, x, y) / a;
  if (n == 1 || first == 0.0f) {
    return first;
  }
  float d = scaled ? std::exp(-static_cast<float>(kScale)) : 1.0f;
  float sum = d;
  const int largest = LargestTerm(a, b, x, y, n);
  for (int i = 1; i < n; ++i) {
    const auto l = static_cast<float>(i - 1);
    d = (((s + l) / (a1 + l)) * x) * d;
    sum = sum + d;
    if (i > largest && d <= kEpsilon * sum) {
      break;
    }
  }
  return first * sum;
}

float ContinuedFraction(float a, float b, float x, float y, float lambda, float tolerance) {
  const float power = BetaPower(a, b, x, y);
  if (power == 0.0f) {
    return 0.0f;
  }
  const float c = 1.0f + lambda;
  const float c0 = b / a;
  const float c1 = 1.0f + 1.0f / a;
  const float y1 = y + 1.0f;
  float n = 0.0f;
  float p = 1.0f;
  float s = a + 1.0f;
  float a_before = 0.0f;  // numerators and denominators of two successive convergents
  float b_before = 1.0f;
  float a_now = 1.0f;
  float b_now = c / c1;
  float r = c1 / c;
  float r_before = 0.0f;
  // Written so that the loop ends on an undefined value.
  do {
    n = n + 1.0f;
    float t = n / a;
    const float w = (n * (b - n)) * x;
    float q = a / s;
    const float alpha = (((p * (p + c0)) * q) * q) * (w * x);
    q = (1.0f + t) / ((c1 + t) + t);
    const float beta = (n + w / s) + q * (c + n * y1);
    p = 1.0f + t;
    s = s + 2.0f;

    t = alpha * a_before + beta * a_now;
    a_before = a_now;
    a_now = t;
    t = alpha * b_before + beta * b_now;
    b_before = b_now;
    b_now = t;

    r_before = r;
    r = a_now / b_now;
    a_before = a_before / b_now;  // rescaled
    b_before = b_before / b_now;
    a_now = r;
    b_now = 1.0f;
  } while (std::fabs(r - r_before) > tolerance * r);
  return power * r;
}

}  // namespace linfit::single
