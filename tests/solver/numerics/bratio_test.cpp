#include "numerics/bratio.h"

#include <cmath>
#include <functional>
#include <limits>
#include <sstream>

#include "numerics/bratio_asymptotic.h"
#include "numerics/elementary_single.h"
#include "numerics/gamma_single.h"
#include "numerics/gammad.h"
#include "tests/solver/numerics/tables.h"

namespace linfit_test {
namespace {

using namespace linfit;  // NOLINT: everything here is under test
using testing_support::WorstRow;

TEST(Bratio, AgreesWithThePublishedRoutine) {
  WorstRow worst("bratio_small.csv", kSingleBound);
  for (const Row& row : ReadTable("bratio_small.csv")) {
    float w = -1.0f;
    float w1 = -1.0f;
    int ierr = -1;
    BRATIO(row.Float("a"), row.Float("b"), row.Float("x"), row.Float("y"), w, w1, ierr);
    EXPECT_EQ(ierr, row.Int("ierr")) << row.text;
    worst.Add(SingleDistance(w, row.Float("w")), row.text);
    worst.Add(SingleDistance(w1, row.Float("w1")), row.text);
  }
}

// The supporting routines have branches that no argument of BRATIO reaches.
TEST(Bratio, SupportingRoutinesAgreeWithThePublishedOnes) {
  using Arguments = std::vector<float>;
  using Function = std::function<float(const Arguments&)>;
  const std::map<std::string, Function> functions{
      {"exparg", [](const Arguments& k) { return k[0] == 0 ? single::kExpMax : single::kExpMin; }},
      {"psi_", [](const Arguments& k) { return single::Digamma(k[0]); }},
      {"gam1_", [](const Arguments& k) { return single::ReciprocalGammaLessOne(k[0]); }},
      {"gamln1_", [](const Arguments& k) { return single::LogGammaOnePlus(k[0]); }},
      {"gamln_", [](const Arguments& k) { return single::LogGamma(k[0]); }},
      {"betaln_", [](const Arguments& k) { return single::LogBeta(k[0], k[1]); }},
      {"gsumln_", [](const Arguments& k) { return single::LogGammaOfSum(k[0], k[1]); }},
      {"algdiv_", [](const Arguments& k) { return single::LogGammaQuotient(k[0], k[1]); }},
      {"bcorr_", [](const Arguments& k) { return single::StirlingCorrection(k[0], k[1]); }},
      {"alnrel_", [](const Arguments& k) { return single::LogOnePlus(k[0]); }},
      {"rlog1_", [](const Arguments& k) { return single::XMinusLogOnePlus(k[0]); }},
      {"rexp_", [](const Arguments& k) { return single::ExpMinusOne(k[0]); }},
      {"erf_", [](const Arguments& k) { return single::Erf(k[0]); }},
      {"erfc1(0)", [](const Arguments& k) { return single::Erfc(k[0]); }},
      {"erfc1(1)", [](const Arguments& k) { return single::ScaledErfc(k[0]); }},
      {"esum", [](const Arguments& k) { return single::ExpSum(static_cast<int>(k[0]), k[1]); }},
  };

  WorstRow worst("helper_values.txt", kSingleBound);
  std::map<std::string, int> rows;
  for (const std::string& line : testing_support::Lines(ReadData("helper_values.txt"))) {
    // "name: (arguments)=value ..." or "name(arguments)=value ...".
    const std::size_t colon = line.find(": ");
    const std::string heading = colon == std::string::npos ? "" : line.substr(0, colon);
    std::istringstream items(colon == std::string::npos ? line : line.substr(colon + 1));
    for (std::string item; items >> item;) {
      const std::size_t open = item.find('(');
      const std::size_t close = item.find(")=");
      const std::string name = heading.empty() ? item.substr(0, open) : heading;
      if (close == std::string::npos || functions.count(name) == 0) {
        continue;  // the remark and the machine constants
      }
      Arguments arguments;
      for (const std::string& field : Fields(item.substr(open + 1, close - open - 1))) {
        arguments.push_back(Number<float>(field));
      }
      const auto expected = Number<float>(item.substr(close + 2));
      worst.Add(SingleDistance(functions.at(name)(arguments), expected),
                heading.empty() ? item : std::string(heading).append(item));
      ++rows[name];
    }
  }
  EXPECT_EQ(rows.size(), functions.size()) << "a routine has no values";
}

// BRATIO and the tables show only a part of the gamma ratio behind it: hence the double one beside
// it.
TEST(Bratio, GammaRatioAgreesWithTheDoubleOne) {
  using single::SmallParameterGammaRatio;
  WorstRow worst("gamma ratio", 1.0);
  for (const float a : {0.05f, 0.25f, 0.5f, 0.75f, 1.0f}) {
    for (const float x : {1e-4f, 0.04f, 0.2f, 0.25f, 0.7f, 1.09f, 1.1f, 1.5f, 6.0f}) {
      const double r = std::exp(-x + a * std::log(x) - std::lgamma(a));
      const auto [p, q] = SmallParameterGammaRatio(a, x, static_cast<float>(r), 1e-6f);
      int ifault = 0;
      const double expected = GAMMAD(x, a, ifault);
      const std::string row = std::to_string(a) + ' ' + std::to_string(x);
      worst.Add(testing_support::ShareOfTolerance(p, expected, 1e-6, 2e-7), row);
      worst.Add(testing_support::ShareOfTolerance(q, 1.0 - expected, 1e-6, 2e-7), row);
    }
  }
  EXPECT_EQ(SmallParameterGammaRatio(0.5f, 0.0f, 0.0f, 1e-6f).q, 1.0f);
  EXPECT_EQ(SmallParameterGammaRatio(0.0f, 0.5f, 0.0f, 1e-6f).q, 0.0f);
}

TEST(Bratio, UndefinedArgumentsEndWithAnUndefinedResult) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float infinity = std::numeric_limits<float>::infinity();
  const float cases[][4] = {{60, 3, nan, nan},      {60, 3, nan, 0.5f},     {50, 0.5f, nan, nan},
                            {200, 200, nan, nan},   {0.5f, 0.5f, nan, nan}, {nan, 3, 0.5f, 0.5f},
                            {60, nan, 0.25f, 0.75f}};
  for (const auto& [a, b, x, y] : cases) {
    float w = 0.0f;
    float w1 = 0.0f;
    int ierr = -1;
    BRATIO(a, b, x, y, w, w1, ierr);
    EXPECT_TRUE(std::isnan(w) && std::isnan(w1)) << a << ' ' << b << ' ' << x << ' ' << y;
    EXPECT_EQ(ierr, 0);
  }
  // Infinite parameters have no stated value; they have to come to an end.
  for (const float other : {1e-30f, 0.5f, 3.0f, 60.0f, 1e9f, infinity}) {
    for (const float x : {1e-30f, 0.25f, 0.75f, 1.0f}) {
      float w = 0.0f;
      float w1 = 0.0f;
      int ierr = -1;
      BRATIO(infinity, other, x, 1.0f - x, w, w1, ierr);
      BRATIO(other, infinity, x, 1.0f - x, w, w1, ierr);
      EXPECT_EQ(ierr, 0);
    }
  }
}

}  // namespace
}  // namespace linfit_test
