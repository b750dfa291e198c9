#include "estimation/statistics.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

#include "numerics/distributions.h"

namespace linfit {
namespace {

// A block of observations after the other, so that the sums of a block stay in the cache.
void FillFittedAndResiduals(const RegressionData& data, RegressionResult& result) {
  constexpr std::size_t kBlock = 1024;
  const std::vector<double>& y = data.ResponseVector;
  const std::size_t n = y.size();
  result.fitted.assign(n, 0.0);
  result.resid.resize(n);
  for (std::size_t first = 0; first < n; first += kBlock) {
    const std::size_t end = std::min(n, first + kBlock);
    const double* column = data.DesignMatrix.data();
    for (const double estimate : result.estimate) {
      for (std::size_t i = first; i < end; ++i) result.fitted[i] += column[i] * estimate;
      column += n;
    }
    for (std::size_t i = first; i < end; ++i) result.resid[i] = y[i] - result.fitted[i];
  }
}

double SumOfSquaresAbout(double centre, const std::vector<double>& values) {
  double sum = 0.0;
  for (const double value : values) sum += (value - centre) * (value - centre);
  return sum;
}

double Mean(const std::vector<double>& values) {
  double sum = 0.0;
  for (const double value : values) sum += value;
  return sum / static_cast<double>(values.size());
}

void FillCoefficientStatistics(RegressionResult& result, const LineSink& diagnostic) {
  const std::size_t p = result.estimate.size();
  result.se.resize(p);
  result.tval.resize(p);
  result.pval.resize(p);
  for (std::size_t j = 0; j < p; ++j) {
    result.se[j] = std::sqrt(result.resvar * result.unscaled_covariance[j + j * p]);
    result.tval[j] = result.estimate[j] / result.se[j];
    const Probability tail = StudentTwoSidedTail(std::abs(result.tval[j]), result.df);
    diagnostic(DiagnosticLine(tail));
    result.pval[j] = tail.value;
  }
}

}  // namespace

int NumeratorDegrees(const RegressionData& data) {
  return data.p - (data.has_intercept ? 1 : 0);
}

Failure ComputeStatistics(const RegressionData& data, RegressionResult& result,
                          const LineSink& diagnostic) {
  FillFittedAndResiduals(data, result);
  result.ess = SumOfSquaresAbout(data.has_intercept ? Mean(result.fitted) : 0.0, result.fitted);
  result.rss = SumOfSquaresAbout(0.0, result.resid);
  result.df = data.n - data.p;
  if (result.df < 1) return "Degrees of freedom df=n-p should be >0";

  const int intercepts = data.has_intercept ? 1 : 0;
  result.resvar = result.rss / result.df;
  result.r2 = result.ess / (result.ess + result.rss);
  result.sigma = std::sqrt(result.resvar);
  result.f_statistic = (result.ess / NumeratorDegrees(data)) / result.resvar;
  result.adjusted_r2 =
      1.0 - (static_cast<double>(data.n - intercepts) / result.df) * (1.0 - result.r2);
  FillCoefficientStatistics(result, diagnostic);
  result.f_cdf = FCdf(result.f_statistic, NumeratorDegrees(data), result.df);
  result.f_pvalue = 1.0 - result.f_cdf.value;
  result.covar = result.unscaled_covariance;
  for (double& entry : result.covar) entry *= result.resvar;
  return {};
}

}  // namespace linfit
