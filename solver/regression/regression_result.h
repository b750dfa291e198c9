// The results of the estimation. The names are those of the symbols in the results file.
#pragma once

#include <cstdint>
#include <vector>

#include "numerics/distributions.h"

namespace linfit {

struct RegressionResult {
  std::vector<double> estimate;             // p; least-squares coefficients
  std::vector<double> unscaled_covariance;  // p x p, column-major, symmetric; (A'A)^-1
  std::vector<double> covar;                // p x p, column-major; resvar times unscaled_covariance
  std::vector<double> se;                   // p; standard errors
  std::vector<double> tval;                 // p; t values
  std::vector<double> pval;                 // p; two-sided p-values
  std::vector<double> fitted;               // n; A times estimate
  std::vector<double> resid;                // n; y minus fitted
  double ess = 0.0;     // explained sum of squares, centred when there is an intercept
  double rss = 0.0;     // residual sum of squares
  std::int32_t df = 0;  // degrees of freedom, n - p
  double resvar = 0.0;  // residual variance, rss / df
  double sigma = 0.0;   // residual standard error, sqrt(resvar)
  double r2 = 0.0;      // R squared, ess / (ess + rss)
  double adjusted_r2 = 0.0;
  double f_statistic = 0.0;
  Probability f_cdf;      // of the F statistic
  double f_pvalue = 0.0;  // 1 - f_cdf
};

}  // namespace linfit
