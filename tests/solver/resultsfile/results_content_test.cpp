// The whole stream of records of a small problem.
#include "resultsfile/results_content.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <map>

#include "tests/solver/resultsfile/names.h"

namespace linfit {
namespace {

struct RecordedSymbol {
  std::string head;
  std::vector<std::string> keys;
  std::vector<double> values;
  bool done = false;
};

struct Recorder {
  std::vector<RecordedSymbol> symbols;

  void Start(const SymbolHead& symbol) {
    symbols.push_back({std::string(symbol.name) + "|" + std::string(symbol.text) + "|" +
                           std::to_string(symbol.dimension),
                       {},
                       {}});
  }
  void Record(const KeyList& keys, double value) {
    symbols.back().keys.push_back(Joined(keys));
    symbols.back().values.push_back(value);
  }
  void Done(const SymbolHead&) { symbols.back().done = true; }
};

// Two coefficients and three observations. The values tell where they come from.
RegressionResult Result() {
  RegressionResult result;
  result.r2 = 1;
  result.rss = 2;
  result.df = 1;
  result.sigma = 4;
  result.resvar = 5;
  result.estimate = {10, 11};
  result.se = {20, 21};
  result.tval = {30, std::numeric_limits<double>::infinity()};
  result.pval = {40, std::nan("")};
  result.resid = {50, 51, 52};
  result.fitted = {60, 61, 62};
  result.covar = {70, 71, 72, 73};  // column-major, and made unsymmetric to tell rows from columns
  return result;
}

std::vector<RecordedSymbol> Record(NameTable coefficients, NameTable observations,
                                   const RegressionResult& result, const Failure& expected = {}) {
  KeyShape coefficient_shape;
  KeyShape observation_shape;
  AnalyseCoefficientKeys(coefficients, coefficient_shape);
  EXPECT_EQ(AnalyseObservationKeys(observations, observation_shape), std::nullopt);
  Recorder recorder;
  ErrorMonitor monitor;
  const ResultsContent content{
      {coefficients, coefficient_shape}, {observations, observation_shape}, result, monitor};
  EXPECT_EQ(PutAllSymbols(recorder, content), expected);
  return recorder.symbols;
}

using Texts = std::vector<std::string>;
using Values = std::vector<double>;

TEST(ResultsContent, StructuredSymbolsInOrder) {
  const auto symbols =
      Record(Names({"b j", kIntercept}), Names({"y i1 k1", "y i1 k2", "y i2 k1"}), Result());
  const Texts heads = {"r2|R Squared|0",
                       "rss|Residual sum of squares|0",
                       "df|Degrees of freedom|0",
                       "sigma|Standard error|0",
                       "resvar|Residual variance|0",
                       "estimate|Estimated coefficients|1",
                       "se|Standard errors|1",
                       "tval|t values|1",
                       "pval|p values|1",
                       "resid|residuals|2",
                       "fitted|fitted values for dependent variable|2",
                       "covar|variance-covariance matrix|2",
                       "confint|confidence intervals|3"};
  ASSERT_EQ(symbols.size(), heads.size());
  for (std::size_t i = 0; i < heads.size(); ++i) {
    EXPECT_EQ(symbols[i].head, heads[i]);
    EXPECT_TRUE(symbols[i].done) << heads[i];
  }
  for (std::size_t i = 0; i < 5; ++i) {
    EXPECT_EQ(symbols[i].keys, Texts{""});
    EXPECT_EQ(symbols[i].values, Values{i == 2 ? 1.0 : static_cast<double>(i + 1)});
  }
  for (std::size_t i = 5; i < 9; ++i) EXPECT_EQ(symbols[i].keys, (Texts{"j", "Intercept"}));
  EXPECT_EQ(symbols[5].values, (Values{10, 11}));
  EXPECT_EQ(symbols[6].values, (Values{20, 21}));
  EXPECT_TRUE(std::isinf(symbols[7].values[1]));
  EXPECT_TRUE(std::isnan(symbols[8].values[1]));
  EXPECT_EQ(symbols[9].keys, (Texts{"i1.k1", "i1.k2", "i2.k1"}));
  EXPECT_EQ(symbols[9].values, (Values{50, 51, 52}));
  EXPECT_EQ(symbols[10].values, (Values{60, 61, 62}));
  EXPECT_EQ(symbols[11].keys, (Texts{"j.j", "j.Intercept", "Intercept.j", "Intercept.Intercept"}));
  EXPECT_EQ(symbols[11].values, (Values{70, 72, 71, 73}));
}

// t quantiles at one degree of freedom are tan(pi (1/2 - tail)), exact to the seven digits of the
// published routine.
TEST(ResultsContent, ConfidenceIntervals) {
  const auto symbols =
      Record(Names({"b j k", kIntercept}), Names({"one", "two", "three"}), Result());
  const RecordedSymbol& confint = symbols.back();
  EXPECT_EQ(confint.head, "confint|confidence intervals|4");
  const std::map<std::string, double> levels = {
      {"90%", 6.313752}, {"95%", 12.706205}, {"97.5%", 25.451700}, {"99%", 63.656741}};
  const Texts order = {"90%", "95%", "97.5%", "99%"};
  const Texts coefficients = {"j.k", "Intercept.Intercept"};
  ASSERT_EQ(confint.keys.size(), 16U);
  std::size_t i = 0;
  for (std::size_t j = 0; j < 2; ++j) {
    for (const std::string& level : order) {
      for (const double sign : {-1.0, 1.0}) {
        EXPECT_EQ(confint.keys[i], level + "." + coefficients[j] + (sign < 0.0 ? ".LO" : ".UP"));
        const double expected = (10.0 + static_cast<double>(j)) +
                                sign * (20.0 + static_cast<double>(j)) * levels.at(level);
        EXPECT_NEAR(confint.values[i] / expected, 1.0, 1e-5) << confint.keys[i];
        ++i;
      }
    }
  }
}

TEST(ResultsContent, NoDegreesOfFreedomEndTheIntervals) {
  RegressionResult result = Result();
  result.df = 0;
  const auto symbols = Record(Names({"b j", "b k"}), Names({"y i", "y k", "y l"}), result,
                              "df incorrect in call to STUDIN");
  EXPECT_EQ(symbols.size(), 13U);
  EXPECT_TRUE(symbols.back().keys.empty());
  EXPECT_FALSE(symbols.back().done);
}

}  // namespace
}  // namespace linfit
