#include "numerics/distributions.h"

#include <cmath>
#include <limits>

#include "numerics/gammad.h"
#include "tests/solver/numerics/tables.h"

namespace linfit_test {
namespace {

using namespace linfit;  // NOLINT: everything here is under test
using testing_support::ShareOfTolerance;
using testing_support::WorstRow;

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();
constexpr double kInfinity = std::numeric_limits<double>::infinity();

TEST(Gammad, AgreesWithThePublishedRoutine) {
  WorstRow worst("gammad_small.csv", 1.0);
  for (const Row& row : ReadTable("gammad_small.csv")) {
    int ifault = -1;
    const double value = GAMMAD(row.Double("x_hex"), row.Double("p_hex"), ifault);
    EXPECT_EQ(ifault, row.Int("ifault")) << row.text;
    // Tight enough for the normal branch to tell the published constants from altered ones.
    const bool normal = row["branch"] == "normal";
    worst.Add(ShareOfTolerance(value, row.Double("result_hex"), normal ? 0.0 : 1e-11,
                               normal ? 1e-10 : 0.0),
              row.text);
  }
}

TEST(Gammad, OrderOfTheLimits) {
  int ifault = -1;
  EXPECT_EQ(GAMMAD(0.0, 0.0, ifault), 0.0);
  EXPECT_EQ(ifault, 1);
  EXPECT_EQ(GAMMAD(0.0, 2000.0, ifault), 0.0);
  EXPECT_EQ(ifault, 0);
  EXPECT_EQ(GAMMAD(2e8, 1000.0, ifault), 1.0);
  EXPECT_NEAR(GAMMAD(2e8, 2e8, ifault), 0.5, 1e-4) << "p > 1000 comes before x > 1e8";
  EXPECT_EQ(GAMMAD(kInfinity, 3.0, ifault), 1.0);
  for (const auto& [x, p] : {std::pair{kNaN, 2.0}, {2.0, kNaN}, {kNaN, 2000.0}, {kNaN, kNaN}}) {
    EXPECT_TRUE(std::isnan(GAMMAD(x, p, ifault)));
    EXPECT_EQ(ifault, 0);
  }
}

Probability Evaluate(const Row& row) {
  const double first = row.Double("t_or_F");
  const double d1 = row.Double("d1_or_df");
  return row["kind"] == "t" ? StudentTwoSidedTail(first, d1) : FCdf(first, d1, row.Double("d2"));
}

TEST(Distributions, AgreeWithTheTable) {
  WorstRow worst("tails_small.csv", 1.0);
  for (const Row& row : ReadTable("tails_small.csv")) {
    const Probability probability = Evaluate(row);
    const std::string& kind = row["kind"];
    const std::string expected_line = kind == "none"     ? ""
                                      : kind == "gammad" ? " gammad, ifault = " + row["indicator"]
                                                         : " bratio, ierr = " + row["indicator"];
    EXPECT_EQ(DiagnosticLine(probability), expected_line) << row.text;

    // What the special function may be off by, and the rounding of 1 - w.
    double tolerance = kExactMath ? 0.0 : 1e-37;
    if (kind == "gammad") {
      tolerance = 1e-10;
    } else if (kind != "none") {
      tolerance += kSingleRelative * row.Double("w_or_q_hex");
      tolerance += kExactMath || kind == "t" ? 0.0 : 2.3e-16;
    }
    const double value = probability.value;
    worst.Add(ShareOfTolerance(value, row.Double("pval_or_cdf_hex"), 0.0, tolerance), row.text);
    const double reported = kind == "t" ? value : 1.0 - value;
    worst.Add(ShareOfTolerance(reported, row.Double("pval_or_upper_tail"), 0.0, tolerance),
              row.text);
  }
}

// Closed forms that owe nothing to the table.
TEST(Distributions, ClosedForms) {
  const double pi = std::acos(-1.0);
  for (const double t : {0.0, 0.01, 0.5, 1.0, 3.0, 40.0}) {
    EXPECT_NEAR(StudentTwoSidedTail(t, 1).value, 1.0 - 2.0 / pi * std::atan(t), 1e-6) << t;
    EXPECT_NEAR(StudentTwoSidedTail(-t, 2).value, 1.0 - t / std::sqrt(2.0 + t * t), 1e-6) << t;
    EXPECT_EQ(StudentOneSidedTail(t, 7).value, 0.5 * StudentTwoSidedTail(t, 7).value) << t;
    EXPECT_EQ(1.0 - FCdf(t * t, 1, 9).value, 1.0 - (1.0 - StudentTwoSidedTail(t, 9).value)) << t;
    EXPECT_NEAR(ChiSquareCdf(t, 2).value, 1.0 - std::exp(-t / 2.0), 1e-9) << t;
    EXPECT_NEAR(GammaRatioOfQuotient(t, 4.0, 1.0).value, 1.0 - std::exp(-t / 4.0), 1e-9) << t;
  }
  EXPECT_EQ(DiagnosticLine(StudentOneSidedTail(1, 7)), " bratio, ierr = 0");
  EXPECT_EQ(DiagnosticLine(ChiSquareCdf(-1, 2)), " gammad, ifault = 1");
  EXPECT_EQ(DiagnosticLine(GammaRatioOfQuotient(1, 2, 0)), " gammad, ifault = 1");
}

TEST(Distributions, LimitsAndUndefinedValues) {
  EXPECT_EQ(StudentTwoSidedTail(0.0, 12).value, 1.0);
  EXPECT_EQ(StudentTwoSidedTail(1e30, 12).value, 0.0);
  EXPECT_EQ(StudentTwoSidedTail(kInfinity, 12).value, 0.0);
  EXPECT_EQ(FCdf(kInfinity, 3, 12).value, 1.0);
  // 0/0 in t or F, where it would never end without care: 80 degrees and a few regressors.
  for (const double df : {1.0, 10.0, 80.0, 120.0, 1000.0, 400000.0, 400001.0}) {
    for (const double d1 : {1.0, 3.0, 6.0, 150.0, 500000.0}) {
      const Probability f = FCdf(kNaN, d1, df);
      EXPECT_TRUE(std::isnan(f.value)) << d1 << ' ' << df;
      EXPECT_EQ(f.indicator, 0);
    }
    EXPECT_TRUE(std::isnan(StudentTwoSidedTail(kNaN, df).value)) << df;
  }
  // No degrees of freedom: x = 0 and a = 0, an error that only its indicator shows.
  const Probability none = StudentTwoSidedTail(2.0, 0.0);
  EXPECT_EQ(none.value, 0.0);
  EXPECT_EQ(DiagnosticLine(none), " bratio, ierr = 6");
}

}  // namespace
}  // namespace linfit_test
