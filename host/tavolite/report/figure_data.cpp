#include "tavolite/report/figure_data.h"

#include <algorithm>
#include <cmath>
#include <numeric>

#include "tavolite/report/lowess.h"
#include "tavolite/report/normal_order.h"

namespace host {

namespace {

constexpr double kLargestDrawn = 1e150;  // squares and ranges of what is drawn are finite
constexpr std::size_t kSmoothGroups = 400;
constexpr std::size_t kTableRows = 15;
constexpr std::size_t kTenths = 10;

// The drawn observations with their values, in three orders.
struct Sample {
  std::vector<std::size_t> observations;  // ascending
  std::vector<std::size_t> by_fitted;     // observations
  std::vector<std::size_t> by_residual;
};

template <class Value>
std::vector<std::size_t> Ordered(std::vector<std::size_t> observations, Value value) {
  // Sorting pairs is twice as fast as sorting numbers that look their values up.
  std::vector<std::pair<double, std::size_t>> pairs;
  pairs.reserve(observations.size());
  for (const std::size_t i : observations) pairs.emplace_back(value(i), i);
  std::ranges::sort(pairs);
  for (std::size_t k = 0; k < pairs.size(); ++k) observations[k] = pairs[k].second;
  return observations;
}

Sample MakeSample(const FitData& fit) {
  Sample sample;
  for (std::size_t i = 0; i < fit.fitted.size(); ++i) {
    if (std::abs(fit.fitted[i]) < kLargestDrawn &&
        std::abs(fit.residuals.values[i]) < kLargestDrawn) {
      sample.observations.push_back(i);
    }
  }
  sample.by_fitted = Ordered(sample.observations, [&](std::size_t i) { return fit.fitted[i]; });
  sample.by_residual =
      Ordered(sample.observations, [&](std::size_t i) { return fit.residuals.values[i]; });
  return sample;
}

// Those with the largest residuals, the largest first: they stand at both ends of the order.
std::vector<std::size_t> Largest(const Sample& sample, const FitData& fit, std::size_t limit) {
  std::vector<std::size_t> largest;
  std::size_t low = 0;
  std::size_t high = sample.by_residual.size();
  while (low < high && largest.size() < limit) {
    const std::size_t below = sample.by_residual[low];
    const std::size_t above = sample.by_residual[high - 1];
    if (std::abs(fit.residuals.values[below]) > std::abs(fit.residuals.values[above])) {
      largest.push_back(below);
      ++low;
    } else {
      largest.push_back(above);
      --high;
    }
  }
  return largest;
}

// Consecutive parts of nearly equal size.
template <class Visit>
void ForGroups(std::size_t size, std::size_t groups, Visit visit) {
  for (std::size_t g = 0; g < groups; ++g) {
    const std::size_t first = size * g / groups;
    const std::size_t last = size * (g + 1) / groups;
    if (first < last) visit(first, last);
  }
}

// Through the means of groups of equal size when there are many observations.
template <class Value>
Curve SmoothOver(const Sample& sample, const FitData& fit, Value value) {
  Curve means;
  std::size_t different = 0;
  ForGroups(sample.by_fitted.size(), std::min(kSmoothGroups, sample.by_fitted.size()),
            [&](std::size_t first, std::size_t last) {
              double x = 0.0;
              double y = 0.0;
              for (std::size_t k = first; k < last; ++k) {
                x += fit.fitted[sample.by_fitted[k]];
                y += value(sample.by_fitted[k]);
              }
              const auto count = static_cast<double>(last - first);
              if (means.x.empty() || x / count > means.x.back()) ++different;
              means.x.push_back(x / count);
              means.y.push_back(y / count);
            });
  if (different < 4) return {};
  std::ranges::sort(means.x);  // rounding may have turned equal means round
  return {means.x, Lowess(means.x, means.y, 2.0 / 3.0, 3)};
}

std::vector<FittedGroup> MakeGroups(const Sample& sample, const FitData& fit) {
  std::vector<FittedGroup> groups;
  ForGroups(sample.by_fitted.size(), kTenths, [&](std::size_t first, std::size_t last) {
    FittedGroup group;
    group.count = last - first;
    group.fitted = {fit.fitted[sample.by_fitted[first]], fit.fitted[sample.by_fitted[last - 1]]};
    const auto count = static_cast<double>(group.count);
    const double start = fit.residuals.values[sample.by_fitted[first]];
    group.residual = {start, start};
    for (std::size_t k = first; k < last; ++k) {
      const double residual = fit.residuals.values[sample.by_fitted[k]];
      group.mean += residual / count;
      group.scale += ScaleOf(residual, fit.sigma) / count;
      group.residual = {std::min(group.residual.low, residual),
                        std::max(group.residual.high, residual)};
    }
    for (std::size_t k = first; k < last; ++k) {
      const double difference = fit.residuals.values[sample.by_fitted[k]] - group.mean;
      group.deviation += difference * difference / std::max(1.0, count - 1.0);
    }
    group.deviation = std::sqrt(group.deviation);
    groups.push_back(group);
  });
  return groups;
}

// All ranks, or ranks in equal steps of the normal quantile, so that the tails are there
// observation by observation.
std::vector<std::size_t> QuantileRanks(std::size_t n) {
  std::vector<std::size_t> ranks;
  if (n <= kMostQuantiles) {
    ranks.resize(n);
    std::iota(ranks.begin(), ranks.end(), std::size_t{1});
    return ranks;
  }
  const double end = NormalQuantile(PlottingPosition(1, n));
  for (std::size_t k = 0; k < kMostQuantiles; ++k) {
    const double z = end * (1.0 - 2.0 * static_cast<double>(k) / (kMostQuantiles - 1.0));
    const double position = 0.5 * std::erfc(-z / std::sqrt(2.0)) * static_cast<double>(n) + 0.5;
    const auto rank =
        static_cast<std::size_t>(std::clamp(std::round(position), 1.0, static_cast<double>(n)));
    if (ranks.empty() || rank > ranks.back()) ranks.push_back(rank);
  }
  return ranks;
}

QuantilePlot MakeQuantiles(const Sample& sample, const FitData& fit) {
  QuantilePlot plot;
  const std::size_t n = sample.by_residual.size();
  for (const std::size_t rank : QuantileRanks(n)) {
    const std::size_t observation = sample.by_residual[rank - 1];
    const OrderLimits limits = NormalOrderLimits(rank, n);
    plot.normal.push_back(NormalQuantile(PlottingPosition(rank, n)));
    plot.observed.push_back(fit.residuals.values[observation] / fit.sigma);
    plot.low.push_back(limits.low);
    plot.high.push_back(limits.high);
    plot.observation.push_back(observation);
  }
  return plot;
}

void ChoosePoints(const Sample& sample, const FitData& fit, FigureData& figures) {
  figures.all_points = sample.observations.size() <= kAllPoints;
  figures.points = figures.all_points ? sample.observations : Largest(sample, fit, kLargestPoints);
  std::ranges::sort(figures.points);
  const std::size_t n = sample.by_residual.size();
  std::vector<std::size_t> rank(fit.fitted.size(), 0);
  for (std::size_t k = 0; k < n; ++k) rank[sample.by_residual[k]] = k + 1;
  for (const std::size_t i : figures.points) {
    figures.normal.push_back(NormalQuantile(PlottingPosition(rank[i], n)));
  }
}

void AddHexagons(const FitData& fit, std::span<const double> x, std::span<const double> y,
                 FigureData& figures) {
  figures.residual_hexagons =
      CountInHexagons(x, y, figures.fitted_range, figures.residual_range, figures.grid);
  if (!figures.standardised) return;
  std::vector<double> scales;
  for (const double residual : y) scales.push_back(ScaleOf(residual, fit.sigma));
  figures.scale_hexagons =
      CountInHexagons(x, scales, figures.fitted_range, figures.scale_range, figures.grid);
}

}  // namespace

double ScaleOf(double residual, double sigma) {
  return std::sqrt(std::abs(residual) / sigma);
}

FigureData MakeFigureData(const FitData& fit) {
  FigureData figures;
  const Sample sample = MakeSample(fit);
  figures.drawn = sample.observations.size();
  if (figures.drawn == 0) return figures;
  std::vector<double> x;
  std::vector<double> y;
  for (const std::size_t i : sample.observations) {
    x.push_back(fit.fitted[i]);
    y.push_back(fit.residuals.values[i]);
  }
  const double largest =
      std::max(std::abs(*std::ranges::min_element(y)), *std::ranges::max_element(y));
  figures.standardised = fit.sigma > 0.0 && std::isfinite(largest / fit.sigma);
  figures.fitted_range = DrawnRange(x);
  figures.residual_range = DrawnRange(y);
  const auto residual_of = [&](std::size_t i) { return fit.residuals.values[i]; };
  const auto scale_of = [&](std::size_t i) { return ScaleOf(residual_of(i), fit.sigma); };
  if (figures.standardised) {
    figures.scale_range = {0.0, std::max(1.0, 1.03 * ScaleOf(largest, fit.sigma))};
    figures.scale_smooth = SmoothOver(sample, fit, scale_of);
    figures.quantiles = MakeQuantiles(sample, fit);
  }
  figures.residual_smooth = SmoothOver(sample, fit, residual_of);
  ChoosePoints(sample, fit, figures);
  figures.largest = Largest(sample, fit, kTableRows);
  if (!figures.all_points) AddHexagons(fit, x, y, figures);
  std::ranges::transform(sample.by_residual, y.begin(), residual_of);
  figures.histogram = CountInBins(y);
  figures.groups = MakeGroups(sample, fit);
  return figures;
}

}  // namespace host
