// What the sqlite3 command line reads out of a results file, against what the estimation computes
// from the same data in this process: every record of every symbol, keys and bits.
#include <gtest/gtest.h>

#include <charconv>
#include <cmath>

#include "estimation/least_squares.h"
#include "estimation/statistics.h"
#include "numerics/confidence.h"
#include "tests/chain/solve.h"

namespace chain {
namespace {

using testing_support::RunProgram;

constexpr char kSeparator = '\x1f';

// One record as sqlite3 prints it: the keys, then the value with 17 digits.
struct Record {
  std::vector<std::string> keys;
  double value = 0.0;
  bool operator==(const Record&) const = default;
};

void PrintTo(const Record& record, std::ostream* out) {
  for (const std::string& key : record.keys) *out << key << " | ";
  *out << testing::PrintToString(record.value);
}

std::vector<Record> ReadBack(const Solve& solve, const std::string& symbol, int dimension) {
  std::string columns;
  for (int k = 1; k <= dimension; ++k) columns += "dim" + std::to_string(k) + ", ";
  const auto read = RunProgram(LINFIT_SQLITE3,
                               {"-separator", std::string(1, kSeparator), "linfit.tdx",
                                "select " + columns + "printf('%!.17g', value) from " + symbol},
                               {.directory = solve.directory.Path(), .environment = {}});
  EXPECT_EQ(read.exit_code, 0) << read.err;
  std::vector<Record> records;
  for (const std::string& line : testing_support::Lines(read.out)) {
    Record record;
    std::string field;
    for (const char character : line + kSeparator) {
      if (character == kSeparator) {
        record.keys.push_back(std::move(field));
        field.clear();
      } else {
        field += character;
      }
    }
    record.value = std::stod(record.keys.back());
    record.keys.pop_back();
    records.push_back(std::move(record));
  }
  return records;
}

// The regression as the solver takes it from the model: the intercept last.
linfit::RegressionData Extract(const Observations& observations, bool intercept) {
  linfit::RegressionData data;
  data.n = static_cast<std::int32_t>(observations.response.size());
  data.p = static_cast<std::int32_t>(observations.columns.size()) + (intercept ? 1 : 0);
  data.ResponseVector = observations.response;
  for (const std::vector<double>& column : observations.columns) {
    data.DesignMatrix.insert(data.DesignMatrix.end(), column.begin(), column.end());
  }
  if (intercept)
    data.DesignMatrix.insert(data.DesignMatrix.end(), observations.response.size(), 1.0);
  data.has_intercept = intercept;
  return data;
}

using Keys = std::vector<std::vector<std::string>>;

std::vector<Record> Vector(const Keys& keys, const std::vector<double>& values) {
  std::vector<Record> records;
  for (std::size_t i = 0; i < keys.size(); ++i) records.push_back({keys[i], values[i]});
  return records;
}

std::vector<Record> Covariance(const Keys& keys, const std::vector<double>& covar) {
  std::vector<Record> records;
  for (std::size_t i = 0; i < keys.size(); ++i) {
    for (std::size_t j = 0; j < keys.size(); ++j) {
      records.push_back({{keys[i][0], keys[j][0]}, covar[i + j * keys.size()]});
    }
  }
  return records;
}

std::vector<Record> Intervals(const Keys& keys, const linfit::RegressionResult& result) {
  std::vector<Record> records;
  linfit::ErrorMonitor monitor;
  for (std::size_t j = 0; j < keys.size(); ++j) {
    for (const linfit::ConfidenceLevel& level : linfit::kConfidenceLevels) {
      int ifault = 0;
      const double t = linfit::ConfidenceQuantile(level.level, result.df, ifault, monitor);
      records.push_back({{level.label, keys[j][0], "LO"}, result.estimate[j] + t * result.se[j]});
      records.push_back({{level.label, keys[j][0], "UP"}, result.estimate[j] - t * result.se[j]});
    }
  }
  return records;
}

class ReadBackTest : public testing::TestWithParam<DataSet> {};

TEST_P(ReadBackTest, EverySymbolIsWhatTheEstimationComputes) {
  const DataSet& set = GetParam();
  Solve solve;
  SolveModel(set, solve);
  ASSERT_EQ(solve.result.exit_code, 0) << solve.result.err;

  const Observations observations = ReadObservations(set);
  const linfit::RegressionData data = Extract(observations, set.intercept);
  linfit::RegressionResult result;
  const auto silent = [](std::string_view) {};
  ASSERT_FALSE(linfit::SolveLeastSquares(data, result, silent));
  ASSERT_FALSE(linfit::ComputeStatistics(data, result, silent));

  const std::map<std::string, double> scalars{{"r2", result.r2},
                                              {"rss", result.rss},
                                              {"df", result.df},
                                              {"sigma", result.sigma},
                                              {"resvar", result.resvar}};
  for (const auto& [name, value] : scalars) {
    EXPECT_EQ(ReadBack(solve, name, 0), (std::vector<Record>{{{}, value}})) << name;
  }
  Keys coefficients;
  for (const std::string& item : CoefficientItems(set)) coefficients.push_back({item});
  if (set.intercept) coefficients.push_back({"Intercept"});
  EXPECT_EQ(ReadBack(solve, "estimate", 1), Vector(coefficients, result.estimate));
  EXPECT_EQ(ReadBack(solve, "se", 1), Vector(coefficients, result.se));
  EXPECT_EQ(ReadBack(solve, "tval", 1), Vector(coefficients, result.tval));
  EXPECT_EQ(ReadBack(solve, "pval", 1), Vector(coefficients, result.pval));
  EXPECT_EQ(ReadBack(solve, "covar", 2), Covariance(coefficients, result.covar));
  EXPECT_EQ(ReadBack(solve, "confint", 3), Intervals(coefficients, result));
  const int labels = static_cast<int>(observations.labels[0].size());
  EXPECT_EQ(ReadBack(solve, "resid", labels), Vector(observations.labels, result.resid));
  EXPECT_EQ(ReadBack(solve, "fitted", labels), Vector(observations.labels, result.fitted));
}

INSTANTIATE_TEST_SUITE_P(Certified, ReadBackTest, testing::ValuesIn(CertifiedSets()),
                         [](const auto& test) { return test.param.name; });
INSTANTIATE_TEST_SUITE_P(Real, ReadBackTest, testing::ValuesIn(RealSets()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace chain
