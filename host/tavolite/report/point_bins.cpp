#include "tavolite/report/point_bins.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace host {

namespace {

constexpr double kMargin = 0.03;
constexpr double kFewestBins = 8.0;
constexpr double kMostBins = 80.0;

double Square(double value) {
  return value * value;
}

// The largest of 1, 2 and 5 times a power of ten that is not above `width`.
double RoundWidth(double width) {
  const double power = std::pow(10.0, std::floor(std::log10(width)));
  const double factor = width / power;
  return (factor >= 5.0 ? 5.0 : factor >= 2.0 ? 2.0 : 1.0) * power;
}

}  // namespace

Range DrawnRange(std::span<const double> values) {
  if (values.empty()) return {0.0, 1.0};
  const auto [low, high] = std::ranges::minmax_element(values);
  double margin = kMargin * (*high - *low);
  if (margin <= 8.0 * std::numeric_limits<double>::epsilon() * std::abs(*high)) {
    margin = *high == 0.0 ? 1.0 : 0.1 * std::abs(*high);
  }
  return {*low - margin, *high + margin};
}

Hexagons CountInHexagons(std::span<const double> x, std::span<const double> y, Range x_range,
                         Range y_range, const HexagonGrid& grid) {
  const double row_step = grid.step * std::sqrt(3.0) / 2.0;
  const auto columns = static_cast<std::size_t>(grid.width / grid.step) + 2;
  const auto rows = static_cast<std::size_t>(grid.height / row_step) + 2;
  std::vector<std::int64_t> counts(columns * rows, 0);
  const double x_scale = grid.width / (x_range.high - x_range.low);
  const double y_scale = grid.height / (y_range.high - y_range.low);
  const auto shift = [](std::size_t row) { return row % 2 == 0 ? 0.0 : 0.5; };
  for (std::size_t i = 0; i < x.size(); ++i) {
    const double across = (x[i] - x_range.low) * x_scale / grid.step;
    const double up = (y[i] - y_range.low) * y_scale / row_step;
    // The nearest centre is in the row below or in the one above.
    double best = std::numeric_limits<double>::infinity();
    std::size_t cell = 0;
    const auto below = static_cast<std::size_t>(up);
    for (std::size_t row = below; row <= below + 1; ++row) {
      const double column = std::max(0.0, std::round(across - shift(row)));
      const double distance = Square((across - shift(row) - column) * grid.step) +
                              Square((up - static_cast<double>(row)) * row_step);
      if (distance < best) {
        best = distance;
        cell = row * columns + static_cast<std::size_t>(column);
      }
    }
    ++counts[cell];
  }
  Hexagons hexagons;
  for (std::size_t cell = 0; cell < counts.size(); ++cell) {
    if (counts[cell] == 0) continue;
    const std::size_t row = cell / columns;
    const double across = static_cast<double>(cell % columns) + shift(row);
    hexagons.x.push_back(x_range.low + across * grid.step / x_scale);
    hexagons.y.push_back(y_range.low + static_cast<double>(row) * row_step / y_scale);
    hexagons.count.push_back(counts[cell]);
  }
  return hexagons;
}

Histogram CountInBins(std::span<const double> ascending) {
  const std::size_t n = ascending.size();
  const double low = ascending[0];
  const double spread = ascending[n - 1] - low;
  if (!(spread > 0.0)) {
    const double width = low == 0.0 ? 1.0 : 0.1 * std::abs(low);
    return {low - width / 2.0, width, {static_cast<std::int64_t>(n)}};
  }
  const double quartiles = ascending[n - 1 - n / 4] - ascending[n / 4];
  const double advised = 2.0 * quartiles / std::cbrt(static_cast<double>(n));
  Histogram histogram;
  histogram.step =
      RoundWidth(std::clamp(advised, spread / (kMostBins / 2.5), spread / kFewestBins));
  const double first = std::floor(low / histogram.step);
  histogram.start = first * histogram.step;
  for (const double value : ascending) {
    const double bin = std::max(0.0, std::floor(value / histogram.step) - first);
    histogram.count.resize(std::max(histogram.count.size(), static_cast<std::size_t>(bin) + 1), 0);
    ++histogram.count[static_cast<std::size_t>(bin)];
  }
  return histogram;
}

}  // namespace host
