// The numbers behind a report's figures.
//
// Up to kAllPoints observations, every one of them is a point. Beyond, the points are those with
// the largest residuals, and hexagons count all observations. An observation whose fitted value or
// residual is undefined or beyond 1e150 in size is in no figure.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "tavolite/report/fit_data.h"
#include "tavolite/report/point_bins.h"

namespace host {

inline constexpr std::size_t kAllPoints = 20000;
inline constexpr std::size_t kLargestPoints = 500;
inline constexpr std::size_t kMostQuantiles = 1000;

struct Curve {
  std::vector<double> x;
  std::vector<double> y;
};

struct QuantilePlot {
  std::vector<double> normal;    // at most kMostQuantiles, ascending
  std::vector<double> observed;  // standardised residuals
  std::vector<double> low;       // where 95 % of normal samples have theirs
  std::vector<double> high;
  std::vector<std::size_t> observation;
};

// A tenth of the observations in the order of their fitted values.
struct FittedGroup {
  std::size_t count = 0;
  Range fitted;
  double mean = 0.0;  // of the residuals, like the next three
  double deviation = 0.0;
  Range residual;
  double scale = 0.0;  // mean square root of the standardised residuals' sizes
};

struct FigureData {
  std::size_t drawn = 0;  // observations in the figures
  bool standardised =
      false;  // false: there is no residual standard error, nor anything made with it
  bool all_points = true;
  std::vector<std::size_t> points;   // observations, ascending
  std::vector<double> normal;        // per point: the normal quantile that belongs to its rank
  std::vector<std::size_t> largest;  // observations by the sizes of their residuals, at most 15
  Range fitted_range;
  Range residual_range;
  Range scale_range;
  HexagonGrid grid;
  Hexagons residual_hexagons;  // filled unless all_points, like the next
  Hexagons scale_hexagons;
  Curve residual_smooth;  // of at most 400 vertices; empty with fewer than four fitted values
  Curve scale_smooth;
  QuantilePlot quantiles;
  Histogram histogram;  // of the residuals
  std::vector<FittedGroup> groups;
};

// The square root of a standardised residual's size, as the scale-location figure has it.
double ScaleOf(double residual, double sigma);

FigureData MakeFigureData(const FitData& fit);

}  // namespace host
