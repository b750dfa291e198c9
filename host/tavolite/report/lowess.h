// A smooth line through a scatter of points.
//
// Locally weighted regression of W. S. Cleveland, "Robust locally weighted regression and smoothing
// scatterplots", Journal of the American Statistical Association 74 (1979), 829-836: straight lines
// with tricube weights, then steps with bisquare weights against outliers.
#pragma once

#include <span>
#include <vector>

namespace host {

// The smooth's value at each x; x ascends, x and y have the same size n. `share` of the points
// takes part in each local line. Work grows with n^2.
std::vector<double> Lowess(std::span<const double> x, std::span<const double> y, double share,
                           int robust_steps);

}  // namespace host
