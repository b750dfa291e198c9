// Whole solves, from a model or a table to the report, the results file and the returned solution,
// against results that are proven elsewhere.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>

#include "tests/chain/solve.h"

namespace chain {
namespace {

using testing_support::WriteFile;

// Number of correct digits: minus the decimal logarithm of the relative error, of the absolute one
// for 0.
double CorrectDigits(double actual, double expected) {
  const double error =
      expected == 0.0 ? std::fabs(actual) : std::fabs(actual - expected) / std::fabs(expected);
  if (std::isnan(error)) {
    return 0.0;
  }
  return error == 0.0 ? 16.0 : -std::log10(error);
}

// The fewest correct digits over all items of a quantity.
double WorstDigits(const Values& actual, const Values& expected) {
  double worst = 16.0;
  for (const auto& [item, value] : expected) {
    const auto found = actual.find(item);
    worst = std::min(worst, found == actual.end() ? -99.0 : CorrectDigits(found->second, value));
  }
  return worst;
}

// p-values are single precision, and their argument is rounded to single before, which counts more
// the more degrees of freedom there are.
void ExpectPValues(const Values& actual, const Values& expected, double df) {
  for (const auto& [item, value] : expected) {
    ASSERT_TRUE(actual.contains(item)) << item;
    EXPECT_NEAR(actual.at(item), value, value * (1e-6 + 1e-6 * df) + 1e-37) << item;
  }
}

void ExpectIntervals(const DataSet& set, const Values& confint) {
  const std::map<std::string, std::string> levels{
      {"0.90", "90%"}, {"0.95", "95%"}, {"0.975", "97.5%"}, {"0.99", "99%"}};
  for (const auto& [level, label] : levels) {
    const Values low = Expected(set, "confint " + level + " LO");
    const Values up = Expected(set, "confint " + level + " UP");
    for (const auto& [item, value] : low) {
      const double tolerance = 1e-5 * (up.at(item) - value);
      ASSERT_TRUE(confint.contains(label + "|" + item + "|LO")) << label << " " << item;
      EXPECT_NEAR(confint.at(label + "|" + item + "|LO"), value, tolerance) << label << " " << item;
      EXPECT_NEAR(confint.at(label + "|" + item + "|UP"), up.at(item), tolerance)
          << label << " " << item;
    }
  }
}

// Keeps the report for the comparison between systems.
void KeepReport(const DataSet& set, const std::string& report) {
  std::filesystem::create_directories(LINFIT_REPORT_DIR);
  WriteFile(std::filesystem::path(LINFIT_REPORT_DIR) / (set.name + ".txt"), report);
}

// The report without the names in its first 17 columns: a table's coefficients have no symbol
// around them.
std::string WithoutNames(const std::string& report) {
  std::string text;
  bool in_table = true;
  for (const std::string& line : testing_support::Lines(report)) {
    in_table = in_table && !line.starts_with("     ---");
    text += (in_table ? line.substr(17) : line) + "\n";
  }
  return text;
}

class CertifiedSet : public testing::TestWithParam<DataSet> {};

TEST_P(CertifiedSet, ReachesItsDigitsByModelAndByTable) {
  const DataSet& set = GetParam();
  Solve by_model;
  SolveModel(set, by_model);
  ASSERT_EQ(by_model.result.exit_code, 0) << by_model.result.out << by_model.result.err;
  EXPECT_GE(WorstDigits(by_model.Symbol("estimate"), Expected(set, "estimate")),
            set.correct_digits - 0.3);
  const bool perfect_fit = Expected(set, "rss").at("") == 0.0;
  if (!perfect_fit) {
    // Standard errors and sums of squares are as good as R and the residuals are.
    const double digits = set.name == "Longley" ? 12.0 : set.correct_digits - 0.3;
    EXPECT_GE(WorstDigits(by_model.Symbol("se"), Expected(set, "se")), std::min(digits, 12.0));
    EXPECT_GE(WorstDigits(by_model.Symbol("rss"), Expected(set, "rss")), std::min(digits, 12.0));
    ExpectIntervals(set, by_model.Symbol("confint"));
  }
  const std::string report = by_model.Report(set.name + ".lst");
  KeepReport(set, report);

  Solve by_table;
  SolveTable(set, by_table);
  ASSERT_EQ(by_table.result.exit_code, 0) << by_table.result.out << by_table.result.err;
  if (!perfect_fit) {
    EXPECT_EQ(WithoutNames(by_table.Report(set.name + ".lst")), WithoutNames(report));
  } else {
    EXPECT_GE(WorstDigits(by_table.Symbol("estimate"), Expected(set, "estimate")),
              set.correct_digits - 0.3);
  }
}

INSTANTIATE_TEST_SUITE_P(Chain, CertifiedSet, testing::ValuesIn(CertifiedSets()),
                         [](const auto& test) { return test.param.name; });

class RealSet : public testing::TestWithParam<DataSet> {};

TEST_P(RealSet, AgreesWithRByModelAndByTable) {
  const DataSet& set = GetParam();
  Solve solve;
  SolveModel(set, solve);
  ASSERT_EQ(solve.result.exit_code, 0) << solve.result.out << solve.result.err;
  for (const char* quantity : {"estimate", "se", "tval", "rss", "df", "sigma", "r2"}) {
    EXPECT_GE(WorstDigits(solve.Symbol(quantity), Expected(set, quantity)), 10.0) << quantity;
  }
  ExpectPValues(solve.Symbol("pval"), Expected(set, "pval"), Expected(set, "df").at(""));
  ExpectIntervals(set, solve.Symbol("confint"));
  const std::string report = solve.Report(set.name + ".lst");
  KeepReport(set, report);

  Solve by_table;
  SolveTable(set, by_table);
  ASSERT_EQ(by_table.result.exit_code, 0) << by_table.result.out << by_table.result.err;
  EXPECT_EQ(WithoutNames(by_table.Report(set.name + ".lst")), WithoutNames(report));
  EXPECT_EQ(by_table.Symbol("resid"), solve.Symbol("resid"));
}

INSTANTIATE_TEST_SUITE_P(Chain, RealSet, testing::ValuesIn(RealSets()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace chain
