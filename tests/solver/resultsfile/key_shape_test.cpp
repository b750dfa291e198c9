#include "resultsfile/key_shape.h"

#include <gtest/gtest.h>

#include "resultsfile/results_content.h"
#include "tests/solver/resultsfile/names.h"

namespace linfit {
namespace {

using Texts = std::vector<std::string>;

// The keys of every element, joined by ".".
Texts Keys(const NameTable& names, const KeyShape& shape) {
  Texts keys;
  for (std::size_t i = 0; i < names.count; ++i) {
    KeyList list;
    Elements{names, shape}.AddKeys(i, list);
    keys.push_back(Joined(list));
  }
  return keys;
}

// A symbol with `count` labels.
std::string Symbol(const std::string& name, int count) {
  std::string text = name;
  for (int k = 1; k <= count; ++k) text += " l" + std::to_string(k);
  return text;
}

struct Case {
  const char* what;
  Texts names;
  KeyMode mode;
  int dimension;
  Texts keys;
};

std::ostream& operator<<(std::ostream& out, const Case& c) {
  return out << c.what;
}

void Check(const Case& c, const NameTable& names, const KeyShape& shape) {
  EXPECT_EQ(shape.key_mode, c.mode);
  EXPECT_EQ(shape.key_dimension, c.dimension);
  EXPECT_EQ(Keys(names, shape), c.keys);
}

constexpr auto kStructured = KeyMode::kStructured;
constexpr auto kFlat = KeyMode::kFlat;

class CoefficientKeys : public testing::TestWithParam<Case> {};
TEST_P(CoefficientKeys, AreStructuredOrFlat) {
  NameTable names = Names(GetParam().names);
  KeyShape shape;
  AnalyseCoefficientKeys(names, shape);
  Check(GetParam(), names, shape);
}
INSTANTIATE_TEST_SUITE_P(
    Cases, CoefficientKeys,
    testing::ValuesIn(std::vector<Case>{
        {"one symbol", {"b j1", "b j2"}, kStructured, 1, {"j1", "j2"}},
        {"and an intercept",
         {"b j1", "b j2", kIntercept},
         kStructured,
         1,
         {"j1", "j2", "Intercept"}},
        {"two labels", {"b j k", kIntercept}, kStructured, 2, {"j.k", "Intercept.Intercept"}},
        {"ten labels", {Symbol("b", 10)}, kStructured, 10, {"l1.l2.l3.l4.l5.l6.l7.l8.l9.l10"}},
        {"eleven labels", {Symbol("b", 11), kIntercept}, kFlat, 1, {"x1", "Intercept"}},
        {"scalars", {"const", "income"}, kFlat, 1, {"const", "income"}},
        {"one scalar", {"income", kIntercept}, kFlat, 1, {"income", "Intercept"}},
        {"scalars, blank record", {"const", "income", kBlank}, kFlat, 1, {"const", "income", ""}},
        {"two symbols", {"b j1", "c j1", kIntercept}, kFlat, 1, {"x1", "x2", "Intercept"}},
        // The scan ends at the difference, so the intercept behind it stays unknown.
        {"two dimensions", {"b j1", "c", kIntercept}, kFlat, 1, {"x1", "x2", "x3"}},
        {"intercept first", {kIntercept, "b j1", "c"}, kFlat, 1, {"Intercept", "x2", "x3"}},
        {"blank record behind labels", {"b j1", kBlank}, kFlat, 1, {"x1", "x2"}},
        {"the intercept alone", {kIntercept}, kFlat, 1, {"Intercept"}},
        {"nothing", {}, kFlat, 1, {}},
    }));

TEST(KeyShape, InterceptTakesTheCommonSymbol) {
  NameTable names = Names({"b j k", "b j m", kIntercept});
  KeyShape shape;
  AnalyseCoefficientKeys(names, shape);
  EXPECT_EQ(shape.intercept_column, 3);
  EXPECT_EQ(shape.common_symbol_number, 'b');
  EXPECT_EQ(shape.common_symbol_name, "b");
  EXPECT_EQ(Dimension(names, 2), 2);
  EXPECT_EQ(SymbolNumber(names, 2), 'b');
  EXPECT_EQ(SymbolName(names, 2), "b");
  EXPECT_EQ(LabelNumber(names, 2, 1), -1);
  EXPECT_EQ(DisplayName(names, 2), "Intercept");
}

class ObservationKeys : public testing::TestWithParam<Case> {};
TEST_P(ObservationKeys, AreStructuredOrFlat) {
  NameTable names = Names(GetParam().names);
  KeyShape shape;
  EXPECT_EQ(AnalyseObservationKeys(names, shape), std::nullopt);
  Check(GetParam(), names, shape);
}
INSTANTIATE_TEST_SUITE_P(
    Cases, ObservationKeys,
    testing::ValuesIn(std::vector<Case>{
        {"one symbol", {"y i1", "y i2"}, kStructured, 1, {"i1", "i2"}},
        {"more than ten labels",
         {Symbol("y", 20)},
         kStructured,
         20,
         {"l1.l2.l3.l4.l5.l6.l7.l8.l9.l10.l11.l12.l13.l14.l15.l16.l17.l18.l19.l20"}},
        // Unlike the coefficients, these never take the symbol's name.
        {"scalars", {"first", "second"}, kFlat, 1, {"r1", "r2"}},
        {"two symbols", {"y i1", "z i1"}, kFlat, 1, {"r1", "r2"}},
        {"two dimensions", {"y i1", "y i1 j1", kIntercept}, kFlat, 1, {"r1", "r2", "r3"}},
        {"nothing", {}, kFlat, 1, {}},
    }));

TEST(KeyShape, AnObservationWithoutDimensionFails) {
  NameTable names = Names({"y i1", kIntercept});
  KeyShape shape;
  EXPECT_EQ(AnalyseObservationKeys(names, shape), "d=-1 internal error");
}

}  // namespace
}  // namespace linfit
