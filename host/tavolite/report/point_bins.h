// Many observations in few numbers: hexagons, a histogram, and groups of equal size.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace host {

struct Range {
  double low = 0.0;
  double high = 0.0;
};

// The range of the values widened by 3 % on both sides; about the value itself where all are equal.
Range DrawnRange(std::span<const double> values);

// A figure's frame in pixels of the page, for a grid of upright hexagons: `step` from centre to
// centre in a row, every other row shifted by half of that.
struct HexagonGrid {
  double width = 524.0;
  double height = 340.0;
  double step = 10.0;
};

struct Hexagons {
  std::vector<double> x;  // centres in the units of the data
  std::vector<double> y;
  std::vector<std::int64_t> count;  // above zero
};

// Each point counts in the hexagon whose centre is nearest to it; all points lie within the ranges.
Hexagons CountInHexagons(std::span<const double> x, std::span<const double> y, Range x_range,
                         Range y_range, const HexagonGrid& grid);

struct Histogram {
  double start = 0.0;
  double step = 0.0;
  std::vector<std::int64_t> count;
};

// Bins as wide as D. Freedman and P. Diaconis (1981) advise, 2 IQR n^(-1/3), rounded to 1, 2 or 5
// times a power of ten, between 8 and 80 of them. `ascending` is not empty.
Histogram CountInBins(std::span<const double> ascending);

}  // namespace host
