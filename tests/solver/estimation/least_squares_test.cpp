#include "estimation/least_squares.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <string>
#include <vector>

#include "estimation/statistics.h"
#include "tests/solver/estimation/problem.h"
#include "tests/support/program.h"

namespace linfit {
namespace {

struct Fit {
  RegressionResult result;
  std::vector<std::string> diagnostics;
  std::string failure;
};

Fit FitOf(const RegressionData& data) {
  Fit fit;
  const LineSink keep = [&fit](std::string_view line) { fit.diagnostics.emplace_back(line); };
  Failure failure = SolveLeastSquares(data, fit.result, keep);
  if (!failure) failure = ComputeStatistics(data, fit.result, keep);
  fit.failure = failure.value_or("");
  return fit;
}

bool StartsWith(const std::string& text, const std::string& start) {
  return text.compare(0, start.size(), start) == 0;
}

// Made from its answer: the response is A b plus a residual that stands at right angles to A.
TEST(LeastSquares, FindsTheCoefficientsThatTheProblemWasMadeFrom) {
  std::mt19937 random(20260101);
  for (const std::size_t p : {1U, 2U, 5U, 24U}) {
    const std::size_t n = p < 24 ? 2 * p + 40 : 1000;  // tall enough to be solved in blocks
    std::vector<std::vector<double>> columns(p, std::vector<double>(n));
    std::vector<double> y(n, 0.0);
    const auto coefficient = [](std::size_t j) { return static_cast<double>(j) - 1.5; };
    for (std::size_t j = 0; j < p; ++j) {
      // The second half repeats the first, so that a residual with opposite signs there is
      // orthogonal.
      for (std::size_t i = 0; i < n / 2; ++i) {
        columns[j][i] = columns[j][i + n / 2] = static_cast<double>(random()) * 0x1p-31 - 1.0;
      }
      for (std::size_t i = 0; i < n; ++i) y[i] += columns[j][i] * coefficient(j);
    }
    for (std::size_t i = 0; i < n; ++i) y[i] += i < n / 2 ? 0.25 : -0.25;

    const RegressionData data = Problem(columns, y);
    const Fit fit = FitOf(data);
    ASSERT_EQ(fit.failure, "");
    EXPECT_EQ(data.DesignMatrix, Problem(columns, y).DesignMatrix);
    EXPECT_NEAR(fit.result.rss, static_cast<double>(n) / 16, 1e-12);
    for (std::size_t j = 0; j < p; ++j) {
      EXPECT_NEAR(fit.result.estimate[j], coefficient(j), 1e-12);
      for (std::size_t k = 0; k < p; ++k) {  // (A'A) C = I
        double sum = 0.0;
        for (std::size_t l = 0; l < p; ++l) {
          double product = 0.0;
          for (std::size_t i = 0; i < n; ++i) product += columns[j][i] * columns[l][i];
          sum += product * fit.result.unscaled_covariance[l + k * p];
        }
        EXPECT_NEAR(sum, j == k ? 1.0 : 0.0, 1e-12);
        EXPECT_EQ(fit.result.covar[j + k * p], fit.result.covar[k + j * p]);
      }
    }
  }
}

TEST(Statistics, LineThroughThreePointsWithIntercept) {
  const Fit fit = FitOf(Problem({{1, 2, 3}, {1, 1, 1}}, {1, 2, 2}, true));
  const RegressionResult& r = fit.result;
  ASSERT_EQ(fit.failure, "");
  const double tolerance = 1e-14;
  EXPECT_NEAR(r.estimate[0], 0.5, tolerance);
  EXPECT_NEAR(r.estimate[1], 2.0 / 3, tolerance);
  EXPECT_NEAR(r.fitted[2], 13.0 / 6, tolerance);
  EXPECT_NEAR(r.resid[1], 1.0 / 3, tolerance);
  EXPECT_NEAR(r.ess, 0.5, tolerance);
  EXPECT_NEAR(r.rss, 1.0 / 6, tolerance);
  EXPECT_EQ(r.df, 1);
  EXPECT_EQ(r.resvar, r.rss);
  EXPECT_NEAR(r.sigma, std::sqrt(1.0 / 6), tolerance);
  EXPECT_NEAR(r.r2, 0.75, tolerance);
  EXPECT_NEAR(r.adjusted_r2, 0.5, tolerance);
  EXPECT_NEAR(r.f_statistic, 3.0, 1e-13);
  EXPECT_NEAR(r.f_pvalue, 1.0 / 3, 1e-7);
  EXPECT_NEAR(r.se[0], std::sqrt(1.0 / 12), tolerance);
  EXPECT_NEAR(r.se[1], std::sqrt(7.0 / 18), tolerance);
  EXPECT_NEAR(r.tval[0], std::sqrt(3.0), 1e-13);
  EXPECT_NEAR(r.pval[0], 1.0 / 3, 1e-7);  // one degree of freedom: an arc tangent
  EXPECT_NEAR(r.covar[0], 1.0 / 12, tolerance);
  EXPECT_NEAR(r.covar[1], -1.0 / 6, tolerance);
  EXPECT_EQ(r.covar[1], r.covar[2]);

  ASSERT_EQ(fit.diagnostics.size(), 5U);
  EXPECT_TRUE(StartsWith(fit.diagnostics[0], " DGELS(LAPACK): workspace: "));
  EXPECT_EQ(fit.diagnostics[1], " DGELS(LAPACK): info: 0");
  EXPECT_EQ(fit.diagnostics[2], " DPOTRI(LAPACK) : info: 0");
  EXPECT_TRUE(StartsWith(fit.diagnostics[3], " bratio, ierr = "));
  EXPECT_EQ(fit.diagnostics[3], fit.diagnostics[4]);
}

TEST(Statistics, WithoutInterceptSquaresAreNotCentred) {
  const RegressionResult r = FitOf(Problem({{1, 2, 3}}, {1, 2, 2})).result;
  EXPECT_NEAR(r.ess, 121.0 / 14, 1e-13);
  EXPECT_NEAR(r.r2, 121.0 / 126, 1e-14);
  EXPECT_NEAR(r.adjusted_r2, 1.0 - 1.5 * (5.0 / 126), 1e-14);
  EXPECT_NEAR(r.f_statistic, (121.0 / 14) / (5.0 / 28), 1e-11);
  EXPECT_EQ(r.df, 2);
}

TEST(Statistics, DivisionsByZeroGoThrough) {
  const Fit only_intercept = FitOf(Problem({{1, 1, 1, 1}}, {1, 2, 3, 4}, true));
  EXPECT_EQ(only_intercept.failure, "");
  EXPECT_NEAR(only_intercept.result.r2, 0.0, 1e-15);
  EXPECT_FALSE(std::isfinite(only_intercept.result.f_statistic));

  const RegressionResult perfect = FitOf(Problem({{1, 0}}, {2, 0})).result;
  EXPECT_EQ(perfect.rss, 0.0);
  EXPECT_EQ(perfect.se[0], 0.0);
  EXPECT_EQ(perfect.r2, 1.0);
  EXPECT_TRUE(std::isinf(perfect.tval[0]));
  EXPECT_EQ(perfect.pval[0], 0.0);
  EXPECT_TRUE(std::isinf(perfect.f_statistic));

  const RegressionResult zero = FitOf(Problem({{1, 0}}, {0, 0})).result;
  EXPECT_TRUE(std::isnan(zero.tval[0]));
  EXPECT_TRUE(std::isnan(zero.r2));
}

TEST(LeastSquares, RankDeficiencyIsReportedAndGoesOn) {
  const Fit fit = FitOf(Problem({{1, 2, 3, 5}, {0, 0, 0, 0}}, {1, 2, 2, 4}));
  EXPECT_EQ(fit.failure, "");
  ASSERT_GE(fit.diagnostics.size(), 3U);
  EXPECT_EQ(fit.diagnostics[1], " DGELS(LAPACK): info: 2");
  EXPECT_EQ(fit.diagnostics[2], " DPOTRI(LAPACK) : info: 2");
  EXPECT_EQ(fit.result.pval.size(), 2U);
}

TEST(LeastSquares, NoDegreeOfFreedomFailsAfterTheSolve) {
  const Fit fit = FitOf(Problem({{1, 2}, {1, 1}}, {1, 3}, true));
  EXPECT_EQ(fit.failure, "Degrees of freedom df=n-p should be >0");
  EXPECT_EQ(fit.diagnostics.size(), 3U);
  EXPECT_NEAR(fit.result.estimate[0], 2.0, 1e-14);
}

TEST(LeastSquares, RefusesBadScaling) {
  const std::string text = "Jacobian very poorly scaled: ";
  const double infinity = std::numeric_limits<double>::infinity();
  const struct {
    double largest;
    std::string failure;
  } rows[] = {
      {0.0, text + "all elem zero"},
      {1e-300, text + "max elem < 1.0020841800044864E-292"},
      {1.0020841e-292, text + "max elem < 1.0020841800044864E-292"},
      {1.0020842e-292, ""},
      {9.979201e291, ""},
      {-9.979202e291, text + "max elem > 9.9792015476736E+291"},
      {infinity, text + "max elem > 9.9792015476736E+291"},
  };
  for (const auto& row : rows) {
    const Fit fit = FitOf(Problem({{0, row.largest, 0}}, {1, 2, 3}));
    EXPECT_EQ(fit.failure, row.failure) << row.largest;
    // The workspace is reported before the matrix is looked at, and the solve doesn't take place.
    EXPECT_EQ(fit.diagnostics.size(), row.failure.empty() ? 4U : 1U) << row.largest;
  }
  EXPECT_EQ(FitOf(Problem({}, {1, 2, 3})).failure, text + "all elem zero");
}

TEST(LeastSquares, ShapeThatLapackRefusesEndsTheRun) {
  const std::filesystem::path program = testing_support::FromUtf8(LINFIT_SHAPE_PROGRAM);
  const std::filesystem::path returning = testing_support::FromUtf8(LINFIT_RETURNING_PROGRAM);
  const struct {
    std::filesystem::path program;
    std::vector<std::string> shape;
    const char* out;
  } rows[] = {
      {program, {"2", "3"}, " ** On entry to DGELS  parameter number  8 had an illegal value\n"},
      {program, {"0", "1"}, " ** On entry to DGELS  parameter number  6 had an illegal value\n"},
      {program, {"-1", "0"}, " ** On entry to DGELS  parameter number  2 had an illegal value\n"},
      {program, {"3", "2"}, "returned\n"},
      {returning, {"2", "3"}, "Should have n>=p\n"},
      {returning, {"-1", "0"}, "Jacobian very poorly scaled: all elem zero\n"},
  };
  for (const auto& row : rows) {
    const testing_support::ProgramResult run = testing_support::RunProgram(row.program, row.shape);
    EXPECT_EQ(run.exit_code, 0);
    EXPECT_EQ(run.out, row.out);
    EXPECT_EQ(run.err, "");
  }
}

}  // namespace
}  // namespace linfit
