// Which columns a plan uses, and as what.
#include "tavolite/tables/plan.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/input_error.h"

namespace host {
namespace {

const std::vector<std::string> kNames{"y", "x", "z", "a,b", "", "f"};

// The regressors, each behind an f for a factor or n for numbers, with its place among these; then
// the labels; or the message.
std::string Planned(const TableOptions& options, const std::vector<std::string>& names = kNames) {
  try {
    const TablePlan plan = MakeTablePlan({.names = names, .where = "t:1: "}, options);
    std::string text;
    for (const Regressor& regressor : plan.regressors) {
      text += regressor.name + (regressor.factor ? ":f" : ":n") +
              std::to_string(regressor.position) + " ";
    }
    text += "|";
    for (const ColumnUse& column : plan.columns) {
      if (column.text >= 0 && plan.IsLabel(column.text)) {
        text += " " + column.name + ":" + std::to_string(column.text);
      }
    }
    return text;
  } catch (const InputError& error) {
    return error.what();
  }
}

struct Choice {
  const char* name;
  TableOptions options;
  const char* planned;
};

TableOptions Table(std::vector<std::string> regressors, std::vector<std::string> drop = {},
                   std::vector<std::string> labels = {}, std::vector<std::string> factors = {}) {
  TableOptions options;
  options.response = "y";
  options.regressors = std::move(regressors);
  options.drop = std::move(drop);
  options.labels = std::move(labels);
  options.factors = std::move(factors);
  return options;
}

const Choice kChoices[] = {
    {"AllOthers", Table({}), "x:n1 z:n2 a,b:n3 f:n4 |"},
    {"InTheOrderAsked", Table({"z,x"}), "z:n1 x:n2 |"},
    {"CommaInAName", Table({"a,b", "x"}), "a,b:n1 x:n2 |"},
    {"Dropped", Table({}, {"x", "a,b"}), "z:n1 f:n2 |"},
    {"LabelsBeforeFactors", Table({}, {"a,b"}, {"z,x"}, {"f"}), "f:f0 | x:1 z:0"},
    {"FactorsJoinTheRegressors", Table({"x"}, {}, {}, {"f", "z"}), "x:n1 f:f0 z:f1 |"},
    {"FactorAmongTheRegressors", Table({"f,x"}, {}, {}, {"f"}), "f:f0 x:n1 |"},
    {"LabelAsRegressorToo", Table({"x,z"}, {}, {"z"}), "x:n1 z:n2 | z:0"},
    {"ResponseAsLabelToo", Table({"x"}, {}, {"y"}), "x:n1 | y:0"},
    {"UnknownColumn", Table({"x,w"}),
     "t:1: --regressors: there is no column \"w\"; the columns are y, x, z, a,b, , f"},
    {"NamedTwice", Table({"x", "x"}), "t:1: --regressors: the column \"x\" is named twice"},
    {"ResponseAsRegressor", Table({"x,y"}),
     "t:1: the column \"y\" is both the response and a regressor"},
    {"ResponseAsFactor", Table({}, {}, {}, {"y"}),
     "t:1: the column \"y\" is both the response and a regressor"},
    {"DroppedAndUsed", Table({}, {"x"}, {"x"}), "t:1: the column \"x\" is both dropped and used"},
    {"LabelAndFactor", Table({}, {}, {"f"}, {"f"}),
     "t:1: the column \"f\" is both a label and a factor"},
    {"NothingLeft", Table({}, {"x", "z", "a,b", "f"}), "t:1: no column is left as a regressor"},
};

class PlanChoices : public testing::TestWithParam<Choice> {};

TEST_P(PlanChoices, GiveTheUsesOfColumns) {
  EXPECT_EQ(Planned(GetParam().options), GetParam().planned);
}

INSTANTIATE_TEST_SUITE_P(Plan, PlanChoices, testing::ValuesIn(kChoices),
                         [](const auto& test) { return std::string(test.param.name); });

TEST(Plan, RefusesNamesThatResultsCantHave) {
  EXPECT_EQ(Planned(Table({}), {"y", "x", "z", "x"}),
            "t:1: columns 2 and 4 have the same name \"x\"");
  EXPECT_EQ(Planned(Table({}), {"y", std::string(64, 'n')}),
            "t:1: the column \"" + std::string(40, 'n') +
                "...\" can't be a regressor: its name is longer than 63 bytes");
  EXPECT_EQ(Planned(Table({"x"}), {"y", "x", "\x01\xFF"}), "x:n1 |");
}

}  // namespace
}  // namespace host
