#include "tavolite/report/figure_data.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "tavolite/report/distributions.h"
#include "tavolite/report/lowess.h"
#include "tavolite/report/normal_order.h"

namespace host {
namespace {

// Stopping distances of cars (M. Ezekiel, Methods of Correlation Analysis, 1930): speeds with ties,
// and what R's lowess(cars) gives.
TEST(Lowess, AgreesWithR) {
  const std::vector<double> speed{4,  4,  7,  7,  8,  9,  10, 10, 10, 11, 11, 12, 12,
                                  12, 12, 13, 13, 13, 13, 14, 14, 14, 14, 15, 15, 15,
                                  16, 16, 17, 17, 17, 18, 18, 18, 18, 19, 19, 19, 20,
                                  20, 20, 20, 20, 22, 23, 24, 24, 24, 24, 25};
  const std::vector<double> distance{2,  10, 4,  22, 16, 10, 18, 26, 34, 17,  28, 14, 20,
                                     24, 28, 26, 34, 34, 46, 26, 36, 60, 80,  20, 26, 54,
                                     32, 40, 32, 40, 50, 42, 56, 76, 84, 36,  46, 68, 32,
                                     48, 52, 56, 64, 66, 54, 70, 92, 93, 120, 85};
  const std::vector<double> smooth = Lowess(speed, distance, 2.0 / 3.0, 3);
  const std::pair<std::size_t, double> expected[] = {
      {0, 4.965459},   {2, 13.124495},  {5, 18.579691},  {9, 24.129277},  {19, 32.962506},
      {26, 40.435075}, {34, 46.885479}, {43, 67.585824}, {45, 78.643164}, {49, 84.328698}};
  for (const auto& [i, value] : expected) EXPECT_NEAR(smooth[i], value, 1e-5) << "point " << i;
}

TEST(NormalOrder, QuantilesAndLimits) {
  EXPECT_NEAR(NormalQuantile(0.975), 1.959963984540054, 1e-14);
  EXPECT_NEAR(NormalQuantile(1e-10), -6.361340902404056, 1e-12);
  EXPECT_EQ(PlottingPosition(1, 4), 0.625 / 4.25);
  EXPECT_EQ(PlottingPosition(1, 20), 0.5 / 20.0);
  // The smallest of n: 1 - (1 - p)^n. The middle one of three: 3 p^2 - 2 p^3.
  for (const std::size_t n : {1U, 16U, 1000U, 1000000U}) {
    const OrderLimits smallest = NormalOrderLimits(1, n);
    const double share = 1.0 / static_cast<double>(n);
    EXPECT_NEAR(smallest.low, NormalQuantile(-std::expm1(share * std::log1p(-0.025))), 1e-9) << n;
    EXPECT_NEAR(smallest.high, NormalQuantile(-std::expm1(share * std::log1p(-0.975))), 1e-9) << n;
    EXPECT_NEAR(NormalOrderLimits(n, n).high, -smallest.low, 1e-9) << n;
  }
  const double p = 0.5 * std::erfc(-NormalOrderLimits(2, 3).low / std::sqrt(2.0));
  EXPECT_NEAR(3.0 * p * p - 2.0 * p * p * p, 0.025, 1e-9);
  // Where the exact limits give way to the normal ones there is no visible step.
  const OrderLimits exact = NormalOrderLimits(100, 30000);
  const OrderLimits normal = NormalOrderLimits(101, 30000);
  EXPECT_NEAR(exact.low, normal.low, 0.01);
  EXPECT_NEAR(exact.high, normal.high, 0.01);
}

TEST(Distributions, AgreeWithR) {
  EXPECT_NEAR(StudentTwoSidedQuantile(0.95, 9), 2.2621571628540993, 1e-9);
  EXPECT_NEAR(StudentTwoSidedQuantile(0.99, 1), 63.656741162871583, 1e-7);
  EXPECT_NEAR(StudentTwoSidedQuantile(0.95, 1e6), 1.9599663984540, 1e-6);
  EXPECT_TRUE(std::isnan(StudentTwoSidedQuantile(0.95, 0)));
  EXPECT_NEAR(FUpperTail(330.28533923440590, 6, 9) / 4.9840305287371e-10, 1.0, 1e-9);
  EXPECT_NEAR(FUpperTail(1.0, 1e6, 1e6), 0.5, 1e-9);
  EXPECT_EQ(FUpperTail(0.0, 3, 4), 1.0);
  EXPECT_EQ(FUpperTail(INFINITY, 3, 4), 0.0);
}

// Observations "1", "2", ... whose residuals come back in another order than their fitted values.
FitData Fit(std::size_t n) {
  FitData fit;
  fit.sigma = 2.0;
  fit.residuals.dimension = 1;
  for (std::size_t i = 0; i < n; ++i) {
    fit.residuals.keys.push_back(std::to_string(i + 1));
    const double share = (static_cast<double>(i * 7919 % n) + 0.5) / static_cast<double>(n);
    fit.residuals.values.push_back(fit.sigma * NormalQuantile(share));
    fit.fitted.push_back(1e9 + 0.001 * static_cast<double>(i));
  }
  return fit;
}

std::int64_t Sum(const std::vector<std::int64_t>& counts) {
  return std::accumulate(counts.begin(), counts.end(), std::int64_t{0});
}

TEST(FigureData, AllObservationsAreCountedOrDrawn) {
  for (const std::size_t n : {std::size_t{16}, kAllPoints, kAllPoints + 1, std::size_t{50000}}) {
    SCOPED_TRACE(n);
    const FigureData figures = MakeFigureData(Fit(n));
    EXPECT_EQ(figures.drawn, n);
    EXPECT_EQ(figures.all_points, n <= kAllPoints);
    EXPECT_EQ(figures.points.size(), n <= kAllPoints ? n : kLargestPoints);
    EXPECT_EQ(Sum(figures.histogram.count), static_cast<std::int64_t>(n));
    const std::int64_t binned = n <= kAllPoints ? 0 : static_cast<std::int64_t>(n);
    EXPECT_EQ(Sum(figures.residual_hexagons.count), binned);
    EXPECT_EQ(Sum(figures.scale_hexagons.count), binned);
    EXPECT_LE(figures.quantiles.normal.size(), kMostQuantiles);
    EXPECT_GT(figures.quantiles.normal.size(), n < 500 ? n - 1 : 500U);
    // This sample follows the normal distribution as well as a sample can.
    for (std::size_t k = 0; k < figures.quantiles.normal.size(); ++k) {
      EXPECT_NEAR(figures.quantiles.observed[k], figures.quantiles.normal[k],
                  n < 100 ? 0.05 : 1e-9);
    }
    EXPECT_NEAR(figures.quantiles.normal.front(), NormalQuantile(0.5 / static_cast<double>(n)),
                1e-9);
  }
}

TEST(FigureData, TheLargestResidualsArePoints) {
  FitData fit = Fit(30000);
  fit.residuals.values[12345] = 1000.0;
  fit.residuals.values[7] = -2000.0;
  fit.residuals.values[8] = std::numeric_limits<double>::quiet_NaN();
  fit.fitted[9] = std::numeric_limits<double>::infinity();
  const FigureData figures = MakeFigureData(fit);
  EXPECT_EQ(figures.drawn, 29998U);
  ASSERT_GE(figures.largest.size(), 2U);
  EXPECT_EQ(figures.largest[0], 7U);
  EXPECT_EQ(figures.largest[1], 12345U);
  EXPECT_EQ(std::ranges::count(figures.points, 7U), 1);
  EXPECT_EQ(std::ranges::count(figures.points, 8U) + std::ranges::count(figures.points, 9U), 0);
  EXPECT_EQ(figures.normal[static_cast<std::size_t>(std::ranges::find(figures.points, 7U) -
                                                    figures.points.begin())],
            figures.quantiles.normal.front());
}

// What has no spread, no error or no observation must not end in a division by zero or a loop.
TEST(FigureData, DegenerateFits) {
  FitData constant = Fit(50);
  constant.fitted.assign(50, 3.0);
  EXPECT_TRUE(MakeFigureData(constant).residual_smooth.x.empty());
  EXPECT_LT(MakeFigureData(constant).fitted_range.low, 3.0);

  for (const double sigma : {0.0, std::nan("")}) {
    FitData perfect = Fit(50);
    perfect.sigma = sigma;
    perfect.residuals.values.assign(50, 0.0);
    const FigureData figures = MakeFigureData(perfect);
    EXPECT_FALSE(figures.standardised);
    EXPECT_TRUE(figures.quantiles.normal.empty());
    EXPECT_EQ(figures.histogram.count, std::vector<std::int64_t>{50});
  }
  EXPECT_EQ(MakeFigureData(Fit(1)).points.size(), 1U);
  EXPECT_EQ(MakeFigureData(FitData()).drawn, 0U);
  FitData far = Fit(30000);
  far.residuals.values[0] = 1e149;
  EXPECT_LE(MakeFigureData(far).histogram.count.size(), 81U);
}

}  // namespace
}  // namespace host
