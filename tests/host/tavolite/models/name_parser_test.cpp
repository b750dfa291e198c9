#include "tavolite/models/name_parser.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "base/input_error.h"

namespace host {
namespace {

struct Row {
  NameStyle style;
  const char* name;
  const char* symbol;
  std::vector<std::string> labels;
};

TEST(NameParser, ComeApartIntoSymbolAndLabels) {
  using enum NameStyle;
  const std::vector<Row> rows{
      {kMathProg, "const", "const", {}},
      {kMathProg, "coeff['it''s',1]", "coeff", {"it's", "1"}},
      {kMathProg, "c['a,b',']''[']", "c", {"a,b", "]'["}},
      {kMathProg, "c['''']", "c", {"'"}},
      {kMathProg, "c[-1.5e+10,a.b]", "c", {"-1.5e+10", "a.b"}},
      {kBrackets, "fit(a,1)", "fit", {"a", "1"}},
      {kBrackets, "fit[a,'x y']", "fit", {"a", "x y"}},
      {kBrackets, "c_1", "c_1", {}},
      // Whole names, where the brackets are not those of labels.
      {kBrackets, "f(a)(b)", "f(a)(b)", {}},
      {kBrackets, "f(a", "f(a", {}},
      {kBrackets, "(a)", "(a)", {}},
      {kBrackets, "f()", "f()", {}},
      {kBrackets, "f(a]", "f(a]", {}},
      {kBrackets, "f('a)", "f('a)", {}},
      {kBracketsOrUnderscores, "c_1", "c", {"1"}},
      {kBracketsOrUnderscores, "log_gdp_3_12", "log_gdp", {"3", "12"}},
      {kBracketsOrUnderscores, "log_gdp", "log_gdp", {}},
      {kBracketsOrUnderscores, "_1", "_1", {}},
      {kBracketsOrUnderscores, "c_(1)", "c_", {"1"}},
  };
  for (const Row& row : rows) {
    const ElementName parsed = ParseName(row.name, row.style);
    EXPECT_EQ(parsed.symbol, row.symbol) << row.name;
    EXPECT_EQ(parsed.labels, row.labels) << row.name;
  }
}

TEST(NameParser, OverTheLimitsAreRefusedByName) {
  const std::string long_label(kMaxNameLength + 1, 'l');
  const std::string longest(kMaxNameLength, 'l');
  std::string labels = "a";
  for (int i = 1; i < kMaxLabels; ++i) labels += ",a";
  const std::string too_many = "c[" + labels + ",a]";
  const std::string cut = std::string(252, 'c') + "...";

  EXPECT_EQ(ParseName("c[" + labels + "]", NameStyle::kMathProg).labels.size(), 20U);
  EXPECT_EQ(ParseName(longest + "[" + longest + "]", NameStyle::kMathProg).labels.at(0), longest);
  const std::vector<std::string> refused{
      "c[" + long_label + "]", long_label, too_many, cut, "c['']", "c['a]", "c['a'b]"};
  for (const std::string& name : refused) {
    try {
      ParseName(name, NameStyle::kMathProg);
      ADD_FAILURE() << name << " was taken";
    } catch (const InputError& error) {
      EXPECT_NE(std::string(error.what()).find(name), std::string::npos) << error.what();
    }
  }
}

}  // namespace
}  // namespace host
