#include "estimation/largest_entry.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <vector>

extern "C" double dlange_(const char* norm, const int* m, const int* n, const double* a,
                          const int* lda, double* work, std::size_t norm_length);

namespace linfit {
namespace {

double Dlange(const std::vector<double>& values) {
  const int m = static_cast<int>(values.size());
  const int n = 1;
  const int lda = m > 0 ? m : 1;
  return dlange_("M", &m, &n, values.data(), &lda, nullptr, 1);
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
    const double expected = Dlange(values);
    const double largest = LargestMagnitude(values);
    if (std::isnan(expected)) {
      EXPECT_TRUE(std::isnan(largest));
    } else {
      EXPECT_EQ(std::bit_cast<std::uint64_t>(largest), std::bit_cast<std::uint64_t>(expected));
    }
  }
}

}  // namespace
}  // namespace linfit
