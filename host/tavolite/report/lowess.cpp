#include "tavolite/report/lowess.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace host {

namespace {

double Cube(double value) {
  return value * value * value;
}

double Square(double value) {
  return value * value;
}

// The weighted straight line's value at `at`; the weighted mean where the points don't spread
// enough for a slope. NaN when all weights are zero.
double LocalLine(std::span<const double> x, std::span<const double> y, double at, double reach,
                 double spread, std::span<const double> robustness, std::size_t first,
                 std::size_t last) {
  double weights = 0.0;
  double mean_x = 0.0;
  double mean_y = 0.0;
  const auto weight = [&](std::size_t i) {
    const double distance = std::abs(x[i] - at);
    if (distance > 0.999 * reach) return 0.0;
    return robustness[i] * (distance <= 0.001 * reach ? 1.0 : Cube(1.0 - Cube(distance / reach)));
  };
  for (std::size_t i = first; i < last; ++i) {
    const double w = weight(i);
    weights += w;
    mean_x += w * x[i];
    mean_y += w * y[i];
  }
  if (weights <= 0.0) return std::nan("");
  mean_x /= weights;
  mean_y /= weights;
  double variance = 0.0;
  double covariance = 0.0;
  for (std::size_t i = first; i < last; ++i) {
    const double w = weight(i);
    variance += w * Square(x[i] - mean_x);
    covariance += w * (x[i] - mean_x) * (y[i] - mean_y);
  }
  if (std::sqrt(variance / weights) <= 0.001 * spread) return mean_y;
  return mean_y + covariance / variance * (at - mean_x);
}

// The bisquare weights: 0 from six median absolute residuals on.
void SetRobustness(std::span<const double> y, std::span<const double> smooth,
                   std::vector<double>& robustness) {
  std::vector<double> sizes(y.size());
  for (std::size_t i = 0; i < y.size(); ++i) sizes[i] = std::abs(y[i] - smooth[i]);
  std::vector<double> ordered = sizes;
  std::ranges::sort(ordered);
  const std::size_t n = ordered.size();
  const double reach = 3.0 * (ordered[(n - 1) / 2] + ordered[n / 2]);
  for (std::size_t i = 0; i < y.size(); ++i) {
    const double share = reach > 0.0 ? sizes[i] / reach : 0.0;
    robustness[i] = share >= 0.999 ? 0.0 : share <= 0.001 ? 1.0 : Square(1.0 - share * share);
  }
}

}  // namespace

std::vector<double> Lowess(std::span<const double> x, std::span<const double> y, double share,
                           int robust_steps) {
  const std::size_t n = x.size();
  std::vector<double> smooth(y.begin(), y.end());
  if (n < 3) return smooth;
  const auto wanted = static_cast<std::size_t>(share * static_cast<double>(n) + 1e-7);
  const std::size_t near = std::clamp<std::size_t>(wanted, 2, n);
  const double spread = x[n - 1] - x[0];
  std::vector<double> robustness(n, 1.0);
  for (int step = 0; step <= robust_steps; ++step) {
    std::size_t first = 0;
    for (std::size_t i = 0; i < n; ++i) {
      // The window of the nearest points moves on while the point behind it is nearer than its
      // first.
      while (first + near < n && x[i] - x[first] > x[first + near] - x[i]) ++first;
      const double reach = std::max(x[i] - x[first], x[first + near - 1] - x[i]);
      std::size_t last = first + near;
      while (last < n && x[last] - x[i] <= reach) ++last;  // ties
      const double value = LocalLine(x, y, x[i], reach, spread, robustness, first, last);
      smooth[i] = std::isnan(value) ? y[i] : value;
    }
    if (step < robust_steps) SetRobustness(y, smooth, robustness);
  }
  return smooth;
}

}  // namespace host
