// The normal distribution and the order statistics of a sample from it, for the quantile plot.
#pragma once

#include <cstddef>

namespace host {

// The z with Phi(z) = p, for p in (0, 1): a starting value from Abramowitz & Stegun
// (1964), 26.2.23, and Newton steps on the complementary error function; relative error about
// 1e-15.
double NormalQuantile(double p);

// The position of the observation of that rank (1 to n, ascending) among n: (rank - a) / (n + 1 -
// 2a) with a = 1/2, and 3/8 for n up to 10 (Blom 1958).
double PlottingPosition(std::size_t rank, std::size_t n);

struct OrderLimits {
  double low = 0.0;
  double high = 0.0;
};

// Where the observation of that rank lies with probability 95 % when n observations are independent
// and standard normal. Its probability is distributed as Beta(rank, n + 1 - rank) (David & Nagaraja
// 2003, 2.1); beyond the 100th from either end as a normal of the same mean and variance, which no
// eye tells apart.
OrderLimits NormalOrderLimits(std::size_t rank, std::size_t n);

}  // namespace host
