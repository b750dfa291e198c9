#include "tavolite/report/normal_order.h"

#include <cmath>
#include <numbers>

#include "tavolite/report/distributions.h"

namespace host {

namespace {

constexpr double kTail = 0.025;  // on either side of the limits
constexpr std::size_t kExactRanks = 100;

double NormalLowerTail(double z) {
  return 0.5 * std::erfc(-z / std::numbers::sqrt2);
}

// Bisection between points that hold every order statistic's limits for n up to 1e15 and ranks up
// to n/2.
double BetaQuantileAsNormal(double a, double b, double probability) {
  double low = -12.0;
  double high = 6.0;
  for (int step = 0; step < 40; ++step) {
    const double middle = 0.5 * (low + high);
    const double p = NormalLowerTail(middle);
    (BetaProbability(a, b, p, 1.0 - p) < probability ? low : high) = middle;
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
