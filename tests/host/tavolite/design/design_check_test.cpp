#include "tavolite/design/design_check.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <numeric>
#include <random>

#include "instance/instance.h"
#include "tests/support/program.h"

namespace host {
namespace {

using testing_support::TemporaryDirectory;
using Values = std::vector<double>;

// A model whose columns are called x0, x1, ..., with the objective row between the others.
Model ModelOf(const std::vector<Values>& columns) {
  const std::size_t n = columns[0].size();
  Model model;
  model.objective_row = static_cast<std::int32_t>(n / 2);
  model.row_types.assign(n + 1, RowType::kEqual);
  model.row_types[n / 2] = RowType::kFree;
  model.rhs.assign(n + 1, 0.0);
  const auto add = [&](const std::string& name, std::vector<std::int32_t> rows, Values values) {
    model.column_names.symbol.push_back(static_cast<std::int32_t>(model.dictionary.symbols.size()));
    model.column_names.first.push_back(0);
    model.dictionary.symbols.push_back(name);
    model.columns.push_back(
        {std::make_shared<const std::vector<std::int32_t>>(std::move(rows)), std::move(values)});
  };
  add("rss", {model.objective_row}, {1.0});
  for (std::size_t j = 0; j < columns.size(); ++j) {
    std::vector<std::int32_t> rows;
    Values values;
    for (std::size_t i = 0; i < n; ++i) {
      if (columns[j][i] == 0.0) continue;
      rows.push_back(static_cast<std::int32_t>(i < n / 2 ? i : i + 1));
      values.push_back(-columns[j][i]);
    }
    add("x" + std::to_string(j), std::move(rows), std::move(values));
  }
  for (std::size_t i = 0; i <= n; ++i) {
    model.row_names.symbol.push_back(0);
    model.row_names.first.push_back(0);
  }
  return model;
}

struct Checked {
  DesignCheck check;
  std::vector<std::string> warnings;
};

Checked Check(const std::vector<Values>& columns, int add_constant_term) {
  const TemporaryDirectory directory;
  const Model model = ModelOf(columns);
  WriteInstance(model, directory / "instance #1.db");
  Checked result{CheckDesign(directory / "instance #1.db", add_constant_term), {}};
  result.warnings = DesignWarnings(result.check, model.dictionary, model.column_names);
  return result;
}

Values Normal(std::size_t n, unsigned seed) {
  std::mt19937 random(seed);
  std::normal_distribution<double> normal(3.0, 1.0);
  Values values(n);
  std::ranges::generate(values, [&] { return normal(random); });
  return values;
}

Values Make(std::size_t n, const std::function<double(std::size_t)>& value) {
  Values values(n);
  for (std::size_t i = 0; i < n; ++i) values[i] = value(i);
  return values;
}

constexpr const char* kNothing =
    "; the estimates, the residual sum and all that follows from them mean nothing. Leave ";

struct DependentCase {
  const char* name;
  int add_constant_term;
  std::vector<Values> columns;
  std::vector<std::string> relations;
};

Values Level(std::size_t n, std::size_t levels, std::size_t level) {
  return Make(
      n, [=](std::size_t i) { return (i / (levels == 2 ? 3 : 1)) % levels == level ? 1.0 : 0.0; });
}

const Values kA = Normal(24, 1);
const Values kB = Normal(24, 2);
const Values kZero(24, 0.0);
const Values kSeven(24, 7.0);
const Values kOnes(24, 1.0);
const Values kSum = Make(24, [](std::size_t i) { return 1e3 * kA[i] - 1e-2 * kB[i]; });
const Values kPrinted =
    Make(24, [](std::size_t i) { return std::round((kA[i] + kB[i]) * 1e12) / 1e12; });

const DependentCase kCases[] = {
    {"zero", 2, {kA, kZero, kB}, {"x1 is a column of zeros"}},
    {"constant", 2, {kA, kSeven}, {"x1 is a multiple of the intercept"}},
    {"constant_alone", 0, {kA, kSeven}, {}},
    {"two_constants", 0, {kSeven, kA, kOnes}, {"x2 is a multiple of x0"}},
    {"ones_make_no_intercept", 2, {kA, kOnes}, {}},
    {"ones_and_intercept", 1, {kOnes, kA}, {"x0 is a multiple of the intercept"}},
    {"different_scales", 2, {kA, kSum, kB}, {"x2 is a combination of x0 and x1"}},
    {"rounded", 2, {kA, kPrinted, kB}, {"x2 is a combination of x0 and x1"}},
    {"two_factors",
     2,
     {Level(24, 2, 0), Level(24, 2, 1), Level(24, 3, 0), Level(24, 3, 1), Level(24, 3, 2)},
     {"x1 is a combination of x0 and the intercept",
      "x4 is a combination of x2, x3 and the intercept"}},
    {"two_factors_alone",
     0,
     {Level(24, 2, 0), Level(24, 2, 1), Level(24, 3, 0), Level(24, 3, 1), Level(24, 3, 2)},
     {"x4 is a combination of x0, x1, x2 and x3"}},
    {"too_few_rows", 0, {{1.0, 2.0}, {3.0, 1.0}, {1.0, 1.0}}, {"x2 is a combination of x0 and x1"}},
    {"tiny_and_huge", 0, {{1e-290, 2e-290, 1e-290}, {1e290, 0.0, 0.0}}, {}},
};

class Dependent : public testing::TestWithParam<DependentCase> {};

TEST_P(Dependent, IsNamed) {
  const auto [check, warnings] = Check(GetParam().columns, GetParam().add_constant_term);
  ASSERT_EQ(warnings.size(), GetParam().relations.size()) << testing::PrintToString(warnings);
  for (std::size_t i = 0; i < warnings.size(); ++i) {
    EXPECT_TRUE(warnings[i].starts_with(GetParam().relations[i] + kNothing)) << warnings[i];
  }
  EXPECT_EQ(std::isinf(check.rank.condition), !warnings.empty());
}

INSTANTIATE_TEST_SUITE_P(Designs, Dependent, testing::ValuesIn(kCases),
                         [](const auto& test) { return std::string(test.param.name); });

// A column that is put at random among others, and is a combination of some of them.
TEST(DesignCheck, NamesPlantedDependence) {
  std::mt19937 random(7);
  const auto below = [&](std::size_t limit) { return random() % limit; };
  for (int trial = 0; trial < 20; ++trial) {
    const std::size_t n = 50 + below(5000);
    const std::size_t p = 3 + below(40);
    std::vector<Values> columns;
    for (std::size_t j = 0; j < p; ++j) {
      const double scale = std::pow(10.0, static_cast<double>(below(9)) - 4.0);
      columns.push_back(Normal(n, static_cast<unsigned>(random())));
      for (double& value : columns.back()) value *= scale;
    }
    std::vector<std::size_t> takes_part(p);
    std::iota(takes_part.begin(), takes_part.end(), 0);
    std::ranges::shuffle(takes_part, random);
    takes_part.resize(2 + below(p - 1));
    Values& planted = columns[takes_part[0]];
    const double intercept = below(2) == 0 ? 0.0 : 2.0;
    planted.assign(n, intercept);
    for (std::size_t k = 1; k < takes_part.size(); ++k) {
      for (std::size_t i = 0; i < n; ++i) {
        planted[i] += columns[takes_part[k]][i] / std::abs(columns[takes_part[k]][0]);
      }
    }
    const DesignCheck check = Check(columns, 1).check;
    ASSERT_EQ(check.rank.dependent.size(), 1U) << trial;
    std::vector<std::size_t> named = check.rank.dependent[0].others;
    named.push_back(check.rank.dependent[0].column);
    if (intercept != 0.0) takes_part.push_back(p);
    std::ranges::sort(named);
    std::ranges::sort(takes_part);
    EXPECT_EQ(named, takes_part) << trial;
  }
}

// Both ways of reducing the rows, in one block and in several, against singular values that are
// known: columns of a Hadamard matrix are orthogonal, and 2 + d of two has the angle of d.
TEST(DesignCheck, ConditionNumber) {
  for (const std::size_t n : {64U, 4096U, 16384U}) {
    std::vector<Values> columns;
    for (const unsigned j : {1U, 2U, 4U, 8U, 15U, 16U, 17U, 21U}) {
      columns.push_back(Make(n, [=](std::size_t i) {
        return __builtin_parity(j & static_cast<unsigned>(i)) ? 1.0 : -1.0;
      }));
    }
    EXPECT_NEAR(Check(columns, 1).check.rank.condition, 1.0, 1e-9) << n;
    columns[7] = Make(n, [&](std::size_t i) { return columns[0][i] + 1e-6 * columns[7][i]; });
    EXPECT_NEAR(Check(columns, 1).check.rank.condition / 2e6, 1.0, 0.02) << n;
  }
}

TEST(DesignCheck, NearlyDependent) {
  const Values near =
      Make(24, [](std::size_t i) { return kA[i] + kB[i] + 1e-8 * kSeven[i] * kB[i] * kB[i]; });
  const auto [check, warnings] = Check({kA, near, kB}, 0);
  EXPECT_GT(check.rank.condition, 1e7);
  EXPECT_EQ(warnings, std::vector<std::string>{
                          "the design is nearly dependent (condition number " +
                          ConditionText(check.rank.condition) +
                          "): x2 is nearly a combination of x0 and x1; about 7 digits of the "
                          "estimates can be trusted."});
}

TEST(DesignCheck, ManyAreCutShort) {
  std::vector<Values> columns(14, kA);
  const std::vector<std::string> warnings = Check(columns, 0).warnings;
  ASSERT_EQ(warnings.size(), 11U);
  EXPECT_EQ(warnings.back(), "3 more columns are combinations of others.");
}

}  // namespace
}  // namespace host
