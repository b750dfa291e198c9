// Comparison with tables of values: distances, and one failure a table that shows its worst row.
#pragma once

#include <gtest/gtest.h>

#include <cmath>
#include <cstddef>
#include <limits>
#include <string>

namespace testing_support {

// Distance in units of the expected value's last place; 0 for equal values and for two undefined
// ones, infinite when only one is finite.
template <class T>
double Ulps(T actual, T expected) {
  if (actual == expected || (std::isnan(actual) && std::isnan(expected))) {
    return 0.0;
  }
  if (!std::isfinite(actual) || !std::isfinite(expected)) {
    return std::numeric_limits<double>::infinity();
  }
  const T size = std::fabs(expected);
  const T below = std::nextafter(size, T{0});
  const T unit = size == T{0} ? std::numeric_limits<T>::denorm_min() : size - below;
  return std::fabs(static_cast<double>(actual) - static_cast<double>(expected)) /
         static_cast<double>(unit);
}

// |actual - expected| in units of what is allowed, relative * |expected| + absolute; at most 1 is
// within it.
inline double ShareOfTolerance(double actual, double expected, double relative, double absolute) {
  if (actual == expected || (std::isnan(actual) && std::isnan(expected))) {
    return 0.0;
  }
  const double share = std::fabs(actual - expected) / (relative * std::fabs(expected) + absolute);
  return std::isnan(share) ? std::numeric_limits<double>::infinity() : share;
}

// Collects the distances of a table's rows; fails at the end of its life when the worst is above
// the bound, or when no row came.
class WorstRow {
 public:
  WorstRow(std::string table, double bound) : table_(std::move(table)), bound_(bound) {}
  WorstRow(const WorstRow&) = delete;
  WorstRow& operator=(const WorstRow&) = delete;
  ~WorstRow() {
    EXPECT_GT(rows_, 0u) << table_ << ": no row was compared";
    EXPECT_LE(worst_, bound_) << table_ << ": " << failures_ << " of " << rows_
                              << " comparisons are out of bounds, the worst in row\n  " << row_;
  }

  void Add(double distance, const std::string& row) {
    ++rows_;
    failures_ += distance > bound_ ? 1 : 0;
    if (distance > worst_ || row_.empty()) {
      worst_ = distance;
      row_ = row;
    }
  }

 private:
  std::string table_;
  double bound_;
  double worst_ = 0.0;
  std::string row_;
  std::size_t rows_ = 0;
  std::size_t failures_ = 0;
};

}  // namespace testing_support
