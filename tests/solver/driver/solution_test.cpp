// Report and solution of a whole run.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>

#include "tests/solver/driver/trace.h"

namespace linfit {
namespace {

using doubles::RunSolver;
using doubles::ScriptedRun;
using Lines = std::vector<std::string>;

// The numbers of a trace line.
std::vector<double> Numbers(const std::string& line) {
  std::istringstream stream(line.substr(line.find(' ')));
  std::vector<double> numbers;
  for (double number = 0.0; stream >> number;) numbers.push_back(number);
  return numbers;
}

void ExpectNumbers(const Lines& lines, const std::vector<std::vector<double>>& expected) {
  ASSERT_EQ(lines.size(), expected.size());
  for (std::size_t i = 0; i < lines.size(); ++i) {
    const std::vector<double> numbers = Numbers(lines[i]);
    ASSERT_EQ(numbers.size(), expected[i].size()) << lines[i];
    for (std::size_t k = 0; k < numbers.size(); ++k) {
      EXPECT_NEAR(numbers[k], expected[i][k], 1e-12) << lines[i];
    }
  }
}

// The line 1.97 x + 1.09 through the default model's five points, by hand; the objective stands in
// the middle.
TEST(Solution, LevelsAndMarginals) {
  const ScriptedRun run = RunSolver(
      "fit 3.1 1\nfit 4.9 2\nfit 7.2 3\nfit 8.8 4\nfit 11 5\nobjective 3 2\n"
      "tevTimeDiff = 0.5\n");
  ExpectSolution(run);
  const double rss = 0.091;
  ExpectNumbers(LinesOf(run, {"tmoSetSolutionEquRec"}), {{1, 0.04, 0, 2, 0},
                                                         {2, -0.13, 0, 2, 0},
                                                         {3, rss, 0, 2, 0},
                                                         {4, 0.2, 0, 2, 0},
                                                         {5, -0.17, 0, 2, 0},
                                                         {6, 0.06, 0, 2, 0}});
  // The intercept has no column in the model.
  ExpectNumbers(LinesOf(run, {"tmoSetSolutionVarRec"}),
                {{1, 1.97, std::sqrt(rss / 30), 3, 0}, {2, rss, 0, 2, 0}});
  ExpectNumbers(LinesOf(run, {"tmoSetHeadnTail"}), {{3, 1}, {4, 0.5}, {5, rss}, {6, 0}});

  const Lines order = CallOrder(run);
  const Lines expected = Words(
      "tevTimeDiff tmoModelStatSet tmoSolveStatSet tmoSetHeadnTail tmoSetSolutionEquRec "
      "tmoSetSolutionVarRec tmoUnloadSolutionLegacy tmoXFree tevXFree");
  EXPECT_EQ(Lines(order.end() - static_cast<int>(expected.size()), order.end()), expected);
  EXPECT_TRUE(Contains(run.trace, "tmoModelStatSet 1"));
  EXPECT_TRUE(Contains(run.trace, "tmoSolveStatSet 1"));
}

TEST(Report, StatusFileAndLogAgree) {
  const ScriptedRun run = RunSolver("");
  const Lines status = doubles::TextsOf(run, "tevStatC");
  Lines log = doubles::TextsOf(run, "tevLog");
  log.erase(log.begin());  // the audit line
  EXPECT_EQ(status, log);
  ASSERT_GE(log.size(), 12U);
  EXPECT_EQ(log[1],
            "        coeff(x1)       1.97000       0.05508      35.76895   4.80542E-05 ***");
  EXPECT_EQ(log[10], "F statistic:    1279.41758 on 1 and 3 DF, p-value:   4.80542E-05");

  // Diagnostics are for the status file: the solve's three, one per coefficient, one for the F
  // test.
  Lines diagnostics = doubles::TextsOf(run, "tevStat");
  diagnostics.erase(diagnostics.begin(), diagnostics.begin() + 23);
  ASSERT_EQ(diagnostics.size(), 6U);
  EXPECT_EQ(diagnostics[5].rfind(" bratio, ierr = ", 0), 0U);
  // The F test's stands just before its line.
  const auto f_line = std::find_if(run.trace.begin(), run.trace.end(), [](const std::string& line) {
    return line.rfind("tevStatC \"F statistic:", 0) == 0;
  });
  ASSERT_NE(f_line, run.trace.end());
  EXPECT_EQ((f_line - 1)->rfind("tevStat \" bratio", 0), 0U);
}

TEST(Report, InterceptAloneHasNoFTest) {
  const ScriptedRun run = RunSolver("fit 1\nfit 2\nfit 4\n");
  ExpectSolution(run);
  const Lines status = doubles::TextsOf(run, "tevStat");
  EXPECT_EQ(status.size(), 23U + 4U);
  const Lines log = doubles::TextsOf(run, "tevLog");
  EXPECT_TRUE(std::any_of(log.begin(), log.end(), [](const std::string& line) {
    return line.rfind("F statistic:", 0) == 0 &&
           line.find("on 0 and 2 DF, p-value: -1.79769E+308") != std::string::npos;
  }));
}

}  // namespace
}  // namespace linfit
