#include "estimation/largest_entry.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <span>
#include <vector>

extern "C" double dlange_(const char* norm, const int* m, const int* n, const double* a,
                          const int* lda, double* work, std::size_t norm_length);

namespace linfit {
namespace {

// As DLANGE is published.
double Reference(std::span<const double> values) {
  double largest = 0.0;
  for (const double value : values) {
    const double magnitude = std::abs(value);
    if (largest < magnitude || std::isnan(magnitude)) largest = magnitude;
  }
  return largest;
}

void ExpectSame(double value, double expected) {
  if (std::isnan(expected)) {
    EXPECT_TRUE(std::isnan(value));
  } else {
    EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected));
  }
}

TEST(LargestMagnitude, IsDlanges) {
  const double infinity = std::numeric_limits<double>::infinity();
  const std::vector<double> special = {0.0,       -0.0,   std::nan(""), -std::nan(""), infinity,
                                       -infinity, 5e-324, -5e-324,      1e308,         -1e308};
  std::mt19937_64 random(20261121);
  for (int i = 0; i < 20000; ++i) {
    // Any bits; now and then something special, undefined values seldom enough to see the rest.
    std::vector<double> values(random() % 12);
    for (double& value : values) {
      value = std::bit_cast<double>(random());
      if (random() % 8 == 0) value = special[random() % special.size()];
    }
    ExpectSame(LargestMagnitude(values), Reference(values));
    // The function that DGELS calls: the first column is followed by a value of no column.
    const auto rows = static_cast<int>(values.size());
    std::vector<double> matrix = values;
    matrix.push_back(infinity);
    matrix.insert(matrix.end(), values.rbegin(), values.rend());
    const int columns = 2;
    const int step = rows + 1;
    ExpectSame(dlange_("M", &rows, &columns, matrix.data(), &step, nullptr, 1), Reference(values));
  }
}

}  // namespace
}  // namespace linfit
