#include "numerics/gammad.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "numerics/log_gamma.h"
#include "numerics/normal_tail.h"

namespace linfit {

namespace {

constexpr double kOverflow = 1e37;
constexpr double kTolerance = 1e-14;
constexpr double kLargestX = 1e8;       // the result is 1 beyond
constexpr double kNormalFrom = 1000.0;  // normal approximation for larger p
constexpr double kSmallestExponent = -88.0;

// Wilson and Hilferty's normal approximation.
double NormalApproximation(double x, double p) {
  const double z = (3.0 * std::sqrt(p)) * ((std::pow(x / p, 1.0 / 3.0) + 1.0 / (9.0 * p)) - 1.0);
  return NormalTail(z, false);
}

// Pearson's series, for x <= 1 or x < p.
double Series(double x, double p) {
  const double exponent = (p * std::log(x) - x) - DoubleLogGamma(p + 1.0);
  double c = 1.0;
  double sum = 1.0;
  double a = p;
  do {
    a = a + 1.0;
    c = c * x / a;
    sum = sum + c;
  } while (c > kTolerance);
  const double log_value = exponent + std::log(sum);
  return log_value >= kSmallestExponent ? std::exp(log_value) : 0.0;
}

// The continued fraction of the complement.
double Fraction(double x, double p) {
  const double exponent = (p * std::log(x) - x) - DoubleLogGamma(p);
  double a = 1.0 - p;
  double b = (a + x) + 1.0;
  double c = 0.0;
  double p1 = 1.0;
  double p2 = x;
  double p3 = x + 1.0;
  double p4 = x * b;
  double value = p3 / p4;
  for (;;) {
    a = a + 1.0;
    b = b + 2.0;
    c = c + 1.0;
    const double k = a * c;
    const double p5 = b * p3 - k * p1;
    const double p6 = b * p4 - k * p2;
    if (std::fabs(p6) > 0.0) {
      const double r = p5 / p6;
      if (std::fabs(value - r) <= std::min(kTolerance, kTolerance * r)) {
        break;  // with the convergent before the last, as published
      }
      value = r;
    }
    p1 = p3;
    p2 = p4;
    p3 = p5;
    p4 = p6;
    if (std::fabs(p5) >= kOverflow) {
      p1 = p1 / kOverflow;
      p2 = p2 / kOverflow;
      p3 = p3 / kOverflow;
      p4 = p4 / kOverflow;
    }
  }
  const double log_value = exponent + std::log(value);
  return log_value >= kSmallestExponent ? 1.0 - std::exp(log_value) : 1.0;
}

}  // namespace

double GAMMAD(double x, double p, int& ifault) {
  ifault = 0;
  if (std::isnan(x) || std::isnan(p)) {
    return std::numeric_limits<double>::quiet_NaN();  // the fraction would never end
  }
  if (p <= 0.0 || x < 0.0) {
    ifault = 1;
    return 0.0;
  }
  if (x == 0.0) {
    return 0.0;
  }
  if (p > kNormalFrom) {
    return NormalApproximation(x, p);
  }
  if (x > kLargestX) {
    return 1.0;
  }
  return x <= 1.0 || x < p ? Series(x, p) : Fraction(x, p);
}

}  // namespace linfit
