#include "tavolite/report/normal_order.h"

#include <cmath>
#include <initializer_list>
#include <numbers>

namespace host {

namespace {

constexpr double kTail = 0.025;  // on either side of the limits
constexpr std::size_t kExactRanks = 100;

double NormalLowerTail(double z) {
  return 0.5 * std::erfc(-z / std::numbers::sqrt2);
}

// I_x(a, b) by the continued fraction of Abramowitz & Stegun, 26.5.8, evaluated by Lentz's method
// (1976). It converges fast for x below a / (a + b), where it is asked for.
double BetaLowerTail(double a, double b, double x) {
  constexpr double kTiny = 1e-300;
  const double front = std::exp(std::lgamma(a + b) - std::lgamma(a) - std::lgamma(b) +
                                a * std::log(x) + b * std::log1p(-x)) /
                       a;
  double c = 1.0;
  double d = 1.0 / (1.0 - (a + b) * x / (a + 1.0));
  double fraction = d;
  for (int m = 1; m <= 500; ++m) {
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

double BetaProbability(double a, double b, double x) {
  return x < (a + 1.0) / (a + b + 2.0) ? BetaLowerTail(a, b, x)
                                       : 1.0 - BetaLowerTail(b, a, 1.0 - x);
}

// Bisection between points that hold every order statistic's limits for n up to 1e15 and ranks up
// to n/2.
double BetaQuantileAsNormal(double a, double b, double probability) {
  double low = -12.0;
  double high = 6.0;
  for (int step = 0; step < 40; ++step) {
    const double middle = 0.5 * (low + high);
    (BetaProbability(a, b, NormalLowerTail(middle)) < probability ? low : high) = middle;
  }
  return 0.5 * (low + high);
}

}  // namespace

double NormalQuantile(double p) {
  if (p > 0.5) return -NormalQuantile(1.0 - p);
  const double t = std::sqrt(-2.0 * std::log(p));
  double z = -(t - (2.515517 + t * (0.802853 + t * 0.010328)) /
                       (1.0 + t * (1.432788 + t * (0.189269 + t * 0.001308))));
  for (int step = 0; step < 3; ++step) {
    const double density = std::exp(-0.5 * z * z) / std::sqrt(2.0 * std::numbers::pi);
    z -= (NormalLowerTail(z) - p) / density;
  }
  return z;
}

double PlottingPosition(std::size_t rank, std::size_t n) {
  const double a = n <= 10 ? 0.375 : 0.5;
  return (static_cast<double>(rank) - a) / (static_cast<double>(n) + 1.0 - 2.0 * a);
}

OrderLimits NormalOrderLimits(std::size_t rank, std::size_t n) {
  if (rank > n - rank + 1) {
    const OrderLimits mirrored = NormalOrderLimits(n + 1 - rank, n);
    return {-mirrored.high, -mirrored.low};
  }
  const auto a = static_cast<double>(rank);
  const auto b = static_cast<double>(n + 1 - rank);
  if (rank <= kExactRanks) {
    return {BetaQuantileAsNormal(a, b, kTail), BetaQuantileAsNormal(a, b, 1.0 - kTail)};
  }
  const double mean = a / (a + b);
  const double reach = -NormalQuantile(kTail) * std::sqrt(mean * (1.0 - mean) / (a + b + 1.0));
  return {NormalQuantile(mean - reach), NormalQuantile(mean + reach)};
}

}  // namespace host
