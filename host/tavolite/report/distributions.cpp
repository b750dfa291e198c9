#include "tavolite/report/distributions.h"

#include <cmath>
#include <initializer_list>
#include <limits>

namespace host {

namespace {

constexpr double kUndefined = std::numeric_limits<double>::quiet_NaN();

// Converges fast for x below a / (a + b), where it is asked for.
double BetaLowerTail(double a, double b, double x, double y) {
  constexpr double kTiny = 1e-300;
  constexpr int kMaxTerms = 10000;  // about the root of a + b are needed
  const double front = std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) +
                                a * std::log(x) + b * std::log(y)) /
                       a;
  double c = 1.0;
  double d = 1.0 / (1.0 - (a + b) * x / (a + 1.0));
  double fraction = d;
  for (int m = 1; m <= kMaxTerms; ++m) {
    const double even = m * (b - m) * x / ((a + 2 * m - 1) * (a + 2 * m));
    const double odd = -(a + m) * (a + b + m) * x / ((a + 2 * m) * (a + 2 * m + 1));
    double change = 1.0;
    for (const double term : {even, odd}) {
      d = 1.0 / (std::abs(1.0 + term * d) < kTiny ? kTiny : 1.0 + term * d);
      c = std::abs(1.0 + term / c) < kTiny ? kTiny : 1.0 + term / c;
      change = c * d;
      fraction *= change;
    }
    if (std::abs(change - 1.0) < 1e-12) break;
  }
  return front * fraction;
}

}  // namespace

double BetaProbability(double a, double b, double x, double y) {
  if (x <= 0.0 || y <= 0.0) return x <= 0.0 ? 0.0 : 1.0;
  return x < (a + 1.0) / (a + b + 2.0) ? BetaLowerTail(a, b, x, y)
                                       : 1.0 - BetaLowerTail(b, a, y, x);
}

double StudentTwoSidedQuantile(double level, double df) {
  if (!(df > 0.0) || !(level > 0.0 && level < 1.0)) return kUndefined;
  // Bisection on a logarithmic scale; with one degree of freedom t is about 1 / (1 - level).
  double low = std::log(1e-12);
  double high = std::log(1e20);
  for (int step = 0; step < 60; ++step) {
    const double middle = 0.5 * (low + high);
    const double square = std::exp(2.0 * middle);
    const double outside =
        BetaProbability(0.5 * df, 0.5, df / (df + square), square / (df + square));
    (outside > 1.0 - level ? low : high) = middle;
  }
  return std::exp(0.5 * (low + high));
}

double FUpperTail(double f, double df1, double df2) {
  if (!(f >= 0.0) || !(df1 > 0.0) || !(df2 > 0.0)) return kUndefined;
  const double sum = df2 + df1 * f;
  if (std::isinf(sum)) return 0.0;
  return BetaProbability(0.5 * df2, 0.5 * df1, df2 / sum, df1 * f / sum);
}

}  // namespace host
