#include "numerics/distributions.h"

#include <limits>

#include "numerics/bratio.h"
#include "numerics/gammad.h"

namespace linfit {

namespace {

// I_x(a, b) in single precision. The complement of x is formed after the rounding of x, not from
// what x was made of.
Probability FromBratio(double a, double b, double x) {
  const auto single_x = static_cast<float>(x);
  const float y = 1.0f - single_x;
  float w = 0.0f;
  float w1 = 0.0f;
  Probability probability{0.0, ProbabilitySource::kBratio, 0};
  BRATIO(static_cast<float>(a), static_cast<float>(b), single_x, y, w, w1, probability.indicator);
  probability.value = static_cast<double>(w);
  return probability;
}

Probability FromGammad(double x, double p) {
  Probability probability{0.0, ProbabilitySource::kGammad, 0};
  probability.value = GAMMAD(x, p, probability.indicator);
  return probability;
}

Probability OneMinus(Probability probability) {
  probability.value = 1.0 - probability.value;
  return probability;
}

}  // namespace

Probability StudentTwoSidedTail(double t, double df) {
  return FromBratio(df * 0.5, 0.5, df / (t * t + df));
}

Probability StudentOneSidedTail(double t, double df) {
  Probability probability = StudentTwoSidedTail(t, df);
  probability.value *= 0.5;
  return probability;
}

Probability ChiSquareCdf(double x, double k) {
  return FromGammad(x * 0.5, k * 0.5);
}

Probability GammaRatioOfQuotient(double u, double v, double p) {
  return FromGammad(u / v, p);
}

Probability FCdf(double f, double d1, double d2) {
  if (d1 <= 0.0 || d2 <= 0.0) {
    return {std::numeric_limits<double>::max(), ProbabilitySource::kNone, 0};
  }
  if (d2 > kLargestBetaDegrees) {
    return FromGammad(f * d1 * 0.5, d1 * 0.5);  // d1 F is chi-square with d1 degrees
  }
  if (d1 > kLargestBetaDegrees) {
    return OneMinus(FromGammad((d2 / f) * 0.5, d2 * 0.5));  // d2 / F with d2 degrees
  }
  return OneMinus(FromBratio(d2 / 2.0, d1 / 2.0, d2 / (f * d1 + d2)));
}

std::string DiagnosticLine(const Probability& probability) {
  switch (probability.source) {
    case ProbabilitySource::kBratio:
      return " bratio, ierr = " + std::to_string(probability.indicator);
    case ProbabilitySource::kGammad:
      return " gammad, ifault = " + std::to_string(probability.indicator);
    case ProbabilitySource::kNone:
      break;
  }
  return {};
}

}  // namespace linfit
