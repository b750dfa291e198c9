#include "estimation/report.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <utility>

#include "tests/solver/estimation/problem.h"

namespace linfit {
namespace {

TEST(Report, WholeText) {
  RegressionData data = Problem({{1, 2, 3}, {4, 5, 6}, {1, 1, 1}}, {1, 2, 2}, true);
  AppendName(data.CoefficientNames, 3, "b", 1);
  AppendLabel(data.CoefficientNames, "1947", 7, '\'');
  AppendName(data.CoefficientNames, 4, "gross_national_product", 0);
  AppendIntercept(data.CoefficientNames);
  RegressionResult result;
  result.estimate = {1.5, -123456.789, 2e-7};
  result.se = {0.25, 0.0, 12345678.9};
  result.tval = {6.0, -std::numeric_limits<double>::infinity(), std::nan("")};
  result.pval = {0.0125, 0.0, std::nan("")};
  result.rss = 836424.0555;
  result.df = 1234;
  result.sigma = 304.8541;
  result.r2 = 0.9954790;
  result.adjusted_r2 = -0.0312;
  result.f_statistic = 330.2853;
  const std::vector<std::string> expected = {
      "        Parameter      Estimate    Std. Error       t value      Pr(>|t|)",
      "        b('1947')       1.50000       0.25000       6.00000       0.01250 *",
      "gross_national_pr -123456.78900       0.00000     -Infinity       0.00000 ***",
      "        Intercept   2.00000E-07   1.23457E+07           NaN           NaN",
      "     ---",
      "     Signif. codes:  0 `***' 0.001 `**' 0.01 `*' 0.05 `.' 0.1 ` ' 1",
      "",
      "Estimation statistics:",
      "Cases: 3  Parameters: 3  Residual sum of squares:  836424.05550",
      "Residual standard error:     304.85410   on  1234 degrees of freedom",
      "Multiple R-squared:       0.99548  Adjusted R-squared:      -0.03120",
  };
  EXPECT_EQ(ReportLines(data, result), expected);
  result.f_pvalue = 4.98403e-10;
  EXPECT_EQ(FTestLine(data, result),
            "F statistic:     330.28530 on 2 and 1234 DF, p-value:   4.98403E-10");
  result.f_pvalue = 1.0 - std::numeric_limits<double>::max();
  EXPECT_EQ(FTestLine(data, result),
            "F statistic:     330.28530 on 2 and 1234 DF, p-value: -1.79769E+308");
}

class Significance : public testing::TestWithParam<std::pair<double, const char*>> {};
TEST_P(Significance, ThresholdsAreStrict) {
  EXPECT_EQ(SignificanceCode(GetParam().first), GetParam().second);
}
INSTANTIATE_TEST_SUITE_P(
    Rows, Significance,
    testing::Values(std::pair{std::nextafter(0.001, 0.0), "***"}, std::pair{0.001, "**"},
                    std::pair{std::nextafter(0.01, 0.0), "**"}, std::pair{0.01, "*"},
                    std::pair{std::nextafter(0.05, 0.0), "*"}, std::pair{0.05, "."},
                    std::pair{0.1000000014, "."}, std::pair{0.10000000149011612, " "},
                    std::pair{std::nan(""), " "}));

}  // namespace
}  // namespace linfit
